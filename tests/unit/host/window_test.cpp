// The window on a real X server that shows nothing to anybody. What arrives is looked at from
// outside: pictures of the screen, and keys and clicks of another program.

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <SDL2/SDL.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "platform/display/png_file.h"
#include "platform/kernel/kernel.h"
#include "platform/sdl/sdl_events.h"
#include "tests/support/test_platform.h"
#include "tests/support/virtual_screen.h"

namespace qv {
namespace {

using namespace testing;

/// Four quarters, and one white pixel at 100, 50.
Frame testFrame() {
  Frame frame(static_cast<size_t>(ScreenWidth) * ScreenHeight);
  constexpr uint32_t Quarters[] = {0xC02020, 0x20C020, 0x2020C0, 0xC0C020};
  for (int y = 0; y < ScreenHeight; ++y)
    for (int x = 0; x < ScreenWidth; ++x)
      frame[static_cast<size_t>(y * ScreenWidth + x)] =
          Quarters[(y >= ScreenHeight / 2) * 2 + (x >= ScreenWidth / 2)];
  frame[50 * ScreenWidth + 100] = 0xFFFFFF;
  return frame;
}

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "xdotool", "import"})
      if (!installed(program)) GTEST_SKIP() << program << " is not installed";
    screen_ = std::make_unique<VirtualScreen>();
    ASSERT_FALSE(screen_->name().empty()) << "Xvfb did not start";
    screen_->use();
  }
  void TearDown() override { display_.reset(); }

  void open(Scaling scaling = Scaling::Fit) {
    std::string whyNot;
    display_ = makeWindowDisplay({.title = "qv window test", .scaling = scaling}, whyNot);
    ASSERT_TRUE(display_) << whyNot;
    eventsUntil(DisplayEvent::Kind::FocusGained);
    settle();
  }
  /// Takes events until one is what the test waits for; fails after ten seconds without it.
  template <typename Predicate>
  std::vector<DisplayEvent> eventsUntil(Predicate wanted) {
    std::vector<DisplayEvent> events;
    DisplayEvent event;
    const uint32_t start = tickCount();
    while (tickCount() - start < 10'000) {
      if (!display_->waitEvent(event, 100)) continue;
      events.push_back(event);
      if (wanted(event)) return events;
    }
    ADD_FAILURE() << "no such event among " << events.size();
    return events;
  }
  std::vector<DisplayEvent> eventsUntil(DisplayEvent::Kind kind) {
    return eventsUntil([kind](const DisplayEvent& event) { return event.kind == kind; });
  }
  /// Takes the events that have come, and those that still come within a moment.
  std::vector<DisplayEvent> settle(uint32_t quietMillis = 100) {
    std::vector<DisplayEvent> events;
    DisplayEvent event;
    while (display_->waitEvent(event, quietMillis))
      events.push_back(event);
    return events;
  }
  static const DisplayEvent* find(const std::vector<DisplayEvent>& events,
                                  DisplayEvent::Kind kind) {
    for (const DisplayEvent& event : events)
      if (event.kind == kind) return &event;
    return nullptr;
  }
  static void outside(const std::string& command) {
    EXPECT_EQ(std::system((command + " >/dev/null 2>&1").c_str()), 0) << command;
  }
  /// For what the window manager must know the window for: a new window is not its own at once.
  static void outsideAtLast(const std::string& command) {
    int status = 1;
    for (int tries = 0; status != 0 && tries < 100; ++tries, sleepMillis(50))
      status = std::system((command + " >/dev/null 2>&1").c_str());
    EXPECT_EQ(status, 0) << command;
  }
  /// A picture of the screen as soon as a pixel of it has the colour, or as it is at the end.
  Picture screenshotWhere(int x, int y, uint32_t colour) {
    for (int tries = 0;; ++tries) {
      settle(50);
      const Picture picture = screenshot();
      if (at(picture, x, y) == colour || tries == 40) return picture;
    }
  }
  Picture screenshot() {
    const auto path = folder_.path() / "shot.png";
    outside("import -window root png24:" + path.string());
    const std::optional<Picture> picture = readPng(path);
    if (!picture) {
      ADD_FAILURE() << "no screenshot";
      return {RootWidth, RootHeight, std::vector<uint32_t>(RootWidth * RootHeight)};
    }
    if (const char* keep = std::getenv("QV_KEEP_SHOTS"))
      writePng(*picture,
               std::filesystem::path(keep) /
                   (std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) +
                    std::to_string(shots_++) + ".png"));
    return *picture;
  }
  static uint32_t at(const Picture& picture, int x, int y) {
    return picture.pixels[static_cast<size_t>(y * picture.width + x)];
  }
  void resize(int width, int height) {
    outside("xdotool search --name 'qv window test' windowsize " + std::to_string(width) + " " +
            std::to_string(height) + " windowmove 0 0");
    settle();
  }
  static void push(SDL_Event event) { ASSERT_EQ(SDL_PushEvent(&event), 1); }
  static void pushWindowEvent(Uint8 kind) {
    SDL_Event event = {};
    event.type = SDL_WINDOWEVENT;
    event.window.event = kind;
    for (Uint32 id = 1; id < 1000 && event.window.windowID == 0; ++id)
      if (SDL_GetWindowFromID(id)) event.window.windowID = id;
    push(event);
  }

  testing::TemporaryFolder folder_;
  KernelScope kernel_{makeRealKernel()};
  std::unique_ptr<VirtualScreen> screen_;
  std::unique_ptr<Display> display_;
  int shots_ = 0;
};

