#include "input/cursor_file.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "graphics/little_endian.h"

namespace qv {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t HeadBytes = 6, EntryBytes = 16, InfoBytes = 40, ColourBytes = 4;
constexpr uint16_t CursorKind = 2;
constexpr uint32_t Opaque = 0xFF000000, Black = 0;
constexpr int32_t UsualSide = 32;

struct Entry {
  int32_t width, hotX, hotY;
  size_t at, bytes;
};

/// The part from `at` on, at most `count` bytes of it; empty beyond the end.
Bytes part(Bytes bytes, size_t at, size_t count) {
  if (at > bytes.size()) return {};
  return bytes.subspan(at, std::min(count, bytes.size() - at));
}

/// The directory, nearest to the usual size first.
std::vector<Entry> readDirectory(Bytes file) {
  if (file.size() < HeadBytes || littleWord(file.data()) != 0 ||
      littleWord(file.data() + 2) != CursorKind)
    return {};
  const size_t held = (file.size() - HeadBytes) / EntryBytes;
  const size_t count = std::min<size_t>(littleWord(file.data() + 4), held);
  std::vector<Entry> entries;
  for (size_t i = 0; i < count; ++i) {
    const uint8_t* const entry = file.data() + HeadBytes + i * EntryBytes;
    const int32_t width = entry[0] == 0 ? MostCursorPixels : entry[0];
    entries.push_back({width, littleWord(entry + 4), littleWord(entry + 6), littleLong(entry + 12),
                       littleLong(entry + 8)});
  }
  std::ranges::stable_sort(entries, {},
                           [](const Entry& entry) { return std::abs(entry.width - UsualSide); });
  return entries;
}

constexpr size_t rowBytes(int32_t width, int32_t bits) {
  return (static_cast<size_t>(width) * static_cast<size_t>(bits) + 31) / 32 * 4;
}

/// The bits of a pixel in a row, the leftmost in the high bits of a byte.
uint32_t bitsAt(Bytes row, int32_t x, int32_t bits) {
  const size_t bit = static_cast<size_t>(x) * static_cast<size_t>(bits);
  const uint32_t shift = 8 - static_cast<uint32_t>(bits) - static_cast<uint32_t>(bit % 8);
  return row[bit / 8] >> shift & ((1u << bits) - 1);
}

/// An image's parts; sound when they are all there.
struct Image {
  int32_t width = 0, height = 0, bits = 0;
  Bytes table, colours, mask;

  uint32_t colourAt(int32_t x, int32_t y) const {
    const Bytes row = rowOf(colours, bits, y);
    if (bits == 32) return littleLong(&row[static_cast<size_t>(x) * 4]);
    if (bits == 24) {
      const uint8_t* const pixel = &row[static_cast<size_t>(x) * 3];
      return littleWord(pixel) | static_cast<uint32_t>(pixel[2]) << 16;
    }
    const size_t entry = bitsAt(row, x, bits) * ColourBytes;
    return entry + ColourBytes <= table.size() ? littleLong(&table[entry]) & ~Opaque : Black;
  }
  bool maskedAt(int32_t x, int32_t y) const { return bitsAt(rowOf(mask, 1, y), x, 1) != 0; }

 private:
  /// Rows lie bottom row first.
  Bytes rowOf(Bytes rows, int32_t rowBits, int32_t y) const {
    const size_t stride = rowBytes(width, rowBits);
    return rows.subspan(static_cast<size_t>(height - 1 - y) * stride, stride);
  }
};

std::optional<Image> readImage(Bytes bytes) {
  if (bytes.size() < InfoBytes) return std::nullopt;
  const uint8_t* const info = bytes.data();
  const uint32_t headBytes = littleLong(info), compression = littleLong(info + 16);
  Image image;
  image.width = static_cast<int32_t>(littleLong(info + 4));
  // Colours and mask are counted as one picture of twice the height.
  image.height = static_cast<int32_t>(littleLong(info + 8)) / 2;
  image.bits = littleWord(info + 14);
  const auto isSide = [](int32_t side) { return side >= 1 && side <= MostCursorPixels; };
  constexpr int32_t Depths[] = {1, 4, 8, 24, 32};
  if (headBytes < InfoBytes || compression != 0 || !isSide(image.width) || !isSide(image.height) ||
      std::ranges::find(Depths, image.bits) == std::end(Depths))
    return std::nullopt;
  size_t entries = 0;
  if (image.bits <= 8) {
    const size_t most = size_t{1} << image.bits;
    const size_t used = littleLong(info + 32);
    entries = used == 0 ? most : std::min(used, most);
  }
  const size_t colourBytes = rowBytes(image.width, image.bits) * static_cast<size_t>(image.height);
  const size_t maskBytes = rowBytes(image.width, 1) * static_cast<size_t>(image.height);
  const size_t tableAt = headBytes, coloursAt = tableAt + entries * ColourBytes;
  image.table = part(bytes, tableAt, entries * ColourBytes);
  image.colours = part(bytes, coloursAt, colourBytes);
  image.mask = part(bytes, coloursAt + colourBytes, maskBytes);
  if (image.colours.size() != colourBytes || image.mask.size() != maskBytes) return std::nullopt;
  return image;
}

/// Pictures of 32 bits say by themselves how opaque they are, unless they say it nowhere.
bool hasAlpha(const Image& image) {
  if (image.bits != 32) return false;
  for (int32_t y = 0; y < image.height; ++y)
    for (int32_t x = 0; x < image.width; ++x)
      if (image.colourAt(x, y) & Opaque) return true;
  return false;
}

uint32_t masked(uint32_t colour, bool mask) {
  colour &= ~Opaque;
  if (!mask) return colour | Opaque;
  // Where the mask lets the screen through, a colour reverses it. No reversed screen can be shown.
  return colour == 0 ? 0 : Opaque | Black;
}

CursorPicture pictureOf(const Image& image, const Entry& entry) {
  CursorPicture picture{image.width,
                        image.height,
                        std::min(entry.hotX, image.width - 1),
                        std::min(entry.hotY, image.height - 1),
                        {}};
  picture.pixels.reserve(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
  const bool alpha = hasAlpha(image);
  for (int32_t y = 0; y < image.height; ++y)
    for (int32_t x = 0; x < image.width; ++x)
      picture.pixels.push_back(alpha ? image.colourAt(x, y)
                                     : masked(image.colourAt(x, y), image.maskedAt(x, y)));
  return picture;
}

}  // namespace

std::optional<CursorPicture> readCursorFile(std::span<const uint8_t> file) {
  for (const Entry& entry : readDirectory(file))
    if (const std::optional<Image> image = readImage(part(file, entry.at, entry.bytes)))
      return pictureOf(*image, entry);
  return std::nullopt;
}

}  // namespace qv
