#pragma once

/// A view as the engine sees it: a window with a surface behind it. Scenes and the engine draw into
/// the surface; nothing reaches the screen until the view is told to flush. The host implements it.
/// Any thread; `update` and `flush` return when the pixels stand in the frame. All calls do nothing
/// on a window that is gone.

#include <cstdint>

#include "graphics/rectangle.h"

namespace qv {

class ClickTarget;
class QVVSurface;
class QVVSurface24;

class View {
 public:
  virtual ~View() = default;

  virtual int typeCode() const = 0;
  virtual bool alive() const { return true; }  ///< its window is not gone
  virtual void resize(int32_t width, int32_t height, int32_t repaint) = 0;
  void flushArea(int32_t x, int32_t y, int32_t w, int32_t h, int32_t erase) {
    const Rectangle area = Rectangle::at(x, y, w, h).normalised();
    flush(&area, erase);
  }
  /// `invalidate`, then `update`. Null: the whole window.
  virtual void flush(const Rectangle* area, int32_t erase) {
    invalidate(area, erase);
    update();
  }
  virtual void update() = 0;
  void invalidateArea(int32_t x, int32_t y, int32_t w, int32_t h, int32_t erase) {
    const Rectangle area = Rectangle::at(x, y, w, h).normalised();
    invalidate(&area, erase);
  }
  virtual void invalidate(const Rectangle* area, int32_t erase) = 0;

  /// Exactly one of the two is there: 8 bits for kind 5, 32 bits for kind 13.
  virtual QVVSurface* surface8() = 0;
  virtual QVVSurface24* surface32() = 0;
  virtual Rectangle clientRectangle() const = 0;  ///< at 0, 0

  /// Raises the hold count: painting waits.
  virtual void hold() = 0;
  /// Lowers it; at 0 with `redraw` the whole view is painted in one step.
  virtual void release(bool redraw) = 0;

  /// Puts a click map on the view, over those that are there: the pointer over the view is the
  /// map's from now on. The view only borrows it. Scenario thread, without a lock that painting
  /// takes.
  virtual void addClickMap(ClickTarget& /*map*/) {}
  /// Takes it off; false when it was not on it (any more: a window that goes loses its maps). No
  /// thread repaints it when this returns.
  virtual bool removeClickMap(ClickTarget& /*map*/) { return false; }
  /// Lets click maps on the view draw what they show over new pixels; nothing where it has none.
  virtual void repaintClickMaps() {}

  /// Whether the right mouse button is down: what stops a tile dissolve.
  virtual bool rightButtonDown() const = 0;
  /// How often it was pressed since the program began, modulo 2 to the power 32: by it a press is
  /// seen that came and went between two looks.
  virtual uint32_t rightButtonPresses() const { return 0; }
};

}  // namespace qv