TEST_F(WindowTest, ShowsEveryPixelOfTheFrame) {
  open();
  const Frame frame = testFrame();
  display_->present(frame);
  const Picture shot = screenshotWhere(RootWidth / 2 - 1, RootHeight / 2 - 1, 0xC02020);
  const int left = (RootWidth - ScreenWidth) / 2, top = (RootHeight - ScreenHeight) / 2;
  for (int y = 0; y < ScreenHeight; ++y)
    for (int x = 0; x < ScreenWidth; ++x)
      ASSERT_EQ(at(shot, left + x, top + y), frame[static_cast<size_t>(y * ScreenWidth + x)])
          << x << ", " << y;
}

TEST_F(WindowTest, KeepsTheShapeInAWindowOfAnotherOne) {
  open();
  display_->present(testFrame());
  resize(1000, 600);  // the screen is 800 by 600 with bars of 100
  const Picture shot = screenshotWhere(899, 599, 0xC0C020);
  EXPECT_EQ(at(shot, 99, 300), 0x000000u);
  EXPECT_EQ(at(shot, 100, 0), 0xC02020u);
  EXPECT_EQ(at(shot, 499, 299), 0xC02020u);
  EXPECT_EQ(at(shot, 500, 299), 0x20C020u);
  EXPECT_EQ(at(shot, 499, 300), 0x2020C0u);
  EXPECT_EQ(at(shot, 899, 599), 0xC0C020u);
  EXPECT_EQ(at(shot, 900, 300), 0x000000u);
  EXPECT_EQ(at(shot, 225, 63), 0xFFFFFFu);  // pixel 100, 50
}

TEST_F(WindowTest, ShowsWholeFactorsOnRequest) {
  open(Scaling::WholeFactors);
  display_->present(testFrame());
  resize(1280, 960);
  const Picture doubled = screenshotWhere(1279, 959, 0xC0C020);
  for (const auto& [x, y] : {std::pair(200, 100), std::pair(201, 101)})
    EXPECT_EQ(at(doubled, x, y), 0xFFFFFFu);
  EXPECT_EQ(at(doubled, 199, 100), 0xC02020u);
  EXPECT_EQ(at(doubled, 202, 101), 0xC02020u);
  resize(1200, 900);
  const Picture single = screenshotWhere(380, 260, 0xFFFFFF);
  EXPECT_EQ(at(single, 279, 300), 0x000000u);
  EXPECT_EQ(at(single, 280, 210), 0xC02020u);
  EXPECT_EQ(at(single, 380, 260), 0xFFFFFFu);
}

TEST_F(WindowTest, DrawsTheLastFrameAgainWhenItIsUncovered) {
  open();
  display_->present(testFrame());
  screenshotWhere(330, 250, 0xC02020);
  SDL_Window* cover = SDL_CreateWindow("cover", 0, 0, RootWidth, RootHeight, SDL_WINDOW_BORDERLESS);
  SDL_Surface* surface = SDL_GetWindowSurface(cover);
  SDL_FillRect(surface, nullptr, 0xFF00FF);
  for (int i = 0; i < 5; ++i) {
    settle(50);
    SDL_UpdateWindowSurface(cover);
  }
  EXPECT_EQ(at(screenshotWhere(330, 250, 0xFF00FF), 330, 250), 0xFF00FFu);
  SDL_DestroyWindow(cover);
  EXPECT_EQ(at(screenshotWhere(330, 250, 0xC02020), 330, 250), 0xC02020u);
}

