// Click maps as scenes name them.

#include <gtest/gtest.h>

#include "foundation/file.h"
#include "platform/text/shift_jis.h"
#include "scenario/animation_objects.h"
#include "scenario/click_map_objects.h"
#include "tests/support/picture_bytes.h"
#include "tests/unit/input/input_ground.h"
#include "tests/unit/scenario/view_host.h"

namespace qv::testing {
namespace {

class Clicks : public ::testing::Test {
 protected:
  Clicks() {
    manager.Start(&host, "Test", 1, 1, 1);
    manager.SetSceneName("sc_here");
  }
  QVClickMap* find(const char* name) { return findClickMap(manager, name); }
  int32_t regionAt(const char* name, int32_t x, int32_t y) { return find(name)->regionAt(x, y); }
  void expectBox(const std::string& utf8, const char* caption) {
    ASSERT_EQ(platform.dialogs.shown.size(), 1u);
    EXPECT_EQ(platform.dialogs.shown[0].text, sjis(utf8.c_str()));
    EXPECT_EQ(platform.dialogs.shown[0].caption, caption);
    EXPECT_EQ(platform.dialogs.shown[0].flags, BoxNotice);
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  ViewHost host;
  QVScenario manager;
};

TEST_F(Clicks, AMapHasTheSizeTheFillAndTheHoverThatItWasMadeWith) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  ASSERT_NE(find("clm"), nullptr);
  EXPECT_EQ(find("clm")->width(), 30);
  EXPECT_EQ(find("clm")->height(), 20);
  EXPECT_EQ(find("clm")->hoverEnabled(), 1);
  EXPECT_EQ(regionAt("clm", 29, 19), 5);
  EXPECT_EQ(regionAt("clm", 30, 19), NoRegion);
  EXPECT_EQ(manager.FindObject("clm")->typeCode(), TypeClickMap);
}

TEST_F(Clicks, ASecondCreationReplacesTheMap) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  manager.CreateClickMap("clm", 10, 10, 6, 0);
  EXPECT_EQ(find("clm")->width(), 10);
  EXPECT_EQ(regionAt("clm", 0, 0), 6);
  EXPECT_EQ(find("clm")->view(), nullptr);
  EXPECT_TRUE(host.view.surfaceView.maps.empty());
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(Clicks, AMapOverASurfacesNameShowsTheMessageAndKeepsTheSurface) {
  manager.CreateObject("taken", TypeSurface, {.a1 = 4, .a2 = 4});
  manager.CreateClickMap("taken", 30, 20, 5, 1);
  expectBox(
      "takenは、サーフェースオブジェクトとして\nすでに登録されています。\n何もせずに処理を継続しま"
      "す。",
      "sc_here");
  EXPECT_EQ(manager.FindObject("taken")->typeCode(), TypeSurface);

  platform.dialogs.shown.clear();
  manager.LoadClickMap("taken", "C:\\none.bmp", 1);
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);  // and no word about the file
  EXPECT_EQ(manager.FindObject("taken")->typeCode(), TypeSurface);
}

TEST_F(Clicks, AMapOverAViewHasItsSizeAndIsNotYetOnIt) {
  manager.CreateClickMapOver("clm", "winClient", 5, 1);
  ASSERT_NE(find("clm"), nullptr);
  EXPECT_EQ(find("clm")->width(), 64);
  EXPECT_EQ(find("clm")->height(), 48);
  EXPECT_EQ(regionAt("clm", 63, 47), 5);
  EXPECT_EQ(find("clm")->view(), nullptr);
  manager.CreateClickMapOver("other", "nowhere", 5, 1);
  EXPECT_EQ(find("other"), nullptr);
}

TEST_F(Clicks, AMapIsLoadedFromABitmapAMapFileAndAPictureOfTheGame) {
  manager.CreateClickMap("made", 6, 5, 3, 0);
  manager.AddClickRect("made", 1, 1, 2, 2, 200);
  manager.MoveWindow("made", 11, -12);
  find("made")->saveAs("C:\\map.clm");
  find("made")->saveBmpByName("C:\\map.bmp");

  manager.LoadClickMap("fromMap", "C:\\map.clm", 1);
  EXPECT_EQ(find("fromMap")->originX(), 11);
  EXPECT_EQ(find("fromMap")->originY(), -12);
  EXPECT_EQ(regionAt("fromMap", 11 + 2, -12 + 2), 200);
  EXPECT_EQ(regionAt("fromMap", 11 + 3, -12 + 2), 3);
  EXPECT_EQ(find("fromMap")->hoverEnabled(), 1);

  // A mask of 4 by 2 pixels as a picture of the game.
  const std::string pixels = bytesOf({1, 2, 3, 4, 5, 6, 7, 250});
  platform.writeFile(platform.game() / "mask.mcg",
                     mcgFile({.width = 4, .height = 2, .pixelBytes = 8}, literals(pixels)));
  manager.LoadClickMap("fromMcg", "mask.mcg", 1);
  EXPECT_EQ(find("fromMcg")->width(), 4);
  EXPECT_EQ(regionAt("fromMcg", 3, 1), 250);
  EXPECT_EQ(regionAt("fromMcg", 0, 0), 1);

  manager.LoadClickMap("fromBmp", "C:\\map.bmp", 0);
  EXPECT_EQ(find("fromBmp")->originX(), 0);
  EXPECT_EQ(find("fromBmp")->width(), 6);
  EXPECT_EQ(regionAt("fromBmp", 1, 1), 200);
  EXPECT_EQ(regionAt("fromBmp", 5, 4), 3);
}

TEST_F(Clicks, AMapFileThatIsThereIsWrittenOverOnlyOnYes) {
  manager.CreateClickMap("clm", 6, 5, 3, 0);
  find("clm")->saveAs("C:\\map.clm");
  const std::string first = platform.readFile(platform.player() / "map.clm");
  EXPECT_TRUE(platform.dialogs.shown.empty());

  manager.AddClickRect("clm", 0, 0, 6, 5, 4);
  platform.dialogs.answers = {BoxAnswer::No};
  find("clm")->saveAs("C:\\map.clm");
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].text,
            sjis("C:\\map.clmは\nすでに存在しています。上書きしてもよろしいですか？"));
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVClickMap - save");
  EXPECT_EQ(platform.dialogs.shown[0].flags & BoxButtonMask, BoxYesNo & BoxButtonMask);
  EXPECT_EQ(platform.readFile(platform.player() / "map.clm"), first);

  platform.dialogs.answers = {BoxAnswer::Yes};
  find("clm")->saveAs("C:\\map.clm");
  EXPECT_NE(platform.readFile(platform.player() / "map.clm"), first);
}

