#include "audio/scene/scene_sounds.h"

#include <string_view>

#include "audio/scene/sound_tables.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr uint32_t FadeMillis = 3000, Looping = 1;
constexpr std::string_view FadeOutName = "FADEOUT", FadeInMode = "FADEIN";
/// In SeLoopRegister, while no effect is noted.
constexpr int32_t NoEffect = 9999;
/// From here codes stand for two rows, and a load brings neither back.
constexpr int32_t LastRestoredCode = 59;

}  // namespace

bool SceneSounds::musicIsOn() {
  return channels_.hasMidiDevice() && manager_.SysReg(BgmEnabled) != 0;
}

void SceneSounds::setBgm(int32_t number) {
  manager_.Reg(BgmCurrentRegister) = number;
  manager_.Reg(BgmLastRegister) = number;
}

void SceneSounds::playBgm(const char* name, const char* mode) {
  const int32_t number = songNumber(name);
  if (!musicIsOn()) {
    // The last song is left alone when a name ends it: switched on again, it is heard again.
    if (number == 0)
      manager_.Reg(BgmCurrentRegister) = 0;
    else if (manager_.Reg(BgmCurrentRegister) != number)
      setBgm(number);
    return;
  }
  if (name && name == FadeOutName)
    channels_.fadeOutSong(FadeMillis);
  else if (number == 0)
    channels_.stopSong();
  else if (manager_.Reg(BgmCurrentRegister) != number)
    startSong(number, mode);
  setBgm(number);
}

void SceneSounds::startSong(int32_t number, const char* mode) {
  channels_.stopSong();
  const std::string file = songFile(number, manager_.SysReg(MidiDeviceKind));
  if (file.empty()) return;
  if (!mode)
    channels_.playSong(file, Looping);
  else if (mode == FadeInMode)
    channels_.fadeInSong(file, FadeMillis);
}

void SceneSounds::restoreBgm() {
  if (!musicIsOn()) return;
  channels_.stopSong();
  const int32_t number = manager_.Reg(BgmLastRegister);
  manager_.Reg(BgmCurrentRegister) = number;
  const std::string file = songFile(number, manager_.SysReg(MidiDeviceKind));
  if (!file.empty())
    channels_.playSong(file, Looping);
  else if (number < 1 || number > SongCount)
    channels_.stopSong();
}

void SceneSounds::setSe(int32_t code, int32_t loops) {
  manager_.Reg(SeCurrentRegister) = code;
  manager_.Reg(SeLoopRegister) = loops;
}

void SceneSounds::playSe(const char* name, int32_t loops) {
  if (manager_.SysReg(SkipMode) != 0 || manager_.SysReg(SoundEffectsEnabled) == 0) return;
  const SoundEffect* effect = findSoundEffect(name);
  channels_.stopWave();
  if (effect) channels_.playWave(fileOf(*effect), static_cast<uint32_t>(loops));
  setSe(effect ? effect->code : 0, effect ? loops : NoEffect);
}

void SceneSounds::restoreSe() {
  const int32_t code = manager_.Reg(SeCurrentRegister);
  if (code == 0 || manager_.Reg(SeLoopRegister) != 0) return;
  if (code >= 1 && code <= LastRestoredCode) playSe(effectKey(code).c_str(), 0);
}

void SceneSounds::stopSe() {
  channels_.stopWave();
  setSe(0, NoEffect);
}

}  // namespace qv
