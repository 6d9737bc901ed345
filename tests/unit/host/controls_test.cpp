// Hitrets, buttons and animated controls on real windows, with a player's devices.

#include <gtest/gtest.h>

#include "host/ui_loop.h"
#include "input/animated_control.h"
#include "input/hitret.h"
#include "input/prompt.h"
#include "input/system_button.h"
#include "platform/display/key_codes.h"
#include "tests/support/picture_bytes.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

constexpr uint8_t RedIndex = 249, GreenIndex = 250, BlueIndex = 252;
constexpr uint32_t Red = 0xFF0000, Green = 0x00FF00, Blue = 0x0000FF, White = 0xFFFFFF;

/// A plate of 40 by 20 that is green with the focus and red without.
class Plate : public ControlItem {
 public:
  Plate() { setRectangle({0, 0, 40, 20}); }
  bool takesClick(View&) override { return ++clicks > declines; }
  void onEnter(View& view) override { paint(view, GreenIndex); }
  void onLeave(View& view) override { paint(view, RedIndex); }
  void draw(View& view) override { paint(view, RedIndex); }
  int clicks = 0, declines = 0;

 private:
  void paint(View& view, uint8_t index) const {
    view.surface8()->fill(index, &rectangle());
    view.flush(&rectangle(), 0);
  }
};

class ControlsOnTheScreen : public ::testing::TestWithParam<bool> {
 protected:
  using Kind = StoryGround::Kind;
  ControlsOnTheScreen() : ground(GetParam() ? makeSimulatedKernel() : makeRealKernel()) {}
  void run(const std::function<void(QVScenario&)>& scene) {
    ground.run([&](QVScenario& manager) {
      manager.FillObject("cg.view", BlueIndex);
      scene(manager);
    });
  }
  /// Does things as a player, beside the scene.
  void play(const std::function<void()>& acts) { player.start("player", acts); }
  /// Until the scene waits, as a player sees it.
  void awaitWait() {
    for (int tries = 0; tries < 2000; ++tries) {
      if (GameHost::Gate(ground.host).sceneWaits()) return;
      sleepMillis(2);
    }
    ADD_FAILURE() << "the scene does not wait";
  }
  void press(int code) {
    awaitWait();
    ground.key(code);
    StoryGround::settle();
  }
  void click(int x, int y, PointerButton button = PointerButton::Left) {
    awaitWait();
    ground.push(Kind::PointerMove, x, y);
    StoryGround::settle();
    ground.push(Kind::ButtonDown, x, y, button);
    ground.push(Kind::ButtonUp, x, y, button);
    StoryGround::settle();
  }
  std::pair<int, int> pointer() {
    int x = 0, y = 0;
    ground.display.pointer(x, y);
    return {x, y};
  }
  StoryGround ground;
  Thread player;
};

TEST_P(ControlsOnTheScreen, AHitretShowsItsPromptUntilThePlayerGoesOn) {
  run([this](QVScenario& manager) {
    View* const view = manager.FindView("cg.view")->view();
    QVHitret hitret;
    hitret.setOwner(&ground.host);
    struct Row {
      PointerButton button;
      int32_t key;
    };
    for (const Row& row : {Row{PointerButton::Left, 1}, Row{PointerButton::Right, 2}}) {
      bool stood = false;
      play([&] {
        awaitWait();
        for (int x = 376; x < 400; ++x)
          stood |= ground.at(x, 276 + 20) == White;
        click(20, 20, row.button);
      });
      EXPECT_EQ(hitret.prepare({100, 100, 400, 300}, view, -1), row.key);
      player.join();
      EXPECT_TRUE(stood);
      for (int y = 270; y < 310; ++y)
        for (int x = 370; x < 410; ++x)
          ASSERT_EQ(ground.at(x, y), Blue);
    }
    play([&] { press(KeySpace); });
    EXPECT_EQ(hitret.prepare({100, 100, 400, 300}, view, -1), KeySpace);
    player.join();
    EXPECT_EQ(hitret.run(1), 258);
  });
}

TEST_P(ControlsOnTheScreen, AHitretOfAWindowThatIsGoneIsABox) {
  run([this](QVScenario& manager) {
    manager.CreateView("short", nullptr, 0, 0, 50, 50, 0);
    QVHitret hitret;
    hitret.setOwner(&ground.host);
    hitret.setView(manager.FindView("short")->view());
    manager.DestroyObject("short");
    EXPECT_EQ(hitret.run(-1), 0);
    EXPECT_EQ(ground.platform.dialogs.shown.size(), 1u);
  });
}

TEST_P(ControlsOnTheScreen, TheEndOfTheGameTakesAHitretsPromptDown) {
  run([this](QVScenario& manager) {
    View* const view = manager.FindView("cg.view")->view();
    QVHitret hitret;
    hitret.setOwner(&ground.host);
    play([&] {
      awaitWait();
      ground.push(Kind::Close, 0, 0);
    });
    EXPECT_THROW(hitret.prepare({100, 100, 400, 300}, view, -1), ExitScenarioException);
    player.join();
    EXPECT_EQ(ground.at(390, 296), Blue);
  });
}

