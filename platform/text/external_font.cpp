#include "platform/text/external_font.h"

#include <atomic>

namespace qv {

namespace {
std::atomic<bool> enabled = true;
}

void enableExternalCharacters(bool on) {
  enabled.store(on);
}

bool externalCharactersEnabled() {
  return enabled.load();
}

}  // namespace qv