TEST_F(WindowTest, DrawsTheLastFrameAgainWhenItIsMappedAgain) {
  open();
  display_->present(testFrame());
  screenshotWhere(330, 250, 0xC02020);
  outside("xdotool search --name 'qv window test' windowunmap --sync");
  EXPECT_EQ(at(screenshotWhere(330, 250, RootColour), 330, 250), RootColour);
  outside("xdotool search --name 'qv window test' windowmap --sync");
  EXPECT_EQ(at(screenshotWhere(330, 250, 0xC02020), 330, 250), 0xC02020u);
}

TEST_F(WindowTest, PointerAndButtonsArriveInThePixelsOfTheGame) {
  open();
  display_->present(testFrame());
  resize(1000, 600);
  screenshotWhere(899, 599, 0xC0C020);
  using Kind = DisplayEvent::Kind;
  const auto movedTo = [](int x, int y) {
    return [x, y](const DisplayEvent& event) {
      return event.kind == Kind::PointerMove && event.x == x && event.y == y;
    };
  };
  outside("xdotool mousemove 225 62");
  eventsUntil(movedTo(100, 49));
  outside("xdotool click 1 click 3 click 4 click 5");
  int wheels = 0;
  const auto events = eventsUntil(
      [&](const DisplayEvent& event) { return event.kind == Kind::Wheel && ++wheels == 2; });
  std::vector<int> wheel;
  std::vector<PointerButton> released;
  for (const DisplayEvent& event : events) {
    if (event.kind == Kind::Wheel) wheel.push_back(event.y);
    if (event.kind == Kind::ButtonUp) released.push_back(event.button);
  }
  EXPECT_EQ(wheel, std::vector<int>({1, -1}));
  EXPECT_EQ(released, std::vector<PointerButton>({PointerButton::Left, PointerButton::Right}));
  const DisplayEvent* down = find(events, Kind::ButtonDown);
  ASSERT_TRUE(down);
  EXPECT_EQ(down->button, PointerButton::Left);
  EXPECT_EQ(down->x, 100);
  EXPECT_EQ(down->y, 49);
  outside("xdotool mousemove 5 300");  // in the left bar
  eventsUntil(movedTo(0, 240));
}

TEST_F(WindowTest, KeysArriveAsVirtualCodes) {
  open();
  const std::pair<const char*, int> keys[] = {
      {"Return", KeyReturn}, {"Escape", KeyEscape}, {"space", KeySpace},   {"Up", KeyUp},
      {"Next", KeyPageDown}, {"F2", KeyF1 + 1},     {"a", KeyA},           {"z", KeyA + 25},
      {"0", Key0},           {"9", Key0 + 9},       {"BackSpace", KeyBack}};
  for (const auto& [name, code] : keys) {
    outside(std::string("xdotool key ") + name);
    const auto events = eventsUntil(DisplayEvent::Kind::KeyUp);
    const DisplayEvent* down = find(events, DisplayEvent::Kind::KeyDown);
    ASSERT_TRUE(down) << name;
    EXPECT_EQ(down->key, code) << name;
    EXPECT_FALSE(down->alt) << name;
  }
}

TEST_F(WindowTest, AltReturnCanBeTold) {
  open();
  outside("xdotool key alt+Return");
  eventsUntil([](const DisplayEvent& event) {
    return event.kind == DisplayEvent::Kind::KeyDown && event.key == KeyReturn && event.alt;
  });
}

TEST_F(WindowTest, TypedTextArrives) {
  open();
  outside("xdotool type 'Ab'");
  std::string typed;
  eventsUntil([&](const DisplayEvent& event) {
    typed += event.text;
    return typed.size() >= 2;
  });
  EXPECT_EQ(typed, "Ab");
}

