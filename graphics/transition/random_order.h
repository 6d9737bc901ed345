#pragma once

/// RandomOrder: the order in which a dissolve goes through its cells. One thread.

#include <cstdint>
#include <functional>
#include <vector>

namespace qv {

/// Draws 0 to `limit`, both included.
using RandomDraw = std::function<uint32_t(uint32_t limit)>;

class RandomOrder {
 public:
  static constexpr int32_t End = -1;  ///< what stands behind the last cell

  /// 0 to `count` - 1, shuffled by 2 * count swaps of two random places.
  RandomOrder(int32_t count, const RandomDraw& random);
  /// One more than `count`; the last is `End`.
  const std::vector<int32_t>& cells() const { return cells_; }

 private:
  std::vector<int32_t> cells_;
};

}  // namespace qv
