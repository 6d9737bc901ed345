#pragma once

/// One character's picture of one bit a pixel, as fonts give it and as the cache keeps it. Plain
/// data.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv {

/// A glyph that is being made. Columns count from the cell's left edge, rows from its top.
struct GlyphShape {
  int left = 0, top = 0;  ///< of the picture in the cell, in pixels
  int width = 0, height = 0;
  int advance = 0;
  std::vector<uint8_t> ink;  ///< a byte a pixel, 0 or 1; width by height

  bool at(int x, int y) const {
    return x >= 0 && y >= 0 && x < width && y < height && ink[index(x, y)] != 0;
  }
  void set(int x, int y) {
    if (x >= 0 && y >= 0 && x < width && y < height) ink[index(x, y)] = 1;
  }
  size_t index(int x, int y) const {
    return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
  }
  /// Another rectangle of the cell, with the ink that lies in it.
  void reframe(int newLeft, int newTop, int newWidth, int newHeight);
};

/// A glyph of the cache: its rows are words of 32 pixels, the leftmost the lowest bit.
struct Glyph {
  static constexpr int WordPixels = 32;

  int left = 0, top = 0, height = 0;
  int advance = 0;
  int words = 0;  ///< of a row
  const uint32_t* rows = nullptr;
};

}  // namespace qv
