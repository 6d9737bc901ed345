#include "graphics/animation/animation_surface.h"

#include <gtest/gtest.h>

#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

class AnimationCells : public ::testing::Test {
 protected:
  AnimationCells() {
    platform.writeFile(platform.game() / "strip.bmp", bitmapOf({".ABCD.", "EFGHIJ"}));
    target.create(4, 3);
  }
  std::string drawn(int32_t x, int32_t y, int32_t cell) {
    target.fill(26);
    cells.drawCell(target, x, y, cell);
    return textOf(target);
  }

  TestPlatform platform;
  QVAnimationSurface cells;
  QVVSurface target;
};

TEST_F(AnimationCells, AreTheColumnsOfTheStrip) {
  cells.load(3, "strip.bmp", false, 0);
  EXPECT_EQ(cells.loadedCells(), 3);
  EXPECT_EQ(cells.cellSize(2), (QVAnimationSurface::Size{2, 2}));
  EXPECT_EQ(drawn(0, 0, 0), ".AZZ/EFZZ/ZZZZ");
  EXPECT_EQ(drawn(1, 1, 1), "ZZZZ/ZBCZ/ZGHZ");
  EXPECT_EQ(drawn(3, 0, 2), "ZZZD/ZZZI/ZZZZ");
}

TEST_F(AnimationCells, LeaveTheColumnsThatMakeNoWholeCell) {
  cells.load(4, "strip.bmp", false, 0);
  EXPECT_EQ(cells.cellSize(3), (QVAnimationSurface::Size{1, 2}));
  EXPECT_EQ(drawn(0, 0, 3), "CZZZ/HZZZ/ZZZZ");
}

TEST_F(AnimationCells, DrawWithTheirKey) {
  cells.load(3, "strip.bmp", true, 6);
  EXPECT_EQ(drawn(0, 0, 0), ".AZZ/EZZZ/ZZZZ");
}

TEST_F(AnimationCells, TakeTheKeyFromTheTopLeftPixelOfEachCell) {
  cells.load(3, "strip.bmp", true, KeyTopLeft);
  EXPECT_EQ(drawn(0, 0, 0), "ZAZZ/EFZZ/ZZZZ");
  EXPECT_EQ(drawn(0, 0, 1), "ZCZZ/GHZZ/ZZZZ");
}

TEST_F(AnimationCells, DrawAPartOfACell) {
  cells.load(3, "strip.bmp", false, 0);
  target.fill(26);
  cells.drawCellPart(target, 2, 2, 1, 0, 1, 1, 1);
  EXPECT_EQ(textOf(target), "ZZZZ/ZZZZ/ZZCZ");
}

TEST_F(AnimationCells, DrawNothingOutOfRange) {
  cells.load(3, "strip.bmp", false, 0);
  for (const int32_t cell : {-1000000, -1, 3, 31, 32, 1000000}) {
    EXPECT_EQ(drawn(0, 0, cell), "ZZZZ/ZZZZ/ZZZZ") << cell;
    EXPECT_EQ(cells.cellSize(cell), QVAnimationSurface::Size{}) << cell;
  }
}

TEST_F(AnimationCells, GrowInStepsWhoseRestIsEmpty) {
  cells.load(3, "strip.bmp", false, 0);
  EXPECT_EQ(cells.cellCount(), QVAnimationSurfaceContainer::GrowthStep);

  std::string row(40, 'A');
  platform.writeFile(platform.game() / "long.bmp", bitmapOf({row}));
  QVAnimationSurface many;
  many.load(40, "long.bmp", false, 0);
  EXPECT_EQ(many.loadedCells(), 40);
  EXPECT_EQ(many.cellCount(), 2 * QVAnimationSurfaceContainer::GrowthStep);
  EXPECT_EQ(many.cellSize(39), (QVAnimationSurface::Size{1, 1}));
}

TEST_F(AnimationCells, AreNoneForACountThatTheStripCannotHave) {
  for (const int32_t count : {0, -1, INT32_MIN, 7, INT32_MAX}) {
    cells.load(count, "strip.bmp", false, 0);
    EXPECT_EQ(cells.cellCount(), 0) << count;
    EXPECT_EQ(cells.loadedCells(), 0) << count;
  }
}

TEST_F(AnimationCells, BringThePaletteOfTheStrip) {
  cells.load(3, "strip.bmp", false, 0);
  QVVSurface strip;
  strip.loadFromFile("strip.bmp");
  ASSERT_NE(strip.storedColours(), defaultColours());
  for (const int32_t cell : {0, 1, 2})
    EXPECT_EQ(cells.cells()[cell].surface->storedColours(), strip.storedColours()) << cell;
}

TEST_F(AnimationCells, HoldNoPictureBeforeOneIsLoaded) {
  QVAnimationSurfaceContainer container;
  EXPECT_EQ(container.picture(0), nullptr);
  EXPECT_EQ(container.grown(2).key, KeyNoPicture);
  EXPECT_EQ(container.picture(2), nullptr);
}

TEST_F(AnimationCells, NeedTheirFile) {
  EXPECT_THROW(cells.load(3, "missing.bmp", false, 0), CannotOpenException);
}

}  // namespace
}  // namespace qv::testing
