#include "screens/picture_button.h"

#include "input/animated_control.h"
#include "platform/kernel/kernel.h"

namespace qv {

namespace {

constexpr uint32_t PressMillis = 80;

}  // namespace

PictureButton::PictureButton(const char* stripFile) {
  strip_.loadFromFile(stripFile);
}

bool PictureButton::takesClick(View& view) {
  if (!live()) return false;
  drawFrame(view, Pressed);
  sleepMillis(PressMillis);
  draw(view);
  return true;
}

void PictureButton::onEnter(View& view) {
  focused_ = true;
  draw(view);
}

void PictureButton::onLeave(View& view) {
  focused_ = false;
  draw(view);
}

void PictureButton::draw(View& view) {
  if (!shown()) return;
  drawFrame(view, !enabled() ? Off : focused_ ? Focused : Plain);
}

void PictureButton::drawFrame(View& view, Frame frame) {
  QVVSurface* target = view.surface8();
  if (!target) return;
  const Rectangle& place = rectangle();
  strip_.blit(*target, place.left, place.top, frame * width(), 0, width(), height(), KeyTopLeft);
  view.flush(&place, 0);
}

}  // namespace qv
