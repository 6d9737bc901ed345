// Animated controls: items on a map, the focus under the pointer and by keys, and what ends a wait.

#include "input/animated_control.h"

#include <deque>

#include <gtest/gtest.h>

#include "platform/display/key_codes.h"
#include "tests/unit/graphics/animation/animation_ground.h"
#include "tests/unit/input/fake_input.h"

namespace qv::testing {
namespace {

std::vector<std::string> calls;

/// An item that fills its place with its letter, small without the focus and large with it.
class Letter : public ControlItem {
 public:
  explicit Letter(char letter, bool accepts = true) : letter_(letter), takes(accepts) {
    setRectangle({0, 0, 4, 2});
  }
  bool takesClick(View&) override {
    note("click");
    return takes;
  }
  void onEnter(View& view) override {
    note("enter");
    paint(view, letter_);
  }
  void onLeave(View& view) override {
    note("leave");
    paint(view, static_cast<char>(letter_ + 1));
  }
  void draw(View& view) override { paint(view, static_cast<char>(letter_ + 1)); }
  void detach(View&) override { note("detach"); }

 private:
  void note(const char* what) { calls.push_back(std::string(1, letter_) + " " + what); }
  void paint(View& view, char letter) const {
    const Rectangle place =
        rectangle().moved(owner()->clickMap().originX(), owner()->clickMap().originY());
    view.surface8()->fill(static_cast<uint8_t>(letter - 'A' + 1), &place);
    view.flush(&place, 0);
  }
  const char letter_;

 public:
  bool takes;
};

/// A window whose client lies at 100, 50 of the screen.
class Somewhere : public ControlWindow {
 public:
  bool clientToScreen(int32_t& x, int32_t& y) const override {
    x += 100;
    y += 50;
    return there;
  }
  bool there = true;
};

/// A view that bears maps.
class MapView : public FakeView {
 public:
  using FakeView::FakeView;
  void addClickMap(ClickTarget&) override { ++maps; }
  bool removeClickMap(ClickTarget&) override { return --maps >= 0; }
  int maps = 0;
};

/// What a player does, one thing a wait.
class ControlTest : public ::testing::Test {
 protected:
  using Act = std::function<void()>;
  ControlTest() {
    calls.clear();
    host.onMapWait = [this] {
      ++waits;
      if (acts.empty()) return;
      const Act act = acts.front();
      acts.pop_front();
      act();
    };
    // The window side: a pointer that is put somewhere moves there, and presses there.
    host.onPointer = [this](int32_t x, int32_t y) {
      pointerX = x - 100;
      pointerY = y - 50;
      acts.push_front(hover(regionUnderPointer()));
    };
    host.onPress = [this] { acts.push_front(click(regionUnderPointer())); };
    view.surface.fill(26);
    control.create(16, 8, &host);
    control.setWindow(&window);
  }
  int32_t regionUnderPointer() { return control.clickMap().regionAt(pointerX, pointerY); }
  Act hover(int32_t region) {
    return [this, region] { control.clickMap().report(PointerMoved, region); };
  }
  Act click(int32_t region) {
    return [this, region] { control.clickMap().report(LeftButtonDown, region); };
  }
  Act right() {
    return [this] { control.clickMap().report(RightButtonDown, 0); };
  }
  Act key(int code) {
    return [this, code] { host.give(code); };
  }
  void addThree() {
    control.addItem(1, &a, 0, 0);
    control.addItem(2, &c, 4, 0);
    control.addItem(3, &e, 8, 0);
    control.attachControl(view, 0, 0);
    calls.clear();
  }
  using Calls = std::vector<std::string>;

