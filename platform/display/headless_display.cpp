#include "platform/display/headless_display.h"

#include <mutex>
#include <utility>

namespace qv {

HeadlessDisplay::HeadlessDisplay()
    : lock_("headless display", LockRank::Leaf),
      arrived_("display event", Event::Reset::Automatic),
      frame_(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0) {}

void HeadlessDisplay::present(const Frame& frame) {
  std::lock_guard held(lock_);
  frame_ = frame;
  ++presents_;
}

void HeadlessDisplay::setTitle(std::string_view utf8) {
  std::lock_guard held(lock_);
  title_ = utf8;
}

void HeadlessDisplay::setFullScreen(bool on) {
  std::lock_guard held(lock_);
  fullScreen_ = on;
}

bool HeadlessDisplay::fullScreen() const {
  std::lock_guard held(lock_);
  return fullScreen_;
}

bool HeadlessDisplay::minimised() const {
  std::lock_guard held(lock_);
  return minimised_;
}

/// Takes the oldest event, or else the wake that stands.
bool HeadlessDisplay::takeEvent(DisplayEvent& event, bool& woken) {
  std::lock_guard held(lock_);
  woken = false;
  if (events_.empty()) {
    woken = std::exchange(woken_, false);
    return false;
  }
  event = std::move(events_.front());
  events_.pop_front();
  if (event.kind == DisplayEvent::Kind::Minimised) minimised_ = true;
  if (event.kind == DisplayEvent::Kind::Restored) minimised_ = false;
  return true;
}

bool HeadlessDisplay::waitEvent(DisplayEvent& event, uint32_t limitMillis) {
  const uint32_t start = tickCount();
  for (;;) {
    bool woken = false;
    if (takeEvent(event, woken)) return true;
    if (woken) return false;
    uint32_t remaining = WaitForever;
    if (limitMillis != WaitForever) {
      const uint32_t elapsed = tickCount() - start;
      if (elapsed >= limitMillis) return false;
      remaining = limitMillis - elapsed;
    }
    // The event may still be set for what an earlier call has taken: then the loop goes round.
    if (arrived_.wait(remaining, WaitKind::Input) == WaitTerminated) return false;
  }
}

void HeadlessDisplay::wake() {
  {
    std::lock_guard held(lock_);
    woken_ = true;
  }
  arrived_.set();
}

void HeadlessDisplay::movePointer(int x, int y) {
  std::lock_guard held(lock_);
  pointerX_ = x;
  pointerY_ = y;
}

void HeadlessDisplay::push(DisplayEvent event) {
  {
    std::lock_guard held(lock_);
    events_.push_back(std::move(event));
  }
  arrived_.set();
}

Frame HeadlessDisplay::frame() const {
  std::lock_guard held(lock_);
  return frame_;
}

size_t HeadlessDisplay::presents() const {
  std::lock_guard held(lock_);
  return presents_;
}

std::string HeadlessDisplay::title() const {
  std::lock_guard held(lock_);
  return title_;
}

void HeadlessDisplay::pointer(int& x, int& y) const {
  std::lock_guard held(lock_);
  x = pointerX_;
  y = pointerY_;
}

void HeadlessDisplay::setCursor(const PointerLook& look) {
  std::lock_guard held(lock_);
  cursor_ = look;
  ++cursorChanges_;
}

PointerLook HeadlessDisplay::cursor() const {
  std::lock_guard held(lock_);
  return cursor_;
}

size_t HeadlessDisplay::cursorChanges() const {
  std::lock_guard held(lock_);
  return cursorChanges_;
}

}  // namespace qv
