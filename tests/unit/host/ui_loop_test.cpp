// The UI thread and what it shows: a scenario thread draws, the loop runs on the test's own thread.

#include "host/ui_loop.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "platform/display/headless_display.h"
#include "platform/display/key_codes.h"
#include "platform/services.h"
#include "platform/text/text_renderer.h"
#include "scenario/messages.h"
#include "scenario/type_codes.h"
#include "tests/support/golden.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

constexpr uint8_t RedIndex = 249, BlueIndex = 252;
constexpr uint32_t Red = 0xFF0000, Blue = 0x0000FF;

const GameModule EmptyModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

DisplayEvent pointer(DisplayEvent::Kind kind, int x, int y,
                     PointerButton button = PointerButton::Left) {
  DisplayEvent event;
  event.kind = kind;
  event.x = x;
  event.y = y;
  event.button = button;
  return event;
}

class UiLoopTest : public ::testing::Test {
 protected:
  using Kind = DisplayEvent::Kind;
  UiLoopTest()
      : platform(false, makeSimulatedKernel()),
        withText({services().files, services().settings, services().dialogs, &text, nullptr}),
        host(EmptyModule),
        boxes(text),
        loop(host, display, boxes, recorder,
             {.canShow = false, .shots = {}, .applicationName = {}, .pictureShown = [this] {
                presentsWhenTold.push_back(display.presents());
              }}) {}

  /// Runs `scene` as the scenario thread, and the loop until it has ended.
  void run(const std::function<void()>& scene) {
    Thread scenario;
    scenario.start("scenario", [&] {
      loop.setScenarioThread(Thread::currentId());
      try {
        scene();
      } catch (const ExitScenarioException&) {
        aborted = true;
      }
      host.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop.run();
    scenario.join();
  }
  HostWindowObject* make(const char* name, const Rectangle& rectangle, int32_t code = TypeView,
                         const char* caption = "") {
    CreateWindowRequest request;
    request.typeCode = code;
    request.name.create(QVString::DefaultGrain, name);
    request.caption.create(QVString::DefaultGrain, caption);
    request.rectangle = rectangle;
    host.PostCreateRequest(request);
    return host.windows.find(name);
  }
  uint32_t shownAt(int x, int y) {
    return display.frame()[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }
  static void fill(HostWindowObject* view, uint8_t index) {
    view->surface8()->fill(index);
    view->flush(nullptr, 0);
  }
  /// Long enough for the display to have got everything.
  static void settle() { sleepMillis(100); }

  testing::TestPlatform platform;
  TextRenderer text;
  ServicesScope withText;
  HeadlessDisplay display;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  std::vector<size_t> presentsWhenTold;
  UiLoop loop;
  bool aborted = false;
};

TEST_F(UiLoopTest, WhatIsFlushedComesToTheDisplay) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    fill(view, RedIndex);
    settle();
    EXPECT_EQ(shownAt(0, 0), Red);
    view->surface8()->fill(BlueIndex);
    settle();
    EXPECT_EQ(shownAt(0, 0), Red);
    view->flushArea(0, 0, 10, 10, 0);
    settle();
    EXPECT_EQ(shownAt(0, 0), Blue);
    EXPECT_EQ(shownAt(10, 0), Red);
  });
}

TEST_F(UiLoopTest, AWindowThatOpensIsShownWithItsFirstPicture) {
  run([this] {
    EXPECT_EQ(display.presents(), 0u) << "an empty screen is no frame";
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    sleepMillis(2);
    const uint32_t opened = tickCount();
    fill(view, RedIndex);
    while (display.presents() == 0)
      sleepMillis(1);
    EXPECT_LE(tickCount() - opened, 2u) << "its picture waits for nothing";
    EXPECT_EQ(shownAt(0, 0), Red);
    EXPECT_EQ(display.presents(), 1u);
  });
}

TEST_F(UiLoopTest, TheFirstPictureIsToldOnceAndBehindItself) {
  run([this] {
    settle();
    EXPECT_TRUE(presentsWhenTold.empty());
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    for (const uint8_t index : {RedIndex, BlueIndex}) {
      fill(view, index);
      settle();
    }
    EXPECT_GE(display.presents(), 2u);
  });
  EXPECT_EQ(presentsWhenTold, (std::vector<size_t>{1}));
}

TEST_F(UiLoopTest, AWindowThatStaysEmptyIsShownAFrameLater) {
  run([this] {
    make("cg.view", ScreenRectangle);
    sleepMillis(UiLoop::PresentMillis / 2);
    EXPECT_EQ(display.presents(), 0u);
    sleepMillis(UiLoop::PresentMillis);
    EXPECT_EQ(display.presents(), 1u);
    EXPECT_EQ(shownAt(320, 240), 0u);
    settle();
    EXPECT_EQ(display.presents(), 1u);
  });
}

