// Files that scenes name, and the ones that the engine loads for every story.

#include <algorithm>
#include <optional>

#include "audio/scene/sound_tables.h"
#include "platform/text/shift_jis.h"
#include "scenes/generator/text.h"
#include "tools/story/engine_files.h"
#include "tools/story/shown_files.h"
#include "tools/story/story_checks.h"

namespace qv::story {

using scenec::Act;
using scenec::Place;
using scenec::Problems;
using scenec::Scene;
using scenec::Story;

namespace {

constexpr const char* PlainPictures[] = {"BLACK", "WHITE", "RED", "BLUE"};

/// What a command shows and plays by itself: pictures that it leaves as the scene's, which a load
/// shows again, and songs. Of one command and argument there may be several rows.
struct OwnFiles {
  static constexpr long AnyOther = -1;  ///< arguments that no other row of the command has
  const char* command;
  long argument;        ///< the first one
  const char* picture;  ///< null: none
  const char* song = nullptr;
};
constexpr OwnFiles CommandFiles[] = {
    {"special", 0x8020, "KEV102"},          {"special", 0x8020, "KEV103"},
    {"special", 0x8020, "BLACK"},           {"special", 0x206, "P55"},
    {"special", 0x18440, "KEV405b"},        {"picture-run", OwnFiles::AnyOther, "KEV60219"},
    {"chapter-preview", 5, nullptr, "K16"}, {"chapter-preview", OwnFiles::AnyOther, nullptr, "K15"},
};

class FileCheck {
 public:
  FileCheck(const GameFiles& files, Problems& problems) : files_(files), problems_(problems) {}

  void read(const Scene& scene) {
    eachAct(scene, [&](const Act& act) {
      place_ = act.place;
      if (act.kind == Act::Kind::Message) voice(act.voice);
      if (act.kind == Act::Kind::Call && !act.code.empty()) call(act);
    });
  }

  void engine() {
    place_ = {};
    for (const char* name : engineFiles())
      need(name, "the engine loads " + nameInGame(name) + " for every story");
  }

 private:
  void need(const std::string& path, const std::string& what) {
    if (!files_.has(nameInGame(path)))
      problems_.add(place_, what + ", and the game has no file " + nameInGame(path) + ".");
  }
  void picture(const std::string& name, const char* what = "picture") {
    need("cg\\" + name + ".mcg", std::string("this shows the ") + what + " " + name);
  }
  void voice(const std::string& id) {
    if (!id.empty()) need("%:\\VOICE\\" + id + ".wav", "this line speaks with the voice " + id);
  }

  void call(const Act& act) {
    struct Entry {
      const char* command;
      void (FileCheck::*check)(const Act& act);
    };
    static constexpr Entry Entries[] = {
        {"bg", &FileCheck::background},  {"event", &FileCheck::event},
        {"title", &FileCheck::title},    {"sprite", &FileCheck::figure},
        {"sprite-kzc", &FileCheck::kzc}, {"sprite-kyc", &FileCheck::kyc},
        {"sprite-kxs", &FileCheck::kxs}, {"bgm", &FileCheck::song},
        {"se", &FileCheck::effect},      {"wave", &FileCheck::file},
        {"draw", &FileCheck::file},
    };
    ownFiles(act);
    for (const Entry& entry : Entries)
      if (act.command == entry.command && !act.arguments.empty()) (this->*entry.check)(act);
  }

  void ownFiles(const Act& act) {
    const std::optional<long> given =
        act.arguments.empty() ? std::nullopt : scenec::number(act.arguments[0]);
    const auto is = [&](const OwnFiles& row) {
      return act.command == row.command && given == row.argument;
    };
    const bool known = std::ranges::any_of(CommandFiles, is);
    for (const OwnFiles& row : CommandFiles) {
      if (!(known ? is(row) : act.command == row.command && row.argument == OwnFiles::AnyOther))
        continue;
      if (row.picture) picture(row.picture);
      if (row.song) songNamed(row.song);
    }
  }

  void background(const Act& act) {
    for (const char* plain : PlainPictures)
      if (act.arguments[0] == plain) return;
    picture(act.arguments[0]);
  }

  void event(const Act& act) { shown(filesOfStill(act.arguments[0], eventNames())); }
  void title(const Act& act) { shown(filesOfStill(act.arguments[0], titleNames())); }

  void shown(const ShownFiles& files) {
    picture(files.picture);
    for (const std::string& mouth : files.mouths)
      picture(mouth, "mouth");
  }

  void figure(const Act& act) { figure(act.arguments[0], filesOfFigure(act.arguments[0])); }
  void figure(const std::string& name, const std::optional<ShownFiles>& files) {
    if (files) return shown(*files);
    problems_.add(place_, "the figure " + name +
                              " has no row, so that nobody would appear; write @figure " + name +
                              " of SPEAKER at X Y in story.txt.");
  }

  void kzc(const Act& act) { variant(act, FamilyKZC, {"KUC"}, false); }
  void kyc(const Act& act) { variant(act, FamilyKYC, {"KUC"}, false); }
  void kxs(const Act& act) { variant(act, FamilyKXS, {"KUS012", "KUS082"}, true); }
  void variant(const Act& act, const SpriteFamily& family, const std::vector<std::string>& accepted,
               bool whole) {
    const std::string& name = act.arguments[0];
    bool takes = false;
    std::string all;
    for (const std::string& start : accepted) {
      takes = takes || (whole ? name == start : scenec::startsWith(name, start));
      all += (all.empty() ? "" : " and ") + start;
    }
    if (takes) return figure(name, filesOfVariant(name, family));
    problems_.add(place_, "@" + act.command + " knows figures of " + all + " alone, and not " +
                              name + "; nobody would appear.");
  }

  static bool isWord(const std::string& word, std::initializer_list<const char*> words) {
    for (const char* known : words)
      if (scenec::narrow(word) == known) return true;
    return false;
  }

  // Songs and effects that no table knows have been refused with the text.
  void song(const Act& act) {
    if (!isWord(act.arguments[0], {"fadeout", "stop"})) songNamed(act.arguments[0]);
  }
  void songNamed(const std::string& name) {
    const int32_t number = songNumber(name.c_str());
    for (int32_t kind = FirstDeviceKind; kind <= LastDeviceKind; ++kind) {
      const std::string file = songFile(number, kind);
      if (files_.has(nameInGame(file))) continue;
      need(file, "this plays the song " + name);
      return;  // one of the five tells enough
    }
  }

  void effect(const Act& act) {
    const std::string& name = act.arguments[0];
    if (isWord(name, {"stop"})) return;
    if (const SoundEffect* found = findSoundEffect(sjis(name.c_str()).c_str()))
      need(fileOf(*found), "this plays the effect " + name);
  }

  void file(const Act& act) { need(act.arguments[0], "this takes the file " + act.arguments[0]); }

  const GameFiles& files_;
  Problems& problems_;
  Place place_;
};

}  // namespace

void checkFiles(const Story& story, const GameFiles& files, Problems& problems) {
  const RowsInPlace rows(story);
  FileCheck check(files, problems);
  if (!story.bare) check.engine();
  for (const Scene& scene : story.scenes)
    check.read(scene);
}

}  // namespace qv::story
