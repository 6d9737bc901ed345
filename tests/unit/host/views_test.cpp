// The manager's operations on views by their names, with real windows behind them: what a scene
// says and what then stands on the screen. In simulated time.

#include <functional>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "graphics/position.h"
#include "host/ui_loop.h"
#include "platform/display/headless_display.h"
#include "platform/text/text_renderer.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

constexpr uint8_t RedIndex = 249, GreenIndex = 250, BlueIndex = 252;
constexpr uint32_t Red = 0xFF0000, Green = 0x00FF00, Blue = 0x0000FF, Black = 0, White = 0xFFFFFF;
constexpr uint32_t Ground = Compositor::GroundColour;

const GameModule EmptyModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

class ViewsOfTheManager : public ::testing::Test {
 protected:
  ViewsOfTheManager()
      : platform(false, makeSimulatedKernel()),
        host(EmptyModule),
        boxes(text),
        loop(host, display, boxes, recorder, {}) {}

  /// Runs `scene` as the scenario thread with a manager, and the loop until it has ended.
  void run(const std::function<void()>& scene) {
    Thread scenario;
    scenario.start("scenario", [&] {
      loop.setScenarioThread(Thread::currentId());
      {
        QVScenario made;
        manager = &made;
        made.Start(&host, "Test", 100, 10, 10);
        setTheScenario(manager);
        scene();
        setTheScenario(nullptr);
      }
      host.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop.run();
    scenario.join();
  }
  uint32_t at(int x, int y) {
    Frame frame;
    host.compositor.take(frame, true);
    return frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }
  Rectangle place(const char* name) {
    Rectangle rectangle;
    host.windows.find(name)->windowRect(rectangle);
    return rectangle;
  }
  QVVSurface& view8(const char* name) { return *host.windows.find(name)->surface8(); }

  testing::TestPlatform platform;
  TextRenderer text;
  HeadlessDisplay display;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  UiLoop loop;
  QVScenario* manager = nullptr;
};

TEST_F(ViewsOfTheManager, AreCreatedFromAnyCornerHiddenOrShown) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 640, 480, -640, -480, 0);
    EXPECT_EQ(place("cg.view"), ScreenRectangle);
    EXPECT_TRUE(host.windows.find("cg.view")->shown());
    manager->CreateView("mess.view", "", 0, 352, 640, 127, WindowHidden | WindowExtraWord, "text");
    HostWindowObject* mess = host.windows.find("mess.view");
    EXPECT_FALSE(mess->shown());
    EXPECT_EQ(mess->extraWord, 1);
    EXPECT_STREQ(mess->caption.text(), "text");
    manager->CreateView("select01.view", "cg.view", 40, 55, 565, 122, WindowHidden);
    EXPECT_EQ(host.windows.find("select01.view")->parent, host.windows.find("cg.view"));
    manager->CreateView("view24", "cg.view", 0, 0, 640, 480, 0, {}, TypeSecondView);
    EXPECT_NE(host.windows.find("view24")->surface32(), nullptr);
    manager->CreateView("wild", nullptr, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN, 0);
    manager->ShowWindow("mess.view", 1);
    EXPECT_TRUE(mess->shown());
    manager->ShowWindow("nobody", 1);
  });
}

TEST_F(ViewsOfTheManager, ADrawOntoAViewTakesTheSourcesColoursAndStandsOnTheScreen) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 640, 480);
    ColourTable colours = defaultColours();
    colours[30] = 0x123456;
    surface.setColours(colours, 0, 0, 256);
    surface.fill(30);
    manager->DrawTo("cg.view", "cg.surf", 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(at(0, 0), 0x123456u);
    EXPECT_EQ(at(639, 479), 0x123456u);
    // With a key the view keeps its own.
    colours[30] = 0x654321;
    surface.setColours(colours, 0, 0, 256);
    manager->DrawTo("cg.view", "cg.surf", 0, 0, 0, 0, 0, 0, 1, 5);
    EXPECT_EQ(at(0, 0), 0x123456u);
  });
}

