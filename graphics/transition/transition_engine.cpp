#include "graphics/transition/transition_engine.h"

#include <algorithm>
#include <string>
#include <utility>

#include "graphics/surface.h"
#include "graphics/transition/effects.h"
#include "graphics/view.h"
#include "platform/assert.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

struct EffectFamily {
  int32_t first, last;
  void (*run)(const TransitionEngine&, const EffectCall&);
  bool takesPalette;  ///< an opaque draw takes the source's colours before anything is drawn
};

// What stands in no row is a cut.
constexpr EffectFamily Families[] = {
    {2, 4, combFade, true},         {5, 5, patternFade, true},
    {9, 9, paletteFade, false},     {10, 23, flushWipe, true},
    {26, 27, openingCurtain, true}, {28, 29, closingCurtain, true},
    {30, 37, slidingWipe, true},    {38, 47, tileDissolve, true},
    {48, 49, randomLines, true},    {50, 52, interlacedSweeps, true},
    {60, 63, rotation, false},      {65, 80, shapeWipe, false},
};

const EffectFamily* familyOf(int32_t effect) {
  const auto* found = std::ranges::find_if(Families, [effect](const EffectFamily& family) {
    return effect >= family.first && effect <= family.last;
  });
  return found == std::end(Families) ? nullptr : found;
}

/// Where a draw begins and how far it goes along one axis.
struct Extent {
  int32_t at = 0, length = 0;
};

/// An asked length of 0 is what source and view have in common; no length passes the source's end.
/// Numbers come from scenes, so they may be anything. What lies wholly off the view is empty.
Extent preparedExtent(int32_t at, int32_t asked, int32_t sourceAt, int32_t sourceLength,
                      int32_t viewLength) {
  const int64_t left = std::min<int64_t>(int64_t{sourceLength} - sourceAt, sourceLength);
  int64_t length = asked == 0 ? std::min(left, int64_t{viewLength} - at) : asked;
  length = std::min(length, left);
  if (length < 1 || at >= viewLength || at + length <= 0) return {};
  return {at, static_cast<int32_t>(length)};
}

}  // namespace

TransitionEngine::TransitionEngine(View* view, const TransitionPictures& pictures,
                                   const TransitionPlace& place, Pace& pace, RandomDraw random)
    : view_(view),
      source_(pictures.source),
      mask1_(pictures.mask1),
      mask2_(pictures.mask2),
      sx_(place.sx),
      sy_(place.sy),
      pace_(pace),
      random_(std::move(random)) {
  if (!view_ || !source_) return;
  surface8_ = view_->surface8();
  if (!surface8_) surface32_ = view_->surface32();
  if (!surface8_ && !surface32_) return;
  const int32_t viewWidth = surface8_ ? surface8_->width() : surface32_->width();
  const int32_t viewHeight = surface8_ ? surface8_->height() : surface32_->height();
  const Extent x = preparedExtent(place.x, place.w, sx_, source_->width(), viewWidth);
  const Extent y = preparedExtent(place.y, place.h, sy_, source_->height(), viewHeight);
  if (x.length > 0 && y.length > 0) rect_ = Rectangle::at(x.at, y.at, x.length, y.length);
}

void TransitionEngine::run(int32_t effect, ColourKey key, int32_t a, int32_t b) {
  if (rect_.empty()) return;
  const EffectFamily* family = familyOf(effect);
  if (family && family->run == shapeWipe && !mask1_) return;
  if (surface8_ && key == KeyNone && (!family || family->takesPalette)) takePalette();
  if (family)
    family->run(*this, {effect, key, a, b});
  else
    cut(key);
  show(rect_);
}

void TransitionEngine::draw(const QVVSurface& picture, const Rectangle& target, int32_t pictureX,
                            int32_t pictureY, ColourKey key) const {
  if (surface8_)
    picture.blit(*surface8_, target.left, target.top, pictureX, pictureY, target.width(),
                 target.height(), key);
  else
    picture.blitTo32(*surface32_, target.left, target.top, pictureX, pictureY, target.width(),
                     target.height(), key);
}

void TransitionEngine::drawSource(ColourKey key) const {
  draw(*source_, rect_, sx_, sy_, key);
}

void TransitionEngine::drawSourceBlended(int32_t level, ColourKey key) const {
  const int32_t x = rect_.left, y = rect_.top, w = rect_.width(), h = rect_.height();
  if (surface8_) {
    if (key == KeyNone)
      source_->blitBlended(*surface8_, x, y, sx_, sy_, w, h, level);
    else
      source_->blitBlendedKey(*surface8_, x, y, sx_, sy_, w, h, level, key);
  } else {
    if (key == KeyNone)
      source_->blitTo32Blend(*surface32_, x, y, sx_, sy_, w, h, level);
    else
      source_->blitTo32BlendKey(*surface32_, x, y, sx_, sy_, w, h, level, key);
  }
}

void TransitionEngine::show(const Rectangle& area) const {
  if (!area.empty()) view_->flush(&area, 0);
}

void TransitionEngine::takePalette() const {
  if (surface8_) surface8_->copyPaletteFrom(*source_);
}

void TransitionEngine::cut(ColourKey key) const {
  drawSource(key);
}

void TransitionEngine::refuse(const char* effectName, ColourKey key) const {
  static const std::string before = sjis("24bit surface に対する "),
                           behind = sjis(
                               " の実行は、現在未実装です。\n単純に表示して処理を継続します。");
  services().dialogs->messageBox(before + effectName + behind, "QVString class", BoxNotice);
  cut(key);
}

}  // namespace qv
