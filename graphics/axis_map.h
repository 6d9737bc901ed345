#pragma once

/// How pictures are made larger, smaller or repeated: one direction at a time. Pure functions.

#include <algorithm>
#include <cstdint>
#include <vector>

#include "graphics/clip.h"
#include "graphics/rectangle.h"

namespace qv {

/// Which source column (or row) each of a run of target columns (or rows) takes.
struct AxisMap {
  int32_t first = 0;  ///< in the target
  std::vector<int32_t> sources;
};

/// `sourceOf` tells the source of each of `count` places from `start` on, never falling. Sources
/// outside the source's extent and places outside the target's are left out.
template <class SourceOf>
AxisMap mapAxis(int64_t start, int64_t count, int32_t targetExtent, int32_t sourceExtent,
                SourceOf sourceOf) {
  AxisMap map;
  const int64_t end = std::min<int64_t>(start + count, targetExtent);
  for (int64_t place = std::max<int64_t>(start, 0); place < end; ++place) {
    const int64_t source = sourceOf(place - start);
    if (source < 0) continue;
    if (source >= sourceExtent) break;
    if (map.sources.empty()) map.first = static_cast<int32_t>(place);
    map.sources.push_back(static_cast<int32_t>(source));
  }
  return map;
}

/// The whole source over `count` places: each takes the pixel under its centre.
inline AxisMap mapStretched(int64_t start, int64_t count, int32_t targetExtent,
                            int32_t sourceExtent) {
  return mapAxis(start, count, targetExtent, sourceExtent,
                 [=](int64_t i) { return (2 * i + 1) * sourceExtent / (2 * count); });
}

/// A factor n repeats each pixel n times, -n takes every n-th one.
inline AxisMap mapScaled(const BlitAxis& axis, int64_t factor, int32_t targetExtent,
                         int32_t sourceExtent) {
  const int64_t taken = std::max<int64_t>(axis.count, 0), source = axis.source;
  if (factor > 0)
    return mapAxis(axis.target, taken * factor, targetExtent, sourceExtent,
                   [=](int64_t i) { return source + i / factor; });
  return mapAxis(axis.target, taken / -factor, targetExtent, sourceExtent,
                 [=](int64_t i) { return source - i * factor; });
}

/// One direction of a tiled area.
struct TileRun {
  int64_t start = 0, size = 0;      ///< of the area, of a tile
  int64_t whole = 0, rest = 0;      ///< whole tiles, pixels of the last one
  int64_t firstSeen = 0, seen = 0;  ///< of the whole ones, those that meet the target: first, end

  TileRun(int64_t begin, int64_t end, int64_t tile, int64_t targetExtent)
      : start(begin), size(tile) {
    if (end <= begin || tile < 1) return;
    whole = (end - begin) / tile;
    rest = (end - begin) % tile;
    firstSeen = std::clamp<int64_t>(-begin / tile, 0, whole);
    seen = begin >= targetExtent
               ? firstSeen
               : std::clamp<int64_t>((targetExtent - begin + tile - 1) / tile, firstSeen, whole);
  }
  int32_t place(int64_t index) const { return static_cast<int32_t>(start + index * size); }
};

/// Calls `draw` with each tile that can meet the target: whole ones first, then the right column,
/// the bottom row and the corner with what is left of their sizes.
template <class Draw>
void eachTile(const Rectangle& area, int32_t tileWidth, int32_t tileHeight, int32_t targetWidth,
              int32_t targetHeight, Draw draw) {
  const TileRun x(area.left, area.right, tileWidth, targetWidth);
  const TileRun y(area.top, area.bottom, tileHeight, targetHeight);
  const auto drawAt = [&](int64_t column, int64_t row, int64_t width, int64_t height) {
    draw(Rectangle::at(x.place(column), y.place(row), static_cast<int32_t>(width),
                       static_cast<int32_t>(height)));
  };
  for (int64_t row = y.firstSeen; row < y.seen; ++row)
    for (int64_t column = x.firstSeen; column < x.seen; ++column)
      drawAt(column, row, x.size, y.size);
  if (x.rest)
    for (int64_t row = y.firstSeen; row < y.seen; ++row)
      drawAt(x.whole, row, x.rest, y.size);
  if (y.rest)
    for (int64_t column = x.firstSeen; column < x.seen; ++column)
      drawAt(column, y.whole, x.size, y.rest);
  if (x.rest && y.rest) drawAt(x.whole, y.whole, x.rest, y.rest);
}

}  // namespace qv
