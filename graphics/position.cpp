#include "graphics/position.h"

#include <algorithm>

namespace qv {

int32_t drawPositionX(int32_t x, int32_t viewWidth, int32_t pictureWidth) {
  switch (x) {
    case PositionRight:
      return viewWidth - pictureWidth;
    case PositionLeft:
      return 0;
    case PositionCentre:
      return (viewWidth - pictureWidth) / 2;
    default:
      return x;
  }
}

int32_t drawPositionY(int32_t y, int32_t viewHeight, int32_t pictureHeight) {
  switch (y) {
    case PositionBottom:
      return viewHeight - pictureHeight;
    case PositionTop:
      return 0;
    case PositionCentre:
      return (viewHeight - pictureHeight) / 2;
    default:
      return y;
  }
}

WindowPosition centredWindow(int32_t areaWidth, int32_t areaHeight, int32_t width, int32_t height) {
  // Palette displays copied fastest to columns that are a multiple of 8; stories know the places.
  constexpr int32_t Grid = 8;
  return {((areaWidth - width) / 2 + Grid / 2) & ~(Grid - 1), (areaHeight - height) / 2};
}

ClampedMove clampedMove(int32_t screenWidth, int32_t screenHeight, int32_t x, int32_t y,
                        int32_t width, int32_t height, bool kept) {
  if (!kept) return {{x, y}, 1};
  if (width > screenWidth || height > screenHeight) return {{x, y}, 0};
  return {{std::min(std::max(x, 0), screenWidth - width),
           std::min(std::max(y, 0), screenHeight - height)},
          1};
}

}  // namespace qv
