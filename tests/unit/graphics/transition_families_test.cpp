#include <numeric>

#include <gtest/gtest.h>

#include "graphics/transition/effects.h"
#include "tests/support/effect_stage.h"
#include "tests/support/test_platform.h"

// What each family does in which order and when.

namespace qv {
namespace {

using testing::EffectStage;
using testing::indicesOf;
using testing::StageView;
using testing::TestPlatform;

constexpr int32_t Width = 64, Height = 48;
constexpr Rectangle Whole{0, 0, Width, Height};
constexpr TransitionPlace OddPlace{11, 5, 37, 29, 3, 2};
constexpr Rectangle OddRect{11, 5, 48, 34};

class EffectTest : public ::testing::Test {
 protected:
  TestPlatform platform{false, makeSimulatedKernel()};
};

std::vector<uint32_t> ticksOf(const EffectStage& stage) {
  std::vector<uint32_t> ticks;
  for (const StageView::Flush& flush : stage.view.flushes)
    ticks.push_back(flush.tick - stage.startTick);
  return ticks;
}

std::vector<Rectangle> areasOf(const EffectStage& stage) {
  std::vector<Rectangle> areas;
  for (const StageView::Flush& flush : stage.view.flushes)
    areas.push_back(flush.area);
  return areas;
}

/// Flushes at first, first + millis, ..., `times` of them, and the closing one.
std::vector<uint32_t> every(uint32_t millis, uint32_t times, uint32_t first, uint32_t end) {
  std::vector<uint32_t> ticks;
  for (uint32_t i = 0; i < times; ++i)
    ticks.push_back(first + i * millis);
  ticks.push_back(end);
  return ticks;
}

using Indices = std::vector<uint8_t>;

/// The surface's indices at each flush.
std::vector<Indices> framesOf(EffectStage& stage, const EffectCall& call,
                              const TransitionPlace& place = {}, bool masks = false) {
  std::vector<Indices> frames;
  stage.view.flushed = [&](const StageView::Flush&) {
    frames.push_back(indicesOf(*stage.view.surface8()));
  };
  stage.run(call, place, masks);
  return frames;
}

// Combs, patterns, blends.

TEST_F(EffectTest, CombFadesFlushEachLevelFiftyMillisecondsAfterTheLast) {
  for (const auto& [effect, levels] : {std::pair{2, 5u}, {3, 5u}, {4, 8u}, {5, 16u}}) {
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0});
    EXPECT_EQ(ticksOf(stage), every(50, levels, 50, 50 * levels)) << effect;
  }
}

TEST_F(EffectTest, EachLevelIsDrawnOverTheOneBefore) {
  for (const ColourKey key : {KeyNone, ColourKey{0}})
    for (int32_t effect = 2; effect <= 4; ++effect) {
      SCOPED_TRACE(effect);
      EffectStage stage(Width, Height), wanted(Width, Height);
      const std::vector<Indices> frames = framesOf(stage, {effect, key, 0, 0}, OddPlace);
      const std::span<const int32_t> levels = fadeLevels(effect, false);
      ASSERT_EQ(frames.size(), levels.size() + 1);
      for (size_t i = 0; i < levels.size(); ++i) {
        QVVSurface& target = *wanted.view.surface8();
        if (key == KeyNone)
          wanted.newCard.blitBlended(target, 11, 5, 3, 2, 37, 29, levels[i]);
        else
          wanted.newCard.blitBlendedKey(target, 11, 5, 3, 2, 37, 29, levels[i], key);
        EXPECT_EQ(frames[i], indicesOf(target)) << levels[i];
      }
    }
}

TEST_F(EffectTest, ThePatternFadeDrawsTheWholeSourceAndTakesItsColoursOnlyWithoutAKey) {
  for (const ColourKey key : {KeyNone, ColourKey{0}}) {
    SCOPED_TRACE(key);
    EffectStage stage(Width, Height), wanted(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {5, key, 0, 0}, OddPlace);
    ASSERT_EQ(frames.size(), 16u + 1);
    QVVSurface& target = *wanted.view.surface8();
    for (int32_t level = -15; level <= 0; ++level) {
      wanted.newCard.blitBlended(target, 11, 5, 3, 2, 37, 29, level);
      EXPECT_EQ(frames[static_cast<size_t>(level + 15)], indicesOf(target)) << level;
    }
    // The card has pixels of the key.
    wanted.newCard.blit(target, 11, 5, 3, 2, 37, 29, KeyNone);
    EXPECT_EQ(frames.back(), indicesOf(target));
    EXPECT_EQ(stage.view.surface8()->storedColours(),
              (key == KeyNone ? stage.newCard : stage.oldCard).storedColours());
  }
}

