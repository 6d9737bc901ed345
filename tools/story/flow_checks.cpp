// Ways, flags and songs: what holds from one act to the next, and between scenes.

#include <algorithm>
#include <map>
#include <set>

#include "scenario/register_numbers.h"
#include "scenes/generator/text.h"
#include "tools/story/story_checks.h"
#include "tools/story/story_graph.h"

namespace qv::story {

using scenec::Act;
using scenec::Place;
using scenec::Problems;
using scenec::Scene;
using scenec::Story;

// --- Ways ---

namespace {

/// Whether any way at all leads to the node from another scene.
std::vector<bool> ledTo(const StoryGraph& graph) {
  std::vector<bool> led(graph.nodes.size());
  for (size_t from = 0; from < graph.nodes.size(); ++from)
    for (const StoryWay& way : graph.nodes[from].ways)
      if (way.target != from) led[way.target] = true;
  return led;
}

}  // namespace

void checkReach(const Story& story, Problems& problems) {
  const StoryGraph graph = graphOf(story);
  const std::vector<bool> reached = graph.reachable(), led = ledTo(graph);
  for (size_t index = 0; index < graph.nodes.size(); ++index) {
    const StoryNode& node = graph.nodes[index];
    if (reached[index] || !node.scene) continue;
    problems.add(node.scene->place,
                 led[index] ? "only scenes that nobody can reach lead to \"" + node.name + "\"."
                            : "nothing leads to the scene \"" + node.name +
                                  "\"; lead to it from another scene, or remove it.");
  }
}

// --- Flags ---

namespace {

struct RegisterRange {
  int first, last;
};
/// Written by the engine; all others are the story's.
constexpr RegisterRange EngineRegisters[] = {
    {0, 99},
    {AffectionFirstRegister, AffectionFirstRegister + AffectionCount - 1},
    {SaveBookkeepingRegister, SaveBookkeepingRegister},
    {SelectionBookkeepingRegister, SelectionBookkeepingRegister},
    {SelectionResultRegister, SelectionResultRegister},
    {BgmCurrentRegister, SavedStateRegister},
    {ChapterRegister, CalendarDayRegister},
};

bool engineWrites(int number) {
  return std::any_of(
      std::begin(EngineRegisters), std::end(EngineRegisters),
      [&](const RegisterRange& range) { return number >= range.first && number <= range.last; });
}

/// Numbers that stand in C++ as "Reg(600)". What is done with them is not looked at.
void addRegistersOf(std::string_view code, std::set<int>& numbers) {
  constexpr std::string_view Opening = "Reg(";
  for (size_t at = 0; (at = code.find(Opening, at)) != std::string_view::npos;) {
    at += Opening.size();
    if (const auto value = scenec::number(code.substr(at, code.find_first_of(")+- ", at) - at)))
      numbers.insert(static_cast<int>(*value));
  }
}

class FlagLedger {
 public:
  explicit FlagLedger(const Story& story) : story_(story) {}

  void read(const Scene& scene) {
    for (const scenec::StepList& list : scene.lists)
      ask(list.registers, list.place);
    eachAct(scene, [&](const Act& act) { read(act); });
  }
  void readCode(std::string_view code) { addRegistersOf(code, set_); }

  void tell(Problems& problems) const {
    for (const auto& [number, place] : asked_) {
      if (set_.count(number) != 0 || engineWrites(number)) continue;
      const std::string name = nameOf(number);
      problems.add(place, "register " + name + " is asked here, but " +
                              (cleared_.count(number) ? "every scene that writes it clears it"
                                                      : "no scene sets it") +
                              "; write @flag where it is to become true.");
    }
  }

 private:
  void ask(const std::vector<int>& numbers, Place place) {
    for (const int number : numbers)
      asked_.emplace(number, place);
  }

  void read(const Act& act) {
    for (const scenec::Branch& branch : act.branches)
      ask(branch.registers, branch.place);
    if (act.kind == Act::Kind::Cpp)
      for (const std::string& line : act.lines)
        readCode(line);
    const bool sets = act.command == "set";
    if (!sets && act.command != "flag" && act.command != "count") return;
    if (act.arguments.empty()) return;
    const auto number = numberOf(act.arguments[0]);
    if (!number) return;
    const bool clears = sets && act.arguments.size() > 1 && scenec::number(act.arguments[1]) == 0;
    (clears ? cleared_ : set_).insert(*number);
  }

  std::optional<int> numberOf(const std::string& word) const {
    if (const auto named = story_.registers.find(word); named != story_.registers.end())
      return named->second;
    const std::optional<long> value = scenec::number(word);
    return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
  }

  std::string nameOf(int number) const {
    for (const auto& [name, value] : story_.registers)
      if (value == number) return "\"" + name + "\" (" + std::to_string(number) + ")";
    return std::to_string(number);
  }

  const Story& story_;
  std::map<int, Place> asked_;  ///< where first
  std::set<int> set_, cleared_;
};

}  // namespace

void checkFlags(const Story& story, const std::vector<scenec::TextFile>& code, Problems& problems) {
  FlagLedger ledger(story);
  for (const Scene& scene : story.scenes)
    ledger.read(scene);
  for (const Act& act : story.globals)
    for (const std::string& line : act.lines)
      ledger.readCode(line);
  for (const scenec::TextFile& file : code)
    ledger.readCode(file.bytes);
  ledger.tell(problems);
}

// --- Songs ---

namespace {

/// Follows the acts and tells waits for a song that goes round. `song` is what plays, empty where
/// it is not known or will end.
class SongWalk {
 public:
  explicit SongWalk(Problems& problems) : problems_(problems) {}

  void read(const std::vector<Act>& acts, std::string& song) {
    for (const Act& act : acts) {
      if (!act.branches.empty())
        branch(act, song);
      else if (act.kind == Act::Kind::Call && !act.arguments.empty())
        call(act, song);
    }
  }

 private:
  void call(const Act& act, std::string& song) {
    const std::string word = scenec::narrow(act.arguments[0]);
    if (act.command == "bgm") song = word == "fadeout" || word == "stop" ? "" : word;
    if (act.command == "wait" && word == "song" && !song.empty())
      problems_.add(act.place, "this never ends, because " + song +
                                   " goes round; write @bgm fadeout before it.");
  }

  /// Behind the branches only what all ways agree on is known.
  void branch(const Act& act, std::string& song) {
    std::set<std::string> songs{song};
    for (const scenec::Branch& branch : act.branches) {
      std::string inside = song;
      read(branch.acts, inside);
      if (!scenec::alwaysLeaves(branch.acts)) songs.insert(inside);
    }
    if (songs.size() > 1) song.clear();
  }

  Problems& problems_;
};

}  // namespace

void checkSongs(const Story& story, Problems& problems) {
  SongWalk walk(problems);
  for (const Scene& scene : story.scenes)
    for (const scenec::StepList& list : scene.lists) {
      std::string song;
      for (const scenec::Step& step : list.steps)
        walk.read(step, song);
    }
}

}  // namespace qv::story
