#include "scenes/generator/parser.h"

#include <algorithm>

#include "scenes/generator/condition.h"
#include "scenes/generator/lines.h"
#include "scenes/generator/statement.h"
#include "scenes/generator/text.h"
#include "scenes/generator/vocabulary.h"

namespace qv::scenec {

namespace {

constexpr int DeepestIf = 16;
constexpr size_t MostChoices = 3, LeastChoices = 2, MostPlaces = 7;
const char* const NoLimit = "9999, 0";

/// True when nothing behind the act can be reached.
bool alwaysLeaves(const Act& act);
bool alwaysLeaves(const std::vector<Act>& acts) {
  return std::any_of(acts.begin(), acts.end(), [](const Act& act) { return alwaysLeaves(act); });
}
bool alwaysLeaves(const Act& act) {
  switch (act.kind) {
    case Act::Kind::Go:
    case Act::Kind::Choose:
    case Act::Kind::Places:
      return true;
    case Act::Kind::If:
      return !act.branches.empty() && act.branches.back().condition.empty() &&
             std::all_of(act.branches.begin(), act.branches.end(),
                         [](const Branch& branch) { return alwaysLeaves(branch.acts); });
    default:
      return false;
  }
}

/// The most waits for the player on any way through.
int waitsOf(const std::vector<Act>& acts) {
  int sum = 0;
  for (const Act& act : acts) {
    switch (act.kind) {
      case Act::Kind::Message:
      case Act::Kind::Click:
      case Act::Kind::Choose:
      case Act::Kind::Places:
        ++sum;
        break;
      case Act::Kind::If: {
        int most = 0;
        for (const Branch& branch : act.branches)
          most = std::max(most, waitsOf(branch.acts));
        sum += most;
        break;
      }
      default:
        break;
    }
  }
  return sum;
}

class SceneReader {
 public:
  SceneReader(std::string_view bytes, int file, Story& story, Problems& problems)
      : lines_(splitLines(bytes)), file_(file), story_(story), problems_(problems) {}

  void read() {
    while (more()) {
      const Line& line = here();
      if (line.kind == Line::Kind::Blank) {
        ++at_;
      } else if (opensScene(line)) {
        readScene();
      } else if (line.kind == Line::Kind::Command && line.command == "handwritten") {
        readHandwritten();
      } else if (line.kind == Line::Kind::Command && line.command == "cpp") {
        story_.globals.push_back(readCpp());
      } else {
        problem(line, "this stands outside of a scene; begin one with @scene NAME.");
        skipToScene();
      }
    }
  }

 private:
  // Lines.
  bool more() const { return at_ < lines_.size(); }
  const Line& here() const { return lines_[at_]; }
  Place placeOf(const Line& line) const { return {file_, line.number}; }
  void problem(const Line& line, std::string what) {
    problems_.add(placeOf(line), std::move(what));
  }
  static bool opensScene(const Line& line) {
    return line.kind == Line::Kind::Command && (line.command == "scene" || line.command == "chain");
  }
  bool sceneEnds() const {
    return !more() || opensScene(here()) ||
           (here().kind == Line::Kind::Command && here().command == "handwritten");
  }
  void skipToScene() {
    do {
      ++at_;
    } while (!sceneEnds());
  }
  bool isCommand(std::string_view name) const {
    return more() && here().kind == Line::Kind::Command && here().command == name;
  }
  void skipBlank() {
    while (more() && here().kind == Line::Kind::Blank)
      ++at_;
  }

  // Scenes.
  void readScene();
  void readHandwritten();
  std::string sceneNameOf(const Line& line);
  void readSteps(Scene& scene);
  void readChain(Scene& scene);
  void openList(Scene& scene, const Line& line);
  void add(Scene& scene, Act act);
  void closeStep() { stepOpen_ = false; }
  void checkLists(const Scene& scene);
  void checkListRegisters(const Scene& scene);

  // Acts.
  bool readAct(std::vector<Act>& acts, int depth);
  Act readMessage();
  Act readIf(int depth);
  void readBranch(Branch& branch, int depth);
  Act readCpp();
  void readOptions(Act& act, size_t most, const char* what);
  std::string clickOf(const Line& line);
  void readGo(const Line& line, std::vector<Act>& acts);
  bool targetOf(std::string_view text, const Line& line, std::string& target);
  void nothingBehind(const Line& line);