TEST_F(EffectTest, OnAViewOf32BitsTheLevelsAreSixteenths) {
  for (int32_t effect = 2; effect <= 4; ++effect) {
    EffectStage stage(Width, Height, true), wanted(Width, Height, true);
    std::vector<std::vector<uint32_t>> frames;
    stage.view.flushed = [&](const StageView::Flush&) {
      frames.push_back(stage.view.frame.pixels);
    };
    stage.run({effect, 0, 0, 0});
    const std::span<const int32_t> levels = fadeLevels(effect, true);
    ASSERT_EQ(frames.size(), levels.size() + 1);
    for (size_t i = 0; i < levels.size(); ++i) {
      wanted.newCard.blitTo32BlendKey(*wanted.view.surface32(), 0, 0, 0, 0, Width, Height,
                                      levels[i], 0);
      wanted.view.flush(nullptr, 0);
      EXPECT_EQ(frames[i], wanted.view.frame.pixels) << effect << " " << levels[i];
    }
    EXPECT_EQ(ticksOf(stage).back(), 50 * levels.size());
  }
}

// The palette fade.

TEST_F(EffectTest, ThePaletteFadeTakesOneRoundMoreThanItsStepsAndTheZeroth) {
  EffectStage stage(Width, Height);
  stage.run({9, 4, 0, 0});
  EXPECT_EQ(stage.view.recording8()->fades, (std::vector<std::pair<int32_t, int32_t>>{
                                                {0, 4}, {1, 4}, {2, 4}, {3, 4}, {4, 4}, {5, 4}}));
  EXPECT_EQ(ticksOf(stage), every(40, 6, 0, 240));
  for (size_t i = 0; i < 6; ++i)
    EXPECT_TRUE(stage.view.flushes[i].whole) << i;
  EXPECT_EQ(stage.view.surface8()->storedColours(), stage.newCard.storedColours());
}

TEST_F(EffectTest, ThePaletteFadeWithNoStepsHasTwoRounds) {
  EffectStage stage(Width, Height);
  stage.run({9, 0, 0, 0});
  EXPECT_EQ(stage.view.recording8()->fades,
            (std::vector<std::pair<int32_t, int32_t>>{{0, 0}, {1, 0}}));
  EXPECT_EQ(ticksOf(stage), every(40, 2, 0, 80));
}

TEST_F(EffectTest, ThePaletteFadeFirstShowsTheNewPictureInTheOldColours) {
  EffectStage stage(Width, Height);
  std::vector<ColourTable> shown, stored;
  stage.view.flushed = [&](const StageView::Flush&) {
    shown.push_back(stage.view.surface8()->shownColours());
    stored.push_back(stage.view.surface8()->storedColours());
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
  };
  stage.run({9, 4, 0, 0});
  ASSERT_EQ(shown.size(), 7u);
  EXPECT_EQ(shown[0], stage.oldCard.storedColours());
  EXPECT_NE(shown[2], shown[0]);
  EXPECT_EQ(shown[4], stage.newCard.storedColours());
  EXPECT_EQ(stored[4], stage.oldCard.storedColours());
  EXPECT_EQ(stored[5], stage.newCard.storedColours());
}

TEST_F(EffectTest, ThePaletteFadeDrawsFromTheOffsetToTheCornerWhereverItsRectangleLies) {
  EffectStage stage(Width, Height), wanted(Width, Height);
  stage.run({9, 1, 0, 0}, OddPlace);
  wanted.newCard.blit(*wanted.view.surface8(), 0, 0, 3, 2, Width, Height, KeyNone);
  EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(*wanted.view.surface8()));
}

TEST_F(EffectTest, ThePaletteFadeTakesAnOffsetOutsideOfTheSourceAsNone) {
  EffectStage stage(Width, Height);
  stage.run({9, 1, 0, 0}, {0, 0, 0, 0, -7, 3});
  EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
}

TEST_F(EffectTest, AFadeToGreyKeepsTheColoursOnlyWhenItIsTold) {
  for (const bool keep : {false, true}) {
    EffectStage stage(Width, Height);
    fadeToGrey(stage.view, 3, 128, keep, stage.pace);
    EXPECT_EQ(stage.view.recording8()->fades.size(), keep ? 4u : 5u);
    EXPECT_EQ(stage.ticks(), keep ? 160u : 200u);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), Indices(size_t{Width} * Height, 128));
    ColourTable grey;
    grey.fill(0x808080);
    EXPECT_EQ(stage.view.surface8()->storedColours(), keep ? stage.oldCard.storedColours() : grey);
    EXPECT_EQ(stage.view.surface8()->shownColours(), stage.view.surface8()->storedColours());
    EXPECT_EQ(stage.view.frame.pixels[0], 0x808080u);
  }
}

// Flush wipes and sliding wipes.

TEST_F(EffectTest, FlushWipesDrawOnceAndThenUncoverInSixteenSteps) {
  for (int32_t effect = 10; effect <= 20; ++effect) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {effect, KeyNone, 0, 0});
    EXPECT_EQ(ticksOf(stage), every(10, 16, 10, 160));
    for (const Indices& frame : frames)
      EXPECT_EQ(frame, indicesOf(stage.newCard));
    std::vector<Rectangle> wanted;
    for (int32_t step = 1; step <= 16; ++step)
      wanted.push_back(wipeStep(effect, Whole, step).front());
    wanted.push_back(Whole);
    EXPECT_EQ(areasOf(stage), wanted);
  }
}

