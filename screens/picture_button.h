#pragma once

/// PictureButton: a button of a box, drawn from a strip of four frames side by side: plain, under
/// the focus, pressed, switched off. Scenario thread.

#include <cstdint>

#include "graphics/surface.h"
#include "input/control_item.h"

namespace qv {

class PictureButton : public ControlItem {
 public:
  /// Raises what the file raises.
  explicit PictureButton(const char* stripFile);

  int32_t width() const { return strip_.width() / FrameCount; }
  int32_t height() const { return strip_.height(); }

  /// A press is shown for a moment; a click on a button that is switched off is declined.
  bool takesClick(View& view) override;
  void onEnter(View& view) override;
  void onLeave(View& view) override;
  void draw(View& view) override;

 private:
  static constexpr int32_t FrameCount = 4;
  enum Frame : int32_t { Plain, Focused, Pressed, Off };

  void drawFrame(View& view, Frame frame);

  QVVSurface strip_;
  bool focused_ = false;
};

}  // namespace qv
