#pragma once

/// Clipping of blits: which part of what was asked for lies inside target and source. Pure
/// functions.

#include <algorithm>
#include <cstdint>

namespace qv {

/// One direction of a blit: `count` pixels from `source` to `target`.
struct BlitAxis {
  int64_t target = 0, source = 0, count = 0;
};

/// Clips one direction to the extents; false when nothing is left.
constexpr bool clipAxis(BlitAxis& axis, int64_t targetExtent, int64_t sourceExtent) {
  if (axis.target < 0 && axis.target < axis.source) {
    axis.source -= axis.target;
    axis.count += axis.target;
    axis.target = 0;
  } else if (axis.target < 0 || axis.source < 0) {
    // A negative target of smaller magnitude than a negative source takes this road too, on
    // purpose: the source's offset is cancelled, and what is left is drawn further in.
    axis.target -= axis.source;
    axis.count += axis.source;
    axis.source = 0;
  }
  if (axis.count < 1 || axis.target >= targetExtent || axis.source >= sourceExtent) return false;
  axis.count = std::min({axis.count, targetExtent - axis.target, sourceExtent - axis.source});
  return true;
}

/// A blit's rectangle in target and source. Wide, so that no argument of a scene can overflow it.
struct BlitArea {
  BlitAxis x, y;

  constexpr BlitArea(int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w, int32_t h)
      : x{dx, sx, w}, y{dy, sy, h} {}
  constexpr bool clip(int32_t targetWidth, int32_t targetHeight, int32_t sourceWidth,
                      int32_t sourceHeight) {
    return clipAxis(x, targetWidth, sourceWidth) && clipAxis(y, targetHeight, sourceHeight);
  }
  constexpr int width() const { return static_cast<int>(x.count); }
  constexpr int height() const { return static_cast<int>(y.count); }
  /// Whether the two rectangles of a clipped blit within one surface share pixels.
  constexpr bool overlapsItself() const {
    return x.target < x.source + x.count && x.source < x.target + x.count &&
           y.target < y.source + y.count && y.source < y.target + y.count;
  }
};

}  // namespace qv
