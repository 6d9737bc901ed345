#include "host/module_loader.h"

extern "C" const qv::GameModule qvGameModule;

namespace qv {

const GameModule* linkedModule() {
  return &qvGameModule;
}

}  // namespace qv
