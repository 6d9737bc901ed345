#pragma once

// The formulas by which a picture's colours become those of frame and plates, written out plainly.

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "graphics/palette.h"

namespace qv::testing {

struct Colour {
  int32_t red, green, blue;
  bool operator==(const Colour&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Colour& colour) {
  return out << colour.red << "," << colour.green << "," << colour.blue;
}

inline Colour tinted(const Colour& from, const Colour& cast) {
  const int32_t grey = 30 * from.red + 59 * from.green + 11 * from.blue;
  const auto channel = [grey](int32_t part) { return ((grey * (part + 1)) >> 8) / 100; };
  return {channel(cast.red), channel(cast.green), channel(cast.blue)};
}

inline Colour raised(const Colour& from, const Colour& by) {
  const auto channel = [](int32_t value) { return std::min(value, 255); };
  return {channel(from.red + by.red), channel(from.green + by.green), channel(from.blue + by.blue)};
}

inline Colour at(const scobjPalette& palette, int32_t entry) {
  const uint32_t word = palette.table()[static_cast<size_t>(entry)];
  return {static_cast<int32_t>(word >> 16 & 255), static_cast<int32_t>(word >> 8 & 255),
          static_cast<int32_t>(word & 255)};
}

}  // namespace qv::testing