TEST_F(EffectTest, BandsAreFlushedTopLeftBottomRight) {
  EffectStage stage(Width, Height);
  stage.run({23, KeyNone, 0, 0});
  const std::vector<Rectangle> areas = areasOf(stage);
  ASSERT_GE(areas.size(), 8u);
  EXPECT_EQ(
      std::vector(areas.begin() + 4, areas.begin() + 8),
      (std::vector<Rectangle>{{0, 0, 64, 3}, {0, 0, 4, 48}, {0, 45, 64, 48}, {60, 0, 64, 48}}));
}

TEST_F(EffectTest, UntilItsPartIsFlushedTheWindowShowsTheOldPicture) {
  EffectStage stage(Width, Height);
  const std::vector<uint32_t> before = stage.view.frame.pixels;
  std::vector<uint32_t> half;
  stage.view.flushed = [&](const StageView::Flush&) {
    if (stage.view.flushes.size() == 8) half = stage.view.frame.pixels;
  };
  stage.run({11, KeyNone, 0, 0});
  ASSERT_EQ(half.size(), before.size());
  for (int32_t y = 0; y < Height; ++y)
    for (int32_t x = 0; x < Width; ++x) {
      const auto at = static_cast<size_t>(y * Width + x);
      ASSERT_EQ(half[at], x < Width / 2 ? stage.view.frame.pixels[at] : before[at])
          << x << " " << y;
    }
}

TEST_F(EffectTest, ANarrowTargetTakesAllSixteenStepsAndIsThenWhole) {
  for (int32_t effect = 10; effect <= 23; ++effect) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0}, {3, 2, 7, 9, 20, 20});
    const Rectangle rect{3, 2, 10, 11};
    EXPECT_EQ(stage.ticks(), 160u);
    for (const Rectangle& area : areasOf(stage))
      EXPECT_EQ(area.intersected(rect), area);
    EXPECT_EQ(areasOf(stage).back(), rect);
    EXPECT_EQ(stage.view.surface8()->pixel(9, 10), stage.newCard.pixel(26, 28));
  }
}

TEST_F(EffectTest, SlidingWipesBringTheFarEndFirst) {
  for (int32_t effect = 30; effect <= 37; ++effect) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height), wanted(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {effect, 0, 0, 0}, OddPlace);
    EXPECT_EQ(ticksOf(stage), every(10, 16, 10, 160));
    for (int32_t step = 1; step <= 16; ++step) {
      const Rectangle area = wipeStep(effect, OddRect, step).front();
      const bool fromLeft = area.left == OddRect.left, fromTop = area.top == OddRect.top;
      // With a key each step stands on the old picture afresh.
      wanted.oldCard.blit(*wanted.view.surface8(), 0, 0, 0, 0, Width, Height, KeyNone);
      wanted.newCard.blit(*wanted.view.surface8(), area.left, area.top,
                          3 + (fromLeft ? OddRect.width() - area.width() : 0),
                          2 + (fromTop ? OddRect.height() - area.height() : 0), area.width(),
                          area.height(), 0);
      EXPECT_EQ(frames[static_cast<size_t>(step - 1)], indicesOf(*wanted.view.surface8())) << step;
    }
  }
}

// Curtains.

TEST_F(EffectTest, CurtainsHaveSevenStepsOfTwentyMilliseconds) {
  for (int32_t effect = 26; effect <= 29; ++effect) {
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0});
    EXPECT_EQ(ticksOf(stage), every(20, 7, 0, 140)) << effect;
  }
}

TEST_F(EffectTest, OpeningCurtainsGrowFromTheMiddleWithTheOuterPartsFirst) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {27, KeyNone, 0, 0});
  // Step 2: two strips of 8 columns beside the middle line at 32.
  const auto at = [](const Indices& frame, int32_t x, int32_t y) {
    return frame[static_cast<size_t>(y * Width + x)];
  };
  EXPECT_EQ(frames[0], indicesOf(stage.oldCard));
  for (int32_t x = 0; x < Width; ++x) {
    const int32_t y = 20;
    uint8_t wanted = stage.oldCard.pixel(x, y);
    if (x >= 24 && x < 32) wanted = stage.newCard.pixel(x - 24, y);
    if (x >= 32 && x < 40) wanted = stage.newCard.pixel(x - 32 + Width - 8, y);
    EXPECT_EQ(at(frames[2], x, y), wanted) << x;
  }
}

