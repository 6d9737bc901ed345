#include "audio/cd_audio.h"

#include "platform/services.h"

namespace qv {

CdAudio::CdAudio() : player_(services().disc), started_("disc started", true) {}

CdAudio::~CdAudio() {
  stop();
}

bool CdAudio::load() {
  stop();
  trackCount_ = -1;
  lastError_ = player_ ? player_->open() : DiscError::NoDisc;
  if (lastError_ != DiscError::None) return false;
  trackCount_ = player_->trackCount();
  player_->close();
  return true;
}

bool CdAudio::play(int32_t track, uint32_t loop) {
  if (open_) stop();
  if (track < 1 || track > trackCount_) return false;
  // A track that has just ended by itself may still be closing its player.
  thread_.join(JoinMillis);
  track_ = track;
  loop_ = loop;
  stopRequest_ = false;
  started_.reset();
  thread_.start("disc playback", playThread, this);
  started_.wait();
  return lastError_ == DiscError::None;
}

void CdAudio::stop() {
  if (!open_) return;
  stopRequest_ = true;
  thread_.join(JoinMillis);
}

bool CdAudio::isPlaying() const {
  return open_ && player_->playing();
}

QVString CdAudio::errorText() const {
  return QVString(describe(lastError_));
}

void CdAudio::playThread(void* audio) {
  auto& self = *static_cast<CdAudio*>(audio);
  DiscPlayer& player = *self.player_;
  self.lastError_ = player.open();
  if (self.lastError_ == DiscError::None) {
    if (self.begin(player)) self.watch(player);
    player.close();
    self.open_ = false;
  }
  self.started_.set();
}

bool CdAudio::begin(DiscPlayer& player) {
  length_ = player.trackLength(track_);
  lastError_ = length_.empty() ? DiscError::NoSuchTrack : player.play(track_, {}, length_);
  if (lastError_ != DiscError::None) return false;
  open_ = true;
  started_.set();
  return true;
}

void CdAudio::watch(DiscPlayer& player) {
  for (;;) {
    while (!stopRequest_ && player.playing())
      if (!waitForLook()) break;
    if (stopRequest_ || Thread::terminationRequested()) {
      player.stop();
      return;
    }
    if (!loop_) return;
    lastError_ = player.play(track_, {}, length_);
    if (lastError_ != DiscError::None) return;
  }
}

/// The player is asked once a second. False when the playback is to stop.
bool CdAudio::waitForLook() {
  for (uint32_t i = 0; i < PollsPerLook; ++i)
    if (sleepMillis(PollMillis) || stopRequest_) return false;
  return true;
}

}  // namespace qv
