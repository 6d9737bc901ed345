#pragma once

/// QVWave: the one wave channel. Voices, effects and the system's own words all go through it, so a
/// new sound takes the place of the old one. Each playback has a short-lived thread that reads the
/// file whole, hands it to the device as one buffer and waits for its end. Any thread may play,
/// stop and wait; the scenario thread does.

#include <atomic>
#include <cstdint>
#include <string>

#include "audio/wave_file.h"
#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "platform/sound/wave_output.h"

namespace qv {

class QVAnimationArea;

class QVWave {
 public:
  static constexpr uint32_t JoinMillis = 6000;  ///< how long a playback may take to end

  /// Asks the services for the device; a machine without one is told in a box, once.
  QVWave();
  virtual ~QVWave();  ///< stops
  QVWave(const QVWave&) = delete;
  QVWave& operator=(const QVWave&) = delete;

  void getDeviceCaps();
  /// Returns when the sound has been handed to the device, or has failed. `loops`: 0 for ever, else
  /// how often. With `stopFirst` what sounds is cut, otherwise its end is waited for. `mouth` moves
  /// with the sound, and is put back at its end; may be null.
  void play(const char* path, uint32_t loops, bool stopFirst, QVAnimationArea* mouth);
  /// Returns when the playback has ended, or has not within JoinMillis.
  void stop();
  void wait(int32_t timeoutMillis = -1);  ///< -1: for ever
  /// True from the start of a playback's thread to its end.
  bool isPlaying() const { return playing_; }
  /// Takes the file's format and samples; false when they cannot be had. The playback's thread, or
  /// any other while there is none.
  bool loadWave(const char* path);
  /// An area that is about to go, or with null any area, moves no longer with the sound; returns
  /// when nothing uses it. The caller may hold the manager's lock.
  void forget(const QVAnimationArea* mouth);

  bool available() const { return available_; }
  /// What sounds now; empty when nothing does. A copy.
  QVString currentPath() const;
  /// Set while nothing sounds, and by a stop: for waits on the end beside other things. A wait that
  /// ends by it goes on with `wait`.
  Event& done() { return done_.handle(); }
  void setShowErrors(bool show) { showErrors_ = show; }
  void setShowWaitTimeout(bool show) { showWaitTimeout_ = show; }
  /// Called last by each playback's thread.
  void setOnFinished(void (*onFinished)(uint32_t), uint32_t argument);

 private:
  static void playThread(void* wave);
  void startPlayback();
  bool openDevice();
  void finishPlayback();
  void dropSamples();
  void tellFailure();
  void setFailure(std::string text);
  void report(const char* text, const char* title) const;
  bool startThread(const char* path, uint32_t loops, QVAnimationArea* mouth);

  WaveOutput* output_ = nullptr;
  bool available_ = false;
  std::atomic<bool> showErrors_ = true;
  std::atomic<bool> showWaitTimeout_ = true;
  QVEvent started_;  ///< set while no playback is about to begin
  QVEvent done_;     ///< set by the device at the end, and by who wants a stop
  QVEvent idle_;     ///< set while no playback's thread runs
  std::atomic<bool> playing_ = false;
  std::atomic<bool> stopRequested_ = false;  ///< of this playback
  void (*onFinished_)(uint32_t) = nullptr;
  uint32_t onFinishedArgument_ = 0;

  mutable Lock lock_;  ///< guards the start of a thread, path_ and failure_; taken before the other
  QVString path_;
  std::string failure_;  ///< of the playback, not yet told
  Lock mouthLock_;       ///< guards mouth_, and is held while the mouth is started and stopped
  QVAnimationArea* mouth_ = nullptr;

  // The playback's thread alone, from its start to its end.
  uint32_t loops_ = 1;
  WaveFile file_;
  bool loaded_ = false;
  bool open_ = false;  ///< the device
  bool missingDiscTold_ = false;

  QVThread thread_;  ///< the last to be made, the first to go
};

}  // namespace qv
