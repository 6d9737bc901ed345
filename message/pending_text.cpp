#include "message/pending_text.h"

#include "message/history.h"
#include "message/speakers.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

void appendPending(const char* text) {
  if (!theScenario || !text) return;
  theScenario->StrReg(MessagePending).append(text);
  theScenario->StrReg(MessageAccumulator).append(text);
}

std::optional<std::string> takePending() {
  if (!theScenario) return std::nullopt;
  QVString& pending = theScenario->StrReg(MessagePending);
  if (pending.length() == 0) return std::nullopt;
  std::string text =
      withHeroNames(std::string(pending.view()), theScenario->StrReg(HeroFamilyName).view(),
                    theScenario->StrReg(HeroGivenName).view());
  if (theScenario->StrReg(MessageLast).view() != text) AddHistory(text.c_str());
  theScenario->StrReg(MessageLast).create(QVString::DefaultGrain, text.c_str());
  pending.clear();
  return text;
}

}  // namespace qv