TEST_F(EffectTest, UnderAKeyTheLastStripsOfAnOpeningCurtainStandWhereThePictureHasNoPixels) {
  for (const int32_t effect : {26, 27}) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height), wanted(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {effect, 0, 0, 0});
    ASSERT_EQ(frames.size(), 7u + 1);
    QVVSurface& target = *wanted.view.surface8();
    // Six sixteenths before the middle and as many behind it.
    if (effect == 27) {
      wanted.newCard.blit(target, 8, 0, 0, 0, 24, Height, 0);
      wanted.newCard.blit(target, 32, 0, Width - 24, 0, 24, Height, 0);
    } else {
      wanted.newCard.blit(target, 0, 6, 0, 0, Width, 18, 0);
      wanted.newCard.blit(target, 0, 24, 0, Height - 18, Width, 18, 0);
    }
    EXPECT_EQ(frames[6], indicesOf(target));
    wanted.newCard.blit(target, 0, 0, 0, 0, Width, Height, 0);
    EXPECT_EQ(frames[7], indicesOf(target));
  }
}

TEST_F(EffectTest, AClosingCurtainsLastStripsGiveWayToThePicture) {
  for (const ColourKey key : {KeyNone, ColourKey{0}})
    for (const int32_t effect : {28, 29}) {
      SCOPED_TRACE(effect);
      EffectStage stage(Width, Height), wanted(Width, Height);
      const std::vector<Indices> frames = framesOf(stage, {effect, key, 0, 0});
      ASSERT_EQ(frames.size(), 7u + 1);
      QVVSurface& target = *wanted.view.surface8();
      wanted.newCard.blit(target, 0, 0, 0, 0, Width, Height, key);
      EXPECT_NE(frames[6], indicesOf(target));
      EXPECT_EQ(frames[7], indicesOf(target));
    }
}

TEST_F(EffectTest, ClosingCurtainsShrinkTowardsTheMiddle) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {28, KeyNone, 0, 0});
  // Step 0: the halves stand whole; step 3: 5 times 3 rows on each side of the middle at 24.
  EXPECT_EQ(frames[0], indicesOf(stage.oldCard));
  for (int32_t y = 0; y < Height; ++y) {
    const int32_t x = 20;
    uint8_t wanted = stage.newCard.pixel(x, y);
    if (y >= 9 && y < 24) wanted = stage.oldCard.pixel(x, y - 9);
    if (y >= 24 && y < 39) wanted = stage.oldCard.pixel(x, y - 24 + Height - 15);
    EXPECT_EQ(frames[3][static_cast<size_t>(y * Width + x)], wanted) << y;
  }
}

TEST_F(EffectTest, CurtainsOfTargetsWithoutAStripAreACut) {
  for (int32_t effect = 26; effect <= 29; ++effect) {
    EffectStage small(Width, Height), wide(Width, Height);
    small.run({effect, KeyNone, 0, 0}, {0, 0, 15, 15, 0, 0});
    EXPECT_EQ(small.ticks(), 0u);
    EXPECT_EQ(small.view.flushes.size(), 1u);
    wide.run({effect, KeyNone, 0, 0}, {0, 0, 16, 15, 0, 0});
    EXPECT_EQ(wide.ticks(), 140u);
  }
}

// Tiles and lines.

TEST_F(EffectTest, TileDissolvesUncoverEveryCellOnceAndTakeTheirSpan) {
  struct TileCase {
    int32_t effect, size;
    uint32_t millis;
  };
  for (const TileCase& given : {TileCase{40, 32, 400}, {41, 16, 500}, {42, 8, 600}, {43, 4, 700}}) {
    SCOPED_TRACE(given.effect);
    EffectStage stage(Width, Height);
    stage.run({given.effect, KeyNone, 0, 0}, OddPlace);
    const std::vector<Rectangle> areas = areasOf(stage);
    std::vector<int> uncovered(size_t{Width} * Height, 0);
    for (size_t i = 0; i + 1 < areas.size(); ++i) {
      EXPECT_EQ((areas[i].left - OddRect.left) % given.size, 0);
      EXPECT_EQ((areas[i].top - OddRect.top) % given.size, 0);
      EXPECT_EQ(areas[i].intersected(OddRect), areas[i]);
      for (int32_t y = areas[i].top; y < areas[i].bottom; ++y)
        for (int32_t x = areas[i].left; x < areas[i].right; ++x)
          ++uncovered[static_cast<size_t>(y * Width + x)];
    }
    EXPECT_EQ(std::accumulate(uncovered.begin(), uncovered.end(), 0), 37 * 29);
    EXPECT_EQ(*std::max_element(uncovered.begin(), uncovered.end()), 1);
    EXPECT_EQ(stage.ticks(), given.millis);
  }
}

TEST_F(EffectTest, GrowingTilesStopAtTheirLimitsAndEndWithAWholeRound) {
  EffectStage stage(640, 127);
  stage.run({38, KeyNone, 0, 0});
  const std::vector<Rectangle> areas = areasOf(stage);
  ASSERT_EQ(areas.size(), 158u + 158 + 79 + 80 + 1);
  EXPECT_LE(areas[157].width(), 4);
  EXPECT_EQ(areas[158].width(), 8);
  EXPECT_LE(areas[315].width(), 8);
  EXPECT_EQ(areas[316].width(), 16);
  EXPECT_LE(areas[394].width(), 16);
  EXPECT_EQ(areas[395].width(), 32);
  EXPECT_EQ(stage.ticks(), 600u);
}

