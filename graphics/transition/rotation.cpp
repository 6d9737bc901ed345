/// Effects 60 to 63: the picture turns about its centre line, 60 and 62 by rows, 61 and 63 by
/// columns. A row is drawn where the turned picture first reaches it, so that a flat picture is a
/// few lines wide apart, not a narrow band.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "graphics/transition/effects.h"
#include "graphics/transition/old_picture.h"

namespace qv {

namespace {

constexpr int32_t FullRound = 360, FaceOn = 90, EdgeOn = 180;
constexpr int32_t SineOne = 65536;
constexpr uint8_t ClearIndex = 0;

int32_t sineOfDegree(int32_t degree) {
  // Where the exact value is whole or a half, floating point may fall short of it.
  switch (degree % FullRound) {
    case 0:
    case 180:
      return 0;
    case 30:
    case 150:
      return SineOne / 2;
    case 210:
    case 330:
      return -SineOne / 2;
    default:
      return static_cast<int32_t>(std::sin(degree * std::numbers::pi / 180) * SineOne);
  }
}

/// A picture that turns: `x`, `y` is its corner in the surface.
struct SpinPicture {
  const QVVSurface& surface;
  int32_t x, y;
  ColourKey key;
};

class Spinner {
 public:
  Spinner(const TransitionEngine& engine, bool columns, int32_t degreesPerFrame)
      : engine_(engine), columns_(columns), step_(std::max(degreesPerFrame, 1)) {
    work_.create(engine.rect().width(), engine.rect().height());
  }

  /// A frame for every step from `from` to `to`, both included.
  void spin(const SpinPicture& picture, int32_t from, int32_t to,
            const SpinBackground& background) {
    const int64_t way = std::abs(to - from);
    for (int64_t turned = 0;; turned = std::min(turned + step_, way)) {
      if (engine_.pace().aborted()) turned = way;
      const auto angle = static_cast<int32_t>(to < from ? from - turned : from + turned);
      engine_.pace().mark();
      frame(picture, angle, background);
      engine_.pace().waitSince(FrameMillis);
      if (turned == way) return;
    }
  }

 private:
  void frame(const SpinPicture& picture, int32_t angle, const SpinBackground& background) {
    const Rectangle& rect = engine_.rect();
    const int32_t w = rect.width(), h = rect.height();
    if (background.isSurface())
      background.surface().blit(work_, 0, 0, 0, 0, w, h, KeyNone);
    else
      work_.fill(background.index());
    const std::vector<int32_t> lines = spinRows(columns_ ? w : h, angle);
    for (int32_t i = 0; i < static_cast<int32_t>(lines.size()); ++i) {
      const int32_t from = lines[static_cast<size_t>(i)];
      if (from < 0) continue;
      if (columns_)
        picture.surface.blit(work_, i, 0, picture.x + from, picture.y, 1, h, picture.key);
      else
        picture.surface.blit(work_, 0, i, picture.x, picture.y + from, w, 1, picture.key);
    }
    work_.blit(*engine_.surface8(), rect.left, rect.top, 0, 0, w, h, KeyNone);
    engine_.show(rect);
  }

  const TransitionEngine& engine_;
  bool columns_;
  int64_t step_;
  QVVSurface work_;
};

bool isColumnRotation(int32_t effect) {
  return effect % 2 != 0;
}
/// 62 and 63 turn once more before they stop.
bool isLongRotation(int32_t effect) {
  return effect >= 62;
}

/// With a back side a turn ends on the back, and from there comes back to the front only when
/// another turn follows.
void spinTurns(const TransitionEngine& engine, Spinner& spinner, const SpinPicture& front,
               int32_t turns, const SpinBackground& background) {
  const QVVSurface* back = engine.mask1();
  for (int64_t turn = 1; turn <= turns && !engine.pace().aborted(); ++turn) {
    if (!back) {
      spinner.spin(front, 0, FullRound, background);
      continue;
    }
    const SpinPicture backSide{*back, 0, 0, front.key};
    spinner.spin(front, FaceOn, 0, background);
    spinner.spin(backSide, EdgeOn, FaceOn, background);
    if (turn == turns) continue;
    spinner.spin(backSide, FaceOn, 0, background);
    spinner.spin(front, EdgeOn, FaceOn, background);
  }
  if (!back) spinner.spin(front, 0, FaceOn, background);
}

}  // namespace

int32_t spinSine(int32_t angle) {
  static const auto table = [] {
    std::array<int32_t, FullRound> values;
    for (int32_t degree = 0; degree < FullRound; ++degree)
      values[static_cast<size_t>(degree)] = sineOfDegree(degree);
    return values;
  }();
  return table[static_cast<size_t>(angle % FullRound)];
}

std::vector<int32_t> spinRows(int32_t height, int32_t angle) {
  const int64_t sine = spinSine(angle);
  std::vector<int32_t> rows(static_cast<size_t>(height), -1);
  int64_t last = -1;
  for (int32_t i = 0; i < height; ++i) {
    const int64_t t = (i - height / 2) * sine / SineOne + height / 2;
    if (t != last && t < height) rows[static_cast<size_t>(i)] = static_cast<int32_t>(t);
    last = t;
  }
  return rows;
}

void rotation(const TransitionEngine& engine, const EffectCall& call) {
  if (engine.surface32()) {
    engine.refuse("rotate", call.key);
    return;
  }
  const OldPicture old(engine);
  const QVVSurface& before = engine.mask2() ? *engine.mask2() : *old.surface8();
  const bool opaque = call.key == KeyNone, longWay = isLongRotation(call.effect);
  const SpinBackground clear(ClearIndex), onBefore(before);
  const SpinPicture source{engine.source(), engine.sx(), engine.sy(), call.key};
  Spinner spinner(engine, isColumnRotation(call.effect), call.a);
  if (call.b > 0) {
    if (opaque) engine.takePalette();
    spinTurns(engine, spinner, source, call.b, opaque ? clear : onBefore);
    return;
  }
  if (opaque) {
    spinner.spin({before, 0, 0, KeyNone}, longWay ? FullRound + FaceOn : FaceOn,
                 longWay ? EdgeOn : 0, clear);
    engine.takePalette();
    spinner.spin(source, 0, FaceOn, clear);
  } else {
    spinner.spin(source, longWay ? FullRound : 0, FaceOn, onBefore);
  }
  engine.cut(call.key);
}

}  // namespace qv
