#include "graphics/animation/scroll_stage.h"

#include <optional>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

class Scroll : public ::testing::Test {
 protected:
  Scroll() {
    platform.writeFile(platform.game() / "card.bmp", bitmapOf({"ABCD", "EFGH", "IJKL"}));
    card.loadFromFile("card.bmp");
    view.surface.fill(26);
  }
  ScrollLayer::Setting setting(const Rectangle& place) {
    ScrollLayer::Setting made;
    made.surface = &card;
    made.place = place;
    return made;
  }
  std::string screen() { return textOf(view.surface); }

  TestPlatform platform{false, makeSimulatedKernel()};
  QVVSurface card;
  FakeView view{4, 3};
  ScrollStage stage{&view};
};

TEST_F(Scroll, DrawsALayerAtItsSourceBeforeItMoves) {
  auto made = setting({1, 1, 3, 3});
  made.sourceX = 2;
  made.stepX = -1;
  stage.put(1, made);
  EXPECT_TRUE(stage.tick());
  EXPECT_EQ(screen(), "ZZZZ/ZCDZ/ZGHZ");
  EXPECT_EQ(view.updated, (Rectangle{1, 1, 3, 3}));
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Moving);
  stage.tick();
  EXPECT_EQ(screen(), "ZZZZ/ZBCZ/ZFGZ");
}

TEST_F(Scroll, RestsALayerWithoutAStep) {
  stage.put(1, setting({0, 0, 2, 1}));
  stage.tick();
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Resting);
  view.surface.fill(26);
  stage.tick();
  EXPECT_EQ(screen(), "ABZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, WrapsInTwoPiecesAcross) {
  auto made = setting({0, 0, 4, 1});
  made.stepX = 1;
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  std::vector<std::string> rows;
  for (int tick = 0; tick < 5; ++tick) {
    stage.tick();
    rows.push_back(screen().substr(0, 4));
  }
  EXPECT_EQ(rows, (std::vector<std::string>{"ABCD", "BCDA", "CDAB", "DABC", "ABCD"}));
}

TEST_F(Scroll, WrapsInTwoPiecesDown) {
  auto made = setting({0, 0, 1, 3});
  made.sourceY = 1;
  made.stepY = -2;
  made.wrap = ScrollLayer::WrapY;
  stage.put(1, made);
  stage.tick();
  EXPECT_EQ(screen(), "EZZZ/IZZZ/AZZZ");
  stage.tick();
  EXPECT_EQ(screen(), "IZZZ/AZZZ/EZZZ");
}

TEST_F(Scroll, WrapsInFourPiecesBothWays) {
  auto made = setting({0, 0, 4, 3});
  made.sourceX = 3;
  made.sourceY = 2;
  made.wrap = ScrollLayer::WrapX | ScrollLayer::WrapY;
  stage.put(1, made);
  stage.tick();
  EXPECT_EQ(screen(), "LIJK/DABC/HEFG");
}

TEST_F(Scroll, RepeatsASmallSurfaceInALargePlace) {
  auto made = setting({-5, 0, 1000000, 1});
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  stage.tick();
  EXPECT_EQ(screen(), "BCDA/ZZZZ/ZZZZ");
}

TEST_F(Scroll, EndsWhereThePlaceWouldLeaveTheSurface) {
  auto made = setting({0, 0, 2, 1});
  made.sourceX = 1;
  made.stepX = 1;
  stage.put(1, made);
  ScrollLayer& layer = *stage.layer(1);
  stage.tick();
  stage.tick();
  EXPECT_EQ(screen(), "CDZZ/ZZZZ/ZZZZ");
  EXPECT_FALSE(layer.ended().handle().isSet());
  stage.tick();
  EXPECT_EQ(layer.state(), ScrollLayer::Ended);
  EXPECT_TRUE(layer.ended().handle().isSet());
  EXPECT_EQ(layer.setting().stepX, 0);
  EXPECT_EQ(screen(), "CDZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, WithoutAFinalPlaceALayerStaysWhereTheLastStepTookItAndIsDrawnNoMore) {
  auto made = setting({0, 0, 2, 1});
  made.sourceX = 2;
  made.stepX = 1;
  made.finalY = 0;
  stage.put(1, made);
  stage.tick();
  const int updates = view.updates;
  for (int tick = 0; tick < 3; ++tick) {
    stage.tick();
    EXPECT_EQ(stage.layer(1)->setting().sourceX, 3);
    EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Ended);
  }
  EXPECT_EQ(screen(), "CDZZ/ZZZZ/ZZZZ");
  EXPECT_EQ(view.updates, updates);
}

