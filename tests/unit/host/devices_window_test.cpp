// A player's other devices in a real window, from the device to the scene: a game pad that presses
// the same keys, a finger that is the pointer, and the system's pointer, which follows the focus.

#include <cstdlib>
#include <fstream>
#include <mutex>

#include <SDL2/SDL.h>
#include <gtest/gtest.h>

#include "input/animated_control.h"
#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "tests/support/virtual_screen.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

constexpr int32_t Key = 2048, NoItem = 4096;
constexpr uint8_t RedIndex = 249, GreenIndex = 250;
constexpr uint32_t Red = 0xFF0000, Green = 0x00FF00;
constexpr int Left = (RootWidth - ScreenWidth) / 2, Top = (RootHeight - ScreenHeight) / 2;

/// A plate that is green with the focus.
class Plate : public ControlItem {
 public:
  Plate() { setRectangle({0, 0, 80, 40}); }
  bool takesClick(View&) override { return true; }
  void onEnter(View& view) override { paint(view, GreenIndex); }
  void onLeave(View& view) override { paint(view, RedIndex); }
  void draw(View& view) override { paint(view, RedIndex); }

 private:
  void paint(View& view, uint8_t index) const {
    view.surface8()->fill(index, &rectangle());
    view.flush(&rectangle(), 0);
  }
};

class DevicesWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "xdotool"})
      if (!installed(program)) GTEST_SKIP() << program << " is not installed";
    screen_ = std::make_unique<VirtualScreen>();
    ASSERT_FALSE(screen_->name().empty()) << "Xvfb did not start";
    screen_->use();
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    ground_ = std::make_unique<StoryGround>(makeRealKernel(), [this] {
      return makeWindowDisplay({.title = "qv devices test"}, whyNot_);
    });
    ASSERT_TRUE(ground_->window) << whyNot_;
  }
  void TearDown() override {
    ground_.reset();
    screen_.reset();
  }

  /// Two plates on the screen; `hands` play beside the scene, which hands out its results until
  /// they are done.
  void playWith(const std::function<void()>& hands) {
    ground_->run([&](QVScenario& manager) {
      manager.CreateObject("control", TypeAnimatedControl, {"cg.view"});
      auto& control =
          *static_cast<AnimatedControl*>(manager.FindNative("control", TypeAnimatedControl));
      View& view = *manager.FindView("cg.view")->view();
      Plate first, second;
      control.addItem(1, &first, 100, 100);
      control.addItem(2, &second, 300, 100);
      control.attachControl(view, 0, 0);
      control.setTimeout(1);
      std::atomic<bool> done = false;
      Thread player;
      player.start("player", [&] {
        hands();
        done = true;
      });
      while (!done)
        // After a time-out the control asks what lies under the pointer: often nothing.
        if (const int32_t result = control.wait(1, 1); result != ClickTimeout && result != NoItem) {
          const std::lock_guard guard(lock_);
          results_.push_back(result);
        }
      player.join();
      control.detachControl(view);
    });
  }
  template <typename Predicate>
  static bool soon(Predicate holds) {
    for (int tries = 0; tries < 400; ++tries, sleepMillis(10))
      if (holds()) return true;
    return false;
  }
  /// Whether that result comes, as the first that nobody has taken yet.
  bool gives(int32_t result) {
    if (!soon([&] {
          const std::lock_guard guard(lock_);
          return !results_.empty();
        }))
      return false;
    const std::lock_guard guard(lock_);
    const int32_t first = results_.front();
    results_.erase(results_.begin());
    EXPECT_EQ(first, result);
    return first == result;
  }
  bool shows(uint32_t first, uint32_t second) {
    return soon([&] { return ground_->at(150, 110) == first && ground_->at(350, 110) == second; });
  }
  static void outside(const std::string& command) {
    EXPECT_EQ(std::system(("xdotool " + command + " >/dev/null 2>&1").c_str()), 0) << command;
  }
  /// Keys and pointer moves go to the window that has the focus.
  static void giveFocus() { outside("search --sync --name '^qv devices test' windowfocus --sync"); }
  /// Where the system's pointer stands, in the game's screen.
  std::string systemPointer() {
    const auto file = folder_.path() / "pointer";
    const std::string command = "xdotool getmouselocation --shell >" + file.string() + " 2>&1";
    if (std::system(command.c_str()) != 0) return "nowhere";
    std::ifstream lines(file);
    std::string x, y;
    lines >> x >> y;
    if (x.size() < 3 || y.size() < 3) return "nowhere";
    return std::to_string(std::stoi(x.substr(2)) - Left) + ", " +
           std::to_string(std::stoi(y.substr(2)) - Top);
  }

  TemporaryFolder folder_;
  std::string whyNot_;
  std::unique_ptr<VirtualScreen> screen_;
  std::unique_ptr<StoryGround> ground_;

 private:
  std::mutex lock_;
  std::vector<int32_t> results_;
};

