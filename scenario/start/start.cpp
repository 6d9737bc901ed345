#include "scenario/start/start.h"

#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/resume.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char* ExternalFont = "dat\\Quvex.tte";

QVScenario* waitingManager = nullptr;

}  // namespace

QVScenario* createManager() {
  waitingManager = new QVScenario;
  return waitingManager;
}

void destroyManager(QVScenario* manager) {
  if (theScenario == manager) setTheScenario(nullptr);
  if (waitingManager == manager) waitingManager = nullptr;
  delete manager;
}

SceneFunction startStory(ScenarioHost* host, const StoryStart& story) {
  if (!waitingManager) return {};
  QVScenario& manager = *waitingManager;
  manager.SetSceneName("sc_start");
  manager.Start(host, story.applicationName, RegisterCount, StringRegisterCount,
                SystemRegisterCount);
  setTheScenario(&manager);
  // Who waits for a voice that does not end has seen enough of it.
  manager.wave().setShowWaitTimeout(false);
  ResumeScene = {};
  Reg(ResumePendingRegister) = 0;
  manager.SetExternalFont(ExternalFont);
  Reg(MessageHiddenRegister) = 1;
  Reg(BgmCurrentRegister) = 0;
  Reg(BgmLastRegister) = 0;
  return story.firstScene;
}

SceneFunction endStory() {
  if (!theScenario) return {};
  theScenario->SetSceneName("END");
  theScenario->SetExternalFont(nullptr);
  theScenario->EmptySecondList();
  theScenario->Release();
  return {};
}

SceneFunction endAfterException() {
  if (!theScenario) return {};
  theScenario->SetExternalFont(nullptr);
  theScenario->Release();
  return {};
}

}  // namespace qv