TEST_F(ViewsOfTheManager, ADrawWithoutFlushLeavesTheScreenAsItIs) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 640, 480);
    surface.fill(RedIndex);
    manager->DrawTo("cg.view", "cg.surf", 0, 0, 0, 0, 0, 0, 1, KeyNone, 0, 0);
    EXPECT_EQ(at(0, 0), Black);
    EXPECT_EQ(view8("cg.view").pixel(0, 0), RedIndex);
    manager->HoldView("cg.view");
    manager->DrawTo("cg.view", "cg.surf", 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(at(0, 0), Black);
    manager->ReleaseView("cg.view", 1);
    EXPECT_EQ(at(0, 0), Red);
  });
}

TEST_F(ViewsOfTheManager, AnUnseenDrawTakesItsKeyFromTheCallWhateverTheEffect) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 640, 480);
    constexpr int32_t Steps = 16;
    const Rectangle half = {0, 0, 320, 480};
    surface.fill(RedIndex);
    surface.fill(Steps, &half);
    // The number of the palette fade's steps is no colour.
    manager->DrawTo("cg.view", "cg.surf", Steps, 0, 0, 0, 0, 0, 9, KeyNone, 0, 0);
    EXPECT_EQ(at(0, 0), Black);
    EXPECT_EQ(view8("cg.view").pixel(0, 0), Steps);
    EXPECT_EQ(view8("cg.view").pixel(320, 0), RedIndex);
    view8("cg.view").fill(BlueIndex);
    manager->DrawTo("cg.view", "cg.surf", 8, 0, 0, 0, 0, 0, 9, Steps, 0, 0);
    EXPECT_EQ(view8("cg.view").pixel(0, 0), BlueIndex);
    EXPECT_EQ(view8("cg.view").pixel(320, 0), RedIndex);
  });
}

TEST_F(ViewsOfTheManager, AViewOf32BitsIsNoSourceOfADraw) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    manager->CreateView("wide.view", nullptr, 0, 0, 100, 80, WindowHidden, {}, TypeSecondView);
    manager->FillObject("wide.view", RedIndex);
    manager->FillObject("cg.view", BlueIndex);
    SurfaceHandle surface("cg.surf", 20, 20);
    surface.fill(5);
    for (const int32_t effect : {1, 9, 10, 60}) {
      manager->DrawTo("cg.view", "wide.view", 0, 0, 0, 0, 0, 0, effect);
      manager->DrawTo("cg.view", "wide.view", 0, 0, 0, 0, 0, 0, effect, KeyNone, 0, 0);
      manager->DrawTo("cg.surf", "wide.view", 0, 0, 0, 0, 0, 0, effect);
    }
    EXPECT_EQ(at(0, 0), Blue);
    EXPECT_EQ(view8("cg.view").pixel(0, 0), BlueIndex);
    EXPECT_EQ(surface.surface()->pixel(0, 0), 5);
    EXPECT_TRUE(platform.dialogs.shown.empty());
  });
}

TEST_F(ViewsOfTheManager, DrawsAreAlignedByPositionCodes) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("small.surf", 100, 50);
    surface.fill(GreenIndex);
    manager->DrawTo("cg.view", "small.surf", PositionRight, PositionBottom, 0, 0, 0, 0);
    manager->DrawTo("cg.view", "small.surf", PositionCentre, PositionTop, 0, 0, 0, 0);
    EXPECT_EQ(at(540, 430), Green);
    EXPECT_EQ(at(539, 430), Black);
    EXPECT_EQ(at(270, 0), Green);
    EXPECT_EQ(at(369, 49), Green);
    EXPECT_EQ(at(370, 49), Black);
  });
}

