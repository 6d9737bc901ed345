#include "message/skip_poll.h"

#include <algorithm>
#include <array>

#include "input/click_map.h"
#include "platform/display/key_codes.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t PendantRegion = 5, LeftButtonKey = 1, RightButtonKey = 2;

constexpr std::array KeptCodes{ClickCancel,
                               PendantRegion,
                               FirstKeyResult + LeftButtonKey,
                               FirstKeyResult + RightButtonKey,
                               FirstKeyResult + KeyReturn,
                               FirstKeyResult + KeyEscape,
                               FirstKeyResult + KeySpace};

bool stopsSkip(int32_t code) {
  const bool functionKey = code >= FirstKeyResult + KeyF1 && code <= FirstKeyResult + KeyF1 + 6;
  return functionKey || std::ranges::find(KeptCodes, code) != KeptCodes.end();
}

}  // namespace

void SkipPoll() {
  if (!theScenario || theScenario->SysReg(SkipMode) == 0) return;
  if (theScenario->Reg(PendingCodeRegister) != 0) return;
  if (!theScenario->FindObject(WholeScreenMap)) return;
  const int32_t code = theScenario->ClickTickWait(WholeScreenMap, SkipPollMillis, 1);
  if (stopsSkip(code)) theScenario->Reg(PendingCodeRegister) = code;
}

}  // namespace qv
