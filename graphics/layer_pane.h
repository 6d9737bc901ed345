#pragma once

/// LayerPane: pictures in layers over one another, painted together onto a surface where they have
/// changed. One dirty rectangle is kept, the union of all changes. Panes may lie in layers of other
/// panes; only the outermost has a view. Any thread; panes in one another share one lock.

#include <cstdint>
#include <list>
#include <memory>

#include "graphics/colour_key.h"
#include "graphics/rectangle.h"
#include "platform/kernel/kernel.h"

namespace qv {

class LayerPane;
class QVVSurface;
class QVVSurface24;
class View;

/// A picture or a pane in a pane; the surface and the pane belong to whoever adds the layer, and
/// stay until it is removed.
struct PaneLayer {
  const QVVSurface* surface = nullptr;
  LayerPane* pane = nullptr;
  ColourKey key = KeyNone;
  int32_t identifier = 0;
  Rectangle rectangle;  ///< in the pane
  bool visible = true;
  int32_t level = 0;  ///< of a blended blit; 0 draws plainly
};

class LayerPane {
 public:
  /// `extent`: position and size in the parent, or in the view. In a layer it is the layer that
  /// says the position.
  explicit LayerPane(const Rectangle& extent, LayerPane* parent = nullptr);
  LayerPane(const LayerPane&) = delete;
  LayerPane& operator=(const LayerPane&) = delete;

  /// Where it is shown, and the view's surface as its target.
  void setView(View* view);
  /// Where it is painted; the 32-bit one where both are set. Without any, the parent's.
  void setTarget(QVVSurface* surface8, QVVSurface24* surface32);

  /// On top of the others. A layer of that identifier is replaced.
  void addLayer(const PaneLayer& layer);
  void removeLayer(int32_t identifier);
  void moveLayer(int32_t identifier, int32_t x, int32_t y);
  void showLayer(int32_t identifier, bool visible);
  void setLayerLevel(int32_t identifier, int32_t level);

  /// Null: all of it. A pane without a view passes it on to its parent; one with a view paints
  /// when `now` is set.
  void invalidate(const Rectangle* area, bool now);
  /// Paints what is dirty and flushes it; an empty dirty rectangle does nothing at all.
  void paint();

  Rectangle dirty() const;

 private:
  struct Target {
    QVVSurface* surface8;
    QVVSurface24* surface32;
    int32_t x, y;  ///< of the pane on it
  };
  PaneLayer* find(int32_t identifier);
  void addDirty(const Rectangle& area);
  static void placePane(const PaneLayer& layer);
  Target target() const;
  void drawLayer(const PaneLayer& layer, const Rectangle& part, const Target& target) const;

  LayerPane* const parent_;
  const std::shared_ptr<Lock> lock_;  ///< guards all below
  Rectangle extent_;
  View* view_ = nullptr;
  QVVSurface* surface8_ = nullptr;
  QVVSurface24* surface32_ = nullptr;
  Rectangle dirty_;
  std::list<PaneLayer> layers_;  ///< painted in this order
};

}  // namespace qv
