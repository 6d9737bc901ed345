#include "host/windows.h"

#include <gtest/gtest.h>

#include "scenario/type_codes.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

class WindowListTest : public ::testing::Test {
 protected:
  WindowListTest() : lock("windows", LockRank::WindowList), list(lock, nullptr) {}

  HostWindowObject* make(int32_t code, const char* name, const char* parent = "",
                         Rectangle rectangle = {10, 20, 110, 70}, int32_t visible = 1) {
    CreateWindowRequest request;
    request.typeCode = code;
    request.name.create(QVString::DefaultGrain, name);
    request.parentName.create(QVString::DefaultGrain, parent);
    request.rectangle = rectangle;
    request.visible = visible;
    return list.create(request);
  }

  testing::TestPlatform platform;
  Lock lock;
  WindowList list;
};

TEST_F(WindowListTest, MakesEveryKindOfWindowAndNothingElse) {
  for (const int32_t code : {5, 6, 8, 12, 13, 14, 37}) {
    const std::string name = "window" + std::to_string(code);
    const HostWindowObject* window = make(code, name.c_str());
    ASSERT_NE(window, nullptr) << code;
    EXPECT_EQ(window->typeCode(), code);
    EXPECT_EQ(list.find(name.c_str()), window);
  }
  for (const int32_t code : {0, 4, 7, 9, 41, 46, 50, 51, -1})
    EXPECT_EQ(make(code, "other"), nullptr) << code;
}

TEST_F(WindowListTest, AFrameBringsItsClientViewOfItsOwnSize) {
  const HostWindowObject* frame = make(TypeFrame, "HelpWindow");
  const HostWindowObject* client = list.find("HelpWindowClient");
  ASSERT_NE(client, nullptr);
  EXPECT_EQ(client->typeCode(), TypeView);
  EXPECT_EQ(client->parent, frame);
  EXPECT_EQ(client->rectangle, (Rectangle{0, 0, 100, 50}));
  make(TypeFrameless, "system.cut.win");
  EXPECT_NE(list.find("system.cut.winClient"), nullptr);
  make(TypeView, "cg.view");
  EXPECT_EQ(list.find("cg.viewClient"), nullptr);
}

TEST_F(WindowListTest, ATakenNameMakesNothingAndLeavesTheWindow) {
  const HostWindowObject* first = make(TypeView, "cg.view");
  EXPECT_EQ(make(TypeFrame, "cg.view"), nullptr);
  EXPECT_EQ(list.find("cg.view"), first);
}

TEST_F(WindowListTest, NamesAreComparedWithExactCase) {
  make(TypeView, "cg.view");
  EXPECT_EQ(list.find("CG.view"), nullptr);
  EXPECT_EQ(list.find(nullptr), nullptr);
}

TEST_F(WindowListTest, AParentThatDoesNotExistMakesNothing) {
  EXPECT_EQ(make(TypeView, "child", "nowhere"), nullptr);
  EXPECT_TRUE(list.empty());
}

TEST_F(WindowListTest, HiddenIsHiddenButSomeKindsAreAlwaysShown) {
  EXPECT_FALSE(make(TypeView, "mess.view", "", {}, 0)->visible);
  EXPECT_TRUE(make(TypePlainWindow, "plain", "", {}, 0)->visible);
  EXPECT_TRUE(make(TypeAnimationControl, "control", "", {}, 0)->visible);
}

TEST_F(WindowListTest, APlainHostWindowHasAnEmptyRectangle) {
  EXPECT_EQ(make(TypePlainWindow, "plain")->rectangle, Rectangle{});
}

TEST_F(WindowListTest, DestroyingAWindowTakesWhatLiesInIt) {
  make(TypeView, "cg.view");
  make(TypeView, "select01.view", "cg.view");
  make(TypeView, "inner", "select01.view");
  make(TypeView, "mess.view");
  list.destroy("cg.view");
  EXPECT_EQ(list.find("cg.view"), nullptr);
  EXPECT_EQ(list.find("select01.view"), nullptr);
  EXPECT_EQ(list.find("inner"), nullptr);
  EXPECT_NE(list.find("mess.view"), nullptr);
  list.destroy("nobody");
  list.destroy(nullptr);
}

TEST_F(WindowListTest, TheFirstOfACodeIsTheOldest) {
  make(TypeView, "a");
  const HostWindowObject* first = make(TypeFrame, "b");
  make(TypeFrame, "c");
  EXPECT_EQ(list.findByCode(TypeFrame), first);
  EXPECT_EQ(list.findByCode(TypeReleasedWindow), nullptr);
}

}  // namespace
}  // namespace qv
