#pragma once

/// Where the game screen lies in a real window of another size, and the way of a point between
/// the two. Pure functions; any thread.

#include "platform/display/display.h"

namespace qv {

struct ScreenPoint {
  int x = 0, y = 0;
  bool operator==(const ScreenPoint&) const = default;
};

/// The rectangle of the output that shows the game screen, in output pixels.
struct ScreenFit {
  int x = 0, y = 0, width = ScreenWidth, height = ScreenHeight;

  /// The game's pixel at a point of the output; clamped to the game screen.
  ScreenPoint toGame(int outputX, int outputY) const;
  /// A point of the output that shows the game's pixel: `toGame` leads back to it wherever the
  /// screen is not shown smaller than it is.
  ScreenPoint toOutput(int gameX, int gameY) const;
};

/// Fit: as large as the output allows, with bars at two sides. WholeFactors: the largest whole
/// multiple, or Fit where not even one whole screen has room. Sizes below 1 count as 1.
ScreenFit fitScreen(int outputWidth, int outputHeight, Scaling scaling);

}  // namespace qv
