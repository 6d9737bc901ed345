#include "graphics/animation/animation_surface.h"

namespace qv {

AnimationCell& QVAnimationSurfaceContainer::grown(int32_t index) {
  increase(index, GrowthStep);
  return (*this)[index];
}

const AnimationCell* QVAnimationSurfaceContainer::picture(int32_t index) const {
  if (index < 0 || index >= size()) return nullptr;
  const AnimationCell& cell = (*this)[index];
  return cell.surface && cell.key != KeyNoPicture ? &cell : nullptr;
}

void QVAnimationSurface::load(int32_t count, const char* file, bool useKey, ColourKey key) {
  QVVSurface strip;
  strip.loadFromFile(file);
  if (count < 1) return;
  const int32_t width = strip.width() / count, height = strip.height();
  if (width < 1) return;

  for (int32_t index = 0; index < count; ++index) {
    AnimationCell& cell = cells_.grown(index);
    cell.surface = std::make_unique<QVVSurface>();
    cell.key = useKey ? key : KeyNone;
    cell.surface->create(width, height);
    cell.surface->copyPaletteFrom(strip);
    strip.blit(*cell.surface, 0, 0, index * width, 0, width, height, KeyNone);
  }
  loaded_ = count;
}

void QVAnimationSurface::drawCell(QVVSurface& target, int32_t x, int32_t y, int32_t cell) const {
  const auto [width, height] = cellSize(cell);
  drawCellPart(target, x, y, 0, 0, width, height, cell);
}

void QVAnimationSurface::drawCellPart(QVVSurface& target, int32_t dx, int32_t dy, int32_t sx,
                                      int32_t sy, int32_t w, int32_t h, int32_t cell) const {
  if (const AnimationCell* drawn = cells_.picture(cell))
    drawn->surface->blit(target, dx, dy, sx, sy, w, h, drawn->key);
}

QVAnimationSurface::Size QVAnimationSurface::cellSize(int32_t cell) const {
  const AnimationCell* measured = cells_.picture(cell);
  if (!measured) return {};
  return {measured->surface->width(), measured->surface->height()};
}

}  // namespace qv
