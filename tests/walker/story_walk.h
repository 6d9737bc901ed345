#pragma once

// Walks every way of a story's tree once. A scene is played from its head when it is first reached,
// with the first choice; the registers at a choice are kept, and the scene is entered there again
// for each other choice, as a load would. Ways under conditions are tried with other registers,
// drawn from a seed. Runs on the scenario thread; `choose` on the UI thread while that one stands.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "scenario/scene_function.h"
#include "tools/story/made_words.h"
#include "tools/story/story_graph.h"

namespace qv {
class QVScenario;
class ScenarioHost;
}  // namespace qv

namespace qv::testing {

/// The registers of a running game.
struct RegisterImage {
  std::vector<int32_t> numbers;
  std::vector<std::string> texts;
};

struct WalkResult {
  size_t scenes = 0, ways = 0;  ///< played, and led over, of those that the texts have
  size_t expectedScenes = 0, expectedWays = 0;
  size_t entered = 0;           ///< scenes behind places that no ring turns to, entered by name
  size_t again = 0, tries = 0;  ///< choices gone back to, and scenes played for a condition
  std::vector<std::string> missing{};  ///< "sc000000 → sc000001 (words)"
};

class StoryWalk {
 public:
  StoryWalk(const GameModule& module, const story::StoryGraph& graph, uint64_t seed);

  /// From sc_start on. What a scene or a wait raises passes on.
  void walk(ScenarioHost& host);

  /// What was walked so far.
  WalkResult result() const;

  /// The answer to a selection; keeps the registers the first time.
  int32_t choose(const QVScenario& manager, int32_t count);

 private:
  static constexpr size_t Nowhere = static_cast<size_t>(-1);
  struct Task {
    size_t scene;
    std::shared_ptr<RegisterImage> registers;
    int32_t choice;  ///< 0: from the scene's head
    bool byName = false;
  };

  size_t nodeOf(SceneFunction scene) const;
  SceneFunction::Address functionOf(size_t node) const;
  bool isExpected(size_t node, const story::StoryWay& way) const;
  void follow(size_t node);
  void drain();
  size_t play(size_t node, int32_t choice);
  void note(size_t from, size_t to, int32_t choice);
  void addTasksOf(size_t node);
  bool missesCondition(size_t node) const;
  bool forceConditions();
  bool tryCondition(size_t node);
  void drawRegisters(size_t node);

  const GameModule& module_;
  const story::StoryGraph& graph_;
  story::MadeNumbers numbers_;
  std::map<SceneFunction::Address, size_t> byFunction_;
  std::vector<std::shared_ptr<RegisterImage>> entries_;  ///< at the first entry; null: never
  std::vector<std::vector<bool>> walked_;                ///< of each node's ways
  std::vector<Task> tasks_;
  size_t entered_ = 0, again_ = 0, tries_ = 0;

  // Of the scene that runs.
  int32_t wanted_ = 1, taken_ = 0, count_ = 0;
  std::shared_ptr<RegisterImage> atChoice_;
};

}  // namespace qv::testing
