// Named objects that are connected as the start-up scene connects them, on real windows.

#include "scenario/relations.h"

#include <gtest/gtest.h>

#include "message/print_area.h"
#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

constexpr uint8_t BlueIndex = 252;
constexpr uint32_t Blue = 0x0000FF, White = 0xFFFFFF;

class ConnectedObjects : public ::testing::Test {
 protected:
  using Kind = StoryGround::Kind;
  void run(const std::function<void(QVScenario&)>& scene) {
    ground.run([&](QVScenario& manager) {
      manager.FillObject("cg.view", BlueIndex);
      scene(manager);
    });
  }
  /// A named area of 100 by 40 at 10, 10 of what it is connected with.
  static QVPrintArea& makeArea(QVScenario& manager, const char* name) {
    manager.CreateObject(name, TypePrintArea);
    auto& area = *static_cast<QVPrintArea*>(manager.FindNative(name, TypePrintArea));
    area.setRect(10, 10, 100, 40);
    area.home();
    return area;
  }
  /// What the area clears is white on the screen.
  void expectClears(QVPrintArea& area, int x, int y) {
    area.clear(true, true);
    StoryGround::settle();
    EXPECT_EQ(ground.at(x + 10, y + 10), White);
    EXPECT_EQ(ground.at(x + 109, y + 49), White);
    EXPECT_NE(ground.at(x + 110, y + 49), White);
    EXPECT_NE(ground.at(x + 109, y + 50), White);
  }

  StoryGround ground{makeSimulatedKernel()};
  Services withText = [this] {
    Services all = services();
    all.text = &ground.text;
    return all;
  }();
  ServicesScope scope{withText};
};

TEST_F(ConnectedObjects, AreasPrintIntoViewsAndIntoTheClientsOfFrames) {
  run([this](QVScenario& manager) {
    QVPrintArea& area = makeArea(manager, "message.Area");
    manager.ConnectObjects("message.Area", "cg.view");
    expectClears(area, 0, 0);

    manager.CreateView("mess.view", "cg.view", 200, 100, 200, 100, 0);
    manager.FillObject("mess.view", BlueIndex);
    manager.ConnectObjects("mess.view", "message.Area");
    expectClears(area, 200, 100);

    const Rectangle place = Rectangle::at(300, 250, 220, 150);
    manager.CreateObject("HelpWindow", TypeFrame, {nullptr, &place, "Help", 0, 0});
    manager.FillObject("HelpWindow", BlueIndex);
    manager.ConnectObjects("message.Area", "HelpWindow");
    Rectangle client;
    ASSERT_TRUE(manager.FindWindow("HelpWindowClient")->windowRect(client));
    expectClears(area, client.left, client.top);
    EXPECT_EQ(ground.at(20, 20), White) << "what lies on the other views stays";
  });
}

TEST_F(ConnectedObjects, AnAreaPrintsIntoASurfaceThatIsDrawnByASceneLater) {
  run([this](QVScenario& manager) {
    manager.CreateObject("mess.surf", TypeSurface, {200, 100});
    manager.FillObject("mess.surf", BlueIndex);
    QVPrintArea& area = makeArea(manager, "name.Area");
    manager.ConnectObjects("mess.surf", "name.Area");
    area.clear(true, true);
    StoryGround::settle();
    EXPECT_EQ(ground.at(20, 20), Blue);
    manager.DrawTo("cg.view", "mess.surf", 0, 0, 200, 100, 0, 0);
    EXPECT_EQ(ground.at(20, 20), White);
    EXPECT_EQ(ground.at(150, 20), Blue);
  });
}

TEST_F(ConnectedObjects, AnAreaWaitsAtItsPageEndThroughItsHitretAndClearsItsLink) {
  run([this](QVScenario& manager) {
    QVPrintArea& name = makeArea(manager, "name.Area");
    name.setRect(10, 200, 100, 40);
    QVPrintArea& area = makeArea(manager, "message.Area");
    manager.CreateObject("ret", TypeHitret, {"cg.view"});
    manager.ConnectObjects("name.Area", "cg.view");
    manager.ConnectObjects("message.Area", "cg.view");
    manager.ConnectObjects("message.Area", "name.Area");
    manager.ConnectObjects("message.Area", "ret");
    bool waited = false;
    Thread player;
    player.start("player", [&] {
      for (int tries = 0; tries < 2000 && !waited; ++tries, sleepMillis(2))
        waited = GameHost::Gate(ground.host).sceneWaits();
      StoryGround::settle();
      EXPECT_EQ(ground.at(20, 210), Blue) << "the link stands while the page is read";
      ground.key(KeySpace);
    });
    area.printText("abc", nullptr, nullptr, nullptr, true);
    player.join();
    StoryGround::settle();
    EXPECT_TRUE(waited);
    EXPECT_EQ(ground.at(20, 20), White);
    EXPECT_EQ(ground.at(20, 210), White) << "the link is cleared with the page";
  });
}

TEST_F(ConnectedObjects, AnAreaForgetsAViewThatIsDestroyed) {
  run([this](QVScenario& manager) {
    QVPrintArea& area = makeArea(manager, "message.Area");
    manager.CreateView("short", nullptr, 0, 0, 200, 100, 0);
    manager.ConnectObjects("message.Area", "short");
    manager.DestroyObject("short");
    area.printText("abc", nullptr, nullptr, nullptr, false);
    area.clear(true, true);
    StoryGround::settle();
    EXPECT_EQ(ground.at(20, 20), Blue);
  });
}

}  // namespace
}  // namespace qv::testing
