#include "tests/support/effect_stage.h"

#include <cmath>
#include <cstdlib>

namespace qv::testing {

namespace {

// The cards' indices: 0 is what a key leaves out.
constexpr uint8_t FirstWarm = 16, FirstCold = 96;
constexpr int32_t Shades = 16;

uint32_t colourOf(int32_t red, int32_t green, int32_t blue) {
  const auto byte = [](int32_t value) { return static_cast<uint32_t>(std::min(value, 255)); };
  return byte(red) << 16 | byte(green) << 8 | byte(blue);
}

/// Both cards use all the indices, so that a table in the wrong moment is seen.
ColourTable cardColours(bool cold) {
  ColourTable table = defaultColours();
  for (int32_t i = 0; i < Shades; ++i) {
    const auto warm = static_cast<size_t>(FirstWarm + i),
               other = static_cast<size_t>(FirstCold + i);
    table[warm] =
        cold ? colourOf(60 + i * 4, 20, 90 + i * 4) : colourOf(120 + i * 9, 40 + i * 11, 20);
    table[other] = cold ? colourOf(20, 90 + i * 10, 130 + i * 8) : colourOf(90, 80 + i * 5, 40);
  }
  table[0] = cold ? colourOf(16, 24, 60) : colourOf(60, 16, 16);
  return table;
}

template <class Pixel>
void drawPixels(QVVSurface& surface, int32_t width, int32_t height, const Pixel& pixel) {
  surface.create(width, height);
  const QVVSurface::Access access(surface);
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* row = access.row(y);
    for (int32_t x = 0; x < width; ++x)
      row[x] = static_cast<uint8_t>(pixel(x, y));
  }
}

}  // namespace

StageView::StageView(int32_t width, int32_t height, bool target32)
    : frame{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height, 0)} {
  if (target32) {
    surface32_ = std::make_unique<QVVSurface24>();
    surface32_->create(width, height);
  } else {
    surface8_ = std::make_unique<RecordingSurface>();
    surface8_->create(width, height);
  }
}

void StageView::invalidate(const Rectangle* area, int32_t) {
  invalid_.push_back({0, area ? *area : clientRectangle(), area == nullptr});
}

void StageView::update() {
  if (holds_ > 0) return;
  for (Flush& flush : std::exchange(invalid_, {})) {
    flush.tick = tickCount();
    paint(flush.area.intersected(clientRectangle()));
    flushes.push_back(flush);
    if (flushed) flushed(flush);
  }
}

void StageView::release(bool redraw) {
  if (--holds_ == 0 && redraw) flush(nullptr, 0);
}

void StageView::paint(const Rectangle& area) {
  if (area.empty()) return;
  if (surface8_)
    surface8_->paint(frame.pixels, frame.width, frame.height, area.left, area.top, area);
  else
    surface32_->paint(frame.pixels, frame.width, frame.height, area.left, area.top, area);
}

std::vector<uint8_t> indicesOf(const QVVSurface& surface) {
  std::vector<uint8_t> indices;
  for (int32_t y = 0; y < surface.height(); ++y)
    for (int32_t x = 0; x < surface.width(); ++x)
      indices.push_back(surface.pixel(x, y));
  return indices;
}

void drawOldCard(QVVSurface& surface, int32_t width, int32_t height) {
  constexpr int32_t Check = 8;
  drawPixels(surface, width, height, [&](int32_t x, int32_t y) {
    const int32_t slope = (x + y) * (Shades / 2) / (width + height);
    return FirstWarm + slope + (x / Check + y / Check) % 2 * (Shades / 2);
  });
  surface.setColoursRange(cardColours(false), 0, 256);
}

void drawNewCard(QVVSurface& surface, int32_t width, int32_t height) {
  drawPixels(surface, width, height, [&](int32_t x, int32_t y) {
    const double dx = 2.0 * x / width - 1, dy = 2.0 * y / height - 1;
    const double radius = std::sqrt(dx * dx + dy * dy);
    // A notch at one side tells a mirrored or shifted card.
    if (radius > 0.95 || (dx > 0 && dy < 0 && dy > -0.3)) return 0;
    return FirstCold + static_cast<int32_t>(radius * Shades);
  });
  surface.setColoursRange(cardColours(true), 0, 256);
}

void drawMask(QVVSurface& surface, int32_t width, int32_t height, uint8_t colour) {
  drawPixels(surface, width, height, [&](int32_t x, int32_t y) {
    const int32_t threshold = (x * 5 + y * 3) % width;
    return threshold < x ? 0 : colour;
  });
  surface.setColoursRange(cardColours(false), 0, 256);
}

EffectStage::EffectStage(int32_t width, int32_t height, bool target32)
    : view(width, height, target32), generator_(Kernel::current().randomSeed()) {
  drawOldCard(oldCard, width, height);
  drawNewCard(newCard, width, height);
  drawMask(mask1, 32, 24, FirstWarm);
  drawMask(mask2, 20, 20, FirstWarm);
  if (target32) {
    oldCard.blitTo32(*view.surface32(), 0, 0, 0, 0, width, height, KeyNone);
  } else {
    oldCard.blit(*view.surface8(), 0, 0, 0, 0, width, height, KeyNone);
    view.surface8()->copyPaletteFrom(oldCard);
  }
  view.flush(nullptr, 0);
  view.flushes.clear();
  startTick = tickCount();
}

RandomDraw EffectStage::random() {
  return [this](uint32_t limit) { return generator_.draw(limit); };
}

TransitionEngine EffectStage::engine(const TransitionPlace& place, bool withMasks) {
  TransitionPictures pictures{&newCard, nullptr, nullptr};
  if (withMasks) pictures = {&newCard, &mask1, &mask2};
  return {&view, pictures, place, pace, random()};
}

void EffectStage::run(const EffectCall& call, const TransitionPlace& place, bool withMasks) {
  TransitionEngine transition = engine(place, withMasks);
  startTick = tickCount();
  transition.run(call.effect, call.key, call.a, call.b);
}

}  // namespace qv::testing
