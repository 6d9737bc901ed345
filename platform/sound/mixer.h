#pragma once

/// The mixer: adds what sounds into one stereo stream for an output. `render` runs on the output's
/// own thread, which is no thread of the kernel: it takes no lock, asks for no memory, and tells
/// its users by setting events.

#include <atomic>
#include <cstdint>
#include <span>

namespace qv {

/// A voice of the mixer. `render` is called on the output's thread alone.
class SampleSource {
 public:
  virtual ~SampleSource() = default;
  /// Adds `frames` frames of two interleaved floats (-1 to 1) to `stereo`, each times `gain`.
  /// Never waits.
  virtual void render(float* stereo, uint32_t frames, float gain) = 0;
};

/// The player's volumes, 0 to 100 percent. Any thread.
struct HostVolumes {
  std::atomic<int32_t> whole = 100, music = 100, wave = 100, disc = 100;
};

}  // namespace qv
