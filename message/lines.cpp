#include "message/lines.h"

#include <string>

#include "audio/scene/commands.h"
#include "message/commands.h"
#include "message/line_voice.h"
#include "message/pending_text.h"
#include "message/speakers.h"
#include "message/text_areas.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char *VoiceFolder = "%:\\VOICE\\", *VoiceEnding = ".wav";
constexpr int32_t PlayOnce = 1, CutFirst = 1, TakeBackup = 1, Restore = 1;
constexpr int32_t NoSoundEffect = 0, NoEffectLoop = 9999;
constexpr int32_t SlotStride = 10;

std::string mouthArea(int slot) {
  return "CG_AREA0" + std::to_string(slot) + "_MOUTH";
}

MouthSlots mouthSlots() {
  MouthSlots slots;
  for (int slot = 0; slot < MouthSlotCount; ++slot) {
    const int32_t first = Slot0SpeakerRegister + slot * SlotStride;
    slots[static_cast<size_t>(slot)] = {theScenario->Reg(first), theScenario->Reg(first + 1)};
  }
  return slots;
}

LineSettings settingsOf(int32_t speakerClass, bool hasVoice) {
  const int32_t number = voiceSwitchOf(speakerClass);
  return {.hasVoice = hasVoice,
          .hasSwitch = number != 0,
          .switchedOn = number != 0 && theScenario->SysReg(number) == 1,
          .voiceEnabled = theScenario->SysReg(VoiceEnabled) != 0,
          .skip = theScenario->SysReg(SkipMode) != 0};
}

/// A trace is one line an entry.
std::string oneLine(std::string text) {
  size_t at = 0;
  while ((at = text.find('\n', at)) != std::string::npos)
    text.replace(at, 1, "\\n");
  return text;
}

void playVoice(const std::string& file, int mouthSlot) {
  const std::string area = mouthSlot == NoMouthSlot ? std::string() : mouthArea(mouthSlot);
  PlayWave(file.c_str(), PlayOnce, CutFirst, area.empty() ? nullptr : area.c_str());
  theScenario->Reg(VoiceRunningRegister) = 1;
  // Voices and effects share the one wave player.
  theScenario->Reg(SeCurrentRegister) = NoSoundEffect;
  theScenario->Reg(SeLoopRegister) = NoEffectLoop;
}

bool silentMouthRuns(int32_t& slot) {
  slot = theScenario->Reg(MouthRunningRegister);
  return slot >= 0 && slot < MouthSlotCount;
}

}  // namespace

void SpeakLine(const char* speaker, const char* voice) {
  if (!theScenario) return;
  const LineAreas areas;
  areas.home();
  QVString& shown = theScenario->StrReg(SpeakerName);
  shown.clear();
  theScenario->StrReg(MessageAccumulator).clear();
  const Speaker who = speakerOf(speaker ? speaker : "", theScenario->StrReg(HeroGivenName).view());
  shown.create(QVString::DefaultGrain, who.shown.c_str());
  if (who.printed && areas.name) areas.name->printText(who.printed->c_str());
  if (who.ends) {
    theScenario->Reg(SpeakerOnScreenRegister) = 0;
    return;
  }
  theScenario->Reg(MouthRunningRegister) = NoMouthRuns;
  const bool hasVoice = voice && *voice;
  const LineVoice line =
      voiceOfLine(who.speakerClass, settingsOf(who.speakerClass, hasVoice), mouthSlots());
  theScenario->Reg(SpeakerOnScreenRegister) = line.speakerOnScreen ? 1 : 0;
  if (line.plays) {
    playVoice(std::string(VoiceFolder) + voice + VoiceEnding, line.mouthSlot);
  } else if (line.mouthSlot != NoMouthSlot) {
    theScenario->ShowArea(mouthArea(line.mouthSlot).c_str(), TakeBackup);
    theScenario->Reg(MouthRunningRegister) = line.mouthSlot;
  }
}

void PrintMessage(const char* text) {
  appendPending(text);
}

void printPending() {
  const std::optional<std::string> text = takePending();
  if (!text) return;
  if (services().trace)
    trace("line",
          oneLine(utf8OfShiftJis(theScenario->StrReg(SpeakerName).view()) + utf8OfShiftJis(*text)));
  if (QVPrintArea* area = LineAreas().message) area->printText(text->c_str());
}

void stopSilentMouth() {
  int32_t slot = NoMouthRuns;
  if (theScenario && silentMouthRuns(slot)) theScenario->HideArea(mouthArea(slot).c_str(), Restore);
}

void stopLineVoice() {
  if (!theScenario) return;
  int32_t slot = NoMouthRuns;
  if (silentMouthRuns(slot)) {
    stopSilentMouth();
  } else if (theScenario->Reg(VoiceRunningRegister) == 1) {
    theScenario->StopSound(ChannelWave);
    theScenario->Reg(VoiceRunningRegister) = 0;
  }
}

}  // namespace qv