TEST_F(EffectTest, OnASmallTargetTheFirstRoundWithoutALimitIsTheLast) {
  EffectStage stage(Width, Height);
  stage.run({38, KeyNone, 0, 0}, {0, 0, 20, 20, 0, 0});
  EXPECT_EQ(stage.view.flushes.size(), 25u + 1);
  EXPECT_EQ(stage.ticks(), 600u);
}

TEST_F(EffectTest, TheRightButtonEndsADissolveAfterOneRowOfCells) {
  for (const auto& [effect, columns] :
       {std::pair{38, 16u}, {40, 2u}, {41, 4u}, {42, 8u}, {43, 16u}}) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    stage.view.rightButton = true;
    stage.run({effect, KeyNone, 0, 0});
    // Growing tiles reach no full row before the last round: their limits are 6, 6 and 3.
    const size_t wanted = effect == 38 ? 6u + 6 + 3 + 2 : columns;
    EXPECT_EQ(stage.view.rightButtonLooks, 1);
    EXPECT_EQ(stage.view.flushes.size(), wanted + 1);
    EXPECT_EQ(areasOf(stage).back(), Whole);
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.newCard));
  }
}

TEST_F(EffectTest, APressOfTheRightButtonCountsFromTheBeginningOfADissolveOn) {
  // A click that is long over when the first row of cells stands, while the lines are swept.
  EffectStage swept(Width, Height);
  swept.view.flushed = [&](const StageView::Flush&) {
    if (swept.view.flushes.size() == 3) ++swept.view.rightPresses;
  };
  swept.run({44, KeyNone, 0, 0});
  EXPECT_EQ(swept.view.rightButtonLooks, 1);
  EXPECT_LT(swept.ticks(), 300u + 50 + 300);
  // One between two rows.
  EffectStage tiles(Width, Height);
  tiles.view.flushed = [&](const StageView::Flush&) {
    if (tiles.view.flushes.size() == 11) ++tiles.view.rightPresses;
  };
  tiles.run({42, KeyNone, 0, 0});
  EXPECT_EQ(tiles.view.flushes.size(), 2u * 8 + 1);
  // One before it began does not.
  EffectStage earlier(Width, Height);
  ++earlier.view.rightPresses;
  earlier.run({42, KeyNone, 0, 0});
  EXPECT_EQ(earlier.view.flushes.size(), 8u * 6 + 1);
}

TEST_F(EffectTest, ADissolveLooksAtTheRightButtonOnceARowOfCells) {
  EffectStage stage(Width, Height);
  stage.run({42, KeyNone, 0, 0});
  EXPECT_EQ(stage.view.rightButtonLooks, Height / 8);
  EffectStage lines(Width, Height);
  lines.view.rightButton = true;
  lines.run({48, KeyNone, 0, 0});
  EXPECT_EQ(lines.view.rightButtonLooks, 0);
  EXPECT_EQ(lines.view.flushes.size(), Height + 1u);
}

TEST_F(EffectTest, TheGridSweepGoesRightThenDownOnEverySecondLineAndPauses) {
  for (const int32_t effect : {39, 44, 45, 46, 47}) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0}, OddPlace);
    const std::vector<Rectangle> areas = areasOf(stage);
    const std::vector<uint32_t> ticks = ticksOf(stage);
    ASSERT_GT(areas.size(), 34u);
    for (int32_t i = 0; i < 19; ++i)
      EXPECT_EQ(areas[static_cast<size_t>(i)], Rectangle::at(11 + 2 * i, 5, 1, 29)) << i;
    for (int32_t i = 0; i < 15; ++i)
      EXPECT_EQ(areas[static_cast<size_t>(19 + i)], Rectangle::at(11, 5 + 2 * i, 37, 1)) << i;
    EXPECT_LE(ticks[33], 300u);
    EXPECT_EQ(ticks[34], 350u);
  }
}

TEST_F(EffectTest, RandomLinesUncoverEveryLineOnce) {
  for (const bool rows : {true, false}) {
    EffectStage stage(Width, Height);
    stage.run({rows ? 48 : 49, KeyNone, 0, 0}, OddPlace);
    std::vector<Rectangle> areas = areasOf(stage), wanted;
    areas.pop_back();
    EXPECT_EQ(stage.ticks(), 500u);
    const int32_t extent = rows ? 29 : 37;
    for (int32_t i = 0; i < extent; ++i)
      wanted.push_back(rows ? Rectangle::at(11, 5 + i, 37, 1) : Rectangle::at(11 + i, 5, 1, 29));
    EXPECT_NE(areas, wanted);
    std::sort(areas.begin(), areas.end(), [](const Rectangle& a, const Rectangle& b) {
      return std::pair(a.top, a.left) < std::pair(b.top, b.left);
    });
    EXPECT_EQ(areas, wanted);
  }
}

