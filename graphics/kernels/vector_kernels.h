#pragma once

/// The loops in vectors, compiled for every kind of vector that the processor may have; the best
/// one is chosen at the first call. Arguments are as in plain_kernels.h.

#include <cstddef>

#include "graphics/kernels/plain_kernels.h"

namespace qv {

/// No vector of ours is longer, so that a pattern needs to run on by that much and no more.
inline constexpr size_t MostLanes = 64;

/// Cells that repeat along a row: 0xFF takes the source's pixel, 0 leaves the target's.
struct CellPattern {
  const uint8_t* rows[4];  ///< for row y modulo 4: `period` cells, repeated for MostLanes more
  size_t period;           ///< MostLanes at least: a multiple of what repeats in truth will do
  size_t carry;  ///< by how many cells each row begins further on than the one above, below period
};

namespace vector {

void copyRowsKey(const KernelRows& rows, uint8_t key);
void patternRows(const KernelRows& rows, const CellPattern& pattern, int key);
void expandRows(const KernelRows& rows, const uint32_t* palette, int key);
void blendRows(const KernelRows& rows, const uint32_t* palette, int level, int key);

}  // namespace vector
}  // namespace qv
