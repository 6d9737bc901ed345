// Animations by name with real windows behind them: what stands on the screen while a scene goes
// on.

#include <functional>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "graphics/animation/scroll_stage.h"
#include "host/ui_loop.h"
#include "platform/display/headless_display.h"
#include "platform/text/text_renderer.h"
#include "scenario/animation_objects.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "tests/support/test_platform.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv {
namespace {

constexpr uint8_t RedIndex = 249, GreenIndex = 250, YellowIndex = 251, BlueIndex = 252;
constexpr uint32_t Red = 0xFF0000, Green = 0x00FF00, Yellow = 0xFFFF00, Blue = 0x0000FF;

const GameModule EmptyModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

/// A host with its UI thread, and a scene that runs on the scenario thread.
class Ground {
 public:
  explicit Ground(std::unique_ptr<Kernel> kernel)
      : platform(false, std::move(kernel)),
        host(EmptyModule),
        boxes(text),
        loop(host, display, boxes, recorder, {}) {
    // Red, green and yellow cells of 8 by 8.
    platform.writeFile(platform.game() / "cells.bmp",
                       testing::bitmapFile(24, 8, defaultColours(), [](int32_t x, int32_t) {
                         constexpr uint8_t Cells[] = {RedIndex, GreenIndex, YellowIndex};
                         return Cells[x / 8];
                       }));
  }

