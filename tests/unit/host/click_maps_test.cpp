// Click maps with real windows under them: what the pointer and the keys of a device come to.

#include <functional>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "host/ui_loop.h"
#include "input/click_map.h"
#include "platform/display/headless_display.h"
#include "platform/display/key_codes.h"
#include "platform/services.h"
#include "platform/text/text_renderer.h"
#include "scenario/click_map_objects.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using Kind = DisplayEvent::Kind;

const GameModule EmptyModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

DisplayEvent at(Kind kind, int x, int y, PointerButton button = PointerButton::Left) {
  DisplayEvent event;
  event.kind = kind;
  event.x = x;
  event.y = y;
  event.button = button;
  return event;
}

DisplayEvent key(int code, bool repeat = false) {
  DisplayEvent event;
  event.kind = Kind::KeyDown;
  event.key = code;
  event.repeat = repeat;
  return event;
}

class ClickMapsTest : public ::testing::Test {
 protected:
  ClickMapsTest()
      : platform(false, makeSimulatedKernel()),
        host(EmptyModule),
        boxes(text),
        loop(host, display, boxes, recorder, {}) {
    EXPECT_TRUE(recorder.open(platform.player() / "record.play"));
  }

  /// "cg.view" with the map "clm", which is region 10 with 1 to 4 in a row.
  static void openMap(QVScenario& made) {
    made.CreateView("cg.view", nullptr, 0, 0, 640, 480, 0);
    made.CreateClickMap("clm", 640, 480, 10, 1);
    for (int region = 1; region <= 4; ++region)
      made.AddClickRect("clm", 100 * region, 100, 50, 50, region);
    made.ConnectObjects("clm", "cg.view");
  }

  /// Runs a scene over that map.
  void run(const std::function<void()>& scene) {
    Thread scenario;
    scenario.start("scenario", [&] {
      loop.setScenarioThread(Thread::currentId());
      {
        QVScenario made;
        manager = &made;
        made.Start(&host, "Test", 100, 10, 10);
        openMap(made);
        try {
          scene();
        } catch (const ExitScenarioException&) {
          aborted = true;
        }
      }
      host.queue.post({MessageScenarioEnded, 0, 0});
    });
    loop.run();
    scenario.join();
  }
  /// Gives events to the display one after the other, the first after `firstMillis`.
  void later(std::vector<DisplayEvent> events, uint32_t firstMillis = 20) {
    if (device.running()) device.join();
    device.start("device", [this, events = std::move(events), firstMillis] {
      sleepMillis(firstMillis);
      for (const DisplayEvent& event : events) {
        display.push(event);
        sleepMillis(5);
      }
    });
  }
  int32_t waitWith(std::vector<DisplayEvent> events, int32_t tenths = 10, int32_t keys = 1,
                   const char* map = "clm") {
    later(std::move(events));
    const int32_t result = manager->ClickWait(map, tenths, keys);
    device.join();
    return result;
  }
  /// What the waits give until one passes its limit.
  std::vector<int32_t> allWith(std::vector<DisplayEvent> events, int32_t keys = 1,
                               const char* map = "clm") {
    later(std::move(events));
    std::vector<int32_t> results;
    for (int32_t result; (result = manager->ClickWait(map, 3, keys)) != ClickTimeout;)
      results.push_back(result);
    device.join();
    return results;
  }
  std::string record() { return platform.readFile(platform.player() / "record.play"); }
  Rectangle place(const char* name) {
    Rectangle rectangle;
    host.windows.find(name)->windowRect(rectangle);
    return rectangle;
  }

  using Results = std::vector<int32_t>;
  testing::TestPlatform platform;
  TextRenderer text;
  HeadlessDisplay display;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  UiLoop loop;
  QVScenario* manager = nullptr;
  Thread device;
  bool aborted = false;
};

