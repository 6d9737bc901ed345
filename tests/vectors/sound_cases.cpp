#include "audio/scene/scene_sounds.h"
#include "audio/scene/sound_tables.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

constexpr std::string_view HexPrefix = "hex:";

void effectTable(Case& given) {
  Json rows = Json::array();
  for (const SoundEffect& effect : soundEffects())
    rows.push_back({effect.key, fileOf(effect), effect.code});
  expectEqual("rows", rows, given["rows"]);
}

void songFiles(Case& given) {
  Json rows = Json::array();
  for (int32_t number = 1; number <= SongCount; ++number) {
    Json files = Json::array();
    for (int32_t kind = FirstDeviceKind; kind <= LastDeviceKind; ++kind)
      files.push_back(songFile(number, kind));
    rows.push_back({number, files});
  }
  expectEqual("rows", rows, given["rows"]);
}

void effectLabels(Case& given) {
  for (const Json& row : given["rows"]) {
    const auto label = row[0].get<std::string>();
    const SoundEffect* effect = findSoundEffect(bytesOfHex(label).c_str());
    expectEqual(label, effect ? Json(effect->key) : Json(), row[1]);
  }
}

/// Notes what is asked of the players, by the manager's names.
class Calls : public SoundChannels {
 public:
  bool hasMidiDevice() override { return device == 1; }
  void playSong(const std::string& file, uint32_t loop) override {
    list.push_back({"PlayMidi", file, loop});
  }
  void fadeInSong(const std::string& file, uint32_t millis) override {
    list.push_back({"FadeInSound", ChannelMidi, file, millis});
  }
  void fadeOutSong(uint32_t millis) override {
    list.push_back({"FadeOutSound", ChannelMidi, millis});
  }
  void stopSong() override { list.push_back({"StopSound", ChannelMidi}); }
  void playWave(const std::string& file, uint32_t loops) override {
    list.push_back({"PlayWave", file, loops, 1, nullptr});
  }
  void stopWave() override { list.push_back({"StopSound", ChannelWave}); }

  int64_t device = 0;
  Json list = Json::array();
};

/// A name in a script: null, plain, or Shift-JIS in hexadecimal.
struct Name {
  explicit Name(const Json& field) {
    if (field.is_null()) return;
    isNull = false;
    text = field.get<std::string>();
    if (text.starts_with(HexPrefix)) text = bytesOfHex(text.substr(HexPrefix.size()));
  }
  const char* orNull() const { return isNull ? nullptr : text.c_str(); }
  bool isNull = true;
  std::string text;
};

void act(const Json& entry, QVScenario& manager, Calls& calls) {
  SceneSounds sounds(manager, calls);
  const auto what = entry[0].get<std::string>();
  if (what == "PlayBgm")
    sounds.playBgm(Name(entry[1]).orNull(), Name(entry[2]).orNull());
  else if (what == "RestoreBgm")
    sounds.restoreBgm();
  else if (what == "PlaySe")
    sounds.playSe(Name(entry[1]).orNull(), static_cast<int32_t>(entry[2].get<int64_t>()));
  else if (what == "RestoreSe")
    sounds.restoreSe();
  else if (what == "StopSe")
    sounds.stopSe();
  else if (what == "set")
    manager.SysReg(entry[1].get<int32_t>()) = static_cast<int32_t>(entry[2].get<int64_t>());
  else if (what == "device")
    calls.device = entry[1].get<int64_t>();
  else
    throw std::runtime_error("\"" + what + "\" is no command");
}

void sequence(Case& given) {
  given.platform();
  QVScenario manager;
  manager.Open("Vorlane", RegisterCount, StringRegisterCount, SystemRegisterCount);
  for (const auto& [number, value] : given["numeric"].items())
    manager.Reg(std::stoi(number)) = static_cast<int32_t>(value.get<int64_t>());
  for (const auto& [number, value] : given["system"].items())
    manager.SysReg(std::stoi(number)) = static_cast<int32_t>(value.get<int64_t>());
  Calls calls;
  calls.device = given.integer("device");
  Json log = Json::array();
  for (const Json& entry : given["script"]) {
    calls.list = Json::array();
    act(entry, manager, calls);
    Json line = Json::array({calls.list});
    for (const int32_t number :
         {BgmCurrentRegister, BgmLastRegister, SeCurrentRegister, SeLoopRegister})
      line.push_back(static_cast<uint32_t>(manager.Reg(number)));
    log.push_back(line);
  }
  expectEqual("log", log, given["log"]);
}

constexpr Kind Kinds[] = {
    {"effect_labels", effectLabels},
    {"effect_table", effectTable},
    {"sequence", sequence},
    {"song_files", songFiles},
};

}  // namespace

std::span<const Kind> soundKinds() {
  return Kinds;
}

}  // namespace qv::vectors
