#pragma once

/// Sets of pixels as lists of rectangles: what of a window is still to be painted, and the outline
/// that a window gets from a picture. Values; no locks.

#include <cstdint>
#include <span>
#include <vector>

#include "graphics/colour_key.h"
#include "graphics/rectangle.h"

namespace qv {

class QVVSurface;

/// Exactly the pixels that were added, as rectangles that do not overlap. Neighbours are joined
/// where the whole is a rectangle again, never by taking in pixels between them: a wipe lives from
/// what is not repainted.
class Region {
 public:
  Region() = default;
  explicit Region(const Rectangle& rectangle) { add(rectangle); }

  void add(const Rectangle& rectangle);
  void subtract(const Rectangle& rectangle);
  void clear() { rectangles_.clear(); }
  bool empty() const { return rectangles_.empty(); }
  std::span<const Rectangle> rectangles() const { return rectangles_; }
  Rectangle bounds() const;

 private:
  void append(Rectangle rectangle);

  std::vector<Rectangle> rectangles_;
};

/// A window's outline: runs of one row, from the top down and from left to right.
struct ClipShape {
  /// A block of 65536 bytes holds a head and this many; the scan stops there.
  static constexpr size_t MostRectangles = 4094;

  std::vector<Rectangle> rectangles;
  Rectangle bounds{0, 0, 1, 1};  ///< of the runs and of the first pixel

  /// Calls `work` for each part of the outline that lies in `within`.
  template <typename Work>
  void forEachIn(const Rectangle& within, Work work) const {
    for (auto run = firstBelow(within.top); run < rectangles.size(); ++run) {
      if (rectangles[run].top >= within.bottom) return;
      const Rectangle part = rectangles[run].intersected(within);
      if (!part.empty()) work(part);
    }
  }

 private:
  size_t firstBelow(int32_t y) const;  ///< the first run that ends below y
};

/// The outline of what is not `key` in the picture; KeyTopLeft takes its first pixel as the key.
/// No rectangles where everything is key. Overwrites the picture with the marks of the scan, so
/// callers pass a copy.
ClipShape scanClipShape(QVVSurface& scratch, ColourKey key);
/// The same over pixels, top row first without padding.
ClipShape scanClipShape(std::span<uint8_t> pixels, int32_t width, int32_t height, ColourKey key);

}  // namespace qv