TEST_F(Scroll, GoesToItsFinalPlaceAtTheEnd) {
  auto made = setting({0, 0, 2, 1});
  made.stepX = -1;
  made.finalX = 1;
  made.finalY = 2;
  stage.put(1, made);
  stage.tick();
  stage.tick();
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Ended);
  EXPECT_EQ(screen(), "JKZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, RestsAtItsFinalPlaceFromTheNextTickOn) {
  auto made = setting({0, 0, 2, 1});
  made.stepX = -1;
  made.finalX = 1;
  stage.put(1, made);
  stage.tick();
  stage.tick();
  ASSERT_EQ(stage.layer(1)->state(), ScrollLayer::Ended);
  view.surface.fill(26);
  stage.tick();
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Resting);
  EXPECT_TRUE(stage.layer(1)->ended().handle().isSet());
  EXPECT_EQ(screen(), "BCZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, GoesOnFromAnEndWithANewStep) {
  auto made = setting({0, 0, 2, 1});
  made.stepX = -1;
  stage.put(1, made);
  stage.tick();
  stage.tick();
  ASSERT_EQ(stage.layer(1)->state(), ScrollLayer::Ended);
  // The step that ended it had taken it from 0 round to 3.
  stage.layer(1)->setStep(2, 0);
  stage.tick();
  EXPECT_EQ(screen(), "BCZZ/ZZZZ/ZZZZ");
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Moving);
}

TEST_F(Scroll, DrawsNothingOfASurfaceThatItsPlaceLeavesWithoutAWrapBit) {
  for (const uint32_t wrap : {0U, ScrollLayer::WrapX, ScrollLayer::WrapY}) {
    auto made = setting({1, 1, 20, 20});
    made.wrap = wrap;
    stage.put(1, made);
    stage.tick();
    EXPECT_EQ(screen(), "ZZZZ/ZZZZ/ZZZZ") << wrap;
    EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Ended) << wrap;
  }
}

TEST_F(Scroll, DrawsByPriorityAndTiesInTheOrderOfTheirMaking) {
  QVVSurface plain[3];
  for (uint8_t index = 0; index < 3; ++index) {
    plain[index].create(4, 3);
    plain[index].fill(static_cast<uint8_t>(index + 1));
  }
  const auto put = [&](int32_t index, int picture, Rectangle place, int32_t priority) {
    auto made = setting(place);
    made.surface = &plain[picture];
    made.priority = priority;
    stage.put(index, made);
  };
  put(9, 0, {0, 0, 4, 1}, 2);
  put(3, 1, {1, 0, 4, 1}, 2);
  put(0, 2, {0, 0, 3, 2}, 1);
  stage.tick();
  EXPECT_EQ(screen(), "ABBB/CCCZ/ZZZZ");
}

TEST_F(Scroll, DrawsWithKeyAndLevel) {
  auto made = setting({0, 0, 4, 1});
  made.key = 2;
  stage.put(1, made);
  stage.tick();
  EXPECT_EQ(screen(), "AZCD/ZZZZ/ZZZZ");
  view.surface.fill(26);
  constexpr int32_t Nothing = -16;
  stage.layer(1)->setLevel(Nothing);
  stage.tick();
  EXPECT_EQ(screen(), "ZZZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, RefusesSlotsThatAreNone) {
  EXPECT_EQ(stage.put(-1, {}), nullptr);
  EXPECT_EQ(stage.put(ScrollStage::LayerCount, {}), nullptr);
  EXPECT_NE(stage.put(ScrollStage::LayerCount - 1, {}), nullptr);
  EXPECT_EQ(stage.layer(32), nullptr);
  stage.remove(-1);
  stage.remove(31);
  EXPECT_EQ(stage.layer(31), nullptr);
}

TEST_F(Scroll, StandsNumbersThatNoStageHas) {
  for (const int32_t far : {INT32_MIN, INT32_MAX}) {
    auto made = setting({far, far, -far - 1, -far - 1});
    made.sourceX = made.sourceY = made.stepX = made.stepY = far;
    made.finalX = made.finalY = far;
    for (const uint32_t wrap : {0U, 1U, 2U, 3U}) {
      made.wrap = wrap;
      stage.put(static_cast<int32_t>(wrap), made);
    }
    for (int tick = 0; tick < 5; ++tick)
      stage.tick();
  }
  EXPECT_NE(screen(), "ZZZZ/ZZZZ/ZZZZ");
}

TEST_F(Scroll, IsStoppedByItsRoutineAfterShowing) {
  stage.put(1, setting({0, 0, 2, 1}));
  stage.setRoutine([&](ScrollStage&) { return view.updates < 2; });
  EXPECT_TRUE(stage.tick());
  EXPECT_TRUE(stage.tick());
  EXPECT_FALSE(stage.tick());
  EXPECT_EQ(view.updates, 3);
}

TEST_F(Scroll, FadesItsColoursThroughTheTicks) {
  ColourTable red{};
  red.fill(0x00FF0000);
  const ColourTable before = view.surface.storedColours();
  stage.startFade(2, 100, 199, red);
  stage.tick();
  EXPECT_EQ(view.updated, (Rectangle{0, 0, 4, 3}));
  EXPECT_EQ(view.surface.storedColours(), before);
  EXPECT_NE(view.surface.shownColours(), before);
  stage.tick();
  EXPECT_EQ(view.surface.shownColours()[150], red[150]);
  EXPECT_TRUE(stage.fading());
  stage.tick();
  EXPECT_FALSE(stage.fading());
  const ColourTable after = view.surface.storedColours();
  EXPECT_EQ(after[99], before[99]);
  EXPECT_EQ(after[100], red[100]);
  EXPECT_EQ(after[199], red[199]);
  EXPECT_EQ(after[200], before[200]);
}

TEST_F(Scroll, SetsColoursAtOnceInAFadeOfNoTicks) {
  ColourTable red{};
  red.fill(0x00FF0000);
  stage.startFade(0, INT32_MIN, INT32_MAX, red);
  stage.tick();
  EXPECT_FALSE(stage.fading());
  EXPECT_EQ(view.surface.storedColours(), red);
}

TEST_F(Scroll, TicksOnAThreadOfItsOwnUntilItIsStopped) {
  auto made = setting({0, 0, 4, 1});
  made.stepX = 1;
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  stage.start(50);
  EXPECT_TRUE(stage.running());
  sleepMillis(225);
  const uint32_t before = tickCount();
  stage.stop();
  EXPECT_EQ(tickCount(), before);
  EXPECT_FALSE(stage.running());
  EXPECT_EQ(view.updates, 5);
  sleepMillis(200);
  EXPECT_EQ(view.updates, 5);
  stage.start(50);
  EXPECT_TRUE(stage.running());
}

TEST_F(Scroll, RunsOnTheCallersThreadUntilNothingMoves) {
  auto made = setting({0, 0, 4, 2});
  made.sourceY = 1;
  made.stepY = -1;
  stage.put(1, made);
  const uint32_t start = tickCount();
  stage.run(50, [](uint32_t millis) { sleepMillis(millis); });
  EXPECT_EQ(screen(), "ABCD/EFGH/ZZZZ");
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Ended);
  EXPECT_EQ(tickCount() - start, 100u);
}

