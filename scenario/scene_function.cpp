#include "scenario/scene_function.h"

#include <algorithm>
#include <string_view>

namespace qv {

namespace {

// The ways into and out of a run are no scenes: a name in a file must not reach them, whatever a
// module's table says.
constexpr std::string_view EntryPoints[] = {"sc_start", "END", "EXCEPTION_ENTRY"};

}  // namespace

SceneFunction findScene(const GameModule& module, const char* name) {
  if (!name || !module.scenes) return {};
  const std::string_view wanted = name;
  if (std::ranges::find(EntryPoints, wanted) != std::end(EntryPoints)) return {};
  const SceneEntry* end = module.scenes + module.sceneCount;
  const SceneEntry* found = std::lower_bound(module.scenes, end, wanted,
                                             [](const SceneEntry& entry, std::string_view key) {
                                               return std::string_view(entry.name) < key;
                                             });
  if (found == end || wanted != found->name) return {};
  return found->scene;
}

}  // namespace qv
