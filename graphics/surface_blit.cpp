#include <algorithm>
#include <cstring>

#include "graphics/axis_map.h"
#include "graphics/overlap.h"
#include "graphics/surface.h"
#include "graphics/surface_pair.h"

// The blits of QVVSurface.

namespace qv {

namespace {

// The level argument of the blends between two surfaces of 8 bits.
constexpr int32_t LeastPatternLevel = -15, PatternLevels = 16, LeastCombStep = 2, CopyLevel = 0;

// Of the blends onto 32 bits.
constexpr int32_t WholeLevel = 16;

/// Factors of -1 and 0 leave the size too.
int32_t plainFactor(int32_t factor) {
  return factor >= -1 && factor <= 1 ? 1 : factor;
}

}  // namespace

KernelRows QVVSurface::rowsOf(QVVSurface& target, const BlitArea& area) const {
  return {target.at(area.x.target, area.y.target),
          strideOf(target.width_),
          at(area.x.source, area.y.source),
          strideOf(width_),
          area.width(),
          area.height()};
}

uint8_t QVVSurface::keyByte(ColourKey key) const {
  return key == KeyTopLeft ? *at(0, 0) : static_cast<uint8_t>(key);
}

void QVVSurface::blitArea(QVVSurface& target, BlitArea area, ColourKey key) const {
  if (!area.clip(target.width_, target.height_, width_, height_)) return;
  const KernelRows rows = rowsOf(target, area);
  const bool within = &target == this && area.overlapsItself();
  if (key == KeyNone)
    within ? copyRowsWithin(form_, rows) : copyRows(form_, rows);
  else
    (within ? copyRowsKeyWithin : copyRowsKey)(form_, rows, keyByte(key));
}

void QVVSurface::blendArea(QVVSurface& target, BlitArea area, int32_t level, ColourKey key) const {
  if (level < LeastPatternLevel) return;
  if (level >= CopyLevel && level < LeastCombStep) {
    blitArea(target, area, key);
    return;
  }
  if (!area.clip(target.width_, target.height_, width_, height_)) return;
  const KernelRows rows = rowsOf(target, area);
  // The plain loops go pixel by pixel, which is the order that overlapping rectangles need.
  const bool within = &target == this && area.overlapsItself();
  const KernelForm form = within ? KernelForm::Plain : form_;
  if (level < CopyLevel && key == KeyNone)
    ditherRows(form, rows, level + PatternLevels);
  else if (level < CopyLevel)
    ditherRowsKey(form, rows, level + PatternLevels, keyByte(key));
  else if (key == KeyNone)
    combRows(form, rows, level);
  else
    combRowsKey(form, rows, level, keyByte(key));
}

void QVVSurface::blendAreaTo32(QVVSurface24& target, BlitArea area, int32_t level,
                               ColourKey key) const {
  if (!area.clip(target.width_, target.height_, width_, height_)) return;
  constexpr auto PixelBytes = static_cast<int>(sizeof(uint32_t));
  const KernelRows rows = {reinterpret_cast<uint8_t*>(target.at(area.x.target, area.y.target)),
                           target.width_ * PixelBytes,
                           at(area.x.source, area.y.source),
                           strideOf(width_),
                           area.width(),
                           area.height()};
  const int32_t sixteenths = std::clamp(level, 0, WholeLevel);
  if (key == KeyNone)
    blendRows(form_, rows, stored_.data(), sixteenths);
  else
    blendRowsKey(form_, rows, stored_.data(), sixteenths, keyByte(key));
}

void QVVSurface::blitMapped(QVVSurface& target, const AxisMap& columns, const AxisMap& rows) const {
  const size_t width = columns.sources.size();
  if (width == 0) return;
  int32_t y = rows.first, rowAbove = -1;
  for (const int32_t sourceRow : rows.sources) {
    uint8_t* to = target.at(columns.first, y++);
    // A repeated row is the one above it, but within one surface its source may have changed.
    if (sourceRow == rowAbove && &target != this) {
      std::memcpy(to, to + strideOf(target.width_), width);
      continue;
    }
    const uint8_t* from = at(0, sourceRow);
    for (size_t x = 0; x < width; ++x)
      to[x] = from[columns.sources[x]];
    rowAbove = sourceRow;
  }
}

void QVVSurface::blit(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
                      int32_t h, ColourKey key) const {
  const SurfacePair pair(*this, target);
  blitArea(target, {dx, dy, sx, sy, w, h}, key);
}

void QVVSurface::blitBlended(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                             int32_t w, int32_t h, int32_t level) const {
  const SurfacePair pair(*this, target);
  blendArea(target, {dx, dy, sx, sy, w, h}, level, KeyNone);
}

void QVVSurface::blitBlendedKey(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                                int32_t w, int32_t h, int32_t level, ColourKey key) const {
  const SurfacePair pair(*this, target);
  blendArea(target, {dx, dy, sx, sy, w, h}, level, key);
}

void QVVSurface::blitTo32(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                          int32_t w, int32_t h, ColourKey key) const {
  const SurfacePair pair(*this, target);
  blendAreaTo32(target, {dx, dy, sx, sy, w, h}, WholeLevel, key);
}

void QVVSurface::blitTo32Blend(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                               int32_t w, int32_t h, int32_t level) const {
  const SurfacePair pair(*this, target);
  blendAreaTo32(target, {dx, dy, sx, sy, w, h}, level, KeyNone);
}

void QVVSurface::blitTo32BlendKey(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx,
                                  int32_t sy, int32_t w, int32_t h, int32_t level,
                                  ColourKey key) const {
  const SurfacePair pair(*this, target);
  blendAreaTo32(target, {dx, dy, sx, sy, w, h}, level, key);
}

void QVVSurface::blitScaled(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                            int32_t w, int32_t h, int32_t xFactor, int32_t yFactor) const {
  const int32_t fx = plainFactor(xFactor), fy = plainFactor(yFactor);
  const SurfacePair pair(*this, target);
  if (fx == 1 && fy == 1) {
    blitArea(target, {dx, dy, sx, sy, w, h}, KeyNone);
    return;
  }
  const AxisMap columns = mapScaled({dx, sx, w}, fx, target.width_, width_);
  const AxisMap rows = mapScaled({dy, sy, h}, fy, target.height_, height_);
  blitMapped(target, columns, rows);
}

void QVVSurface::stretchTo(QVVSurface& target, int32_t x, int32_t y, int32_t w, int32_t h) {
  const SurfacePair pair(*this, target);
  const AxisMap columns = mapStretched(x, w, target.width_, width_);
  const AxisMap rows = mapStretched(y, h, target.height_, height_);
  blitMapped(target, columns, rows);
}

void QVVSurface::tileOnto(QVVSurface& target, const Rectangle* rectangle, bool copyPalette) {
  const SurfacePair pair(*this, target);
  if (copyPalette) {
    target.stored_ = stored_;
    target.showStored();
  }
  const Rectangle area = rectangle ? *rectangle : Rectangle{0, 0, target.width_, target.height_};
  eachTile(area, width_, height_, target.width_, target.height_, [&](const Rectangle& tile) {
    blitArea(target, {tile.left, tile.top, 0, 0, tile.width(), tile.height()}, KeyNone);
  });
}

}  // namespace qv
