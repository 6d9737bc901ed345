#pragma once

/// The reader of scene texts: scenes of steps in scene_reader.cpp, the acts of a step in
/// act_reader.cpp. It walks the lines once and goes on after every problem.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scenes/generator/lines.h"
#include "scenes/generator/story.h"

namespace qv::scenec {

class SceneReader {
 public:
  SceneReader(std::string_view bytes, int file, Story& story, Problems& problems)
      : lines_(splitLines(bytes)), file_(file), story_(story), problems_(problems) {}

  void read();

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
  void readAct(std::vector<Act>& acts, int depth);
  Act readSelection(const Line& line);
  void readCommand(const Line& line, std::vector<Act>& acts);
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

}  // namespace qv::scenec
