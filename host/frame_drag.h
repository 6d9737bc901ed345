#pragma once

/// A frame window that is dragged by its caption: a state that events go into. UI thread.

#include "host/compositor.h"

namespace qv {

struct DisplayEvent;

class FrameDrag {
 public:
  explicit FrameDrag(Compositor& compositor) : compositor_(compositor) {}

  /// True when the event is the frame's: nobody else gets it.
  bool take(const DisplayEvent& event);
  /// Something came over the frame; it stays where it is.
  void end() { window_ = nullptr; }
  bool dragging() const { return window_ != nullptr; }

 private:
  Compositor& compositor_;
  ScreenWindow* window_ = nullptr;
  int32_t grabX_ = 0, grabY_ = 0;  ///< the pointer's place in the frame when the drag began
};

}  // namespace qv
