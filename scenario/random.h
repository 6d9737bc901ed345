#pragma once

/// The game's random generator: one state word, multiplied and stepped at each draw. Scenario
/// thread only.

#include <cstdint>

namespace qv {

class RandomGenerator {
 public:
  static constexpr uint32_t NoLimit = 0xFFFFFFFF;

  explicit RandomGenerator(uint32_t seed) : state_(seed) {}

  /// 0 to `limit`; with NoLimit the raw state. The high bits are drawn from, since the low bits of
  /// such a generator repeat after a few draws.
  uint32_t draw(uint32_t limit) {
    state_ = state_ * 1566083941u + 1u;
    if (limit == NoLimit) return state_;
    unsigned shift = 0;
    for (uint32_t mask = 0x7FFFFFFF; limit < mask; mask >>= 1)
      ++shift;
    return (state_ >> shift) % (limit + 1);
  }
  uint32_t state() const { return state_; }

 private:
  uint32_t state_;
};

}  // namespace qv
