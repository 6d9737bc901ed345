#pragma once

/// A periodic callback on a thread of its own, on the kernel's clock (the song player's 16 ms
/// step). A tick that arrives while the callback is at work is dropped rather than queued behind
/// it. Ticks for which the thread had no turn follow at once, so that a song keeps its time on a
/// busy machine; but only those of the last quarter of a second: one that stood still for longer
/// goes on where it was.

#include <atomic>
#include <cstdint>
#include <functional>

#include "platform/kernel/kernel.h"

namespace qv {

/// Which ticks of a period are due, a plain function of the times that it is told. Times are
/// compared by their difference: they wrap.
class DueTicks {
 public:
  /// Ticks that are late by more than this are dropped; the latest one never is.
  static constexpr uint32_t MostLateMillis = 250;

  /// `periodMillis` at least 1. The first tick comes after one period.
  DueTicks(uint32_t nowMillis, uint32_t periodMillis)
      : next_(nowMillis + periodMillis), period_(periodMillis) {}
  /// Until there is a tick to take; 0 where there is one.
  uint32_t restMillis(uint32_t nowMillis) const;
  /// True when a tick is due, which then is at work.
  bool take(uint32_t nowMillis);
  /// The tick that was taken is done: those that arrived meanwhile are dropped.
  void done(uint32_t nowMillis) { arrived(nowMillis); }

 private:
  uint32_t arrived(uint32_t nowMillis);

  uint32_t next_;      ///< when the first tick comes that has not arrived
  uint32_t late_ = 0;  ///< ticks that have arrived and wait
  const uint32_t period_;
};

class PeriodicTimer {
 public:
  PeriodicTimer();
  ~PeriodicTimer();  ///< stops
  /// `periodMillis` at least 1. The first call comes after one period. A run that still goes on is
  /// stopped first; so this is never called from the callback.
  void start(const std::string& name, uint32_t periodMillis, std::function<void()> callback);
  /// No callback runs any more when this returns, unless it is called from the callback itself.
  void stop();
  bool running() const;

 private:
  Event stop_;
  /// Told by the thread itself: its callback may ask before `start` has come back.
  std::atomic<uint32_t> threadId_ = 0;
  std::atomic<bool> running_ = false;
  Thread thread_;
};

}  // namespace qv
