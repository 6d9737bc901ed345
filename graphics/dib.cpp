#include "graphics/dib.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "graphics/dib_builder.h"
#include "graphics/little_endian.h"
#include "graphics/static_colours.h"
#include "platform/assert.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr size_t InfoBytes = sizeof(BitmapInfoHeader), MaskBytes = 12;
static_assert(InfoBytes + MaskBytes == MostHeaderBytes);
constexpr uint32_t BitFields = 3;
constexpr uint32_t LeastWithColoursUsed = 36;
constexpr size_t MostColours = 256;
constexpr uint32_t LargestHeader = 1024;
constexpr const char* Creation = "QVDib - create";

int32_t coloursOfDepth(uint16_t bitCount) {
  return bitCount < 9 ? 1 << bitCount : 0;
}

uint32_t coloursToldOf(const BitmapInfoHeader& info) {
  return info.size >= LeastWithColoursUsed ? info.coloursUsed : 0;
}

uint32_t compressionOf(const BitmapInfoHeader& info) {
  constexpr uint32_t LeastWithCompression = 20;
  return info.size >= LeastWithCompression ? info.compression : 0;
}

/// How many bytes of pixels a packed bitmap has that does not tell: rows of whole words at eight
/// bits, then scaled. So with 32 bits only a quarter comes in.
int64_t packedPixelBytes(const BitmapInfoHeader& info) {
  if (info.sizeImage) return info.sizeImage;
  const int64_t bytes = (int64_t{info.width} + 3) / 4 * 4 * info.height;
  switch (info.bitCount) {
    case 1:
      return bytes >> 3;
    case 4:
      return bytes >> 1;
    case 16:
      return bytes * 2;
    case 24:
      return bytes * 3;
    case 8:
    case 32:
      return bytes;
    default:
      services().dialogs->messageBox(sjis("colorDepth()がおかしな値を返しました：") +
                                         std::to_string(info.bitCount) +
                                         sjis("\n４バイトデータだと仮定して処理を継続します。"),
                                     "QVString class", BoxNotice);
      return bytes;
  }
}

HeapBlock copyOf(std::span<const uint8_t> source) {
  HeapBlock block(source.size(), HeapBlock::Content::Undefined, Creation);
  if (!source.empty()) std::memcpy(block.data(), source.data(), source.size());
  return block;
}

}  // namespace

int32_t BitmapInfoHeader::colourCount() const {
  const uint32_t told = coloursToldOf(*this);
  if (told) return static_cast<int32_t>(told - (compressionOf(*this) == BitFields ? 1 : 0));
  return coloursOfDepth(bitCount);
}

int32_t BitmapInfoHeader::colourTableWordCount() const {
  const uint32_t told = coloursToldOf(*this);
  const uint32_t words = told ? told : static_cast<uint32_t>(coloursOfDepth(bitCount));
  return static_cast<int32_t>(words + (compressionOf(*this) == BitFields ? 1 : 0));
}

std::optional<StoredHeader> StoredHeader::of(std::span<const uint8_t> source) {
  if (source.size() < CoreHeaderBytes) return std::nullopt;
  StoredHeader stored;
  BitmapInfoHeader& info = stored.info;
  stored.bytes = littleLong(source.data());
  if (stored.bytes == CoreHeaderBytes) {
    info.width = littleWord(&source[4]);
    info.height = littleWord(&source[6]);
    info.planes = littleWord(&source[8]);
    info.bitCount = littleWord(&source[10]);
    stored.entryBytes = 3;
  } else {
    // Headers between the two forms end early, longer ones say more than is asked here.
    if (stored.bytes <= CoreHeaderBytes + 3 || stored.bytes > LargestHeader) return std::nullopt;
    const size_t known = std::min(stored.bytes, InfoBytes);
    if (source.size() < known) return std::nullopt;
    uint8_t bytes[InfoBytes] = {};
    std::memcpy(bytes, source.data(), known);
    std::memcpy(&info, bytes, InfoBytes);
    info.size = std::min(info.size, static_cast<uint32_t>(InfoBytes));
  }
  if (info.width <= 0 || info.height <= 0) return std::nullopt;
  if (int64_t{info.width} * info.height > MostPixels) return std::nullopt;

  const uint32_t told = coloursToldOf(info);
  stored.entries = told ? told : static_cast<size_t>(coloursOfDepth(info.bitCount));
  if (stored.entries > MostColours) return std::nullopt;
  if (compressionOf(info) == BitFields) {
    if (stored.bytes < MostHeaderBytes) {
      stored.maskBytes = MaskBytes;
    } else {
      if (source.size() < MostHeaderBytes) return std::nullopt;
      std::copy_n(&source[InfoBytes], MaskBytes, stored.ownMasks.emplace().begin());
    }
  }
  return stored;
}

