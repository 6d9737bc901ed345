// The pendant's window on the screen, by the registers that rule it.

#include "message/pendant.h"

#include <gtest/gtest.h>

#include "message/commands.h"
#include "tests/unit/host/story_ground.h"

namespace qv::testing {
namespace {

constexpr int32_t Width = 62, Height = 122;
constexpr uint8_t RedIndex = 249;
constexpr uint32_t Red = 0xFF0000;

class PendantTest : public ::testing::Test {
 protected:
  PendantTest() { MessageWindowHiddenFlag = 0; }
  void run(const std::function<void(QVScenario&)>& scene) {
    ground.run([&](QVScenario& manager) {
      const Rectangle place = Rectangle::at(0, 0, Width, Height);
      manager.CreateObject(PendantWindow, TypeFrameless, {nullptr, &place, "", 0, 1});
      window = manager.FindWindow(PendantWindow);
      manager.FindView(PendantWindow)->view()->surface8()->fill(RedIndex);
      SysReg(CutWindowX) = 16;
      SysReg(CutWindowY) = 16;
      scene(manager);
    });
  }
  Rectangle place() const {
    Rectangle on;
    window->windowRect(on);
    return on;
  }
  /// Hides it without a word to the registers but its own.
  void putAway() {
    window->show(false);
    Reg(PendantShownRegister) = 0;
  }
  StoryGround ground{makeSimulatedKernel()};
  WindowObject* window = nullptr;
};

TEST_F(PendantTest, IsShownWhereItsRegistersSay) {
  run([this](QVScenario&) {
    SysReg(CutWindowX) = 100;
    SysReg(CutWindowY) = 33;
    ShowPendant();
    EXPECT_TRUE(window->shown());
    EXPECT_TRUE((place() == Rectangle::at(100, 33, Width, Height)));
    EXPECT_EQ(Reg(PendantShownRegister), 1);
    EXPECT_EQ(ground.at(100, 33), Red) << "repainted at once";
    EXPECT_NE(ground.at(99, 33), Red);
  });
}

TEST_F(PendantTest, IsPulledBackOntoTheScreen) {
  run([this](QVScenario&) {
    struct Row {
      int32_t x, y, shownX, shownY;
    };
    for (const Row& row : {Row{-5, -900, 0, 0}, Row{700, 500, 640 - Width, 480 - Height},
                           Row{INT32_MAX, INT32_MIN, 640 - Width, 0},
                           Row{640 - Width, 480 - Height, 640 - Width, 480 - Height}}) {
      SysReg(CutWindowX) = row.x;
      SysReg(CutWindowY) = row.y;
      ShowPendant();
      EXPECT_TRUE((place() == Rectangle::at(row.shownX, row.shownY, Width, Height)));
      putAway();
    }
  });
}

TEST_F(PendantTest, IsShownInTheWaitsThatKnowItUnlessTheMessageWindowIsHidden) {
  run([this](QVScenario&) {
    struct Row {
      int32_t waitKind, hidden, shown;
    };
    for (const Row& row : {Row{0, 0, 1}, Row{0, 1, 1}, Row{1, 0, 1}, Row{2, 0, 1}, Row{3, 0, 1},
                           Row{4, 0, 1}, Row{1, 1, 0}, Row{4, 1, 0}, Row{5, 0, 0}, Row{-1, 0, 0}}) {
      Reg(WaitKindRegister) = row.waitKind;
      MessageWindowHiddenFlag = row.hidden;
      ShowPendant();
      EXPECT_EQ(window->shown(), row.shown != 0) << row.waitKind << " " << row.hidden;
      EXPECT_EQ(Reg(PendantShownRegister), row.shown);
      putAway();
    }
  });
}

TEST_F(PendantTest, StaysAwayWhileTheConfigurationRunsAndComesWithTheNextCall) {
  run([this](QVScenario&) {
    Reg(PendantSuppressRegister) = 1;
    ShowPendant();
    EXPECT_FALSE(window->shown());
    EXPECT_EQ(Reg(PendantShownRegister), 0);
    Reg(PendantSuppressRegister) = 0;
    ShowPendant();
    EXPECT_TRUE(window->shown());
    putAway();
    Reg(PendantSuppressRegister) = 2;
    ShowPendant();
    EXPECT_TRUE(window->shown()) << "the history alone does not suppress it";
  });
}

TEST_F(PendantTest, IsNotMovedWhileItIsShown) {
  run([this](QVScenario&) {
    ShowPendant();
    window->MoveClamped(200, 200, 0, 0, 1, 0);
    for (const int32_t kind : {0, 4}) {
      Reg(WaitKindRegister) = kind;
      ShowPendant();
      EXPECT_EQ(place().left, 200);
    }
  });
}

TEST_F(PendantTest, KeepsThePlaceWhereItWasHiddenInTheSystemFile) {
  run([this](QVScenario& manager) {
    ShowPendant();
    window->MoveClamped(321, 123, 0, 0, 1, 0);
    HidePendant();
    EXPECT_FALSE(window->shown());
    EXPECT_EQ(Reg(PendantShownRegister), 0);
    EXPECT_EQ(SysReg(CutWindowX), 321);
    EXPECT_EQ(SysReg(CutWindowY), 123);
    QVScenario again;
    again.Open("Test", 1, 1, SystemRegisterCount);
    EXPECT_EQ(again.SysReg(CutWindowX), 321);
    EXPECT_EQ(again.SysReg(CutWindowY), 123);
    manager.MoveWindow(PendantWindow, 0, 0);
    ShowPendant();
    EXPECT_TRUE((place() == Rectangle::at(321, 123, Width, Height)));
  });
}

TEST_F(PendantTest, HiddenOffTheScreenItKeepsAPlaceInside) {
  run([this](QVScenario&) {
    ShowPendant();
    window->MoveClamped(-30, 470, 0, 0, 1, 0);
    HidePendant();
    EXPECT_EQ(SysReg(CutWindowX), 0);
    EXPECT_EQ(SysReg(CutWindowY), 480 - Height);
  });
}

TEST_F(PendantTest, HidingWhatIsNotShownWritesNothing) {
  run([this](QVScenario&) {
    window->MoveClamped(300, 300, 0, 0, 1, 0);
    window->show(true);
    HidePendant();
    EXPECT_TRUE(window->shown());
    EXPECT_EQ(SysReg(CutWindowX), 16);
  });
}

TEST_F(PendantTest, ARestoreBringsItBackByItsRules) {
  run([this](QVScenario&) {
    ShowSystemWindow();
    EXPECT_TRUE(window->shown());
    putAway();
    Reg(PendantSuppressRegister) = 1;
    ShowSystemWindow();
    EXPECT_FALSE(window->shown());
  });
}

TEST_F(PendantTest, WithoutItsWindowOrAManagerNothingHappens) {
  ground.run([](QVScenario&) {
    ShowPendant();
    EXPECT_EQ(Reg(PendantShownRegister), 0);
    Reg(PendantShownRegister) = 1;
    HidePendant();
    EXPECT_EQ(Reg(PendantShownRegister), 1);
  });
  ShowPendant();
  HidePendant();
}

}  // namespace
}  // namespace qv::testing