  TestPlatform platform{false, makeSimulatedKernel()};
  FakeInputHost host;
  MapView view{16, 8};
  Somewhere window;
  std::deque<Act> acts;
  int waits = 0;
  int32_t pointerX = 0, pointerY = 0;
  Letter a{'A'}, c{'C'}, e{'E'};
  AnimatedControl control;
};

// --- Items ---

TEST_F(ControlTest, AnItemStandsInItsSlotAndInTheMap) {
  control.addItem(7, &a, 3, 2);
  EXPECT_EQ(control.item(7), &a);
  EXPECT_EQ(a.region(), 7);
  EXPECT_EQ(a.owner(), &control);
  EXPECT_TRUE((a.rectangle() == Rectangle{3, 2, 7, 4}));
  for (int32_t y = 0; y < 8; ++y)
    for (int32_t x = 0; x < 16; ++x)
      EXPECT_EQ(control.clickMap().pixel(x, y), a.rectangle().contains(x, y) ? 7 : 0);
}

TEST_F(ControlTest, ARegionOutsideTheMapsNumbersTakesNoItem) {
  for (const int32_t region : {-1, 256, INT32_MIN, INT32_MAX}) {
    control.addItem(region, &a, 0, 0);
    EXPECT_EQ(control.item(region), nullptr);
    control.removeItem(region);
  }
  control.addItem(1, nullptr, 0, 0);
  EXPECT_EQ(a.owner(), nullptr);
  EXPECT_TRUE(control.order().empty());
  control.addItem(0, &a, 0, 0);
  control.addItem(255, &c, 0, 0);
  EXPECT_EQ(control.order(), (std::vector<int32_t>{0, 255}));
}

TEST_F(ControlTest, ARegionThatIsAddedAgainGoesToTheEndOfTheOrder) {
  control.addItem(1, &a, 0, 0);
  control.addItem(2, &c, 4, 0);
  control.addItem(1, &e, 8, 0);
  EXPECT_EQ(control.order(), (std::vector<int32_t>{2, 1}));
  EXPECT_EQ(control.item(1), &e);
  EXPECT_EQ(a.owner(), nullptr);
  EXPECT_EQ(control.clickMap().pixel(0, 0), 0);
  EXPECT_EQ(control.clickMap().pixel(8, 0), 1);
}

TEST_F(ControlTest, ARemovedItemLeavesOrderSlotAndMap) {
  addThree();
  control.removeItem(2);
  EXPECT_EQ(control.item(2), nullptr);
  EXPECT_EQ(control.order(), (std::vector<int32_t>{1, 3}));
  EXPECT_EQ(control.clickMap().pixel(4, 0), 0);
  EXPECT_EQ(c.owner(), nullptr);
}

TEST_F(ControlTest, AnItemThatGoesLeavesItsControl) {
  {
    Letter g{'G'};
    control.addItem(9, &g, 0, 4);
  }
  EXPECT_EQ(control.item(9), nullptr);
  EXPECT_EQ(control.clickMap().pixel(0, 4), 0);
}

TEST_F(ControlTest, AControlThatGoesLetsItsItemsGo) {
  {
    AnimatedControl other;
    other.create(8, 8, &host);
    other.addItem(1, &a, 0, 0);
    other.addItem(2, &c, 0, 0);
    control.addItem(1, &c, 0, 0);
    EXPECT_EQ(other.item(2), nullptr) << "an item stands on one control";
  }
  EXPECT_EQ(a.owner(), nullptr);
  EXPECT_EQ(c.owner(), &control);
}

// --- The view ---

TEST_F(ControlTest, AttachingDrawsTheItemsAndDetachingPutsTheViewsPixelsBack) {
  control.addItem(1, &a, 0, 0);
  control.addItem(2, &c, 4, 2);
  control.attachControl(view, 0, 0);
  EXPECT_EQ(textOf(view.surface).substr(0, 17 * 4),
            "BBBBZZZZZZZZZZZZ/BBBBZZZZZZZZZZZZ/ZZZZDDDDZZZZZZZZ/ZZZZDDDDZZZZZZZZ/");
  EXPECT_EQ(control.background().pixel(0, 0), 26);
  EXPECT_EQ(control.view(), &view);
  calls.clear();
  control.detachControl(view);
  EXPECT_EQ(calls, (Calls{"A detach", "C detach"}));
  std::string plain;
  for (int row = 0; row < 8; ++row)
    plain += (row ? "/" : "") + std::string(16, 'Z');
  EXPECT_EQ(textOf(view.surface), plain);
  EXPECT_EQ(control.view(), nullptr);
}

TEST_F(ControlTest, DetachingFromAnotherViewDoesNothing) {
  addThree();
  FakeView other{4, 4};
  control.detachControl(other);
  EXPECT_EQ(control.view(), &view);
}

// --- The pointer ---

TEST_F(ControlTest, AHoverOfAnItemMovesTheFocusAndIsConsumed) {
  addThree();
  acts = {hover(1), hover(2), click(2)};
  EXPECT_EQ(control.wait(0, 0), 2);
  EXPECT_EQ(calls, (Calls{"A enter", "A leave", "C enter", "C click"}));
  EXPECT_EQ(control.focus(), 2);
  EXPECT_EQ(waits, 3);
}

TEST_F(ControlTest, AHoverOfNoItemTakesTheFocusAwayAndIsReturned) {
  addThree();
  acts = {hover(1), hover(0)};
  EXPECT_EQ(control.wait(0, 0), 4096);
  EXPECT_EQ(calls, (Calls{"A enter", "A leave"}));
  EXPECT_EQ(control.focus(), 0);
}

TEST_F(ControlTest, AHoverOfTheFocusIsIgnored) {
  addThree();
  control.setFocus(3);
  acts = {hover(3), right()};
  EXPECT_EQ(control.wait(0, 0), -1);
  EXPECT_EQ(calls, Calls{"E enter"});
}

TEST_F(ControlTest, AClickOnAnotherItemMovesTheFocusFirst) {
  addThree();
  control.setFocus(1);
  calls.clear();
  acts = {click(3)};
  EXPECT_EQ(control.wait(0, 0), 3);
  EXPECT_EQ(calls, (Calls{"A leave", "E enter", "E click"}));
  acts = {click(3)};
  EXPECT_EQ(control.wait(0, 0), 3);
  EXPECT_EQ(calls.size(), 4u) << "it had the focus";
}

TEST_F(ControlTest, AnItemThatDeclinesAClickKeepsTheLoopRunning) {
  addThree();
  c.takes = false;
  acts = {click(2), click(2), click(1)};
  EXPECT_EQ(control.wait(0, 0), 1);
  EXPECT_EQ(calls, (Calls{"C enter", "C click", "C click", "C leave", "A enter", "A click"}));
}

TEST_F(ControlTest, AClickOnNoItemKeepsTheLoopRunning) {
  addThree();
  acts = {click(0), click(200), right()};
  EXPECT_EQ(control.wait(0, 0), -1);
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(waits, 3);
}

TEST_F(ControlTest, DisabledAndHiddenItemsHearNothingOfTheFocus) {
  addThree();
  a.setEnabled(0);
  c.setShown(0);
  acts = {hover(1), hover(2), hover(3), right()};
  EXPECT_EQ(control.wait(0, 0), -1);
  EXPECT_EQ(calls, Calls{"E enter"});
}

TEST_F(ControlTest, TheTimeoutCountsInTenthsAndAsksForTheHighlight) {
  addThree();
  control.setTimeout(5);
  EXPECT_EQ(control.wait(1, 1), -2);
  EXPECT_EQ(tickCount(), 500u);
  EXPECT_TRUE(host.nudges.empty());
  EXPECT_EQ(control.wait(1, 1), -2);
  EXPECT_EQ(host.nudges.size(), 2u) << "the next wait moves the pointer by nothing";
}

TEST_F(ControlTest, WithoutATimeoutNothingEndsAWaitButInput) {
  addThree();
  for (const int32_t timeout : {0, -1}) {
    control.setTimeout(timeout);
    Thread player;
    player.start("player", [this] {
      sleepMillis(3'600'000);
      control.clickMap().report(RightButtonDown, 0);
    });
    const uint32_t start = tickCount();
    EXPECT_EQ(control.wait(1, 1), -1);
    EXPECT_EQ(tickCount() - start, 3'600'000u);
    player.join();
  }
}

TEST_F(ControlTest, TheEndOfTheGameLeavesTheLockFree) {
  addThree();
  acts = {[this] { host.exitGame(); }};
  EXPECT_THROW(control.wait(1, 1), ExitScenarioException);
  bool looked = false;
  Thread painter;
  painter.start("painter", [&] { looked = control.item(1) == &a; });
  painter.join();
  EXPECT_TRUE(looked);
  EXPECT_EQ(control.clickMap().view(), nullptr);
}

// --- Keys ---

struct KeyRow {
  int key;
  int32_t from, to;
};

class ControlKeys : public ControlTest, public ::testing::WithParamInterface<KeyRow> {};

TEST_P(ControlKeys, MoveTheFocusAndTheRealPointer) {
  addThree();
  const KeyRow row = GetParam();
  if (row.from >= 0) control.setFocus(row.from);
  acts = {key(row.key)};
  EXPECT_EQ(control.wait(1, 1), 2048 + row.key);
  EXPECT_EQ(control.focus(), row.to);
  ASSERT_EQ(host.places.size(), 1u);
  EXPECT_EQ(host.places[0], std::pair(100 + 4 * (row.to - 1), 50));
  // The pointer's own move then tells nothing new.
  acts.push_back(right());
  calls.clear();
  EXPECT_EQ(control.wait(1, 1), -1);
  EXPECT_TRUE(calls.empty());
}

INSTANTIATE_TEST_SUITE_P(All, ControlKeys,
                         ::testing::Values(KeyRow{KeyTab, 1, 2}, KeyRow{KeyRight, 2, 3},
                                           KeyRow{KeyDown, 3, 1}, KeyRow{KeyNum0 + 2, 1, 2},
                                           KeyRow{KeyNum0 + 6, 1, 2}, KeyRow{KeyLeft, 2, 1},
                                           KeyRow{KeyUp, 1, 3}, KeyRow{KeyNum0 + 4, 3, 2},
                                           KeyRow{KeyNum0 + 8, 3, 2}, KeyRow{KeyTab, -1, 1},
                                           KeyRow{KeyUp, -1, 3}));

TEST_F(ControlTest, TheOrderPassesOverDisabledAndHiddenItems) {
  addThree();
  control.setFocus(1);
  c.setEnabled(0);
  acts = {key(KeyTab)};
  control.wait(1, 1);
  EXPECT_EQ(control.focus(), 3);
  c.setEnabled(1);
  c.setShown(0);
  acts = {key(KeyUp)};
  control.wait(1, 1);
  EXPECT_EQ(control.focus(), 1);
}

TEST_F(ControlTest, TabWithOneLiveItemMovesThePointerOntoItEveryTime) {
  addThree();
  a.setEnabled(0);
  e.setEnabled(0);
  for (int round = 0; round < 3; ++round) {
    acts = {key(KeyTab)};
    EXPECT_EQ(control.wait(1, 1), 2048 + KeyTab);
    EXPECT_EQ(control.focus(), 2);
  }
  EXPECT_EQ(host.places, (std::vector<std::pair<int32_t, int32_t>>(3, {104, 50})));
}

TEST_F(ControlTest, WithNothingLiveAKeyLeavesTheFocusAlone) {
  addThree();
  control.setFocus(2);
  for (Letter* letter : {&a, &c, &e})
    letter->setEnabled(0);
  acts = {key(KeyTab)};
  EXPECT_EQ(control.wait(1, 1), 2048 + KeyTab);
  EXPECT_EQ(control.focus(), 2);
  EXPECT_TRUE(host.places.empty());
  AnimatedControl bare;
  bare.create(4, 4, &host);
  bare.setWindow(&window);
  acts = {key(KeyUp)};
  EXPECT_EQ(bare.wait(1, 1), 2048 + KeyUp);
}

TEST_F(ControlTest, ReturnAndSpacePressTheItemUnderThePointer) {
  addThree();
  for (const int code : {KeyReturn, KeySpace}) {
    acts = {key(KeyTab)};
    EXPECT_EQ(control.wait(1, 1), 2048 + KeyTab);
    acts.push_back(key(code));
    EXPECT_EQ(control.wait(1, 1), control.focus());
    EXPECT_EQ(calls.back().substr(1), " click");
  }
  EXPECT_EQ(host.presses, 2);
  EXPECT_EQ(control.focus(), 2);
}

TEST_F(ControlTest, ReturnOverNoItemIsAClickOnNoRegion) {
  addThree();
  pointerX = 40;
  ASSERT_EQ(regionUnderPointer(), NoRegion);
  int32_t answered = -99;
  acts = {key(KeyReturn), right()};
  host.onPress = [&] {
    acts.push_front(click(NoRegion));
    // What the map makes of that press.
    control.clickMap().inputCallback(LeftButtonDown, NoRegion);
    answered = control.clickMap().resultOf(QVClickMap::Leg::MapEvent, 0);
  };
  EXPECT_EQ(control.wait(1, 1), -1);
  EXPECT_EQ(answered, 0);
  EXPECT_TRUE(calls.empty());
}

TEST_F(ControlTest, EscapeIsTheRightButton) {
  addThree();
  acts = {key(KeyEscape)};
  EXPECT_EQ(control.wait(1, 1), -1);
}

TEST_F(ControlTest, OtherKeysAreReturnedAsTheyCame) {
  addThree();
  for (const int code : {KeyF1, KeyA, KeyPageUp, 1, 2, 255}) {
    acts = {key(code)};
    EXPECT_EQ(control.wait(1, 1), 2048 + code);
  }
  EXPECT_EQ(control.focus(), AnimatedControl::NoFocus);
}

TEST_F(ControlTest, WithoutAWindowOrUseOfKeysTheyAreOnlyTold) {
  addThree();
  acts = {key(KeyTab)};
  EXPECT_EQ(control.wait(0, 1), 2048 + KeyTab);
  acts = {key(KeyEscape)};
  EXPECT_EQ(control.wait(0, 1), 2048 + KeyEscape);
  control.setWindow(nullptr);
  acts = {key(KeyReturn)};
  EXPECT_EQ(control.wait(1, 1), 2048 + KeyReturn);
  EXPECT_EQ(control.focus(), AnimatedControl::NoFocus);
  EXPECT_EQ(host.presses, 0);
  EXPECT_TRUE(host.places.empty());
}

TEST_F(ControlTest, AWaitWithoutKeysIsNotToldOfThem) {
  addThree();
  control.setTimeout(1);
  acts = {key(KeyTab)};
  EXPECT_EQ(control.wait(1, 0), -2);
}

TEST_F(ControlTest, AWindowThatIsGoneMovesNoPointer) {
  addThree();
  window.there = false;
  acts = {key(KeyTab)};
  EXPECT_EQ(control.wait(1, 1), 2048 + KeyTab);
  EXPECT_TRUE(host.places.empty());
  EXPECT_EQ(control.focus(), 1);
}

TEST_F(ControlTest, OffTheViewsCornerThePointerStillMeetsTheItem) {
  control.addItem(1, &a, 2, 1);
  control.attachControl(view, 3, 4);
  acts = {key(KeyTab)};
  control.wait(1, 1);
  ASSERT_EQ(host.places.size(), 1u);
  EXPECT_EQ(host.places[0], std::pair(100 + 3 + 2, 50 + 4 + 1));
  EXPECT_EQ(regionUnderPointer(), 1);
}

// --- Child controls ---

TEST_F(ControlTest, AChildControlSharesTheFocus) {
  addThree();
  FakeView childView{8, 2};
  AnimatedControl child;
  Letter m{'M'};
  child.create(8, 2, &host);
  child.addItem(20, &m, 0, 0);
  child.attachControl(childView, 0, 0);
  control.addChild(child);
  EXPECT_EQ(child.clickMap().parent(), &control.clickMap());
  acts = {hover(1), hover(20), click(20)};
  EXPECT_EQ(control.wait(0, 0), 20);
  EXPECT_EQ(calls, (Calls{"A enter", "A leave", "M enter", "M click"}));
  EXPECT_EQ(childView.surface.pixel(0, 0), 'M' - 'A' + 1) << "drawn on its own view";
  control.removeChild(child);
  EXPECT_EQ(child.clickMap().parent(), nullptr);
  acts = {hover(3), hover(20)};
  EXPECT_EQ(control.wait(0, 0), 4096 + 20) << "it holds no item any more";
}

TEST_F(ControlTest, AControlIsNoChildOfItsOwn) {
  AnimatedControl child;
  control.addChild(child);
  child.addChild(control);
  control.addChild(control);
  acts = {right()};
  EXPECT_EQ(control.wait(0, 0), -1);
  EXPECT_EQ(child.clickMap().parent(), &control.clickMap());
  EXPECT_EQ(control.clickMap().parent(), nullptr);
}

}  // namespace
}  // namespace qv::testing
