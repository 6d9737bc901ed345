#include "tests/walker/story_walk.h"

#include <algorithm>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv::testing {

using story::StoryNode;
using story::StoryWay;

namespace {

constexpr int MostTries = 400;

std::shared_ptr<RegisterImage> imageOf(QVScenario& manager) {
  auto image = std::make_shared<RegisterImage>();
  for (int32_t number = 0; number < manager.registers().count(); ++number)
    image->numbers.push_back(manager.Reg(number));
  for (int32_t number = 0; number < manager.strings().count(); ++number)
    image->texts.emplace_back(manager.StrReg(number).view());
  return image;
}

void restore(const RegisterImage& image) {
  for (size_t number = 0; number < image.numbers.size(); ++number)
    Reg(static_cast<int32_t>(number)) = image.numbers[number];
  for (size_t number = 0; number < image.texts.size(); ++number)
    theScenario->StrReg(static_cast<int32_t>(number))
        .create(QVString::DefaultGrain, image.texts[number].c_str());
}

bool ofKind(const StoryNode& node, StoryWay::Kind kind) {
  return std::any_of(node.ways.begin(), node.ways.end(),
                     [kind](const StoryWay& way) { return way.kind == kind; });
}

}  // namespace

StoryWalk::StoryWalk(const GameModule& module, const story::StoryGraph& graph, uint64_t seed)
    : module_(module), graph_(graph), numbers_(seed), entries_(graph.nodes.size()) {
  for (const StoryNode& node : graph.nodes) {
    walked_.emplace_back(node.ways.size());
    const size_t index = walked_.size() - 1;
    if (const SceneFunction scene = findScene(module, node.name.c_str()))
      byFunction_[scene.address] = index;
  }
  if (const auto end = graph.byName.find("END"); end != graph.byName.end())
    byFunction_[module.end] = end->second;
}

size_t StoryWalk::nodeOf(SceneFunction scene) const {
  const auto found = byFunction_.find(scene.address);
  return found == byFunction_.end() ? Nowhere : found->second;
}

SceneFunction::Address StoryWalk::functionOf(size_t node) const {
  return findScene(module_, graph_.nodes[node].name.c_str()).address;
}

/// What C++ does with the scenes that it names nobody can tell from outside.
bool StoryWalk::isExpected(size_t, const StoryWay& way) const {
  return way.kind != StoryWay::Kind::Code;
}

int32_t StoryWalk::choose(const QVScenario& manager, int32_t count) {
  count_ = count;
  taken_ = std::min(wanted_, count);
  if (!atChoice_) atChoice_ = imageOf(const_cast<QVScenario&>(manager));
  return taken_;
}

size_t StoryWalk::play(size_t node, int32_t choice) {
  wanted_ = std::max<int32_t>(choice, 1);
  taken_ = count_ = 0;
  atChoice_.reset();
  const SceneFunction next = functionOf(node)();
  const size_t to = nodeOf(next);
  note(node, to, taken_);
  return to;
}

/// Of several ways to one scene a choice is one, a condition's all.
void StoryWalk::note(size_t from, size_t to, int32_t choice) {
  const std::vector<StoryWay>& ways = graph_.nodes[from].ways;
  for (size_t way = 0; way < ways.size(); ++way) {
    const bool chosen = ways[way].kind == StoryWay::Kind::Choice;
    if (ways[way].target == to && (!chosen || ways[way].choice == choice))
      walked_[from][way] = true;
  }
}

/// The other choices, and the places that nobody turned to.
void StoryWalk::addTasksOf(size_t node) {
  for (int32_t choice = 2; choice <= count_; ++choice)
    tasks_.push_back({node, atChoice_, choice});
  const std::vector<StoryWay>& ways = graph_.nodes[node].ways;
  for (size_t way = 0; way < ways.size(); ++way) {
    if (ways[way].kind != StoryWay::Kind::Place || walked_[node][way]) continue;
    walked_[node][way] = true;
    tasks_.push_back({ways[way].target, imageOf(*theScenario), 0, true});
  }
}

/// Plays on from scene to scene as long as they are new.
void StoryWalk::follow(size_t node) {
  while (node != Nowhere && !entries_[node] && functionOf(node)) {
    entries_[node] = imageOf(*theScenario);
    const size_t here = node;
    node = play(here, 1);
    addTasksOf(here);
  }
}

void StoryWalk::drain() {
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    restore(*task.registers);
    if (task.choice > 0) {
      ++again_;
      Reg(ResumePendingRegister) = 1;
      follow(play(task.scene, task.choice));
    } else {
      if (!entries_[task.scene]) ++entered_;
      follow(task.scene);
    }
  }
}

bool StoryWalk::missesCondition(size_t node) const {
  const std::vector<StoryWay>& ways = graph_.nodes[node].ways;
  if (!entries_[node] || !ofKind(graph_.nodes[node], StoryWay::Kind::Condition)) return false;
  for (size_t way = 0; way < ways.size(); ++way)
    if (!walked_[node][way] && isExpected(node, ways[way])) return true;
  return false;
}

/// The registers that the scene's conditions ask, the affections and the switches, at random.
void StoryWalk::drawRegisters(size_t node) {
  const auto draw = [&](const std::vector<int>& asked) {
    for (const int number : asked)
      Reg(number) = numbers_.oneOf(2) ? 0 : numbers_.between(1, 4);
  };
  const scenec::Scene& scene = *graph_.nodes[node].scene;
  for (const scenec::StepList& list : scene.lists)
    draw(list.registers);
  eachAct(scene, [&](const scenec::Act& act) {
    for (const scenec::Branch& branch : act.branches)
      draw(branch.registers);
  });
  for (int32_t number = 0; number < AffectionCount; ++number)
    Reg(AffectionFirstRegister + number) = numbers_.between(-30, 30);
}

bool StoryWalk::tryCondition(size_t node) {
  const auto before = walked_[node];
  for (int attempt = 0; attempt < MostTries && walked_[node] == before; ++attempt) {
    ++tries_;
    restore(*entries_[node]);
    drawRegisters(node);
    const size_t next = play(node, 1);
    if (walked_[node] != before) follow(next);
  }
  return walked_[node] != before;
}

bool StoryWalk::forceConditions() {
  bool progress = false;
  for (size_t node = 0; node < graph_.nodes.size(); ++node)
    while (missesCondition(node) && tryCondition(node)) {
      progress = true;
      drain();
    }
  return progress;
}

void StoryWalk::walk(ScenarioHost& host) {
  const size_t first = nodeOf(module_.start(&host));
  follow(first);
  do {
    drain();
  } while (forceConditions());
}

WalkResult StoryWalk::result() const {
  WalkResult result{.entered = entered_, .again = again_, .tries = tries_};
  for (size_t node = 0; node < graph_.nodes.size(); ++node) {
    const StoryNode& from = graph_.nodes[node];
    const bool written = from.scene && from.scene->form != scenec::Scene::Form::Handwritten;
    if (!written) continue;
    ++result.expectedScenes;
    if (entries_[node]) ++result.scenes;
    for (size_t way = 0; way < from.ways.size(); ++way) {
      if (!isExpected(node, from.ways[way])) continue;
      ++result.expectedWays;
      if (walked_[node][way]) {
        ++result.ways;
        continue;
      }
      const std::string& label = from.ways[way].label;
      result.missing.push_back(from.name + " → " + graph_.nodes[from.ways[way].target].name +
                               (label.empty() ? "" : " (" + label + ")"));
    }
  }
  return result;
}

}  // namespace qv::testing
