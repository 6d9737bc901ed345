#include "graphics/sld_reader.h"

#include <algorithm>
#include <cstring>

#include "graphics/dib.h"
#include "graphics/little_endian.h"
#include "graphics/lzss.h"
#include "graphics/static_colours.h"

namespace qv {

namespace {

constexpr size_t WidthAt = 4, HeightAt = 8;
constexpr size_t InfoBytes = sizeof(BitmapInfoHeader), PaletteBytes = 1024;

}  // namespace

SldReader::SldReader() : palette_(greyRampWithStaticColours()) {}

void SldReader::attach(QVFile& file) {
  PictureReader::attach(file);
  std::array<uint8_t, SldHeadBytes> head;
  takeHead(std::span(head).first(readAt(0, head)));
}

void SldReader::takeHead(std::span<const uint8_t> head) {
  magic_ = 0, width_ = 0, height_ = 0;
  if (head.size() < SldHeadBytes) return;
  magic_ = littleLong(head.data());
  if (magic_ != SldMagic) return;
  width_ = static_cast<int32_t>(littleLong(&head[WidthAt]));
  height_ = static_cast<int32_t>(littleLong(&head[HeightAt]));
  std::memcpy(palette_.data(), &head[SldPaletteAt], PaletteBytes);
}

bool SldReader::isValid() {
  return attached() && magic_ == SldMagic;
}

size_t SldReader::pixelBytes() const {
  if (magic_ != SldMagic || width_ <= 0 || height_ <= 0) return 0;
  if (int64_t{width_} * height_ > MostPixels) return 0;
  return static_cast<size_t>((int64_t{width_} + 3) / 4 * 4) * static_cast<size_t>(height_);
}

PackedPicture SldReader::decode() {
  if (!isValid() || pixelBytes() == 0) return {};
  return expand(readRest(SldHeadBytes, longestLzssStream(pixelBytes())).span());
}

PackedPicture SldReader::decodeMemory(std::span<const uint8_t> image) {
  takeHead(image.first(std::min(image.size(), SldHeadBytes)));
  if (pixelBytes() == 0) return {};
  return expand(image.subspan(SldHeadBytes));
}

PackedPicture SldReader::expand(std::span<const uint8_t> stream) const {
  PackedPicture picture;
  picture.pixelsAt = InfoBytes + PaletteBytes;
  picture.block =
      HeapBlock(picture.pixelsAt + pixelBytes(), HeapBlock::Content::Undefined, "QVDib - create");
  BitmapInfoHeader info;
  info.width = width_;
  info.height = height_;
  std::memcpy(picture.block.data(), &info, InfoBytes);
  std::memcpy(picture.block.data() + InfoBytes, palette_.data(), PaletteBytes);
  const std::span<uint8_t> pixels = picture.pixels();
  const size_t written = expandLzss(LzssPairs::Sld, stream, pixels);
  std::memset(pixels.data() + written, 0, pixels.size() - written);
  return picture;
}

}  // namespace qv
