/// Effect 9, and the fade of a whole view to grey: no pixel moves, the colours do.

#include <algorithm>

#include "graphics/transition/effects.h"
#include "graphics/view.h"

namespace qv {

namespace {

constexpr uint32_t RoundMillis = 40;

bool liesWithin(const QVVSurface& picture, int32_t x, int32_t y) {
  return x >= 0 && y >= 0 && x < picture.width() && y < picture.height();
}

}  // namespace

void fadeThroughPalettes(View& view, const ColourTable& target, int32_t steps, int64_t last,
                         Pace& pace) {
  QVVSurface* const surface = view.surface8();
  if (!surface) return;
  for (int64_t i = 0; i <= last; ++i) {
    if (pace.aborted()) i = last;
    pace.mark();
    surface->fadePalette(target, static_cast<int32_t>(i), steps);
    view.flush(nullptr, 0);
    pace.waitSince(RoundMillis);
  }
}

void paletteFade(const TransitionEngine& engine, const EffectCall& call) {
  // The key's place carries the number of steps, so no key is left to draw with.
  const int32_t steps = call.key;
  if (engine.surface32()) {
    engine.refuse("DRAW_FADE", KeyNone);
    return;
  }
  const QVVSurface& source = engine.source();
  const bool within = liesWithin(source, engine.sx(), engine.sy());
  const int32_t sx = within ? engine.sx() : 0, sy = within ? engine.sy() : 0;
  source.blit(*engine.surface8(), 0, 0, sx, sy, source.width() - sx, source.height() - sy, KeyNone);
  // The round after the last step stores the source's table as the view's own. A step too high for
  // the counter asks for more rounds than anybody will see, so it may lose that one.
  constexpr int64_t LastRound = INT32_MAX;
  fadeThroughPalettes(engine.view(), source.storedColours(), steps,
                      std::min(int64_t{steps} + 1, LastRound), engine.pace());
}

void fadeToGrey(View& view, int32_t steps, int32_t grey, bool keep, Pace& pace) {
  QVVSurface* const surface = view.surface8();
  if (!surface) return;
  const auto level = static_cast<uint8_t>(grey);
  ColourTable target;
  target.fill(level * 0x010101u);
  fadeThroughPalettes(view, target, steps, keep ? steps : int64_t{steps} + 1, pace);
  surface->fill(level);
  // To itself: the stored colours go back to those that are shown.
  if (keep) surface->copyPaletteFrom(*surface);
}

}  // namespace qv
