#include "scenes/generator/checker.h"

#include <algorithm>
#include <functional>
#include <set>

namespace qv::scenec {

namespace {

using SeeOption = std::function<void(const Option&)>;

void eachTarget(const Story& story, const SeeOption& see) {
  const auto seeAll = [&](const std::vector<Option>& options) {
    for (const Option& option : options)
      if (!option.target.empty()) see(option);
  };
  for (const Scene& scene : story.scenes) {
    eachAct(scene, [&](const Act& act) { seeAll(act.options); });
    seeAll(scene.ways);
  }
}

/// Every scene can be left for the title.
const char* const Title = "sc_menu";

}  // namespace

void checkStory(const Story& story, Problems& problems) {
  std::map<std::string, Place> defined;
  for (const Scene& scene : story.scenes) {
    const auto [found, fresh] = defined.emplace(scene.name, scene.place);
    if (fresh) continue;
    const Place& other = found->second;
    problems.add(scene.place, "the scene \"" + scene.name + "\" is there already, in " +
                                  problems.files[static_cast<size_t>(other.file)] + " line " +
                                  std::to_string(other.line) + "; give one of them another name.");
  }
  std::vector<std::string> names{"END"};
  for (const auto& [name, unused] : defined)
    names.push_back(name);
  eachTarget(story, [&](const Option& option) {
    if (option.target == "END" || defined.count(option.target) != 0) return;
    problems.add(
        option.place,
        isEngineScene(option.target)
            ? "no scene can lead to \"" + option.target + "\"; name another one."
            : "there is no scene \"" + option.target + "\"." +
                  problems.suggestion(option.target, names, " Write it, or lead elsewhere."));
  });
  if (defined.count(Title) == 0)
    problems.add({}, std::string("the story has no scene \"") + Title +
                         "\", to which the way back to the title leads; write it.");
  if (story.firstScene != Title && defined.count(story.firstScene) == 0)
    problems.add(story.firstPlace, "there is no scene \"" + story.firstScene + "\"." +
                                       problems.suggestion(story.firstScene, names, " Write it."));
}

std::vector<std::string> missingScenes(const Story& story) {
  std::set<std::string> missing;
  eachTarget(story, [&](const Option& option) { missing.insert(option.target); });
  missing.insert(Title);
  missing.insert(story.firstScene);
  missing.erase("END");
  for (const Scene& scene : story.scenes)
    missing.erase(scene.name);
  return {missing.begin(), missing.end()};
}

}  // namespace qv::scenec
