// Compiled into every module: its entry points.

#include "scenes/module_entry.h"

extern "C" {

qv::SceneFunction sc_start(qv::ScenarioHost* host) {
  return qv::startStory(host, qvStoryStart);
}
qv::SceneFunction END() {
  return qv::endStory();
}
qv::SceneFunction EXCEPTION_ENTRY() {
  return qv::endAfterException();
}

}  // extern "C"
