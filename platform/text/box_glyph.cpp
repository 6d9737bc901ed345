#include "platform/text/box_glyph.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/text/builtin_font.h"

namespace qv {

namespace {

/// Hexadecimal digits of three columns and five rows, the leftmost column the highest bit.
constexpr int DigitWidth = 3, DigitHeight = 5, DigitGap = 1;
constexpr std::array<std::array<uint8_t, DigitHeight>, 16> Digits = {{
    {7, 5, 5, 5, 7},
    {2, 6, 2, 2, 7},
    {7, 1, 7, 4, 7},
    {7, 1, 7, 1, 7},
    {5, 5, 7, 1, 1},
    {7, 4, 7, 1, 7},
    {7, 4, 7, 5, 7},
    {7, 1, 1, 2, 2},
    {7, 5, 7, 5, 7},
    {7, 5, 7, 1, 7},
    {7, 5, 7, 5, 5},
    {6, 5, 6, 5, 6},
    {7, 4, 4, 4, 7},
    {6, 5, 5, 5, 6},
    {7, 4, 6, 4, 7},
    {7, 4, 6, 4, 4},
}};

GlyphShape emptyShape(int width, int height, int advance) {
  GlyphShape shape;
  shape.width = width;
  shape.height = height;
  shape.advance = advance;
  shape.ink.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  return shape;
}

void putDigit(GlyphShape& shape, int left, int top, int digit) {
  for (int y = 0; y < DigitHeight; ++y)
    for (int x = 0; x < DigitWidth; ++x)
      if (Digits[static_cast<size_t>(digit)][static_cast<size_t>(y)] >> (DigitWidth - 1 - x) & 1)
        shape.set(left + x, top + y);
}

/// Two rows of digits, of two columns for a code of two bytes.
void putCode(GlyphShape& shape, uint16_t code) {
  const int columns = code > 0xFF ? 2 : 1;
  const int width = columns * (DigitWidth + DigitGap) - DigitGap;
  const int height = 2 * DigitHeight + DigitGap;
  if (shape.width - 2 < width || shape.height - 2 < height) return;
  const int left = (shape.width - width) / 2, top = (shape.height - height) / 2;
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < columns; ++column) {
      const int place = (1 - row) * columns + (columns - 1 - column);
      putDigit(shape, left + column * (DigitWidth + DigitGap), top + row * (DigitHeight + DigitGap),
               code >> (4 * place) & 0xF);
    }
}

}  // namespace

GlyphShape boxShape(uint16_t code, int advance, int height) {
  const int left = advance > 2 ? 1 : 0, top = height > 2 ? 1 : 0;
  GlyphShape shape =
      emptyShape(std::max(1, advance - 2 * left), std::max(1, height - 2 * top), advance);
  shape.left = left;
  shape.top = top;
  for (int x = 0; x < shape.width; ++x) {
    shape.set(x, 0);
    shape.set(x, shape.height - 1);
  }
  for (int y = 0; y < shape.height; ++y) {
    shape.set(0, y);
    shape.set(shape.width - 1, y);
  }
  putCode(shape, code);
  return shape;
}

GlyphShape builtInShape(uint16_t code, int advance, int height) {
  const std::optional<BuiltinGlyph> glyph = builtinGlyph(code);
  if (!glyph || glyph->width < 1) return boxShape(code, advance, height);
  GlyphShape shape = emptyShape(advance, height, advance);
  const int rows = static_cast<int>(glyph->rows.size());
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < advance; ++x) {
      const int row = (2 * y + 1) * rows / (2 * height);
      const int column = (2 * x + 1) * glyph->width / (2 * advance);
      if (glyph->rows[static_cast<size_t>(row)] >> (15 - column) & 1) shape.set(x, y);
    }
  return shape;
}

}  // namespace qv
