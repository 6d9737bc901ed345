#pragma once

/// Pace: how effects keep time. A mark is taken with the kernel's clock, and a wait lasts for what
/// is left of a span since the mark, so that slow drawing is not delayed further. After the abort
/// nothing is waited for, and nothing here ever raises: an effect then runs to its end at once.
/// One thread; no lock may be held while pacing.

#include <cstdint>

#include "platform/kernel/kernel.h"

namespace qv {

/// What a whole-screen frame takes at least where an effect has no delay of its own: a sixtieth of
/// a second, or its frames could not be seen.
inline constexpr uint32_t FrameMillis = 17;

class Pace {
 public:
  /// `abort`: the host's abort event; null: only a request to end the thread cuts waits short.
  explicit Pace(Event* abort = nullptr);

  void mark();
  /// Sleeps for the rest of `millis` since the mark, if any.
  void waitSince(uint32_t millis);
  void sleep(uint32_t millis);
  /// Whether the run is ending: loops of many small steps go to their last one.
  bool aborted() const;
  uint32_t sinceMark() const;

 private:
  Event* abort_;
  uint32_t mark_;
};

/// A span of time that many small pieces of work share. Each piece that is done is owed its part
/// of the span; what is owed is slept off as soon as it is a millisecond, so that the whole takes
/// its span on any machine that is fast enough, however small the pieces are.
class SpanDebt {
 public:
  /// Starts now. `pieces` may be 0.
  SpanDebt(Pace& pace, uint32_t spanMillis, int64_t pieces);
  /// One piece is done. Sleeps `leastMillis` where that is more than what is owed.
  void pieceDone(uint32_t leastMillis = 0);

 private:
  Pace& pace_;
  uint32_t start_;
  uint32_t spanMillis_;
  int64_t pieces_, done_ = 0;
};

}  // namespace qv
