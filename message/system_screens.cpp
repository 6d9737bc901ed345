#include "message/system_screens.h"

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

SystemScreens* current = nullptr;

}  // namespace

std::string noSkipInDrama() {
  return sjis("ドラマチックモード実行中は\nテキストスキップできません。");
}

SystemScreens* systemScreens() {
  return current;
}

void setSystemScreens(SystemScreens* screens) {
  current = screens;
}

}  // namespace qv