  std::vector<Line> lines_;
  size_t at_ = 0;
  int file_;
  Story& story_;
  Problems& problems_;
  Scene* scene_ = nullptr;
  bool stepOpen_ = false;
  int leftAt_ = 0;  ///< line of the act that left the list of steps for good; 0: none yet
  bool toldLeft_ = false;
};

std::string SceneReader::sceneNameOf(const Line& line) {
  std::string_view rest;
  std::string name = firstWord(line.rest, rest);
  if (name.empty())
    problem(line, "the name is missing; write @" + line.command + " NAME.");
  else if (!isSceneName(name))
    problem(line, "\"" + name +
                      "\" is no name for a scene; use sc and six digits (two of the chapter, four "
                      "of the scene), as sc010203, sc010203m or sc010203m_02, or sc_ and a word.");
  else if (isEngineScene(name))
    problem(line, "\"" + name + "\" belongs to the engine; choose another name.");
  return name;
}

void SceneReader::readHandwritten() {
  Scene scene;
  scene.form = Scene::Form::Handwritten;
  scene.place = placeOf(here());
  scene.name = sceneNameOf(here());
  ++at_;
  story_.scenes.push_back(std::move(scene));
}

void SceneReader::readScene() {
  const Line& line = here();
  Scene scene;
  scene.place = placeOf(line);
  scene.form = line.command == "chain" ? Scene::Form::Chain : Scene::Form::Steps;
  scene.name = sceneNameOf(line);
  std::string_view option;
  firstWord(line.rest, option);
  if (scene.form == Scene::Form::Chain && option == "without-chapter") {
    scene.chapter = false;
  } else if (!option.empty()) {
    problem(line, "\"" + std::string(option) + "\" behind the name is not understood; remove it.");
  }
  ++at_;
  scene_ = &scene;
  if (scene.form == Scene::Form::Chain)
    readChain(scene);
  else
    readSteps(scene);
  scene_ = nullptr;
  story_.scenes.push_back(std::move(scene));
}

void SceneReader::readChain(Scene& scene) {
  scene.lists.push_back({.place = scene.place, .steps = {Step{}}});
  Step& acts = scene.lists[0].steps[0];
  while (!sceneEnds()) {
    if (alwaysLeaves(acts) && here().kind != Line::Kind::Blank) {
      problem(here(), "nothing is reached behind the line that leaves the scene; remove this.");
      skipToScene();
      return;
    }
    readAct(acts, 0);
  }
  if (!alwaysLeaves(acts))
    problems_.add(scene.place, "the chain scene \"" + scene.name +
                                   "\" does not say where it goes on; end it with @go SCENE.");
}

void SceneReader::openList(Scene& scene, const Line& line) {
  StepList list;
  list.place = placeOf(line);
  if (line.command == "when") {
    const std::optional<Condition> condition =
        parseCondition(line.rest, story_, list.place, problems_);
    list.condition = condition ? condition->code : "false";
    list.words = line.rest;
    if (condition) list.registers = condition->registers;
  } else {
    nothingBehind(line);
  }
  const bool first = scene.lists.empty();
  if (!first && scene.lists.front().condition.empty() && !scene.lists.front().steps.empty())
    problem(line, "steps stand before the first @when of this scene; put them into the parts.");
  else if (!first && scene.lists.back().condition.empty())
    problem(line, "nothing can follow the part @otherwise; put it last.");
  else if (first && list.condition.empty())
    problem(line, "@otherwise needs an @when before it.");
  scene.lists.push_back(std::move(list));
  closeStep();
  leftAt_ = 0;
  toldLeft_ = false;
}

void SceneReader::readSteps(Scene& scene) {
  closeStep();
  leftAt_ = 0;
  toldLeft_ = false;
  while (!sceneEnds()) {
    const Line& line = here();
    if (line.kind == Line::Kind::Command &&
        (line.command == "when" || line.command == "otherwise")) {
      openList(scene, line);
      ++at_;
    } else if (line.kind == Line::Kind::Command && line.command == "step") {
      nothingBehind(line);
      closeStep();
      ++at_;
    } else {
      std::vector<Act> acts;
      readAct(acts, 0);
      for (Act& act : acts)
        add(scene, std::move(act));
    }
  }
  checkLists(scene);
}

void SceneReader::add(Scene& scene, Act act) {
  if (leftAt_ > 0) {
    if (!toldLeft_)
      problems_.add(act.place, "nothing is reached behind line " + std::to_string(leftAt_) +
                                   ", where the scene leaves; remove this or begin a new scene.");
    toldLeft_ = true;
    return;
  }
  if (scene.lists.empty()) scene.lists.push_back({.place = scene.place});
  std::vector<Step>& steps = scene.lists.back().steps;
  const bool ownStep = act.kind == Act::Kind::SavePoint || act.kind == Act::Kind::SaveOffer;
  if (!stepOpen_ || ownStep) steps.emplace_back();
  stepOpen_ = true;
  const bool leaves = alwaysLeaves(act);
  if (leaves) leftAt_ = act.place.line;
  steps.back().push_back(std::move(act));
  if (ownStep || leaves || waitsOf(steps.back()) > 0) closeStep();
}

void SceneReader::checkLists(const Scene& scene) {
  if (scene.lists.empty()) {
    problems_.add(scene.place, "the scene \"" + scene.name + "\" is empty; end it with @go SCENE.");
    return;
  }
  for (const StepList& list : scene.lists) {
    const bool leaves = !list.steps.empty() && alwaysLeaves(list.steps.back());
    if (leaves) continue;
    const std::string what = list.condition.empty() && scene.lists.size() == 1
                                 ? "the scene \"" + scene.name + "\""
                                 : "this part of the scene \"" + scene.name + "\"";
    problems_.add(list.place, what +
                                  " does not say where it goes on; end it with @go SCENE, "
                                  "@choose or @places.");
  }
  if (!scene.lists.back().condition.empty())
    problems_.add(scene.lists.back().place,
                  "when no @when of this scene holds, it has no way on; end it with a part "
                  "@otherwise.");
  checkListRegisters(scene);
}

namespace {

/// Calls `see` with every statement that writes a register.
template <typename See>
void eachCall(const std::vector<Act>& acts, const See& see) {
  for (const Act& act : acts) {
    if (act.kind == Act::Kind::Call) see(act);
    for (const Branch& branch : act.branches)
      eachCall(branch.acts, see);
  }
}

}  // namespace

// The step number is shared by all parts: a part that changes what chose it would go on in the
// middle of another.
void SceneReader::checkListRegisters(const Scene& scene) {
  for (const StepList& asked : scene.lists) {
    for (const int number : asked.registers) {
      const std::string target = "Reg(" + std::to_string(number) + ")";
      for (const StepList& list : scene.lists) {
        for (const Step& step : list.steps) {
          eachCall(step, [&](const Act& act) {
            if (act.code.find(target) != std::string::npos)
              problems_.add(act.place, "register " + std::to_string(number) +
                                           " chooses the part of this scene that runs (@when " +
                                           asked.words + "); change it in another scene.");
          });
        }
      }
    }
  }
}

void SceneReader::nothingBehind(const Line& line) {
  if (!trim(line.rest).empty())
    problem(line, "\"" + std::string(trim(line.rest)) + "\" behind @" + line.command +
                      " is not understood; remove it.");
}

bool SceneReader::targetOf(std::string_view text, const Line& line, std::string& target) {
  std::string_view rest;
  target = firstWord(text, rest);
  if (target.empty()) {
    problem(line, "the scene to go on with is missing; write its name.");
    return false;
  }
  if (!rest.empty())
    problem(line,
            "\"" + std::string(rest) + "\" behind the scene's name is not understood; remove it.");
  if (target != "END" && !isSceneName(target) && !isEngineScene(target)) {
    problem(line, "\"" + target + "\" is no name of a scene; name a scene, or END.");
    return false;
  }
  return true;
}

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
  act.branches.push_back({.condition = condition ? condition->code : "false", .acts = {}});
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
      act.branches.push_back({.condition = condition ? condition->code : "false", .acts = {}});
    } else {
      problem(line, "write @else, or @else if CONDITION.");
      act.branches.push_back({});
    }
  }
}

