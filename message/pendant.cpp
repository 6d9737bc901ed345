#include "message/pendant.h"

#include <algorithm>

#include "graphics/view.h"
#include "platform/display/display.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

int32_t MessageWindowHiddenFlag = 0;

namespace {

struct Place {
  int32_t x, y;
};

/// Fully inside the screen; a window that is larger stands at its corner.
Place insideScreen(Place at, const Rectangle& window) {
  return {std::max(0, std::min(at.x, ScreenWidth - window.width())),
          std::max(0, std::min(at.y, ScreenHeight - window.height()))};
}

bool mayShow() {
  const int32_t kind = Reg(WaitKindRegister);
  if (Reg(PendantSuppressRegister) == PendantSuppressed || Reg(PendantShownRegister) != 0)
    return false;
  if (kind == WaitKindNone) return true;
  return kind >= WaitKindFirst && kind <= WaitKindLast && MessageWindowHiddenFlag == 0;
}

}  // namespace

void ShowPendant() {
  WindowObject* const window = theScenario ? theScenario->FindWindow(PendantWindow) : nullptr;
  Rectangle present;
  if (!window || !window->placeInParent(present) || !mayShow()) return;
  const Place at = insideScreen({SysReg(CutWindowX), SysReg(CutWindowY)}, present);
  window->MoveClamped(at.x, at.y, 0, 0, 1, 0);
  window->show(true);
  WindowObject* const client = theScenario->FindView(PendantWindow);
  if (client && client->view()) client->view()->flush(nullptr, 0);
  Reg(PendantShownRegister) = 1;
}

void HidePendant() {
  WindowObject* const window = theScenario ? theScenario->FindWindow(PendantWindow) : nullptr;
  Rectangle present;
  if (!window || Reg(PendantShownRegister) != 1 || !window->placeInParent(present)) return;
  const Place at = insideScreen({present.left, present.top}, present);
  SetSysReg(CutWindowX, at.x, 1);
  SetSysReg(CutWindowY, at.y, 1);
  window->show(false);
  Reg(PendantShownRegister) = 0;
}

}  // namespace qv
