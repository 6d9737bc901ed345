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

void ChangeParameter(const char*, int32_t) {}
const char* CompareAffection(const char* first, const char*) {
  return first;
}
int32_t AffectionAbove(const char*, int32_t) {
  return 0;
}
void OpeningFilm(timekeeper&) {}

}  // namespace qv
