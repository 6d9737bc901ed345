#pragma once

// Walks every way of a story's tree once. A scene is played from its head when it is first reached,
// with the first choice; the registers at a choice are kept, and the scene is entered there again
// for each other choice, as a load would. Ways under conditions are tried with other registers,
// drawn from a seed. Each place in a text that leads on is a way of its own, also where several
// lead to one scene: which one was gone its text tells, and the lines that were heard have to be
// those of that part. Runs on the scenario thread; `choose` on the UI thread while that one stands.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/scene_function.h"
#include "tests/walker/scene_exits.h"
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
  size_t places = 0, expectedPlaces = 0;  ///< ways of rings, counted apart
  size_t entered = 0;           ///< scenes behind places that no ring turns to, entered by name
  size_t again = 0, tries = 0;  ///< choices gone back to, and scenes played for a condition
  std::vector<std::string> missing{};  ///< "sc000000 → sc000001 (words)"
  std::vector<std::string> misread{};  ///< scenes that did what their text does not say
};

class StoryWalk {
 public:
  /// Story and graph outlive the walk.
  StoryWalk(const GameModule& module, const scenec::Story& story, const story::StoryGraph& graph,
            uint64_t seed);

  /// From sc_start on. What a scene or a wait raises passes on.
  void walk(ScenarioHost& host);

  /// What was walked so far.
  WalkResult result() const;

  /// The answer to a selection; keeps the registers the first time.
  int32_t choose(const QVScenario& manager, int32_t count);

  /// A line as the trace has it.
  void hear(std::string_view line) { heard_ = line; }

 private:
  static constexpr size_t Nowhere = static_cast<size_t>(-1);
  struct Task {
    size_t scene;
    std::shared_ptr<RegisterImage> registers;
    int32_t choice;  ///< 0: from the scene's head
  };

  size_t nodeOf(SceneFunction scene) const;
  SceneFunction::Address functionOf(size_t node) const;
  void follow(size_t node);
  void drain();
  size_t play(size_t node, int32_t choice);
  void note(size_t from, size_t to);
  void checkHeard(size_t node, const ScenePassage& passage);
  void addTasksOf(size_t node);
  bool missesCondition(size_t node) const;
  bool forceConditions();
  bool tryCondition(size_t node);
  void drawRegisters(size_t node);
  void restoreAll(const RegisterImage& image);

  const GameModule& module_;
  const scenec::Story& story_;
  const story::StoryGraph& graph_;
  story::MadeNumbers numbers_;
  std::map<SceneFunction::Address, size_t> byFunction_;
  std::vector<std::shared_ptr<RegisterImage>> entries_;  ///< at the first entry; null: never
  std::vector<std::vector<SceneExit>> exits_;            ///< of each node
  std::set<const scenec::Option*> walked_, planned_;
  std::vector<Task> tasks_;
  std::map<int32_t, int32_t> settings_;  ///< as they were before conditions wanted others
  std::set<std::string> misread_;
  size_t entered_ = 0, again_ = 0, tries_ = 0;

  // Of the scene that runs.
  int32_t wanted_ = 1, taken_ = 0, count_ = 0;
  std::shared_ptr<RegisterImage> atChoice_;
  ScenePassage passage_;
  std::string heard_;  ///< the last line; empty: none
};

}  // namespace qv::testing
