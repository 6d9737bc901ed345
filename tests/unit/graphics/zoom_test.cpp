#include "graphics/transition/zoom.h"

#include <gtest/gtest.h>

#include "tests/support/effect_stage.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using testing::EffectStage;
using testing::indicesOf;
using testing::StageView;
using testing::TestPlatform;

constexpr int32_t Width = 64, Height = 48;
constexpr Rectangle From{10, 8, 20, 14}, To{3, 2, 58, 41};

class ZoomTest : public ::testing::Test {
 protected:
  TestPlatform platform{false, makeSimulatedKernel()};
  EffectStage stage{Width, Height};
};

std::vector<uint8_t> stretched(EffectStage& stage, const Rectangle& area) {
  QVVSurface wanted;
  wanted.create(Width, Height);
  wanted.fill(7);
  stage.newCard.stretchTo(wanted, area.left, area.top, area.width(), area.height());
  return indicesOf(wanted);
}

TEST_F(ZoomTest, GoesFromOneRectangleToExactlyTheOther) {
  const Zoom zoom{From, To, 8, uint8_t{7}, nullptr};
  int32_t step = 0;
  stage.view.flushed = [&](const StageView::Flush&) {
    EXPECT_EQ(indicesOf(*stage.view.surface8()), stretched(stage, zoomStep(zoom, ++step)));
  };
  zoomOnto(stage.view, stage.newCard, zoom, stage.pace);
  EXPECT_EQ(step, 8);
  EXPECT_EQ(zoomStep(zoom, 8), To);
  EXPECT_EQ(stage.view.surface8()->storedColours(), stage.newCard.storedColours());
}

TEST_F(ZoomTest, FlushesTheWholeViewWhereItClearsAndElseTheRectangleAlone) {
  zoomOnto(stage.view, stage.newCard, {From, To, 3, uint8_t{7}, nullptr}, stage.pace);
  zoomOnto(stage.view, stage.newCard, {From, To, 3, std::nullopt, &stage.oldCard}, stage.pace);
  const Zoom bare{From, To, 3, std::nullopt, nullptr};
  zoomOnto(stage.view, stage.newCard, bare, stage.pace);
  ASSERT_EQ(stage.view.flushes.size(), 9u);
  for (size_t i = 0; i < 6; ++i)
    EXPECT_TRUE(stage.view.flushes[i].whole) << i;
  for (int32_t step = 1; step <= 3; ++step)
    EXPECT_EQ(stage.view.flushes[static_cast<size_t>(5 + step)].area, zoomStep(bare, step));
}

TEST_F(ZoomTest, ClearsWithASurfaceWhereOneIsGiven) {
  zoomOnto(stage.view, stage.newCard, {From, To, 1, std::nullopt, &stage.oldCard}, stage.pace);
  const QVVSurface& surface = *stage.view.surface8();
  EXPECT_EQ(surface.pixel(0, 0), stage.oldCard.pixel(0, 0));
  EXPECT_EQ(surface.pixel(63, 47), stage.oldCard.pixel(63, 47));
}

TEST_F(ZoomTest, StepsBelowOneTakeTheColoursAndDrawNothing) {
  for (const int32_t steps : {0, -1, INT32_MIN}) {
    EffectStage fresh(Width, Height);
    zoomOnto(fresh.view, fresh.newCard, {From, To, steps, uint8_t{7}, nullptr}, fresh.pace);
    EXPECT_TRUE(fresh.view.flushes.empty());
    EXPECT_EQ(indicesOf(*fresh.view.surface8()), indicesOf(fresh.oldCard));
    EXPECT_EQ(fresh.view.surface8()->storedColours(), fresh.newCard.storedColours());
  }
}

TEST_F(ZoomTest, RectanglesMayStandPartlyOffTheView) {
  const Rectangle off{-30, -20, 100, 70};
  zoomOnto(stage.view, stage.newCard, {From, off, 2, uint8_t{7}, nullptr}, stage.pace);
  EXPECT_EQ(indicesOf(*stage.view.surface8()), stretched(stage, off));
}

TEST_F(ZoomTest, EachFrameTakesASixtiethOfASecond) {
  zoomOnto(stage.view, stage.newCard, {From, To, 32, uint8_t{7}, nullptr}, stage.pace);
  EXPECT_EQ(stage.ticks(), 32u * 17);
}

TEST_F(ZoomTest, AfterTheAbortOnlyTheLastFrameIsDrawn) {
  stage.abort.set();
  zoomOnto(stage.view, stage.newCard, {From, To, INT32_MAX, uint8_t{7}, nullptr}, stage.pace);
  EXPECT_EQ(stage.view.flushes.size(), 1u);
  EXPECT_EQ(stage.ticks(), 0u);
  EXPECT_EQ(indicesOf(*stage.view.surface8()), stretched(stage, To));
}

TEST_F(ZoomTest, AViewOf32BitsIsLeftAlone) {
  EffectStage deep(Width, Height, true);
  zoomOnto(deep.view, deep.newCard, {From, To, 2, uint8_t{7}, nullptr}, deep.pace);
  EXPECT_TRUE(deep.view.flushes.empty());
}

}  // namespace
}  // namespace qv