TEST_F(Scroll, ComesInAgainAtTheOtherSideWhereThePlaceFits) {
  auto made = setting({0, 0, 4, 1});
  made.stepY = -1;
  stage.put(1, made);
  stage.tick();
  stage.tick();
  EXPECT_EQ(screen(), "IJKL/ZZZZ/ZZZZ");
  EXPECT_EQ(stage.layer(1)->state(), ScrollLayer::Moving);
}

TEST_F(Scroll, RunsOnTheCallersThreadUntilItsRoutineSaysSo) {
  stage.put(1, setting({0, 0, 4, 1}));
  stage.setRoutine([&](ScrollStage&) { return view.updates < 9; });
  stage.run(50, [](uint32_t millis) { sleepMillis(millis); });
  EXPECT_EQ(view.updates, 10);
}

TEST_F(Scroll, LeavesByTheExceptionOfTheCallersSleep) {
  auto made = setting({0, 0, 4, 1});
  made.stepX = 1;
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  Event abort("abort", Event::Reset::Manual);
  Thread ui;
  ui.start("ui", [&] {
    sleepMillis(120);
    abort.set();
  });
  const uint32_t start = tickCount();
  EXPECT_THROW(stage.run(50,
                         [&](uint32_t millis) {
                           if (abort.wait(millis) == 0) throw ExitScenarioException();
                         }),
               ExitScenarioException);
  EXPECT_EQ(tickCount() - start, 120u);
  ui.join();
  // The stage is whole, and runs again.
  stage.tick();
}

TEST_F(Scroll, MayBeStoppedByItsRoutine) {
  auto made = setting({0, 0, 4, 1});
  made.stepX = 1;
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  stage.setRoutine([&](ScrollStage& running) {
    if (view.updates == 2) running.stop();
    return true;
  });
  stage.start(50);
  sleepMillis(500);
  EXPECT_FALSE(stage.running());
  EXPECT_EQ(view.updates, 3);
  view.updates = 0;
  stage.run(50, [](uint32_t millis) { sleepMillis(millis); });
  EXPECT_EQ(view.updates, 3);
}

TEST_F(Scroll, DrawsNothingWithoutAView) {
  ScrollStage nowhere(nullptr);
  nowhere.startFade(2, 0, 255, {});
  nowhere.put(1, setting({0, 0, 4, 1}));
  EXPECT_FALSE(nowhere.tick());
  nowhere.start(10);
  sleepMillis(50);
  EXPECT_FALSE(nowhere.running());
}

TEST_F(Scroll, MayBeChangedWhileItRuns) {
  auto made = setting({0, 0, 4, 1});
  made.wrap = ScrollLayer::WrapX;
  stage.put(1, made);
  stage.start(5);
  for (int round = 0; round < 20; ++round) {
    stage.layer(1)->setStep(round, 0);
    stage.put(2 + round % 4, made);
    stage.remove(2 + (round + 2) % 4);
    stage.startFade(3, 0, 255, view.surface.storedColours());
    sleepMillis(7);
  }
  stage.stop();
  EXPECT_GT(view.updates, 20);
}

}  // namespace
}  // namespace qv::testing