TEST_F(UiLoopTest, WhatIsOnlyInvalidatedIsPaintedByTheUiThread) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    view->surface8()->fill(RedIndex);
    view->invalidate(nullptr, 0);
    settle();
    EXPECT_EQ(shownAt(0, 0), Red);
  });
}

TEST_F(UiLoopTest, AnIdleGamePresentsNothing) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    fill(view, RedIndex);
    settle();
    const size_t before = display.presents();
    sleepMillis(60'000);
    EXPECT_EQ(display.presents(), before);
    // A pointer that moves over it changes nothing.
    for (int x = 0; x < 100; ++x) {
      display.push(pointer(Kind::PointerMove, x, 10));
      sleepMillis(20);
    }
    EXPECT_EQ(display.presents(), before);
    // Nor does a flush of what is hidden, or a hold.
    view->show(false);
    settle();
    const size_t hidden = display.presents();
    fill(view, BlueIndex);
    view->hold();
    view->release(true);
    settle();
    EXPECT_EQ(display.presents(), hidden);
  });
}

TEST_F(UiLoopTest, TheDisplayGetsNoMoreThanItsRate) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    settle();
    const size_t before = display.presents();
    for (int round = 0; round < 1000; ++round) {
      fill(view, static_cast<uint8_t>(round));
      sleepMillis(1);
    }
    const size_t presents = display.presents() - before;
    EXPECT_LE(presents, 64u);
    EXPECT_GE(presents, 30u);
    fill(view, RedIndex);
    settle();
    EXPECT_EQ(shownAt(320, 240), Red);
  });
}

TEST_F(UiLoopTest, ABoxIsDrawnOverTheWindowsAndLeavesThemAsTheyAre) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    fill(view, RedIndex);
    settle();
    Thread asking;
    asking.start("asking", [this] { boxes.messageBox("text", "caption", 0); });
    settle();
    EXPECT_NE(shownAt(320, 240), Red);
    // What changes below is seen round the box, and under it once it has gone.
    fill(view, BlueIndex);
    settle();
    EXPECT_NE(shownAt(320, 240), Blue);
    EXPECT_EQ(shownAt(5, 5), Blue);
    DisplayEvent key = pointer(Kind::KeyDown, 0, 0);
    key.key = KeyReturn;
    display.push(key);
    asking.join();
    settle();
    EXPECT_EQ(shownAt(320, 240), Blue);
  });
}

TEST_F(UiLoopTest, AltReturnTakesTheWholeScreenOnceHoweverLongItIsHeld) {
  run([this] {
    int32_t input = 0;
    Thread waiting;
    waiting.start("waiting", [&] { input = host.WaitForInput(2000, 0, 1); });
    DisplayEvent key = pointer(Kind::KeyDown, 0, 0);
    key.key = KeyReturn;
    key.alt = true;
    for (const bool whole : {true, false}) {
      key.repeat = false;
      display.push(key);
      settle();
      EXPECT_EQ(display.fullScreen(), whole);
      key.repeat = true;
      for (int repeats = 0; repeats < 3; ++repeats) {
        display.push(key);
        settle();
        EXPECT_EQ(display.fullScreen(), whole) << repeats;
      }
    }
    waiting.join();
    EXPECT_EQ(input, WaitInputTimeout) << "the game hears nothing of it";
  });
}

TEST_F(UiLoopTest, AFrameIsDraggedByItsCaptionAndTheGameHearsNothingOfIt) {
  run([this] {
    make("cg.view", ScreenRectangle);
    HostWindowObject* frame = make("HelpWindow", {100, 100, 200, 150}, TypeFrame, "Help");
    Rectangle place;
    int32_t input = 0;
    Thread waiting;
    waiting.start("waiting", [&] { input = host.WaitForInput(500, 0, 1); });
    sleepMillis(10);
    display.push(pointer(Kind::ButtonDown, 120, 110));
    display.push(pointer(Kind::PointerMove, 160, 150));
    settle();
    frame->windowRect(place);
    EXPECT_EQ(place, Rectangle::at(140, 140, 106, 80));
    // It stays on the screen, and goes no further once it is let go.
    display.push(pointer(Kind::PointerMove, 0, 479));
    settle();
    frame->windowRect(place);
    EXPECT_EQ(place, Rectangle::at(0, 400, 106, 80));
    display.push(pointer(Kind::ButtonUp, 0, 479));
    display.push(pointer(Kind::PointerMove, 300, 100));
    settle();
    frame->windowRect(place);
    EXPECT_EQ(place, Rectangle::at(0, 400, 106, 80));
    waiting.join();
    EXPECT_EQ(input, WaitInputTimeout);
  });
}

