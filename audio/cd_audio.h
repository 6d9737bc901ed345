#pragma once

/// CdAudio: plays one audio track of the data disc on a thread that owns the player from open to
/// close and can repeat the track. Each user makes its own. Errors are kept and go no further: the
/// game plays on in silence. One thread at a time uses an object.

#include <atomic>
#include <cstdint>

#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "platform/sound/disc_player.h"

namespace qv {

class CdAudio {
 public:
  static constexpr uint32_t JoinMillis = 10'000;
  /// A stop is seen within a part of a look, the end of a track within a whole one.
  static constexpr uint32_t PollMillis = 100, PollsPerLook = 10;

  CdAudio();
  virtual ~CdAudio();  ///< stops
  CdAudio(const CdAudio&) = delete;
  CdAudio& operator=(const CdAudio&) = delete;

  /// Looks at the disc: stops, counts its tracks. Must come before `play`. True when there is one.
  bool load();
  /// True when the track has begun; what played before is stopped. `loop` nonzero repeats it.
  bool play(int32_t track, uint32_t loop);
  /// Returns when the playback has ended, or has not within JoinMillis.
  void stop();
  bool isPlaying() const;

  int32_t trackCount() const { return trackCount_; }  ///< -1 before the first load
  DiscError lastError() const { return lastError_; }
  QVString errorText() const;  ///< in English; empty for none

 private:
  static void playThread(void* audio);
  bool begin(DiscPlayer& player);
  void watch(DiscPlayer& player);
  bool waitForLook();

  DiscPlayer* player_ = nullptr;  ///< the machine's; null: it has none
  int32_t trackCount_ = -1;
  std::atomic<DiscError> lastError_ = DiscError::None;
  std::atomic<bool> open_ = false;  ///< the playback's thread has the player
  std::atomic<bool> stopRequest_ = false;
  QVEvent started_;
  int32_t track_ = 0;
  uint32_t loop_ = 0;
  DiscTime length_;
  QVThread thread_;  ///< the last to be made, the first to go
};

}  // namespace qv
