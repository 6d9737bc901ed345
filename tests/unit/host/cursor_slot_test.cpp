// What the pointer looks like over the windows of a game.

#include <gtest/gtest.h>

#include "tests/support/cursor_bytes.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

class CursorSlotTest : public ::testing::Test {
 protected:
  using Kind = StoryGround::Kind;
  CursorSlotTest() {
    ground.platform.writeFile(ground.platform.game() / "res" / "300.cur",
                              cursorFile({smallCursor()}));
  }
  int32_t lookAt(int x, int y) {
    ground.push(Kind::PointerMove, x, y);
    StoryGround::settle();
    return ground.display.cursor().system;
  }
  StoryGround ground{makeSimulatedKernel()};
};

TEST_F(CursorSlotTest, IsTheArrowUntilASceneSaysOtherwise) {
  ground.run([this](QVScenario&) {
    EXPECT_EQ(lookAt(10, 10), 32512);
    EXPECT_EQ(ground.display.cursorChanges(), 0u);
  });
}

TEST_F(CursorSlotTest, ChangesUnderAPointerThatStandsStill) {
  ground.run([this](QVScenario& manager) {
    lookAt(10, 10);
    manager.SetCursor("cg.view", 32514);
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor().system, 32514);
    manager.SetCursor("cg.view", 300);
    StoryGround::settle();
    ASSERT_TRUE(ground.display.cursor().picture);
    EXPECT_EQ(ground.display.cursor().picture->pixels, SmallCursorPixels);
    manager.SetCursor("cg.view", 999);
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor(), PointerLook{}) << "there is no such cursor";
  });
}

TEST_F(CursorSlotTest, IsThatOfTheWindowUnderThePointer) {
  ground.run([this](QVScenario& manager) {
    manager.CreateView("left", nullptr, 0, 0, 100, 100, 0);
    manager.CreateView("child", "left", 10, 10, 20, 20, 0);
    manager.CreateView("own", "left", 50, 10, 20, 20, 0);
    manager.SetCursor("left", 32513);
    manager.SetCursor("own", 32515);
    EXPECT_EQ(lookAt(5, 5), 32513);
    EXPECT_EQ(lookAt(15, 15), 32513) << "a window without one of its own looks like its parent";
    EXPECT_EQ(lookAt(55, 15), 32515);
    EXPECT_EQ(lookAt(300, 300), 32512);
  });
}

TEST_F(CursorSlotTest, OfAFrameIsItsClientsAlone) {
  ground.run([this](QVScenario& manager) {
    const Rectangle place = Rectangle::at(100, 100, 80, 60);
    manager.CreateObject("win", TypeFrame, {nullptr, &place, "caption"});
    manager.SetCursor("win", 32515);
    Rectangle outer;
    manager.FindWindow("win")->windowRect(outer);
    EXPECT_EQ(lookAt(outer.left + 1, outer.top + 1), 32512);
    EXPECT_EQ(lookAt(outer.left + 20, outer.bottom - 20), 32515);
  });
}

TEST_F(CursorSlotTest, FollowsWindowsThatComeAndGoUnderThePointer) {
  ground.run([this](QVScenario& manager) {
    lookAt(20, 20);
    manager.CreateView("over", nullptr, 0, 0, 50, 50, WindowHidden);
    manager.SetCursor("over", 32648);
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor().system, 32512);
    manager.ShowWindow("over", 1);
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor().system, 32648);
    manager.DestroyObject("over");
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor().system, 32512);
    manager.CreateView("over", nullptr, 0, 0, 50, 50, 0);
    StoryGround::settle();
    EXPECT_EQ(ground.display.cursor().system, 32512) << "a window of the same name is as new";
  });
}

TEST_F(CursorSlotTest, AWindowTakesANamedCursorByConnection) {
  ground.run([this](QVScenario& manager) {
    manager.CreateCursor("busy", 32650);
    manager.ConnectObjects("busy", "cg.view");
    EXPECT_EQ(lookAt(20, 20), 32650);
    manager.DestroyObject("busy");
    EXPECT_EQ(lookAt(21, 20), 32650);
  });
}

}  // namespace
}  // namespace qv::testing
