#include "tests/story/reel/cards.h"

#include <array>
#include <cstdlib>

#include "graphics/surface.h"
#include "scenario/handles.h"

namespace qv::reel {

namespace {

// Sixteen shades each, between the static colours.
constexpr int32_t Shades = 16;
constexpr uint8_t Warm = 16, Cold = 48, Rose = 80;

uint32_t shade(int32_t red, int32_t green, int32_t blue) {
  return static_cast<uint32_t>(red) << 16 | static_cast<uint32_t>(green) << 8 |
         static_cast<uint32_t>(blue);
}

/// In the old card's table the cold entries are dull and the other way round, so that a table that
/// is taken at a wrong moment is seen.
ColourTable cardColours(bool cold) {
  ColourTable table = defaultColours();
  for (int32_t i = 0; i < Shades; ++i) {
    const auto entry = [&](uint8_t first) -> uint32_t& {
      return table[static_cast<size_t>(first + i)];
    };
    entry(Warm) =
        cold ? shade(40 + i * 6, 30 + i * 2, 60 + i * 5) : shade(120 + i * 8, 50 + i * 11, 24);
    entry(Cold) = cold ? shade(20, 70 + i * 11, 110 + i * 9) : shade(80 + i * 3, 80 + i * 4, 50);
    entry(Rose) = shade(200 + i * 3, 40 + i * 10, 90 + i * 8);
  }
  return table;
}

/// A surface of that name whose pixels are `pixel(x, y)`.
template <class Pixel>
QVVSurface* draw(const char* name, int32_t width, int32_t height, bool cold, const Pixel& pixel) {
  const SurfaceHandle handle(name, width, height);
  QVVSurface* surface = handle.surface();
  if (!surface) return nullptr;
  {
    const QVVSurface::Access access(*surface);
    for (int32_t y = 0; y < height; ++y)
      for (int32_t x = 0; x < width; ++x)
        access.row(y)[x] = static_cast<uint8_t>(pixel(x, y));
  }
  surface->setColoursRange(cardColours(cold), 0, 256);
  return surface;
}

int32_t squareOfDistance(int32_t x, int32_t y, int32_t width, int32_t height) {
  const int32_t dx = 2 * x + 1 - width, dy = 2 * y + 1 - height;
  return dx * dx + dy * dy;
}

int32_t oldPixel(int32_t x, int32_t y) {
  constexpr int32_t Check = 20;
  return Warm + (x + y) * (Shades / 2) / (CardWidth + CardHeight) +
         (x / Check + y / Check) % 2 * (Shades / 2);
}

int32_t newPixel(int32_t x, int32_t y) {
  constexpr int32_t Ring = 2400, Rings = 10;
  const int32_t ring = squareOfDistance(x, y, CardWidth, CardHeight) / Ring;
  // The notch tells a card that is mirrored or shifted.
  const bool notch = x > CardWidth / 2 && y > CardHeight / 3 && y < CardHeight / 2;
  return ring >= Rings || notch ? 0 : Cold + ring * 3 / 2;
}

int32_t mouthPixel(int32_t x, int32_t y) {
  // Closed, open, half open.
  constexpr std::array<int32_t, MouthCells> Opening{1, 6, 3};
  const int32_t cell = x / MouthWidth;
  const int32_t inCell = x % MouthWidth, half = Opening[static_cast<size_t>(cell)];
  const bool lips = inCell > 3 && inCell < MouthWidth - 4 && std::abs(y - MouthHeight / 2) <= half;
  return lips ? Rose : Rose + 10;
}

int32_t promptPixel(int32_t x, int32_t y) {
  const int32_t cell = x / PromptSide;
  const bool filled = squareOfDistance(x % PromptSide, y, PromptSide, PromptSide) < 100;
  return filled ? Rose + cell : 0;
}

}  // namespace

void drawCards() {
  draw("old.card", CardWidth, CardHeight, false, oldPixel);
  draw("new.card", CardWidth, CardHeight, true, newPixel);
  draw("mask.card", 40, 30, false,
       [](int32_t x, int32_t y) { return (x * 7 + y * 3) % 40 < x ? 0 : Rose; });
  draw("disc.card", CardWidth / 2, CardHeight / 2, true, [](int32_t x, int32_t y) {
    constexpr int32_t Radius = 3000;
    return squareOfDistance(x, y, CardWidth / 2, CardHeight / 2) < Radius ? Cold + y / 4 : 0;
  });
  draw("sky.card", CardWidth, CardHeight / 2, true,
       [](int32_t, int32_t y) { return Cold + y / 4; });
  draw("cloud.card", CardWidth * 2, CardHeight / 2, true, [](int32_t x, int32_t y) {
    const int32_t hill = 30 - std::abs(x % 64 - 32);
    return CardHeight / 2 - y < hill ? Rose + y / 4 : 0;
  });
  QVVSurface* mouth = draw("mouth.card", MouthWidth * MouthCells, MouthHeight, true, mouthPixel);
  if (mouth) mouth->saveBmpByName("mouth.bmp");
  QVVSurface* prompt = draw("prompt.card", PromptSide * PromptCells, PromptSide, true, promptPixel);
  if (prompt) prompt->saveBmpByName("prompt.bmp");
}

}  // namespace qv::reel
