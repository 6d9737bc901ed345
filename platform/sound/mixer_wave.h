#pragma once

/// The wave channel of the mixer: a WaveOutput whose bytes become samples of the stream, at the
/// stream's rate by linear interpolation. The caller's threads, one at a time, open, write, reset
/// and close; `render` is the output's thread's. Between the two stand only atomic words.

#include <atomic>
#include <cstdint>

#include "platform/sound/mixer.h"
#include "platform/sound/wave_output.h"

namespace qv {

class MixerWave : public WaveOutput, public SampleSource {
 public:
  explicit MixerWave(uint32_t framesPerSecond) : outputRate_(framesPerSecond) {}
  ~MixerWave() override;

  bool available() const override { return true; }
  bool open(const WaveFormat& format, Event& done) override;
  bool write(std::span<const uint8_t> bytes, uint32_t times) override;
  void reset() override;
  void close() override;

  void render(float* stereo, uint32_t frames, float gain) override;

 private:
  /// What is played. Written by the caller before the output's thread can see it, and its own while
  /// it is shown; `position` counts frames of the source in 32.32 bits.
  struct Playback {
    const uint8_t* bytes = nullptr;
    uint64_t frames = 0;
    uint32_t timesLeft = 0;
    uint64_t position = 0, step = 0;
    uint16_t channels = 1, bitsPerSample = 16;
    Event* done = nullptr;
  };

  void renderPlayback(Playback& playback, float* stereo, uint32_t frames, float gain);
  void fadeTail(float* stereo, uint32_t frames);

  const uint32_t outputRate_;
  bool open_ = false;
  WaveFormat format_;
  Event* done_ = nullptr;
  Playback playback_;
  std::atomic<bool> shown_ = false;      ///< the output's thread may read the playback
  std::atomic<bool> rendering_ = false;  ///< it may be reading it now

  // The output's thread alone.
  float lastLeft_ = 0, lastRight_ = 0;  ///< what stood at the end of the last stretch
};

}  // namespace qv
