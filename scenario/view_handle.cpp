#include "graphics/position.h"
#include "scenario/handles.h"

namespace qv {

template <typename Work>
void ViewHandle::change(const Rectangle* area, Flush flush, Work work) const {
  View* const view = target();
  QVVSurface* const onto = surface();
  if (!onto) return;
  work(*onto);
  if (flush == Flush::Yes) view->flush(area, 0);
}

int32_t ViewHandle::width() const {
  return target() ? target()->clientRectangle().width() : 0;
}

int32_t ViewHandle::height() const {
  return target() ? target()->clientRectangle().height() : 0;
}

void ViewHandle::draw(const SurfaceHandle& source, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                      int32_t w, int32_t h, ColourKey key, Flush flush) const {
  drawBlended(source, dx, dy, sx, sy, w, h, 0, key, flush);
}

void ViewHandle::drawBlended(const SurfaceHandle& source, int32_t dx, int32_t dy, int32_t sx,
                             int32_t sy, int32_t w, int32_t h, int32_t level, ColourKey key,
                             Flush flush) const {
  const QVVSurface* const picture = source.surface();
  if (!picture) return;
  if (w == 0) w = picture->width();
  if (h == 0) h = picture->height();
  dx = drawPositionX(dx, width(), w);
  dy = drawPositionY(dy, height(), h);
  const Rectangle area = Rectangle::at(dx, dy, w, h);
  change(&area, flush, [&](QVVSurface& onto) {
    if (level == 0)
      picture->blit(onto, dx, dy, sx, sy, w, h, key);
    else if (key == KeyNone)
      picture->blitBlended(onto, dx, dy, sx, sy, w, h, level);
    else
      picture->blitBlendedKey(onto, dx, dy, sx, sy, w, h, level, key);
  });
}

void ViewHandle::fill(uint8_t index, const Rectangle* rectangle, Flush flush) const {
  change(rectangle, flush, [&](QVVSurface& onto) { onto.fill(index, rectangle); });
}

void ViewHandle::setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst,
                            int32_t count, Flush flush) const {
  change(nullptr, flush,
         [&](QVVSurface& onto) { onto.setColours(table, targetFirst, sourceFirst, count); });
}

void ViewHandle::copyPaletteFrom(const SurfaceHandle& source, Flush flush) const {
  const QVVSurface* const picture = source.surface();
  if (!picture) return;
  change(nullptr, flush, [&](QVVSurface& onto) { onto.copyPaletteFrom(*picture); });
}

void ViewHandle::fadePalette(const ColourTable& table, int32_t step, int32_t steps,
                             Flush flush) const {
  change(nullptr, flush, [&](QVVSurface& onto) { onto.fadePalette(table, step, steps); });
}

void ViewHandle::tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first,
                                int32_t count, Flush flush) const {
  change(nullptr, flush,
         [&](QVVSurface& onto) { onto.tintMonochrome(red, green, blue, first, count); });
}

void ViewHandle::takePalette(scobjPalette& palette) const {
  if (const QVVSurface* from = surface()) palette.takeFromSurface(*from);
}

void ViewHandle::flush(const Rectangle* area) const {
  if (View* view = target()) view->flush(area, 0);
}

void ViewHandle::invalidate(const Rectangle* area) const {
  if (View* view = target()) view->invalidate(area, 0);
}

void ViewHandle::update() const {
  if (View* view = target()) view->update();
}

void ViewHandle::hold() const {
  if (View* view = target()) view->hold();
}

void ViewHandle::release(bool redraw) const {
  if (View* view = target()) view->release(redraw);
}

void ViewHandle::resize(int32_t width, int32_t height) const {
  if (View* view = target()) view->resize(width, height, 1);
}

void ViewHandle::show(bool visible) const {
  if (view_) view_->show(visible);
}

}  // namespace qv
