#include "tests/walker/scene_exits.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenes/generator/text.h"
#include "screens/commands.h"

namespace qv::testing {

using scenec::Act;
using scenec::Branch;
using scenec::Option;
using scenec::Scene;
using scenec::StepList;

namespace {

struct Switch {
  std::string_view word;
  int32_t setting;
};
constexpr Switch Switches[] = {{"skip", SkipMode}, {"voices", VoiceEnabled}, {"music", BgmEnabled}};

struct Comparison {
  std::string_view sign;
  bool (*compare)(long left, long right);
};
// Longer signs first.
constexpr Comparison Comparisons[] = {
    {"<=", [](long left, long right) { return left <= right; }},
    {">=", [](long left, long right) { return left >= right; }},
    {"!=", [](long left, long right) { return left != right; }},
    {"==", [](long left, long right) { return left == right; }},
    {"≦", [](long left, long right) { return left <= right; }},
    {"≧", [](long left, long right) { return left >= right; }},
    {"≠", [](long left, long right) { return left != right; }},
    {"=", [](long left, long right) { return left == right; }},
    {"<", [](long left, long right) { return left < right; }},
    {">", [](long left, long right) { return left > right; }},
};

/// Words, with brackets and signs standing alone.
std::vector<std::string> tokensOf(std::string_view text) {
  std::string spaced;
  const std::string narrow = scenec::narrow(text);
  for (size_t at = 0; at < narrow.size();) {
    std::string_view sign;
    const std::string_view rest = std::string_view(narrow).substr(at);
    if (rest[0] == '(' || rest[0] == ')') sign = rest.substr(0, 1);
    for (const Comparison& known : Comparisons)
      if (sign.empty() && rest.starts_with(known.sign)) sign = known.sign;
    spaced += sign.empty() ? std::string(1, rest[0]) : " " + std::string(sign) + " ";
    at += std::max<size_t>(sign.size(), 1);
  }
  return scenec::words(spaced);
}

/// Asks the running game. The scene compiler has accepted the words.
class Asker {
 public:
  Asker(std::vector<std::string> tokens, const scenec::Story& story)
      : tokens_(std::move(tokens)), story_(story) {}

  std::optional<bool> either() {
    std::optional<bool> value = both();
    while (takeIf("or")) {
      const std::optional<bool> other = both();
      value = value == true || other == true ? true
              : value && other               ? std::optional(false)
                                             : std::nullopt;
    }
    return value;
  }

 private:
  std::string take() { return at_ < tokens_.size() ? tokens_[at_++] : std::string(); }
  bool takeIf(std::string_view word) {
    if (at_ >= tokens_.size() || tokens_[at_] != word) return false;
    ++at_;
    return true;
  }
  std::string takeName() { return sjis(take().c_str()); }

  std::optional<bool> both() {
    std::optional<bool> value = single();
    while (takeIf("and")) {
      const std::optional<bool> other = single();
      value = value == false || other == false ? false
              : value && other                 ? std::optional(true)
                                               : std::nullopt;
    }
    return value;
  }

  std::optional<bool> single() {
    if (takeIf("not")) {
      const std::optional<bool> value = single();
      return value ? std::optional(!*value) : std::nullopt;
    }
    if (!takeIf("(")) return term();
    const std::optional<bool> value = either();
    takeIf(")");
    return value;
  }

  std::optional<bool> term() {
    const std::string word = take();
    if (word == "random") return std::nullopt;
    if (word == "affection") {
      const std::string name = takeName();
      take();
      return AffectionAbove(name.c_str(), static_cast<int32_t>(number())) != 0;
    }
    if (word == "favourite") return favourite();
    if (word == "setting") return compared(SysReg(static_cast<int32_t>(number())));
    for (const Switch& known : Switches)
      if (word == known.word) return SysReg(known.setting) != 0;
    const auto named = story_.registers.find(word);
    return compared(Reg(named == story_.registers.end()
                            ? static_cast<int32_t>(scenec::number(word).value_or(0))
                            : named->second));
  }

  bool compared(long value) {
    for (const Comparison& known : Comparisons)
      if (takeIf(known.sign)) return known.compare(value, number());
    return value != 0;
  }

  bool favourite() {
    const std::string first = takeName();
    std::string second;
    const bool alone = takeIf("is");
    if (!alone) {
      second = takeName();
      take();
    }
    const char* found = CompareAffection(first.c_str(), alone ? nullptr : second.c_str());
    return found && takeName() == found;
  }

  long number() { return scenec::number(take()).value_or(0); }

