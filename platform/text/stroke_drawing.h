#pragma once

/// Draws strokes, written as text, into a picture of 16 by 16 pixels: the pen of the built-in font.
/// In whole numbers throughout, so that every machine draws the same. Pure functions; any thread.

#include <array>
#include <cstdint>
#include <string_view>

namespace qv {

using StrokePicture = std::array<uint16_t, 16>;  ///< rows, bit 15 is the leftmost pixel

/// Where a drawing goes: a coordinate becomes (coordinate * scale + move) / 16 pixels, rounded.
struct StrokePlacing {
  int scaleX = 16, moveX = 0;
  int scaleY = 16, moveY = 0;
};

/// Whether a text is strokes in the form below, and nothing else. A text without strokes is too.
constexpr bool areStrokes(std::string_view text) {
  bool first = true;  // of its stroke
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] == ' ') continue;
    if (text[at] == '/' && !first) {
      first = true;
      continue;
    }
    if (text[at] == '~' && first) ++at;
    const std::string_view point = text.substr(at < text.size() ? at : text.size(), 2);
    if (point.size() < 2 || point.find_first_not_of("0123456789ABCDEF") != point.npos) return false;
    if (++at + 1 < text.size() && text[at + 1] != ' ') return false;
    first = false;
  }
  return text.empty() || !first;
}

/// Strokes are parted by "/"; a stroke is a row of points, each two hexadecimal digits (x, then y,
/// from the top left), joined by straight lines; one that begins with "~" runs through its points
/// in a curve. "23 D3 / ~61 66 7C" is a bar and a bent pole. What lies outside the picture, and
/// what is no stroke, is not drawn.
void drawStrokes(StrokePicture& picture, std::string_view strokes,
                 const StrokePlacing& placing = {});

/// The picture with every pixel spread to its eight neighbours: what is cleared around a mark.
StrokePicture spread(const StrokePicture& picture);

}  // namespace qv