TEST_F(ViewsOfTheManager, DrawsBetweenSurfacesTakeTheSourcesSizeAndItsColoursWithoutAKey) {
  run([this] {
    SurfaceHandle target("target.surf", 30, 20), source("source.surf", 10, 5);
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    ColourTable colours = defaultColours();
    colours[33] = 0x335577;
    source.setColours(colours, 0, 0, 256);
    source.fill(33);
    manager->DrawTo("target.surf", "source.surf", 4, 4, 0, 0, 0, 0, 1, 200);
    EXPECT_EQ(target.surface()->pixel(13, 8), 33);
    EXPECT_EQ(target.surface()->pixel(14, 8), 0);
    EXPECT_NE(target.surface()->storedColours()[33], 0x335577u);
    manager->DrawTo("target.surf", "source.surf", 25, 18, 0, 0, 0, 0);
    EXPECT_EQ(target.surface()->pixel(29, 19), 33);
    EXPECT_EQ(target.surface()->storedColours()[33], 0x335577u);
    // A view is a source as well.
    manager->FillObject("cg.view", 77);
    manager->DrawTo("target.surf", "cg.view", 0, 0, 3, 3, 600, 400);
    EXPECT_EQ(target.surface()->pixel(2, 2), 77);
    EXPECT_EQ(target.surface()->pixel(3, 2), 0);
  });
}

TEST_F(ViewsOfTheManager, PlainColoursStandInThePlaceOfASource) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 20, 20);
    surface.fill(5);
    manager->DrawTo("cg.surf", -1, 2, 2, 3, 3, 0, 0);
    EXPECT_EQ(surface.surface()->pixel(4, 4), 255);
    EXPECT_EQ(surface.surface()->pixel(5, 4), 5);
    manager->DrawTo("cg.surf", nullptr, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(surface.surface()->pixel(19, 19), 0);
    manager->DrawTo("cg.view", -1, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(at(320, 240), White);
    manager->DrawTo("cg.view", 0, 100, 100, 50, 50, 0, 0);
    EXPECT_EQ(at(120, 120), Black);
    EXPECT_EQ(at(150, 120), White);
  });
}

TEST_F(ViewsOfTheManager, AViewOf32BitsIsFilledWithTheColourOfANewSurface) {
  run([this] {
    manager->CreateView("wide.view", nullptr, 10, 20, 100, 80, 0, {}, TypeSecondView);
    manager->FillObject("wide.view", RedIndex);
    EXPECT_EQ(at(10, 20), Red);
    EXPECT_EQ(at(109, 99), Red);
    manager->FillObject("wide.view", 100);
    EXPECT_EQ(at(60, 60), 0x646464u) << "the grey ramp between the static colours";
    EXPECT_NE(at(9, 20), 0x646464u);
    // It has no colours to take or to give.
    SurfaceHandle surface("cg.surf", 20, 20);
    ColourTable colours = defaultColours();
    colours[100] = 0x335577;
    surface.setColours(colours, 0, 0, 256);
    manager->CopyPalette("wide.view", "cg.surf");
    manager->CopyPalette("cg.surf", "wide.view");
    EXPECT_EQ(surface.surface()->storedColours()[100], 0x335577u);
    manager->FillObject("wide.view", 100);
    EXPECT_EQ(at(60, 60), 0x646464u);
  });
}

TEST_F(ViewsOfTheManager, NamesThatAreNothingDoNothing) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 20, 20);
    manager->DrawTo("nobody", "cg.surf", 0, 0, 0, 0, 0, 0);
    manager->DrawTo(nullptr, "cg.surf", 0, 0, 0, 0, 0, 0);
    manager->FadeView("nobody", 4, 0, 0);
    manager->MoveWindow("nobody", PositionCentre, 0);
    manager->FillObject("nobody", 4);
    manager->FillObject(nullptr, 4);
    manager->CopyPalette("nobody", "cg.surf");
    manager->SetClipShape("nobody", "cg.surf", KeyTopLeft);
    manager->SetClipShape("cg.view", "nobody", KeyTopLeft);
    manager->HoldView(nullptr);
    manager->ReleaseView(nullptr, 1);
    manager->ShowWindow(nullptr, 0);
    EXPECT_EQ(at(0, 0), Black);
    const ViewHandle unbound("nobody");
    unbound.fill(3);
    unbound.flush();
    unbound.show();
    EXPECT_EQ(unbound.width(), 0);
  });
}

