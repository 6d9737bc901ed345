// cursor: a pointer's picture as the classic cursor file that a game's windows are given.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/failure.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/files.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

/// The longest side that the file's directory can tell.
constexpr int LongestCursorSide = 255;
constexpr int HeadBytes = 6, EntryBytes = 16, BitmapHeadBytes = 40;
constexpr int CursorKind = 2, BitsPerPixel = 32;

struct Bytes {
  std::vector<uint8_t> all;
  void add(uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
      all.push_back(static_cast<uint8_t>(value >> (8 * i)));
  }
};

int maskStride(int width) {
  return (width + 31) / 32 * 4;
}

/// Rows from the lowest up: colours with their opacity, then a bit for each pixel that is not
/// there.
void addPixels(Bytes& file, const Image& image) {
  const auto opacityAt = [&](int x, int y) {
    return image
        .rgba[(static_cast<size_t>(y) * static_cast<size_t>(image.width) + static_cast<size_t>(x)) *
                  4 +
              3];
  };
  for (int y = image.height - 1; y >= 0; --y)
    for (int x = 0; x < image.width; ++x) {
      const uint8_t* pixel =
          &image.rgba[(static_cast<size_t>(y) * static_cast<size_t>(image.width) +
                       static_cast<size_t>(x)) *
                      4];
      for (const int channel : {2, 1, 0, 3})
        file.add(pixel[channel], 1);
    }
  for (int y = image.height - 1; y >= 0; --y) {
    std::vector<uint8_t> row(static_cast<size_t>(maskStride(image.width)));
    for (int x = 0; x < image.width; ++x)
      if (opacityAt(x, y) == 0)
        row[static_cast<size_t>(x) / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
    file.all.insert(file.all.end(), row.begin(), row.end());
  }
}

std::vector<uint8_t> encodeCursor(const Image& image, int hotX, int hotY) {
  const auto size = [](int value) { return static_cast<uint32_t>(value); };
  const uint32_t bodyBytes =
      size(BitmapHeadBytes + image.height * (image.width * 4 + maskStride(image.width)));
  Bytes file;
  file.add(0, 2);
  file.add(CursorKind, 2);
  file.add(1, 2);
  file.add(size(image.width), 1);
  file.add(size(image.height), 1);
  file.add(0, 2);
  file.add(size(hotX), 2);
  file.add(size(hotY), 2);
  file.add(bodyBytes, 4);
  file.add(HeadBytes + EntryBytes, 4);
  file.add(BitmapHeadBytes, 4);
  file.add(size(image.width), 4);
  file.add(size(image.height * 2), 4);  // the mask stands behind the colours
  file.add(1, 2);
  file.add(BitsPerPixel, 2);
  for (int word = 0; word < 6; ++word)
    file.add(0, 4);
  addPixels(file, image);
  return file.all;
}

void writeCursor(const std::filesystem::path& source, const std::filesystem::path& target, int hotX,
                 int hotY) {
  const Image image = readPicture(source, 0, 0);
  if (std::max(image.width, image.height) > LongestCursorSide)
    throw Failure(source.string() + " is larger than the " + std::to_string(LongestCursorSide) +
                  " by " + std::to_string(LongestCursorSide) + " pixels that a cursor may have.");
  if (hotX >= image.width || hotY >= image.height)
    throw Failure("The pixel that points, " + std::to_string(hotX) + "," + std::to_string(hotY) +
                  ", is not inside of " + source.string() + ".");
  writeFile(target, encodeCursor(image, hotX, hotY));
}

}  // namespace

void addCursorCommands(CLI::App& program) {
  struct Options {
    std::filesystem::path source, target;
    int hotX = 0, hotY = 0;
  };
  CLI::App* group = program.add_subcommand("cursor", "Looks of the pointer");
  group->require_subcommand(1);
  CLI::App* encoded = group->add_subcommand("encode", "Write a cursor file from a PNG or SVG");
  const auto options = std::make_shared<Options>();
  encoded->add_option("SOURCE", options->source, "The picture")->required();
  encoded->add_option("TARGET", options->target, "The .cur file to write")->required();
  encoded->add_option("--hot-x", options->hotX, "The pixel that points, from the left")
      ->check(CLI::NonNegativeNumber);
  encoded->add_option("--hot-y", options->hotY, "The pixel that points, from the top")
      ->check(CLI::NonNegativeNumber);
  encoded->callback(
      [options] { writeCursor(options->source, options->target, options->hotX, options->hotY); });
}

}  // namespace qv::tool
