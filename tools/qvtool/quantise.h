#pragma once

/// Chooses a picture's colours into a range of entries. The twenty static colours are always there
/// and always at their places.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/picture_codec/indexed_picture.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

/// Both ends belong to it.
struct EntryRange {
  int first = 10, last = 245;
};

/// "10-127". Throws Failure; static entries cannot be given away.
EntryRange parseEntries(const std::string& text);

struct FixedColour {
  int entry = 0;
  uint32_t colour = 0;  ///< 0xRRGGBB
};

/// "42=#FF8000". Throws Failure.
FixedColour parseFixedColour(const std::string& text);

struct QuantiseWishes {
  EntryRange entries;
  std::vector<FixedColour> fixed;  ///< within the range
  std::optional<int> key;          ///< the index of transparent pixels
  double dither = 1;               ///< 0 to 1
  /// Pixels may have static colours. Without them a tint or fade of the palette, which leaves
  /// static entries as they are, finds every pixel.
  bool statics = true;
  /// Pixels have these colours alone, and no entry gets another one.
  bool onlyFixed = false;
};

/// Entries of the range that got no colour, and all beyond it but the static ones, are marked free.
/// With a key the top left pixel gets it, because there a blit looks for its key; what else goes
/// wrong is told in `warnings`. Throws Failure.
codec::IndexedPicture quantise(const Image& image, const QuantiseWishes& wishes,
                               std::vector<std::string>& warnings);

/// The wishes with the colours fixed that suit all the pictures at once, so that each of them,
/// quantised with these, has the same colours in the same entries. The order of the pictures does
/// not matter. Throws Failure.
QuantiseWishes commonColours(const std::vector<Image>& images, const QuantiseWishes& wishes);

/// The picture's own indices and colours, with the static entries as they must be. Throws Failure
/// when it uses one of them for another colour.
codec::IndexedPicture keepIndices(const codec::IndexedPicture& picture);

}  // namespace qv::tool
