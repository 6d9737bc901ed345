#include "host/frame_drag.h"

#include "platform/display/display.h"

namespace qv {

bool FrameDrag::take(const DisplayEvent& event) {
  using Kind = DisplayEvent::Kind;
  switch (event.kind) {
    case Kind::ButtonDown: {
      const Compositor::FrameHit hit = compositor_.frameAt(event.x, event.y);
      if (!hit.window) return dragging();
      if (hit.caption && event.button == PointerButton::Left) {
        window_ = hit.window;
        grabX_ = event.x - hit.outer.left;
        grabY_ = event.y - hit.outer.top;
      }
      return true;
    }
    case Kind::PointerMove:
      if (!dragging()) return false;
      // The scene may have hidden or destroyed it meanwhile.
      if (!compositor_.drag(*window_, event.x - grabX_, event.y - grabY_)) end();
      return true;
    case Kind::ButtonUp:
      if (!dragging()) return false;
      if (event.button == PointerButton::Left) end();
      return true;
    case Kind::FocusLost:  // the release may never come
      end();
      return false;
    default:
      return false;
  }
}

}  // namespace qv
