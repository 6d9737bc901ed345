#include "graphics/region.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

#include "graphics/position.h"
#include "graphics/surface.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

// --- Sets of pixels ---

/// The plain reference: one flag a pixel.
class Grid {
 public:
  static constexpr int32_t Size = 40;
  void set(const Rectangle& rectangle, bool value) {
    for (int32_t y = std::max(0, rectangle.top); y < std::min(Size, rectangle.bottom); ++y)
      for (int32_t x = std::max(0, rectangle.left); x < std::min(Size, rectangle.right); ++x)
        pixels_[static_cast<size_t>(y * Size + x)] = value;
  }
  bool operator==(const Grid&) const = default;
  std::array<bool, Size * Size> pixels_{};
};

Grid gridOf(const Region& region) {
  Grid grid;
  for (const Rectangle& rectangle : region.rectangles())
    grid.set(rectangle, true);
  return grid;
}

TEST(Region, HoldsExactlyThePixelsThatWereAddedAndNotTakenAway) {
  std::minstd_rand random(7);
  const auto draw = [&random](int32_t limit) {
    return static_cast<int32_t>(random() % static_cast<uint32_t>(limit));
  };
  for (int round = 0; round < 200; ++round) {
    Region region;
    Grid expected;
    for (int step = 0; step < 30; ++step) {
      const Rectangle part = Rectangle::at(draw(40), draw(40), 1 + draw(12), 1 + draw(12))
                                 .intersected({0, 0, Grid::Size, Grid::Size});
      const bool adding = draw(3) > 0;
      adding ? region.add(part) : region.subtract(part);
      expected.set(part, adding);
      ASSERT_EQ(gridOf(region), expected) << round << " " << step;
    }
    int64_t area = 0;
    for (const Rectangle& part : region.rectangles())
      area += int64_t{part.width()} * part.height();
    ASSERT_EQ(area, std::ranges::count(expected.pixels_, true)) << "overlapping rectangles";
  }
}

TEST(Region, JoinsNeighboursThatMakeARectangleAndNothingElse) {
  Region region;
  for (int32_t x = 0; x < 640; x += 4)
    region.add(Rectangle::at(x, 0, 4, 4));
  EXPECT_EQ(region.rectangles().size(), 1u);
  region.add(Rectangle::at(0, 8, 4, 4));
  EXPECT_EQ(region.rectangles().size(), 2u);
  region.add({0, 4, 640, 8});
  region.add({4, 8, 640, 12});
  ASSERT_EQ(region.rectangles().size(), 1u);
  EXPECT_EQ(region.rectangles()[0], (Rectangle{0, 0, 640, 12}));
}

TEST(Region, TakesEmptyRectanglesForNothing) {
  Region region;
  region.add({5, 5, 5, 10});
  region.add({5, 5, 1, 1});
  EXPECT_TRUE(region.empty());
  region.add({0, 0, 10, 10});
  region.subtract({3, 3, 3, 8});
  EXPECT_EQ(region.rectangles().size(), 1u);
  EXPECT_EQ(region.bounds(), (Rectangle{0, 0, 10, 10}));
  region.subtract({-5, -5, 50, 50});
  EXPECT_TRUE(region.empty());
  EXPECT_EQ(region.bounds(), Rectangle{});
}

// --- Outlines ---

using Runs = std::vector<Rectangle>;

/// Of a picture in rows of text; a dot is the key.
ClipShape shapeOf(const std::vector<std::string>& rows, ColourKey key = '.') {
  std::string pixels;
  for (const std::string& row : rows)
    pixels += row;
  std::vector<uint8_t> bytes(pixels.begin(), pixels.end());
  return scanClipShape(bytes, static_cast<int32_t>(rows.front().size()),
                       static_cast<int32_t>(rows.size()), key);
}

TEST(ClipShape, IsTheRunsOfWhatIsNotTheKey) {
  const ClipShape shape = shapeOf({"..abc..d", "........", "xyz.....", "......uv"});
  EXPECT_EQ(shape.rectangles, (Runs{{2, 0, 5, 1}, {7, 0, 8, 1}, {0, 2, 3, 3}, {6, 3, 8, 4}}));
  EXPECT_EQ(shape.bounds, (Rectangle{0, 0, 8, 4}));
}

TEST(ClipShape, BeginsWithABoundOfTheFirstPixel) {
  EXPECT_EQ(shapeOf({"....", "....", "..a."}).bounds, (Rectangle{0, 0, 3, 3}));
}

TEST(ClipShape, LeavesKeyPixelsAtRowEndsOutside) {
  EXPECT_EQ(shapeOf({".aa."}).rectangles, (Runs{{1, 0, 3, 1}}));
  EXPECT_EQ(shapeOf({".a"}).rectangles, (Runs{{1, 0, 2, 1}}));
  EXPECT_EQ(shapeOf({"a."}).rectangles, (Runs{{0, 0, 1, 1}}));
  EXPECT_EQ(shapeOf({"a.a"}).rectangles, (Runs{{0, 0, 1, 1}, {2, 0, 3, 1}}));
}

