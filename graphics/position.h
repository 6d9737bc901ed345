#pragma once

/// Codes that stand in the place of a coordinate, and where a window may stand. Pure functions.

#include <cstdint>

namespace qv {

/// Coordinates from the first to the last are codes; an ordinary one never is.
inline constexpr int32_t FirstPositionCode = 0xFFFF7, LastPositionCode = 0xFFFFE;
inline constexpr int32_t PositionBottom = 0xFFFF7, PositionTop = 0xFFFF8, PositionRight = 0xFFFF9,
                         PositionLeft = 0xFFFFA, PositionCentre = 0xFFFFC,
                         PositionScreenCentre = 0xFFFFD, PositionPointer = 0xFFFFE;

constexpr bool isPositionCode(int32_t coordinate) {
  return coordinate >= FirstPositionCode && coordinate <= LastPositionCode;
}

/// The x of a picture's draw into a view; what is no code of an x stays as it is.
int32_t drawPositionX(int32_t x, int32_t viewWidth, int32_t pictureWidth);
/// The same for y.
int32_t drawPositionY(int32_t y, int32_t viewHeight, int32_t pictureHeight);

struct WindowPosition {
  int32_t x = 0, y = 0;
  bool operator==(const WindowPosition&) const = default;
};

/// A window in the middle of an area: x is a multiple of 8, y is not.
WindowPosition centredWindow(int32_t areaWidth, int32_t areaHeight, int32_t width, int32_t height);

/// Where a move to x, y puts a window of that size. `kept`: pulled back onto the screen, where it
/// fits; a window that does not fit stays as asked, and `result` is 0.
struct ClampedMove {
  WindowPosition position;
  int32_t result = 1;
};
ClampedMove clampedMove(int32_t screenWidth, int32_t screenHeight, int32_t x, int32_t y,
                        int32_t width, int32_t height, bool kept);

}  // namespace qv
