#include "message/system_screens.h"

namespace qv {

namespace {

SystemScreens* current = nullptr;

}  // namespace

SystemScreens* systemScreens() {
  return current;
}

void setSystemScreens(SystemScreens* screens) {
  current = screens;
}

}  // namespace qv