TEST_F(Clicks, MapsAreStampedOntoEachOther) {
  manager.CreateClickMap("plate", 20, 10, 1, 0);
  manager.CreateClickMap("hole", 4, 4, 0, 0);
  manager.AddClickRect("hole", 1, 1, 2, 2, 9);
  manager.StampClickMap("plate", "hole", 10, 2, KeyTopLeft);
  EXPECT_EQ(regionAt("plate", 10, 2), 1);
  EXPECT_EQ(regionAt("plate", 11, 3), 9);
  EXPECT_EQ(regionAt("plate", 12, 4), 9);
  EXPECT_EQ(regionAt("plate", 13, 5), 1);
  manager.StampClickMap("plate", "none", 0, 0, KeyNone);
  manager.StampClickMap("none", "hole", 0, 0, KeyNone);
  EXPECT_EQ(regionAt("plate", 0, 0), 1);
}

TEST_F(Clicks, AMapIsConnectedToAViewFromEitherSideAndTakenOffAgain) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.MoveWindow("clm", 3, 4);
  manager.ConnectObjects("clm", "cg.view");
  EXPECT_EQ(find("clm")->view(), &host.view.surfaceView);
  EXPECT_EQ(find("clm")->originX(), 3);
  EXPECT_EQ(host.view.surfaceView.maps.size(), 1u);
  // A frame stands for its client.
  manager.ConnectObjects("win", "clm");
  EXPECT_EQ(find("clm")->view(), &host.client.surfaceView);
  EXPECT_TRUE(host.view.surfaceView.maps.empty());
  manager.DisconnectObjects("clm", "cg.view");
  EXPECT_EQ(find("clm")->view(), &host.client.surfaceView);
  manager.DisconnectObjects("clm", "win");
  EXPECT_EQ(find("clm")->view(), nullptr);
}

