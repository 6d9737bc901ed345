#pragma once

/// A picture as an author's tools hold it: one byte a pixel, top row first, no padding, and colours
/// with the marks of those that the picture uses. One thread at a time.

#include <array>
#include <cstdint>
#include <vector>

namespace qv::codec {

struct IndexedPicture {
  static constexpr uint8_t Used = 0, Free = 1;

  int32_t width = 0, height = 0;
  std::vector<uint8_t> pixels;
  std::array<uint32_t, 256> colours{};  ///< 0xRRGGBB
  std::array<uint8_t, 256> marks{};     ///< 0: the picture uses the colour; else the index is free
};

}  // namespace qv::codec
