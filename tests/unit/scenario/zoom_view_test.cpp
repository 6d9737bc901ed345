#include <cstring>
#include <map>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "scenario/scenario.h"
#include "tests/support/effect_stage.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using testing::indicesOf;
using testing::StageView;

constexpr int32_t Width = 64, Height = 48;

class StageWindow : public WindowObject {
 public:
  StageWindow(const char* windowName, int code, bool target32 = false)
      : stage(Width, Height, target32), code_(code) {
    name.create(QVString::DefaultGrain, windowName);
  }
  int typeCode() const override { return code_; }
  View* view() override { return code_ == TypeFrame ? nullptr : &stage; }
  StageView stage;

 private:
  int code_;
};

/// Windows that stand there from the start; requests go nowhere.
class StageHost : public ScenarioHost {
 public:
  WindowObject* FindWindowObject(const char* name) override {
    for (StageWindow* window : {&view, &frame, &client, &view24})
      if (window->name.equals(name)) return window;
    return nullptr;
  }
  WindowObject* FindWindowByCode(int32_t) override { return nullptr; }
  SceneFunction FindScene(const char*) override { return {}; }
  bool PostToUi(uint32_t, uintptr_t, uintptr_t) override { return false; }

  StageWindow view{"cg.view", TypeView}, frame{"HelpWindow", TypeFrame},
      client{"HelpWindowClient", TypeView}, view24{"deep", TypeSecondView, true};
};

class PictureObject : public LogicalObject {
 public:
  int typeCode() const override { return TypeSurface; }
  void* native() override { return &surface; }
  QVVSurface surface;
};
constexpr ObjectKind PictureKinds[] = {
    {TypeSurface, "test", "", NativeForm::Member, &allocateObject<PictureObject>}};

class ZoomViewTest : public ::testing::Test {
 protected:
  ZoomViewTest() {
    manager.Start(&host, "Test", 8, 4, 16);
    testing::drawNewCard(make("card"), Width, Height);
    testing::drawOldCard(make("ground"), Width, Height);
    make("target").create(Width, Height);
  }
  QVVSurface& make(const char* name) {
    manager.CreateObject(name, TypeSurface);
    return surface(name);
  }
  QVVSurface& surface(const char* name) {
    return *static_cast<QVVSurface*>(manager.FindNative(name, TypeSurface));
  }
  void zoom(const char* view, const char* picture, int32_t steps, ObjectArgument clear) {
    manager.ZoomView(view, picture, 10, 8, 10, 6, 4, 2, 50, 40, steps, clear);
  }
  /// The card at the second rectangle on a ground.
  std::vector<uint8_t> endOn(const char* ground, uint8_t index = 0) {
    QVVSurface wanted;
    wanted.create(Width, Height);
    wanted.fill(index);
    if (ground) surface(ground).blit(wanted, 0, 0, 0, 0, Width, Height, KeyNone);
    surface("card").stretchTo(wanted, 4, 2, 50, 40);
    return indicesOf(wanted);
  }

  testing::TestPlatform platform{false, makeSimulatedKernel()};
  StageHost host;
  ObjectKindsScope kinds{PictureKinds};
  QVScenario manager;
};

TEST_F(ZoomViewTest, StretchesASurfaceOverAView) {
  zoom("cg.view", "card", 4, 7);
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn(nullptr, 7));
  EXPECT_EQ(host.view.stage.surface8()->storedColours(), surface("card").storedColours());
  EXPECT_EQ(host.view.stage.flushes.size(), 4u);
}

TEST_F(ZoomViewTest, TakesAFramesNameForItsClient) {
  zoom("HelpWindow", "card", 2, 0);
  EXPECT_EQ(indicesOf(*host.client.stage.surface8()), endOn(nullptr));
}

TEST_F(ZoomViewTest, ClearsByIndexBySurfaceOrNotAtAll) {
  zoom("cg.view", "card", 1, 255);
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn(nullptr, 255));
  EXPECT_TRUE(host.view.stage.flushes.back().whole);
  zoom("cg.view", "card", 1, "ground");
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn("ground"));
  host.view.stage.surface8()->fill(9);
  zoom("cg.view", "card", 1, -1);
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn(nullptr, 9));
  EXPECT_EQ(host.view.stage.flushes.back().area, (Rectangle{4, 2, 54, 42}));
}

TEST_F(ZoomViewTest, ClearsWithAPictureFileWhereNoSurfaceHasTheName) {
  surface("ground").saveBmpByName("back.bmp");
  zoom("cg.view", "card", 1, "back.bmp");
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn("ground"));
}

TEST_F(ZoomViewTest, OntoASurfaceStretchesOnceAndLeavesItsColours) {
  const ColourTable before = surface("target").storedColours();
  zoom("target", "card", 5, 7);
  EXPECT_EQ(indicesOf(surface("target")), endOn(nullptr));
  EXPECT_EQ(surface("target").storedColours(), before);
  EXPECT_EQ(tickCount(), 0u);
}

TEST_F(ZoomViewTest, DoesNothingWithoutItsSurfaceOrOnAnotherKindOfWindow) {
  const std::vector<uint8_t> before = indicesOf(*host.view.stage.surface8());
  zoom("cg.view", "none", 2, 7);
  zoom("cg.view", nullptr, 2, 7);
  zoom("none", "card", 2, 7);
  zoom(nullptr, "card", 2, 7);
  zoom("deep", "card", 2, 7);
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), before);
  EXPECT_TRUE(host.view.stage.flushes.empty());
  EXPECT_TRUE(host.view24.stage.flushes.empty());
}

TEST_F(ZoomViewTest, TakesRectanglesFromAnyCorner) {
  manager.ZoomView("cg.view", "card", 20, 14, -10, -6, 54, 42, -50, -40, 3, 7);
  EXPECT_EQ(indicesOf(*host.view.stage.surface8()), endOn(nullptr, 7));
}

TEST_F(ZoomViewTest, TakesNumbersOfAnySize) {
  constexpr int32_t Far = INT32_MAX, Low = INT32_MIN;
  manager.ZoomView("cg.view", "card", Low, Low, Far, Far, Far, Far, Low, Low, 3, 7);
  manager.ZoomView("cg.view", "card", Low, Far, Low, Low, -Far, -Far, Far, Far, 2, -1);
  manager.ZoomView("target", "card", 0, 0, 0, 0, Low, Low, Far, Far, 2, -1);
  host.abortEvent.set();
  manager.ZoomView("cg.view", "card", 0, 0, 1, 1, 0, 0, 2, 2, Far, 7);
  EXPECT_EQ(host.view.stage.surface8()->pixel(63, 47), 7);
}

}  // namespace
}  // namespace qv
