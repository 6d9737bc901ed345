#include "message/skip_poll.h"

#include <array>

#include "input/click_map.h"
#include "message/wait_codes.h"
#include "platform/display/key_codes.h"
#include "scenario/click_map_objects.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr std::array KeptCodes{ClickCancel,
                               PendantRegion,
                               FirstKeyResult + LeftButtonKey,
                               FirstKeyResult + RightButtonKey,
                               FirstKeyResult + KeyReturn,
                               FirstKeyResult + KeyEscape,
                               FirstKeyResult + KeySpace};

bool stopsSkip(int32_t code) {
  const bool functionKey = code >= FirstKeyResult + KeyF1 && code <= FirstKeyResult + KeyF1 + 6;
  return functionKey || isOneOf(KeptCodes, code);
}

}  // namespace

void restWithoutMap(const char* name, uint32_t millis) {
  const QVClickMap* map = findClickMap(*theScenario, name);
  if ((!map || !map->view()) && theScenario->host())
    theScenario->host()->SleepUnlessAborted(millis);
}

int32_t pollWholeScreen(uint32_t millis) {
  const int32_t code = theScenario->ClickTickWait(WholeScreenMap, millis, WithKeys);
  restWithoutMap(WholeScreenMap, millis);
  return code;
}

void SkipPoll() {
  if (!theScenario || theScenario->SysReg(SkipMode) == 0) return;
  if (theScenario->Reg(PendingCodeRegister) != 0) return;
  const int32_t code = pollWholeScreen(SkipPollMillis);
  if (stopsSkip(code)) theScenario->Reg(PendingCodeRegister) = code;
}

}  // namespace qv
