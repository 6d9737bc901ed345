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

constexpr BoxRect Screen{0, 0, ScreenWidth, ScreenHeight};

uint32_t& pixelAt(Frame& frame, int x, int y) {
  return frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
}

}  // namespace

void fillRect(Frame& frame, const BoxRect& rect, uint32_t colour) {
  const BoxRect part = clipped(rect, Screen);
  for (int y = part.y; y < part.y + part.height; ++y)
    std::fill_n(frame.begin() + static_cast<ptrdiff_t>(y) * ScreenWidth + part.x, part.width,
                colour);
}

void edgeRect(Frame& frame, const BoxRect& rect, uint32_t leftTop, uint32_t rightBottom) {
  fillRect(frame, {rect.x, rect.y + rect.height - 1, rect.width, 1}, rightBottom);
  fillRect(frame, {rect.x + rect.width - 1, rect.y, 1, rect.height}, rightBottom);
  fillRect(frame, {rect.x, rect.y, rect.width - 1, 1}, leftTop);
  fillRect(frame, {rect.x, rect.y, 1, rect.height - 1}, leftTop);
}

void gradientRect(Frame& frame, const BoxRect& rect, uint32_t left, uint32_t right) {
  const int span = std::max(1, rect.width - 1);
  for (int step = 0; step < rect.width; ++step) {
    uint32_t colour = 0;
    for (const int shift : {16, 8, 0}) {
      const int from = static_cast<int>(left >> shift & 0xFF);
      const int to = static_cast<int>(right >> shift & 0xFF);
      colour |= static_cast<uint32_t>(from + (to - from) * step / span) << shift;
    }
    fillRect(frame, {rect.x + step, rect.y, 1, rect.height}, colour);
  }
}

void dottedRect(Frame& frame, const BoxRect& rect, uint32_t colour) {
  const BoxRect part = clipped(rect, Screen);
  for (int y = part.y; y < part.y + part.height; ++y)
    for (int x = part.x; x < part.x + part.width; ++x) {
      const bool onEdge = x == rect.x || y == rect.y || x == rect.x + rect.width - 1 ||
                          y == rect.y + rect.height - 1;
      if (onEdge && (x + y) % 2 == 0) pixelAt(frame, x, y) = colour;
    }
}

void fillDisc(Frame& frame, const BoxRect& around, uint32_t colour) {
  const BoxRect part = clipped(around, Screen);
  // Distances are counted in half pixels from the middle, so that even widths are symmetrical.
  const int size = around.width;
  for (int y = part.y; y < part.y + part.height; ++y)
    for (int x = part.x; x < part.x + part.width; ++x) {
      const int across = 2 * (x - around.x) + 1 - size, down = 2 * (y - around.y) + 1 - size;
      if (across * across + down * down <= size * size) pixelAt(frame, x, y) = colour;
    }
}

void drawRun(Frame& frame, TextRenderer& text, const BoxRect& clip, int x, int y,
             const TextStyle& style, std::string_view run, uint32_t colour) {
  const BoxRect part = clipped(clip, Screen);
  if (part.width == 0 || part.height == 0) return;
  text.draw({&pixelAt(frame, part.x, part.y), part.width, part.height, ScreenWidth}, x - part.x,
            y - part.y, style, run, colour);
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
