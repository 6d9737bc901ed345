#pragma once

/// TransitionEngine: brings a picture onto a view by a numbered effect, made afresh for each draw.
/// Most effects move no pixels: they draw the final picture into the view's surface at once and
/// then only choose which parts of the window are flushed, so that old pixels stay to be seen
/// until their part's turn has come. The scenario thread, which is blocked meanwhile; no lock is
/// held while an effect waits.

#include <cstdint>

#include "graphics/colour_key.h"
#include "graphics/pace.h"
#include "graphics/rectangle.h"
#include "graphics/transition/random_order.h"

namespace qv {

class QVVSurface;
class QVVSurface24;
class View;

/// The pictures of a transition; null where there is none.
struct TransitionPictures {
  const QVVSurface* source = nullptr;
  QVVSurface* mask1 = nullptr;  ///< the shape of a wipe, or the back side of a rotation
  QVVSurface* mask2 = nullptr;  ///< the shape of a wipe's second half, or a rotation's background
};

/// Where it goes and which part of the source is taken. A width or height of 0 is as much as
/// source and view have.
struct TransitionPlace {
  int32_t x = 0, y = 0, w = 0, h = 0;
  int32_t sx = 0, sy = 0;
};

/// What one call of `run` asks for.
struct EffectCall {
  int32_t effect = 1;
  ColourKey key = KeyNone;
  int32_t a = 0, b = 0;
};

class TransitionEngine {
 public:
  /// A frame's client view stands for the frame: the caller has looked it up. Pictures, view and
  /// `pace` outlive the engine. `random` gives 0 to its limit.
  TransitionEngine(View* view, const TransitionPictures& pictures, const TransitionPlace& place,
                   Pace& pace, RandomDraw random);

  /// Returns after the last flush. With no view, no source or an empty rectangle nothing happens.
  /// An effect number that is in no list is a cut.
  /// key: of effect 9 the number of steps.
  /// a, b: rotation: degrees a frame (at least 1), turns. Shape wipes: steps, milliseconds.
  void run(int32_t effect, ColourKey key, int32_t a, int32_t b);

  /// The target rectangle as worked out from the place; empty when there is nothing to do.
  const Rectangle& rect() const { return rect_; }

  // For the families of effects.

  View& view() const { return *view_; }
  QVVSurface* surface8() const { return surface8_; }
  QVVSurface24* surface32() const { return surface32_; }
  const QVVSurface& source() const { return *source_; }
  QVVSurface* mask1() const { return mask1_; }
  QVVSurface* mask2() const { return mask2_; }
  int32_t sx() const { return sx_; }
  int32_t sy() const { return sy_; }
  Pace& pace() const { return pace_; }
  const RandomDraw& random() const { return random_; }

  /// Draws a part of an 8-bit picture onto the view's surface, whichever it is.
  void draw(const QVVSurface& picture, const Rectangle& target, int32_t pictureX, int32_t pictureY,
            ColourKey key) const;
  /// The whole source rectangle.
  void drawSource(ColourKey key) const;
  /// `level` is a comb step or pattern on 8 bits, sixteenths on 32 bits.
  void drawSourceBlended(int32_t level, ColourKey key) const;
  void show(const Rectangle& area) const;
  void takePalette() const;
  void cut(ColourKey key) const;
  /// Says that a 32-bit view has no such effect, then cuts.
  void refuse(const char* effectName, ColourKey key) const;

 private:
  View* view_;
  QVVSurface* surface8_ = nullptr;  ///< exactly one of the two is set
  QVVSurface24* surface32_ = nullptr;
  const QVVSurface* source_;
  QVVSurface* mask1_;
  QVVSurface* mask2_;
  Rectangle rect_;
  int32_t sx_, sy_;
  Pace& pace_;
  RandomDraw random_;
};

}  // namespace qv
