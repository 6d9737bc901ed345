// Files that scenes name, and the ones that the engine loads for every story.

#include <functional>

#include "audio/scene/sound_tables.h"
#include "graphics/scene/picture_tables.h"
#include "platform/text/shift_jis.h"
#include "scenes/generator/text.h"
#include "tools/story/engine_files.h"
#include "tools/story/story_checks.h"

namespace qv::story {

using scenec::Act;
using scenec::PictureData;
using scenec::Place;
using scenec::Problems;
using scenec::Scene;
using scenec::Story;

namespace {

constexpr const char* PlainPictures[] = {"BLACK", "WHITE", "RED", "BLUE"};
// The second mouth of the pair that one picture holds.
constexpr const char *PairPicture = "KUS110", *PairMouth = "Kus110_b";

/// Pictures that an effect leaves as the scene's: a load shows them again.
struct EffectPicture {
  const char *command, *code, *picture;
};
constexpr EffectPicture EffectPictures[] = {
    {"special", "32800", "KEV102"},  {"special", "32800", "KEV103"},
    {"special", "32800", "BLACK"},   {"special", "518", "P55"},
    {"special", "99392", "KEV405b"}, {"picture-run", "", "KEV60219"},
};

class FileCheck {
 public:
  FileCheck(const Story& story, const GameFiles& files, Problems& problems)
      : story_(story), files_(files), problems_(problems) {}

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
    for (const EffectPicture& effect : EffectPictures)
      if (act.command == effect.command &&
          (act.arguments.empty() || scenec::narrow(act.arguments[0]) == effect.code))
        picture(effect.picture);
    for (const Entry& entry : Entries)
      if (act.command == entry.command && !act.arguments.empty()) (this->*entry.check)(act);
  }

  void background(const Act& act) {
    for (const char* plain : PlainPictures)
      if (act.arguments[0] == plain) return;
    picture(act.arguments[0]);
  }

  void event(const Act& act) { still(act.arguments[0], eventNames()); }
  void title(const Act& act) { still(act.arguments[0], titleNames()); }
  /// A row counts only for names of the engine's table.
  void still(const std::string& name, std::span<const NamedFlag> names) {
    std::string shown = name;
    if (findName(names, name)) {
      if (const PictureRow* row = findPictureRow(name)) {
        if (row->file) shown = row->file;
        for (int32_t index = 0; index < row->mouthCount; ++index)
          if (row->mouths[index].file) picture(row->mouths[index].file, "mouth");
      } else if (const PictureData* own = ownRow(story_.pictures, name)) {
        if (!own->file.empty()) shown = own->file;
        for (const scenec::MouthData& mouth : own->mouths)
          if (!mouth.file.empty()) picture(mouth.file, "mouth");
      }
    }
    picture(shown);
  }

  static const PictureData* ownRow(const std::vector<PictureData>& rows, const std::string& name) {
    for (const PictureData& row : rows)
      if (row.name == name) return &row;
    return nullptr;
  }

  struct FigureFiles {
    std::string file, mouth;  ///< no mouth: empty
  };
  std::optional<FigureFiles> figureRow(const std::string& name) {
    if (const SpriteRow* row = findSpriteRow(name))
      return FigureFiles{row->file ? row->file : name, row->mouth ? row->mouth : ""};
    if (const PictureData* row = ownRow(story_.sprites, name))
      return FigureFiles{row->file.empty() ? name : row->file,
                         row->mouths.empty() ? std::string() : row->mouths[0].file};
    problems_.add(place_, "the figure " + name +
                              " has no row, so that nobody would appear; write @figure " + name +
                              " of SPEAKER at X Y in story.txt.");
    return std::nullopt;
  }

  void figure(const Act& act) {
    const std::string& name = act.arguments[0];
    if (isGroupShot(name)) return picture(name);
    const std::optional<FigureFiles> row = figureRow(name);
    if (!row) return;
    picture(row->file);
    if (!row->mouth.empty()) picture(row->mouth, "mouth");
    if (name == PairPicture) picture(PairMouth, "mouth");
  }

  void kzc(const Act& act) { variant(act, FamilyKZC.prefix, {"KUC"}, false); }
  void kyc(const Act& act) { variant(act, FamilyKYC.prefix, {"KUC"}, false); }
  void kxs(const Act& act) { variant(act, FamilyKXS.prefix, {"KUS012", "KUS082"}, true); }
  void variant(const Act& act, const std::string& prefix, const std::vector<std::string>& accepted,
               bool whole) {
    const std::string& name = act.arguments[0];
    bool takes = false;
    std::string all;
    for (const std::string& start : accepted) {
      takes = takes || (whole ? name == start : scenec::startsWith(name, start));
      all += (all.empty() ? "" : " and ") + start;
    }
    if (!takes) {
      problems_.add(place_, "@" + act.command + " knows figures of " + all + " alone, and not " +
                                name + "; nobody would appear.");
      return;
    }
    const std::optional<FigureFiles> row = figureRow(name);
    if (!row) return;
    picture(prefix + name.substr(prefix.size()));
    if (row->mouth.size() > prefix.size())
      picture(prefix + row->mouth.substr(prefix.size()), "mouth");
  }

  static bool isWord(const std::string& word, std::initializer_list<const char*> words) {
    for (const char* known : words)
      if (scenec::narrow(word) == known) return true;
    return false;
  }

  void song(const Act& act) {
    const std::string& name = act.arguments[0];
    if (isWord(name, {"fadeout", "stop"})) return;
    const int32_t number = songNumber(name.c_str());
    if (number == 0) {
      problems_.add(place_, "there is no song " + name + "; songs are K01 to K16.");
      return;
    }
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
    const SoundEffect* found = findSoundEffect(sjis(name.c_str()).c_str());
    if (found)
      need(fileOf(*found), "this plays the effect " + name);
    else
      problems_.add(place_, "there is no effect " + name + "; effects are SE01 to SE61.");
  }

  void file(const Act& act) { need(act.arguments[0], "this takes the file " + act.arguments[0]); }

  const Story& story_;
  const GameFiles& files_;
  Problems& problems_;
  Place place_;
};

}  // namespace

void checkFiles(const Story& story, const GameFiles& files, Problems& problems) {
  FileCheck check(story, files, problems);
  if (!story.bare) check.engine();
  for (const Scene& scene : story.scenes)
    check.read(scene);
}

}  // namespace qv::story
