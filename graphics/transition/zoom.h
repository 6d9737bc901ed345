#pragma once

/// The drawing part of ZoomView: a picture is stretched over a view from one rectangle to another.
/// The scenario thread, which is blocked meanwhile.

#include <cstdint>
#include <optional>

#include "graphics/pace.h"
#include "graphics/rectangle.h"

namespace qv {

class QVVSurface;
class View;

struct Zoom {
  Rectangle from, to;  ///< normalised; they may stand partly off the view
  int32_t steps = 0;   ///< below 1 only the colours are taken
  /// What each frame is drawn on: an index, a surface, or what the last frame left.
  std::optional<uint8_t> clearIndex;
  const QVVSurface* clearSurface = nullptr;
};

/// x, y, width and height of step `step` (from 1) each on its own way, truncated towards zero; the
/// last step is exactly `to`.
Rectangle zoomStep(const Zoom& zoom, int32_t step);
/// `picture` onto an 8-bit view; nothing on any other.
void zoomOnto(View& view, QVVSurface& picture, const Zoom& zoom, Pace& pace);

}  // namespace qv
