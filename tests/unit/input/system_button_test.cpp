// System buttons: the four frames, what lies behind them, and flashes that end by themselves.

#include "input/system_button.h"

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

/// Frames A (up), B (pressed), C (disabled), D (disabled and pressed) of 2 by 2 pixels; the button
/// lies at 1, 0 of a view of E.
class SystemButtonTest : public ::testing::Test {
 protected:
  SystemButtonTest() {
    platform.writeFile(platform.game() / "button.bmp", bitmapOf({"AABBCCDD", "AABBCCDD"}));
    // With holes, the dots, which do not lie in the same place.
    platform.writeFile(platform.game() / "holes.bmp", bitmapOf({".AB.C..D", "A..BC.D."}));
    view.surface.fill(5);
  }
  void place(const char* file = "button.bmp", int32_t enabled = 1, int32_t pressed = 0,
             ColourKey key = KeyNone, int32_t keep = 1) {
    button.place(&view, 1, 0, file, key, enabled, pressed, keep);
  }
  /// What shows, on the screen too.
  std::string shown() {
    std::vector<uint32_t> painted(view.screen.size());
    view.surface.paint(painted, 4, 2, 0, 0, {0, 0, 4, 2});
    EXPECT_TRUE(flushed == 0 || painted == view.screen);
    return textOf(view.surface);
  }
  TestPlatform platform{false, makeSimulatedKernel()};
  FakeView view{4, 2};
  int flushed = 0;
  Event exit{"exit", Event::Reset::Manual};
  SystemButton button{&exit};
};

TEST_F(SystemButtonTest, ShowsTheFrameOfEachState) {
  struct Row {
    int32_t enabled, pressed;
    uint32_t state;
    const char* shown;
  };
  for (const Row& row : {Row{1, 0, 1, "EAAE/EAAE"}, Row{1, 1, 3, "EBBE/EBBE"},
                         Row{0, 0, 0, "ECCE/ECCE"}, Row{0, 1, 2, "EDDE/EDDE"}}) {
    place("button.bmp", row.enabled, row.pressed);
    EXPECT_EQ(button.state(), row.state);
    EXPECT_EQ(textOf(view.surface), row.shown);
    EXPECT_TRUE((view.updated == Rectangle{1, 0, 3, 2}));
  }
  EXPECT_EQ(button.width(), 2);
  EXPECT_EQ(button.height(), 2);
}

TEST_F(SystemButtonTest, IsOnTheScreenWhenACallReturns) {
  view.flush(nullptr, 0);
  flushed = 1;
  place();
  EXPECT_EQ(shown(), "EAAE/EAAE");
  button.disable();
  EXPECT_EQ(shown(), "ECCE/ECCE");
  button.enable();
  EXPECT_EQ(shown(), "EAAE/EAAE");
  button.flash(0, 0);
  EXPECT_EQ(shown(), "EBBE/EBBE");
  button.disable();
  EXPECT_EQ(shown(), "EDDE/EDDE");
  button.release();
  EXPECT_EQ(shown(), "ECCE/ECCE");
}

TEST_F(SystemButtonTest, ChangesNothingBeforeItIsPlaced) {
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  button.redraw();
  button.flash(3, 1);
  button.release();
  button.enable();
  button.disable();
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  EXPECT_EQ(view.updateCount(), 0);
  EXPECT_EQ(tickCount(), 0u);
}

TEST_F(SystemButtonTest, StaysUnplacedWithoutAViewOrAPictureOf8Bits) {
  button.place(nullptr, 1, 0, "button.bmp", KeyNone, 1, 0, 1);
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  button.place(&view, 1, 0, nullptr, KeyNone, 1, 0, 1);
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  platform.writeFile(platform.game() / "text.bmp", "no picture at all");
  place("text.bmp");
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  place();
  EXPECT_THROW(place("missing.bmp"), CannotOpenException);
  EXPECT_EQ(button.state(), SystemButton::NoImage);
  button.redraw();
  EXPECT_EQ(view.updateCount(), 1);
}

