#include "platform/services.h"

namespace qv {

namespace {
Services currentServices;
}

const Services& services() {
  return currentServices;
}

void trace(std::string_view what, std::string_view detail) {
  if (currentServices.trace) currentServices.trace->line(what, detail);
}

ServicesScope::ServicesScope(const Services& services) : previous_(currentServices) {
  currentServices = services;
}

ServicesScope::~ServicesScope() {
  currentServices = previous_;
}

}  // namespace qv
