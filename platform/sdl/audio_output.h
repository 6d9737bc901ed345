#pragma once

/// The machine's sound output through SDL: two floats a frame in small buffers, asked for on a
/// thread that is SDL's own.

#include <cstdint>
#include <memory>
#include <string>

namespace qv {

class SoundMixer;

class AudioOutput {
 public:
  virtual ~AudioOutput() = default;  ///< no sample is asked for any more when it returns
  virtual uint32_t framesPerSecond() const = 0;
  virtual uint32_t bufferFrames() const = 0;
  /// From now on the mixer is asked for what is heard; until then there is silence. Once.
  virtual void start(SoundMixer& mixer) = 0;
};

/// Null, and a sentence (UTF-8), when the machine has no output.
std::unique_ptr<AudioOutput> openAudioOutput(std::string& whyNot);

}  // namespace qv
