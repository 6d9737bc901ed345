#include "tests/walker/story_walk.h"

#include <algorithm>

#include "message/speakers.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv::testing {

using scenec::Act;
using scenec::Option;
using story::StoryNode;

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

/// As the frame shows it, with the hero's names.
std::string spoken(const std::string& line) {
  return utf8OfShiftJis(withHeroNames(sjis(line.c_str()),
                                      theScenario->StrReg(HeroFamilyName).view(),
                                      theScenario->StrReg(HeroGivenName).view()));
}

bool isWritten(const StoryNode& node) {
  return node.scene && node.scene->form != scenec::Scene::Form::Handwritten;
}

/// Rings do not turn yet: which of their places is taken is not the walker's.
bool isExpected(const SceneExit& exit) {
  return exit.kind != SceneExit::Kind::Place;
}

}  // namespace

StoryWalk::StoryWalk(const GameModule& module, const scenec::Story& story,
                     const story::StoryGraph& graph, uint64_t seed)
    : module_(module), story_(story), graph_(graph), numbers_(seed), entries_(graph.nodes.size()) {
  for (const StoryNode& node : graph.nodes) {
    exits_.push_back(isWritten(node) ? exitsOf(*node.scene) : std::vector<SceneExit>{});
    if (const SceneFunction scene = findScene(module, node.name.c_str()))
      byFunction_[scene.address] = exits_.size() - 1;
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
  heard_.clear();
  const SceneFunction next = functionOf(node)();
  const size_t to = nodeOf(next);
  note(node, to);
  return to;
}

/// What was gone by is asked behind the scene, while its registers still stand.
void StoryWalk::note(size_t from, size_t to) {
  const StoryNode& node = graph_.nodes[from];
  passage_ = {};
  if (!isWritten(node)) return;
  passage_ = passageOf(*node.scene, story_, Reg(StepRegister), taken_);
  bool led = false;
  for (const Option* exit : passage_.exits) {
    const auto target = graph_.byName.find(exit->target);
    if (target == graph_.byName.end() || target->second != to) continue;
    walked_.insert(exit);
    led = true;
  }
  if (!led && !passage_.open)
    misread_.insert(node.name + " led to " + (to == Nowhere ? "nothing" : graph_.nodes[to].name) +
                    ", and its text does not.");
  checkHeard(from, passage_);
}

/// Of a scene in parts the last line that was heard stands in the part that counts as gone.
void StoryWalk::checkHeard(size_t node, const ScenePassage& passage) {
  const scenec::Scene& scene = *graph_.nodes[node].scene;
  if (scene.lists.size() < 2 || !passage.list || heard_.empty()) return;
  bool found = false;
  for (const scenec::Step& step : passage.list->steps)
    eachAct(step, [&](const Act& act) {
      found =
          found || (act.kind == Act::Kind::Message && heard_.ends_with(spoken(act.lines.back())));
    });
  if (!found)
    misread_.insert(scene.name + " said \"" + heard_ + "\", which its part (" +
                    (passage.list->words.empty() ? "otherwise" : passage.list->words) +
                    ") does not.");
}

/// The other choices, and the places that nobody turned to.
void StoryWalk::addTasksOf(size_t node) {
  if (!passage_.selection) return;
  const std::vector<Option>& options = passage_.selection->options;
  const bool places = passage_.selection->kind == Act::Kind::Places;
  for (size_t at = 0; at < options.size(); ++at) {
    const auto target = graph_.byName.find(options[at].target);
    const bool done = walked_.count(&options[at]) != 0 || target == graph_.byName.end();
    if (done || !planned_.insert(&options[at]).second) continue;
    if (places)
      tasks_.push_back({target->second, imageOf(*theScenario), 0});
    else if (atChoice_)
      tasks_.push_back({node, atChoice_, static_cast<int32_t>(at) + 1});
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
    restoreAll(*task.registers);
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

/// A condition may also stand before a way that has none of its own.
bool StoryWalk::missesCondition(size_t node) const {
  const auto isMissing = [&](const SceneExit& exit) {
    return isExpected(exit) && walked_.count(exit.option) == 0;
  };
  return entries_[node] && std::ranges::any_of(exits_[node], &SceneExit::conditional) &&
         std::ranges::any_of(exits_[node], isMissing);
}

void StoryWalk::restoreAll(const RegisterImage& image) {
  restore(image);
  for (const auto& [number, value] : settings_)
    SysReg(number) = value;
}

/// The registers and settings that the scene's conditions ask, and the affections, at random.
void StoryWalk::drawRegisters(size_t node) {
  const auto value = [&] { return numbers_.oneOf(2) ? 0 : numbers_.between(1, 4); };
  const auto draw = [&](const std::vector<int>& asked) {
    for (const int number : asked)
      Reg(number) = value();
  };
  const scenec::Scene& scene = *graph_.nodes[node].scene;
  for (const scenec::StepList& list : scene.lists)
    draw(list.registers);
  eachAct(scene, [&](const Act& act) {
    for (const scenec::Branch& branch : act.branches)
      draw(branch.registers);
  });
  for (const int32_t number : askedSettingsOf(scene)) {
    settings_.emplace(number, SysReg(number));
    SysReg(number) = value();
  }
  for (int32_t number = 0; number < AffectionCount; ++number)
    Reg(AffectionFirstRegister + number) = numbers_.between(-30, 30);
}

bool StoryWalk::tryCondition(size_t node) {
  const size_t before = walked_.size();
  for (int attempt = 0; attempt < MostTries && walked_.size() == before; ++attempt) {
    ++tries_;
    restoreAll(*entries_[node]);
    drawRegisters(node);
    const size_t next = play(node, 1);
    if (walked_.size() == before) continue;
    addTasksOf(node);
    follow(next);
  }
  return walked_.size() != before;
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
  result.misread.assign(misread_.begin(), misread_.end());
  for (size_t node = 0; node < graph_.nodes.size(); ++node) {
    const StoryNode& from = graph_.nodes[node];
    if (!isWritten(from)) continue;
    ++result.expectedScenes;
    if (entries_[node]) ++result.scenes;
    for (const SceneExit& exit : exits_[node]) {
      const bool walked = walked_.count(exit.option) != 0, expected = isExpected(exit);
      ++(expected ? result.expectedWays : result.expectedPlaces);
      if (walked) ++(expected ? result.ways : result.places);
      if (walked || !expected) continue;
      result.missing.push_back(from.name + " → " + exit.option->target +
                               (exit.words.empty() ? "" : " (" + exit.words + ")"));
    }
  }
  return result;
}

}  // namespace qv::testing
