#include "host/box_drawing.h"

#include <algorithm>

namespace qv {

namespace {

BoxRect clipped(const BoxRect& rect, const BoxRect& to) {
  const int left = std::max(rect.x, to.x), top = std::max(rect.y, to.y);
  const int right = std::min(rect.x + rect.width, to.x + to.width);
  const int bottom = std::min(rect.y + rect.height, to.y + to.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

uint32_t& pixelAt(const Canvas& canvas, int x, int y) {
  return canvas.pixels[static_cast<ptrdiff_t>(y) * canvas.width + x];
}

}  // namespace

void fillRect(const Canvas& canvas, const BoxRect& rect, uint32_t colour) {
  const BoxRect part = clipped(rect, canvas.bounds());
  for (int y = part.y; y < part.y + part.height; ++y)
    std::fill_n(&pixelAt(canvas, part.x, y), part.width, colour);
}

void edgeRect(const Canvas& canvas, const BoxRect& rect, uint32_t leftTop, uint32_t rightBottom) {
  fillRect(canvas, {rect.x, rect.y + rect.height - 1, rect.width, 1}, rightBottom);
  fillRect(canvas, {rect.x + rect.width - 1, rect.y, 1, rect.height}, rightBottom);
  fillRect(canvas, {rect.x, rect.y, rect.width - 1, 1}, leftTop);
  fillRect(canvas, {rect.x, rect.y, 1, rect.height - 1}, leftTop);
}

void gradientRect(const Canvas& canvas, const BoxRect& rect, uint32_t left, uint32_t right) {
  const int span = std::max(1, rect.width - 1);
  for (int step = 0; step < rect.width; ++step) {
    uint32_t colour = 0;
    for (const int shift : {16, 8, 0}) {
      const int from = static_cast<int>(left >> shift & 0xFF);
      const int to = static_cast<int>(right >> shift & 0xFF);
      colour |= static_cast<uint32_t>(from + (to - from) * step / span) << shift;
    }
    fillRect(canvas, {rect.x + step, rect.y, 1, rect.height}, colour);
  }
}

void dottedRect(const Canvas& canvas, const BoxRect& rect, uint32_t colour) {
  const BoxRect part = clipped(rect, canvas.bounds());
  for (int y = part.y; y < part.y + part.height; ++y)
    for (int x = part.x; x < part.x + part.width; ++x) {
      const bool onEdge = x == rect.x || y == rect.y || x == rect.x + rect.width - 1 ||
                          y == rect.y + rect.height - 1;
      if (onEdge && (x + y) % 2 == 0) pixelAt(canvas, x, y) = colour;
    }
}

void fillDisc(const Canvas& canvas, const BoxRect& around, uint32_t colour) {
  const BoxRect part = clipped(around, canvas.bounds());
  // Distances are counted in half pixels from the middle, so that even widths are symmetrical.
  const int size = around.width;
  for (int y = part.y; y < part.y + part.height; ++y)
    for (int x = part.x; x < part.x + part.width; ++x) {
      const int across = 2 * (x - around.x) + 1 - size, down = 2 * (y - around.y) + 1 - size;
      if (across * across + down * down <= size * size) pixelAt(canvas, x, y) = colour;
    }
}

void drawRun(const Canvas& canvas, TextRenderer& text, const BoxRect& clip, int x, int y,
             const TextStyle& style, std::string_view run, uint32_t colour) {
  const BoxRect part = clipped(clip, canvas.bounds());
  if (part.width == 0 || part.height == 0) return;
  text.draw(TextTarget{&pixelAt(canvas, part.x, part.y), part.width, part.height, canvas.width},
            x - part.x, y - part.y, style, run, colour);
}

void drawRaisedFrame(const Canvas& canvas, TextRenderer* text, const BoxRect& outer,
                     std::string_view caption) {
  using namespace box_look;
  fillRect(canvas, outer, Face);
  edgeRect(canvas, outer, Edge, Edge);
  edgeRect(canvas, outer.shrunk(1), Light, Shade);
  const BoxRect bar = {outer.x + FrameWidth, outer.y + FrameWidth, outer.width - 2 * FrameWidth,
                       CaptionHeight};
  gradientRect(canvas, bar, BarLeft, BarRight);
  if (!text) return;
  const BoxRect inside = {bar.x + 6, bar.y, bar.width - 12, bar.height};
  drawRun(canvas, *text, inside, inside.x, bar.y + (bar.height - BodyText.heightPixels) / 2,
          BodyText, shortened(*text, BodyText, caption, inside.width), BarInk);
}

std::string shortened(TextRenderer& text, const TextStyle& style, std::string_view run,
                      int widthPixels) {
  if (text.measure(style, run) <= widthPixels) return std::string(run);
  constexpr std::string_view Dots = "...";
  const int room = widthPixels - text.measure(style, Dots);
  if (room < 0) return {};
  return std::string(run.substr(0, text.fitBytes(style, run, room))).append(Dots);
}

}  // namespace qv
