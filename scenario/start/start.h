#pragma once

/// Beginning and end of a run: what a module's entry points do. The manager is made when the
/// module is loaded and waits here, unused, until sc_start makes it the one of the scenes.

#include "scenario/scene_function.h"

namespace qv {

class QVScenario;
class ScenarioHost;
struct StoryTables;

/// What a story's table tells the start.
struct StoryStart {
  const char* applicationName;  ///< Shift-JIS; the stem of the system file
  SceneFunction::Address firstScene;
  const StoryTables* tables = nullptr;  ///< what its commands read; null: none
  bool bare = false;  ///< only the screen stands, with no frame and none of its pictures
};

/// One at a time; the caller gives it back to destroyManager. Host's thread.
QVScenario* createManager();
void destroyManager(QVScenario* manager);

/// sc_start: the registers, the system file, the standing objects; gives the first scene, or
/// nothing where no manager has been made. Scenario thread.
SceneFunction startStory(ScenarioHost* host, const StoryStart& story);
/// END: the ordinary end. Gives nothing.
SceneFunction endStory();
/// EXCEPTION_ENTRY: the end behind an abort. Gives nothing.
SceneFunction endAfterException();

}  // namespace qv
