#pragma once

/// The machine's sound output through SDL: two floats a frame in small buffers, asked for on a
/// thread that is SDL's own.

#include <cstdint>
#include <memory>
#include <string>

namespace qv {

class SoundMixer;

/// Frames in a second of every output; SDL brings them to the card's own rate.
inline constexpr uint32_t OutputRate = 48000;

class AudioOutput {
 public:
  virtual ~AudioOutput() = default;  ///< no sample is asked for any more when it returns
  /// Looks for the machine's output, which takes some ten milliseconds. False, with a sentence
  /// (UTF-8), when there is none. Any one thread, once.
  virtual bool open(std::string& whyNot) = 0;
  /// From now on the mixer is asked for what is heard. Behind a good `open`, on its thread, once.
  virtual void start(SoundMixer& mixer) = 0;
};

/// The thread of the window.
std::unique_ptr<AudioOutput> makeAudioOutput();

}  // namespace qv
