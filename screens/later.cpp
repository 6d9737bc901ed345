// Commands of scenes whose screens and effects do not exist yet. Each leaves in the registers what
// it will leave there then, and shows nothing.

#include <string_view>

#include "audio/scene/commands.h"
#include "graphics/scene/commands.h"
#include "graphics/scene/picture_registers.h"
#include "message/commands.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "screens/commands.h"

namespace qv {

namespace {

constexpr int32_t AutomaticSave = 5, DayParts = 3;
constexpr int32_t LastPreviewChapter = 5;

/// What stands on the screen is no line, and nothing of it is skipped.
void endSkip() {
  SysReg(SkipMode) = 0;
  Reg(PendingCodeRegister) = 0;
}

/// The next wait brings the window of messages back.
void noteHiddenWindow() {
  Reg(MessageHiddenRegister) = 1;
}

}  // namespace

// The window of messages stands again behind these.
void QuakeEffect(int32_t, int32_t, int32_t, int32_t) {}
void FlashRed(int32_t) {}

void SpecialEffect(int32_t code) {
  constexpr int32_t PictureRun = 0x206, Falling = 0x8020, Sinking = 0x10601, Scroll = 0x18440,
                    Lightning = 0x33072, ScrollPicture = 219;
  if (!theScenario) return;
  const bool effects = SysReg(EffectsEnabled) != 0;
  switch (code) {
    case PictureRun:
      if (!effects) return;
      noteHiddenWindow();
      TitleCommand("P55");
      return;
    case Falling:
      noteHiddenWindow();
      PlayBgm(nullptr, nullptr);
      for (const char* picture : {"KEV102", "KEV103", "BLACK"})
        EventCommand(picture);
      StopSe();
      return;
    case Sinking:
      if (!effects) return;
      noteHiddenWindow();
      BgCommand("BLACK");
      return;
    case Scroll:
      if (!effects) return;
      noteHiddenWindow();
      SetSeenPicture(ScrollPicture);
      EventCommand("KEV405b");
      return;
    case Lightning:
      noteHiddenWindow();
      return;
    default:
      return;
  }
}

void FlashbackTint() {
  if (theScenario) noteHiddenWindow();
}

void FlashbackEnd() {}

void ChapterCards(int32_t chapter, int32_t) {
  // The third one's card comes while the last sound of its chapter still sounds.
  constexpr int32_t WithSound = 3, FirstCard = 1, LastCard = 6;
  if (!theScenario) return;
  PlayBgm(nullptr, nullptr);
  if (chapter >= FirstCard && chapter <= LastCard && chapter != WithSound) StopSe();
  noteHiddenWindow();
  BgCommand("BLACK");
  endSkip();
}

void ChapterCatch(int32_t, int32_t) {
  if (theScenario) noteHiddenWindow();
}

void ChapterPreview(int32_t chapter, int32_t) {
  if (!theScenario) return;
  PlayBgm(chapter == LastPreviewChapter ? "K16" : "K15", nullptr);
  noteHiddenWindow();
  BgCommand("BLACK");
  PlayBgm("FADEOUT", nullptr);
  endSkip();
}

void PictureRunFirst() {
  if (!theScenario) return;
  noteHiddenWindow();
  TitleCommand("KEV60219");
}

// Until there is a ring to turn, the group's first place is taken, and no group remembers it.
int32_t LocationRing(const char*, const char*, const char*, const char*, const char*, const char*,
                     const char*, const char*) {
  if (!theScenario) return 0;
  noteHiddenWindow();
  endSkip();
  return 0;
}

void AutoSave(const char* word) {
  if (!theScenario || !word || std::string_view(word) != "SAVE") return;
  Reg(SaveActionRegister) = AutomaticSave;
  noteHiddenWindow();
  BgCommand("BLACK");
  for (int32_t part = 0; part < DayParts; ++part)
    SetSysReg(AutoSlotInfo + part, Reg(ChapterRegister + part), 1);
  Reg(SavedStateRegister) = 1;
}

void ShowCalendar(int32_t month, int32_t day) {
  if (!theScenario) return;
  StopSe();
  PlayBgm(nullptr, nullptr);
  noteHiddenWindow();
  endSkip();
  Reg(CalendarMonthRegister) = month;
  Reg(CalendarDayRegister) = day;
}

void OpeningFilm(timekeeper&) {}

}  // namespace qv
