/// Effects 30 to 37: the picture slides in from a corner or an edge, the end of it that is away
/// from there ahead.

#include <optional>

#include "graphics/transition/effects.h"
#include "graphics/transition/old_picture.h"

namespace qv {

namespace {

constexpr int32_t Steps = 16;
constexpr uint32_t StepMillis = 10;

}  // namespace

void slidingWipe(const TransitionEngine& engine, const EffectCall& call) {
  const Rectangle& rect = engine.rect();
  std::optional<OldPicture> old;
  if (call.key != KeyNone) old.emplace(engine);
  for (int32_t step = 1; step <= Steps; ++step) {
    engine.pace().mark();
    if (old) old->restore();
    const Rectangle area = wipeStep(call.effect, rect, step).front().intersected(rect);
    // Grown from the left or top, the part's far end leads; else its near end does.
    const int32_t behindX = area.left == rect.left ? rect.width() - area.width() : 0;
    const int32_t behindY = area.top == rect.top ? rect.height() - area.height() : 0;
    engine.draw(engine.source(), area, engine.sx() + behindX, engine.sy() + behindY, call.key);
    engine.pace().waitSince(StepMillis);
    engine.show(area);
  }
}

}  // namespace qv
