#include "message/text_device.h"

#include "graphics/colour_math.h"
#include "graphics/surface.h"
#include "platform/services.h"
#include "platform/text/text_renderer.h"

namespace qv {

void TextDevice::drawOutlined(const TextRun& run, ColourRef colour, ColourRef outline) {
  for (const OutlineStep step : OutlineSteps) {
    TextRun moved = run;
    moved.x = nearestCoordinate(int64_t{run.x} + step.dx);
    moved.y = nearestCoordinate(int64_t{run.y} + step.dy);
    draw(moved, outline);
  }
  draw(run, colour);
}

namespace {

/// A colour table's entry, or 32-bit pixel, of a colour.
uint32_t entryOf(ColourRef colour) {
  return colourOf(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
}

uint8_t nearestIndex(const ColourTable& table, ColourRef colour) {
  return nearestEntry(table, entryOf(colour));
}

class SystemTextDevice : public TextDevice {
 public:
  size_t fitBytes(const TextStyle& style, std::string_view text, int32_t width) override {
    TextRenderer* renderer = services().text;
    return renderer ? renderer->fitBytes(style, text, width) : text.size();
  }

  int32_t measure(const TextStyle& style, std::string_view text) override {
    TextRenderer* renderer = services().text;
    return renderer ? renderer->measure(style, text) : 0;
  }

  void draw(const TextRun& run, ColourRef colour) override { put(run, colour, nullptr); }
  void drawOutlined(const TextRun& run, ColourRef colour, ColourRef outline) override {
    put(run, colour, &outline);
  }

 private:
  /// The surface is held from the look at its colours to the last pixel.
  static void put(const TextRun& run, ColourRef colour, const ColourRef* outline) {
    TextRenderer* const renderer = services().text;
    if (!renderer) return;
    if (QVVSurface* surface = run.target.surface8) {
      const QVVSurface::Access access(*surface);
      const PixelTarget<uint8_t> pixels = pixelsOf<uint8_t>(access, *surface);
      const ColourTable table = surface->shownColours();
      const uint8_t index = nearestIndex(table, colour);
      if (outline)
        renderer->drawOutlined(pixels, run.x, run.y, run.style, run.text, index,
                               nearestIndex(table, *outline));
      else
        renderer->draw(pixels, run.x, run.y, run.style, run.text, index);
    } else if (QVVSurface24* wide = run.target.surface32) {
      const QVVSurface24::Access access(*wide);
      const PixelTarget<uint32_t> pixels = pixelsOf<uint32_t>(access, *wide);
      if (outline)
        renderer->drawOutlined(pixels, run.x, run.y, run.style, run.text, entryOf(colour),
                               entryOf(*outline));
      else
        renderer->draw(pixels, run.x, run.y, run.style, run.text, entryOf(colour));
    }
  }

  template <class Pixel, class Access, class Surface>
  static PixelTarget<Pixel> pixelsOf(const Access& access, const Surface& surface) {
    const int32_t width = surface.width(), height = surface.height();
    if (width < 1 || height < 1) return {};
    const ptrdiff_t stride = height > 1 ? access.row(1) - access.row(0) : 0;
    return {access.row(0), width, height, stride};
  }
};

}  // namespace

TextDevice& systemTextDevice() {
  static SystemTextDevice device;
  return device;
}

}  // namespace qv
