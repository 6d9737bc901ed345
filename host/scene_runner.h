#pragma once

/// The trampoline: calls the current scene and takes its result until there is none. Runs on the
/// scenario thread.

#include <string>

#include "scenario/scene_function.h"

namespace qv {

class ScenarioHost;

/// How a run of scenes ended.
struct RunResult {
  enum class End {
    Finished,  ///< a scene returned nothing
    Aborted,   ///< a wait raised ExitScenarioException
    Failed,    ///< a Diagnostic or another exception ended it; it was shown
  };
  End end = End::Finished;
  std::string what;  ///< UTF-8, for Failed
};

class SceneRunner {
 public:
  SceneRunner(const GameModule& module, ScenarioHost& host) : module_(module), host_(host) {}
  /// Calls sc_start, then `first` (or what sc_start returned), and so on. An exception that leaves
  /// a scene stops the loop, and EXCEPTION_ENTRY runs once. Throws nothing.
  RunResult run(SceneFunction first = {});

 private:
  const GameModule& module_;
  ScenarioHost& host_;
};

}  // namespace qv
