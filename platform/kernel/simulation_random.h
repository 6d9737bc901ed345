#pragma once

/// The generator behind a simulated run (SplitMix64, by Steele, Lea and Flood, 2014). Our own, and
/// without the standard library's distributions, so that a seed means the same run with every
/// library.

#include <cstdint>

namespace qv {

class SimulationRandom {
 public:
  explicit SimulationRandom(uint64_t seed) : state_(seed) {}

  uint64_t next() {
    state_ += 0x9E3779B97F4A7C15ULL;
    uint64_t value = state_;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBULL;
    return value ^ (value >> 31);
  }
  /// 0 to count - 1; `count` at least 1.
  uint32_t below(uint32_t count) { return static_cast<uint32_t>(((next() >> 32) * count) >> 32); }

 private:
  uint64_t state_;
};

}  // namespace qv
