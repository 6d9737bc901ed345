#pragma once

/// The loops one pixel at a time. What they are given is as for kernels.h, but sizes, steps and
/// levels are already within their ranges: width and height at least 1, steps above 1, pattern and
/// blend levels 1 to 15. A `key` of NoKey copies every pixel.

#include <cstddef>

#include "graphics/kernels/kernels.h"

namespace qv {

inline constexpr int NoKey = -1;

/// Row y of the rectangle, counted from its top: a bitmap stores the bottom row first.
inline uint8_t* targetRow(const KernelRows& rows, int y) {
  return rows.target - static_cast<ptrdiff_t>(y) * rows.targetStride;
}
inline const uint8_t* sourceRow(const KernelRows& rows, int y) {
  return rows.source - static_cast<ptrdiff_t>(y) * rows.sourceStride;
}

namespace plain {

void copyRowsKey(const KernelRows& rows, uint8_t key);
void combRows(const KernelRows& rows, int step, int key);
void ditherRows(const KernelRows& rows, int level, int key);
void expandRows(const KernelRows& rows, const uint32_t* palette, int key);
void blendRows(const KernelRows& rows, const uint32_t* palette, int level, int key);

}  // namespace plain
}  // namespace qv
