#pragma once

/// Puts glyphs onto pixels: the innermost loops of text. Pure functions on memory that the caller
/// holds.

#include <cstddef>
#include <cstdint>

#include "platform/text/glyph.h"

namespace qv {

/// Rows may lie top first or bottom first: `stride` leads from a row to the one below it, in
/// elements, and may be negative.
template <class Pixel>
struct PixelTarget {
  Pixel* top = nullptr;  ///< the top row's first pixel; null: nothing is drawn
  int width = 0, height = 0;
  ptrdiff_t stride = 0;
};

/// Sets the glyph's pixels, with the cell's top left corner at x, y, clipped to the target. A whole
/// word of 32 pixels is a few vector instructions, which may write pixels beside the glyph anew,
/// within the target's row.
void putGlyph(const PixelTarget<uint8_t>& target, int64_t x, int64_t y, const Glyph& glyph,
              uint8_t index);
void putGlyph(const PixelTarget<uint32_t>& target, int64_t x, int64_t y, const Glyph& glyph,
              uint32_t colour);

/// Behind a glyph's last row the loops may read this many words.
inline constexpr size_t GlyphPaddingWords = 2;

}  // namespace qv
