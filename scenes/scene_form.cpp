// Compiled into every module: it leads to the module's own sc_menu and END.

#include "scenes/scene_form.h"

#include <cstring>

#include "foundation/diagnostic.h"
#include "message/wait_codes.h"
#include "scenario/picture_names.h"
#include "scenario/resume.h"
#include "scenario/timekeeper.h"

QV_SCENE(sc_menu);
QV_SCENE(END);

namespace qv {

namespace {

constexpr int32_t LeavingSteps = 16;

SceneFunction resume() {
  Reg(SavedStateRegister) = 1;
  return ResumeScene;
}

SceneFunction fadeToTitle() {
  FadeToBlack(LeavingSteps);
  return sc_menu;
}

}  // namespace

StandingHandles::StandingHandles()
    : name("name.Area"),
      message("message.Area"),
      picture(PictureView),
      select01Title("select01.Title.Aria"),
      select01Mess("select01.Mess.Aria"),
      select02Title("select02.Title.Aria"),
      select02Mess("select02.Mess.Aria"),
      select03Title("select03.Title.Aria"),
      select03Mess("select03.Mess.Aria") {}

StandingHandles::~StandingHandles() = default;

SceneFunction leaveForTitle() {
  AskSaveBeforeLeaving();
  return fadeToTitle();
}

SceneFunction leaveGame() {
  AskSaveBeforeLeaving();
  return END;
}

Leaving afterClick(int32_t result) {
  if (result == WaitToTitle) return {true, leaveForTitle()};
  if (result == WaitToEnd) return {true, leaveGame()};
  if (Reg(ResumePendingRegister) != 0) return {true, resume()};
  return {};
}

SceneFunction afterSelection(int32_t result, SceneFunction first, SceneFunction second,
                             SceneFunction third) {
  if (Reg(ResumePendingRegister) != 0) return resume();
  if (result == WaitToEnd) return leaveGame();
  if (result == 1) return first;
  if (result == 2) return second;
  if (result == 3 && third) return third;
  return fadeToTitle();
}

SceneFunction afterPlace(int32_t result, const SceneFunction* places, size_t count) {
  if (Reg(ResumePendingRegister) != 0) return resume();
  if (result == WaitToEnd) return leaveGame();
  if (result >= 0 && static_cast<size_t>(result) < count) return places[result];
  return fadeToTitle();
}

void savePoint() {
  nextStep();
  AutoSave("SAVE");
  --Reg(StepRegister);
}

void offerSave() {
  nextStep();
  SaveOffer();
  --Reg(StepRegister);
}

void playOpeningFilm(timekeeper& clock) {
  try {
    OpeningFilm(clock);
  } catch (const AbortDemoException&) {
    // The player has seen enough of it.
  }
}

void cueFilm(timekeeper& clock, uint32_t timeMillis, uint32_t limitMillis) {
  try {
    clock.Cue(timeMillis, limitMillis);
  } catch (const AbortDemoException&) {
    // As above.
  }
}

bool sameText(const char* left, const char* right) {
  return left && right && std::strcmp(left, right) == 0;
}

}  // namespace qv