TEST(ClipShape, OfOneRowAndTwoPixelsIsOneRun) {
  EXPECT_EQ(shapeOf({"ab"}).rectangles, (Runs{{0, 0, 2, 1}}));
}

TEST(ClipShape, OfOneColumnIsSinglePixels) {
  EXPECT_EQ(shapeOf({"a", ".", "b"}).rectangles, (Runs{{0, 0, 1, 1}, {0, 2, 1, 3}}));
}

TEST(ClipShape, OfNothingButTheKeyIsEmpty) {
  EXPECT_TRUE(shapeOf({"....", "...."}).rectangles.empty());
  EXPECT_TRUE(scanClipShape(std::span<uint8_t>(), 0, 0, KeyTopLeft).rectangles.empty());
}

TEST(ClipShape, WithoutAKeyIsTheWholePicture) {
  EXPECT_EQ(shapeOf({"ab", ".d"}, KeyNone).rectangles, (Runs{{0, 0, 2, 1}, {0, 1, 2, 2}}));
}

TEST(ClipShape, TakesTheFirstPixelAsItsKeyWhenToldSo) {
  EXPECT_EQ(shapeOf({"aab", "aba"}, KeyTopLeft).rectangles, (Runs{{2, 0, 3, 1}, {1, 1, 2, 2}}));
}

TEST(ClipShape, EndsSilentlyWhenTheBlockIsFull) {
  std::vector<std::string> rows(100, std::string(100, '.'));
  for (size_t y = 0; y < 100; ++y)
    for (size_t x = y % 2; x < 100; x += 2)
      rows[y][x] = 'a';
  const ClipShape shape = shapeOf(rows);
  // Fifty a row: the scan ends in row 81, at its 44th run.
  ASSERT_EQ(shape.rectangles.size(), ClipShape::MostRectangles);
  EXPECT_EQ(shape.rectangles.back(), (Rectangle{1 + 2 * 43, 81, 2 + 2 * 43, 82}));
}

TEST(ClipShape, GivesTheRunsInAPartOfIt) {
  const ClipShape shape = shapeOf({"aa.aa", ".....", "aaaaa", "a...a"});
  Runs runs;
  shape.forEachIn({1, 0, 4, 3}, [&](const Rectangle& run) { runs.push_back(run); });
  EXPECT_EQ(runs, (Runs{{1, 0, 2, 1}, {3, 0, 4, 1}, {1, 2, 4, 3}}));
  runs.clear();
  shape.forEachIn({0, 3, 9, 9}, [&](const Rectangle& run) { runs.push_back(run); });
  EXPECT_EQ(runs, (Runs{{0, 3, 1, 4}, {4, 3, 5, 4}}));
}

TEST(ClipShape, OfASurfaceIsThatOfItsPixelsFromTheTopDown) {
  const testing::TestPlatform platform;
  QVVSurface surface;
  surface.create(6, 4);
  const Rectangle part = {1, 1, 4, 2}, dot = {5, 3, 6, 4};
  surface.fill(9, &part);
  surface.fill(8, &dot);
  const ClipShape shape = scanClipShape(surface, KeyTopLeft);
  EXPECT_EQ(shape.rectangles, (Runs{{1, 1, 4, 2}, {5, 3, 6, 4}}));
}

// --- Places ---

TEST(ClampedMove, PullsBackOntoTheScreenWhatFitsThere) {
  EXPECT_EQ(clampedMove(640, 480, -5, -7, 100, 50, true).position, (WindowPosition{0, 0}));
  EXPECT_EQ(clampedMove(640, 480, 600, 9999, 100, 50, true).position, (WindowPosition{540, 430}));
  EXPECT_EQ(clampedMove(640, 480, 7, 9, 640, 480, true).position, (WindowPosition{0, 0}));
  EXPECT_EQ(clampedMove(640, 480, 7, 9, 641, 10, true).position, (WindowPosition{7, 9}));
  EXPECT_EQ(clampedMove(640, 480, 7, 9, 641, 10, true).result, 0);
  EXPECT_EQ(clampedMove(640, 480, 7, 9, 641, 10, false).result, 1);
}

TEST(CentredWindow, StandsOnAMultipleOfEightAcrossAndAnywhereDown) {
  EXPECT_EQ(centredWindow(640, 480, 326, 406), (WindowPosition{160, 37}));
  EXPECT_EQ(centredWindow(640, 480, 320, 200), (WindowPosition{160, 140}));
  EXPECT_EQ(centredWindow(640, 480, 310, 101), (WindowPosition{168, 189}));
}

TEST(DrawPosition, ReadsTheCodesOfItsAxisAlone) {
  EXPECT_EQ(drawPositionX(PositionRight, 640, 100), 540);
  EXPECT_EQ(drawPositionX(PositionBottom, 640, 100), PositionBottom);
  EXPECT_EQ(drawPositionY(PositionBottom, 480, 100), 380);
  EXPECT_EQ(drawPositionY(PositionRight, 480, 100), PositionRight);
  EXPECT_EQ(drawPositionX(-17, 640, 100), -17);
}

}  // namespace
}  // namespace qv
