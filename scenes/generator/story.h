#pragma once

/// A story as the generator holds it: scenes of steps of acts, checked line by line and ready to be
/// written as C++. Texts are UTF-8 that Shift-JIS can say.

#include <map>
#include <string>
#include <vector>

#include "scenes/generator/problems.h"

namespace qv::scenec {

struct Act;

struct Branch {
  std::string condition{};       ///< C++; empty: the last branch, taken when no other is
  std::string words{};           ///< the condition as it was written
  std::vector<int> registers{};  ///< that the condition reads
  Place place{};
  std::vector<Act> acts;  // no initialiser: it would need Act whole
};

/// A choice or a place with the scene it leads to.
struct Option {
  std::string text{};
  std::string target{};
  Place place{};
};

struct Act {
  enum class Kind {
    Call,     ///< `code` is a C++ statement
    Cpp,      ///< `lines` are the writer's own C++
    Message,  ///< `speaker` (the tag), `voice` or empty, `lines`; `code` holds the wait
    Click,    ///< a wait alone; `code` holds its arguments
    If,       ///< `branches`
    Go,       ///< `options[0].target`
    Choose,   ///< `options`
    Places,   ///< `code` holds the group, `options` the places in order
    SavePoint,
    SaveOffer,
  };
  Kind kind = Kind::Call;
  Place place{};
  std::string code{};
  std::string command{};                 ///< of a Call: its word, without the sign
  std::vector<std::string> arguments{};  ///< of a Call: its words as they were written
  std::string comment{};  ///< the text that `code` holds as bytes, for who reads the C++
  std::string speaker{}, voice{};
  std::vector<std::string> lines{};
  std::vector<Branch> branches{};
  std::vector<Option> options{};
};

using Step = std::vector<Act>;

/// A list of steps; a scene has one, or several under conditions of which the first true one runs.
struct StepList {
  std::string condition{};       ///< C++; empty: always
  std::string words{};           ///< the condition as it was written
  std::vector<int> registers{};  ///< that the condition reads
  Place place{};
  std::vector<Step> steps{};
};

struct Scene {
  enum class Form { Steps, Chain, Handwritten };
  std::string name{};
  Form form = Form::Steps;
  Place place{};
  bool chapter = true;            ///< a chain scene may go without SetChapter
  bool hasFilm = false;           ///< uses the film's clock
  std::vector<Option> ways{};     ///< where a hand-written scene leads, as the writer says
  std::vector<StepList> lists{};  ///< a chain scene has one of one step
};

/// A speaker of story.txt. One stands for several rows of the table: see tablesCode.
struct SpeakerData {
  std::string name{}, tag{};
  std::string shown{}, printed{};  ///< empty: by the rule
  int speakerClass = 0;
  bool plain = true;  ///< the tag is the name's own
  Place place{};
};

struct MouthData {
  std::string speaker{}, file{};  ///< no file: the speaker stands there without a mouth
  int slot = 1, x = 0, y = 0, key = -2;
};

/// A figure, or a picture with the mouths in it.
struct PictureData {
  std::string name{}, file{};
  std::string speaker{};  ///< a figure's
  int x = 0, y = 0;
  std::vector<MouthData> mouths{};
  Place place{};
};

struct Story {
  std::string application = "Vorlane";
  std::string firstScene = "sc_menu";
  Place firstPlace;
  bool bare = false;                            ///< without the standing objects
  std::map<std::string, std::string> speakers;  ///< name in the texts to tag
  std::vector<SpeakerData> speakerData{};       ///< those of story.txt, in its order
  std::vector<PictureData> sprites{}, pictures{};
  std::string familyName{}, givenName{};  ///< the hero's on a first start
  std::map<std::string, int> registers;   ///< names of registers
  std::vector<std::string> heroines{};    ///< names that affection knows, in order
  std::vector<Scene> scenes{};
  std::vector<Act> globals{};  ///< C++ outside of scenes
};

/// True for the names that a story may give its scenes: "sc" and six digits with route and
/// sub-scene, or "sc_" and a word.
bool isSceneName(const std::string& name);
/// The digits and route that SetChapter takes, as "050102n"; empty for names without a number.
std::string chapterOf(const std::string& name);
/// Scenes that every story has without writing them.
bool isEngineScene(const std::string& name);

/// Calls `see` with every act of the list and of the branches in it.
template <typename See>
void eachAct(const std::vector<Act>& acts, const See& see) {
  for (const Act& act : acts) {
    see(act);
    for (const Branch& branch : act.branches)
      eachAct(branch.acts, see);
  }
}
template <typename See>
void eachAct(const Scene& scene, const See& see) {
  for (const StepList& list : scene.lists)
    for (const Step& step : list.steps)
      eachAct(step, see);
}

/// True when nothing behind the act can be reached.
bool alwaysLeaves(const Act& act);
bool alwaysLeaves(const std::vector<Act>& acts);
/// The most waits for the player on any way through.
int waitsOf(const std::vector<Act>& acts);

}  // namespace qv::scenec