TEST_F(SystemButtonTest, KeepsWhatLiesBehindItsHoles) {
  place("holes.bmp", 1, 0, 0);
  EXPECT_EQ(textOf(view.surface), "EEAE/EAEE");
  button.flash(0, 0);
  EXPECT_EQ(textOf(view.surface), "EBEE/EEBE") << "nothing is left of the frame before";
  button.release();
  EXPECT_EQ(textOf(view.surface), "EEAE/EAEE");
}

TEST_F(SystemButtonTest, WithoutABackgroundFramesWithHolesStandOverEachOther) {
  place("holes.bmp", 1, 0, 0, 0);
  button.flash(0, 0);
  EXPECT_EQ(textOf(view.surface), "EBAE/EABE");
}

TEST_F(SystemButtonTest, WithoutAKeyHolesAreDrawn) {
  place("holes.bmp");
  EXPECT_EQ(textOf(view.surface), "E.AE/EA.E");
}

TEST_F(SystemButtonTest, RedrawPutsTheStateBackOverWhatWasDrawnThere) {
  place("holes.bmp", 1, 0, 0);
  view.surface.fill(6);
  button.redraw();
  EXPECT_EQ(textOf(view.surface), "FEAF/FAEF");
}

TEST_F(SystemButtonTest, FlashWithWaitStandsForItsTime) {
  place();
  const uint32_t start = tickCount();
  button.flash(3, 1);
  EXPECT_EQ(tickCount() - start, 300u);
  EXPECT_EQ(button.state(), SystemButton::Enabled);
  EXPECT_EQ(textOf(view.surface), "EAAE/EAAE");
}

TEST_F(SystemButtonTest, FlashesInALoopKeepTheBeat) {
  place();
  const uint32_t start = tickCount();
  for (int round = 0; round < 10; ++round)
    button.flash(3, 1);
  EXPECT_EQ(tickCount() - start, 3000u);
  EXPECT_EQ(view.updateCount(), 1 + 20);
}

TEST_F(SystemButtonTest, FlashWithoutWaitSpringsBackByItself) {
  place();
  button.flash(2, 0);
  EXPECT_EQ(tickCount(), 0u);
  EXPECT_EQ(textOf(view.surface), "EBBE/EBBE");
  sleepMillis(199);
  EXPECT_EQ(textOf(view.surface), "EBBE/EBBE");
  sleepMillis(2);
  EXPECT_EQ(textOf(view.surface), "EAAE/EAAE");
}

TEST_F(SystemButtonTest, ASecondFlashDoesNothingAndDoesNotExtendTheFirst) {
  place();
  button.flash(2, 0);
  sleepMillis(150);
  button.flash(9, 1);
  EXPECT_EQ(tickCount(), 150u);
  sleepMillis(51);
  EXPECT_EQ(button.state(), SystemButton::Enabled);
}

TEST_F(SystemButtonTest, AFlashDoesNothingWhileTheLastOnesThreadRuns) {
  place();
  button.flash(2, 0);
  button.release();
  EXPECT_TRUE(button.flashing());
  button.flash(1, 1);
  EXPECT_EQ(button.state(), SystemButton::Enabled);
  EXPECT_EQ(tickCount(), 0u);
  sleepMillis(201);
  EXPECT_FALSE(button.flashing());
  button.flash(1, 1);
  EXPECT_EQ(tickCount(), 301u);
}

