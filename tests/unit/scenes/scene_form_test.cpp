// Scenes written by hand in the form, run as the runner runs them.

#include "scenes/scene_form.h"

#include <deque>
#include <stdexcept>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "input/click_map.h"
#include "scenario/resume.h"
#include "scenario/scenario.h"
#include "tests/unit/scenario/view_host.h"

namespace {
/// What the scenes below did, and what their waits are given.
std::vector<std::string> done;
int32_t clickResult = 0;
}  // namespace

QV_SCENE(sc_menu) {
  return {};
}
QV_SCENE(END) {
  return {};
}
QV_SCENE(sc000001) {
  return {};
}
QV_SCENE(sc000002) {
  return {};
}
QV_SCENE(sc000003) {
  return {};
}

QV_SCENE(sc000000) {
  using namespace qv;
  SetSceneName("sc000000");
  const StandingHandles standing;
  SceneEnter();
  SetChapter("050000");
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1:
        done.push_back("one");
        break;
      case 2:
        done.push_back("two");
        if (const Leaving leaving = afterClick(clickResult)) return leaving.next;
        break;
      case 4:
        done.push_back("four");
        break;  // there is no third step
      case 5:
        done.push_back("five");
        return sc000001;
      default:
        passOver(5);
    }
  }
}

namespace qv {
namespace {

using Done = std::vector<std::string>;

class SceneForm : public ::testing::Test {
 protected:
  SceneForm() {
    done.clear();
    clickResult = 0;
    manager.Start(&host, "Test", 2500, 256, 2048);
    setTheScenario(&manager);
    ResumeScene = {};
  }
  ~SceneForm() override { setTheScenario(nullptr); }
  testing::TestPlatform platform;
  testing::ViewHost host;
  QVScenario manager;
};

TEST_F(SceneForm, ASceneEnteredNormallyStartsAtStepOneWhateverTheStepWas) {
  Reg(StepRegister) = 4;
  EXPECT_EQ(sc000000(), SceneFunction(sc000001));
  EXPECT_EQ(done, Done({"one", "two", "four", "five"}));
  EXPECT_EQ(manager.sceneName().view(), "sc000000");
  EXPECT_EQ(Reg(ChapterRegister), 5);
}

TEST_F(SceneForm, LeavingDoesNotTouchTheStep) {
  sc000000();
  EXPECT_EQ(Reg(StepRegister), 5);
}

TEST_F(SceneForm, ALoadEntersAnyStepAndRunsItFromItsStart) {
  for (const auto& [step, expected] :
       {std::pair(1, Done({"one", "two", "four", "five"})),
        std::pair(2, Done({"two", "four", "five"})), std::pair(3, Done({"four", "five"})),
        std::pair(4, Done({"four", "five"})), std::pair(5, Done({"five"}))}) {
    done.clear();
    Reg(ResumePendingRegister) = 1;
    Reg(StepRegister) = step;
    sc000000();
    EXPECT_EQ(done, expected) << "step " << step;
  }
}

TEST_F(SceneForm, AStepThatADamagedSaveHoldsIsPassedOver) {
  for (const int32_t step : {0, -1, 6, 1000, 2147483647, -2147483647 - 1}) {
    done.clear();
    Reg(ResumePendingRegister) = 1;
    Reg(StepRegister) = step;
    EXPECT_EQ(sc000000(), SceneFunction(sc000001)) << step;
    EXPECT_EQ(done, Done({"one", "two", "four", "five"})) << step;
  }
}

TEST_F(SceneForm, ARestoreClearsWhatBelongsToTheOldMoment) {
  for (const int32_t number : {6, 90, 92, 72, 71, 93, 91})
    Reg(number) = 9;
  for (const int32_t number : {5, 7, 70, 8})
    Reg(number) = 3;
  SysReg(41) = SysReg(36) = 1;
  SceneEnter();
  for (const int32_t number : {6, 90, 92, 72, 71, 93, 91})
    EXPECT_EQ(Reg(number), 0) << number;
  for (const int32_t number : {5, 7, 70, 8})
    EXPECT_EQ(Reg(number), 3) << number;
  EXPECT_EQ(SysReg(41), 0);
  EXPECT_EQ(SysReg(36), 0);
  EXPECT_EQ(platform.readFile(platform.player() / "Test.system.dat").size(), 8206u)
      << "the system registers are written through";
}

TEST_F(SceneForm, TheOrdinaryEntryTouchesTheStepAlone) {
  for (const int32_t number : {90, 92, 72, 71, 93, 91})
    Reg(number) = 9;
  SysReg(36) = 1;
  SceneEnter();
  for (const int32_t number : {90, 92, 72, 71, 93, 91})
    EXPECT_EQ(Reg(number), 9) << number;
  EXPECT_EQ(SysReg(36), 1);
  EXPECT_FALSE(std::filesystem::exists(platform.player() / "Test.system.dat"));
}

TEST_F(SceneForm, AfterAClickTheTitleTheEndAndALoadLeaveInThisOrder) {
  clickResult = -10;
  EXPECT_EQ(sc000000(), SceneFunction(sc_menu));
  clickResult = 255;
  EXPECT_EQ(sc000000(), SceneFunction(END));
  EXPECT_EQ(done, Done({"one", "two", "one", "two"}));

  ResumeScene = sc000003;
  Reg(ResumePendingRegister) = 1;
  EXPECT_EQ(afterClick(-10).next, SceneFunction(sc_menu)) << "the title comes before a load";
  EXPECT_EQ(Reg(SavedStateRegister), 0);
  const Leaving leaving = afterClick(10);
  EXPECT_TRUE(leaving);
  EXPECT_EQ(leaving.next, SceneFunction(sc000003));
  EXPECT_EQ(Reg(SavedStateRegister), 1);
}

TEST_F(SceneForm, AnyOtherResultGoesOn) {
  for (const int32_t result : {0, 1, 10, 13, 32, -11, -1, 254, 256})
    EXPECT_FALSE(afterClick(result));
}

TEST_F(SceneForm, AfterASelectionALoadWinsOverEverything) {
  ResumeScene = sc000003;
  Reg(ResumePendingRegister) = 1;
  for (const int32_t result : {255, 1, 2, -10, 0}) {
    Reg(SavedStateRegister) = 0;
    EXPECT_EQ(afterSelection(result, sc000001, sc000002), SceneFunction(sc000003)) << result;
    EXPECT_EQ(Reg(SavedStateRegister), 1);
  }
}

TEST_F(SceneForm, ASelectionLeadsToItsBranchesAndElseToTheTitle) {
  const auto after = [](int32_t result) {
    return afterSelection(result, sc000001, sc000002, sc000003);
  };
  EXPECT_EQ(after(255), SceneFunction(END));
  EXPECT_EQ(after(1), SceneFunction(sc000001));
  EXPECT_EQ(after(2), SceneFunction(sc000002));
  EXPECT_EQ(after(3), SceneFunction(sc000003));
  for (const int32_t result : {-10, 0, 4, -13, 10})
    EXPECT_EQ(after(result), SceneFunction(sc_menu));
  EXPECT_EQ(afterSelection(3, sc000001, sc000002), SceneFunction(sc_menu)) << "of two choices";
}

TEST_F(SceneForm, ASaveBracketLeavesTheRunningGameInItsStep) {
  Reg(StepRegister) = 6;
  savePoint();
  EXPECT_EQ(Reg(StepRegister), 6);
  offerSave();
  EXPECT_EQ(Reg(StepRegister), 6);
}

TEST_F(SceneForm, TheChapterIsTheNumberOfTwoDigits) {
  for (const auto& [text, chapter] :
       {std::pair("050102n", 5), std::pair("120000", 12), std::pair("00", 0), std::pair("7", 7),
        std::pair("x1", 0), std::pair("", 0)}) {
    Reg(ChapterRegister) = 99;
    SetChapter(text);
    EXPECT_EQ(Reg(ChapterRegister), chapter) << text;
  }
}

TEST_F(SceneForm, EverythingIsInertWithoutAManager) {
  setTheScenario(nullptr);
  EXPECT_EQ(WaitClick(9999, 0), 0);
  EXPECT_EQ(SelectMain(2), 0);
  SpeakLine("x", nullptr);
  PrintMessage("x");
  SetSceneName("x");
  SetSysReg(36, 1, 1);
  EXPECT_EQ(Random(0xFFFFFFFF), 0u);
  setTheScenario(&manager);
  EXPECT_EQ(manager.sceneName().view(), "");
  EXPECT_EQ(SysReg(36), 0);
}

/// A wait of a scene, given these inputs one after the other.
class SceneWaits : public SceneForm {
 protected:
  SceneWaits() {
    theScenario->CreateClickMap("clmall", 640, 480, 0, 1);
    theScenario->AddClickRect("clmall", 0, 0, 640, 480, 10);
    theScenario->ConnectObjects("clmall", "cg.view");
  }
  void give(std::initializer_list<int32_t> codes) {
    inputs.assign(codes);
    host.onMapWait = [this](ClickTarget& map) {
      if (inputs.empty()) throw std::runtime_error("it waits beyond what it is given");
      const int32_t code = inputs.front();
      inputs.pop_front();
      if (code >= FirstKeyResult)
        host.deliverInput(code);
      else
        map.report(LeftButtonDown, code);
    };
  }
  std::deque<int32_t> inputs;
};

TEST_F(SceneWaits, AClickReturnAndSpaceEndALine) {
  give({10});
  EXPECT_EQ(WaitClick(9999, 0), 10);
  give({2048 + 13});
  EXPECT_EQ(WaitClick(9999, 0), 13);
  give({2048 + 32});
  EXPECT_EQ(WaitClick(9999, 0), 32);
}

TEST_F(SceneWaits, OtherKeysLeaveTheLineStanding) {
  give({2048 + 65, 3, 2048 + 38, 2048 + 13});
  EXPECT_EQ(WaitClick(9999, 0), 13);
  EXPECT_TRUE(inputs.empty());
}

TEST_F(SceneWaits, ATimedLineEndsByItselfAsAClickWould) {
  EXPECT_EQ(WaitClick(1, 0), 10);
}

TEST_F(SceneWaits, ModeOneDoesNotWait) {
  EXPECT_EQ(WaitClick(9999, 1), 0);
  EXPECT_EQ(host.waitsBegan, 0);
}

TEST_F(SceneWaits, AnAdvanceMeansThatTheStateIsNoLongerTheSavedOne) {
  Reg(SavedStateRegister) = 1;
  give({10});
  WaitClick(9999, 0);
  EXPECT_EQ(Reg(SavedStateRegister), 0);
  EXPECT_EQ(Reg(WaitKindRegister), 0);
}

TEST_F(SceneWaits, TheAbortLeavesASceneByItsException) {
  host.onMapWait = [this](ClickTarget&) { host.abortEvent.set(); };
  EXPECT_THROW(WaitClick(9999, 0), ExitScenarioException);
  EXPECT_THROW(WaitSound(5), ExitScenarioException);
}

}  // namespace
}  // namespace qv