TEST_F(Clicks, TheSecondOfTwoMapsComesUnderTheFirst) {
  manager.CreateClickMap("all", 30, 20, 5, 1);
  manager.CreateClickMap("part", 30, 20, 5, 1);
  manager.ConnectObjects("all", "part");
  EXPECT_EQ(find("part")->parent(), find("all"));
  manager.DisconnectObjects("part", "all");
  EXPECT_EQ(find("part")->parent(), find("all"));
  manager.DisconnectObjects("all", "part");
  EXPECT_EQ(find("part")->parent(), nullptr);
  manager.ConnectObjects("all", "part");
  manager.DestroyObject("all");
  EXPECT_EQ(find("part")->parent(), nullptr);
}

TEST_F(Clicks, WaitingOnWhatIsNoMapIsToldAndGivesCancel) {
  manager.CreateObject("surf", TypeSurface, {.a1 = 4, .a2 = 4});
  for (const char* name : {"surf", "nothing"}) {
    platform.dialogs.shown.clear();
    EXPECT_EQ(manager.ClickWait(name, 1, 1), ClickCancel);
    expectBox(std::string("指定された") + name +
                  "は、クリックマップではありません。\nRESULT_CANCELを返して処理を継続します。",
              "Test");
  }
}

TEST_F(Clicks, WaitingOnAMapWithoutAViewIsToldAndGivesCancel) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  EXPECT_EQ(manager.ClickWait("clm", 1, 1), ClickCancel);
  expectBox(
      "指定されたclmは、どこにも関連付けられていません。\nビューポートに関連付けて下さい。－１を返"
      "して処理を継続します。",
      "Test");
}

TEST_F(Clicks, AWaitTakesTenthsOfASecondOrForEver) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  const uint32_t start = tickCount();
  EXPECT_EQ(manager.ClickWait("clm", 5, 1), ClickTimeout);
  EXPECT_EQ(tickCount() - start, 500u);
  EXPECT_TRUE(host.waitKeys);
  EXPECT_EQ(host.mapWaitsEnded, 1);
  for (const int32_t forEver : {0, -1}) {
    Thread other;
    host.onMapWait = [&](ClickTarget& map) {
      other.start("window", [&] {
        sleepMillis(3'600'000);
        map.report(LeftButtonDown, NoRegion);
      });
    };
    EXPECT_EQ(manager.ClickWait("clm", forEver, 0), 0);
    EXPECT_FALSE(host.waitKeys);
  }
}

TEST_F(Clicks, AKeyOfTheHostReachesTheMapsWaitAndLeavesTheHostFree) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  const auto given = [&](int32_t code) {
    host.onMapWait = [this, code](ClickTarget&) { EXPECT_TRUE(host.deliverInput(code)); };
    return manager.ClickWait("clm", 0, 1);
  };
  EXPECT_EQ(given(2061), 2061);
  EXPECT_EQ(given(0), 2049);  // the pointer's buttons, beside the map
  EXPECT_EQ(given(-1), 2050);
  host.onMapWait = nullptr;
  EXPECT_EQ(manager.ClickWait("clm", 1, 1), ClickTimeout);
  EXPECT_FALSE(host.deliverInput(2061));
  EXPECT_EQ(host.inputEvent.wait(0), 0);
}

TEST_F(Clicks, TheAbortDetachesTheMapAndLeavesTheHostFree) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  host.onMapWait = [&](ClickTarget&) { host.abortEvent.set(); };
  EXPECT_THROW(manager.ClickWait("clm", 0, 1), ExitScenarioException);
  EXPECT_EQ(find("clm")->view(), nullptr);
  EXPECT_EQ(host.mapWaitsEnded, 1);
  EXPECT_EQ(host.waitingFlag, 0);
  EXPECT_EQ(host.inputEvent.wait(0), 0);
  manager.ConnectObjects("clm", "cg.view");
  EXPECT_THROW(manager.ClickTickWait("clm", 0, 0), ExitScenarioException);
  EXPECT_EQ(find("clm")->view(), nullptr);
}

