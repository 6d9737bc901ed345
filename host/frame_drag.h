#pragma once

/// A frame window that is dragged, by its caption or, without one, by its picture: a state that
/// events go into. A press on a picture is only a click until the pointer has moved. UI thread.

#include <optional>

#include "host/compositor.h"
#include "platform/display/display.h"

namespace qv {

class FrameDrag {
 public:
  /// A hand that presses trembles: so far a picture does not follow the pointer.
  static constexpr int32_t TremblePixels = 4;

  explicit FrameDrag(Compositor& compositor) : compositor_(compositor) {}

  /// True when the event is the frame's: nobody else gets it.
  bool take(const DisplayEvent& event);
  /// The press on a picture that was let go without a move; once.
  std::optional<DisplayEvent> takeClick();
  /// From where to where a frame was dragged that is now let go; once.
  struct Moved {
    DisplayEvent press, release;
  };
  std::optional<Moved> takeMoved();
  /// Something came over the frame; it stays where it is.
  void end() { window_ = nullptr; }
  bool dragging() const { return window_ != nullptr; }
  /// A picture is pressed, which was not dragged so far.
  bool pressesPicture() const { return dragging() && still_; }

 private:
  bool press(const DisplayEvent& event);
  bool move(const DisplayEvent& event);
  void letGo(const DisplayEvent& event);

  Compositor& compositor_;
  ScreenWindow* window_ = nullptr;
  bool still_ = false;  ///< a picture that has not followed the pointer yet
  bool moved_ = false;
  int32_t grabX_ = 0, grabY_ = 0;  ///< the pointer's place in the frame when the drag began
  DisplayEvent press_;
  std::optional<DisplayEvent> click_;
  std::optional<Moved> done_;
};

}  // namespace qv
