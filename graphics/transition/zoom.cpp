#include "graphics/transition/zoom.h"

#include "graphics/surface.h"
#include "graphics/view.h"

namespace qv {

namespace {

int32_t between(int32_t from, int32_t to, int32_t step, int32_t steps) {
  return static_cast<int32_t>(from + (int64_t{to} - from) * step / steps);
}

/// True when there is something to clear with.
bool clearView(QVVSurface& target, const Zoom& zoom) {
  if (zoom.clearSurface)
    zoom.clearSurface->blit(target, 0, 0, 0, 0, zoom.clearSurface->width(),
                            zoom.clearSurface->height(), KeyNone);
  else if (zoom.clearIndex)
    target.fill(*zoom.clearIndex);
  else
    return false;
  return true;
}

}  // namespace

Rectangle zoomStep(const Zoom& zoom, int32_t step) {
  const Rectangle &from = zoom.from, &to = zoom.to;
  const auto at = [&](int32_t a, int32_t b) { return between(a, b, step, zoom.steps); };
  return Rectangle::at(at(from.left, to.left), at(from.top, to.top), at(from.width(), to.width()),
                       at(from.height(), to.height()));
}

void zoomOnto(View& view, QVVSurface& picture, const Zoom& zoom, Pace& pace) {
  QVVSurface* const target = view.surface8();
  if (!target) return;
  target->copyPaletteFrom(picture);
  for (int32_t step = 1; step <= zoom.steps; ++step) {
    if (pace.aborted()) step = zoom.steps;
    pace.mark();
    const Rectangle area = zoomStep(zoom, step);
    const bool cleared = clearView(*target, zoom);
    picture.stretchTo(*target, area.left, area.top, area.width(), area.height());
    if (cleared)
      view.flush(nullptr, 0);
    else if (!area.empty())
      view.flush(&area, 0);
    // The frames of a zoom were paced by slow stretching.
    pace.waitSince(FrameMillis);
    if (step == zoom.steps) break;
  }
}

}  // namespace qv
