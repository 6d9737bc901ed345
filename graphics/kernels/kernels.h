#pragma once

/// The inner loops behind every surface operation. They run on raw rows after clipping and do no
/// clipping of their own. `target` and `source` point at the top left pixel of the rectangle; rows
/// go down in memory by their stride, as in a bitmap that is stored bottom row first. Each loop
/// has a plain form and a vector form; the vector form's results are the finer ones where the two
/// differ (blending). Pure functions; the caller holds the surfaces.
///
/// Nothing is done where width or height is below 1, and no pixel beside the rectangle is written.
/// Source and target may overlap: then rows are done from the top, plain copies move each row
/// whole, and what the other loops read of pixels that they have written is not told.

#include <cstdint>

namespace qv {

/// One rectangle of a target and a source. Strides are bytes; a negative one is for rows that go up
/// in memory, as in a window's pixels. Width and height are pixels. Pixels of 32 bits lie at
/// addresses that 4 divides.
struct KernelRows {
  uint8_t* target = nullptr;
  int targetStride = 0;
  const uint8_t* source = nullptr;
  int sourceStride = 0;
  int width = 0, height = 0;
};

enum class KernelForm { Plain, Vector };

// 8-bit to 8-bit.
void copyRows(KernelForm form, const KernelRows& rows);
void copyRowsKey(KernelForm form, const KernelRows& rows, uint8_t key);
/// Every `step`-th pixel, counted on from row to row; a step of at most 1 copies.
void combRows(KernelForm form, const KernelRows& rows, int step);
void combRowsKey(KernelForm form, const KernelRows& rows, int step, uint8_t key);
/// The 4 by 4 pattern of `level` set cells, anchored at the rectangle's corner; below 1 copies, 16
/// and above does nothing.
void ditherRows(KernelForm form, const KernelRows& rows, int level);
void ditherRowsKey(KernelForm form, const KernelRows& rows, int level, uint8_t key);

// 8-bit through 256 entries (blue, green, red, fourth in memory order) to 32-bit.
void expandRows(KernelForm form, const KernelRows& rows, const uint32_t* palette);
void expandRowsKey(KernelForm form, const KernelRows& rows, const uint32_t* palette, uint8_t key);
/// `level` sixteenths of the source; 0 does nothing, 16 expands.
void blendRows(KernelForm form, const KernelRows& rows, const uint32_t* palette, int level);
void blendRowsKey(KernelForm form, const KernelRows& rows, const uint32_t* palette, int level,
                  uint8_t key);

// 32-bit to 32-bit.
void copyRows32(KernelForm form, const KernelRows& rows);

}  // namespace qv
