#pragma once

/// Writes outline fonts as TrueType files (the format of the public TrueType reference): outlines
/// without instructions, all characters of one width. The same font gives the same bytes.

#include <cstdint>
#include <string>
#include <vector>

namespace qv::tool {

/// In font units, x to the right, y upward from the base line. A point off the curve bends the
/// outline towards itself (a quadratic curve); between two of them lies one on the curve.
struct OutlinePoint {
  int x = 0, y = 0;
  bool onCurve = true;
};

/// Closed. What turns clockwise is filled, what turns the other way is cut out of it.
using Contour = std::vector<OutlinePoint>;

struct OutlineGlyph {
  uint16_t character = 0;  ///< Unicode
  std::vector<Contour> contours;
};

struct OutlineFont {
  std::string name;  ///< of the family, printable ASCII
  int unitsPerEm = 1024;
  int ascent = 0, descent = 0;       ///< above and below the base line, both positive
  std::vector<OutlineGlyph> glyphs;  ///< by rising character, each once; as wide as the em
};

/// The whole file. Coordinates have to lie within 16 bits, the number of glyphs below 65535.
std::vector<uint8_t> encodeTrueType(const OutlineFont& font);

}  // namespace qv::tool
