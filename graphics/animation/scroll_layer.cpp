#include "graphics/animation/scroll_layer.h"

#include <algorithm>
#include <mutex>

namespace qv {

namespace {

/// Places, steps and sources come from scenes; within this range no sum of them leaves 32 bits.
constexpr int32_t Farthest = 1 << 28;

int32_t bounded(int32_t number) {
  return std::clamp(number, -Farthest, Farthest);
}

int32_t modulo(int32_t number, int32_t size) {
  const int32_t rest = number % size;
  return rest < 0 ? rest + size : rest;
}

}  // namespace

ScrollLayer::ScrollLayer(const Setting& setting)
    : lock_("scroll layer", LockRank::Object), setting_(setting), ended_("scroll layer ended") {
  Rectangle& place = setting_.place;
  place = Rectangle{bounded(place.left), bounded(place.top), bounded(place.right),
                    bounded(place.bottom)}
              .normalised();
  setSource(setting.sourceX, setting.sourceY);
  setting_.stepX = bounded(setting.stepX);
  setting_.stepY = bounded(setting.stepY);
}

ScrollLayer::Setting ScrollLayer::setting() const {
  const std::lock_guard guard(lock_);
  return setting_;
}

ScrollLayer::State ScrollLayer::state() const {
  const std::lock_guard guard(lock_);
  return state_;
}

void ScrollLayer::setStep(int32_t x, int32_t y) {
  const std::lock_guard guard(lock_);
  setting_.stepX = bounded(x);
  setting_.stepY = bounded(y);
  if (state_ != Fresh) state_ = Moving;
  ended_.reset();
}

void ScrollLayer::setSource(int32_t x, int32_t y) {
  const std::lock_guard guard(lock_);
  setting_.sourceX = bounded(x);
  setting_.sourceY = bounded(y);
  state_ = Fresh;
}

void ScrollLayer::setFinal(int32_t x, int32_t y) {
  const std::lock_guard guard(lock_);
  setting_.finalX = x;
  setting_.finalY = y;
}

void ScrollLayer::setLevel(int32_t level) {
  const std::lock_guard guard(lock_);
  setting_.level = level;
}

Rectangle ScrollLayer::draw(QVVSurface& target) {
  const std::lock_guard guard(lock_);
  if (!setting_.surface) return {};
  const int32_t width = setting_.surface->width(), height = setting_.surface->height();
  if (width < 1 || height < 1) return {};
  moveOn(width, height);
  // What was drawn last stays: half a picture would not be what the stage ends on.
  if (outside(width, height)) return {};
  drawPieces(target, width, height);
  return setting_.place;
}

bool ScrollLayer::outside(int32_t width, int32_t height) const {
  return (!(setting_.wrap & WrapX) && setting_.sourceX + setting_.place.width() > width) ||
         (!(setting_.wrap & WrapY) && setting_.sourceY + setting_.place.height() > height);
}

void ScrollLayer::moveOn(int32_t width, int32_t height) {
  if (state_ != Fresh) {
    setting_.sourceX += setting_.stepX;
    setting_.sourceY += setting_.stepY;
  }
  setting_.sourceX = modulo(setting_.sourceX, width);
  setting_.sourceY = modulo(setting_.sourceY, height);
  if (outside(width, height)) {
    if (setting_.finalX != KeepPlace) setting_.sourceX = modulo(setting_.finalX, width);
    if (setting_.finalY != KeepPlace) setting_.sourceY = modulo(setting_.finalY, height);
    end();
    return;
  }
  state_ = setting_.stepX == 0 && setting_.stepY == 0 ? Resting : Moving;
}

void ScrollLayer::end() {
  state_ = Ended;
  setting_.stepX = setting_.stepY = 0;
  ended_.set();
}

/// The surface is repeated to the right and down where its wrap bits say so: that makes one, two or
/// four pieces for a place that is no larger than the surface.
void ScrollLayer::drawPieces(QVVSurface& target, int32_t width, int32_t height) const {
  // Counted from the first pixel that the target has, so that places may be as large as they like.
  const Rectangle& place = setting_.place;
  const Rectangle visible = place.intersected({0, 0, target.width(), target.height()});
  const auto source = [](int32_t first, int32_t size, bool wraps) {
    return wraps ? modulo(first, size) : first;
  };
  const bool wrapsX = setting_.wrap & WrapX, wrapsY = setting_.wrap & WrapY;
  int32_t sourceY = source(setting_.sourceY + visible.top - place.top, height, wrapsY);
  for (int32_t y = visible.top; y < visible.bottom && sourceY < height; sourceY = 0) {
    const int32_t pieceHeight = std::min(height - sourceY, visible.bottom - y);
    int32_t sourceX = source(setting_.sourceX + visible.left - place.left, width, wrapsX);
    for (int32_t x = visible.left; x < visible.right && sourceX < width; sourceX = 0) {
      const int32_t pieceWidth = std::min(width - sourceX, visible.right - x);
      setting_.surface->blitBlendedKey(target, x, y, sourceX, sourceY, pieceWidth, pieceHeight,
                                       setting_.level, setting_.key);
      if (!wrapsX) break;
      x += pieceWidth;
    }
    if (!wrapsY) break;
    y += pieceHeight;
  }
}

}  // namespace qv
