#include "scenario/animation_objects.h"

#include <gtest/gtest.h>

#include "foundation/file.h"
#include "tests/unit/graphics/animation/animation_ground.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

/// A host with one view that has pixels, "cg.view", which is the client of the frame "cg" too.
class ViewHost : public FakeHost {
 public:
  class ViewWindow : public WindowObject {
   public:
    int typeCode() const override { return TypeView; }
    View* view() override { return drawnInto; }
    View* drawnInto = nullptr;
  };
  ViewHost() {
    window.name.create(QVString::DefaultGrain, "cg.view");
    window.drawnInto = &screen;
    screen.surface.fill(26);
  }
  WindowObject* FindWindowObject(const char* name) override {
    if (window.name.equals(name) || std::string(name) == "cgClient") return &window;
    return FakeHost::FindWindowObject(name);
  }

  FakeView screen{6, 4};
  ViewWindow window;
};

class NamedAnimation : public ::testing::Test {
 protected:
  NamedAnimation() {
    writeLetters(platform);
    manager.Start(&host, "Test", 8, 4, 16);
    place = {1, 1, 3, 3};
    manager.CreateObject("a.Surf", TypeAnimationSurface, {"abc.bmp", 3, KeyNone});
    manager.CreateObject("a.Sequ", TypeAnimationSequence, {"B."});
    manager.CreateObject("a.Area", TypeAnimationArea, {&place});
  }
  void connect() {
    manager.RelateAnimation("a.Area", "a.Surf", "a.Sequ", 1, 0, 0, 1);
    manager.ConnectObjects("cg.view", "a.Area");
  }
  QVAnimationArea& area(const char* name = "a.Area") {
    return *static_cast<QVAnimationArea*>(manager.FindNative(name, TypeAnimationArea));
  }
  std::string screen() { return textOf(host.screen.surface); }

  static constexpr const char* Before = "ZZZZZZ/ZZZZZZ/ZZZZZZ/ZZZZZZ";
  static constexpr const char* ShowsA = "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ";
  static constexpr const char* ShowsB = "ZZZZZZ/ZBBZZZ/ZBBZZZ/ZZZZZZ";

  TestPlatform platform{false, makeSimulatedKernel()};
  ViewHost host;
  Rectangle place;
  QVScenario manager;
};

TEST_F(NamedAnimation, HasItsMembersByName) {
  EXPECT_NE(manager.FindNative("a.Surf"), nullptr);
  EXPECT_NE(manager.FindNative("a.Sequ"), nullptr);
  EXPECT_NE(manager.FindNative("a.Area"), nullptr);
  EXPECT_EQ(manager.FindNative("a.Area", TypeAnimationSurface), nullptr);
  manager.CreateObject("film", TypeFrameFilm, {"none"});
  EXPECT_NE(manager.FindObject("film", TypeFrameFilm), nullptr);
  EXPECT_EQ(manager.FindNative("film"), nullptr);
}

TEST_F(NamedAnimation, IsShownAndHiddenByName) {
  connect();
  manager.ShowArea("a.Area", 1);
  sleepMillis(30);
  EXPECT_EQ(screen(), ShowsB);
  EXPECT_TRUE(area().running());
  manager.HideArea("a.Area", 0);
  EXPECT_FALSE(area().running());
  EXPECT_EQ(screen(), ShowsB);
  manager.HideArea("a.Area", 1);
  EXPECT_EQ(screen(), ShowsA);
}

TEST_F(NamedAnimation, StartsOverABackupOnlyWithTheFlag) {
  manager.CreateObject("b.Sequ", TypeAnimationSequence, {"B(1,1)."});
  manager.RelateAnimation("a.Area", "a.Surf", "b.Sequ", 1, 0, 0, 1);
  manager.ConnectObjects("a.Area", "cg.view");
  manager.ShowArea("a.Area", 0);
  host.screen.surface.fill(4);
  manager.HideArea("a.Area", 1);
  EXPECT_EQ(screen(), "DDDDDD/DDDDDD/DDADDD/DDDDDD");
  host.screen.surface.fill(26);
  manager.ShowArea("a.Area", 1);
  host.screen.surface.fill(4);
  manager.HideArea("a.Area", 1);
  EXPECT_EQ(screen(), "DDDDDD/DZZDDD/DZADDD/DDDDDD");
}

TEST_F(NamedAnimation, IsConnectedPartByPart) {
  manager.ConnectObjects("a.Area", "a.Surf");
  manager.ConnectObjects("a.Area", "a.Sequ");
  manager.ConnectObjects("a.Area", "cg.view");
  ASSERT_EQ(area().relations().size(), 1u);
  EXPECT_TRUE(area().tick());
  EXPECT_EQ(screen(), ShowsB);
}

