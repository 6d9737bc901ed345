#pragma once

/// The tree of a story's scenes: who leads to whom, by which choice or under which condition. The
/// way back to the title, which every wait offers, is not in it.

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "scenes/generator/story.h"

namespace qv::story {

struct StoryWay {
  enum class Kind { Go, Choice, Place, Condition, Code };
  size_t target = 0;
  Kind kind = Kind::Go;
  std::string label{};  ///< the choice's text, the condition; empty for a plain way
  int choice = 0;       ///< of a choice: which, from 1
};

struct StoryNode {
  std::string name;
  const scenec::Scene* scene = nullptr;  ///< null for END and for scenes that nothing defines
  std::vector<StoryWay> ways{};          ///< one for each target and label
};

struct StoryGraph {
  std::vector<StoryNode> nodes;  ///< in the order of the texts, then END and what is missing
  std::map<std::string, size_t> byName;
  size_t root = 0;

  /// For each node whether a reader can come there from the first scene or the title.
  std::vector<bool> reachable() const;
};

/// The story outlives the graph.
StoryGraph graphOf(const scenec::Story& story);

/// Words of C++ that could be names of scenes.
std::vector<std::string> sceneWordsOf(const std::vector<std::string>& code);

}  // namespace qv::story
