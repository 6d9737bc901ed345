#pragma once

/// What must hold of every bitmap, wherever its bytes came from.

#include <cstring>

#include "graphics/dib.h"
#include "tests/fuzz/fuzz_files.h"

namespace qv::fuzz {

/// A head may rightly announce more than a run of many inputs has time for.
inline constexpr int64_t MostTriedPixels = 1 << 20;

/// Whether the words at these places announce a picture small enough to be tried.
inline bool isTriedSize(const uint8_t* data, size_t size, size_t widthAt, size_t heightAt) {
  if (size < heightAt + 4) return true;
  int32_t width, height;
  std::memcpy(&width, data + widthAt, 4);
  std::memcpy(&height, data + heightAt, 4);
  return width <= 0 || height <= 0 || int64_t{width} * height <= MostTriedPixels ||
         int64_t{width} * height > MostPixels;
}

inline void requireSound(const QVDib& dib) {
  if (dib.empty()) {
    require(dib.bits().empty() && dib.colours().empty(), "an empty picture has contents");
    require(dib.width() == 0 && dib.height() == 0, "an empty picture has a size");
    return;
  }
  require(dib.width() > 0 && dib.height() > 0, "a picture without a size");
  require(int64_t{dib.width()} * dib.height() <= MostPixels, "a picture beyond the limit");
  require(dib.colours().size() <= 256, "more colours than indices");
  require(dib.headerBlock().size() >= sizeof(BitmapInfoHeader), "a picture without a header");
  // Everything that a picture shows is readable.
  uint64_t sum = 0;
  for (const uint32_t colour : dib.colours())
    sum += colour;
  for (const uint8_t byte : dib.bits())
    sum += byte;
  require(sum != UINT64_MAX, "no sum is that large");
}

/// The same bytes as a file and in memory.
inline void requireSameFromBoth(FuzzFiles& files, const uint8_t* data, size_t size, QVDib& dib) {
  QVFile& input = files.input(data, size);
  dib.loadFromFile(input);
  requireSound(dib);
  QVDib fromMemory;
  fromMemory.loadFromMemory({data, size});
  requireSound(fromMemory);
  const auto same = [](std::span<const uint8_t> a, std::span<const uint8_t> b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
  };
  require(same(dib.headerBlock(), fromMemory.headerBlock()), "the heads differ");
  require(same(dib.bits(), fromMemory.bits()), "the pixels differ");
  require(dib.PaletteUseTable == fromMemory.PaletteUseTable, "the use tables differ");
}

}  // namespace qv::fuzz