TEST_F(NamedAnimation, IsConnectedToTheClientOfAFrame) {
  manager.RelateAnimation("a.Area", "a.Surf", "a.Sequ", 1, 0, 0, 1);
  host.addWindow("cg", TypeFrame);
  manager.ConnectObjects("cg", "a.Area");
  EXPECT_TRUE(area().tick());
  manager.DisconnectObjects("cg", "a.Area");
  EXPECT_FALSE(area().tick());
  manager.ConnectObjects("a.Area", "cg.view");
  EXPECT_TRUE(area().tick());
  manager.DisconnectObjects("a.Area", "cg.view");
  EXPECT_FALSE(area().tick());
}

TEST_F(NamedAnimation, ChainsAreas) {
  connect();
  const Rectangle beside{4, 0, 6, 2};
  manager.CreateObject("b.Area", TypeAnimationArea, {&beside});
  manager.RelateAnimation("b.Area", "a.Surf", "a.Sequ", 1, 0, 0, 1);
  manager.ConnectObjects("b.Area", "cg.view");
  manager.ConnectObjects("a.Area", "b.Area");
  manager.ConnectObjects("b.Area", "a.Area");
  manager.ConnectObjects("a.Area", "a.Area");
  manager.HideArea("a.Area", 1);
  EXPECT_EQ(screen(), "ZZZZAA/ZAAZAA/ZAAZZZ/ZZZZZZ");
}

TEST_F(NamedAnimation, NeedsAllThreeNamesForARelation) {
  manager.RelateAnimation("a.Area", "none", "a.Sequ", 1, 0, 0, 1);
  manager.RelateAnimation("a.Area", "a.Surf", "none", 1, 0, 0, 1);
  manager.RelateAnimation("a.Area", "a.Sequ", "a.Surf", 1, 0, 0, 1);
  manager.RelateAnimation(nullptr, nullptr, nullptr, 1, 0, 0, 1);
  manager.RelateAnimation("none", "a.Surf", "a.Sequ", 1, 0, 0, 1);
  EXPECT_TRUE(area().relations().empty());
}

TEST_F(NamedAnimation, DoesNothingForNamesOfNothing) {
  for (const char* name : {static_cast<const char*>(nullptr), "none", "a.Surf", "cg.view"}) {
    manager.ShowArea(name, 1);
    manager.HideArea(name, 1);
    manager.PlayDrawAnimation(name, "cg.view", 1, 0, 0);
  }
  EXPECT_EQ(screen(), Before);
}

TEST_F(NamedAnimation, TakesTheKeyOfItsCellsFromTheArguments) {
  const auto drawn = [&](const char* name) {
    host.screen.surface.fill(26);
    auto* cells = static_cast<QVAnimationSurface*>(manager.FindNative(name, TypeAnimationSurface));
    cells->drawCell(host.screen.surface, 0, 0, 0);
    return screen().substr(0, 2);
  };
  manager.CreateObject("key", TypeAnimationSurface, {"abc.bmp", 3, KeyTopLeft});
  manager.CreateObject("one", TypeAnimationSurface, {"abc.bmp", 3, 1});
  manager.CreateObject("two", TypeAnimationSurface, {"abc.bmp", 3, 2});
  manager.CreateObject("none", TypeAnimationSurface, {"abc.bmp"});
  manager.CreateObject("bare", TypeAnimationSurface);
  EXPECT_EQ(drawn("a.Surf"), "AA");
  EXPECT_EQ(drawn("key"), "ZZ");
  EXPECT_EQ(drawn("one"), "ZZ");
  EXPECT_EQ(drawn("two"), "AA");
  EXPECT_EQ(drawn("none"), "ZZ");
  EXPECT_EQ(drawn("bare"), "ZZ");
}

TEST_F(NamedAnimation, LoopsUnlessTheArgumentsStopIt) {
  manager.CreateObject("stops", TypeAnimationSequence, {"A", 1});
  manager.CreateObject("loops", TypeAnimationSequence, {"A", 0});
  manager.CreateObject("bare", TypeAnimationSequence);
  const auto second = [&](const char* name) {
    auto* sequence =
        static_cast<AnimationSequence*>(manager.FindNative(name, TypeAnimationSequence));
    sequence->step(false);
    return sequence->step(false).cell;
  };
  EXPECT_EQ(second("stops"), AnimationSequence::Ended);
  EXPECT_EQ(second("loops"), 0);
  EXPECT_EQ(second("bare"), AnimationSequence::Ended);
}

TEST_F(NamedAnimation, IsPlayedAsAnArea) {
  connect();
  manager.PlayDrawAnimation("a.Area", "cg.view", 0, 0, 0);
  EXPECT_TRUE(area().running());
}

TEST_F(NamedAnimation, LosesWhatIsDestroyedWhileItRuns) {
  connect();
  manager.ShowArea("a.Area", 1);
  sleepMillis(30);
  manager.DestroyObject("a.Sequ");
  EXPECT_TRUE(area().relations().empty());
  sleepMillis(30);
  EXPECT_FALSE(area().running());
  manager.CreateObject("a.Sequ", TypeAnimationSequence, {"C"});
  connect();
  manager.ShowArea("a.Area", 1);
  manager.DestroyObject("a.Surf");
  EXPECT_TRUE(area().relations().empty());
  manager.DestroyObject("a.Area");
  EXPECT_EQ(manager.FindObject("a.Area"), nullptr);
}

