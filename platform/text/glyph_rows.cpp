#include "platform/text/glyph_rows.h"

#include <algorithm>
#include <bit>

// Vectors whose length is known only at run time cannot be counted off against 32 pixels.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)

// This file is compiled once for each target.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/text/glyph_rows.cpp"
#include <hwy/foreach_target.h>  // before highway.h
#include <hwy/highway.h>

#include "platform/vector_dispatch.h"

HWY_BEFORE_NAMESPACE();
namespace qv::HWY_NAMESPACE {

/// Rows of one word each onto 32 pixels of the target that all lie in it.
void putWordRows(uint8_t* target, ptrdiff_t stride, const uint32_t* rows, ptrdiff_t rowWords,
                 int count, uint8_t index) {
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
  for (int row = 0; row < count; ++row, target += stride, rows += rowWords)
    for (uint32_t bits = *rows; bits != 0; bits &= bits - 1)
      target[std::countr_zero(bits)] = index;
#else
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::CappedTag<uint8_t, Glyph::WordPixels> lanes;
  constexpr size_t Step = hn::MaxLanes(lanes);
  static_assert(Glyph::WordPixels % Step == 0 && Step % 8 == 0);
  const auto ink = hn::Set(lanes, index);
  for (int row = 0; row < count; ++row, target += stride, rows += rowWords) {
    const auto* bits = reinterpret_cast<const uint8_t*>(rows);
    for (size_t x = 0; x < Glyph::WordPixels; x += Step)
      hn::BlendedStore(ink, hn::LoadMaskBits(lanes, bits + x / 8), lanes, target + x);
  }
#endif
}

}  // namespace qv::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace qv {

QV_VECTOR_FORMS(putWordRows);

namespace {

/// The part of a glyph's rows that lies in the target.
struct RowRange {
  int first, count;
};
RowRange rowsInside(int64_t top, int height, int targetHeight) {
  const int64_t first = std::max<int64_t>(0, -top);
  const int64_t end = std::min<int64_t>(height, targetHeight - top);
  return {static_cast<int>(std::min<int64_t>(first, height)),
          static_cast<int>(std::max<int64_t>(0, end - first))};
}

/// One word of pixels from column x on, clipped, pixel by pixel.
template <class Pixel>
void putBits(Pixel* row, int64_t width, int64_t x, uint32_t bits, Pixel value) {
  if (x <= -Glyph::WordPixels || x >= width) return;
  if (x < 0) {
    bits >>= static_cast<unsigned>(-x);
    x = 0;
  }
  const int64_t room = width - x;
  if (room < Glyph::WordPixels) bits &= (uint32_t{1} << static_cast<unsigned>(room)) - 1;
  for (; bits != 0; bits &= bits - 1)
    row[x + std::countr_zero(bits)] = value;
}

template <class Pixel>
void putWord(const PixelTarget<Pixel>& target, int64_t x, int64_t y, RowRange range,
             const Glyph& glyph, int word, Pixel value) {
  Pixel* row = target.top + (y + range.first) * target.stride;
  const uint32_t* bits = glyph.rows + static_cast<ptrdiff_t>(range.first) * glyph.words + word;
  for (int i = 0; i < range.count; ++i, row += target.stride, bits += glyph.words)
    putBits(row, target.width, x, *bits, value);
}

}  // namespace

void putGlyph(const PixelTarget<uint8_t>& target, int64_t x, int64_t y, const Glyph& glyph,
              uint8_t index) {
  if (!target.top) return;
  x += glyph.left;
  y += glyph.top;
  const RowRange range = rowsInside(y, glyph.height, target.height);
  if (range.count == 0) return;
  for (int word = 0; word < glyph.words; ++word, x += Glyph::WordPixels) {
    if (x < 0 || x + Glyph::WordPixels > target.width) {
      putWord(target, x, y, range, glyph, word, index);
      continue;
    }
    QV_VECTOR_LOOP(putWordRows)
    (target.top + (y + range.first) * target.stride + x, target.stride,
     glyph.rows + static_cast<ptrdiff_t>(range.first) * glyph.words + word, glyph.words,
     range.count, index);
  }
}

void putGlyph(const PixelTarget<uint32_t>& target, int64_t x, int64_t y, const Glyph& glyph,
              uint32_t colour) {
  if (!target.top) return;
  x += glyph.left;
  y += glyph.top;
  const RowRange range = rowsInside(y, glyph.height, target.height);
  if (range.count == 0) return;
  for (int word = 0; word < glyph.words; ++word)
    putWord(target, x + int64_t{word} * Glyph::WordPixels, y, range, glyph, word, colour);
}

}  // namespace qv
#endif
