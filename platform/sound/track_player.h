#pragma once

/// What all players of a disc share: who has opened it, which tracks there are and what may be
/// played. The forms below it play. Any kernel thread; one user at a time between open and close.

#include <atomic>
#include <memory>

#include "platform/sound/disc_player.h"
#include "platform/sound/disc_tracks.h"

namespace qv {

class TrackPlayer : public DiscPlayer {
 public:
  /// `tracks` null: a disc without audio.
  explicit TrackPlayer(std::unique_ptr<DiscTracks> tracks) : tracks_(std::move(tracks)) {}

  DiscError open() override;
  void close() override;
  int32_t trackCount() override { return tracks_ ? tracks_->count() : 0; }
  DiscTime trackLength(int32_t track) override;
  DiscError play(int32_t track, DiscTime from, DiscTime to) override;

 protected:
  /// The places are inside the track, the second behind the first.
  virtual DiscError begin(int32_t track, uint32_t fromDiscFrame, uint32_t toDiscFrame) = 0;
  DiscTracks& tracks() { return *tracks_; }

 private:
  std::unique_ptr<DiscTracks> tracks_;
  std::atomic<bool> open_ = false;
};

/// Keeps the time that a track would take, on the kernel's clock.
class NullDiscPlayer : public TrackPlayer {
 public:
  using TrackPlayer::TrackPlayer;
  bool playing() override;
  void stop() override { playing_ = false; }

 protected:
  DiscError begin(int32_t track, uint32_t fromDiscFrame, uint32_t toDiscFrame) override;

 private:
  std::atomic<bool> playing_ = false;
  std::atomic<uint32_t> startTick_ = 0, lengthMillis_ = 0;
};

}  // namespace qv