void DibBuilder::build(QVDib& dib, const StoredHeader& stored, std::span<const uint8_t> table,
                       HeapBlock pixels) {
  const size_t behind = InfoBytes + (stored.ownMasks ? MaskBytes : 0);
  HeapBlock header(behind + stored.maskBytes + stored.entries * 4, HeapBlock::Content::Zeroed,
                   Creation);
  std::memcpy(header.data(), &stored.info, InfoBytes);
  if (stored.ownMasks) std::ranges::copy(*stored.ownMasks, header.data() + InfoBytes);
  if (stored.entryBytes == 4) {
    const size_t bytes = std::min(table.size(), header.size() - behind);
    if (bytes) std::memcpy(header.data() + behind, table.data(), bytes);
  } else {
    for (size_t entry = 0; entry < std::min(stored.entries, table.size() / 3); ++entry)
      std::memcpy(header.data() + behind + entry * 4, &table[entry * 3], 3);
  }
  dib.header_ = std::move(header);
  dib.bits_ = std::move(pixels);
}

QVDib::QVDib() {
  // The static colours are everybody's: a picture that says nothing brings none but them.
  for (size_t entry = 0; entry < PaletteUseTable.size(); ++entry)
    PaletteUseTable[entry] = isStaticColour(entry) ? 0 : 1;
}

void QVDib::clear() {
  header_ = HeapBlock();
  bits_ = HeapBlock();
}

const BitmapInfoHeader& QVDib::header() const {
  QV_ASSERT(!empty());
  return *reinterpret_cast<const BitmapInfoHeader*>(header_.data());
}

int32_t QVDib::width() const {
  return empty() ? 0 : header().width;
}
int32_t QVDib::height() const {
  return empty() ? 0 : header().height;
}
int32_t QVDib::bitCount() const {
  return empty() ? 0 : header().bitCount;
}

int32_t QVDib::strideBytes() const {
  const int64_t bytes = (int64_t{width()} * bitCount() + 31) / 32 * 4;
  return static_cast<int32_t>(std::min<int64_t>(bytes, INT32_MAX));
}

int32_t QVDib::colourCount() const {
  return empty() ? 0 : header().colourCount();
}
int32_t QVDib::colourTableWordCount() const {
  return empty() ? 0 : header().colourTableWordCount();
}

bool QVDib::hasColourTable() const {
  return !empty() && (header().bitCount < 9 || header().coloursUsed != 0);
}

std::span<const uint32_t> QVDib::tableWords() const {
  if (!hasColourTable()) return {};
  const size_t at = InfoBytes + (compressionOf(header()) == BitFields ? 4 : 0);
  const size_t there = (header_.size() - at) / 4;
  return {reinterpret_cast<const uint32_t*>(header_.data() + at),
          std::min(there, static_cast<size_t>(std::max(colourTableWordCount(), 0)))};
}

std::span<const uint32_t> QVDib::colours() const {
  const std::span<const uint32_t> words = tableWords();
  return words.first(std::min(words.size(), static_cast<size_t>(std::max(colourCount(), 0))));
}

void QVDib::loadPacked(std::span<const uint8_t> block) {
  const std::optional<StoredHeader> stored = StoredHeader::of(block);
  const size_t end = stored ? stored->endOfTable() : 0;
  loadPacked(block, block.subspan(std::min(end, block.size())));
}

void QVDib::loadPacked(std::span<const uint8_t> block, std::span<const uint8_t> pixels) {
  clear();
  const std::optional<StoredHeader> stored = StoredHeader::of(block);
  if (!stored || stored->bytes > block.size()) return;
  const auto announced = static_cast<uint64_t>(packedPixelBytes(stored->info));
  DibBuilder::build(*this, *stored, block.subspan(stored->bytes),
                    copyOf(pixels.first(std::min<uint64_t>(announced, pixels.size()))));
}

}  // namespace qv
