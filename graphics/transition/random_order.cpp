#include "graphics/transition/random_order.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace qv {

RandomOrder::RandomOrder(int32_t count, const RandomDraw& random)
    : cells_(static_cast<size_t>(std::max(count, 0)) + 1) {
  std::iota(cells_.begin(), cells_.end(), 0);
  cells_.back() = End;
  if (count < 1) return;
  const auto last = static_cast<uint32_t>(count - 1);
  for (int64_t swaps = int64_t{2} * count; swaps > 0; --swaps) {
    const uint32_t one = random(last), other = random(last);
    std::swap(cells_[one], cells_[other]);
  }
}

}  // namespace qv
