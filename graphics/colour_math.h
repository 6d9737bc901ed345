#pragma once

/// The arithmetic of colour table entries: blue, green, red, fourth from the lowest byte up. Pure
/// functions.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace qv {

inline constexpr uint32_t ColourMask = 0xFFFFFF;  ///< blue, green and red of an entry

constexpr int blueOf(uint32_t entry) {
  return static_cast<int>(entry & 0xFF);
}
constexpr int greenOf(uint32_t entry) {
  return static_cast<int>(entry >> 8 & 0xFF);
}
constexpr int redOf(uint32_t entry) {
  return static_cast<int>(entry >> 16 & 0xFF);
}
constexpr uint32_t colourOf(int64_t red, int64_t green, int64_t blue) {
  return static_cast<uint8_t>(blue) | static_cast<uint32_t>(static_cast<uint8_t>(green)) << 8 |
         static_cast<uint32_t>(static_cast<uint8_t>(red)) << 16;
}
/// The entry with other colours; its fourth byte stays.
constexpr uint32_t withChannels(uint32_t entry, int64_t red, int64_t green, int64_t blue) {
  return (entry & ~ColourMask) | colourOf(red, green, blue);
}

/// In hundredths, 0 to 25500.
constexpr int64_t luminanceOf(uint32_t entry) {
  return blueOf(entry) * 11 + greenOf(entry) * 59 + redOf(entry) * 30;
}
/// The two greys of a tint differ by their rounding; stories were drawn with both.
constexpr int64_t tintChannel(int64_t luminance, int32_t tint) {
  return (luminance * (int64_t{tint} + 1) >> 8) / 100;
}
constexpr int64_t monochromeChannel(int64_t luminance, int32_t tint) {
  return luminance * (int64_t{tint} + 1) / 25600;
}

/// The entry that lies nearest to a colour, the lowest of equally near ones. All distances first,
/// in a loop without branches, which vectors do in no time.
inline uint8_t nearestEntry(const std::array<uint32_t, 256>& table, uint32_t colour) {
  const int red = redOf(colour), green = greenOf(colour), blue = blueOf(colour);
  std::array<int32_t, 256> distances;
  for (size_t i = 0; i < distances.size(); ++i) {
    const int r = redOf(table[i]) - red, g = greenOf(table[i]) - green, b = blueOf(table[i]) - blue;
    distances[i] = r * r + g * g + b * b;
  }
  int32_t best = distances[0];
  for (const int32_t distance : distances)
    best = distance < best ? distance : best;
  return static_cast<uint8_t>(std::ranges::find(distances, best) - distances.begin());
}

/// A run of entries: `first` is clamped into the table, the count ends with it; 0 means to the end.
struct TableRange {
  int32_t first = 0, end = 0;
};
constexpr TableRange tableRange(int32_t first, int32_t count, int32_t size) {
  if (size < 1 || count < 0) return {};
  const int32_t start = std::clamp(first, 0, size - 1);
  return {start, count == 0 || count > size - start ? size : start + count};
}

}  // namespace qv
