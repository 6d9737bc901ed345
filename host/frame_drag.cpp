#include "host/frame_drag.h"

#include <cstdlib>
#include <utility>

namespace qv {

bool FrameDrag::take(const DisplayEvent& event) {
  using Kind = DisplayEvent::Kind;
  switch (event.kind) {
    case Kind::ButtonDown:
      return press(event);
    case Kind::PointerMove:
      return dragging() && move(event);
    case Kind::ButtonUp:
      if (!dragging()) return false;
      if (event.button == PointerButton::Left) letGo(event);
      return true;
    case Kind::FocusLost:  // the release may never come
      end();
      return false;
    default:
      return false;
  }
}

bool FrameDrag::press(const DisplayEvent& event) {
  const Compositor::FrameHit hit = compositor_.frameAt(event.x, event.y);
  if (!hit.window) return dragging();
  const bool left = event.button == PointerButton::Left;
  // The right button means nothing to a picture that is dragged.
  if (hit.picture && !left) return dragging();
  if (left && (hit.caption || hit.picture)) {
    window_ = hit.window;
    still_ = hit.picture;
    moved_ = false;
    grabX_ = event.x - hit.outer.left;
    grabY_ = event.y - hit.outer.top;
    press_ = event;
  }
  return true;
}

bool FrameDrag::move(const DisplayEvent& event) {
  if (still_ && std::abs(event.x - press_.x) < TremblePixels &&
      std::abs(event.y - press_.y) < TremblePixels)
    return true;
  still_ = false;
  moved_ = true;
  // The scene may have hidden or destroyed it meanwhile.
  if (!compositor_.drag(*window_, event.x - grabX_, event.y - grabY_)) end();
  return true;
}

void FrameDrag::letGo(const DisplayEvent& event) {
  if (still_) click_ = press_;
  if (moved_) done_ = Moved{press_, event};
  end();
}

std::optional<DisplayEvent> FrameDrag::takeClick() {
  return std::exchange(click_, std::nullopt);
}

std::optional<FrameDrag::Moved> FrameDrag::takeMoved() {
  return std::exchange(done_, std::nullopt);
}

}  // namespace qv
