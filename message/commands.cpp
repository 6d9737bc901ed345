#include "message/commands.h"

#include <string>

#include "foundation/diagnostic.h"
#include "message/pendant.h"
#include "platform/display/key_codes.h"
#include "platform/kernel/kernel.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

enum WaitMode : int32_t { ModeShowOnly = 1, ModeLoopOnly = 2 };

constexpr int32_t ClickRegion = 10;
constexpr int32_t InputPress = 0, InputKey = 2048;
constexpr int32_t WaitKindClick = 4;
constexpr int32_t MostChoices = 3;
constexpr uint32_t TenthMillis = 100;

/// A trace is one line an entry.
std::string oneLine(std::string text) {
  size_t at = 0;
  while ((at = text.find('\n', at)) != std::string::npos)
    text.replace(at, 1, "\\n");
  return text;
}

void printPending() {
  QVString& pending = theScenario->StrReg(MessagePending);
  if (pending.length() == 0) return;
  const QVString& speaker = theScenario->StrReg(SpeakerName);
  trace("line", oneLine(utf8OfShiftJis(speaker.view()) + utf8OfShiftJis(pending.view())));
  theScenario->StrReg(MessageLast).create(QVString::DefaultGrain, pending.text());
  pending.clear();
}

/// One look at the player's input, at most `limitTenths` long. A thread that is asked to end meets
/// no wait any more, so that this is its way out.
int32_t nextInput(int32_t limitTenths) {
  const int32_t code = theScenario->WaitInput(nullptr, limitTenths);
  if (code == WaitInputFailed && Thread::terminationRequested()) throw ExitScenarioException();
  return code;
}

/// The result by which a code ends the wait; 0 when it does not.
int32_t advanceOf(int32_t code) {
  if (code == InputPress) return ClickRegion;
  if (code == InputKey + KeyReturn) return KeyReturn;
  if (code == InputKey + KeySpace) return KeySpace;
  return 0;
}

int32_t waitForAdvance(int32_t limitTenths) {
  const bool limited = limitTenths != WaitWithoutLimit;
  const uint32_t limitMillis =
      limited && limitTenths > 0 ? static_cast<uint32_t>(limitTenths) * TenthMillis : 0;
  const uint32_t start = limited ? tickCount() : 0;
  int32_t left = limited ? (limitTenths > 0 ? limitTenths : 0) : InputForever;
  for (;;) {
    const int32_t code = nextInput(left);
    if (code == WaitInputTimeout) return ClickRegion;
    if (const int32_t result = advanceOf(code)) return result;
    if (!limited) continue;
    // Keys that mean nothing here do not lengthen the wait.
    const uint32_t gone = tickCount() - start;
    if (gone >= limitMillis) return ClickRegion;
    left = static_cast<int32_t>((limitMillis - gone + TenthMillis - 1) / TenthMillis);
  }
}

/// The choice that a digit key names, or 0.
int32_t choiceOf(int32_t code, int32_t count) {
  for (int32_t choice = 1; choice <= count; ++choice)
    if (code == InputKey + Key0 + choice || code == InputKey + KeyNum0 + choice) return choice;
  return 0;
}

}  // namespace

void SpeakLine(const char* speaker, const char*) {
  if (!theScenario) return;
  theScenario->StrReg(SpeakerName).create(QVString::DefaultGrain, speaker);
  theScenario->StrReg(MessageAccumulator).clear();
}

void PrintMessage(const char* text) {
  if (!theScenario) return;
  theScenario->StrReg(MessagePending).append(text);
  theScenario->StrReg(MessageAccumulator).append(text);
}

int32_t WaitClick(int32_t limitTenths, int32_t mode) {
  if (!theScenario) return 0;
  Reg(WaitKindRegister) = WaitKindClick;
  if (mode != ModeLoopOnly) {
    printPending();
    Reg(RestoreRedrawRegister) = 0;
  }
  int32_t result = 0;
  if (mode != ModeShowOnly) {
    result = waitForAdvance(limitTenths);
    Reg(SavedStateRegister) = 0;
    Reg(RestoreRedrawRegister) = 0;
  }
  Reg(WaitKindRegister) = 0;
  return result;
}

void Select2Setup() {}
void Select3Setup() {}
void AreaText(AreaHandle& area, const char* text, int32_t flag) {
  area.printText(text, nullptr, nullptr, nullptr, flag != 0);
}

int32_t SelectMain(int32_t count) {
  if (!theScenario) return 0;
  if (count < 1 || count > MostChoices) count = MostChoices;
  Reg(WaitKindRegister) = count;
  Reg(SelectionBookkeepingRegister) = count;
  int32_t choice = 0;
  while (choice == 0)
    choice = choiceOf(nextInput(InputForever), count);
  Reg(SavedStateRegister) = 0;
  Reg(SelectionBookkeepingRegister) = 0;
  Reg(WaitKindRegister) = 0;
  trace("choice", std::to_string(choice));
  return choice;
}

void HideMessageWindow() {}
void HideSystemWindow() {}
void ShowSystemWindow() {}
void RestoreFrameCorner() {}
void RestorePendant() {
  ShowPendant();
}

// Until there is a ring to turn, the place at its front is taken.
int32_t LocationRing(const char*, const char*, const char*, const char*, const char*, const char*,
                     const char*, const char*) {
  return 0;
}

}  // namespace qv