TEST_F(NamedAnimation, StopsWithTheRun) {
  connect();
  manager.ShowArea("a.Area", 1);
  sleepMillis(30);
  manager.Release();
  EXPECT_EQ(screen(), ShowsA);
  EXPECT_EQ(manager.FindObject("a.Area"), nullptr);
}

TEST_F(NamedAnimation, StopsWhenASaveIsLoaded) {
  connect();
  QVFile save;
  save.openName("save", CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
  manager.SaveState(save);
  manager.ShowArea("a.Area", 1);
  sleepMillis(30);
  save.seek(0, SeekFrom::Start);
  manager.RestoreState(save);
  save.close();
  EXPECT_FALSE(area().running());
  EXPECT_EQ(screen(), ShowsA);
  manager.ShowArea("a.Area", 1);
  EXPECT_TRUE(area().running());
}

TEST_F(NamedAnimation, StartsAndStopsAnimationControls) {
  FakeNative native;
  host.addWindow("control", TypeAnimationControl);
  manager.ShowArea("control", 0);
  host.FindWindowObject("control")->window = &native;
  manager.ShowArea("control", 0);
  manager.HideArea("control", 0);
  ASSERT_EQ(native.sent.size(), 2u);
  EXPECT_EQ(native.sent[0].id, MessageAnimationStart);
  EXPECT_EQ(native.sent[1].id, MessageAnimationStop);
}

class NamedFilm : public NamedAnimation {
 protected:
  NamedFilm() {
    for (const char* name : {"f0000.bmp", "f0001.bmp", "f0002.bmp"})
      platform.writeFile(platform.game() / name, bitmapOf({std::string(1, name[4] - '0' + 'A')}));
    host.screen.onUpdate = [this] {
      shown += screen()[0];
      sleepMillis(100);
    };
    manager.CreateObject("film", TypeFrameFilm, {"f", 0});
  }
  std::string shown;
};

TEST_F(NamedFilm, IsPlayedToItsEnd) {
  manager.PlayDrawAnimation("film", "cg.view", 1, 0, 0);
  EXPECT_EQ(shown, "ABC");
  manager.PlayDrawAnimation("film", "cg.view", 1, 1, 0);
  EXPECT_EQ(shown, "ABCBC");
  manager.PlayDrawAnimation("film", "cg.view", 1, 0, 0);
  EXPECT_EQ(shown, "ABCBCBC");
}

TEST_F(NamedFilm, RunsOnItsOwnUntilItIsHidden) {
  manager.PlayDrawAnimation("film", "cg.view", 0, 0, 0);
  sleepMillis(150);
  manager.HideArea("film", 0);
  EXPECT_EQ(shown, "AB");
}

TEST_F(NamedFilm, HasNoMorePicturesThanItsArgumentSays) {
  manager.CreateObject("short", TypeFrameFilm, {"f", 2});
  manager.PlayDrawAnimation("short", "cg.view", 1, 0, 0);
  EXPECT_EQ(shown, "AB");
}

TEST_F(NamedFilm, NeedsAView) {
  manager.PlayDrawAnimation("film", "none", 1, 0, 0);
  manager.PlayDrawAnimation("film", nullptr, 1, 0, 0);
  EXPECT_EQ(shown, "");
}

TEST_F(NamedFilm, IsLeftAtTheAbort) {
  Thread ui;
  ui.start("closing", [&] {
    sleepMillis(50);
    host.abortEvent.set();
  });
  const uint32_t start = tickCount();
  manager.PlayDrawAnimation("film", "cg.view", 1, 0, 0);
  EXPECT_LE(tickCount() - start, 100u);
  EXPECT_EQ(shown, "A");
  ui.join();
}

/// The manager's lock is held while it stops what runs.
TEST(NamedAnimationSeeds, EndsWhileEverythingRuns) {
  for (uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    writeLetters(platform);
    ViewHost host;
    QVScenario manager;
    manager.Start(&host, "Test", 8, 4, 16);
    const Rectangle left{0, 0, 2, 2}, right{3, 0, 5, 2};
    manager.CreateObject("s", TypeAnimationSurface, {"abc.bmp", 3, KeyNone});
    manager.CreateObject("q", TypeAnimationSequence, {"ABC."});
    for (const auto& [name, place] : {std::pair{"l", &left}, std::pair{"r", &right}}) {
      manager.CreateObject(name, TypeAnimationArea, {place});
      manager.RelateAnimation(name, "s", "q", 1, 0, 0, 1);
      manager.ConnectObjects("cg.view", name);
      manager.ShowArea(name, 1);
    }
    sleepMillis(static_cast<uint32_t>(seed * 7 % 50));
    manager.Release();
    EXPECT_EQ(textOf(host.screen.surface), "AAZAAZ/AAZAAZ/ZZZZZZ/ZZZZZZ");
    const int updates = host.screen.updateCount();
    sleepMillis(100);
    EXPECT_EQ(host.screen.updateCount(), updates);
  }
}

}  // namespace
}  // namespace qv::testing