/// The numbers of the lines that were flushed, rows with an R before, columns with a C.
std::vector<std::string> linesOf(const EffectStage& stage, const Rectangle& rect) {
  std::vector<std::string> lines;
  for (const Rectangle& area : areasOf(stage))
    lines.push_back(area.width() == 1 ? "C" + std::to_string(area.left - rect.left)
                                      : "R" + std::to_string(area.top - rect.top));
  lines.pop_back();
  return lines;
}

TEST_F(EffectTest, SweepsReturnOnTheOddLines) {
  using Lines = std::vector<std::string>;
  const auto run = [](int32_t effect, int32_t width, int32_t height) {
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0}, {4, 3, width, height, 0, 0});
    return linesOf(stage, Rectangle::at(4, 3, width, height));
  };
  EXPECT_EQ(run(50, 8, 5), (Lines{"R0", "R2", "R4", "R3", "R1"}));
  EXPECT_EQ(run(50, 8, 6), (Lines{"R0", "R2", "R4", "R5", "R3", "R1"}));
  EXPECT_EQ(run(51, 5, 8), (Lines{"C0", "C2", "C4", "C3", "C1"}));
  EXPECT_EQ(run(52, 4, 3), (Lines{"C0", "C2", "R0", "R2", "C3", "C1"}));
}

TEST_F(EffectTest, SweepsTakeTheirSpanAndAMillisecondAfterEverySixthLine) {
  for (const auto& [effect, millis] : {std::pair{50, 600u}, {51, 600u}, {52, 800u}}) {
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 0, 0});
    EXPECT_EQ(stage.ticks(), millis) << effect;
  }
  // 6000 lines sleep longer than the span: a millisecond each sixth one.
  EffectStage tall(2, 6000);
  tall.run({50, KeyNone, 0, 0});
  EXPECT_EQ(tall.ticks(), 1000u);
}

// Rotation.

TEST_F(EffectTest, ARotationTurnsTheOldPictureAwayAndTheSourceIn) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {60, KeyNone, 5, 0});
  ASSERT_EQ(frames.size(), 19u + 19 + 1);
  EXPECT_EQ(frames[0], indicesOf(stage.oldCard));
  EXPECT_EQ(frames[37], indicesOf(stage.newCard));
  // Edge on, the middle row stands in the first one, on a clear ground.
  Indices edge(size_t{Width} * Height, 0);
  for (int32_t x = 0; x < Width; ++x)
    edge[static_cast<size_t>(x)] = stage.oldCard.pixel(x, Height / 2);
  EXPECT_EQ(frames[18], edge);
  EXPECT_EQ(ticksOf(stage), every(17, 38, 0, 17 * 38));
}

TEST_F(EffectTest, RotationsByColumnsMoveColumns) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {61, KeyNone, 5, 0});
  Indices edge(size_t{Width} * Height, 0);
  for (int32_t y = 0; y < Height; ++y)
    edge[static_cast<size_t>(y * Width)] = stage.oldCard.pixel(Width / 2, y);
  EXPECT_EQ(frames[18], edge);
}

TEST_F(EffectTest, TheLongRotationsTurnOnceMore) {
  for (const int32_t effect : {62, 63}) {
    EffectStage stage(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {effect, KeyNone, 5, 0});
    // 450 to 180, then 0 to 90.
    ASSERT_EQ(frames.size(), 55u + 19 + 1);
    EXPECT_EQ(frames[0], indicesOf(stage.oldCard));
    EXPECT_EQ(frames[73], indicesOf(stage.newCard));
  }
}

TEST_F(EffectTest, UnderAKeyTheSourceTurnsOnTheOldPicture) {
  for (const auto& [effect, count] : {std::pair{60, 19u}, {62, 55u}}) {
    EffectStage stage(Width, Height), wanted(Width, Height);
    const std::vector<Indices> frames = framesOf(stage, {effect, 0, 5, 0}, OddPlace);
    ASSERT_EQ(frames.size(), count + 1);
    wanted.newCard.blit(*wanted.view.surface8(), 11, 5, 3, 2 + 14, 37, 1, 0);
    EXPECT_EQ(frames[0], indicesOf(*wanted.view.surface8()));
  }
}

TEST_F(EffectTest, ASecondMaskStandsForTheOldPictureOfARotation) {
  EffectStage stage(Width, Height);
  QVVSurface other;
  other.create(Width, Height);
  other.fill(33);
  TransitionEngine engine(&stage.view, {&stage.newCard, nullptr, &other}, {}, stage.pace,
                          stage.random());
  std::vector<Indices> frames;
  stage.view.flushed = [&](const StageView::Flush&) {
    frames.push_back(indicesOf(*stage.view.surface8()));
  };
  engine.run(60, KeyNone, 5, 0);
  EXPECT_EQ(frames.front(), indicesOf(other));
}