TEST_F(ClickMapsTest, APressGivesTheRegionUnderThePointer) {
  run([&] {
    EXPECT_EQ(waitWith({at(Kind::ButtonDown, 120, 120)}), 1);
    EXPECT_EQ(waitWith({at(Kind::ButtonDown, 420, 149)}), 4);
    EXPECT_EQ(waitWith({at(Kind::ButtonDown, 5, 5)}), 10);
    EXPECT_EQ(waitWith({at(Kind::ButtonDown, 120, 120, PointerButton::Right)}), ClickCancel);
    EXPECT_EQ(waitWith({at(Kind::ButtonDown, 120, 120, PointerButton::Middle)}), ClickTimeout);
  });
  EXPECT_EQ(record(), "@1 click 120 120\n@2 click 420 149\n@3 click 5 5\n@4 right 120 120\n");
}

TEST_F(ClickMapsTest, AMoveIsReportedOnlyWhereTheRegionChanges) {
  run([&] {
    EXPECT_EQ(allWith({at(Kind::PointerMove, 5, 5), at(Kind::PointerMove, 6, 6),
                       at(Kind::PointerMove, 110, 110), at(Kind::PointerMove, 120, 110),
                       at(Kind::PointerMove, 210, 110), at(Kind::PointerMove, 110, 110)}),
              Results({4106, 4097, 4098, 4097}));
  });
}

TEST_F(ClickMapsTest, AStillPointerGetsItsHoverOnlyAfterARequest) {
  run([&] {
    EXPECT_EQ(allWith({at(Kind::PointerMove, 110, 110)}), Results({4097}));
    manager->AddClickRect("clm", 0, 0, 640, 480, 7);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
    manager->RequestHover("clm", 1);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4103);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
    // The pointer is where it was, also at the screen's edge.
    int32_t x = 0, y = 0;
    host.PointerPlace(x, y);
    EXPECT_EQ(x, 110);
    EXPECT_EQ(allWith({at(Kind::PointerMove, 639, 479)}), Results({}));
    manager->RequestHover("clm", 1);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4103);
    sleepMillis(10);
    host.PointerPlace(x, y);
    EXPECT_EQ(x, 639);
  });
}

TEST_F(ClickMapsTest, AMoveThatCameBetweenTwoWaitsIsSeenByTheNext) {
  run([&] {
    later({at(Kind::PointerMove, 110, 110), at(Kind::PointerMove, 210, 110)});
    sleepMillis(500);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4098);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
  });
}

TEST_F(ClickMapsTest, APressBetweenTwoPollsIsHeldForATenthOfASecondTheNewestAlone) {
  run([&] {
    later({at(Kind::ButtonDown, 110, 110), at(Kind::ButtonDown, 210, 110)});
    sleepMillis(100);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 2);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
    later({at(Kind::ButtonDown, 110, 110)});
    sleepMillis(150);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
    // As a touch comes: a move, then a press, each for a wait of its own.
    later({at(Kind::PointerMove, 310, 110), at(Kind::ButtonDown, 310, 110)});
    sleepMillis(50);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4099);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 3);
  });
}

TEST_F(ClickMapsTest, KeysComeThroughTheKeyEventWhereTheWaitTakesThem) {
  run([&] {
    EXPECT_EQ(waitWith({key(KeySpace)}), 2080);
    EXPECT_EQ(waitWith({key(KeyEscape)}), 2075);
    // Not kept for a later wait either: this one has seen it.
    EXPECT_EQ(waitWith({key(KeySpace)}, 1, 0), ClickTimeout);
    EXPECT_EQ(manager->ClickWait("clm", 1, 1), ClickTimeout);
  });
  EXPECT_EQ(record(), "@1 key Space\n@2 key Esc\n");
}

TEST_F(ClickMapsTest, APressOverAnotherViewIsAKeyAndNeverBoth) {
  run([&] {
    manager->CreateView("above", nullptr, 100, 100, 200, 200, 0);
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120),
                       at(Kind::ButtonDown, 120, 120, PointerButton::Right),
                       at(Kind::ButtonDown, 420, 120)}),
              Results({2049, 2050, 4}));
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 0), Results({}));
    // A view that is hidden lets the one under it have the pointer.
    manager->ShowWindow("above", 0);
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}), Results({1}));
  });
}

