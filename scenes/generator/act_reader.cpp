#include <algorithm>

#include "scenes/generator/condition.h"
#include "scenes/generator/scene_reader.h"
#include "scenes/generator/statement.h"
#include "scenes/generator/text.h"
#include "scenes/generator/vocabulary.h"

namespace qv::scenec {

namespace {

/// A branch without acts yet; of a condition that is none nothing is taken.
Branch branchOf(const std::optional<Condition>& condition, std::string_view written, Place place) {
  Branch branch;
  branch.place = place;
  branch.condition = condition ? condition->code : "false";
  branch.words = std::string(trim(written));
  if (condition) branch.registers = condition->registers;
  return branch;
}

constexpr int DeepestIf = 16;
constexpr size_t MostChoices = 3, LeastChoices = 2, MostPlaces = 7;
const char* const NoLimit = "9999, 0";
const char* const NoSteps =
    "a chain scene only decides where to go on; make it a @scene to show or say something.";

}  // namespace

void SceneReader::readGo(const Line& line, std::vector<Act>& acts) {
  Act act{.kind = Act::Kind::Go, .place = placeOf(line)};
  if (line.command == "leave") {
    const std::string_view where = trim(line.rest);
    if (where != "title" && where != "game") problem(line, "write @leave title or @leave game.");
    act.code = where == "game" ? "leaveGame()" : "leaveForTitle()";
  } else {
    std::string target;
    targetOf(line.rest, line, target);
    act.options.push_back({.target = target, .place = act.place});
  }
  acts.push_back(std::move(act));
}

std::string SceneReader::clickOf(const Line& line) {
  const std::vector<std::string> list = words(line.rest);
  std::string time = "9999", mode = "0";
  if (!list.empty() && narrow(list[0]) != "forever") {
    const std::optional<long> value = tenths(list[0]);
    if (!value || *value < 1 || *value > 9998)
      problem(line, "\"" + list[0] +
                        "\" is no time; write tenths of a second from 1 to 9998, seconds as "
                        "2.7s, or forever.");
    else
      time = std::to_string(*value);
  }
  if (list.size() > 1) {
    const std::optional<long> value = number(list[1]);
    if (!value || *value < 0 || *value > 3)
      problem(line, "\"" + list[1] + "\" is no mode of a wait; modes are 0 to 3.");
    else
      mode = std::to_string(*value);
  }
  if (list.size() > 2)
    problem(line,
            "\"" + list[2] + "\" is too much here; the form is @click [TIME|forever] [MODE].");
  return time + ", " + mode;
}

Act SceneReader::readMessage() {
  const Line& first = here();
  Act act{.kind = Act::Kind::Message, .place = placeOf(first), .code = NoLimit};
  Heading heading = headingOf(first.rest, story_, act.place, problems_);
  act.speaker = heading.tag;
  act.voice = heading.voice;
  std::string text = heading.text;
  const Line* line = &first;
  for (;;) {
    const std::string wrong = unsayable(text);
    if (!wrong.empty()) problem(*line, wrong);
    act.lines.push_back(std::move(text));
    ++at_;
    if (!more() || here().kind != Line::Kind::Text || isHeading(here().rest, story_)) break;
    line = &here();
    text = std::string(trimAscii(line->rest));
  }
  if (act.lines.size() > 1 && act.lines.front().empty()) act.lines.erase(act.lines.begin());
  size_t next = at_;
  while (next < lines_.size() && lines_[next].kind == Line::Kind::Blank)
    ++next;
  if (next < lines_.size() && lines_[next].kind == Line::Kind::Command &&
      lines_[next].command == "click") {
    act.code = clickOf(lines_[next]);
    at_ = next + 1;
  }
  return act;
}

Act SceneReader::readCpp() {
  Act act{.kind = Act::Kind::Cpp, .place = placeOf(here())};
  const Line& opening = here();
  nothingBehind(opening);
  for (++at_; more(); ++at_) {
    if (isCommand("end") && trim(here().rest) == "cpp") {
      ++at_;
      return act;
    }
    act.lines.push_back(here().raw);
  }
  problem(opening, "the C++ that begins here has no end; close it with @end cpp.");
  return act;
}

void SceneReader::readOptions(Act& act, size_t most, const char* what) {
  for (;;) {
    size_t next = at_;
    while (next < lines_.size() && lines_[next].kind == Line::Kind::Blank)
      ++next;
    if (next == lines_.size() || lines_[next].kind != Line::Kind::Text) return;
    const Line& line = lines_[next];
    size_t length = 0;
    const size_t arrow = findArrow(line.rest, length);
    if (arrow == std::string::npos) return;
    at_ = next + 1;
    Option option{.place = placeOf(line)};
    option.text = std::string(trim(std::string_view(line.rest).substr(0, arrow)));
    if (option.text.empty())
      problem(line,
              std::string("the text of this ") + what + " is missing; write it before the arrow.");
    const std::string wrong = unsayable(option.text);
    if (!wrong.empty()) problem(line, wrong);
    targetOf(std::string_view(line.rest).substr(arrow + length), line, option.target);
    if (act.options.size() == most) {
      problem(line, std::string("this is one ") + what + " too many; at most " +
                        std::to_string(most) + " are possible.");
      continue;
    }
    act.options.push_back(std::move(option));
  }
}

void SceneReader::readBranch(Branch& branch, int depth) {
  while (!sceneEnds()) {
    if (isCommand("end") || isCommand("else")) break;
    const Line& line = here();
    if (line.kind == Line::Kind::Blank) {
      ++at_;
      continue;
    }
    if (alwaysLeaves(branch.acts)) {
      problem(line, "nothing is reached behind the line that leaves the scene; remove this.");
      while (!sceneEnds() && !isCommand("end") && !isCommand("else"))
        ++at_;
      break;
    }
    if (isCommand("save-point") || isCommand("save-offer"))
      problem(line, "@" + line.command + " is a step of its own; put it outside of @if.");
    readAct(branch.acts, depth);
  }
  if (waitsOf(branch.acts) > 1)
    problems_.add(branch.acts.back().place,
                  "one message is all that a branch of @if can hold; give the branch a scene of "
                  "its own.");
}

Act SceneReader::readIf(int depth) {
  const Line opening = here();
  Act act{.kind = Act::Kind::If, .place = placeOf(opening)};
  size_t length = 0;
  std::string_view words = opening.rest;
  const size_t arrow = findArrow(words, length);
  std::string target;
  const bool oneLine = arrow != std::string::npos;
  if (oneLine) {
    targetOf(words.substr(arrow + length), opening, target);
    words = words.substr(0, arrow);
  }
  std::optional<Condition> condition = parseCondition(words, story_, act.place, problems_);
  act.branches.push_back(branchOf(condition, words, act.place));
  ++at_;
  if (oneLine) {
    Act go{.kind = Act::Kind::Go, .place = act.place};
    go.options.push_back({.target = target, .place = act.place});
    act.branches.back().acts.push_back(std::move(go));
    return act;
  }
  if (depth >= DeepestIf) problem(opening, "@if is nested too deep; use scenes of their own.");
  for (;;) {
    if (depth >= DeepestIf) {
      while (!sceneEnds() && !isCommand("end"))
        ++at_;
    } else {
      readBranch(act.branches.back(), depth + 1);
    }
    if (sceneEnds()) {
      problem(opening, "the @if that begins here has no end; close it with @end.");
      return act;
    }
    const Line line = here();
    ++at_;
    if (line.command == "end") {
      nothingBehind(line);
      return act;
    }
    if (act.branches.back().condition.empty())
      problem(line, "nothing can follow the last @else; close the @if with @end.");
    std::string_view rest;
    const std::string word = firstWord(line.rest, rest);
    if (word.empty()) {
      act.branches.push_back({});
    } else if (word == "if") {
      condition = parseCondition(rest, story_, placeOf(line), problems_);
      act.branches.push_back(branchOf(condition, rest, placeOf(line)));
    } else {
      problem(line, "write @else, or @else if CONDITION.");
      act.branches.push_back({});
    }
  }
}

Act SceneReader::readSelection(const Line& line) {
  const bool places = line.command == "places";
  Act act{.kind = places ? Act::Kind::Places : Act::Kind::Choose, .place = placeOf(line)};
  if (places) {
    act.code = std::string(trim(line.rest));
    const std::string wrong = unsayable(act.code);
    if (act.code.empty())
      problem(line, "the name of the group is missing; write @places GROUP.");
    else if (!wrong.empty())
      problem(line, wrong);
  } else {
    nothingBehind(line);
  }
  readOptions(act, places ? MostPlaces : MostChoices, places ? "place" : "choice");
  if (act.options.size() < (places ? 1 : LeastChoices))
    problem(line, places ? "a choice of places needs lines PLACE → SCENE below it."
                         : "a selection needs two or three lines TEXT → SCENE below it.");
  return act;
}

void SceneReader::readCommand(const Line& line, std::vector<Act>& acts) {
  const std::string& name = line.command;
  const CommandForm* form = findCommand(name);
  if (!form) {
    static const char* const Misplaced[] = {"else", "end", "when", "otherwise", "step"};
    if (std::any_of(std::begin(Misplaced), std::end(Misplaced),
                    [&](const char* word) { return name == word; }))
      problem(line, "@" + name + " has no place here.");
    else
      problem(line, "there is no command \"@" + name + "\"." +
                        problems_.suggestion(name, allCommandNames(),
                                             " docs/scene-language.md lists the commands."));
    return;
  }
  Act act{.place = placeOf(line)};
  readStatement(*form, line.rest, story_, problems_, act);
  if (form->usesFilm) scene_->hasFilm = true;
  if (scene_->form == Scene::Form::Chain && !form->inChain)
    problem(line, NoSteps);
  else
    acts.push_back(std::move(act));
}

void SceneReader::readAct(std::vector<Act>& acts, int depth) {
  const Line& line = here();
  if (line.kind == Line::Kind::Blank) {
    ++at_;
    return;
  }
  const std::string& name = line.command;
  if (name == "cpp") return acts.push_back(readCpp());
  if (name == "if") return acts.push_back(readIf(depth));

  Act act{.place = placeOf(line)};
  if (line.kind == Line::Kind::Text) {
    act = readMessage();
  } else {
    ++at_;
    if (name == "go" || name == "leave") return readGo(line, acts);
    if (name == "choose" || name == "places") {
      act = readSelection(line);
    } else if (name == "click") {
      act.kind = Act::Kind::Click;
      act.code = clickOf(line);
    } else if (name == "save-point" || name == "save-offer") {
      act.kind = name == "save-point" ? Act::Kind::SavePoint : Act::Kind::SaveOffer;
      nothingBehind(line);
    } else {
      return readCommand(line, acts);
    }
  }
  if (scene_->form == Scene::Form::Chain)
    problem(line, NoSteps);
  else
    acts.push_back(std::move(act));
}

}  // namespace qv::scenec
