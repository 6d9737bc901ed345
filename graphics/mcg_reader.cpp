#include "graphics/mcg_reader.h"

#include <algorithm>
#include <cstring>

#include "graphics/little_endian.h"
#include "graphics/lzss.h"

namespace qv {

namespace {

constexpr size_t WidthAt = 28, HeightAt = 32, BitCountAt = 36, PixelBytesAt = 40, EntriesAt = 44,
                 CompressionAt = 52;
constexpr size_t InfoBytes = sizeof(BitmapInfoHeader);
/// Palettes have at most 256 entries; some more are tolerated here, because the caller says best
/// what is wrong with them.
constexpr uint32_t MostEntries = 4096;
/// What a head may announce beyond the rows of its picture.
constexpr int64_t SpareBytes = 4096;

/// Bytes of a row as the decoder turns them: whole bytes only, and 16 bits of them.
size_t turnedRowBytes(const McgHead& head) {
  int64_t bytes = int64_t{head.width} * head.bitCount / 8;
  if (bytes % 4) bytes = bytes / 4 * 4 + 4;
  return static_cast<size_t>(bytes & 0xFFFF);
}

/// The first and the last row change places, and so on inwards.
void turnRows(std::span<uint8_t> pixels, size_t rowBytes, size_t rows) {
  if (rows < 2 || rowBytes == 0) return;
  std::array<uint8_t, 0x10000> kept;
  uint8_t* first = pixels.data();
  uint8_t* last = first + (rows - 1) * rowBytes;
  for (; first < last; first += rowBytes, last -= rowBytes) {
    std::memcpy(kept.data(), first, rowBytes);
    std::memcpy(first, last, rowBytes);
    std::memcpy(last, kept.data(), rowBytes);
  }
}

BitmapInfoHeader infoOf(const McgHead& head) {
  BitmapInfoHeader info;
  info.width = head.width;
  info.height = head.height;
  info.bitCount = head.bitCount;
  info.compression = head.compression;
  info.coloursUsed = head.entries;
  return info;
}

}  // namespace

std::optional<McgHead> McgHead::of(std::span<const uint8_t> bytes) {
  if (bytes.size() < McgHeadBytes || littleLong(bytes.data()) != McgMagic) return std::nullopt;
  McgHead head;
  head.width = static_cast<int32_t>(littleLong(&bytes[WidthAt]));
  head.height = static_cast<int32_t>(littleLong(&bytes[HeightAt]));
  head.bitCount = littleWord(&bytes[BitCountAt]);
  head.pixelBytes = littleLong(&bytes[PixelBytesAt]);
  head.entries = littleLong(&bytes[EntriesAt]);
  head.compression = littleLong(&bytes[CompressionAt]);
  return head;
}

std::array<uint8_t, McgHeadBytes> McgHead::bytes() const {
  std::array<uint8_t, McgHeadBytes> bytes{};
  putLittleLong(&bytes[0], McgMagic);
  putLittleLong(&bytes[WidthAt], static_cast<uint32_t>(width));
  putLittleLong(&bytes[HeightAt], static_cast<uint32_t>(height));
  putLittleWord(&bytes[BitCountAt], bitCount);
  putLittleLong(&bytes[PixelBytesAt], pixelBytes);
  putLittleLong(&bytes[EntriesAt], entries);
  putLittleLong(&bytes[CompressionAt], compression);
  return bytes;
}

bool McgHead::plausible() const {
  if (width <= 0 || height <= 0 || int64_t{width} * height > MostPixels) return false;
  if (bitCount == 0 || bitCount > 32 || entries > MostEntries) return false;
  const int64_t rowBits = int64_t{width} * bitCount;
  const int64_t needed = (rowBits + 31) / 32 * 4 * height;
  if (pixelBytes > needed + SpareBytes) return false;
  return turnedRowBytes(*this) * static_cast<size_t>(height) <= pixelBytes;
}

std::optional<McgHead> McgReader::head() {
  std::array<uint8_t, McgHeadBytes> bytes;
  if (readAt(0, bytes) != bytes.size()) return std::nullopt;
  return McgHead::of(bytes);
}

bool McgReader::isValid() {
  std::array<uint8_t, 4> magic;
  return readAt(0, magic) == magic.size() && littleLong(magic.data()) == McgMagic;
}

PackedPicture McgReader::decodeFile() {
  const std::optional<McgHead> found = head();
  if (!found || !found->plausible()) return {};
  // The rest of the file is the stream, but no more of it than the picture can take.
  const HeapBlock image = readRest(0, found->streamAt() + longestLzssStream(found->pixelBytes));
  return decodeMemory(image.span());
}

PackedPicture McgReader::decodeMemory(std::span<const uint8_t> image) {
  const std::optional<McgHead> found = McgHead::of(image);
  if (!found || !found->plausible() || image.size() < found->streamAt()) return {};
  const McgHead& head = *found;

  PackedPicture picture;
  const size_t paletteAt = InfoBytes + head.maskBytes();
  picture.pixelsAt = paletteAt + head.paletteBytes();
  picture.block = HeapBlock(picture.pixelsAt + head.pixelBytes, HeapBlock::Content::Undefined,
                            "QVDib - create");
  uint8_t* const block = picture.block.data();

  const std::span<uint8_t> pixels = picture.pixels();
  const size_t written = expandLzss(LzssPairs::Mcg, image.subspan(head.streamAt()), pixels);
  std::memset(pixels.data() + written, 0, pixels.size() - written);
  turnRows(pixels, turnedRowBytes(head), static_cast<size_t>(head.height));

  const BitmapInfoHeader info = infoOf(head);
  std::memcpy(block, &info, InfoBytes);
  std::memcpy(block + InfoBytes, image.data() + McgHeadBytes, head.maskBytes());
  // The palette is taken from behind the head even where the masks stand there: they are its first
  // three entries then.
  std::memcpy(block + paletteAt, image.data() + McgHeadBytes, head.paletteBytes());
  for (size_t entry = 0; entry < head.entries; ++entry)
    block[paletteAt + entry * 4 + 3] = 0;
  return picture;
}

void McgReader::readPaletteUse(UseTable& table) {
  UseTable stored{};
  const int32_t count = readPalette(stored);
  table.fill(0);
  for (int32_t entry = 0; entry < count; ++entry)
    table[static_cast<size_t>(entry)] = stored[static_cast<size_t>(entry)] >> 24;
}

void McgReader::paletteUseOf(std::span<const uint8_t> image, UseTable& table) {
  table.fill(0);
  const std::optional<McgHead> found = McgHead::of(image);
  if (!found || image.size() < found->streamAt()) return;
  const uint8_t* const palette = image.data() + McgHeadBytes + found->maskBytes();
  for (size_t entry = 0; entry < std::min<size_t>(found->entries, table.size()); ++entry)
    table[entry] = palette[entry * 4 + 3];
}

int32_t McgReader::paletteCount() {
  const std::optional<McgHead> found = head();
  return found ? static_cast<int32_t>(std::min(found->entries, MostEntries)) : 0;
}

int32_t McgReader::readPalette(std::span<uint32_t> out) {
  const std::optional<McgHead> found = head();
  if (!found) return 0;
  const size_t count = std::min<size_t>(out.size(), found->entries);
  const std::span<uint8_t> bytes{reinterpret_cast<uint8_t*>(out.data()), count * 4};
  const size_t there = readAt(static_cast<int64_t>(McgHeadBytes + found->maskBytes()), bytes);
  return static_cast<int32_t>(there / 4);
}

int32_t McgReader::writePalette(std::span<const uint32_t> entries) {
  const std::optional<McgHead> found = head();
  if (!found) return 0;
  const size_t count = std::min<size_t>(entries.size(), found->entries);
  const std::span<const uint8_t> bytes{reinterpret_cast<const uint8_t*>(entries.data()), count * 4};
  return static_cast<int32_t>(
      writeAt(static_cast<int64_t>(McgHeadBytes + found->maskBytes()), bytes) / 4);
}

}  // namespace qv
