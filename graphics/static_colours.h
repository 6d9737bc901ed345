#pragma once

/// The twenty static colours of the classic palette, indices 0 to 9 and 246 to 255, and the table
/// of a picture that brings none: a grey ramp with them in place. Entries are blue, green, red, 0
/// in memory order. Pure, any thread.

#include <array>
#include <cstddef>
#include <cstdint>

namespace qv {

inline constexpr size_t FirstFreeColour = 10, LastFreeColour = 245;

/// 0xRRGGBB, the ten low ones, then the ten high ones.
inline constexpr std::array<uint32_t, 20> StaticColours = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080,
    0xC0C0C0, 0xC0DCC0, 0xA6CAF0, 0xFFFBF0, 0xA0A0A4, 0x808080, 0xFF0000,
    0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};

constexpr bool isStaticColour(size_t index) {
  return index < FirstFreeColour || index > LastFreeColour;
}

constexpr std::array<uint32_t, 256> greyRampWithStaticColours() {
  std::array<uint32_t, 256> table{};
  for (uint32_t index = 0; index < 256; ++index)
    table[index] = index * 0x010101;
  for (size_t index = 0; index < 10; ++index) {
    table[index] = StaticColours[index];
    table[LastFreeColour + 1 + index] = StaticColours[10 + index];
  }
  return table;
}

}  // namespace qv
