// Named print areas: what they are connected with, their handles, and the commands that use them.

#include "scenario/area_objects.h"

#include <gtest/gtest.h>

#include "graphics/position.h"
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

TEST_F(NamedAreas, ADrawOntoAnAreaPrintsItsSourceWithThePenAtThatPlace) {
  manager.ConnectObjects("mess.surf", "message.Area");
  manager.DrawTo("message.Area", "AB", 4, 10, 0, 0, 0, 0);
  const PenPosition behind = area("message.Area").position();
  EXPECT_GT(behind.x, 4);
  EXPECT_EQ(behind.y, 10);
  const Rectangle line = {4, 10, behind.x, 30};
  int printed = 0, beside = 0;
  for (int32_t y = 0; y < 48; ++y)
    for (int32_t x = 0; x < 64; ++x)
      if (surface().pixel(x, y) != Ground) ++(line.contains(x, y) ? printed : beside);
  EXPECT_EQ(beside, 0);
  EXPECT_GT(printed, 0);
  // With a code for either the pen stays.
  manager.DrawTo("message.Area", "C", PositionCentre, 2, 0, 0, 0, 0);
  const PenPosition further = area("message.Area").position();
  EXPECT_GT(further.x, behind.x);
  EXPECT_EQ(further.y, 10);
  manager.DrawTo("message.Area", "", 1, PositionBottom, 0, 0, 0, 0);
  EXPECT_EQ(area("message.Area").position(), further);
  // A name is a text like any other.
  manager.CreateObject("M", TypeSurface, {30, 8});
  manager.DrawTo("message.Area", "M", 0, 5, 0, 0, 0, 0);
  EXPECT_EQ(area("message.Area").position().y, 5);
  EXPECT_LT(area("message.Area").position().x, 30);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(NamedAreas, APlainColourDrawnOntoAnAreaIsNoText) {
  manager.ConnectObjects("mess.surf", "message.Area");
  const PenPosition before = area("message.Area").position();
  manager.DrawTo("message.Area", 0, 4, 10, 0, 0, 0, 0);
  manager.DrawTo("message.Area", -1, 4, 10, 0, 0, 0, 0);
  EXPECT_EQ(area("message.Area").position(), before);
  EXPECT_EQ(surface().pixel(5, 12), Ground);
}

TEST_F(NamedAreas, ADrawBesideAnAreaIsToldAndPrintedAtItsCorner) {
  manager.ConnectObjects("mess.surf", "name.Area");
  area("name.Area").setFlags(QVPrintArea::FlagOneLine);
  manager.DrawTo("name.Area", "A", 0, 0, 0, 0, 0, 0);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVPrintArea manager");
  EXPECT_GT(area("name.Area").position().x, 40);
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
