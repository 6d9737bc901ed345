#include "screens/commands.h"

#include "scenario/commands.h"
#include "scenario/register_numbers.h"

// Screens are shown when they exist; what they leave in registers is theirs already.

namespace qv {

void AskSaveBeforeLeaving() {}
void AutoSave(const char*) {}
void SaveOffer() {}

void ShowCalendar(int32_t month, int32_t day) {
  Reg(CalendarMonthRegister) = month;
  Reg(CalendarDayRegister) = day;
}

void OpeningFilm(timekeeper&) {}

}  // namespace qv
