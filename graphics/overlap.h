#pragma once

/// Copies within one surface whose rectangles share pixels. Their result depends on the order of
/// reading and writing, which is fixed here as the classic loops had it: rows from the top, each
/// from the left, in moves of a fixed number of pixels; each move reads, then writes. So a picture
/// that is copied onto itself further right or further down is smeared in one certain way, whatever
/// width the processor's vectors have. Pure functions; the caller holds the surface.

#include "graphics/kernels/kernels.h"

namespace qv {

/// Moves of 8 pixels over the whole sixteens of a row in the vector form from a width of 16 on,
/// else of 4 pixels; the rest of a row one by one.
void copyRowsWithin(KernelForm form, const KernelRows& rows);
/// Moves of 8 pixels as above in the vector form, else one by one.
void copyRowsKeyWithin(KernelForm form, const KernelRows& rows, uint8_t key);
/// One by one; pixels of 32 bits.
void copyRows32Within(const KernelRows& rows);

}  // namespace qv
