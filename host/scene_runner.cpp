#include "host/scene_runner.h"

#include <exception>

#include "foundation/diagnostic.h"
#include "platform/text/shift_jis.h"
#include "scenario/scenario_host.h"

namespace qv {

namespace {

std::string sentence(const Diagnostic& diagnostic) {
  const auto text = [](const char* bytes) { return utf8OfShiftJis(bytes ? bytes : ""); };
  return text(diagnostic.title()) + ": " + text(diagnostic.message());
}

/// Runs one stretch of the game's code and tells how it ended; exception objects are gone when it
/// returns, so that the module may be unloaded afterwards.
template <typename Stretch>
RunResult guarded(const Stretch& stretch) {
  try {
    stretch();
    return {};
  } catch (const ExitScenarioException&) {
    return {RunResult::End::Aborted, {}};
  } catch (const Diagnostic& diagnostic) {
    diagnostic.showDefault();
    return {RunResult::End::Failed, sentence(diagnostic)};
  } catch (const std::exception& exception) {
    return {RunResult::End::Failed, exception.what()};
  }
}

}  // namespace

RunResult SceneRunner::run(SceneFunction first) {
  RunResult result = guarded([&] {
    SceneFunction scene = module_.start(&host_);
    if (first) scene = first;
    while (scene)
      scene = scene();
  });
  if (result.end == RunResult::End::Finished) return result;
  RunResult cleanUp = guarded([&] { module_.exceptionEntry(); });
  return cleanUp.end == RunResult::End::Failed ? cleanUp : result;
}

}  // namespace qv
