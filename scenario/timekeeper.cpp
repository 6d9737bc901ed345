#include "scenario/timekeeper.h"

#include <algorithm>
#include <limits>

#include "foundation/diagnostic.h"
#include "platform/kernel/kernel.h"
#include "scenario/scenario.h"

namespace qv {

void timekeeper::Restart(int32_t demo) {
  demo_ = demo;
  startTick_ = lastTick_ = tickCount();
}

/// The difference holds across the wrap of the tick count.
uint32_t timekeeper::elapsed() {
  lastTick_ = tickCount();
  return lastTick_ - startTick_;
}

void timekeeper::waitFor(uint32_t elapsedMillis, uint32_t timeMillis) {
  const uint32_t left = timeMillis > elapsedMillis ? timeMillis - elapsedMillis : 0;
  theScenario->host()->SleepUnlessAborted(left);
}

int32_t timekeeper::Cue(uint32_t timeMillis, uint32_t limitMillis) {
  if (!theScenario || !theScenario->host()) return 0;
  const uint32_t now = elapsed();
  if (now >= limitMillis) return 0;
  if (!demo_) {
    waitFor(now, timeMillis);
    return 1;
  }
  if (now >= timeMillis) return 1;
  constexpr uint32_t Longest = std::numeric_limits<int32_t>::max();
  const auto left = static_cast<int32_t>(std::min(timeMillis - now, Longest));
  if (theScenario->host()->WaitForInput(left, 0, 1) == WaitInputTimeout) return 1;
  throw AbortDemoException();
}

void timekeeper::CueWait(uint32_t timeMillis) {
  if (!theScenario || !theScenario->host()) return;
  waitFor(elapsed(), timeMillis);
}

}  // namespace qv
