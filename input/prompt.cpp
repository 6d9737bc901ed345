#include "input/prompt.h"

#include <array>

namespace qv {

namespace {

// Static colours, so that the prompt looks alike over every picture's palette.
constexpr uint8_t Outline = 0, Face = 255;

// An arrow that bobs over a line. The bend of its way, a frame each.
constexpr std::array<int32_t, Prompt::Frames> ArrowTop = {3, 4, 5, 6, 7, 6, 5, 4};
constexpr int32_t ArrowRows = 7, ArrowMiddle = 11;
constexpr int32_t LineTop = 19, LineLeft = 4, LineRight = 20;

void fillRow(QVVSurface& strip, int32_t left, int32_t right, int32_t y, uint8_t index) {
  const Rectangle row = {left, y, right, y + 1};
  strip.fill(index, &row);
}

/// Rows from the broad one down to the tip; each is narrower by a pixel at both ends.
void drawArrow(QVVSurface& strip, int32_t x, int32_t top, int32_t rows, uint8_t index) {
  for (int32_t row = 0; row < rows; ++row)
    fillRow(strip, x + ArrowMiddle - (rows - 1 - row), x + ArrowMiddle + (rows - row) + 1,
            top + row, index);
}

}  // namespace

void Prompt::drawFrames(QVVSurface& strip) {
  strip.create(Side * Frames, Side);
  strip.fill(Key);
  for (int32_t frame = 0; frame < Frames; ++frame) {
    const int32_t x = frame * Side, top = ArrowTop[static_cast<size_t>(frame)];
    drawArrow(strip, x, top, ArrowRows + 2, Outline);
    drawArrow(strip, x, top + 1, ArrowRows, Face);
    const Rectangle edge = {x + LineLeft, LineTop, x + LineRight, LineTop + 4};
    strip.fill(Outline, &edge);
    const Rectangle line = {edge.left + 1, edge.top + 1, edge.right - 1, edge.bottom - 1};
    strip.fill(Face, &line);
  }
}

Prompt::Prompt(View& view, int32_t x, int32_t y)
    : view_(view), x_(x), y_(y), stop_("prompt stop", Event::Reset::Manual) {
  drawFrames(strip_);
  if (QVVSurface* surface = view.surface8()) {
    for (QVVSurface* copy : {&saved8_, &compose8_}) {
      copy->create(Side, Side);
      copy->copyPaletteFrom(*surface);
    }
    surface->blit(saved8_, 0, 0, x, y, Side, Side, KeyNone);
  }
  if (QVVSurface24* surface = view.surface32()) {
    saved32_.create(Side, Side);
    compose32_.create(Side, Side);
    surface->blit(saved32_, 0, 0, x, y, Side, Side);
  }
  show(0);
  thread_.start("prompt", [this] { run(); });
}

Prompt::~Prompt() {
  stop_.set();
  thread_.join();
  if (QVVSurface* surface = view_.surface8())
    saved8_.blit(*surface, x_, y_, 0, 0, Side, Side, KeyNone);
  if (QVVSurface24* surface = view_.surface32()) saved32_.blit(*surface, x_, y_, 0, 0, Side, Side);
  view_.flushArea(x_, y_, Side, Side, 0);
}

void Prompt::run() {
  for (int32_t frame = 1; stop_.wait(FrameMillis, WaitKind::Service) == WaitTimeout;
       frame = (frame + 1) % Frames)
    show(frame);
}

/// The frame over what lay there, composed aside: nobody sees the pixels between two frames.
void Prompt::show(int32_t frame) {
  const int32_t left = frame * Side;
  if (QVVSurface* surface = view_.surface8()) {
    saved8_.blit(compose8_, 0, 0, 0, 0, Side, Side, KeyNone);
    strip_.blit(compose8_, 0, 0, left, 0, Side, Side, Key);
    compose8_.blit(*surface, x_, y_, 0, 0, Side, Side, KeyNone);
  }
  if (QVVSurface24* surface = view_.surface32()) {
    saved32_.blit(compose32_, 0, 0, 0, 0, Side, Side);
    strip_.blitTo32(compose32_, 0, 0, left, 0, Side, Side, Key);
    compose32_.blit(*surface, x_, y_, 0, 0, Side, Side);
  }
  view_.flushArea(x_, y_, Side, Side, 0);
}

}  // namespace qv
