#include "platform/sound/track_player.h"

#include <algorithm>

#include "platform/kernel/kernel.h"
#include "platform/sound/cue_sheet.h"

namespace qv {

DiscError TrackPlayer::open() {
  if (!tracks_) return DiscError::NoDisc;
  return open_.exchange(true) ? DiscError::DeviceTaken : DiscError::None;
}

void TrackPlayer::close() {
  stop();
  open_ = false;
}

DiscTime TrackPlayer::trackLength(int32_t track) {
  if (!tracks_ || track < 1 || track > tracks_->count()) return {};
  return tracks_->length(track);
}

DiscError TrackPlayer::play(int32_t track, DiscTime from, DiscTime to) {
  if (!open_) return DiscError::NoDisc;
  const uint32_t length = discFramesOf(trackLength(track));
  if (length == 0) return DiscError::NoSuchTrack;
  stop();
  const uint32_t end = std::min(discFramesOf(to), length);
  return begin(track, std::min(discFramesOf(from), end), end);
}

DiscError NullDiscPlayer::begin(int32_t, uint32_t fromDiscFrame, uint32_t toDiscFrame) {
  startTick_ = tickCount();
  const uint32_t discFrames = toDiscFrame - fromDiscFrame;
  lengthMillis_ = static_cast<uint32_t>(uint64_t{discFrames} * 1000 / DiscFramesPerSecond);
  playing_ = true;
  return DiscError::None;
}

bool NullDiscPlayer::playing() {
  return playing_ && tickCount() - startTick_ < lengthMillis_;
}

}  // namespace qv
