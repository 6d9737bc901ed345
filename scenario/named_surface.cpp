#include "scenario/named_surface.h"

#include "scenario/handles.h"
#include "scenario/scenario.h"

namespace qv {

void NamedSurface::create(QVScenario&, const ObjectArguments& arguments) {
  if (arguments.a2)
    surface_.create(arguments.a1.number(), arguments.a2.number());
  else if (arguments.a1)
    surface_.loadByName(arguments.a1.text());
}

// What a handle passes on; unbound ones do nothing.

QVVSurface* SurfaceHandle::surface() const {
  return object_ ? static_cast<QVVSurface*>(object_->native()) : nullptr;
}

int32_t SurfaceHandle::width() const {
  const QVVSurface* own = surface();
  return own ? own->width() : 0;
}

int32_t SurfaceHandle::height() const {
  const QVVSurface* own = surface();
  return own ? own->height() : 0;
}

void SurfaceHandle::create(int32_t width, int32_t height) const {
  if (QVVSurface* own = surface()) own->create(width, height);
}

void SurfaceHandle::loadByName(const char* name) const {
  if (QVVSurface* own = surface()) own->loadByName(name);
}

void SurfaceHandle::fill(uint8_t index, const Rectangle* rectangle) const {
  if (QVVSurface* own = surface()) own->fill(index, rectangle);
}

void SurfaceHandle::mirror(int32_t axis, int32_t x, int32_t y, int32_t w, int32_t h) const {
  if (QVVSurface* own = surface()) own->mirror(axis, x, y, w, h);
}

void SurfaceHandle::blit(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx,
                         int32_t sy, int32_t w, int32_t h, ColourKey key) const {
  const QVVSurface* own = surface();
  QVVSurface* onto = target.surface();
  if (own && onto) own->blit(*onto, dx, dy, sx, sy, w, h, key);
}

void SurfaceHandle::blitBlended(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx,
                                int32_t sy, int32_t w, int32_t h, int32_t level) const {
  blitBlendedKey(target, dx, dy, sx, sy, w, h, level, KeyNone);
}

void SurfaceHandle::blitBlendedKey(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx,
                                   int32_t sy, int32_t w, int32_t h, int32_t level,
                                   ColourKey key) const {
  const QVVSurface* own = surface();
  QVVSurface* onto = target.surface();
  if (own && onto) own->blitBlendedKey(*onto, dx, dy, sx, sy, w, h, level, key);
}

void SurfaceHandle::blitScaled(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx,
                               int32_t sy, int32_t w, int32_t h, int32_t xFactor,
                               int32_t yFactor) const {
  const QVVSurface* own = surface();
  QVVSurface* onto = target.surface();
  if (own && onto) own->blitScaled(*onto, dx, dy, sx, sy, w, h, xFactor, yFactor);
}

void SurfaceHandle::stretchTo(const SurfaceHandle& target, int32_t x, int32_t y, int32_t w,
                              int32_t h) const {
  QVVSurface* own = surface();
  QVVSurface* onto = target.surface();
  if (own && onto) own->stretchTo(*onto, x, y, w, h);
}

void SurfaceHandle::tileOnto(const SurfaceHandle& target, const Rectangle* rectangle,
                             bool copyPalette) const {
  QVVSurface* own = surface();
  QVVSurface* onto = target.surface();
  if (own && onto) own->tileOnto(*onto, rectangle, copyPalette);
}

void SurfaceHandle::setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst,
                               int32_t count) const {
  if (QVVSurface* own = surface()) own->setColours(table, targetFirst, sourceFirst, count);
}

void SurfaceHandle::setColoursRange(const ColourTable& table, int32_t first, int32_t count) const {
  if (QVVSurface* own = surface()) own->setColoursRange(table, first, count);
}

void SurfaceHandle::copyPaletteFrom(const SurfaceHandle& source) const {
  QVVSurface* own = surface();
  const QVVSurface* from = source.surface();
  if (own && from) own->copyPaletteFrom(*from);
}

void SurfaceHandle::fadePalette(const ColourTable& target, int32_t step, int32_t steps) const {
  if (QVVSurface* own = surface()) own->fadePalette(target, step, steps);
}

void SurfaceHandle::tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first,
                                   int32_t count) const {
  if (QVVSurface* own = surface()) own->tintMonochrome(red, green, blue, first, count);
}

void SurfaceHandle::takePalette(scobjPalette& palette) const {
  if (const QVVSurface* own = surface()) palette.takeFromSurface(*own);
}

void SurfaceHandle::saveBmpByName(const char* path) const {
  if (QVVSurface* own = surface()) own->saveBmpByName(path);
}

}  // namespace qv
