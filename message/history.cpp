#include "message/history.h"

#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

// The last entry is a scratch place that is kept empty, so that the scan always ends.
constexpr int32_t Scratch = HistoryLength - 1;

QVString& nameOf(int32_t entry) {
  return theScenario->StrReg(HistoryNames + entry);
}

QVString& messageOf(int32_t entry) {
  return theScenario->StrReg(HistoryMessages + entry);
}

}  // namespace

void AddHistory(const char* text) {
  if (!theScenario || !text) return;
  nameOf(Scratch).clear();
  messageOf(Scratch).clear();
  int32_t entry = 0;
  while (nameOf(entry).length() != 0)
    ++entry;
  if (entry >= Scratch) {
    for (int32_t next = 1; next <= Scratch; ++next) {
      nameOf(next - 1) = nameOf(next);
      messageOf(next - 1) = messageOf(next);
    }
    entry = Scratch - 1;
  }
  nameOf(entry).create(QVString::DefaultGrain, theScenario->StrReg(SpeakerName).text());
  messageOf(entry).create(QVString::DefaultGrain, text);
}

}  // namespace qv
