#include "graphics/layer_pane.h"

#include <algorithm>
#include <mutex>

#include "graphics/surface.h"
#include "graphics/view.h"

namespace qv {

LayerPane::LayerPane(const Rectangle& extent, LayerPane* parent)
    : parent_(parent),
      lock_(parent ? parent->lock_ : std::make_shared<Lock>("layer pane", LockRank::Object)),
      extent_(extent) {}

void LayerPane::setView(View* view) {
  const std::lock_guard guard(*lock_);
  view_ = view;
  surface8_ = view ? view->surface8() : nullptr;
  surface32_ = view ? view->surface32() : nullptr;
}

void LayerPane::setTarget(QVVSurface* surface8, QVVSurface24* surface32) {
  const std::lock_guard guard(*lock_);
  surface8_ = surface8;
  surface32_ = surface32;
}

PaneLayer* LayerPane::find(int32_t identifier) {
  const auto found = std::ranges::find(layers_, identifier, &PaneLayer::identifier);
  return found == layers_.end() ? nullptr : &*found;
}

void LayerPane::addDirty(const Rectangle& area) {
  dirty_ = dirty_.empty() ? area : dirty_.united(area);
}

/// A pane in a layer lies where the layer lies.
void LayerPane::placePane(const PaneLayer& layer) {
  if (!layer.pane) return;
  Rectangle& extent = layer.pane->extent_;
  extent = extent.moved(layer.rectangle.left - extent.left, layer.rectangle.top - extent.top);
}

void LayerPane::addLayer(const PaneLayer& layer) {
  const std::lock_guard guard(*lock_);
  removeLayer(layer.identifier);
  placePane(layer);
  layers_.push_back(layer);
  addDirty(layer.rectangle);
}

void LayerPane::removeLayer(int32_t identifier) {
  const std::lock_guard guard(*lock_);
  const PaneLayer* layer = find(identifier);
  if (!layer) return;
  addDirty(layer->rectangle);
  layers_.remove_if([layer](const PaneLayer& entry) { return &entry == layer; });
}

void LayerPane::moveLayer(int32_t identifier, int32_t x, int32_t y) {
  const std::lock_guard guard(*lock_);
  PaneLayer* layer = find(identifier);
  if (!layer) return;
  addDirty(layer->rectangle);
  layer->rectangle = layer->rectangle.moved(x - layer->rectangle.left, y - layer->rectangle.top);
  placePane(*layer);
  addDirty(layer->rectangle);
}

void LayerPane::showLayer(int32_t identifier, bool visible) {
  const std::lock_guard guard(*lock_);
  PaneLayer* layer = find(identifier);
  if (!layer) return;
  layer->visible = visible;
  addDirty(layer->rectangle);
}

void LayerPane::setLayerLevel(int32_t identifier, int32_t level) {
  const std::lock_guard guard(*lock_);
  PaneLayer* layer = find(identifier);
  if (!layer) return;
  layer->level = level;
  addDirty(layer->rectangle);
}

Rectangle LayerPane::dirty() const {
  const std::lock_guard guard(*lock_);
  return dirty_;
}

void LayerPane::invalidate(const Rectangle* area, bool now) {
  const std::lock_guard guard(*lock_);
  const Rectangle whole = Rectangle::at(0, 0, extent_.width(), extent_.height());
  if (area)
    addDirty(*area);
  else
    dirty_ = whole;
  if (view_) {
    if (now) paint();
  } else if (parent_) {
    const Rectangle passed = (area ? *area : whole).moved(extent_.left, extent_.top);
    parent_->invalidate(&passed, now);
  }
}

LayerPane::Target LayerPane::target() const {
  Target target{surface8_, surface32_, extent_.left, extent_.top};
  for (const LayerPane* pane = parent_; pane; pane = pane->parent_) {
    target.x += pane->extent_.left;
    target.y += pane->extent_.top;
    if (target.surface8 || target.surface32) continue;
    target.surface8 = pane->surface8_;
    target.surface32 = pane->surface32_;
  }
  return target;
}

/// `part` lies in the layer's rectangle, in the pane.
void LayerPane::drawLayer(const PaneLayer& layer, const Rectangle& part,
                          const Target& target) const {
  const int32_t dx = part.left + target.x, dy = part.top + target.y;
  const int32_t sx = part.left - layer.rectangle.left, sy = part.top - layer.rectangle.top;
  const int32_t w = part.width(), h = part.height();
  if (target.surface32) {
    if (layer.level != 0)
      layer.surface->blitTo32BlendKey(*target.surface32, dx, dy, sx, sy, w, h, layer.level,
                                      layer.key);
    else
      layer.surface->blitTo32(*target.surface32, dx, dy, sx, sy, w, h, layer.key);
  } else if (target.surface8) {
    if (layer.level != 0)
      layer.surface->blitBlendedKey(*target.surface8, dx, dy, sx, sy, w, h, layer.level, layer.key);
    else
      layer.surface->blit(*target.surface8, dx, dy, sx, sy, w, h, layer.key);
  }
}

void LayerPane::paint() {
  const std::lock_guard guard(*lock_);
  if (dirty_.empty()) return;
  dirty_ = dirty_.intersected({0, 0, extent_.width(), extent_.height()});
  if (dirty_.empty()) {
    dirty_ = {};
    return;
  }
  const Target onto = target();
  for (const PaneLayer& layer : layers_) {
    const Rectangle part = layer.rectangle.intersected(dirty_);
    if (!layer.visible || part.empty()) continue;
    if (layer.surface) drawLayer(layer, part, onto);
    if (layer.pane) {
      layer.pane->dirty_ = part.moved(-layer.rectangle.left, -layer.rectangle.top);
      layer.pane->paint();
    }
  }
  if (view_) {
    const Rectangle shown = dirty_.moved(extent_.left, extent_.top);
    view_->flush(&shown, 0);
  }
  dirty_ = {};
}

}  // namespace qv
