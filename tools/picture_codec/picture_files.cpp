#include "tools/picture_codec/picture_files.h"

#include <algorithm>
#include <string>

#include "graphics/dib.h"
#include "graphics/little_endian.h"
#include "graphics/mcg_reader.h"
#include "graphics/sld_reader.h"
#include "tools/failure.h"

namespace qv::codec {

namespace {

enum class Rows { TopFirst, BottomFirst };

size_t strideOf(size_t rowBytes) {
  return (rowBytes + 3) / 4 * 4;
}

void append(std::vector<uint8_t>& target, std::span<const uint8_t> source) {
  target.insert(target.end(), source.begin(), source.end());
}

std::vector<uint8_t> paddedRows(const IndexedPicture& picture, Rows order) {
  const auto width = static_cast<size_t>(picture.width);
  const auto height = static_cast<size_t>(picture.height);
  std::vector<uint8_t> rows(strideOf(width) * height);
  for (size_t y = 0; y < height; ++y) {
    const size_t row = order == Rows::TopFirst ? y : height - 1 - y;
    std::copy_n(&picture.pixels[y * width], width, &rows[row * strideOf(width)]);
  }
  return rows;
}

/// Who reads an MCG counts the bytes of its rows in 16 bits.
void checkRows(int32_t width, size_t stride) {
  constexpr size_t MostRowBytes = 0xFFFF;
  if (stride > MostRowBytes)
    throw tool::Failure("a picture " + std::to_string(width) +
                        " pixels wide does not fit an MCG: a row has " + std::to_string(stride) +
                        " bytes, of which the format counts " + std::to_string(MostRowBytes) +
                        " at most.");
}

enum class Marks { Kept, Cleared };

std::array<uint8_t, 1024> paletteBytes(const IndexedPicture& picture, Marks marks) {
  std::array<uint8_t, 1024> bytes;
  for (size_t entry = 0; entry < 256; ++entry) {
    const uint32_t mark = marks == Marks::Kept ? picture.marks[entry] : 0;
    putLittleLong(&bytes[entry * 4], (picture.colours[entry] & 0xFFFFFF) | mark << 24);
  }
  return bytes;
}

std::vector<uint8_t> mcgFile(const McgHead& head, std::span<const uint8_t> palette,
                             std::span<const uint8_t> rows, const Progress& progress) {
  std::vector<uint8_t> file;
  append(file, head.bytes());
  append(file, palette);
  append(file, compressLzss(LzssPairs::Mcg, rows, progress));
  return file;
}

}  // namespace

std::vector<uint8_t> encodeMcg(const IndexedPicture& picture, const Progress& progress) {
  checkRows(picture.width, strideOf(static_cast<size_t>(picture.width)));
  const std::vector<uint8_t> rows = paddedRows(picture, Rows::TopFirst);
  McgHead head;
  head.width = picture.width;
  head.height = picture.height;
  head.pixelBytes = static_cast<uint32_t>(rows.size());
  head.entries = 256;
  return mcgFile(head, paletteBytes(picture, Marks::Kept), rows, progress);
}

std::vector<uint8_t> encodeMcg24(int32_t width, int32_t height, std::span<const uint32_t> pixels,
                                 const Progress& progress) {
  const auto across = static_cast<size_t>(width);
  const size_t stride = strideOf(across * 3);
  checkRows(width, stride);
  std::vector<uint8_t> rows(stride * static_cast<size_t>(height));
  for (size_t at = 0; at < pixels.size(); ++at) {
    uint8_t* const pixel = &rows[at / across * stride + at % across * 3];
    for (size_t channel = 0; channel < 3; ++channel)
      pixel[channel] = static_cast<uint8_t>(pixels[at] >> channel * 8);
  }
  McgHead head;
  head.width = width;
  head.height = height;
  head.bitCount = 24;
  head.pixelBytes = static_cast<uint32_t>(rows.size());
  return mcgFile(head, {}, rows, progress);
}

std::vector<uint8_t> encodeSld(const IndexedPicture& picture, const Progress& progress) {
  std::vector<uint8_t> file(SldPaletteAt);
  putLittleLong(&file[0], SldMagic);
  putLittleLong(&file[4], static_cast<uint32_t>(picture.width));
  putLittleLong(&file[8], static_cast<uint32_t>(picture.height));
  append(file, paletteBytes(picture, Marks::Cleared));
  append(file, compressLzss(LzssPairs::Sld, paddedRows(picture, Rows::BottomFirst), progress));
  return file;
}

std::vector<uint8_t> wrapRcg(std::span<const uint8_t> mcg) {
  std::vector<uint8_t> file = {'R', 'C', 'G', ' ', 0, 0, 0, 0};
  putLittleLong(&file[4], static_cast<uint32_t>(mcg.size()));
  append(file, mcg);
  return file;
}

std::vector<uint8_t> encodeBmp(const IndexedPicture& picture) {
  constexpr size_t FileHeaderBytes = 14, PixelsAt = FileHeaderBytes + 40 + 1024;
  const std::vector<uint8_t> rows = paddedRows(picture, Rows::BottomFirst);
  std::vector<uint8_t> file(FileHeaderBytes);
  file[0] = 'B', file[1] = 'M';
  putLittleLong(&file[2], static_cast<uint32_t>(PixelsAt + rows.size()));
  putLittleLong(&file[10], PixelsAt);
  BitmapInfoHeader info;
  info.width = picture.width;
  info.height = picture.height;
  info.sizeImage = static_cast<uint32_t>(rows.size());
  append(file, {reinterpret_cast<const uint8_t*>(&info), sizeof(info)});
  append(file, paletteBytes(picture, Marks::Cleared));
  append(file, rows);
  return file;
}

}  // namespace qv::codec
