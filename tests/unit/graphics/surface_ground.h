#pragma once

// Surfaces as lines of text, one character a pixel: what a test draws and what it expects.

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/surface.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

using Lines = std::vector<std::string>;

/// A picture whose pixels are the characters' codes.
inline void put(QVVSurface& surface, const Lines& lines) {
  const auto width = static_cast<int32_t>(lines.at(0).size());
  surface.create(width, static_cast<int32_t>(lines.size()));
  const QVVSurface::Access access(surface);
  for (size_t y = 0; y < lines.size(); ++y)
    std::memcpy(access.row(static_cast<int32_t>(y)), lines[y].data(), lines[y].size());
}

inline Lines linesOf(QVVSurface& surface) {
  const int32_t width = surface.width(), height = surface.height();
  Lines lines;
  const QVVSurface::Access access(surface);
  for (int32_t y = 0; y < height; ++y)
    lines.emplace_back(reinterpret_cast<const char*>(access.row(y)), static_cast<size_t>(width));
  return lines;
}

/// A surface of one character.
inline void putPlain(QVVSurface& surface, int32_t width, int32_t height, char character = '.') {
  surface.create(width, height);
  surface.fill(static_cast<uint8_t>(character));
}

/// Pixels that tell their place, repeating late in either direction.
inline void putPattern(QVVSurface& surface, int32_t width, int32_t height, int32_t start = 0) {
  surface.create(width, height);
  const QVVSurface::Access access(surface);
  for (int32_t y = 0; y < height; ++y)
    for (int32_t x = 0; x < width; ++x)
      access.row(y)[x] = static_cast<uint8_t>(start + x * 7 + y * 31);
}

/// Entry i is three numbers that no other entry has.
inline ColourTable someColours(uint32_t start = 1) {
  ColourTable table;
  for (uint32_t i = 0; i < table.size(); ++i)
    table[i] = ((i * 5 + start) & 0xFF) | ((i * 3 + start) & 0xFF) << 8 | (i & 0xFF) << 16;
  return table;
}

struct BitmapParts {
  int32_t width = 1, height = 1;
  uint16_t bitCount = 8;
  std::vector<uint32_t> colours{};
  std::string bits{};       ///< as in a file: bottom row first, rows padded to 4 bytes
  BitmapInfoHeader more{};  ///< fields that are not told by the others
};

/// Never empty: a bitmap of few bits without colours here has one.
inline QVDib bitmapOf(BitmapParts parts) {
  if (parts.bitCount <= 8 && parts.colours.empty()) parts.colours = {0};
  BitmapInfoHeader header = parts.more;
  header.width = parts.width;
  header.height = parts.height;
  header.bitCount = parts.bitCount;
  header.coloursUsed = static_cast<uint32_t>(parts.colours.size());
  if (!header.sizeImage) header.sizeImage = static_cast<uint32_t>(parts.bits.size());
  std::vector<uint8_t> block(sizeof header + parts.colours.size() * sizeof(uint32_t) +
                             parts.bits.size());
  std::memcpy(block.data(), &header, sizeof header);
  if (!parts.colours.empty())
    std::memcpy(block.data() + sizeof header, parts.colours.data(),
                parts.colours.size() * sizeof(uint32_t));
  if (!parts.bits.empty())
    std::memcpy(block.data() + block.size() - parts.bits.size(), parts.bits.data(),
                parts.bits.size());
  QVDib dib;
  dib.loadPacked(block);
  EXPECT_FALSE(dib.empty());
  return dib;
}

class SurfaceTest : public ::testing::Test {
 protected:
  TestPlatform platform;
};

}  // namespace qv::testing
