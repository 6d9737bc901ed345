#include "scenes/generator/scene_reader.h"

#include "scenes/generator/condition.h"
#include "scenes/generator/parser.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

void SceneReader::read() {
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
  const Line& line = here();
  scene.name = sceneNameOf(line);
  std::string_view rest;
  firstWord(line.rest, rest);
  size_t length = 0;
  if (const size_t arrow = findArrow(rest, length); arrow == 0) {
    for (const std::string& target : words(rest.substr(length))) {
      std::string found;
      if (targetOf(target, line, found))
        scene.ways.push_back({.target = found, .place = scene.place});
    }
  } else if (!rest.empty()) {
    problem(line, "write where the scene leads as @handwritten NAME → SCENE SCENE.");
  }
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

// The step number is shared by all parts: a part that changes what chose it would go on in the
// middle of another.
void SceneReader::checkListRegisters(const Scene& scene) {
  for (const StepList& asked : scene.lists) {
    for (const int number : asked.registers) {
      const std::string target = "Reg(" + std::to_string(number) + ")";
      for (const StepList& list : scene.lists) {
        for (const Step& step : list.steps) {
          eachAct(step, [&](const Act& act) {
            if (act.kind == Act::Kind::Call && act.code.find(target) != std::string::npos)
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

void parseSceneFile(std::string_view bytes, int file, Story& story, Problems& problems) {
  SceneReader(bytes, file, story, problems).read();
}

}  // namespace qv::scenec
