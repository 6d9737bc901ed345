/// Effects 26 to 29: two strips that part at the middle or meet there. 26 and 28 move rows, 27 and
/// 29 columns. Only 8-bit views have them; elsewhere, and on targets too small for a strip, they
/// are a cut.

#include "graphics/transition/effects.h"
#include "graphics/transition/old_picture.h"

namespace qv {

namespace {

constexpr int32_t Steps = 7, Parts = 16;
constexpr int32_t ClosedParts = 8;  ///< a half of the target
constexpr uint32_t StepMillis = 20;

bool hasStrips(const TransitionEngine& engine) {
  const Rectangle& rect = engine.rect();
  return engine.surface8() && (rect.width() >= Parts || rect.height() >= Parts);
}

/// Two strips of a picture and where they come from: its first part goes before the centre line,
/// its last part behind it.
struct Strips {
  Rectangle first, last;
  int32_t lastX, lastY;  ///< in the picture's rectangle; the first strip begins at its corner
};

Strips stripsAt(const TransitionEngine& engine, bool columns, int32_t parts) {
  const Rectangle& rect = engine.rect();
  const int32_t w = rect.width(), h = rect.height();
  if (columns) {
    const int32_t centre = rect.left + w / 2, length = parts * (w / Parts);
    return {{centre - length, rect.top, centre, rect.bottom},
            {centre, rect.top, centre + length, rect.bottom},
            w - length,
            0};
  }
  const int32_t centre = rect.top + h / 2, length = parts * (h / Parts);
  return {{rect.left, centre - length, rect.right, centre},
          {rect.left, centre, rect.right, centre + length},
          0,
          h - length};
}

bool movesColumns(int32_t effect) {
  return effect % 2 != 0;
}

}  // namespace

void openingCurtain(const TransitionEngine& engine, const EffectCall& call) {
  if (!hasStrips(engine)) {
    engine.cut(call.key);
    return;
  }
  const OldPicture old(engine);
  for (int32_t i = 0; i < Steps; ++i) {
    engine.pace().mark();
    old.restore();
    const Strips strips = stripsAt(engine, movesColumns(call.effect), i);
    const int32_t sx = engine.sx(), sy = engine.sy();
    engine.draw(engine.source(), strips.first, sx, sy, call.key);
    engine.draw(engine.source(), strips.last, sx + strips.lastX, sy + strips.lastY, call.key);
    engine.show(engine.rect());
    engine.pace().waitSince(StepMillis);
  }
  // Over the last strips: under a key they stay where the picture has no pixels.
  engine.cut(call.key);
}

void closingCurtain(const TransitionEngine& engine, const EffectCall& call) {
  if (!hasStrips(engine)) {
    engine.cut(call.key);
    return;
  }
  const OldPicture old(engine);
  for (int32_t i = 0; i < Steps; ++i) {
    engine.pace().mark();
    old.restore();
    engine.drawSource(call.key);
    const Strips strips = stripsAt(engine, movesColumns(call.effect), ClosedParts - i);
    old.drawPart(strips.first, 0, 0);
    old.drawPart(strips.last, strips.lastX, strips.lastY);
    engine.show(engine.rect());
    engine.pace().waitSince(StepMillis);
  }
  // The last step still has two strips of the old picture.
  old.restore();
  engine.cut(call.key);
}

}  // namespace qv
