#include "input/click_map.h"

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "tests/unit/input/input_ground.h"

namespace qv::testing {
namespace {

class ClickMapTest : public ::testing::Test {
 protected:
  ClickMapTest() {
    map.create(64, 48, 0, 1, &host);
    map.attach(view, 0, 0, 0);
  }
  /// Runs `action` while the map's wait stands, after some time of the kernel's.
  int32_t waitWhile(std::function<void()> action, int32_t keys = 1,
                    uint32_t limitMillis = WaitForever) {
    Thread other;
    host.onWait = [&] {
      host.onWait = nullptr;
      other.start("window", [&] {
        sleepMillis(10);
        action();
      });
    };
    return map.ClickWait(limitMillis, keys);
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  HandHost host;
  SurfaceView view;
  QVClickMap map;
};

using Regions = ClickMapTest;
using ClickMapWait = ClickMapTest;
using ClickMapView = ClickMapTest;

// --- Regions ---

TEST_F(Regions, ANewMapIsOneRegionWithRectanglesOverIt) {
  map.create(20, 10, 9, 0, &host);
  EXPECT_EQ(map.regionAt(0, 0), 9);
  EXPECT_EQ(map.regionAt(19, 9), 9);
  map.addRect(2, 3, 4, 5, 7);
  map.addRect(4, 4, 4, 4, 8);
  EXPECT_EQ(map.regionAt(2, 3), 7);
  EXPECT_EQ(map.regionAt(5, 7), 8);
  EXPECT_EQ(map.regionAt(3, 8), 9);
  EXPECT_EQ(map.regionAt(8, 4), 9);
}

TEST_F(Regions, RectanglesReachBeyondTheMapAndNoneIsDrawnWithoutExtent) {
  map.create(8, 8, 1, 0, &host);
  map.addRect(-5, -5, 7, 7, 2);
  EXPECT_EQ(map.regionAt(1, 1), 2);
  EXPECT_EQ(map.regionAt(2, 2), 1);
  map.addRect(4, 4, 0, 3, 3);
  map.addRect(4, 4, -2, -2, 3);
  EXPECT_EQ(map.regionAt(3, 3), 1);
  EXPECT_EQ(map.regionAt(4, 4), 1);
  map.addRect(6, 6, INT32_MAX, INT32_MAX, 255);
  EXPECT_EQ(map.regionAt(7, 7), 255);
}

TEST_F(Regions, LieWhereTheOriginSaysAndNowhereElse) {
  map.create(8, 8, 5, 0, &host);
  map.setOrigin(100, 50);
  EXPECT_EQ(map.originX(), 100);
  EXPECT_EQ(map.originY(), 50);
  EXPECT_EQ(map.regionAt(100, 50), 5);
  EXPECT_EQ(map.regionAt(107, 57), 5);
  EXPECT_EQ(map.regionAt(99, 50), NoRegion);
  EXPECT_EQ(map.regionAt(100, 49), NoRegion);
  EXPECT_EQ(map.regionAt(108, 57), NoRegion);
  EXPECT_EQ(map.regionAt(107, 58), NoRegion);
  map.setOrigin(INT32_MIN, INT32_MIN);
  EXPECT_EQ(map.regionAt(INT32_MAX, INT32_MAX), NoRegion);
}

TEST_F(Regions, AStampKeepsWhatItCovers) {
  map.create(10, 10, 1, 0, &host);
  QVClickMap other;
  other.create(4, 4, 6, 0, nullptr);
  other.addRect(1, 1, 2, 2, 7);
  map.Stamp(other, 3, 3, 6);
  EXPECT_EQ(map.regionAt(3, 3), 1);  // the key
  EXPECT_EQ(map.regionAt(4, 4), 7);
  EXPECT_EQ(map.underlay().width(), 4);
  EXPECT_EQ(map.underlay().pixel(1, 1), 1);

  map.setStampMode(0);
  map.Stamp(other, 0, 0, KeyNone);
  EXPECT_EQ(map.regionAt(0, 0), 6);
  EXPECT_EQ(map.regionAt(2, 2), 7);
  map.Stamp(other, 8, 8, KeyTopLeft);
  EXPECT_EQ(map.regionAt(9, 9), 7);
  EXPECT_EQ(map.underlay().pixel(1, 1), 1);  // as it was
}

TEST_F(Regions, AStampBesideTheMapDoesNothing) {
  map.create(10, 10, 1, 0, &host);
  QVClickMap other;
  other.create(4, 4, 6, 0, nullptr);
  map.Stamp(other, 10, 0, KeyNone);
  map.Stamp(other, -4, 0, KeyNone);
  map.Stamp(other, INT32_MAX, INT32_MIN, KeyNone);
  EXPECT_EQ(map.underlay().width(), 16);
  EXPECT_EQ(map.regionAt(0, 0), 1);
}

// --- Input and waits ---

TEST_F(ClickMapWait, ALeftClickGivesItsRegion) {
  EXPECT_EQ(waitWhile([&] { map.report(LeftButtonDown, 17); }), 17);
}

TEST_F(ClickMapWait, ALeftClickOffTheMapGivesZero) {
  EXPECT_EQ(waitWhile([&] { map.report(LeftButtonDown, NoRegion); }), 0);
}

TEST_F(ClickMapWait, ARightClickAnywhereGivesCancel) {
  EXPECT_EQ(waitWhile([&] { map.report(RightButtonDown, 17); }), ClickCancel);
  EXPECT_EQ(waitWhile([&] { map.report(RightButtonDown, NoRegion); }), ClickCancel);
}

TEST_F(ClickMapWait, AHoverOverTheMapsOwnRegionZeroGives4096) {
  EXPECT_EQ(waitWhile([&] {
              map.report(PointerMoved, 3);
              map.report(PointerMoved, 0);
            }),
            4096);
}

TEST_F(ClickMapWait, AHoverOffTheMapCountsAsRegionZero) {
  EXPECT_EQ(waitWhile([&] { map.report(PointerMoved, NoRegion); }), 4096);
}

TEST_F(ClickMapWait, MovesWithinARegionAreNotReported) {
  EXPECT_TRUE(map.report(PointerMoved, 5));
  EXPECT_EQ(waitWhile(
                [&] {
                  EXPECT_FALSE(map.report(PointerMoved, 5));
                  EXPECT_FALSE(map.report(PointerMoved, 5));
                },
                1, 100),
            ClickTimeout);
  EXPECT_EQ(waitWhile([&] { EXPECT_TRUE(map.report(PointerMoved, 6)); }), 4102);
}

TEST_F(ClickMapWait, MovesAreNotReportedWhereNobodyWantsThem) {
  map.setHover(0);
  EXPECT_EQ(waitWhile([&] { EXPECT_FALSE(map.report(PointerMoved, 5)); }, 1, 100), ClickTimeout);
}

TEST_F(ClickMapWait, OtherMessagesWakeNobody) {
  EXPECT_EQ(waitWhile(
                [&] {
                  for (const uint32_t message : {514u, 515u, 517u, 256u, 0u})
                    EXPECT_FALSE(map.report(message, 5));
                },
                1, 100),
            ClickTimeout);
  EXPECT_EQ(map.lastMessage(), 0u);
  EXPECT_EQ(map.lastRegion(), 5);
}

TEST_F(ClickMapWait, OfTwoInputsBeforeTheWakeTheLaterWins) {
  EXPECT_EQ(waitWhile([&] {
              map.report(LeftButtonDown, 3);
              map.report(LeftButtonDown, 4);
            }),
            4);
}

TEST_F(ClickMapWait, AMoveWithinARegionTakesNothingOfThePressBeforeIt) {
  EXPECT_EQ(waitWhile([&] {
              map.report(PointerMoved, 3);
              map.report(RightButtonDown, 3);
              map.report(PointerMoved, 3);
            }),
            ClickCancel);
  EXPECT_EQ(waitWhile([&] {
              map.report(LeftButtonDown, 3);
              map.report(PointerMoved, 3);
            }),
            3);
  EXPECT_EQ(map.lastMessage(), LeftButtonDown);
}

TEST_F(ClickMapWait, WhatCameBetweenWaitsIsNotGivenToTheNext) {
  map.report(LeftButtonDown, 3);
  EXPECT_EQ(map.ClickWait(50, 1), ClickTimeout);
}

TEST_F(ClickMapWait, AKeyIsGivenAboveTheRegions) {
  EXPECT_EQ(waitWhile([&] { host.press(32); }), 2080);
  EXPECT_EQ(host.armed, 1);
}

TEST_F(ClickMapWait, AKeyDuringAWaitWithoutKeysIsNotReported) {
  EXPECT_EQ(waitWhile([&] { host.press(32); }, 0, 100), ClickTimeout);
  EXPECT_EQ(host.armed, 0);
}

TEST_F(ClickMapWait, WithoutAHostThereAreNoKeysAndNoEnd) {
  map.setHost(nullptr);
  EXPECT_EQ(map.ClickWait(20, 1), ClickTimeout);
  EXPECT_EQ(host.waits, 0);
}

TEST_F(ClickMapWait, ATimeOutLeavesNoEventSet) {
  EXPECT_EQ(waitWhile([&] { map.report(PointerMoved, 5); }, 1, 5), ClickTimeout);
  sleepMillis(20);
  EXPECT_TRUE(map.eventIsSet());  // by what came after the wait
  const uint32_t start = tickCount();
  EXPECT_EQ(map.ClickWait(50, 1), ClickTimeout);
  EXPECT_EQ(tickCount() - start, 50u);
  EXPECT_FALSE(map.eventIsSet());
}

TEST_F(ClickMapWait, InputThatWasTakenInTheMomentOfTheTimeOutCounts) {
  host.onWaitEnds = [&] { map.report(LeftButtonDown, 8); };
  EXPECT_EQ(map.ClickWait(10, 1), 8);
  host.onWaitEnds = [&] { host.press(13); };
  EXPECT_EQ(map.ClickWait(10, 1), 2061);
}

TEST_F(ClickMapWait, TheEndDetachesTheMapAndRaises) {
  map.report(PointerMoved, 5);
  EXPECT_THROW(waitWhile([&] { host.exit.set(); }), ExitScenarioException);
  EXPECT_EQ(map.view(), nullptr);
  EXPECT_TRUE(view.maps.empty());
  EXPECT_EQ(host.waiting, nullptr);
  EXPECT_THROW(map.ClickWait(WaitForever, 0), ExitScenarioException);
}

TEST_F(ClickMapWait, TheMapsOwnInputComesBeforeTheEndAndTheEndBeforeAKey) {
  host.onWait = [&] {
    host.press(13);
    host.exit.set();
    map.report(LeftButtonDown, 2);
  };
  EXPECT_EQ(map.ClickWait(WaitForever, 1), 2);
  host.onWait = [&] { host.press(13); };
  EXPECT_THROW(map.ClickWait(WaitForever, 1), ExitScenarioException);
}

// --- Posted results ---

TEST_F(ClickMapWait, PostedResultsWakeTheWaitAndComeInTheirOrder) {
  EXPECT_EQ(waitWhile([&] {
              map.postResult(99);
              map.postResult(98);
            }),
            99);
  const uint32_t start = tickCount();
  EXPECT_EQ(map.ClickWait(WaitForever, 1), 98);
  EXPECT_EQ(tickCount(), start);
}

TEST_F(ClickMapWait, PostedResultsOverruleAllOtherInput) {
  EXPECT_EQ(waitWhile([&] {
              map.report(RightButtonDown, 4);
              host.press(13);
              map.postResult(55);
            }),
            55);
}

TEST_F(ClickMapWait, AnAnimationsEndIsAPostedResult) {
  AdvanceReceiver& receiver = map;
  EXPECT_EQ(waitWhile([&] { receiver.advance(12); }), 12);
}

// --- Refresh and rhythm ---

TEST_F(ClickMapWait, AStillPointerGetsItsHoverOnlyAfterARequest) {
  map.report(PointerMoved, 5);
  map.addRect(0, 0, 64, 48, 5);
  EXPECT_EQ(waitWhile([&] { map.report(PointerMoved, 5); }, 1, 50), ClickTimeout);
  host.onMove = [&] { map.report(PointerMoved, 5); };
  map.requestHover(1);
  EXPECT_EQ(map.ClickWait(50, 1), 4101);
  EXPECT_EQ(host.moves, (std::vector<std::pair<int32_t, int32_t>>{{1, 0}, {-1, 0}}));
  EXPECT_EQ(map.ClickWait(50, 1), ClickTimeout);  // once
}

TEST_F(ClickMapWait, ARequestWithoutANudgeWaitsForTheNextMove) {
  map.report(PointerMoved, 5);
  map.requestHover(0);
  EXPECT_EQ(map.ClickWait(50, 1), ClickTimeout);
  EXPECT_TRUE(host.moves.empty());
  EXPECT_EQ(map.lastHit(), QVClickMap::AnyMoveCounts);
  EXPECT_EQ(waitWhile([&] { map.report(PointerMoved, 5); }), 4101);
}

TEST_F(ClickMapWait, ATickWaitKeepsItsRhythmWhateverTheBodyTakes) {
  map.setTick(50);
  const uint32_t start = tickCount();
  for (int i = 1; i <= 5; ++i) {
    sleepMillis(20);
    EXPECT_EQ(map.ClickTickWait(0, 0), ClickTimeout);
    EXPECT_EQ(tickCount() - start, static_cast<uint32_t>(50 * i));
  }
}

TEST_F(ClickMapWait, ATickWaitAfterALongBodyTakesOneMillisecond) {
  map.setTick(50);
  sleepMillis(500);
  const uint32_t start = tickCount();
  EXPECT_EQ(map.ClickTickWait(0, 0), ClickTimeout);
  EXPECT_EQ(tickCount() - start, 1u);
  sleepMillis(30);
  EXPECT_EQ(map.ClickTickWait(30, 0), ClickTimeout);
  EXPECT_EQ(tickCount() - start, 31u);
}

TEST_F(ClickMapWait, TheRhythmSurvivesTheWrapOfTheClock) {
  EXPECT_EQ(QVClickMap::tickWaitMillis(50, 10, 0xFFFFFFF0), 24u);
  EXPECT_EQ(QVClickMap::tickWaitMillis(50, 100, 0xFFFFFFF0), 1u);
  EXPECT_EQ(QVClickMap::tickWaitMillis(0, 10, 10), 0u);
}

TEST_F(ClickMapWait, AnotherInputFunctionTakesThePlaceOfTheMapsOwn) {
  static uint32_t seen;
  seen = 0;
  map.setCallback([](QVClickMap& given, uint32_t message, int32_t region) {
    seen = message;
    given.postResult(region + 1000);
  });
  EXPECT_EQ(waitWhile([&] { EXPECT_TRUE(map.report(LeftButtonDown, 3)); }), 1003);
  EXPECT_EQ(seen, LeftButtonDown);
  EXPECT_EQ(map.lastMessage(), 0u);
}

// --- The view ---

TEST_F(ClickMapView, KeepsTheMapUntilItIsDetached) {
  EXPECT_EQ(view.maps, std::vector<ClickTarget*>{&map});
  map.report(LeftButtonDown, 1);
  map.detach();
  EXPECT_TRUE(view.maps.empty());
  EXPECT_EQ(map.view(), nullptr);
  EXPECT_FALSE(map.eventIsSet());
  EXPECT_TRUE(view.invalidated.empty());
}

TEST_F(ClickMapView, IsLeftForAnother) {
  SurfaceView other;
  map.attach(other, 3, 4, 0);
  EXPECT_TRUE(view.maps.empty());
  EXPECT_EQ(other.maps.size(), 1u);
  EXPECT_EQ(map.originX(), 3);
  map.detach();
}

TEST_F(ClickMapView, LosesAMapThatGoes) {
  {
    QVClickMap brief;
    brief.create(4, 4, 0, 0, nullptr);
    brief.attach(view, 0, 0, 0);
    EXPECT_EQ(view.maps.size(), 2u);
  }
  EXPECT_EQ(view.maps, std::vector<ClickTarget*>{&map});
}

TEST_F(ClickMapView, GetsItsPixelsBackFromACapture) {
  view.surface.fill(33);
  QVClickMap small;
  small.create(10, 10, 0, 0, nullptr);
  small.attach(view, 5, 6, 1);
  EXPECT_EQ(small.viewCopy().width(), 10);
  EXPECT_EQ(small.viewCopy().pixel(9, 9), 33);
  EXPECT_EQ(small.viewCopy().storedColours(), view.surface.storedColours());
  view.surface.fill(44);
  small.detach();
  EXPECT_EQ(view.surface.pixel(5, 6), 33);
  EXPECT_EQ(view.surface.pixel(14, 15), 33);
  EXPECT_EQ(view.surface.pixel(4, 6), 44);
  EXPECT_EQ(view.surface.pixel(15, 15), 44);
  ASSERT_EQ(view.invalidated.size(), 1u);
  EXPECT_EQ(view.invalidated[0], (Rectangle{5, 6, 15, 16}));
}

TEST_F(ClickMapView, GetsNothingBackWhenItsWindowHasGone) {
  view.surface.fill(33);
  QVClickMap small;
  small.create(10, 10, 0, 0, nullptr);
  small.attach(view, 0, 0, 1);
  view.maps.clear();
  view.surface.fill(44);
  small.detach();
  EXPECT_EQ(view.surface.pixel(0, 0), 44);
}

// --- Stacks ---

TEST_F(ClickMapView, AStackHasNoCircleAndLosesWhatGoes) {
  QVClickMap below;
  {
    QVClickMap middle;
    middle.setParent(&map);
    below.setParent(&middle);
    EXPECT_EQ(below.above(), &middle);
    map.setParent(&below);  // would stand below itself
    EXPECT_EQ(map.parent(), nullptr);
    map.setParent(&map);
    EXPECT_EQ(map.parent(), nullptr);
  }
  EXPECT_EQ(below.parent(), nullptr);
  below.setParent(&map);
  EXPECT_EQ(below.above(), &map);
  below.setParent(nullptr);
  EXPECT_EQ(below.above(), nullptr);
}

}  // namespace
}  // namespace qv::testing
