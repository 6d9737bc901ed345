#include "scenario/start/start.h"

#include <utility>

#include "message/frame_buttons.h"
#include "message/system_screens.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/resume.h"
#include "scenario/scenario.h"
#include "scenario/start/first_start.h"
#include "scenario/start/standing_objects.h"
#include "scenario/start/user_name_file.h"
#include "scenario/story_tables.h"
#include "screens/unbuilt_screens.h"

namespace qv {

namespace {

constexpr const char* ExternalFont = "dat\\Quvex.tte";

QVScenario* waitingManager = nullptr;

/// Each name by itself: a player may have given one alone.
void takeFirstNames() {
  const StoryTables& story = storyTables();
  for (const auto& [number, name] :
       {std::pair{HeroFamilyName, story.familyName}, {HeroGivenName, story.givenName}})
    if (theScenario->StrReg(number).length() == 0)
      theScenario->StrReg(number).create(QVString::DefaultGrain, name);
}

/// What stands outside of the manager and looks at its objects.
void leaveObjects() {
  destroyFrameButtons();
  setSystemScreens(nullptr);
}

}  // namespace

QVScenario* createManager() {
  waitingManager = new QVScenario;
  return waitingManager;
}

void destroyManager(QVScenario* manager) {
  if (theScenario == manager) {
    setTheScenario(nullptr);
    setStoryTables(nullptr);
  }
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
  setStoryTables(story.tables);
  // Who waits for a voice that does not end has seen enough of it.
  manager.wave().setShowWaitTimeout(false);
  ResumeScene = {};
  Reg(ResumePendingRegister) = 0;
  manager.SetExternalFont(ExternalFont);
  if (story.bare)
    createBareScreen();
  else
    createStandingObjects();
  UserNameFile("LOAD");
  takeFirstNames();
  Reg(MessageHiddenRegister) = 1;
  setFirstStartDefaults();
  if (!story.bare) {
    createHelpWindow();
    createMouthSequences();
  }
  setSystemScreens(&unbuiltScreens());
  Reg(BgmCurrentRegister) = 0;
  Reg(BgmLastRegister) = 0;
  return story.firstScene;
}

SceneFunction endStory() {
  if (!theScenario) return {};
  theScenario->SetSceneName("END");
  leaveObjects();
  theScenario->SetExternalFont(nullptr);
  theScenario->EmptySecondList();
  theScenario->Release();
  return {};
}

SceneFunction endAfterException() {
  if (!theScenario) return {};
  leaveObjects();
  theScenario->SetExternalFont(nullptr);
  theScenario->Release();
  return {};
}

}  // namespace qv