TEST_F(ViewsOfTheManager, EffectNineTakesItsStepsFromThePlaceOfX) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 640, 480);
    surface.fill(RedIndex);
    const uint32_t start = tickCount();
    manager->DrawTo("cg.view", "cg.surf", 8, 0, 0, 0, 0, 0, 9);
    // Ten rounds: 0 to 9.
    EXPECT_EQ(tickCount() - start, 400u);
    EXPECT_EQ(at(0, 0), Red);
    EXPECT_EQ(at(639, 479), Red);
    // More steps than the view is wide are no place outside of it.
    manager->CreateView("small.view", nullptr, 0, 0, 10, 10, 0);
    manager->DrawTo("small.view", "cg.surf", 16, 0, 0, 0, 0, 0, 9);
    EXPECT_EQ(tickCount() - start, 400u + 18 * 40);
    EXPECT_EQ(view8("small.view").pixel(9, 9), RedIndex);
  });
}

TEST_F(ViewsOfTheManager, AFadeEndsOnTheGreyAndKeepsItsColoursWhenToldSo) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    manager->FillObject("cg.view", RedIndex);
    const uint32_t start = tickCount();
    manager->FadeView("cg.view", 8, 128, 1);
    EXPECT_EQ(tickCount() - start, 9 * 40u);
    EXPECT_EQ(at(0, 0), 0x808080u);
    EXPECT_EQ(view8("cg.view").pixel(5, 5), 128);
    EXPECT_EQ(view8("cg.view").shownColours()[RedIndex], Red);
    manager->FadeView("cg.view", 8, 0, 0);
    EXPECT_EQ(tickCount() - start, 19 * 40u);
    EXPECT_EQ(at(0, 0), Black);
    EXPECT_EQ(view8("cg.view").storedColours()[RedIndex], Black);
  });
}

TEST_F(ViewsOfTheManager, FramesAreMovedByCodes) {
  run([this] {
    const Rectangle help = {4, 4, 324, 380};
    manager->CreateObject("HelpWindow", TypeFrame, {nullptr, &help, "Help", 0, 0});
    const int32_t width = place("HelpWindow").width(), height = place("HelpWindow").height();
    const Rectangle middle =
        Rectangle::at(((640 - width) / 2 + 4) / 8 * 8, (480 - height) / 2, width, height);
    manager->MoveWindow("HelpWindow", PositionCentre, 0);
    EXPECT_EQ(place("HelpWindow"), middle);
    manager->MoveWindow("HelpWindow", 3, 5);
    EXPECT_EQ(place("HelpWindow"), Rectangle::at(3, 5, width, height));
    manager->MoveWindow("HelpWindow", PositionScreenCentre, 0);
    EXPECT_EQ(place("HelpWindow"), middle);
    host.pointer.moveTo(600, 470);
    manager->MoveWindow("HelpWindow", PositionPointer, 0);
    EXPECT_EQ(place("HelpWindow"), Rectangle::at(640 - width, 480 - height, width, height));
    host.pointer.moveTo(12, 13);
    manager->MoveWindow("HelpWindow", PositionPointer, 0);
    EXPECT_EQ(place("HelpWindow"), Rectangle::at(12, 13, width, height));
    for (const int32_t reserved :
         {PositionBottom, PositionTop, PositionRight, PositionLeft, 0xFFFFB})
      manager->MoveWindow("HelpWindow", reserved, 0);
    EXPECT_EQ(place("HelpWindow"), Rectangle::at(12, 13, width, height));
    manager->MoveWindow("HelpWindow", -20, 9999);
    EXPECT_EQ(place("HelpWindow"), Rectangle::at(-20, 9999, width, height));
  });
}

TEST_F(ViewsOfTheManager, AFrameInAViewIsCentredInItOrOnTheScreen) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 100, 100, 400, 300, 0);
    const Rectangle size = {0, 0, 80, 60};
    manager->CreateObject("box", TypeFrameless, {"cg.view", &size, nullptr, 0, 0});
    manager->MoveWindow("box", PositionCentre, 0);
    EXPECT_EQ(place("box"), Rectangle::at(100 + 160, 100 + 120, 80, 60));
    manager->MoveWindow("box", PositionScreenCentre, 0);
    EXPECT_EQ(place("box"), Rectangle::at(280, 210, 80, 60));
    host.pointer.moveTo(150, 160);
    manager->MoveWindow("box", PositionPointer, 0);
    EXPECT_EQ(place("box"), Rectangle::at(150, 160, 80, 60));
    // Codes are of frames alone; a view is moved by coordinates.
    manager->MoveWindow("cg.view", PositionCentre, 0);
    EXPECT_EQ(place("cg.view"), Rectangle::at(100, 100, 400, 300));
    manager->MoveWindow("cg.view", 1, 2);
    EXPECT_EQ(place("cg.view"), Rectangle::at(1, 2, 400, 300));
  });
}

