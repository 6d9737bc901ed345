#include "host/module_loader.h"

namespace qv {

const GameModule* linkedModule() {
  return nullptr;
}

}  // namespace qv
