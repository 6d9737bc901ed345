// The way between the game's pixels and the units of a window, also where a unit is several pixels.

#include <gtest/gtest.h>

#include "platform/sdl/sdl_events.h"

namespace qv {
namespace {

WindowGeometry geometryOf(int windowWidth, int windowHeight, int density, Scaling scaling) {
  WindowGeometry geometry;
  geometry.windowWidth = windowWidth;
  geometry.windowHeight = windowHeight;
  geometry.outputWidth = windowWidth * density;
  geometry.outputHeight = windowHeight * density;
  geometry.fit = fitScreen(geometry.outputWidth, geometry.outputHeight, scaling);
  return geometry;
}

/// How many of the game's pixels are led to a point of the window that shows another one.
int strays(const WindowGeometry& geometry) {
  int count = 0;
  for (int y = 0; y < ScreenHeight; ++y)
    for (int x = 0; x < ScreenWidth; ++x) {
      const ScreenPoint window = geometry.toWindow(x, y);
      if (geometry.toGame(window.x, window.y) != ScreenPoint{x, y}) ++count;
    }
  return count;
}

constexpr int Sizes[][2] = {{640, 480},  {641, 481},  {700, 525},   {800, 480},  {999, 749},
                            {1000, 600}, {1024, 768}, {1280, 1024}, {1366, 768}, {1920, 1080}};

TEST(WindowGeometryTest, EveryPixelLeadsBackToItselfWhereAUnitIsWholePixels) {
  for (const int density : {1, 2, 3})
    for (const auto& size : Sizes)
      for (const Scaling scaling : {Scaling::Fit, Scaling::WholeFactors})
        EXPECT_EQ(strays(geometryOf(size[0], size[1], density, scaling)), 0)
            << size[0] << " x " << size[1] << " times " << density;
}

}  // namespace
}  // namespace qv
