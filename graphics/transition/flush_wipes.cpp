/// Effects 10 to 23: the picture is drawn once, and rectangles that grow by sixteenths uncover it.
/// Each step's rectangles include the earlier ones, so nothing needs to be remembered.

#include "graphics/transition/effects.h"

namespace qv {

namespace {

constexpr int32_t Steps = 16;
constexpr uint32_t StepMillis = 10;

}  // namespace

void flushWipe(const TransitionEngine& engine, const EffectCall& call) {
  engine.drawSource(call.key);
  for (int32_t step = 1; step <= Steps; ++step) {
    engine.pace().mark();
    const std::vector<Rectangle> areas = wipeStep(call.effect, engine.rect(), step);
    engine.pace().waitSince(StepMillis);
    for (const Rectangle& area : areas)
      engine.show(area.intersected(engine.rect()));
  }
}

}  // namespace qv
