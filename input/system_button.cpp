#include "input/system_button.h"

#include <algorithm>
#include <mutex>

namespace qv {

SystemButton::SystemButton(Event* exit)
    : exit_(exit), lock_("system button", LockRank::Object), flashEnd_("flash end") {}

SystemButton::~SystemButton() {
  endFlash();
}

void SystemButton::place(View* view, int32_t x, int32_t y, const char* file, ColourKey key,
                         int32_t enabled, int32_t pressed, int32_t keepBackground) {
  endFlash();
  {
    const std::lock_guard guard(lock_);
    state_ = NoImage;
  }
  if (!view || !view->surface8() || !file) return;
  // Without the lock: a missing file asks the player.
  QVDib picture;
  picture.loadByName(file);
  if (picture.empty() || picture.bitCount() != 8) return;
  const std::lock_guard guard(lock_);
  strip_.assignDib(picture);
  view_ = view;
  width_ = strip_.width() / FrameCount;
  height_ = strip_.height();
  x_ = x;
  y_ = y;
  key_ = key;
  keepBackground_ = keepBackground != 0;
  if (key_ != KeyNone && keepBackground_) keepWhatLiesBehind();
  state_ = (enabled ? Enabled : 0) | (pressed ? Pressed : 0);
  showFrame(state_);
}

void SystemButton::keepWhatLiesBehind() {
  QVVSurface& behind = *view_->surface8();
  for (QVVSurface* copy : {&saved_, &compose_}) {
    copy->create(width_, height_);
    copy->copyPaletteFrom(behind);
  }
  behind.blit(saved_, 0, 0, x_, y_, width_, height_, KeyNone);
}

/// Brings the frame of a state to the screen.
void SystemButton::showFrame(uint32_t state) {
  const int32_t frame = ((state & Enabled) ? 0 : 2) + ((state & Pressed) ? 1 : 0);
  const int32_t left = frame * width_;
  QVVSurface& target = *view_->surface8();
  if (key_ != KeyNone && keepBackground_) {
    saved_.blit(compose_, 0, 0, 0, 0, width_, height_, KeyNone);
    strip_.blit(compose_, 0, 0, left, 0, width_, height_, key_);
    compose_.blit(target, x_, y_, 0, 0, width_, height_, KeyNone);
  } else {
    strip_.blit(target, x_, y_, left, 0, width_, height_, key_);
  }
  view_->flushArea(x_, y_, width_, height_, 0);
}

uint32_t SystemButton::state() const {
  const std::lock_guard guard(lock_);
  return state_;
}

void SystemButton::redraw() {
  const std::lock_guard guard(lock_);
  if (!(state_ & NoImage)) showFrame(state_);
}

void SystemButton::flash(int32_t tenths, int32_t wait) {
  {
    const std::lock_guard guard(lock_);
    if ((state_ & (NoImage | Pressed)) || flashThread_.running()) return;
    state_ |= Pressed;
    flashMillis_ = static_cast<uint32_t>(std::max(tenths, 0)) * TenthMillis;
    showFrame(state_);
    flashStart_ = tickCount();
    if (tenths == 0) return;
  }
  flashThread_.start("button flash", &SystemButton::runFlash, this);
  if (wait) flashThread_.join();
}

void SystemButton::runFlash(void* button) {
  auto& self = *static_cast<SystemButton*>(button);
  const uint32_t gone = tickCount() - self.flashStart_;
  const uint32_t left = self.flashMillis_ - std::min(gone, self.flashMillis_);
  Event& end = self.flashEnd_.handle();
  // The button's own end comes first: it is not drawn any more then.
  const int woke = self.exit_ ? waitAny({&end, self.exit_}, left, WaitKind::Service)
                              : waitAny({&end}, left, WaitKind::Service);
  if (woke != 0) self.release();
}

void SystemButton::endFlash() {
  flashEnd_.set();
  flashThread_.join();
  flashEnd_.reset();
}

void SystemButton::release() {
  const std::lock_guard guard(lock_);
  if ((state_ & NoImage) || !(state_ & Pressed)) return;
  state_ &= ~Pressed;
  showFrame(state_);
}

void SystemButton::enable() {
  const std::lock_guard guard(lock_);
  if (state_ & (NoImage | Enabled)) return;
  state_ |= Enabled;
  showFrame(state_);
}

void SystemButton::disable() {
  const std::lock_guard guard(lock_);
  if ((state_ & NoImage) || !(state_ & Enabled)) return;
  state_ &= ~Enabled;
  showFrame(state_);
}

}  // namespace qv
