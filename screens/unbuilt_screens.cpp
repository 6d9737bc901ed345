#include "screens/unbuilt_screens.h"

#include "platform/text/shift_jis.h"
#include "screens/boxes.h"

namespace qv {

namespace {

constexpr int32_t NothingDone = -3, NothingLoaded = -1;

void tell() {
  NoticeDialog(sjis("この機能はまだありません。").c_str());
}

class UnbuiltScreens : public SystemScreens {
 public:
  void quickSave() override { tell(); }
  bool quickLoad() override {
    tell();
    return false;
  }
  int32_t configuration() override {
    tell();
    return NothingDone;
  }
  void history() override { tell(); }
  bool confirm(const char* text) override { return ConfirmDialog(text) == 1; }
  void notice(const char* text) override { NoticeDialog(text); }
};

}  // namespace

SystemScreens& unbuiltScreens() {
  static UnbuiltScreens screens;
  return screens;
}

int32_t SaveScreen(int32_t code) {
  tell();
  return code == SaveScreenLoads ? NothingLoaded : NothingDone;
}

}  // namespace qv
