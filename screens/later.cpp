// Commands of scenes whose screens and effects do not exist yet. Each leaves in the registers what
// it will leave there then, and shows nothing.

#include "audio/scene/commands.h"
#include "graphics/scene/commands.h"
#include "message/commands.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "screens/commands.h"

namespace qv {

void QuakeEffect(int32_t, int32_t, int32_t, int32_t) {}
void FlashRed(int32_t) {}
void SpecialEffect(int32_t) {}
void FlashbackTint() {}
void FlashbackEnd() {}
void ChapterCards(int32_t, int32_t) {}
void ChapterCatch(int32_t, int32_t) {}
void ChapterPreview(int32_t, int32_t) {}
void PictureRunFirst() {}

// Until there is a ring to turn, the place at its front is taken.
int32_t LocationRing(const char*, const char*, const char*, const char*, const char*, const char*,
                     const char*, const char*) {
  return 0;
}

// Until there are saves there is nothing that could be lost.
void AskSaveBeforeLeaving() {}
void AutoSave(const char*) {}
void SaveOffer() {}

void ShowCalendar(int32_t month, int32_t day) {
  StopSe();
  PlayBgm(nullptr, nullptr);
  SetSysReg(SkipMode, 0, 0);
  Reg(PendingCodeRegister) = 0;
  Reg(CalendarMonthRegister) = month;
  Reg(CalendarDayRegister) = day;
}

void OpeningFilm(timekeeper&) {}

}  // namespace qv