TEST_F(SystemButtonTest, AFlashOfNoTimeStaysDownUntilTheRelease) {
  place();
  button.flash(0, 1);
  sleepMillis(60'000);
  EXPECT_EQ(button.state(), SystemButton::Enabled | SystemButton::Pressed);
  button.flash(1, 1);
  EXPECT_EQ(button.state(), SystemButton::Enabled | SystemButton::Pressed);
  button.release();
  EXPECT_EQ(button.state(), SystemButton::Enabled);
}

TEST_F(SystemButtonTest, ADisabledButtonFlashesWithTheDisabledPressedFrame) {
  place("button.bmp", 0);
  button.flash(2, 0);
  EXPECT_EQ(textOf(view.surface), "EDDE/EDDE");
  sleepMillis(201);
  EXPECT_EQ(textOf(view.surface), "ECCE/ECCE");
}

TEST_F(SystemButtonTest, EnabledInTheMiddleOfAFlashItSpringsBackEnabled) {
  place("button.bmp", 0);
  button.flash(2, 0);
  button.enable();
  EXPECT_EQ(textOf(view.surface), "EBBE/EBBE");
  sleepMillis(201);
  EXPECT_EQ(textOf(view.surface), "EAAE/EAAE");
}

TEST_F(SystemButtonTest, EnableAndDisableOfTheSameStateDrawNothing) {
  place();
  button.enable();
  button.release();
  EXPECT_EQ(view.updateCount(), 1);
  button.disable();
  button.disable();
  EXPECT_EQ(view.updateCount(), 2);
}

TEST_F(SystemButtonTest, TheEndOfTheGameEndsAFlashAtOnce) {
  place();
  Thread ender;
  ender.start("ender", [this] {
    sleepMillis(100);
    exit.set();
  });
  button.flash(50, 1);
  EXPECT_EQ(tickCount(), 100u);
  EXPECT_EQ(button.state(), SystemButton::Enabled);
  ender.join();
}

TEST_F(SystemButtonTest, GoesInTheMiddleOfAFlashWithoutDrawing) {
  {
    SystemButton second;
    second.place(&view, 1, 0, "button.bmp", KeyNone, 1, 0, 1);
    second.flash(50, 0);
  }
  EXPECT_EQ(tickCount(), 0u);
  EXPECT_EQ(textOf(view.surface), "EBBE/EBBE");
}

TEST_F(SystemButtonTest, PlacedAfreshInTheMiddleOfAFlashItIsAsNew) {
  place();
  button.flash(50, 0);
  place();
  EXPECT_EQ(button.state(), SystemButton::Enabled);
  EXPECT_FALSE(button.flashing());
  EXPECT_EQ(tickCount(), 0u);
}

class Counting : public SystemButton {
 public:
  ~Counting() override { endFlash(); }
  void release() override {
    ++releases;
    SystemButton::release();
  }
  std::atomic<int> releases = 0;
};

TEST_F(SystemButtonTest, AFlashEndsThroughTheButtonsOwnRelease) {
  Counting counting;
  counting.place(&view, 1, 0, "button.bmp", KeyNone, 1, 0, 1);
  counting.flash(1, 1);
  EXPECT_EQ(counting.releases, 1);
}

TEST(SystemButtonSeeds, FlashesAndReleasesOfTwoThreadsEndUp) {
  for (uint64_t seed = 1; seed <= 40; ++seed) {
    TestPlatform platform{false, makeSimulatedKernel({.seed = seed})};
    platform.writeFile(platform.game() / "button.bmp", bitmapOf({"AABBCCDD", "AABBCCDD"}));
    FakeView view{4, 2};
    SystemButton button;
    button.place(&view, 1, 0, "button.bmp", KeyNone, 1, 0, 1);
    Thread other;
    other.start("other", [&button] {
      for (int round = 0; round < 20; ++round) {
        button.disable();
        sleepMillis(70);
        button.enable();
        button.redraw();
      }
    });
    for (int round = 0; round < 20; ++round) {
      button.flash(1, round % 2);
      sleepMillis(40);
    }
    other.join();
    sleepMillis(200);
    EXPECT_EQ(button.state(), SystemButton::Enabled) << seed;
    EXPECT_EQ(textOf(view.surface), ".AA./.AA.") << seed;
  }
}

}  // namespace
}  // namespace qv::testing
