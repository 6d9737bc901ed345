#include "tools/qvtool/engine_picture.h"

#include <algorithm>

#include "graphics/little_endian.h"
#include "graphics/mcg_reader.h"
#include "graphics/sld_reader.h"
#include "tools/failure.h"
#include "tools/qvtool/files.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

constexpr size_t RcgHeadBytes = 8;

std::string formatOf(const std::vector<uint8_t>& bytes) {
  if (bytes.size() >= 2 && bytes[0] == 'B' && bytes[1] == 'M') return "BMP";
  if (bytes.size() < 4) return "";
  if (littleLong(bytes.data()) == McgMagic) return "MCG";
  if (littleLong(bytes.data()) == SldMagic) return "SLD";
  constexpr uint32_t RcgMagic = 0x20474352;
  return littleLong(bytes.data()) == RcgMagic && bytes.size() >= RcgHeadBytes ? "RCG" : "";
}

/// Row y from the top; what a damaged file does not hold is black.
std::vector<uint8_t> rowOf(const QVDib& dib, int32_t y) {
  const auto stride = static_cast<size_t>(dib.strideBytes());
  std::vector<uint8_t> row(stride);
  const size_t at = static_cast<size_t>(dib.height() - 1 - y) * stride;
  if (at < dib.bits().size()) {
    const std::span<const uint8_t> there = dib.bits().subspan(at);
    std::copy_n(there.begin(), std::min(stride, there.size()), row.begin());
  }
  return row;
}

}  // namespace

EnginePicture readEnginePicture(const std::filesystem::path& path) {
  EnginePicture picture{path, "", readFile(path), {}};
  picture.format = formatOf(picture.bytes);
  if (picture.format.empty())
    throw Failure(path.string() + " is no picture of the game (MCG, SLD, RCG or BMP).");
  std::span<const uint8_t> image = picture.bytes;
  if (picture.format == "RCG") {
    const size_t told = littleLong(&picture.bytes[4]);
    image = image.subspan(RcgHeadBytes, std::min(told, image.size() - RcgHeadBytes));
  }
  picture.dib.loadFromMemory(image);
  if (picture.dib.empty())
    throw Failure(path.string() + " is damaged: its head tells of no picture that can be.");
  return picture;
}

EnginePicture readEnginePicture(const std::filesystem::path& path, const std::string& format) {
  EnginePicture picture = readEnginePicture(path);
  if (picture.format != format && !(format == "MCG" && picture.format == "RCG"))
    throw Failure(path.string() + " is no " + format + " picture but a " + picture.format + ".");
  return picture;
}

codec::IndexedPicture indexedOf(const EnginePicture& picture) {
  const QVDib& dib = picture.dib;
  if (dib.bitCount() != 8)
    throw Failure(picture.path.string() + " has " + std::to_string(dib.bitCount()) +
                  " bits a pixel; only pictures of 8 bits have indices.");
  codec::IndexedPicture indexed;
  indexed.width = dib.width();
  indexed.height = dib.height();
  for (int32_t y = 0; y < dib.height(); ++y) {
    const std::vector<uint8_t> row = rowOf(dib, y);
    indexed.pixels.insert(indexed.pixels.end(), row.begin(), row.begin() + dib.width());
  }
  const std::span<const uint32_t> colours = dib.colours();
  std::transform(colours.begin(), colours.end(), indexed.colours.begin(),
                 [](uint32_t colour) { return colour & 0xFFFFFF; });
  for (size_t entry = 0; entry < 256; ++entry)
    indexed.marks[entry] = static_cast<uint8_t>(std::min(dib.PaletteUseTable[entry], 255u));
  return indexed;
}

std::vector<uint32_t> rgbOf(const EnginePicture& picture) {
  const QVDib& dib = picture.dib;
  const int32_t bits = dib.bitCount();
  if (bits != 8 && bits != 24 && bits != 32)
    throw Failure(picture.path.string() + " has " + std::to_string(bits) +
                  " bits a pixel; 8, 24 and 32 can be shown.");
  std::vector<uint32_t> rgb;
  const auto bytes = static_cast<size_t>(bits / 8);
  const std::span<const uint32_t> colours = dib.colours();
  for (int32_t y = 0; y < dib.height(); ++y) {
    const std::vector<uint8_t> row = rowOf(dib, y);
    for (size_t x = 0; x < static_cast<size_t>(dib.width()); ++x) {
      const uint8_t* const pixel = &row[x * bytes];
      if (bits == 8)
        rgb.push_back(*pixel < colours.size() ? colours[*pixel] & 0xFFFFFF : 0);
      else
        rgb.push_back(littleWord(pixel) | static_cast<uint32_t>(pixel[2]) << 16);
    }
  }
  return rgb;
}

void writeAsPng(const EnginePicture& picture, const std::filesystem::path& path) {
  if (picture.dib.bitCount() == 8)
    writeIndexedPng(indexedOf(picture), path);
  else
    writeRgbPng(picture.dib.width(), picture.dib.height(), rgbOf(picture), path);
}

}  // namespace qv::tool
