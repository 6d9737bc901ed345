// Hitrets, cursors and animated controls as scenes name them.

#include <gtest/gtest.h>

#include "input/prompt.h"
#include "scenario/control_objects.h"
#include "tests/support/cursor_bytes.h"
#include "tests/unit/scenario/view_host.h"

namespace qv::testing {
namespace {

/// A view at 100, 50 of the screen.
class PlacedWindow : public ViewWindow {
 public:
  using ViewWindow::ViewWindow;
  bool windowRect(Rectangle& rectangle) const override {
    rectangle = {100, 50, 164, 98};
    return there;
  }
  void setCursor(const PointerLook& given) override { looks.push_back(given); }

  bool there = true;
  std::vector<PointerLook> looks;
};

class PlacedHost : public FakeHost {
 public:
  WindowObject* FindWindowObject(const char* name) override {
    for (PlacedWindow* window : {&view, &frame, &client, &released})
      if (window->name.equals(name)) return window;
    return nullptr;
  }
  bool PostToUi(uint32_t message, uintptr_t first, uintptr_t second) override {
    if (message == MessageRefreshCursor) ++refreshes;
    return FakeHost::PostToUi(message, first, second);
  }
  void setPointer(int32_t x, int32_t y) override { places.emplace_back(x, y); }

  PlacedWindow view{"cg.view", TypeView}, frame{"win", TypeFrame}, client{"winClient", TypeView},
      released{"old", TypeReleasedWindow};
  int refreshes = 0;
  std::vector<std::pair<int32_t, int32_t>> places;
};

class Controls : public ::testing::Test {
 protected:
  Controls() {
    platform.writeFile(platform.game() / "res" / "300.cur", cursorFile({smallCursor()}));
    platform.writeFile(platform.game() / "dat" / "small.cur", cursorFile({smallCursor()}));
    manager.Start(&host, "Test", 1, 1, 1);
  }
  QVHitret* hitret(const char* name) {
    return static_cast<QVHitret*>(manager.FindNative(name, TypeHitret));
  }
  AnimatedControl* control(const char* name) {
    return static_cast<AnimatedControl*>(manager.FindNative(name, TypeAnimatedControl));
  }
  QVCursor* cursor(const char* name) {
    return static_cast<QVCursor*>(manager.FindNative(name, TypeCursor));
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  PlacedHost host;
  QVScenario manager;
};

// --- Hitrets ---

TEST_F(Controls, AHitretWaitsWithTheHost) {
  manager.CreateObject("page", TypeHitret);
  ASSERT_TRUE(hitret("page"));
  EXPECT_EQ(hitret("page")->owner(), &host);
  EXPECT_EQ(hitret("page")->view(), nullptr);
  EXPECT_EQ(hitret("page")->wait(), &defaultHitret);
}

TEST_F(Controls, AHitretTakesTheViewThatItIsCreatedWith) {
  manager.CreateObject("page", TypeHitret, {"cg.view"});
  manager.CreateObject("framed", TypeHitret, {"win"});
  manager.CreateObject("nowhere", TypeHitret, {"no.view"});
  EXPECT_EQ(hitret("page")->view(), &host.view.surfaceView);
  EXPECT_EQ(hitret("framed")->view(), &host.client.surfaceView);
  EXPECT_EQ(hitret("nowhere")->view(), nullptr);
}

TEST_F(Controls, WaitInputRunsTheHitretOfThatName) {
  manager.CreateObject("page", TypeHitret);
  hitret("page")->setWait([](QVHitret& self) { return 100 + self.time(); });
  EXPECT_EQ(manager.WaitInput("page", 7), 107);
  EXPECT_EQ(manager.WaitInput("none", 7), 0);
  manager.CreateObject("surface", TypeSurface, {8, 8});
  EXPECT_EQ(manager.WaitInput("surface", 7), 0);
}

TEST_F(Controls, WithoutAViewAHitretsWaitIsABox) {
  manager.CreateObject("page", TypeHitret);
  EXPECT_EQ(manager.WaitInput("page", -1), 0);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVHitret - default");
  EXPECT_EQ(host.waitsBegan, 0);
}

TEST_F(Controls, AHitretsKeysAreNumberedAsTheWindowSystemDoes) {
  manager.CreateObject("page", TypeHitret, {"cg.view"});
  struct Row {
    int32_t input, key;
  };
  for (const Row& row : {Row{0, 1}, Row{-1, 2}, Row{2061, 13}, Row{2080, 32}}) {
    host.onInputWait = [&] { host.deliverInput(row.input); };
    EXPECT_EQ(manager.WaitInput("page", -1), row.key);
  }
  EXPECT_EQ(host.waitsBegan, 4);
  EXPECT_EQ(host.waitsEnded, 4);
}

TEST_F(Controls, AHitretsTimeIsInTenths) {
  manager.CreateObject("page", TypeHitret, {"cg.view"});
  const uint32_t start = tickCount();
  EXPECT_EQ(manager.WaitInput("page", 15), WaitInputTimeout);
  EXPECT_EQ(tickCount() - start, 1500u);
}

TEST_F(Controls, TheAbortEndsAHitretsWait) {
  manager.CreateObject("page", TypeHitret, {"cg.view"});
  host.onInputWait = [&] { host.abortEvent.set(); };
  EXPECT_THROW(manager.WaitInput("page", -1), ExitScenarioException);
  EXPECT_EQ(host.waitsEnded, 1);
}

// --- Cursors ---

TEST_F(Controls, ACursorIsMadeFromANumberOrAName) {
  manager.CreateCursor("wait", 32514);
  manager.CreateCursor("resource", 300);
  manager.CreateCursor("file", "dat\\small.cur");
  manager.CreateCursor("nothing", "dat\\none.cur");
  EXPECT_EQ(cursor("wait")->look().system, 32514);
  EXPECT_TRUE(cursor("resource")->look().picture);
  EXPECT_FALSE(cursor("resource")->fromFile());
  EXPECT_TRUE(cursor("file")->fromFile());
  EXPECT_EQ(cursor("nothing")->look(), PointerLook{});
  manager.CreateCursor("wait", 32515);
  EXPECT_EQ(cursor("wait")->look().system, 32514) << "a taken name stays";
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(Controls, AViewTakesACursorInEitherOrder) {
  manager.CreateCursor("wait", 32514);
  manager.CreateCursor("cross", 32515);
  manager.ConnectObjects("cg.view", "wait");
  manager.ConnectObjects("cross", "cg.view");
  manager.ConnectObjects("win", "wait");
  ASSERT_EQ(host.view.looks.size(), 2u);
  EXPECT_EQ(host.view.looks[0].system, 32514);
  EXPECT_EQ(host.view.looks[1].system, 32515);
  EXPECT_TRUE(host.frame.looks.empty());
  ASSERT_EQ(host.client.looks.size(), 1u);
  EXPECT_EQ(host.cursorView, &host.client);
  EXPECT_EQ(host.refreshes, 3);
  // The window keeps what it took.
  manager.DestroyObjects({"wait", "cross"});
  EXPECT_EQ(host.client.looks[0].system, 32514);
}

TEST_F(Controls, SetCursorGivesAWindowACursorByNameOrNumber) {
  manager.SetCursor("cg.view", 32513);
  manager.SetCursor("win", "dat\\small.cur");
  manager.SetCursor("old", 0);
  manager.SetCursor("none", 32513);
  manager.SetCursor(nullptr, 32513);
  EXPECT_EQ(host.view.looks, (std::vector<PointerLook>{{32513, std::nullopt}}));
  ASSERT_EQ(host.client.looks.size(), 1u);
  EXPECT_EQ(host.client.looks[0].picture->pixels, SmallCursorPixels);
  EXPECT_EQ(host.released.looks, std::vector<PointerLook>{PointerLook{}});
  EXPECT_EQ(host.refreshes, 3);
}

// --- Animated controls ---

class Item : public ControlItem {
 public:
  Item() { setRectangle({0, 0, 8, 8}); }
  bool takesClick(View&) override { return true; }
  void onEnter(View&) override {}
  void onLeave(View&) override {}
  void draw(View&) override {}
};

TEST_F(Controls, AControlIsAsLargeAsItsWindow) {
  manager.CreateObject("onView", TypeAnimatedControl, {"win"});
  manager.CreateObject("onScreen", TypeAnimatedControl);
  manager.CreateObject("nowhere", TypeAnimatedControl, {"none"});
  EXPECT_EQ(control("onView")->clickMap().width(), 64);
  EXPECT_EQ(control("onView")->clickMap().height(), 48);
  EXPECT_EQ(control("onScreen")->clickMap().width(), 640);
  EXPECT_EQ(control("onScreen")->clickMap().height(), 480);
  ASSERT_TRUE(control("nowhere"));
}

TEST_F(Controls, KeysPutThePointerWhereTheWindowStandsOnTheScreen) {
  Item item;
  for (const char* parent : {"cg.view", static_cast<const char*>(nullptr)}) {
    manager.CreateObject("control", TypeAnimatedControl, {parent});
    AnimatedControl& made = *control("control");
    made.addItem(5, &item, 3, 4);
    made.attachControl(host.view.surfaceView, 0, 0);
    host.onInputWait = {};
    Thread player;
    player.start("player", [this] {
      while (!host.deliverInput(2048 + 9))
        sleepMillis(1);
    });
    EXPECT_EQ(made.wait(1, 1), 2048 + 9);
    player.join();
    manager.DestroyObject("control");
  }
  EXPECT_EQ(host.places, (std::vector<std::pair<int32_t, int32_t>>{{103, 54}, {3, 4}}));
  EXPECT_EQ(item.owner(), nullptr);
}

}  // namespace
}  // namespace qv::testing
