#include "graphics/pace.h"

#include <algorithm>

namespace qv {

Pace::Pace(Event* abort) : abort_(abort), mark_(tickCount()) {}

void Pace::mark() {
  mark_ = tickCount();
}

uint32_t Pace::sinceMark() const {
  return tickCount() - mark_;
}

void Pace::waitSince(uint32_t millis) {
  const uint32_t passed = sinceMark();
  if (passed < millis) sleep(millis - passed);
}

void Pace::sleep(uint32_t millis) {
  if (millis == 0) return;
  if (abort_)
    abort_->wait(millis);
  else
    sleepMillis(millis);
}

bool Pace::aborted() const {
  return (abort_ && abort_->isSet()) || Thread::terminationRequested();
}

SpanDebt::SpanDebt(Pace& pace, uint32_t spanMillis, int64_t pieces)
    : pace_(pace), start_(tickCount()), spanMillis_(spanMillis), pieces_(pieces) {}

void SpanDebt::pieceDone(uint32_t leastMillis) {
  if (done_ < pieces_) ++done_;
  const auto due = pieces_ > 0 ? static_cast<uint32_t>(int64_t{spanMillis_} * done_ / pieces_) : 0u;
  const uint32_t passed = tickCount() - start_;
  const uint32_t owed = due > passed ? due - passed : 0;
  pace_.sleep(std::max(owed, leastMillis));
}

}  // namespace qv
