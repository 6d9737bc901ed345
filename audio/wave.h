#pragma once

/// QVWave: the one wave channel. Voices, effects and the system's own words all go through it, so a
/// new sound takes the place of the old one. Each playback has a short-lived thread that reads the
/// file whole, hands it to the device as one buffer and waits for its end. Any thread may play,
/// stop and wait; the scenario thread does.

#include <atomic>
#include <cstdint>
#include <vector>

#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "platform/sound/wave_output.h"

namespace qv {

class QVAnimationArea;

class QVWave {
 public:
  /// Asks the services for the device; a machine without one is told in a box, once.
  QVWave();
  virtual ~QVWave();
  QVWave(const QVWave&) = delete;
  QVWave& operator=(const QVWave&) = delete;

  void getDeviceCaps();
  /// Returns when the sound has been handed to the device, or has failed. `loops`: 0 for ever, else
  /// how often. With `stopFirst` what sounds is cut, otherwise its end is waited for. `mouth` moves
  /// with the sound, and is put back at its end; may be null.
  void play(const char* path, uint32_t loops, bool stopFirst, QVAnimationArea* mouth);
  void stop();
  void wait(int32_t timeoutMillis = -1);  ///< -1: for ever
  bool isPlaying() const;
  bool loadWave(const char* path);
  /// An area that is about to go moves no longer; returns when nothing uses it.
  void forget(const QVAnimationArea* mouth);

  bool available() const { return available_; }

 private:
  bool available_ = false;
};

}  // namespace qv
