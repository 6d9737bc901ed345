#pragma once

/// The disc as a source of the mixer: a thread of the kernel reads the track ahead into a ring, at
/// the stream's rate, and the output's thread takes it out. Neither waits for the other.

#include <array>
#include <atomic>

#include "platform/kernel/kernel.h"
#include "platform/sound/mixer.h"
#include "platform/sound/track_player.h"

namespace qv {

class MixerDisc : public TrackPlayer, public SampleSource {
 public:
  MixerDisc(std::unique_ptr<DiscTracks> tracks, uint32_t framesPerSecond);
  ~MixerDisc() override;

  /// Until the last sample has been taken out.
  bool playing() override { return playing_; }
  void stop() override;
  void render(float* stereo, uint32_t frames, float gain) override;

 protected:
  DiscError begin(int32_t track, uint32_t fromDiscFrame, uint32_t toDiscFrame) override;

 private:
  /// Some third of a second, which covers a slow disk.
  static constexpr size_t RingFrames = 1 << 14;
  static constexpr uint32_t PollMillis = 50;

  void readAhead(TrackReader& reader, uint64_t framesLeft);
  size_t put(const float* stereo, size_t frames);

  const uint32_t outputRate_;
  Event stop_;
  Thread thread_;
  std::atomic<bool> playing_ = false;
  std::atomic<bool> allRead_ = false;  ///< nothing more comes into the ring
  std::atomic<bool> rendering_ = false;
  std::array<float, 2 * RingFrames> ring_{};
  std::atomic<uint64_t> written_ = 0, taken_ = 0;  ///< frames since the start of the playback
};

}  // namespace qv
