#include "graphics/tagged_record.h"

#include <array>
#include <bit>
#include <cstring>

#include "foundation/file.h"
#include "foundation/string.h"
#include "graphics/dib.h"

namespace qv {

// Headers go between memory and files as they are.
static_assert(std::endian::native == std::endian::little);

namespace {

constexpr int32_t FileHeaderBytes = 14;

void writeBytes(QVFile& file, std::span<const uint8_t> bytes) {
  file.write(bytes.data(), static_cast<int32_t>(bytes.size()));
}

/// Bytes of the pixels that the header announces, or -1 if it is none of that kind of record.
int64_t pixelBytes(const BitmapInfoHeader& header, const TaggedForm& form) {
  if (header.size != sizeof(BitmapInfoHeader) || header.bitCount != form.bitCount ||
      header.compression != 0 || header.width < 0 || header.height < 0 ||
      header.width > MostPixels || header.height > MostPixels ||
      int64_t{header.width} * header.height > MostPixels)
    return -1;
  const int64_t rowBytes = int64_t{header.width} * (form.bitCount / 8);
  return ((rowBytes + 3) & ~int64_t{3}) * header.height;
}

}  // namespace

void writeTagged(QVFile& file, const TaggedForm& form, std::span<const uint8_t> blockAndPixels) {
  if (!file.isOpen()) return;
  QVString(form.tag).save(file);
  writeBytes(file, blockAndPixels);
}

HeapBlock readTagged(QVFile& file, const TaggedForm& form) {
  if (!file.isOpen()) return {};
  QVString tag;
  tag.load(file);
  if (!tag.equals(form.tag)) return {};

  const int64_t start = file.position();
  BitmapInfoHeader header;
  const bool whole = file.read(&header, sizeof header) == static_cast<int32_t>(sizeof header);
  file.seek(start, SeekFrom::Start);
  const int64_t pixels = whole ? pixelBytes(header, form) : -1;
  if (pixels < 0 || pixels + form.blockBytes > file.remaining()) return {};

  HeapBlock record(static_cast<size_t>(pixels + form.blockBytes), HeapBlock::Content::Undefined,
                   "QVHeap - malloc");
  const auto size = static_cast<int32_t>(record.size());
  if (file.read(record.data(), size) != size) return {};
  // The record's colours and pixels stand where its form says, whatever these fields say: a
  // surface that never took a bitmap leaves them empty, which would cost 32-bit pixels three
  // quarters of their bytes.
  header.coloursUsed = 0;
  header.sizeImage = static_cast<uint32_t>(pixels);
  std::memcpy(record.data(), &header, sizeof header);
  return record;
}

void writeBitmapFile(QVFile& file, const TaggedForm& form,
                     std::span<const uint8_t> blockAndPixels) {
  if (!file.isOpen()) return;
  const auto words =
      std::array{static_cast<uint32_t>(blockAndPixels.size() + FileHeaderBytes), uint32_t{0},
                 static_cast<uint32_t>(form.blockBytes + FileHeaderBytes)};
  std::array<uint8_t, FileHeaderBytes> head = {'B', 'M'};
  static_assert(2 + sizeof words == FileHeaderBytes);
  std::memcpy(head.data() + 2, words.data(), sizeof words);
  writeBytes(file, head);
  writeBytes(file, blockAndPixels);
}

}  // namespace qv