bool SceneReader::readAct(std::vector<Act>& acts, int depth) {
  const Line& line = here();
  const bool chain = scene_->form == Scene::Form::Chain;
  if (line.kind == Line::Kind::Blank) {
    ++at_;
    return false;
  }
  const char* const NoSteps =
      "a chain scene only decides where to go on; make it a @scene to show or say something.";
  if (line.kind == Line::Kind::Text) {
    if (chain) problem(line, NoSteps);
    Act message = readMessage();
    if (!chain) acts.push_back(std::move(message));
    return true;
  }
  const std::string& name = line.command;
  if (name == "cpp") {
    acts.push_back(readCpp());
    return true;
  }
  if (name == "if") {
    acts.push_back(readIf(depth));
    return true;
  }
  ++at_;
  if (name == "go" || name == "leave") {
    readGo(line, acts);
    return true;
  }
  Act act{.place = placeOf(line)};
  if (name == "choose" || name == "places") {
    const bool places = name == "places";
    act.kind = places ? Act::Kind::Places : Act::Kind::Choose;
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
  } else if (name == "click") {
    act.kind = Act::Kind::Click;
    act.code = clickOf(line);
  } else if (name == "save-point" || name == "save-offer") {
    act.kind = name == "save-point" ? Act::Kind::SavePoint : Act::Kind::SaveOffer;
    nothingBehind(line);
  } else {
    const CommandForm* form = findCommand(name);
    if (!form) {
      static const char* const Misplaced[] = {"else", "end", "when", "otherwise", "step"};
      const bool known = std::any_of(std::begin(Misplaced), std::end(Misplaced),
                                     [&](const char* word) { return name == word; });
      if (known)
        problem(line, "@" + name + " has no place here.");
      else
        problem(line, "there is no command \"@" + name + "\"." +
                          suggestion(name, allCommandNames(),
                                     " docs/scene-language.md lists the commands."));
      return true;
    }
    act.code = statementOf(*form, line.rest, story_, act.place, problems_, act.comment);
    if (form->usesFilm) scene_->hasFilm = true;
    if (chain && !form->inChain) {
      problem(line, NoSteps);
      return true;
    }
    acts.push_back(std::move(act));
    return true;
  }
  if (chain)
    problem(line, NoSteps);
  else
    acts.push_back(std::move(act));
  return true;
}

}  // namespace

void parseSceneFile(std::string_view bytes, int file, Story& story, Problems& problems) {
  SceneReader(bytes, file, story, problems).read();
}

}  // namespace qv::scenec