  std::vector<std::string> tokens_;
  const scenec::Story& story_;
  size_t at_ = 0;
};

// --- All exits ---

void addExits(const std::vector<Act>& acts, const std::string& words, bool conditional,
              std::vector<SceneExit>& exits) {
  for (const Act& act : acts) {
    for (const Option& option : act.options) {
      if (option.target.empty()) continue;
      const bool choice = act.kind == Act::Kind::Choose, place = act.kind == Act::Kind::Places;
      const std::string text = option.text.empty() ? "" : words.empty() ? "" : ", ";
      exits.push_back({&option,
                       choice  ? SceneExit::Kind::Choice
                       : place ? SceneExit::Kind::Place
                               : SceneExit::Kind::Go,
                       words + text + option.text, conditional});
    }
    for (const Branch& branch : act.branches) {
      const std::string own = branch.condition.empty() ? "else" : branch.words;
      addExits(branch.acts, words.empty() ? own : words + ", " + own, true, exits);
    }
  }
}

// --- The way that was taken ---

class PassageReader {
 public:
  PassageReader(const scenec::Story& story, int32_t choice) : story_(story), choice_(choice) {}

  /// Whether the acts may have come to their end without leaving.
  bool read(const std::vector<Act>& acts) {
    for (const Act& act : acts) {
      if (act.kind == Act::Kind::Cpp) passage.open = true;
      if (act.kind == Act::Kind::Go) return readGo(act);
      if (act.kind == Act::Kind::Choose || act.kind == Act::Kind::Places) return select(act);
      if (act.kind == Act::Kind::If && !readBranches(act)) return false;
    }
    return true;
  }

  ScenePassage passage;

 private:
  bool readGo(const Act& act) {
    if (act.options.empty())
      passage.open = true;  // to the title or out of the game
    else
      passage.exits.push_back(&act.options[0]);
    return false;
  }

  /// Of places the front one is taken: no ring turns yet.
  bool select(const Act& act) {
    passage.selection = &act;
    const auto at = act.kind == Act::Kind::Places ? 0 : static_cast<size_t>(choice_ - 1);
    if (at < act.options.size()) passage.exits.push_back(&act.options[at]);
    return false;
  }

  bool readBranches(const Act& act) {
    bool goesOn = false;
    for (const Branch& branch : act.branches) {
      const std::optional<bool> held =
          branch.condition.empty() ? std::optional(true) : holds(branch.words, story_);
      if (held == false) continue;
      goesOn = read(branch.acts) || goesOn;
      if (held == true) return goesOn;
    }
    return true;
  }

  const scenec::Story& story_;
  int32_t choice_;
};

const StepList* runningList(const Scene& scene, const scenec::Story& story) {
  for (const StepList& list : scene.lists)
    if (list.condition.empty() || holds(list.words, story) == true) return &list;
  return nullptr;
}

void eachCondition(const Scene& scene, const std::function<void(const std::string&)>& see) {
  for (const StepList& list : scene.lists)
    see(list.words);
  eachAct(scene, [&](const Act& act) {
    for (const Branch& branch : act.branches)
      see(branch.words);
  });
}

}  // namespace

std::vector<SceneExit> exitsOf(const Scene& scene) {
  std::vector<SceneExit> exits;
  const bool parts = scene.lists.size() > 1;
  for (const StepList& list : scene.lists) {
    const std::string words = !parts ? "" : list.condition.empty() ? "otherwise" : list.words;
    for (const scenec::Step& step : list.steps)
      addExits(step, words, parts, exits);
  }
  return exits;
}

std::optional<bool> holds(std::string_view words, const scenec::Story& story) {
  return Asker(tokensOf(words), story).either();
}

ScenePassage passageOf(const Scene& scene, const scenec::Story& story, int32_t step,
                       int32_t choice) {
  PassageReader reader(story, choice);
  const StepList* list = runningList(scene, story);
  const size_t at = scene.form == Scene::Form::Chain ? 0 : static_cast<size_t>(step - 1);
  if (list && at < list->steps.size()) reader.read(list->steps[at]);
  reader.passage.list = list;
  return reader.passage;
}

std::vector<int32_t> askedSettingsOf(const Scene& scene) {
  std::vector<int32_t> asked;
  eachCondition(scene, [&](const std::string& words) {
    const std::vector<std::string> tokens = tokensOf(words);
    for (size_t at = 0; at < tokens.size(); ++at) {
      for (const Switch& known : Switches)
        if (tokens[at] == known.word) asked.push_back(known.setting);
      if (tokens[at] != "setting" || at + 1 == tokens.size()) continue;
      if (const auto number = scenec::number(tokens[at + 1]))
        asked.push_back(static_cast<int32_t>(*number));
    }
  });
  return asked;
}

}  // namespace qv::testing
