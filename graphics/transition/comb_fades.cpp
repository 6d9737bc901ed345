/// Effects 2 to 5: the source comes through by combs, by a growing pattern, or on 32-bit views by
/// blending. Each level is drawn over the one before.

#include "graphics/transition/effects.h"

namespace qv {

namespace {

constexpr uint32_t LevelMillis = 50;

struct LevelRow {
  int32_t effect;
  bool target32;
  std::span<const int32_t> levels;
};

// Comb steps: of these the powers of two stand upright on a row of 640 pixels, the others slant.
constexpr int32_t CombA[] = {11, 7, 3, 2, 1};
constexpr int32_t CombB[] = {16, 8, 4, 2, 1};
constexpr int32_t CombC[] = {19, 17, 13, 11, 7, 5, 3, 1};
constexpr int32_t BlendAB[] = {1, 3, 8, 12, 16};
constexpr int32_t BlendC[] = {1, 2, 4, 6, 8, 10, 13, 16};
constexpr int32_t Pattern[] = {-15, -14, -13, -12, -11, -10, -9, -8, -7, -6, -5, -4, -3, -2, -1, 0};

constexpr LevelRow Levels[] = {
    {2, false, CombA},  {3, false, CombB},  {4, false, CombC}, {5, false, Pattern},
    {2, true, BlendAB}, {3, true, BlendAB}, {4, true, BlendC},
};

void fadeByLevels(const TransitionEngine& engine, const EffectCall& call, ColourKey key) {
  engine.pace().mark();
  for (const int32_t level : fadeLevels(call.effect, engine.surface32() != nullptr)) {
    engine.drawSourceBlended(level, key);
    engine.pace().waitSince(LevelMillis);
    engine.show(engine.rect());
    engine.pace().mark();
  }
}

}  // namespace

std::span<const int32_t> fadeLevels(int32_t effect, bool target32) {
  for (const LevelRow& row : Levels)
    if (row.effect == effect && row.target32 == target32) return row.levels;
  return {};
}

void combFade(const TransitionEngine& engine, const EffectCall& call) {
  fadeByLevels(engine, call, call.key);
}

void patternFade(const TransitionEngine& engine, const EffectCall& call) {
  if (engine.surface32())
    engine.refuse("blendPattern", call.key);
  else
    // A pattern covers all of the target: a key only keeps the source's colours away.
    fadeByLevels(engine, call, KeyNone);
}

}  // namespace qv