TEST_F(UiLoopTest, ADragIsRecordedAsAPressAMoveAndARelease) {
  ASSERT_TRUE(recorder.open(platform.player() / "record.play"));
  run([this] {
    HostWindowObject* frame = make("HelpWindow", {100, 100, 200, 150}, TypeFrame, "Help");
    const auto dragged = [this] {
      display.push(pointer(Kind::ButtonDown, 120, 110));
      display.push(pointer(Kind::PointerMove, 600, 300));
      display.push(pointer(Kind::PointerMove, 160, 150));
      display.push(pointer(Kind::ButtonUp, 160, 150));
      settle();
    };
    dragged();
    frame->MoveClamped(100, 100, 0, 0, 1, 0);
    Thread waiting;
    waiting.start("waiting", [&] { host.WaitForInput(500, 0, 1); });
    sleepMillis(10);
    dragged();
    waiting.join();
    Rectangle place;
    frame->windowRect(place);
    EXPECT_EQ(place, Rectangle::at(140, 140, 106, 80));
  });
  EXPECT_EQ(testing::readWhole(platform.player() / "record.play"),
            "now press 120 110\nnow move 160 150\nnow release 160 150\n"
            "@1 press 120 110\nnow move 160 150\nnow release 160 150\n");
}

TEST_F(UiLoopTest, APressBesideTheCaptionIsTheGames) {
  run([this] {
    make("framed", {100, 100, 200, 150}, TypeFrame, "Help");
    int32_t input = 0;
    Thread waiting;
    waiting.start("waiting", [&] { input = host.WaitForInput(5000, 0, 1); });
    sleepMillis(10);
    display.push(pointer(Kind::ButtonDown, 150, 140));
    waiting.join();
    EXPECT_NE(input, WaitInputTimeout);
  });
}

TEST_F(UiLoopTest, AFrameThatGoesWhileItIsDraggedEndsTheDrag) {
  run([this] {
    HostWindowObject* frame = make("HelpWindow", {100, 100, 200, 150}, TypeFrame, "Help");
    display.push(pointer(Kind::ButtonDown, 120, 110));
    settle();
    host.PostDestroyRequest("HelpWindow");
    display.push(pointer(Kind::PointerMove, 160, 150));
    settle();
    EXPECT_EQ(make("HelpWindow", {100, 100, 200, 150}, TypeFrame, "Help"), frame);
    display.push(pointer(Kind::PointerMove, 170, 160));
    settle();
    Rectangle place;
    frame->windowRect(place);
    EXPECT_EQ(place.left, 100);
  });
}

TEST_F(UiLoopTest, AFrameWithItsCaptionLooksAsItDid) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    fill(view, BlueIndex);
    make("HelpWindow", {60, 40, 380, 200}, TypeFrame, "Vorlane Help");
    fill(host.windows.find("HelpWindowClient"), 7);
    make("small", {420, 60, 470, 90}, TypeFrame, "A caption that does not fit");
    settle();
  });
  EXPECT_TRUE(testing::matchesGolden(Picture{ScreenWidth, ScreenHeight, display.frame()},
                                     QV_SOURCE_DIR "/tests/golden/frame_windows.png"));
}

TEST_F(UiLoopTest, TheGameMayAskWhereThePointerIsAndForTheRightButton) {
  run([this] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    display.push(pointer(Kind::PointerMove, 77, 88));
    display.push(pointer(Kind::ButtonDown, 99, 11, PointerButton::Right));
    settle();
    settle();
    int32_t x = 0, y = 0;
    host.PointerPlace(x, y);
    EXPECT_EQ(std::pair(x, y), std::pair(99, 11));
    EXPECT_TRUE(view->rightButtonDown());
    display.push(pointer(Kind::ButtonUp, 99, 11, PointerButton::Right));
    settle();
    settle();
    EXPECT_FALSE(view->rightButtonDown());
  });
}

TEST_F(UiLoopTest, MessagesToAnAnimationControlAreAnsweredOnTheUiThread) {
  run([this] {
    HostWindowObject* control = make("control", {0, 0, 10, 10}, TypeAnimationControl);
    EXPECT_EQ(control->window->send(MessageAnimationStart, 0, 0), 1u);
    EXPECT_TRUE(control->animating());
    EXPECT_EQ(control->window->send(MessageAnimationStop, 0, 0), 1u);
    EXPECT_FALSE(control->animating());
  });
}

TEST_F(UiLoopTest, TheAbortComesWhileThreadsFlushAndAllEnds) {
  std::atomic<bool> ending = false;
  Thread animation;
  run([&] {
    HostWindowObject* view = make("cg.view", ScreenRectangle);
    animation.start("animation", [&ending, view] {
      for (uint8_t index = 0; !ending; ++index) {
        fill(view, index);
        sleepMillis(5);
      }
    });
    display.push(pointer(Kind::Close, 0, 0));
    while (true) {
      fill(view, RedIndex);
      host.SleepUnlessAborted(7);
    }
  });
  EXPECT_TRUE(aborted);
  // The animation goes on until somebody stops it, on a screen that nobody looks at any more.
  sleepMillis(50);
  host.windows.destroy("cg.view");
  sleepMillis(50);
  ending = true;
  animation.join();
}

}  // namespace
}  // namespace qv