TEST_F(EffectTest, TurnsWithABackSideEndOnIt) {
  EffectStage stage(Width, Height);
  QVVSurface back;
  back.create(Width, Height);
  back.fill(33);
  const auto run = [&](int32_t turns) {
    std::vector<Indices> frames;
    stage.view.flushed = [&](const StageView::Flush&) {
      frames.push_back(indicesOf(*stage.view.surface8()));
    };
    TransitionEngine engine(&stage.view, {&stage.newCard, &back, nullptr}, {}, stage.pace,
                            stage.random());
    engine.run(60, KeyNone, 45, turns);
    return frames;
  };
  // Front 90, 45, 0; back 180, 135, 90; then back to the front, and once more over.
  const std::vector<Indices> once = run(1), twice = run(2);
  ASSERT_EQ(once.size(), 6u + 1);
  EXPECT_EQ(once.front(), indicesOf(stage.newCard));
  EXPECT_EQ(once.back(), indicesOf(back));
  ASSERT_EQ(twice.size(), 18u + 1);
  EXPECT_EQ(twice[5], indicesOf(back));
  EXPECT_EQ(twice[6], indicesOf(back));
  EXPECT_EQ(twice[11], indicesOf(stage.newCard));
  EXPECT_EQ(twice.back(), indicesOf(back));
}

TEST_F(EffectTest, TurnsWithoutABackSideAreFullRoundsAndAQuarter) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {60, KeyNone, 90, 2});
  // 0, 90, 180, 270, 360 twice, then 0, 90.
  ASSERT_EQ(frames.size(), 5u + 5 + 2 + 1);
  EXPECT_EQ(frames[1], indicesOf(stage.newCard));
  EXPECT_EQ(frames[6], indicesOf(stage.newCard));
  EXPECT_EQ(frames.back(), indicesOf(stage.newCard));
}

TEST_F(EffectTest, AStepThatDoesNotDivideTheWayStillEndsFaceOn) {
  EffectStage stage(Width, Height);
  const std::vector<Indices> frames = framesOf(stage, {60, KeyNone, 40, 0});
  ASSERT_EQ(frames.size(), 4u + 4 + 1);
  EXPECT_EQ(frames[7], indicesOf(stage.newCard));
  EffectStage none(Width, Height);
  EXPECT_EQ(framesOf(none, {60, KeyNone, 0, 0}).size(), 91u + 91 + 1);
}

TEST(SpinBackgroundTest, IsAnIndexUpTo255AndASurfaceAbove) {
  TestPlatform platform;
  QVVSurface surface;
  EXPECT_FALSE(SpinBackground(uint8_t{0}).isSurface());
  EXPECT_FALSE(SpinBackground(uint8_t{255}).isSurface());
  EXPECT_EQ(SpinBackground(uint8_t{255}).index(), 255);
  ASSERT_TRUE(SpinBackground(surface).isSurface());
  EXPECT_EQ(&SpinBackground(surface).surface(), &surface);
}

// Shape wipes.

TEST_F(EffectTest, AShapeWipeWithoutAMaskDoesNothing) {
  for (int32_t effect = 65; effect <= 80; ++effect) {
    EffectStage stage(Width, Height);
    stage.run({effect, KeyNone, 4, 10});
    EXPECT_TRUE(stage.view.flushes.empty());
    EXPECT_EQ(indicesOf(*stage.view.surface8()), indicesOf(stage.oldCard));
    EXPECT_EQ(stage.view.surface8()->storedColours(), stage.oldCard.storedColours());
  }
}

TEST_F(EffectTest, AShapeWipeWithOneMaskEndsInTheMasksColour) {
  EffectStage stage(Width, Height);
  TransitionEngine engine(&stage.view, {&stage.newCard, &stage.mask1, nullptr}, {}, stage.pace,
                          stage.random());
  engine.run(65, KeyNone, 4, 10);
  EXPECT_EQ(indicesOf(*stage.view.surface8()), Indices(size_t{Width} * Height, 16));
  EXPECT_EQ(stage.view.surface8()->storedColours(), stage.oldCard.storedColours());
  // Three steps in, the whole, three steps on, the fill.
  EXPECT_EQ(ticksOf(stage), every(10, 8, 0, 80));
}

TEST_F(EffectTest, BothPhasesOfAShapeWipeHaveTheirSteps) {
  EffectStage stage(Width, Height);
  stage.run({70, KeyNone, 4, 10}, {}, true);
  // Eight and seven of them, then the source.
  EXPECT_EQ(ticksOf(stage), every(10, 15, 0, 150));
  EffectStage one(Width, Height);
  one.run({70, KeyNone, 0, -5}, {}, true);
  EXPECT_EQ(one.view.flushes.size(), 2u + 1 + 1);
  EXPECT_EQ(one.ticks(), 0u);
}

