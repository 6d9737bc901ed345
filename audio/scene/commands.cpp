#include "audio/scene/commands.h"

#include "audio/scene/scene_sounds.h"
#include "foundation/diagnostic.h"
#include "platform/display/key_codes.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

static_assert(WaitForSong == ChannelMidi && WaitForWave == ChannelWave);

namespace {

constexpr int32_t VoicePauseTenths = 10;
constexpr uint32_t TenthMillis = 100, WavePollMillis = 200;
constexpr int32_t LastRegion = 255, InputKey = 2048;

class ManagerChannels : public SoundChannels {
 public:
  explicit ManagerChannels(QVScenario& manager) : manager_(manager) {}
  bool hasMidiDevice() override { return manager_.MidiDeviceCaps(nullptr) == 1; }
  void playSong(const std::string& file, uint32_t loop) override {
    manager_.PlayMidi(file.c_str(), static_cast<int32_t>(loop));
  }
  void fadeInSong(const std::string& file, uint32_t millis) override {
    manager_.FadeInSound(ChannelMidi, file.c_str(), millis);
  }
  void fadeOutSong(uint32_t millis) override { manager_.FadeOutSound(ChannelMidi, millis); }
  void stopSong() override { manager_.StopSound(ChannelMidi); }
  void playWave(const std::string& file, uint32_t loops) override {
    manager_.PlayWave(file.c_str(), loops, 1, nullptr);
  }
  void stopWave() override { manager_.StopSound(ChannelWave); }

 private:
  QVScenario& manager_;
};

/// Runs one of the rules on the game's players; nothing while there is no game.
template <typename... Parameters, typename... Arguments>
void withSounds(void (SceneSounds::*rule)(Parameters...), Arguments... arguments) {
  if (!theScenario) return;
  ManagerChannels channels(*theScenario);
  (SceneSounds(*theScenario, channels).*rule)(arguments...);
}

bool systemVoiceIsOn() {
  return theScenario->SysReg(SpeakerVoiceFirst) == 1 && theScenario->SysReg(VoiceEnabled) == 1;
}

bool isClick(int32_t code) {
  return (code >= 0 && code <= LastRegion) || code == InputKey + KeyReturn ||
         code == InputKey + KeySpace;
}

/// Other input neither ends the wait nor lengthens it.
void waitForClick(int32_t tenths) {
  const uint32_t start = tickCount();
  const uint32_t limitMillis = scaledMillis(tenths, TenthMillis);
  for (int32_t left = tenths;;) {
    const int32_t code = theScenario->WaitInput(nullptr, left);
    if (code == WaitInputTimeout || isClick(code)) return;
    if (code == WaitInputFailed && Thread::terminationRequested()) throw ExitScenarioException();
    if (tenths < 0) continue;
    const uint32_t gone = tickCount() - start;
    if (gone >= limitMillis) return;
    left = static_cast<int32_t>((limitMillis - gone + TenthMillis - 1) / TenthMillis);
  }
}

/// Never raises: what stands behind it does.
void waitForWave() {
  while (theScenario->IsSoundPlaying(ChannelWave))
    if (theScenario->host()->abortEvent.wait(WavePollMillis) != WaitTimeout) break;
  theScenario->StopSound(ChannelWave);
}

}  // namespace

void PlayBgm(const char* name, const char* mode) {
  withSounds(&SceneSounds::playBgm, name, mode);
}

void RestoreBgm() {
  withSounds(&SceneSounds::restoreBgm);
}

void PlaySe(const char* name, int32_t loops) {
  withSounds(&SceneSounds::playSe, name, loops);
}

void RestoreSe() {
  withSounds(&SceneSounds::restoreSe);
}

void StopSe() {
  withSounds(&SceneSounds::stopSe);
}

void WaitSe(int32_t tenths) {
  if (!theScenario || !theScenario->host()) return;
  if (theScenario->SysReg(SkipMode) != 0 || theScenario->SysReg(SoundEffectsEnabled) != 1) return;
  waitForClick(tenths != 0 ? tenths : InputForever);
}

void PlayWave(const char* file, int32_t loops, int32_t stopFirst, const char* area) {
  if (theScenario) theScenario->PlayWave(file, static_cast<uint32_t>(loops), stopFirst, area);
}

void PlaySystemVoice(const char* file) {
  if (theScenario && systemVoiceIsOn()) theScenario->PlayWave(file, 1, 1, nullptr);
}

void WaitSound(int32_t tenths) {
  if (theScenario) theScenario->WaitSound(tenths);
}

void WaitVoiceThenPause() {
  if (!theScenario || !theScenario->host()) return;
  waitForWave();
  theScenario->WaitSound(VoicePauseTenths);
}

void WaitVoiceOrPause(int32_t tenths) {
  if (!theScenario) return;
  if (systemVoiceIsOn())
    WaitVoiceThenPause();
  else
    theScenario->WaitSound(tenths);
}

}  // namespace qv
