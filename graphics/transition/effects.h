#pragma once

/// The families of effects, and what a test or a tool may want to know of their tables. Scenario
/// thread, as the engine.

#include <cstdint>
#include <span>
#include <vector>

#include "graphics/rectangle.h"
#include "graphics/surface.h"
#include "graphics/transition/transition_engine.h"

namespace qv {

void combFade(const TransitionEngine& engine, const EffectCall& call);
void patternFade(const TransitionEngine& engine, const EffectCall& call);
void paletteFade(const TransitionEngine& engine, const EffectCall& call);
void flushWipe(const TransitionEngine& engine, const EffectCall& call);
void openingCurtain(const TransitionEngine& engine, const EffectCall& call);
void closingCurtain(const TransitionEngine& engine, const EffectCall& call);
void slidingWipe(const TransitionEngine& engine, const EffectCall& call);
void tileDissolve(const TransitionEngine& engine, const EffectCall& call);
void randomLines(const TransitionEngine& engine, const EffectCall& call);
void interlacedSweeps(const TransitionEngine& engine, const EffectCall& call);
void rotation(const TransitionEngine& engine, const EffectCall& call);
void shapeWipe(const TransitionEngine& engine, const EffectCall& call);

/// Levels of the effects 2 to 5 by kind of target; empty where there are none.
std::span<const int32_t> fadeLevels(int32_t effect, bool target32);

/// The rectangles that step `step` (1 to 16) of the effects 10 to 23 and 30 to 37 shows, not
/// clipped.
std::vector<Rectangle> wipeStep(int32_t effect, const Rectangle& rect, int32_t step);

/// One run of `revealTiles`: cells of `size` by `size`, at most `limit` of them, 0 for all.
struct TileRound {
  int32_t size = 0;
  int64_t limit = 0;
};
/// The runs of the effects 38 to 47 over a target of that size, as far as they can come.
std::vector<TileRound> tileRounds(int32_t effect, int32_t width, int32_t height);

/// The sine of a degree times 65536, rounded towards zero. Any angle from 0 up.
int32_t spinSine(int32_t angle);
/// The row of the picture that stands in each row of a frame at that angle, or -1.
std::vector<int32_t> spinRows(int32_t height, int32_t angle);

/// What stands behind a turning picture: a colour by its index, or a surface, which is borrowed.
class SpinBackground {
 public:
  explicit SpinBackground(uint8_t index) : index_(index) {}
  explicit SpinBackground(const QVVSurface& surface) : surface_(&surface) {}
  bool isSurface() const { return surface_ != nullptr; }
  uint8_t index() const { return index_; }
  const QVVSurface& surface() const { return *surface_; }

 private:
  const QVVSurface* surface_ = nullptr;
  uint8_t index_ = 0;
};

/// `fadePalette` with the steps 0 to `last`, both included, of `steps`, each shown at once on the
/// whole view and lasting 40 ms. The view has 8 bits.
void fadeThroughPalettes(View& view, const ColourTable& target, int32_t steps, int64_t last,
                         Pace& pace);
/// The whole view goes to one grey, and its surface is then filled with the index of that number.
/// With `keep` its colours come back unseen; otherwise all its colours are that grey.
void fadeToGrey(View& view, int32_t steps, int32_t grey, bool keep, Pace& pace);

}  // namespace qv
