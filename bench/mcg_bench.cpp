// Decoding a picture of the game's format against LZ4's high compression on the same pixels, and
// against libpng on the same picture. The picture is a landscape at dusk, as a story has it: long
// gradients with dither, hills with texture, hard edges of trees and windows.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <lz4.h>
#include <lz4hc.h>
#include <png.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "foundation/file.h"
#include "graphics/dib.h"
#include "graphics/mcg_reader.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/quantise.h"

namespace {

constexpr int Width = 640, Height = 480;

void check(bool well, const char* what) {
  if (well) return;
  std::fprintf(stderr, "mcg_bench: %s\n", what);
  std::abort();
}

double noise(int x, int y) {
  uint32_t bits = static_cast<uint32_t>(x) * 374761393u + static_cast<uint32_t>(y) * 668265263u;
  bits = (bits ^ bits >> 13) * 1274126177u;
  return ((bits ^ bits >> 16) & 0xFFFF) / 65535.0;
}

/// Value noise of that grain, 0 to 1.
double softNoise(double x, double y) {
  const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
  const double u = x - left, v = y - top;
  const double upper = noise(left, top) * (1 - u) + noise(left + 1, top) * u;
  const double lower = noise(left, top + 1) * (1 - u) + noise(left + 1, top + 1) * u;
  return upper * (1 - v) + lower * v;
}

struct Colour {
  double red, green, blue;
};

Colour mix(const Colour& a, const Colour& b, double part) {
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
          a.blue + (b.blue - a.blue) * part};
}

Colour skyAt(int x, int y) {
  const double down = y / 320.0;
  Colour sky = mix({38, 58, 120}, {246, 178, 120}, std::min(1.0, down));
  const double cloud = softNoise(x / 90.0, y / 22.0) * 0.7 + softNoise(x / 31.0, y / 9.0) * 0.3;
  sky = mix(sky, {250, 222, 200}, std::max(0.0, cloud - 0.55) * 1.4);
  const double sun = std::hypot(x - 430.0, y - 250.0);
  return mix(sky, {255, 246, 214}, std::exp(-sun * sun / 5200));
}

Colour sceneAt(int x, int y) {
  const double far = 300 + 26 * std::sin(x / 83.0) + 9 * std::sin(x / 19.0);
  const double near = 366 + 30 * std::sin(x / 140.0 + 2) + 5 * softNoise(x / 7.0, 3);
  if (y < far) return skyAt(x, y);
  if (y < near) {
    const double texture = softNoise(x / 6.0, y / 3.0);
    return mix({74, 88, 96}, {128, 120, 110}, (y - far) / 110 + 0.25 * texture);
  }
  const bool house = x > 96 && x < 226 && y > 372 && y < 442;
  if (house) {
    const bool window =
        (x - 96) % 32 > 9 && (x - 96) % 32 < 24 && (y - 372) % 34 > 8 && (y - 372) % 34 < 25;
    if (window) return mix({255, 214, 120}, {230, 160, 80}, ((y - 372) % 34) / 34.0);
    return mix({86, 62, 58}, {120, 88, 74}, noise(x / 5, y / 4) * 0.6 + (x - 96) / 400.0);
  }
  return mix({26, 40, 34}, {70, 92, 52}, softNoise(x / 3.0, y / 2.0) * (480 - y) / 120 + 0.1);
}

qv::codec::IndexedPicture scene() {
  qv::tool::Image image;
  image.width = Width, image.height = Height;
  for (int y = 0; y < Height; ++y) {
    for (int x = 0; x < Width; ++x) {
      const Colour colour = sceneAt(x, y);
      for (const double channel : {colour.red, colour.green, colour.blue})
        image.rgba.push_back(static_cast<uint8_t>(std::lround(std::clamp(channel, 0.0, 255.0))));
      image.rgba.push_back(255);
    }
  }
  std::vector<std::string> warnings;
  qv::tool::QuantiseWishes wishes;
  wishes.entries = {10, 209};
  return qv::tool::quantise(image, wishes, warnings);
}

