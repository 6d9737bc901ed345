#pragma once

/// The small moving sign that tells the player that a page is full. It stands on a view for as long
/// as the object lives and is moved by a thread of its own; then the view's pixels come back.
/// Whoever makes it leaves the pixels under it alone meanwhile.

#include <cstdint>

#include "graphics/surface.h"
#include "graphics/view.h"
#include "platform/kernel/kernel.h"

namespace qv {

class Prompt {
 public:
  static constexpr int32_t Side = 24;  ///< pixels, both ways
  static constexpr int32_t Frames = 8;
  static constexpr uint32_t FrameMillis = 90;

  /// The corner is the left top one, in the view's client. On return the first frame stands on the
  /// screen. Throws NotEnoughMemoryException.
  Prompt(View& view, int32_t x, int32_t y);
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  /// Makes the picture with all frames side by side, `Key` where there is nothing.
  static void drawFrames(QVVSurface& strip);
  static constexpr ColourKey Key = 1;

 private:
  void run();
  void show(int32_t frame);

  View& view_;
  const int32_t x_, y_;
  QVVSurface strip_;
  QVVSurface saved8_, compose8_;
  QVVSurface24 saved32_, compose32_;
  Event stop_;
  Thread thread_;
};

}  // namespace qv