TEST_F(WindowTest, AHeldKeyRepeats) {
  open();
  outside("xdotool keydown Down");
  int first = 0, repeated = 0;
  eventsUntil([&](const DisplayEvent& event) {
    if (event.kind == DisplayEvent::Kind::KeyDown) ++(event.repeat ? repeated : first);
    return repeated == 2;
  });
  outside("xdotool keyup Down");
  EXPECT_EQ(first, 1);
}

TEST_F(WindowTest, ThePointerFollowsWithTheFocus) {
  open();
  display_->present(testFrame());
  resize(1000, 600);
  screenshotWhere(899, 599, 0xC0C020);
  display_->movePointer(100, 50);
  eventsUntil([](const DisplayEvent& event) {
    return event.kind == DisplayEvent::Kind::PointerMove && event.x == 100 && event.y == 50;
  });
}

/// Windows that a window manager moves, fills the screen with and puts away.
class ManagedWindowTest : public WindowTest {
 protected:
  void SetUp() override {
    if (!installed("openbox")) GTEST_SKIP() << "openbox is not installed";
    WindowTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    manager_ = std::make_unique<WindowManager>();
    ASSERT_TRUE(manager_->started()) << "openbox did not start";
  }
  void TearDown() override {
    WindowTest::TearDown();
    manager_.reset();
  }

 private:
  std::unique_ptr<WindowManager> manager_;
};

TEST_F(ManagedWindowTest, FillsTheScreenAndComesBack) {
  open();
  display_->present(testFrame());
  display_->setFullScreen(true);
  EXPECT_TRUE(display_->fullScreen());
  const Picture full = screenshotWhere(RootWidth - 1, RootHeight - 1, 0xC0C020);
  EXPECT_EQ(at(full, 0, 0), 0xC02020u);
  EXPECT_EQ(at(full, RootWidth - 1, RootHeight - 1), 0xC0C020u);
  EXPECT_EQ(at(full, 200, 100), 0xFFFFFFu);
  display_->setFullScreen(false);
  EXPECT_FALSE(display_->fullScreen());
  const Picture window = screenshotWhere(RootWidth / 2 - 200, 300, 0xC02020);
  EXPECT_NE(at(window, 2, 2), 0xC02020u);
  EXPECT_NE(at(window, RootWidth - 1, RootHeight - 1), 0xC0C020u);
}

TEST_F(ManagedWindowTest, TellsWhenThePlayerPutsItAwayAndBringsItBack) {
  open();
  display_->present(testFrame());
  outsideAtLast("xdotool search --name 'qv window test' windowminimize --sync");
  eventsUntil(DisplayEvent::Kind::Minimised);
  EXPECT_TRUE(display_->minimised());
  outsideAtLast("xdotool search --name 'qv window test' windowactivate --sync");
  eventsUntil(DisplayEvent::Kind::Restored);
  EXPECT_FALSE(display_->minimised());
}

TEST_F(ManagedWindowTest, TellsWhenThePlayerClosesIt) {
  open();
  outside("xdotool search --name 'qv window test' windowactivate --sync key alt+F4");
  eventsUntil(DisplayEvent::Kind::Close);
}

TEST_F(WindowTest, ATouchIsAMoveThenAPress) {
  open();
  for (const Uint32 type : {SDL_FINGERDOWN, SDL_FINGERUP}) {
    SDL_Event event = {};
    event.type = type;
    event.tfinger.fingerId = 4;
    event.tfinger.x = 0.5f;
    event.tfinger.y = 0.25f;
    push(event);
    event.tfinger.fingerId = 5;  // a second finger means nothing
    push(event);
  }
  using Kind = DisplayEvent::Kind;
  std::vector<Kind> kinds;
  for (const DisplayEvent& event : settle()) {
    kinds.push_back(event.kind);
    EXPECT_EQ(event.x, 320);
    EXPECT_EQ(event.y, 120);
  }
  EXPECT_EQ(kinds, std::vector<Kind>(
                       {Kind::PointerMove, Kind::ButtonDown, Kind::PointerMove, Kind::ButtonUp}));
}

TEST_F(WindowTest, IsMinimisedBetweenTheTwoEvents) {
  open();
  pushWindowEvent(SDL_WINDOWEVENT_RESTORED);  // nothing was minimised: nothing to tell
  pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
  auto events = settle();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].kind, DisplayEvent::Kind::Minimised);
  EXPECT_TRUE(display_->minimised());
  display_->present(testFrame());
  EXPECT_EQ(at(screenshot(), 330, 250), 0x000000u);
  pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
  events = settle();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].kind, DisplayEvent::Kind::Restored);
  EXPECT_FALSE(display_->minimised());
  EXPECT_EQ(at(screenshotWhere(330, 250, 0xC02020), 330, 250), 0xC02020u);
}

