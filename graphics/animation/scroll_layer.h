#pragma once

/// ScrollLayer: a picture, larger than its place on the view as a rule, that moves under that place
/// step by step. Any thread.

#include <cstdint>

#include "foundation/event.h"
#include "graphics/colour_key.h"
#include "graphics/rectangle.h"
#include "graphics/surface.h"
#include "platform/kernel/kernel.h"

namespace qv {

class ScrollLayer {
 public:
  /// Fresh: drawn at its source once before it moves.
  enum State : int32_t { Moving = 0, Resting = 2, Fresh = 3, Ended = 4 };
  static constexpr uint32_t WrapX = 1, WrapY = 2;
  static constexpr int32_t KeepPlace = -1;  ///< of a final coordinate: where the step took it

  struct Setting {
    const QVVSurface* surface = nullptr;  ///< borrowed
    Rectangle place;                      ///< on the view
    int32_t sourceX = 0, sourceY = 0;
    int32_t stepX = 0, stepY = 0;
    int32_t finalX = KeepPlace, finalY = KeepPlace;
    int32_t priority = 0;  ///< the lower ones are drawn first
    uint32_t wrap = 0;
    ColourKey key = KeyNone;
    int32_t level = 0;  ///< as of blitBlendedKey
  };

  explicit ScrollLayer(const Setting& setting);

  Setting setting() const;
  State state() const;
  /// From now on that step; a layer that has ended goes on with it.
  void setStep(int32_t x, int32_t y);
  void setSource(int32_t x, int32_t y);  ///< drawn there once before it moves
  void setFinal(int32_t x, int32_t y);
  void setLevel(int32_t level);
  /// Set when the layer has come to its end.
  QVEvent& ended() { return ended_; }

  /// Moves on by one step and draws. Gives the place that was drawn: nothing where the place leaves
  /// the surface and no wrap bit brings it round.
  Rectangle draw(QVVSurface& target);

 private:
  void moveOn(int32_t width, int32_t height);
  void drawPieces(QVVSurface& target, int32_t width, int32_t height) const;
  bool outside(int32_t width, int32_t height) const;
  void end();

  mutable Lock lock_;  ///< guards all but the event
  Setting setting_;
  State state_ = Fresh;
  QVEvent ended_;
};

}  // namespace qv