TEST_F(ClickMapsTest, AMoveOntoAViewWithoutAMapPutsTheHighlightOutOnce) {
  run([&] {
    manager->CreateView("above", nullptr, 200, 100, 50, 50, 0);
    EXPECT_EQ(allWith({at(Kind::PointerMove, 120, 120), at(Kind::PointerMove, 210, 120),
                       at(Kind::PointerMove, 220, 130), at(Kind::PointerMove, 120, 120)}),
              Results({4097, 4096, 4097}));
    // So does a map that nobody waits on.
    manager->CreateClickMap("other", 50, 50, 77, 1);
    manager->ConnectObjects("other", "above");
    EXPECT_EQ(allWith({at(Kind::PointerMove, 210, 120), at(Kind::PointerMove, 120, 120)}),
              Results({4096, 4097}));
    // One that does not hear of moves hears of this one neither.
    manager->CreateClickMap("clm", 640, 480, 10, 0);
    manager->ConnectObjects("clm", "cg.view");
    EXPECT_EQ(allWith({at(Kind::PointerMove, 120, 120), at(Kind::PointerMove, 210, 120)}),
              Results({}));
  });
  EXPECT_EQ(record(),
            "@1 move 120 120\n@2 move 210 120\n@3 move 220 130\n@3 move 120 120\n"
            "@5 move 210 120\n@6 move 120 120\n");
}

TEST_F(ClickMapsTest, AMapThatDoesNotWaitHearsNothing) {
  run([&] {
    manager->CreateClickMap("other", 640, 480, 77, 1);
    manager->CreateView("above", nullptr, 100, 100, 200, 200, 0);
    manager->ConnectObjects("other", "above");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}), Results({2049}));
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "other"), Results({77}));
    // On one view the map that waits counts, whichever lies on top.
    manager->ConnectObjects("other", "cg.view");
    manager->ShowWindow("above", 0);
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}), Results({1}));
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "other"), Results({77}));
  });
}

TEST_F(ClickMapsTest, TheShapeOfAWindowDecidesWhereItIsPointedAt) {
  run([&] {
    manager->CreateView("round", nullptr, 100, 100, 100, 100, 0);
    QVVSurface shape;
    manager->CreateObject("shape", TypeSurface, {100, 100});
    auto* surface = static_cast<QVVSurface*>(manager->FindNative("shape", TypeSurface));
    const Rectangle solid{50, 50, 100, 100};
    surface->fill(1, &solid);
    manager->SetClipShape("round", "shape", 0);
    manager->CreateClickMapOver("clmRound", "round", 5, 1);
    manager->ConnectObjects("clmRound", "round");
    manager->ConnectObjects("clm", "clmRound");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120), at(Kind::ButtonDown, 160, 160)}),
              Results({1, 5}));
  });
}

TEST_F(ClickMapsTest, AWaitAlsoGetsTheRegionsOfTheMapsBelowIt) {
  run([&] {
    manager->CreateView("mess.view", "cg.view", 0, 400, 640, 80, 0);
    manager->CreateClickMap("clmmess", 100, 80, 4, 1);
    manager->MoveWindow("clmmess", 20, 10);
    manager->ConnectObjects("clmmess", "mess.view");
    // Not yet in the stack: the pointer lies on no map that waits.
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 50, 450)}), Results({2049}));
    manager->ConnectObjects("clm", "clmmess");
    EXPECT_EQ(
        allWith({at(Kind::ButtonDown, 50, 450), at(Kind::ButtonDown, 600, 450),
                 at(Kind::ButtonDown, 600, 450, PointerButton::Right), at(Kind::ButtonDown, 5, 5)}),
        Results({4, 0, ClickCancel, 10}));
    EXPECT_EQ(allWith({at(Kind::PointerMove, 50, 450), at(Kind::PointerMove, 60, 455),
                       at(Kind::PointerMove, 5, 5), at(Kind::PointerMove, 50, 450)}),
              Results({4100, 4106, 4100}));
    manager->DisconnectObjects("clm", "clmmess");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 50, 450)}), Results({2049}));
  });
}

