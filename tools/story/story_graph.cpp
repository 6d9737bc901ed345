#include "tools/story/story_graph.h"

#include <algorithm>
#include <set>

namespace qv::story {

using scenec::Act;
using scenec::Branch;
using scenec::Scene;
using scenec::Story;

namespace {

constexpr const char *Title = "sc_menu", *End = "END";

bool isWordByte(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
         (byte >= 'A' && byte <= 'Z') || byte == '_';
}

class GraphMaker {
 public:
  explicit GraphMaker(const Story& story) : story_(story) {}

  StoryGraph make() {
    for (const Scene& scene : story_.scenes)
      if (graph_.byName.count(scene.name) == 0) node(scene.name).scene = &scene;
    for (const Scene& scene : story_.scenes) {
      from_ = graph_.byName[scene.name];
      for (const scenec::StepList& list : scene.lists)
        for (const scenec::Step& step : list.steps)
          read(step, list.words);
      for (const scenec::Option& way : scene.ways)
        add(way.target, StoryWay::Kind::Code, {});
    }
    graph_.root = graph_.byName.count(story_.firstScene) ? graph_.byName[story_.firstScene] : 0;
    return std::move(graph_);
  }

 private:
  StoryNode& node(const std::string& name) {
    const auto [found, fresh] = graph_.byName.emplace(name, graph_.nodes.size());
    if (fresh) graph_.nodes.push_back({.name = name});
    return graph_.nodes[found->second];
  }

  void add(const std::string& target, StoryWay::Kind kind, const std::string& label,
           int choice = 0) {
    if (target.empty()) return;
    node(target);
    const size_t index = graph_.byName[target];
    std::vector<StoryWay>& ways = graph_.nodes[from_].ways;
    const bool known = std::any_of(ways.begin(), ways.end(), [&](const StoryWay& way) {
      return way.target == index && way.label == label;
    });
    if (!known) ways.push_back({index, kind, label, choice});
  }

  void read(const std::vector<Act>& acts, const std::string& condition) {
    for (const Act& act : acts) {
      const bool choice = act.kind == Act::Kind::Choose, place = act.kind == Act::Kind::Places;
      int number = 0;
      for (const scenec::Option& option : act.options) {
        if (choice || place)
          add(option.target, choice ? StoryWay::Kind::Choice : StoryWay::Kind::Place, option.text,
              ++number);
        else
          add(option.target, condition.empty() ? StoryWay::Kind::Go : StoryWay::Kind::Condition,
              condition);
      }
      if (act.kind == Act::Kind::Cpp) readCode(act.lines);
      for (const Branch& branch : act.branches)
        read(branch.acts, branch.condition.empty() ? "else" : branch.words);
    }
  }

  /// A writer's own C++ leads to every scene that it names.
  void readCode(const std::vector<std::string>& lines) {
    for (const std::string& word : sceneWordsOf(lines))
      if (graph_.byName.count(word)) add(word, StoryWay::Kind::Code, {});
  }

  const Story& story_;
  StoryGraph graph_;
  size_t from_ = 0;
};

}  // namespace

std::vector<std::string> sceneWordsOf(const std::vector<std::string>& code) {
  std::set<std::string> found;
  for (const std::string& line : code) {
    for (size_t at = 0; at < line.size();) {
      size_t end = at;
      while (end < line.size() && isWordByte(line[end]))
        ++end;
      const std::string word = line.substr(at, end - at);
      if (word == End || scenec::isSceneName(word)) found.insert(word);
      at = std::max(end, at + 1);
    }
  }
  return {found.begin(), found.end()};
}

StoryGraph graphOf(const Story& story) {
  return GraphMaker(story).make();
}

std::vector<bool> StoryGraph::reachable() const {
  std::vector<bool> reached(nodes.size());
  std::vector<size_t> open;
  const auto enter = [&](size_t index) {
    if (reached[index]) return;
    reached[index] = true;
    open.push_back(index);
  };
  if (!nodes.empty()) enter(root);
  if (const auto title = byName.find(Title); title != byName.end()) enter(title->second);
  while (!open.empty()) {
    const size_t index = open.back();
    open.pop_back();
    for (const StoryWay& way : nodes[index].ways)
      enter(way.target);
  }
  return reached;
}

}  // namespace qv::story
