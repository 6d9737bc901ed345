#include "scenario/scenario.h"
#include "scenes/scene_form.h"

using namespace qv;

namespace {

void showPicture() {
  theScenario->DrawTo("cg.view", "cg\\first.mcg", 0, 0, 0, 0, 0, 0);
}

}  // namespace

/// The first picture, and then nothing more.
QV_SCENE(sc_menu) {
  SetSceneName("sc_menu");
  showPicture();
  theScenario->WaitInput(nullptr, InputForever);
  return {};
}

/// A screen as a story has it, that waits for its player.
QV_SCENE(sc_windows) {
  SetSceneName("sc_windows");
  showPicture();
  for (const char* name : {"mess.view", "left.view", "right.view"}) {
    const int32_t x = name[0] == 'r' ? 400 : 20;
    theScenario->CreateView(name, nullptr, x, name[0] == 'm' ? 352 : 40, 200, 100, 0);
    theScenario->FillObject(name, 60);
  }
  const FrameHandle frame("reel.win", nullptr, Rectangle::at(200, 150, 240, 160), "Frame",
                          WindowFramed);
  theScenario->WaitInput(nullptr, InputForever);
  return {};
}