TEST_F(EffectTest, WithMoreStepsThanLinesAMaskStaysAwayUntilItIsWhole) {
  constexpr int32_t Steps = Height + 2;
  EffectStage stage(Width, Height);
  TransitionEngine engine(&stage.view, {&stage.newCard, &stage.mask1, nullptr}, {}, stage.pace,
                          stage.random());
  std::vector<Indices> frames;
  stage.view.flushed = [&](const StageView::Flush&) {
    frames.push_back(indicesOf(*stage.view.surface8()));
  };
  engine.run(73, KeyNone, Steps, 10);
  ASSERT_EQ(frames.size(), 2u * Steps + 1);
  EXPECT_EQ(stage.ticks(), 2u * Steps * 10);
  const Indices before = indicesOf(stage.oldCard), whole = frames[Steps - 1];
  EXPECT_NE(whole, before);
  for (size_t i = 0; i < Steps - 1; ++i) {
    EXPECT_EQ(frames[i], before) << i;
    EXPECT_EQ(frames[Steps + i], whole) << i;
  }
  EXPECT_EQ(frames[2 * Steps - 1], Indices(size_t{Width} * Height, 16));
}

TEST_F(EffectTest, TheFirstMaskComesInFromItsEdgeAndLeavesItsColourBehind) {
  // A mask of two halves, the hole ahead in every direction it may come from.
  struct Entry {
    int32_t effect;
    Rectangle behind, ahead;  ///< after the sixth step of an extent in quarters
  };
  const Entry entries[] = {{65, {0, 0, 32, 48}, {32, 0, 64, 48}},
                           {69, {32, 0, 64, 48}, {0, 0, 32, 48}},
                           {73, {0, 0, 64, 24}, {0, 24, 64, 48}},
                           {77, {0, 24, 64, 48}, {0, 0, 64, 24}}};
  for (const Entry& entry : entries) {
    SCOPED_TRACE(entry.effect);
    EffectStage stage(Width, Height);
    QVVSurface holes;
    holes.create(8, 8);
    {
      const QVVSurface::Access access(holes);
      access.row(0)[3] = 40;
    }
    TransitionEngine engine(&stage.view, {&stage.newCard, &holes, nullptr}, {}, stage.pace,
                            stage.random());
    std::vector<Indices> frames;
    stage.view.flushed = [&](const StageView::Flush&) {
      frames.push_back(indicesOf(*stage.view.surface8()));
    };
    engine.run(entry.effect, KeyNone, 4, 10);
    ASSERT_EQ(frames.size(), 8u + 1);
    int32_t filled = 0, kept = 0;
    for (int32_t y = 0; y < Height; ++y)
      for (int32_t x = 0; x < Width; ++x) {
        const uint8_t pixel = frames[5][static_cast<size_t>(y * Width + x)];
        if (entry.behind.contains(x, y)) filled += pixel == 40;
        if (entry.ahead.contains(x, y)) kept += pixel == stage.oldCard.pixel(x, y);
      }
    EXPECT_EQ(filled, Width * Height / 2);
    // All but the mask's dots, one in 64.
    EXPECT_EQ(kept, Width * Height / 2 * 63 / 64);
  }
}

TEST_F(EffectTest, TheSecondMasksEdgeIsTheNumberModuloFour) {
  const Rectangle uncovered[] = {{0, 0, 16, 48}, {48, 0, 64, 48}, {0, 0, 64, 12}, {0, 36, 64, 48}};
  for (int32_t effect = 65; effect <= 80; ++effect) {
    SCOPED_TRACE(effect);
    EffectStage stage(Width, Height);
    QVVSurface hole;
    hole.create(8, 8);
    TransitionEngine engine(&stage.view, {&stage.newCard, &stage.mask1, &hole}, {}, stage.pace,
                            stage.random());
    std::vector<Indices> frames;
    stage.view.flushed = [&](const StageView::Flush&) {
      frames.push_back(indicesOf(*stage.view.surface8()));
    };
    engine.run(effect, KeyNone, 4, 10);
    // The ninth frame is the second phase's first: a quarter has come in.
    const Rectangle& quarter = uncovered[(effect - 65) % 4];
    for (int32_t y = 0; y < Height; ++y)
      for (int32_t x = 0; x < Width; ++x)
        ASSERT_EQ(frames[8][static_cast<size_t>(y * Width + x)],
                  quarter.contains(x, y) ? stage.newCard.pixel(x, y) : 16)
            << x << " " << y;
  }
}

TEST_F(EffectTest, AMaskOfHolesAloneFillsWithIndexZero) {
  EffectStage stage(Width, Height);
  QVVSurface holes;
  holes.create(8, 8);
  TransitionEngine engine(&stage.view, {&stage.newCard, &holes, nullptr}, {}, stage.pace,
                          stage.random());
  engine.run(65, KeyNone, 4, 0);
  EXPECT_EQ(indicesOf(*stage.view.surface8()), Indices(size_t{Width} * Height, 0));
}

}  // namespace
}  // namespace qv
