#include "message/frame_buttons.h"

#include "graphics/scene/picture_drawing.h"
#include "message/standing_names.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t ButtonEnabled = 1, ButtonUp = 0, WithoutBackground = 0;

std::unique_ptr<FrameButtons> current;

}  // namespace

void FrameButtons::place() {
  View* view = viewNamed(NormalView);
  struct Place {
    SystemButton& button;
    int32_t x, y;
    const char* file;
  };
  for (const Place& each :
       {Place{quickSave, 586, 12, "dat\\MButton1.mcg"},
        Place{quickLoad, 586, 43, "dat\\MButton2.mcg"}, Place{skip, 567, 62, "dat\\MButton3.mcg"}})
    each.button.place(view, each.x, each.y, each.file, KeyTopLeft, ButtonEnabled, ButtonUp,
                      WithoutBackground);
}

void FrameButtons::enableQuick() {
  quickSave.enable();
  quickLoad.enable();
}

void FrameButtons::disableQuick() {
  quickSave.disable();
  quickLoad.disable();
}

void FrameButtons::redrawNormal() {
  for (SystemButton* button : {&quickSave, &quickLoad, &skip}) {
    button->release();
    button->enable();
    button->redraw();
  }
}

void flashHit(SystemButton& button) {
  constexpr int32_t FlashTenths = 3, WithoutWait = 0;
  button.flash(FlashTenths, WithoutWait);
}

FrameButtons* frameButtons() {
  return current.get();
}

void createFrameButtons() {
  Event* exit =
      theScenario && theScenario->host() ? &theScenario->host()->abortEvent.handle() : nullptr;
  current = std::make_unique<FrameButtons>(exit);
  current->place();
}

void destroyFrameButtons() {
  current.reset();
}

}  // namespace qv