TEST_F(WindowTest, ClosingAndFocusAreTold) {
  open();
  for (const Uint8 kind :
       {SDL_WINDOWEVENT_FOCUS_LOST, SDL_WINDOWEVENT_FOCUS_GAINED, SDL_WINDOWEVENT_CLOSE})
    pushWindowEvent(kind);
  const auto events = settle();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].kind, DisplayEvent::Kind::FocusLost);
  EXPECT_EQ(events[1].kind, DisplayEvent::Kind::FocusGained);
  EXPECT_EQ(events[2].kind, DisplayEvent::Kind::Close);
}

TEST_F(WindowTest, AWakeEndsTheWaitThatRunsOrTheNextOne) {
  open();
  DisplayEvent event;
  for (int i = 0; i < 5; ++i)
    display_->wake();
  EXPECT_FALSE(display_->waitEvent(event, 20'000));
  uint32_t start = tickCount();
  EXPECT_FALSE(display_->waitEvent(event, 60));  // five wakes before a wait are one
  EXPECT_GE(tickCount() - start, 55u);
  Thread waker;
  waker.start("waker", [this] {
    sleepMillis(50);
    display_->wake();
  });
  start = tickCount();
  EXPECT_FALSE(display_->waitEvent(event, 20'000));
  EXPECT_LT(tickCount() - start, 10'000u);
  waker.join();
}

TEST_F(WindowTest, TitlesTheWindow) {
  open();
  display_->setTitle("sc000000");
  outside("xdotool search --name '^sc000000$'");
}

TEST_F(WindowTest, ThePointerLooksAsItIsTold) {
  open();
  SDL_Cursor* const first = SDL_GetCursor();
  display_->setCursor({.system = system_cursor::Wait, .picture = std::nullopt});
  SDL_Cursor* const waits = SDL_GetCursor();
  EXPECT_NE(waits, first);
  CursorPicture picture{4, 2, 3, 1, std::vector<uint32_t>(8, 0xFF00FF00)};
  display_->setCursor({.system = system_cursor::Arrow, .picture = picture});
  EXPECT_NE(SDL_GetCursor(), first);
  // A picture whose pixels are missing is the system's instead.
  picture.pixels.pop_back();
  display_->setCursor({.system = system_cursor::Cross, .picture = picture});
  EXPECT_NE(SDL_GetCursor(), first);
}

TEST_F(WindowTest, TakesItsFirstLookBehindItsFirstFrame) {
  std::string whyNot;
  display_ = makeWindowDisplay({.title = "qv window test"}, whyNot);
  ASSERT_TRUE(display_) << whyNot;
  SDL_Cursor* const first = SDL_GetCursor();
  display_->setCursor({.system = system_cursor::Wait, .picture = std::nullopt});
  EXPECT_EQ(SDL_GetCursor(), first);
  display_->present(testFrame());
  DisplayEvent event;
  display_->waitEvent(event, 0);
  EXPECT_NE(SDL_GetCursor(), first);
}

TEST_F(WindowTest, IsBlackWhenItsFirstFrameIsLate) {
  EXPECT_EQ(at(screenshot(), RootWidth / 2, RootHeight / 2), RootColour);
  open();
  const Picture late = screenshotWhere(RootWidth / 2, RootHeight / 2, 0);
  EXPECT_EQ(at(late, RootWidth / 2, RootHeight / 2), 0U);
}

TEST_F(WindowTest, InstallsNoSignalHandler) {
  open();
  struct sigaction action = {};
  for (const int number : {SIGINT, SIGTERM}) {
    sigaction(number, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL) << number;
  }
}

TEST(NoWindow, SaysInASentenceThatThereIsNoDisplay) {
  KernelScope kernel(makeRealKernel());
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("SDL_VIDEODRIVER");
  std::string whyNot;
  EXPECT_FALSE(makeWindowDisplay({}, whyNot));
  EXPECT_EQ(whyNot, "There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.");
}

TEST(NoWindow, DoesNotFallBackToADriverThatShowsNothing) {
  KernelScope kernel(makeRealKernel());
  setenv("DISPLAY", ":59999", 1);
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("SDL_VIDEODRIVER");
  std::string whyNot;
  EXPECT_FALSE(makeWindowDisplay({}, whyNot));
  EXPECT_NE(whyNot.find("cannot be opened"), std::string::npos) << whyNot;
}

TEST(NoWindow, TakesADriverThatShowsNothingWhenAskedTo) {
  KernelScope kernel(makeRealKernel());
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  std::string whyNot;
  const std::unique_ptr<Display> display = makeWindowDisplay({}, whyNot);
  EXPECT_TRUE(display) << whyNot;
  unsetenv("SDL_VIDEODRIVER");
}

TEST_F(WindowTest, APadThatIsPluggedInPressesKeys) {
  SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
  open();
  display_->present(testFrame());
  settle();
  const int device = SDL_JoystickAttachVirtual(
      SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX, SDL_CONTROLLER_BUTTON_MAX, 0);
  ASSERT_GE(device, 0) << SDL_GetError();
  const SDL_JoystickID id = SDL_JoystickGetDeviceInstanceID(device);
  for (int tries = 0; !SDL_JoystickFromInstanceID(id) && tries < 100; ++tries)
    settle(20);
  SDL_Joystick* const pad = SDL_JoystickFromInstanceID(id);
  ASSERT_TRUE(pad) << "the window has not taken it";
  const auto keyAfter = [&](SDL_GameControllerButton button) {
    SDL_JoystickSetVirtualButton(pad, button, 1);
    const int key = eventsUntil(DisplayEvent::Kind::KeyDown).back().key;
    SDL_JoystickSetVirtualButton(pad, button, 0);
    EXPECT_EQ(eventsUntil(DisplayEvent::Kind::KeyUp).back().key, key);
    return key;
  };
  EXPECT_EQ(keyAfter(SDL_CONTROLLER_BUTTON_A), KeyReturn);
  EXPECT_EQ(keyAfter(SDL_CONTROLLER_BUTTON_B), KeyEscape);
  EXPECT_EQ(keyAfter(SDL_CONTROLLER_BUTTON_DPAD_LEFT), KeyLeft);
  SDL_JoystickSetVirtualAxis(pad, SDL_CONTROLLER_AXIS_LEFTY, 30'000);
  EXPECT_EQ(eventsUntil(DisplayEvent::Kind::KeyDown).back().key, KeyDown);
  SDL_JoystickDetachVirtual(device);
  EXPECT_EQ(eventsUntil(DisplayEvent::Kind::KeyUp).back().key, KeyDown);
}

TEST(SystemCursors, HaveTheirLikesInTheWindowSystem) {
  using namespace system_cursor;
  struct Row {
    int32_t number;
    SDL_SystemCursor like;
  };
  for (const Row& row :
       {Row{Arrow, SDL_SYSTEM_CURSOR_ARROW}, Row{TextBeam, SDL_SYSTEM_CURSOR_IBEAM},
        Row{Wait, SDL_SYSTEM_CURSOR_WAIT}, Row{Cross, SDL_SYSTEM_CURSOR_CROSSHAIR},
        Row{SizeFalling, SDL_SYSTEM_CURSOR_SIZENWSE}, Row{SizeRising, SDL_SYSTEM_CURSOR_SIZENESW},
        Row{SizeAcross, SDL_SYSTEM_CURSOR_SIZEWE}, Row{SizeUpright, SDL_SYSTEM_CURSOR_SIZENS},
        Row{SizeAll, SDL_SYSTEM_CURSOR_SIZEALL}, Row{Size, SDL_SYSTEM_CURSOR_SIZEALL},
        Row{No, SDL_SYSTEM_CURSOR_NO}, Row{Starting, SDL_SYSTEM_CURSOR_WAITARROW},
        Row{UpArrow, SDL_SYSTEM_CURSOR_ARROW}, Row{Icon, SDL_SYSTEM_CURSOR_ARROW},
        Row{0, SDL_SYSTEM_CURSOR_ARROW}, Row{32649, SDL_SYSTEM_CURSOR_ARROW}})
    EXPECT_EQ(systemCursorOf(row.number), row.like) << row.number;
}

}  // namespace
}  // namespace qv
