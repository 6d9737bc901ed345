#include "scenario/start/scene_enter.h"

#include "audio/scene/commands.h"
#include "graphics/scene/commands.h"
#include "message/commands.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "screens/commands.h"

namespace qv {

namespace {

constexpr int32_t RestoreEffect = 9, RestoreFrames = 16;

/// The two registers are cleared in one stride each, as the rest of the engine pairs them.
void clearBoth(int32_t first, int32_t second) {
  for (int32_t number = first; number <= second; number += second - first)
    Reg(number) = 0;
}

void finishRestore() {
  EffectCommand(RestoreEffect, RestoreFrames, EffectConstant);
  clearBoth(ResumePendingRegister, WaitKindRegister);
  Reg(SaveActionRegister) = 0;
  SetSysReg(QuickPanelShown, 0, 1);
  SetSysReg(SkipMode, 0, 1);
  Reg(PendingCodeRegister) = 0;
  RestoreButtonStrip();
  RestoreBgm();
  RestoreSe();
  clearBoth(RestoreClearedRegister, PendantShownRegister);
  Reg(PendantSuppressRegister) = 0;
  ShowSystemWindow();
}

constexpr int32_t digitOf(char byte) {
  return byte >= '0' && byte <= '9' ? byte - '0' : -1;
}

}  // namespace

void SceneEnter() {
  if (Reg(ResumePendingRegister) == 0)
    Reg(StepRegister) = 1;
  else
    finishRestore();
}

void SetChapter(const char* text) {
  int32_t chapter = 0;
  for (int place = 0; text && place < 2 && digitOf(text[place]) >= 0; ++place)
    chapter = chapter * 10 + digitOf(text[place]);
  Reg(ChapterRegister) = chapter;
}

}  // namespace qv
