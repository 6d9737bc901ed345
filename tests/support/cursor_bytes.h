#pragma once

/// Classic cursor files put together by hand in tests.

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/picture_bytes.h"

namespace qv::testing {

struct CursorImage {
  uint32_t width = 0, height = 0, bits = 0, hotX = 0, hotY = 0;
  std::vector<uint32_t> table;
  std::string colours, mask;  ///< rows as in the file, bottom row first, padded to 4 bytes
};

inline std::string cursorImageBytes(const CursorImage& image) {
  std::string bytes = little(40, 4) + little(image.width, 4) + little(image.height * 2, 4) +
                      little(1, 2) + little(image.bits, 2) + std::string(16, '\0') +
                      little(static_cast<uint32_t>(image.table.size()), 4) + std::string(4, '\0');
  for (const uint32_t colour : image.table)
    bytes += little(colour, 4);
  return bytes + image.colours + image.mask;
}

inline std::string cursorFile(const std::vector<CursorImage>& images) {
  const size_t count = images.size();
  std::string head = little(0, 2) + little(2, 2) + little(static_cast<uint32_t>(count), 2), bodies;
  for (const CursorImage& image : images) {
    const std::string body = cursorImageBytes(image);
    const size_t at = 6 + 16 * count + bodies.size();
    head += little(image.width, 1) + little(image.height, 1) + std::string(2, '\0') +
            little(image.hotX, 2) + little(image.hotY, 2) +
            little(static_cast<uint32_t>(body.size()), 4) + little(static_cast<uint32_t>(at), 4);
    bodies += body;
  }
  return head + bodies;
}

/// Two by two of four bits, the hot pixel at the right top: red, a reversed pixel; nothing, green.
inline CursorImage smallCursor() {
  return {.width = 2,
          .height = 2,
          .bits = 4,
          .hotX = 1,
          .hotY = 0,
          .table = {0x000000, 0xFF0000, 0x00FF00, 0xFFFFFF},
          .colours = std::string("\x02\0\0\0\x13\0\0\0", 8),
          .mask = std::string("\x80\0\0\0\x40\0\0\0", 8)};
}
inline const std::vector<uint32_t> SmallCursorPixels = {0xFFFF0000, 0xFF000000, 0, 0xFF00FF00};

}  // namespace qv::testing
