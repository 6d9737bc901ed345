#include "platform/kernel/periodic_timer.h"

#include <utility>

#include "platform/assert.h"

namespace qv {

PeriodicTimer::PeriodicTimer() : stop_("end of a periodic timer", Event::Reset::Manual) {}

PeriodicTimer::~PeriodicTimer() {
  stop();
}

void PeriodicTimer::start(const std::string& name, uint32_t periodMillis,
                          std::function<void()> callback) {
  QV_ASSERT(periodMillis >= 1);
  QV_ASSERT(threadId_.load() != Thread::currentId());
  stop();
  stop_.reset();
  running_ = true;
  const uint32_t firstDue = tickCount() + periodMillis;
  thread_.start(name, [this, periodMillis, firstDue, call = std::move(callback)] {
    threadId_ = Thread::currentId();
    // Ticks are compared by their difference: they wrap.
    for (uint32_t due = firstDue;; due += periodMillis) {
      const int32_t rest = static_cast<int32_t>(due - tickCount());
      if (stop_.wait(rest > 0 ? static_cast<uint32_t>(rest) : 0) != WaitTimeout) break;
      call();
    }
    threadId_ = 0;
    running_ = false;
  });
}

void PeriodicTimer::stop() {
  stop_.set();
  if (threadId_.load() != Thread::currentId()) thread_.join();
}

bool PeriodicTimer::running() const {
  return running_ && !stop_.isSet();
}

}  // namespace qv