  void run(const std::function<void()>& scene) {
    Thread scenario;
    scenario.start("scenario", [&] {
      loop.setScenarioThread(Thread::currentId());
      {
        QVScenario made;
        manager = &made;
        made.Start(&host, "Test", 100, 10, 10);
        setTheScenario(manager);
        manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
        manager->FillObject("cg.view", BlueIndex);
        manager->CreateObject("cells", TypeAnimationSurface, {"cells.bmp", 3, KeyNone});
        scene();
        setTheScenario(nullptr);
      }
      host.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop.run();
    scenario.join();
  }
  /// An area of 8 by 8 on a view, with a sequence of its own.
  void makeArea(const char* name, const char* view, int32_t x, int32_t y, const char* sequence) {
    const std::string sequenceName = std::string(name) + ".Sequ";
    const Rectangle place = Rectangle::at(x, y, 8, 8);
    manager->CreateObject(sequenceName.c_str(), TypeAnimationSequence, {sequence});
    manager->CreateObject(name, TypeAnimationArea, {&place});
    manager->RelateAnimation(name, "cells", sequenceName.c_str(), 1, 0, 0, 1);
    manager->ConnectObjects(view, name);
  }
  uint32_t at(int x, int y) {
    Frame frame;
    host.compositor.take(frame, true);
    return frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }

  testing::TestPlatform platform;
  TextRenderer text;
  HeadlessDisplay display;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  UiLoop loop;
  QVScenario* manager = nullptr;
};

class AnimationsOnTheScreen : public ::testing::Test {
 protected:
  Ground ground{makeSimulatedKernel()};
};

TEST_F(AnimationsOnTheScreen, BlinkWhileTheSceneDoesNothing) {
  ground.run([this] {
    ground.makeArea("a", "cg.view", 100, 50, "A4[.]B4[.]");
    ground.manager->ShowArea("a", 1);
    sleepMillis(50);
    EXPECT_EQ(ground.at(100, 50), Red);
    EXPECT_EQ(ground.at(107, 57), Red);
    EXPECT_EQ(ground.at(108, 57), Blue);
    sleepMillis(100);
    EXPECT_EQ(ground.at(100, 50), Green);
    ground.manager->HideArea("a", 1);
    EXPECT_EQ(ground.at(100, 50), Red);
  });
}

TEST_F(AnimationsOnTheScreen, StandOnTheViewsThatTheyAreConnectedTo) {
  ground.run([this] {
    ground.manager->CreateView("mess.view", "cg.view", 0, 352, 640, 127, 0);
    ground.makeArea("a", "cg.view", 0, 0, "A.");
    ground.makeArea("b", "mess.view", 16, 8, "C.");
    ground.manager->ShowArea("a", 1);
    ground.manager->ShowArea("b", 1);
    sleepMillis(30);
    EXPECT_EQ(ground.at(0, 0), Red);
    EXPECT_EQ(ground.at(16, 360), Yellow);
    ground.manager->HideArea("b", 0);
    ground.manager->DisconnectObjects("b", "mess.view");
    ground.manager->ShowArea("b", 0);
    EXPECT_EQ(ground.at(16, 360), Yellow);
  });
}

TEST_F(AnimationsOnTheScreen, GoOnWhenTheirViewIsDestroyed) {
  ground.run([this] {
    ground.manager->CreateView("mess.view", "cg.view", 0, 352, 640, 127, 0);
    ground.makeArea("a", "mess.view", 0, 0, "AB");
    ground.manager->ShowArea("a", 1);
    sleepMillis(30);
    EXPECT_NE(ground.at(0, 352), Blue);
    ground.manager->DestroyObject("mess.view");
    sleepMillis(100);
    ground.manager->HideArea("a", 1);
    EXPECT_EQ(ground.at(0, 352), Blue);
  });
}

TEST_F(AnimationsOnTheScreen, AreStoppedByTheEndOfTheRun) {
  ground.run([this] {
    ground.makeArea("a", "cg.view", 0, 0, "AB");
    ground.manager->ShowArea("a", 1);
    ground.manager->Release();
    EXPECT_EQ(ground.manager->FindObject("a"), nullptr);
    ground.makeArea("b", "cg.view", 0, 0, "AB");
    EXPECT_EQ(ground.manager->FindWindow("cg.view"), nullptr);
  });
}

TEST_F(AnimationsOnTheScreen, EndWithinASecondOfTheAbort) {
  ground.run([this] {
    ground.makeArea("a", "cg.view", 0, 0, "AB");
    ground.manager->ShowArea("a", 1);
    QVVSurface picture;
    picture.create(640, 960);
    ScrollStage stage(ground.host.windows.find("cg.view"));
    stage.put(
        1, {.surface = &picture, .place = ScreenRectangle, .stepY = 1, .wrap = ScrollLayer::WrapY});
    Thread closing;
    closing.start("closing", [this] {
      sleepMillis(330);
      ground.host.abortEvent.set();
    });
    const uint32_t start = tickCount();
    EXPECT_THROW(stage.run(50, [this](uint32_t millis) { ground.host.SleepUnlessAborted(millis); }),
                 ExitScenarioException);
    EXPECT_EQ(tickCount() - start, 330u);
    ground.manager->Release();
    EXPECT_LT(tickCount() - start, 1330u);
    closing.join();
  });
}

/// Two areas on one view and one on its child, while the scene draws, flushes and holds.
void drawUnderAnimations(Ground& ground, int rounds) {
  ground.run([&] {
    ground.manager->CreateView("mess.view", "cg.view", 0, 352, 640, 127, 0);
    ground.makeArea("a", "cg.view", 0, 0, "AB.C");
    ground.makeArea("b", "cg.view", 4, 4, "A{1,1}BC");
    ground.makeArea("c", "mess.view", 0, 0, "ABC");
    for (const char* name : {"a", "b", "c"})
      ground.manager->ShowArea(name, 1);
    for (int round = 0; round < rounds; ++round) {
      ground.manager->FillObject("cg.view", static_cast<int32_t>(round % 200));
      ground.manager->HoldView("cg.view");
      ground.manager->FillObject("mess.view", BlueIndex);
      ground.manager->ReleaseView("cg.view", 1);
      if (round % 7 == 0) {
        ground.manager->HideArea("b", round % 2);
        ground.manager->ShowArea("b", 1);
      }
      sleepMillis(static_cast<uint32_t>(round % 11));
    }
    ground.manager->FillObject("cg.view", BlueIndex);
    for (const char* name : {"a", "b", "c"})
      ground.manager->HideArea(name, 0);
    EXPECT_EQ(ground.at(300, 200), Blue);
  });
}

TEST(AnimationsInAnyOrder, DrawWhileASceneDraws) {
  for (uint64_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Ground ground(makeSimulatedKernel({.seed = seed}));
    drawUnderAnimations(ground, 15);
  }
}

TEST(AnimationsOnTheMachinesClock, DrawWhileASceneDraws) {
  Ground ground(makeRealKernel());
  drawUnderAnimations(ground, 60);
}

}  // namespace
}  // namespace qv
