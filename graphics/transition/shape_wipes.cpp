/// Effects 65 to 80: a mask slides in over the old picture and leaves one colour behind it; then,
/// where there is a second mask, the source comes out of that colour behind the second one. In a
/// mask colour 0 is a hole.

#include <algorithm>
#include <optional>

#include "graphics/transition/effects.h"
#include "graphics/transition/old_picture.h"

namespace qv {

namespace {

constexpr int32_t FirstEffect = 65, EntriesEach = 4;
constexpr ColourKey HoleIndex = 0;

enum class Edge { Left, Right, Top, Bottom };
constexpr Edge Edges[] = {Edge::Left, Edge::Right, Edge::Top, Edge::Bottom};

/// The first pixel in row order that is no hole; 0 where all are.
uint8_t fillIndexOf(QVVSurface& mask) {
  const int32_t w = mask.width(), h = mask.height();
  const QVVSurface::Access access(mask);
  for (int32_t y = 0; y < h; ++y) {
    const uint8_t* row = access.row(y);
    const uint8_t* found = std::find_if(row, row + w, [](uint8_t pixel) { return pixel != 0; });
    if (found != row + w) return *found;
  }
  return 0;
}

/// A mask of the target's size that moves along one axis. A displacement below 0: it is still
/// coming in, by so many lines; above 0: so many lines lie behind it.
class SlidingMask {
 public:
  SlidingMask(const TransitionEngine& engine, QVVSurface& mask, Edge entry)
      : engine_(engine), entry_(entry) {
    mask_.create(engine.rect().width(), engine.rect().height());
    mask.tileOnto(mask_, nullptr, true);
  }
  int32_t extent() const { return alongX() ? engine_.rect().width() : engine_.rect().height(); }
  /// The lines from `from` to `to` as counted from the entry.
  Rectangle stripe(int32_t from, int32_t to) const {
    const Rectangle& r = engine_.rect();
    switch (entry_) {
      case Edge::Left:
        return {r.left + from, r.top, r.left + to, r.bottom};
      case Edge::Right:
        return {r.right - to, r.top, r.right - from, r.bottom};
      case Edge::Top:
        return {r.left, r.top + from, r.right, r.top + to};
      default:
        return {r.left, r.bottom - to, r.right, r.bottom - from};
    }
  }
  Rectangle behind(int32_t displacement) const { return stripe(0, std::max(displacement, 0)); }
  Rectangle covered(int32_t displacement) const {
    return stripe(std::max(displacement, 0), extent() + std::min(displacement, 0));
  }
  Rectangle ahead(int32_t displacement) const {
    return stripe(extent() + std::min(displacement, 0), extent());
  }
  void draw(int32_t displacement) const {
    const bool fromFarSide = entry_ == Edge::Right || entry_ == Edge::Bottom;
    const int32_t moved = fromFarSide ? -displacement : displacement;
    const Rectangle area = covered(displacement);
    const int32_t x = area.left - engine_.rect().left - (alongX() ? moved : 0);
    const int32_t y = area.top - engine_.rect().top - (alongX() ? 0 : moved);
    engine_.draw(mask_, area, x, y, HoleIndex);
  }

 private:
  bool alongX() const { return entry_ == Edge::Left || entry_ == Edge::Right; }

  const TransitionEngine& engine_;
  Edge entry_;
  QVVSurface mask_;
};

class ShapeWipe {
 public:
  ShapeWipe(const TransitionEngine& engine, const EffectCall& call)
      : engine_(engine),
        key_(call.key),
        steps_(std::max(call.a, 1)),
        delayMillis_(static_cast<uint32_t>(std::max(call.b, 0))),
        old_(engine),
        fillIndex_(fillIndexOf(*engine.mask1())),
        fillColour_(engine.mask1()->storedColours()[fillIndex_] & 0xFFFFFF) {}

  void coverOldPicture(Edge entry) {
    const SlidingMask mask(engine_, *engine_.mask1(), entry);
    slide(mask.extent(), [&](int32_t displacement) {
      fill(mask.behind(displacement));
      restore(mask.covered(displacement));
      restore(mask.ahead(displacement));
      mask.draw(displacement);
    });
    engine_.pace().mark();
    // The whole that the mask has gone over; what lies beside it is not the effect's.
    fill(engine_.rect());
    finishStep();
  }

  void uncoverSource(Edge entry) {
    engine_.takePalette();
    const SlidingMask mask(engine_, *engine_.mask2(), entry);
    slide(mask.extent(), [&](int32_t displacement) {
      drawSource(mask.behind(displacement));
      drawSource(mask.covered(displacement));
      fill(mask.ahead(displacement));
      mask.draw(displacement);
    });
    drawSource(engine_.rect());
  }

 private:
  /// The mask comes in, stands over the whole, and goes on; a frame for each displacement.
  template <class Frame>
  void slide(int32_t extent, const Frame& frame) {
    moveOn(extent, -extent, frame);
    step(0, frame);
    moveOn(extent, 0, frame);
  }
  template <class Frame>
  void moveOn(int32_t extent, int32_t from, const Frame& frame) {
    // None, where there are more steps than lines: then the mask stays away until it is whole.
    const int32_t lines = extent / steps_;
    for (int32_t i = 1; i < steps_ && !engine_.pace().aborted(); ++i)
      step(from + lines * i, frame);
  }
  template <class Frame>
  void step(int32_t displacement, const Frame& frame) {
    engine_.pace().mark();
    frame(displacement);
    finishStep();
  }
  void finishStep() {
    engine_.show(engine_.rect());
    engine_.pace().waitSince(delayMillis_);
  }

  void restore(const Rectangle& part) const {
    if (!part.empty()) old_.restore(part);
  }
  void fill(const Rectangle& part) const {
    if (part.empty()) return;
    if (engine_.surface8())
      engine_.surface8()->fill(fillIndex_, &part);
    else
      engine_.surface32()->fill(fillColour_, &part);
  }
  void drawSource(const Rectangle& part) const {
    if (part.empty()) return;
    if (key_ != KeyNone) restore(part);
    engine_.draw(engine_.source(), part, engine_.sx() + part.left - engine_.rect().left,
                 engine_.sy() + part.top - engine_.rect().top, key_);
  }

  const TransitionEngine& engine_;
  ColourKey key_;
  int32_t steps_;
  uint32_t delayMillis_;
  OldPicture old_;
  uint8_t fillIndex_;
  uint32_t fillColour_;
};

}  // namespace

void shapeWipe(const TransitionEngine& engine, const EffectCall& call) {
  const int32_t number = call.effect - FirstEffect;
  ShapeWipe wipe(engine, call);
  wipe.coverOldPicture(Edges[number / EntriesEach]);
  if (engine.mask2()) wipe.uncoverSource(Edges[number % EntriesEach]);
}

}  // namespace qv
