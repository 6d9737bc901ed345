#include "scenario/area_objects.h"

#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

void NamedPrintArea::create(QVScenario& manager, const ObjectArguments&) {
  area_.setWave(&manager.wave());
}

namespace {

QVPrintArea* areaOf(const RelatedObject& object) {
  return object.logical ? static_cast<QVPrintArea*>(object.logical->native()) : nullptr;
}

}  // namespace

void connectViewToPrintArea(QVScenario&, RelatedObject& view, RelatedObject& area,
                            const Relation::Numbers&) {
  QVPrintArea* printing = areaOf(area);
  if (printing && view.window) printing->setView(view.window->view());
}

void disconnectViewFromPrintArea(QVScenario&, RelatedObject&, RelatedObject& area) {
  if (QVPrintArea* printing = areaOf(area)) printing->setView(nullptr);
}

void connectPrintAreaToSurface(QVScenario&, RelatedObject& area, RelatedObject& surface,
                               const Relation::Numbers&) {
  if (QVPrintArea* printing = areaOf(area))
    printing->setSurface(static_cast<QVVSurface*>(surface.logical->native()));
}

void connectPrintAreaToPrintArea(QVScenario&, RelatedObject& area, RelatedObject& link,
                                 const Relation::Numbers&) {
  if (QVPrintArea* printing = areaOf(area)) printing->setLink(areaOf(link));
}

void connectPrintAreaToHitret(QVScenario&, RelatedObject& area, RelatedObject& hitret,
                              const Relation::Numbers&) {
  QVPrintArea* printing = areaOf(area);
  const auto* step = static_cast<const QVHitret*>(hitret.logical->native());
  if (printing && step) printing->setHitret(*step);
}

// What a handle passes on; unbound ones do nothing.

QVPrintArea* AreaHandle::area() const {
  return object_ ? static_cast<QVPrintArea*>(object_->native()) : nullptr;
}

void AreaHandle::setView(const ViewHandle& view) const {
  QVPrintArea* own = area();
  if (own && view.target()) own->setView(view.target());
}

void AreaHandle::setSurface(const SurfaceHandle& surface) const {
  QVPrintArea* own = area();
  if (own && surface.surface()) own->setSurface(surface.surface());
}

void AreaHandle::setLink(const AreaHandle& link) const {
  QVPrintArea* own = area();
  if (own && link.area()) own->setLink(link.area());
}

void AreaHandle::setHitret(const QVHitret& hitret) const {
  if (QVPrintArea* own = area()) own->setHitret(hitret);
}

void AreaHandle::setRect(int32_t left, int32_t top, int32_t width, int32_t height) const {
  if (QVPrintArea* own = area()) own->setRect(left, top, width, height);
}

void AreaHandle::setPosition(int32_t x, int32_t y) const {
  if (QVPrintArea* own = area()) own->setPosition(x, y);
}

int32_t AreaHandle::setLineHeight(int32_t height) const {
  QVPrintArea* own = area();
  return own ? own->setLineHeight(height) : 0;
}

int32_t AreaHandle::setIndent(int32_t pixels, int32_t side) const {
  QVPrintArea* own = area();
  return own ? own->setIndent(pixels, side) : 0;
}

void AreaHandle::setFlags(uint32_t flags, bool replace) const {
  if (QVPrintArea* own = area()) own->setFlags(flags, replace);
}

void AreaHandle::setNoLineStart(const char* text) const {
  if (QVPrintArea* own = area()) own->setNoLineStart(text);
}

void AreaHandle::setColour(uint32_t colour, int32_t which) const {
  if (QVPrintArea* own = area()) own->setColour(colour, which);
}

void AreaHandle::setFont(int32_t height, int32_t weight, int32_t style, int32_t pitch,
                         int32_t charset, const char* face) const {
  if (QVPrintArea* own = area()) own->setFont(height, weight, style, pitch, charset, face);
}

void AreaHandle::saveBackground() const {
  if (QVPrintArea* own = area()) own->saveBackground();
}

void AreaHandle::clear(bool withLink, bool withFlush) const {
  if (QVPrintArea* own = area()) own->clear(withLink, withFlush);
}

void AreaHandle::home() const {
  if (QVPrintArea* own = area()) own->home();
}

void AreaHandle::printText(const char* text, QVHitret* hitret, const char* wavePath,
                           QVAnimationArea* mouth, bool wait) const {
  if (QVPrintArea* own = area()) own->printText(text, hitret, wavePath, mouth, wait);
}

void AreaHandle::printSurface(const SurfaceHandle& source, const Rectangle& part, ColourKey key,
                              bool clip, bool wait) const {
  QVPrintArea* own = area();
  if (own && source.surface()) own->printSurface(*source.surface(), part, key, clip, wait);
}

void AreaHandle::printImageFile(const char* path, ColourKey key, bool clip, bool wait) const {
  if (QVPrintArea* own = area()) own->printImageFile(path, key, clip, wait);
}

void AreaHandle::printSurfaceKeyless(const SurfaceHandle& source, const Rectangle& part, bool clip,
                                     bool wait) const {
  printSurface(source, part, KeyNone, clip, wait);
}

void AreaHandle::printImageKeyless(const char* path, bool clip, bool wait) const {
  printImageFile(path, KeyNone, clip, wait);
}

}  // namespace qv
