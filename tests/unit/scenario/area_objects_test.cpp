// Named print areas: what they are connected with, their handles, and the commands that use them.

#include "scenario/area_objects.h"

#include <gtest/gtest.h>

#include "input/hitret.h"
#include "message/commands.h"
#include "platform/text/text_renderer.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "tests/unit/graphics/animation/animation_ground.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

constexpr uint8_t Ground = 17;

/// A host with a view that has pixels, which is the client of the frame "box" too.
class ViewHost : public FakeHost {
 public:
  class ViewWindow : public WindowObject {
   public:
    int typeCode() const override { return TypeView; }
    View* view() override { return drawnInto; }
    View* drawnInto = nullptr;
  };
  ViewHost() {
    window.drawnInto = &screen;
    screen.surface.fill(Ground);
    addWindow("box", TypeFrame);
  }
  WindowObject* FindWindowObject(const char* name) override {
    if (std::string(name) == "cg.view" || std::string(name) == "boxClient") return &window;
    return FakeHost::FindWindowObject(name);
  }

  FakeView screen{64, 48};
  ViewWindow window;
};

int waitsRun = 0;
int32_t countedWait(QVHitret&) {
  return ++waitsRun;
}

class NamedAreas : public ::testing::Test {
 protected:
  NamedAreas() {
    manager.Start(&host, "Test", 8, 4, 16);
    setTheScenario(&manager);
    manager.CreateObject("mess.surf", TypeSurface, {64, 48});
    manager.CreateObject("message.Area", TypePrintArea);
    manager.CreateObject("name.Area", TypePrintArea);
    surface().fill(Ground);
    area("message.Area").setRect(0, 0, 32, 32);
    area("name.Area").setRect(40, 0, 16, 16);
  }
  ~NamedAreas() override { setTheScenario(nullptr); }
  QVVSurface& surface() {
    return *static_cast<QVVSurface*>(manager.FindNative("mess.surf", TypeSurface));
  }
  QVPrintArea& area(const char* name) {
    return *static_cast<QVPrintArea*>(manager.FindNative(name, TypePrintArea));
  }
  /// Whether the area draws there: what it clears is white.
  bool clears(const char* name, const QVVSurface& target, int32_t x, int32_t y) {
    area(name).clear(true, true);
    return target.pixel(x, y) == 255;
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  TextRenderer text{platform.game()};
  Services all = [this] {
    Services given = services();
    given.text = &text;
    return given;
  }();
  ServicesScope scope{all};
  ViewHost host;
  QVScenario manager;
};

TEST_F(NamedAreas, PrintIntoTheSurfaceTheyAreConnectedWith) {
  EXPECT_FALSE(clears("message.Area", surface(), 5, 5));
  manager.ConnectObjects("mess.surf", "message.Area");
  EXPECT_TRUE(clears("message.Area", surface(), 5, 5));
  EXPECT_EQ(surface().pixel(33, 5), Ground);
}

TEST_F(NamedAreas, PrintIntoTheViewTheyAreConnectedWith) {
  for (const char* view : {"cg.view", "box"}) {
    host.screen.surface.fill(Ground);
    host.screen.invalidations = 0;
    manager.ConnectObjects("message.Area", view);
    EXPECT_TRUE(clears("message.Area", host.screen.surface, 5, 5)) << view;
    EXPECT_EQ(host.screen.invalidations, 1) << view;
    manager.DisconnectObjects(view, "message.Area");
    EXPECT_TRUE(clears("message.Area", host.screen.surface, 5, 5)) << "the target stays";
    EXPECT_EQ(host.screen.invalidations, 1) << view;
  }
}

TEST_F(NamedAreas, ClearTheirLinkTogetherWithThemselves) {
  manager.ConnectObjects("mess.surf", "message.Area");
  manager.ConnectObjects("mess.surf", "name.Area");
  manager.ConnectObjects("message.Area", "name.Area");
  EXPECT_TRUE(clears("message.Area", surface(), 45, 5));
}

TEST_F(NamedAreas, WaitThroughTheHitretTheyAreConnectedWith) {
  manager.CreateObject("ret", TypeHitret);
  static_cast<QVHitret*>(manager.FindNative("ret", TypeHitret))->setWait(countedWait);
  manager.ConnectObjects("message.Area", "ret");
  manager.ConnectObjects("message.Area", "cg.view");
  waitsRun = 0;
  area("message.Area").printText("a", nullptr, nullptr, nullptr, true);
  EXPECT_EQ(waitsRun, 1);
}

TEST_F(NamedAreas, LoseASurfaceAndALinkThatAreDestroyed) {
  manager.ConnectObjects("mess.surf", "message.Area");
  manager.ConnectObjects("message.Area", "name.Area");
  manager.DestroyObject("name.Area");
  EXPECT_TRUE(clears("message.Area", surface(), 5, 5));
  manager.DestroyObject("mess.surf");
  area("message.Area").printText("abc");
  EXPECT_EQ(area("message.Area").position(), PenPosition());
}

TEST_F(NamedAreas, ArePlacedByTheirPen) {
  manager.MoveWindow("message.Area", 7, 8);
  EXPECT_EQ(area("message.Area").position(), (PenPosition{7, 8}));
  manager.MoveWindow("message.Area", 0xFFFFC, 8);  // codes are of windows
  EXPECT_EQ(area("message.Area").position(), (PenPosition{7, 8}));
}

TEST_F(NamedAreas, AreReachedByTheirHandles) {
  const AreaHandle handle("message.Area");
  const SurfaceHandle target("mess.surf");
  handle.setSurface(target);
  handle.setRect(8, 8, 40, 30);
  handle.setFlags(QVPrintArea::FlagOutline);
  handle.setColour(0xFFFFFF, 0);
  EXPECT_EQ(handle.setLineHeight(12), 20);
  EXPECT_EQ(handle.setIndent(3, 0), 0);
  handle.setFont(12, 400, 0, 1, 128, nullptr);
  handle.setNoLineStart("x");
  handle.saveBackground();
  handle.home();
  EXPECT_EQ(area("message.Area").position(), (PenPosition{12, 9}));
  handle.printText("a");
  EXPECT_EQ(area("message.Area").position(), (PenPosition{18, 9}));
  handle.clear();
  EXPECT_EQ(surface().pixel(10, 10), Ground);
  handle.setPosition(20, 20);
  handle.printSurfaceKeyless(target, {0, 0, 4, 4}, false);
  handle.printSurface(target, {0, 0, 4, 4}, KeyNone, false);
  EXPECT_EQ(area("message.Area").position(), (PenPosition{28, 20}));
  handle.printImageFile("none.bmp", KeyNone, true);
  handle.printImageKeyless("none.bmp", true);
  handle.setView(ViewHandle("cg.view"));
  handle.setLink(AreaHandle("name.Area"));
  handle.clear();
  EXPECT_EQ(host.screen.invalidations, 1) << "the link has no target";
}

TEST_F(NamedAreas, OfUnboundHandlesDoNothing) {
  setTheScenario(nullptr);
  const AreaHandle handle("message.Area");
  EXPECT_FALSE(handle.bound());
  EXPECT_EQ(handle.area(), nullptr);
  handle.setView(ViewHandle("cg.view"));
  handle.setSurface(SurfaceHandle("mess.surf"));
  handle.setLink(handle);
  handle.setHitret(QVHitret());
  handle.setRect(1, 2, 3, 4);
  handle.setPosition(1, 2);
  EXPECT_EQ(handle.setLineHeight(5), 0);
  EXPECT_EQ(handle.setIndent(5, 0), 0);
  handle.setFlags(1);
  handle.setNoLineStart("a");
  handle.setColour(1, 0);
  handle.setFont(1, 1, 1, 1, 1, "a");
  handle.saveBackground();
  handle.clear();
  handle.home();
  handle.printText("a");
  handle.printSurface(SurfaceHandle("mess.surf"), {}, KeyNone, true);
  handle.printImageFile("a", KeyNone, true);
  EXPECT_TRUE(platform.dialogs.shown.empty());
  EXPECT_EQ(area("message.Area").rectangle(), (Rectangle{0, 0, 32, 32}));
}

TEST_F(NamedAreas, GetAChoicesText) {
  manager.ConnectObjects("mess.surf", "message.Area");
  AreaHandle handle("message.Area");
  AreaText(handle, "ab", 0);
  EXPECT_EQ(area("message.Area").position(), (PenPosition{16, 0}));
}

TEST_F(NamedAreas, AreMadeByTheHandleThatMissesThem) {
  const AreaHandle handle("select01.Mess.Aria");
  ASSERT_TRUE(handle.bound());
  EXPECT_EQ(handle.area()->rectangle(), Rectangle());
}

}  // namespace
}  // namespace qv::testing