TEST_F(ViewsOfTheManager, AnOutlineComesFromANamedSurfaceWhichStaysAsItIs) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    manager->FillObject("cg.view", BlueIndex);
    manager->CreateView("mess.view", nullptr, 0, 352, 640, 127, 0);
    manager->FillObject("mess.view", RedIndex);
    SurfaceHandle outline("mfrmR.surf", 640, 127);
    const Rectangle inside = {20, 20, 600, 100};
    outline.fill(7, &inside);
    manager->SetClipShape("mess.view", "mfrmR.surf", KeyTopLeft);
    EXPECT_EQ(at(20, 372), Red);
    EXPECT_EQ(at(19, 372), Blue);
    EXPECT_EQ(outline.surface()->pixel(20, 20), 7);
    EXPECT_EQ(outline.surface()->pixel(0, 0), 0);
  });
}

TEST_F(ViewsOfTheManager, PalettesAreCopiedByNameAndSeenWithTheNextFlush) {
  run([this] {
    manager->CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    SurfaceHandle surface("cg.surf", 10, 10);
    ColourTable colours = defaultColours();
    colours[40] = 0x204060;
    surface.setColours(colours, 0, 0, 256);
    manager->FillObject("cg.view", 40);
    const uint32_t before = at(0, 0);
    manager->CopyPalette("cg.view", "cg.surf");
    EXPECT_EQ(at(0, 0), before);
    const ViewHandle view("cg.view");
    view.flush();
    EXPECT_EQ(at(0, 0), 0x204060u);
    SurfaceHandle other("other.surf", 10, 10);
    manager->CopyPalette("other.surf", "cg.view");
    EXPECT_EQ(other.surface()->storedColours()[40], 0x204060u);
  });
}

TEST_F(ViewsOfTheManager, AHandleDrawsIntoItsViewAndFlushesUnlessToldNotTo) {
  run([this] {
    const ViewHandle view("cg.view", nullptr, {0, 0, 640, 480}, nullptr, 0);
    SurfaceHandle surface("small.surf", 100, 50);
    surface.fill(GreenIndex);
    view.fill(RedIndex);
    EXPECT_EQ(at(0, 0), Red);
    view.draw(surface, PositionCentre, PositionBottom, 0, 0, 0, 0, KeyNone);
    EXPECT_EQ(at(270, 430), Green);
    view.draw(surface, 0, 0, 0, 0, 0, 0, KeyNone, Flush::No);
    EXPECT_EQ(at(0, 0), Red);
    view.hold();
    view.flush();
    EXPECT_EQ(at(0, 0), Red);
    view.release();
    EXPECT_EQ(at(0, 0), Green);
    view.drawBlended(surface, 300, 300, 0, 0, 10, 10, 2);
    EXPECT_EQ(at(300, 300) == Green, at(301, 300) != Green);
    scobjPalette palette;
    view.takePalette(palette);
    EXPECT_EQ(palette.entries()[RedIndex], Red);
    view.hide();
    EXPECT_EQ(at(0, 0), Ground);
    EXPECT_FALSE(view.shown());
  });
}

TEST_F(ViewsOfTheManager, AFrameIsShownWithItsClient) {
  run([this] {
    const FrameHandle frame("HelpWindow", nullptr, {100, 100, 200, 150}, "Help",
                            WindowHidden | WindowFramed);
    frame.client().fill(RedIndex);
    EXPECT_EQ(at(150, 140), Ground);
    frame.show();
    EXPECT_EQ(at(150, 140), Red);
    manager->FillObject("HelpWindow", BlueIndex);
    EXPECT_EQ(at(150, 140), Blue);
    frame.hide();
    EXPECT_EQ(at(150, 140), Ground);
  });
}

}  // namespace
}  // namespace qv