TEST_F(ClickMapsTest, AMapWhoseWindowHasGoneIsUnderNoPointer) {
  run([&] {
    manager->CreateView("brief", nullptr, 100, 100, 200, 200, 0);
    manager->CreateClickMapOver("clmBrief", "brief", 5, 1);
    manager->ConnectObjects("clmBrief", "brief");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "clmBrief"), Results({5}));
    manager->DestroyObject("brief");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "clmBrief"), Results({2049}));
    // The name's next window is another one.
    manager->CreateView("brief", nullptr, 100, 100, 200, 200, 0);
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "clmBrief"), Results({2049}));
    manager->ConnectObjects("clmBrief", "brief");
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 120, 120)}, 1, "clmBrief"), Results({5}));
  });
}

// --- Input that the game makes ---

TEST_F(ClickMapsTest, APointerMovedByTheGameGoesTheWayOfTheDevices) {
  run([&] {
    host.setPointer(210, 110);
    host.pressPointer();
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4098);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 2);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), ClickTimeout);
    int x = 0, y = 0;
    display.pointer(x, y);
    EXPECT_EQ(x, 210) << "the system's pointer follows";
    EXPECT_EQ(y, 110);
    host.movePointerBy(100, 0);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4099);
    host.setPointer(-50, 9999);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4106);
    display.pointer(x, y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 479);
    host.pressKey(KeySpace);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 2080);
  });
  EXPECT_EQ(record(), "") << "the game will make it again";
}

TEST_F(ClickMapsTest, TheRecordTellsWhereThePointerRestsBeforeTheGameMovesIt) {
  run([&] {
    EXPECT_EQ(allWith({at(Kind::PointerMove, 110, 110), at(Kind::PointerMove, 120, 120)}),
              Results({4097}));
    manager->RequestHover("clm", 1);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 4097);
  });
  EXPECT_EQ(record(), "@1 move 110 110\n@2 move 120 120\n");
}

// --- Animations ---

TEST_F(ClickMapsTest, AnAnimationsEndPressesSpaceInTheWindow) {
  run([&] {
    host.advance(32);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 2080);
  });
}

TEST_F(ClickMapsTest, AViewsMapsDrawWhatTheyShowOverNewPixels) {
  struct ShowingMap : QVClickMap {
    void repaint() override {
      const Rectangle mark{0, 0, 4, 4};
      view()->surface8()->fill(252, &mark);
      view()->flush(&mark, 0);
      ++repaints;
    }
    int repaints = 0;
  };
  run([&] {
    ShowingMap map;
    map.create(640, 480, 0, 0, &host);
    View* const view = host.windows.find("cg.view");
    map.attach(*view, 0, 0, 0);
    QVVSurface strip;
    strip.create(16, 8);
    strip.saveBmpByName("C:\\strip.bmp");
    manager->CreateObject("cells", TypeAnimationSurface, {"strip.bmp", 2, KeyNone});
    manager->CreateObject("steps", TypeAnimationSequence, {"AB", 0});
    const Rectangle area{0, 0, 8, 8};
    manager->CreateObject("area", TypeAnimationArea, {&area});
    manager->RelateAnimation("area", "cells", "steps", 1, 0, 0, 1);
    manager->ConnectObjects("area", "cg.view");
    manager->ShowArea("area", 0);
    sleepMillis(300);
    manager->HideArea("area", 0);
    EXPECT_GT(map.repaints, 2);
    EXPECT_EQ(display.frame()[0], 0x0000FFu);
    EXPECT_NE(display.frame()[6], 0x0000FFu);
    map.detach();
    const int before = map.repaints;
    view->repaintClickMaps();
    EXPECT_EQ(map.repaints, before);
  });
}

// --- Frames that are dragged by their picture ---

class LooseFrames : public ClickMapsTest {
 protected:
  void makePendant() {
    const Rectangle rectangle{300, 200, 362, 322};
    manager->CreateObject("pendant", TypeFrameless, {nullptr, &rectangle});
    manager->CreateClickMapOver("clmPendant", "pendantClient", 5, 1);
    manager->ConnectObjects("clmPendant", "pendant");
    manager->ConnectObjects("clm", "clmPendant");
    manager->FillObject("pendant", 249);
  }
};