TEST_F(Clicks, TicksAndHoverRequestsGoToTheMap) {
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  manager.SetClickTick("clm", 40);
  const uint32_t start = tickCount();
  sleepMillis(30);
  EXPECT_EQ(manager.ClickTickWait("clm", 0, 0), ClickTimeout);
  EXPECT_EQ(tickCount() - start, 40u);
  EXPECT_EQ(host.nudges, 0);
  manager.RequestHover("clm", 1);
  EXPECT_EQ(manager.ClickTickWait("clm", 10, 0), ClickTimeout);
  EXPECT_EQ(host.nudges, 2);
}

TEST_F(Clicks, MissingAndNullNamesDoNothing) {
  for (const char* name : {static_cast<const char*>(nullptr), "none"}) {
    manager.AddClickRect(name, 0, 0, 1, 1, 1);
    manager.StampClickMap(name, name, 0, 0, KeyNone);
    manager.SetClickTick(name, 5);
    manager.RequestHover(name, 1);
    manager.SetAutoAdvance(name, 1, name, 1);
    manager.CreateClickMapOver("clm", name, 1, 1);
  }
  manager.LoadClickMap("clm", nullptr, 1);
  EXPECT_EQ(manager.ClickWait(nullptr, 0, 1), ClickCancel);
  EXPECT_EQ(manager.ClickTickWait(nullptr, 0, 1), ClickCancel);
  EXPECT_TRUE(platform.dialogs.shown.empty());
  EXPECT_EQ(find("clm"), nullptr);
}

// --- Animations that move a wait on ---

class AutoAdvanced : public Clicks {
 protected:
  AutoAdvanced() {
    manager.CreateClickMap("clm", 30, 20, 5, 1);
    manager.ConnectObjects("clm", "cg.view");
    QVVSurface strip;
    strip.create(4, 2);
    strip.saveBmpByName("C:\\strip.bmp");
    manager.CreateObject("cells", TypeAnimationSurface, {"strip.bmp", 2, KeyNone});
    manager.CreateObject("steps", TypeAnimationSequence, {"ABAB", 1});
    const Rectangle place{0, 0, 2, 2};
    manager.CreateObject("area", TypeAnimationArea, {.a1 = &place});
    manager.ConnectObjects("area", "cg.view");
    manager.ConnectObjects("area", "cells");
    manager.ConnectObjects("area", "steps");
  }
};

TEST_F(AutoAdvanced, AnAnimationThatRunsToItsEndPostsItsCodeToTheWaitingMap) {
  manager.SetAutoAdvance("area", 1, "clm", 77);
  manager.ShowArea("area", 0);
  EXPECT_EQ(manager.ClickWait("clm", 100, 1), 77);
  EXPECT_TRUE(host.pressed.empty());
}

TEST_F(AutoAdvanced, WithoutAMapItPressesSpace) {
  manager.SetAutoAdvance("area", 1);
  manager.ShowArea("area", 0);
  EXPECT_EQ(manager.ClickWait("clm", 10, 1), ClickTimeout);
  EXPECT_EQ(host.pressed, std::vector<int32_t>{32});
}

TEST_F(AutoAdvanced, OneThatIsStoppedOrUnwantedSaysNothing) {
  manager.SetAutoAdvance("area", 1, "clm", 77);
  manager.ShowArea("area", 0);
  manager.HideArea("area", 1);
  EXPECT_EQ(manager.ClickWait("clm", 10, 1), ClickTimeout);
  manager.SetAutoAdvance("area", 0, "clm", 77);
  manager.ShowArea("area", 0);
  EXPECT_EQ(manager.ClickWait("clm", 10, 1), ClickTimeout);
}

TEST_F(AutoAdvanced, AMapThatGoesIsToldNothingAnyMore) {
  manager.SetAutoAdvance("area", 1, "clm", 77);
  manager.ShowArea("area", 0);
  manager.DestroyObject("clm");
  sleepMillis(1000);
  EXPECT_TRUE(host.pressed.empty());
  manager.CreateClickMap("clm", 30, 20, 5, 1);
  manager.ConnectObjects("clm", "cg.view");
  EXPECT_EQ(manager.ClickWait("clm", 10, 1), ClickTimeout);
}

}  // namespace
}  // namespace qv::testing
