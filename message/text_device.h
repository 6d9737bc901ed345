#pragma once

/// What a print area measures and draws with. The machine's text stands behind `systemTextDevice`;
/// tests put one with fixed widths in, so that layout is the same on every machine. Scenario
/// thread, or whoever holds the area.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/text/text_style.h"

namespace qv {

class QVVSurface;
class QVVSurface24;

/// A colour of text as scenes say it: red, green and blue from the lowest byte up.
using ColourRef = uint32_t;

/// Where text goes: one of the two, or none.
struct PrintTarget {
  QVVSurface* surface8 = nullptr;
  QVVSurface24* surface32 = nullptr;
  explicit operator bool() const { return surface8 || surface32; }
  bool operator==(const PrintTarget&) const = default;
};

/// One run at its place: the cell's top left corner.
struct TextRun {
  PrintTarget target;
  int32_t x = 0, y = 0;
  TextStyle style;
  std::string_view text;  ///< Shift-JIS, without line feeds
};

struct OutlineStep {
  int32_t dx, dy;
};
/// An outline is the run in another colour at these places, in this order, and then the run.
inline constexpr OutlineStep OutlineSteps[] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};

class TextDevice {
 public:
  virtual ~TextDevice() = default;
  /// The largest number of bytes whose width is at most `width`; it may end inside a character. 0
  /// for a negative width.
  virtual size_t fitBytes(const TextStyle& style, std::string_view text, int32_t width) = 0;
  virtual int32_t measure(const TextStyle& style, std::string_view text) = 0;
  virtual void draw(const TextRun& run, ColourRef colour) = 0;
  /// Five drawings; another form gives the same pixels.
  virtual void drawOutlined(const TextRun& run, ColourRef colour, ColourRef outline);
};

/// Draws with the services' text: exact colours on 32 bits, and on 8 bits the nearest of the
/// surface's shown colours, of equals the first. Without that service nothing is drawn and every
/// text has no width.
TextDevice& systemTextDevice();

}  // namespace qv