TEST_F(LooseFrames, FollowThePointerThatPressesThem) {
  run([&] {
    makePendant();
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 320, 220), at(Kind::PointerMove, 330, 240),
                       at(Kind::PointerMove, 420, 320), at(Kind::ButtonUp, 420, 320)}),
              Results({}))
        << "the game hears nothing of a drag";
    EXPECT_EQ(place("pendant"), Rectangle::at(400, 300, 62, 122));
    EXPECT_EQ(allWith({at(Kind::PointerMove, 10, 10)}), Results({4106}));
    EXPECT_EQ(place("pendant"), Rectangle::at(400, 300, 62, 122));
  });
  EXPECT_EQ(record(), "@1 press 320 220\nnow move 420 320\nnow release 420 320\n@2 move 10 10\n");
}

TEST_F(LooseFrames, GiveAPressThatDoesNotMoveThemToTheMapWhenItIsLetGo) {
  run([&] {
    makePendant();
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 320, 220)}), Results({})) << "still pressed";
    EXPECT_EQ(allWith({at(Kind::PointerMove, 322, 221), at(Kind::ButtonUp, 322, 221)}),
              Results({5}));
    EXPECT_EQ(place("pendant"), Rectangle::at(300, 200, 62, 122));
    // The right button means no drag.
    EXPECT_EQ(allWith({at(Kind::ButtonDown, 320, 220, PointerButton::Right)}),
              Results({ClickCancel}));
  });
}

TEST_F(LooseFrames, KeepThePressForTheNextWaitWhereNoneStands) {
  run([&] {
    makePendant();
    later({at(Kind::ButtonDown, 320, 220), at(Kind::ButtonUp, 320, 220)});
    sleepMillis(60);
    EXPECT_EQ(manager->ClickWait("clm", 3, 1), 5);
  });
}

TEST_F(LooseFrames, AreDraggedAndClickedByLinesOfAScript) {
  const std::string script =
      "click 320 220\n"
      "press 320 220\nmove 420 320\nrelease 420 320\n"
      "click 410 310\n"
      "now press 410 310\nnow move 310 210\nnow release 310 210\n"
      "key Return\n";
  ParsedScript parsed = parsePlayScript(script);
  ASSERT_EQ(parsed.complaint, "");
  loop.play(std::move(parsed.lines), "drag.play");
  run([&] {
    makePendant();
    Results results;
    for (int32_t result = 0; result != 2061;)
      results.push_back(result = manager->ClickWait("clm", 0, 1));
    EXPECT_EQ(results, Results({4101, 5, 5, 2061}));
    EXPECT_EQ(place("pendant"), Rectangle::at(300, 200, 62, 122));
  });
  EXPECT_EQ(loop.failure(), "");
}

// --- The help window ---

class Help : public ClickMapsTest {
 protected:
  void makeHelp() {
    const Rectangle rectangle{4, 4, 320, 376};
    manager->CreateObject("HelpWindow", TypeFrame, {nullptr, &rectangle, "Help", 0, 1});
  }
  bool helpShown() { return host.windows.find("HelpWindow")->shown(); }
};

TEST_F(Help, IsShownByF1InAnyWaitAndHiddenByF1EscOrAClick) {
  run([&] {
    makeHelp();
    EXPECT_FALSE(helpShown());
    const DisplayEvent ends[] = {key(KeyF1), key(KeyEscape), at(Kind::ButtonDown, 420, 120)};
    for (const DisplayEvent& end : ends) {
      // The key that shows it also reaches the map, where it stops what runs on by itself.
      EXPECT_EQ(allWith({key(KeyF1)}), Results({2160}));
      EXPECT_TRUE(helpShown());
      EXPECT_EQ(allWith({end}), Results({}));
      EXPECT_FALSE(helpShown());
    }
    EXPECT_EQ(allWith({key(KeyF1), key(KeyF1)}, 0), Results({}));
    EXPECT_FALSE(helpShown());

    later({key(KeyF1)});
    EXPECT_EQ(host.WaitForInput(300, 0, 1), WaitInputTimeout) << "a prompt for any key stays";
    EXPECT_TRUE(helpShown());
    later({key(KeyEscape), key(KeySpace)});
    EXPECT_EQ(host.WaitForInput(300, 0, 1), 2080);
    EXPECT_FALSE(helpShown());
    device.join();
  });
}