std::vector<uint8_t> fileBytes(const std::filesystem::path& path) {
  FILE* file = std::fopen(path.c_str(), "rb");
  check(file != nullptr, "the picture's file cannot be opened");
  std::vector<uint8_t> bytes(std::filesystem::file_size(path));
  check(std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size(), "a short read");
  std::fclose(file);
  return bytes;
}

/// The indices and nothing more, with libpng's simplest road that keeps them.
void decodePng(const std::vector<uint8_t>& bytes, std::vector<uint8_t>& pixels) {
  struct Source {
    const uint8_t* at;
  } source{bytes.data()};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &source, [](png_structp reader, png_bytep target, size_t count) {
    auto& from = *static_cast<Source*>(png_get_io_ptr(reader));
    std::memcpy(target, from.at, count);
    from.at += count;
  });
  png_read_info(png, info);
  static png_bytep rows[Height];
  for (int y = 0; y < Height; ++y)
    rows[y] = &pixels[static_cast<size_t>(y) * Width];
  png_read_image(png, rows);
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
}

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::Ground ground;
  const qv::codec::IndexedPicture picture = scene();
  const std::vector<uint8_t> mcg = qv::codec::encodeMcg(picture);

  std::vector<uint8_t> lz4(static_cast<size_t>(LZ4_compressBound(Width * Height)));
  const int lz4Bytes = LZ4_compress_HC(reinterpret_cast<const char*>(picture.pixels.data()),
                                       reinterpret_cast<char*>(lz4.data()), Width * Height,
                                       static_cast<int>(lz4.size()), LZ4HC_CLEVEL_MAX);
  check(lz4Bytes > 0, "LZ4 failed");
  const std::filesystem::path pngPath = ground.root.folder("player") / "scene.png";
  qv::tool::writeIndexedPng(picture, pngPath);
  const std::vector<uint8_t> png = fileBytes(pngPath);
  table.note("pixels of the picture, bytes", Width * Height);
  table.note("as MCG, bytes", static_cast<double>(mcg.size()));
  table.note("as LZ4 HC, bytes", lz4Bytes);
  table.note("as PNG, bytes", static_cast<double>(png.size()));

  constexpr int Times = 40;
  std::vector<uint8_t> pixels(Width * Height);
  qv::McgReader reader;
  const auto decodeMcg = [&] {
    for (int time = 0; time < Times; ++time)
      qv::bench::keep(reader.decodeMemory(mcg));
  };
  const auto decodeLz4 = [&] {
    for (int time = 0; time < Times; ++time)
      LZ4_decompress_safe(reinterpret_cast<const char*>(lz4.data()),
                          reinterpret_cast<char*>(pixels.data()), lz4Bytes, Width * Height);
  };
  const auto decodePngs = [&] {
    for (int time = 0; time < Times / 8; ++time)
      decodePng(png, pixels);
  };
  const qv::bench::Pair beside = qv::bench::measure(decodeMcg, decodeLz4);
  table.note("MCG decode, microseconds", beside.ours / Times * 1e6);
  table.atMost("MCG decode / LZ4 HC decode of the same pixels", 1.5, beside);
  qv::bench::Pair against = qv::bench::measure(decodeMcg, decodePngs);
  against.theirs *= 8;
  table.fasterBy("MCG decode, times as fast as libpng", 10, against);

  // What is decoded is the picture.
  const qv::PackedPicture decoded = reader.decodeMemory(mcg);
  for (size_t y = 0; y < Height; ++y)
    check(std::memcmp(&decoded.pixels()[(Height - 1 - y) * Width], &picture.pixels[y * Width],
                      Width) == 0,
          "the decoded picture is another one");
  decodePng(png, pixels);
  check(pixels == picture.pixels, "the PNG is another picture");
  return table.status();
}