/// A pad of SDL's own making.
class Pad {
 public:
  bool plugIn() {
    device_ = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX,
                                        SDL_CONTROLLER_BUTTON_MAX, 0);
    if (device_ < 0) return false;
    const SDL_JoystickID id = SDL_JoystickGetDeviceInstanceID(device_);
    for (int tries = 0; !pad_ && tries < 200; ++tries, sleepMillis(10))
      pad_ = SDL_JoystickFromInstanceID(id);
    return pad_ != nullptr;
  }
  void press(SDL_GameControllerButton button) {
    SDL_JoystickSetVirtualButton(pad_, button, 1);
    sleepMillis(50);
    SDL_JoystickSetVirtualButton(pad_, button, 0);
    sleepMillis(50);
  }
  void lean(SDL_GameControllerAxis axis, Sint16 value) {
    SDL_JoystickSetVirtualAxis(pad_, axis, value);
    sleepMillis(50);
    SDL_JoystickSetVirtualAxis(pad_, axis, 0);
    sleepMillis(50);
  }
  void pullOut() { SDL_JoystickDetachVirtual(device_); }

 private:
  int device_ = -1;
  SDL_Joystick* pad_ = nullptr;
};

TEST_F(DevicesWindowTest, APadMovesTheFocusAndTheSystemsPointerAndPressesWhatHasIt) {
  playWith([&] {
    // Pads are looked for once a frame is shown; who looks at the frame takes it from the window.
    ASSERT_TRUE(soon([&] { return SDL_WasInit(SDL_INIT_GAMECONTROLLER) != 0; }));
    ASSERT_TRUE(shows(Red, Red));
    Pad pad;
    giveFocus();
    ASSERT_TRUE(pad.plugIn()) << SDL_GetError();
    pad.press(SDL_CONTROLLER_BUTTON_DPAD_RIGHT);
    EXPECT_TRUE(gives(Key + KeyRight));
    EXPECT_TRUE(shows(Green, Red));
    EXPECT_TRUE(soon([&] { return systemPointer() == "100, 100"; })) << systemPointer();
    pad.lean(SDL_CONTROLLER_AXIS_LEFTY, 30'000);
    EXPECT_TRUE(gives(Key + KeyDown));
    EXPECT_TRUE(shows(Red, Green));
    EXPECT_TRUE(soon([&] { return systemPointer() == "300, 100"; })) << systemPointer();
    pad.press(SDL_CONTROLLER_BUTTON_A);
    EXPECT_TRUE(gives(2));
    pad.press(SDL_CONTROLLER_BUTTON_DPAD_UP);
    EXPECT_TRUE(gives(Key + KeyUp));
    EXPECT_TRUE(shows(Green, Red));
    pad.press(SDL_CONTROLLER_BUTTON_A);
    EXPECT_TRUE(gives(1));
    pad.press(SDL_CONTROLLER_BUTTON_B);
    EXPECT_TRUE(gives(-1));
    pad.pullOut();
  });
}

TEST_F(DevicesWindowTest, AKeyMovesTheSystemsPointerToTheItem) {
  playWith([&] {
    ASSERT_TRUE(shows(Red, Red));
    giveFocus();
    outside("key Tab");
    EXPECT_TRUE(gives(Key + KeyTab));
    outside("key Tab");
    EXPECT_TRUE(gives(Key + KeyTab));
    EXPECT_TRUE(shows(Red, Green));
    EXPECT_TRUE(soon([&] { return systemPointer() == "300, 100"; })) << systemPointer();
    // The move that the system reports of it says nothing new.
    outside("key space");
    EXPECT_TRUE(gives(2));
  });
}

TEST_F(DevicesWindowTest, AFingerPointsAndPressesInOne) {
  playWith([&] {
    ASSERT_TRUE(shows(Red, Red));
    for (const auto& [place, region] : {std::pair(350.0f, 2), std::pair(150.0f, 1)}) {
      for (const Uint32 type : {SDL_FINGERDOWN, SDL_FINGERUP}) {
        SDL_Event event = {};
        event.type = type;
        event.tfinger.fingerId = 1;
        event.tfinger.x = place / ScreenWidth;
        event.tfinger.y = 120.0f / ScreenHeight;
        SDL_PushEvent(&event);
      }
      EXPECT_TRUE(gives(region));
      EXPECT_TRUE(region == 2 ? shows(Red, Green) : shows(Green, Red));
    }
  });
}

}  // namespace
}  // namespace qv::testing