TEST_P(ControlsOnTheScreen, PointerAndKeysLightAndPressTheItems) {
  run([this](QVScenario& manager) {
    manager.CreateView("panel", nullptr, 200, 100, 200, 100, 0);
    manager.FillObject("panel", BlueIndex);
    manager.CreateObject("control", TypeAnimatedControl, {"panel"});
    auto& control =
        *static_cast<AnimatedControl*>(manager.FindNative("control", TypeAnimatedControl));
    View* const view = manager.FindView("panel")->view();
    Plate first, second;
    control.addItem(1, &first, 10, 10);
    control.addItem(2, &second, 10, 50);
    control.attachControl(*view, 0, 0);
    EXPECT_EQ(ground.at(210, 110), Red);
    EXPECT_EQ(ground.at(210, 150), Red);
    std::vector<uint32_t> seen;
    play([&] {
      // Under the pointer the first lights; the key goes on to the second, and the pointer with it.
      awaitWait();
      ground.push(Kind::PointerMove, 220, 115);
      StoryGround::settle();
      seen = {ground.at(210, 110), ground.at(210, 150)};
      press(KeyTab);
    });
    EXPECT_EQ(control.wait(1, 1), 2048 + KeyTab);
    player.join();
    EXPECT_EQ(seen, (std::vector<uint32_t>{Green, Red}));
    EXPECT_EQ(ground.at(210, 110), Red);
    EXPECT_EQ(ground.at(210, 150), Green);
    EXPECT_EQ(pointer(), std::pair(210, 150));
    // The key that accepts presses there; the item declines the first time.
    second.declines = 1;
    play([&] {
      press(KeyReturn);
      press(KeySpace);
    });
    EXPECT_EQ(control.wait(1, 1), 2);
    player.join();
    EXPECT_EQ(second.clicks, 2);
    EXPECT_EQ(first.clicks, 0);
    // And the pointer itself.
    play([&] { click(215, 112); });
    EXPECT_EQ(control.wait(1, 1), 1);
    player.join();
    play([&] { click(215, 112, PointerButton::Right); });
    EXPECT_EQ(control.wait(1, 1), -1);
    player.join();
    play([&] { press(KeyEscape); });
    EXPECT_EQ(control.wait(1, 1), -1);
    player.join();
    control.detachControl(*view);
    EXPECT_EQ(ground.at(210, 110), Blue);
    EXPECT_EQ(ground.at(210, 150), Blue);
  });
}

TEST_P(ControlsOnTheScreen, ReturnBesideTheItemsPressesNothing) {
  run([this](QVScenario& manager) {
    manager.CreateObject("control", TypeAnimatedControl, {"cg.view"});
    auto& control =
        *static_cast<AnimatedControl*>(manager.FindNative("control", TypeAnimatedControl));
    Plate plate;
    control.addItem(1, &plate, 10, 10);
    control.attachControl(*manager.FindView("cg.view")->view(), 0, 0);
    control.setTimeout(5);
    play([&] {
      awaitWait();
      ground.push(Kind::PointerMove, 300, 300);
    });
    EXPECT_EQ(control.wait(1, 1), -2) << "the map began with region 0: the move changed nothing";
    player.join();
    EXPECT_EQ(control.wait(1, 1), 4096) << "the time-out asked for what lies there";
    play([&] { press(KeyReturn); });
    EXPECT_EQ(control.wait(1, 1), -2) << "nobody takes the click on no region";
    player.join();
    EXPECT_EQ(plate.clicks, 0);
  });
}

TEST_P(ControlsOnTheScreen, AButtonFlashesInTheFrame) {
  run([this](QVScenario& manager) {
    // Frames of 2 by 2 in red, green, and twice in white.
    constexpr uint8_t Frames[] = {RedIndex, GreenIndex, 255, 255};
    QVVSurface strip;
    strip.create(8, 2);
    for (int32_t frame = 0; frame < 4; ++frame) {
      const Rectangle cell = Rectangle::at(frame * 2, 0, 2, 2);
      strip.fill(Frames[frame], &cell);
    }
    strip.saveBmpByName("strip.bmp");
    SystemButton button(&ground.host.exitEvent());
    button.place(manager.FindView("cg.view")->view(), 30, 40, "strip.bmp", KeyNone, 1, 0, 1);
    EXPECT_EQ(ground.at(30, 40), Red);
    const uint32_t start = tickCount();
    button.flash(2, 0);
    EXPECT_EQ(ground.at(31, 41), Green);
    EXPECT_EQ(ground.at(32, 41), Blue);
    while (button.flashing())
      sleepMillis(5);
    EXPECT_GE(tickCount() - start, 190u);
    EXPECT_EQ(ground.at(31, 41), Red);
  });
}

INSTANTIATE_TEST_SUITE_P(Kernels, ControlsOnTheScreen, ::testing::Values(false, true),
                         [](const auto& instance) {
                           return std::string(instance.param ? "Simulated" : "Real");
                         });

}  // namespace
}  // namespace qv::testing
