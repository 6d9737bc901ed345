#include "graphics/sld_reader.h"

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
  magic_ = 0, width_ = 0, height_ = 0;
  std::array<uint8_t, SldHeadBytes> head;
  if (readAt(0, head) != head.size()) return;
  magic_ = littleLong(head.data());
  if (magic_ != SldMagic) return;
  width_ = static_cast<int32_t>(littleLong(&head[WidthAt]));
  height_ = static_cast<int32_t>(littleLong(&head[HeightAt]));
  std::memcpy(palette_.data(), &head[SldPaletteAt], PaletteBytes);
}

bool SldReader::isValid() {
  return attached() && magic_ == SldMagic;
}

PackedPicture SldReader::decode() {
  if (!isValid() || width_ <= 0 || height_ <= 0 || int64_t{width_} * height_ > MostPixels)
    return {};
  const size_t pixelBytes =
      static_cast<size_t>((int64_t{width_} + 3) / 4 * 4) * static_cast<size_t>(height_);
  const HeapBlock stream = readRest(SldHeadBytes, longestLzssStream(pixelBytes));

  PackedPicture picture;
  picture.pixelsAt = InfoBytes + PaletteBytes;
  picture.block =
      HeapBlock(picture.pixelsAt + pixelBytes, HeapBlock::Content::Undefined, "QVDib - create");
  BitmapInfoHeader info;
  info.width = width_;
  info.height = height_;
  std::memcpy(picture.block.data(), &info, InfoBytes);
  std::memcpy(picture.block.data() + InfoBytes, palette_.data(), PaletteBytes);
  const std::span<uint8_t> pixels = picture.pixels();
  const size_t written = expandLzss(LzssPairs::Sld, stream.span(), pixels);
  std::memset(pixels.data() + written, 0, pixels.size() - written);
  return picture;
}

}  // namespace qv
