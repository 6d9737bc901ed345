#include "platform/kernel/periodic_timer.h"

#include <algorithm>
#include <utility>

#include "platform/assert.h"

namespace qv {

/// Counts the ticks that have arrived since the last look.
uint32_t DueTicks::arrived(uint32_t nowMillis) {
  const auto since = static_cast<int32_t>(nowMillis - next_);
  if (since < 0) return 0;
  const uint32_t count = static_cast<uint32_t>(since) / period_ + 1;
  next_ += count * period_;
  return count;
}

uint32_t DueTicks::restMillis(uint32_t nowMillis) const {
  const auto rest = static_cast<int32_t>(next_ - nowMillis);
  return late_ > 0 || rest < 0 ? 0 : static_cast<uint32_t>(rest);
}

bool DueTicks::take(uint32_t nowMillis) {
  const uint32_t most = std::max(MostLateMillis / period_, 1U);
  late_ += std::min(arrived(nowMillis), most - std::min(late_, most));
  if (late_ == 0) return false;
  --late_;
  return true;
}

// --- The timer ---

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
  DueTicks ticks(tickCount(), periodMillis);
  thread_.start(name, [this, ticks, call = std::move(callback)]() mutable {
    threadId_ = Thread::currentId();
    while (stop_.wait(ticks.restMillis(tickCount())) == WaitTimeout) {
      if (!ticks.take(tickCount())) continue;
      call();
      ticks.done(tickCount());
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