TEST_F(Help, IsNoBusinessOfAGameWithoutIt) {
  run([&] { EXPECT_EQ(allWith({key(KeyF1), key(KeyEscape)}), Results({2160, 2075})); });
}

// --- The end ---

TEST_F(ClickMapsTest, ClosingTheWindowEndsEveryWaitOnAMap) {
  run([&] {
    later({at(Kind::Close, 0, 0)});
    QVClickMap* const map = findClickMap(*manager, "clm");
    EXPECT_THROW(manager->ClickWait("clm", 0, 1), ExitScenarioException);
    EXPECT_EQ(map->view(), nullptr);
    manager->ConnectObjects("clm", "cg.view");
    EXPECT_THROW(manager->ClickTickWait("clm", 100, 0), ExitScenarioException);
    device.join();
    throw ExitScenarioException();
  });
  EXPECT_TRUE(aborted);
}

// --- Play scripts and records ---

TEST_F(ClickMapsTest, AScriptsClickIsAMoveThatTheGameTakesAndThenAPress) {
  ParsedScript parsed = parsePlayScript(
      "click 120 120\nmove 220 120\nclick 220 130\nright\nkey Space\nclick 5 5\nquit");
  loop.play(std::move(parsed.lines), "map.play");
  Results results;
  run([&] {
    manager->SetClickTick("clm", 20);
    while (true) {
      const int32_t result = manager->ClickTickWait("clm", 0, 1);
      if (result != ClickTimeout) results.push_back(result);
    }
  });
  EXPECT_EQ(loop.failure(), "");
  EXPECT_EQ(results, Results({4097, 1, 4098, 2, ClickCancel, 2080, 4106, 10}));
}

TEST_F(ClickMapsTest, ARecordOfAMapReplaysAsItWas) {
  Results first, again;
  const auto scene = [this](Results& results) {
    return [this, &results] {
      for (int i = 0; i < 300; ++i) {
        const int32_t result = manager->ClickTickWait("clm", 20, 1);
        if (result != ClickTimeout) results.push_back(result + 100'000 * i);
        // A body that takes longer now and then, and a map that changes under the pointer.
        if (i % 7 == 0) sleepMillis(30);
        if (i % 50 == 49) {
          manager->AddClickRect("clm", 400, 300, 100, 100, i);
          manager->RequestHover("clm", 1);
        }
      }
    };
  };
  later({at(Kind::PointerMove, 120, 120), at(Kind::ButtonDown, 130, 130), key(KeySpace),
         at(Kind::PointerMove, 220, 120), at(Kind::PointerMove, 230, 125),
         at(Kind::ButtonDown, 230, 125, PointerButton::Right), at(Kind::PointerMove, 420, 320),
         at(Kind::PointerMove, 430, 330), key(KeyReturn), at(Kind::ButtonDown, 450, 350)},
        33);
  run(scene(first));
  device.join();
  const std::string recorded = record();
  EXPECT_GE(first.size(), 10u);

  GameHost secondHost(EmptyModule);
  HeadlessDisplay secondDisplay;
  BoxDesk secondBoxes(text);
  Recorder secondRecorder;
  ASSERT_TRUE(secondRecorder.open(platform.player() / "again.play"));
  UiLoop::Settings person;
  person.canShow = true;
  UiLoop secondLoop(secondHost, secondDisplay, secondBoxes, secondRecorder, person);
  ParsedScript parsed = parsePlayScript(recorded);
  ASSERT_EQ(parsed.complaint, "");
  secondLoop.play(std::move(parsed.lines), "record.play");
  Thread scenario;
  scenario.start("scenario", [&] {
    secondLoop.setScenarioThread(Thread::currentId());
    {
      QVScenario made;
      manager = &made;
      made.Start(&secondHost, "Test", 100, 10, 10);
      openMap(made);
      scene(again)();
    }
    secondHost.queue.post({MessageScenarioEnded, 0, 0});
  });
  secondLoop.run();
  scenario.join();
  EXPECT_EQ(secondLoop.failure(), "") << recorded;
  EXPECT_EQ(again, first) << recorded;
  EXPECT_EQ(platform.readFile(platform.player() / "again.play"), recorded);
}

}  // namespace
}  // namespace qv
