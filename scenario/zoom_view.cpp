// ZoomView: names to objects; graphics/transition/zoom.h draws.

#include "graphics/pace.h"
#include "graphics/surface.h"
#include "graphics/transition/zoom.h"
#include "graphics/view.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

// The clear argument: a number where a name could stand.
constexpr intptr_t ClearNothing = -1, FirstClearName = 256;

QVVSurface* surfaceNamed(QVScenario& manager, const char* name) {
  return static_cast<QVVSurface*>(manager.FindNative(name, TypeSurface));
}

}  // namespace

void QVScenario::ZoomView(const char* viewName, const char* surfaceName, int32_t x0, int32_t y0,
                          int32_t w0, int32_t h0, int32_t x1, int32_t y1, int32_t w1, int32_t h1,
                          int32_t steps, ObjectArgument clear) {
  QVVSurface* const picture = surfaceNamed(*this, surfaceName);
  if (!picture) return;
  WindowObject* const window = FindView(viewName);
  if (!window) {
    if (QVVSurface* target = surfaceNamed(*this, viewName))
      picture->stretchTo(*target, x1, y1, w1, h1);
    return;
  }
  View* const view = window->typeCode() == TypeView ? window->view() : nullptr;
  if (!view) return;

  Zoom zoom;
  zoom.from = Rectangle::at(x0, y0, w0, h0).normalised();
  zoom.to = Rectangle::at(x1, y1, w1, h1).normalised();
  zoom.steps = steps;
  QVVSurface loaded;
  if (clear.word() >= FirstClearName) {
    zoom.clearSurface = surfaceNamed(*this, clear.text());
    if (!zoom.clearSurface) {
      loaded.loadByName(clear.text());
      zoom.clearSurface = &loaded;
    }
  } else if (clear.word() != ClearNothing) {
    zoom.clearIndex = static_cast<uint8_t>(clear.word());
  }
  Pace pace(host_ ? &host_->abortEvent.handle() : nullptr);
  zoomOnto(*view, *picture, zoom, pace);
}

}  // namespace qv
