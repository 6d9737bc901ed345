#pragma once

/// What a view's surface showed in a rectangle before an effect began, to be put back from. One
/// thread.

#include <cstdint>
#include <memory>

#include "graphics/rectangle.h"
#include "graphics/surface.h"
#include "graphics/transition/transition_engine.h"

namespace qv {

class OldPicture {
 public:
  explicit OldPicture(const TransitionEngine& engine);
  /// Everything, where it was.
  void restore() const;
  /// A part in the view's coordinates, from the same place or from (fromX, fromY) of the old
  /// picture.
  void restore(const Rectangle& part) const;
  void drawPart(const Rectangle& target, int32_t fromX, int32_t fromY) const;
  /// The pixels of an 8-bit view; null on a 32-bit one.
  QVVSurface* surface8() const { return copy8_.get(); }

 private:
  const TransitionEngine& engine_;
  std::unique_ptr<QVVSurface> copy8_;  ///< exactly one of the two is set, as in the engine
  std::unique_ptr<QVVSurface24> copy32_;
};

}  // namespace qv
