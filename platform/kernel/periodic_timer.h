#pragma once

/// A periodic callback on a thread of its own, on the kernel's clock (the song player's 16 ms
/// step). A callback that comes late is followed at once by those that were missed, so that the
/// number of callbacks is the elapsed time divided by the period.

#include <atomic>
#include <cstdint>
#include <functional>

#include "platform/kernel/kernel.h"

namespace qv {

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
