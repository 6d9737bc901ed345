// mcg, sld, bmp: the picture formats, to and from PNG, and what a file tells of itself.

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "graphics/mcg_reader.h"
#include "tools/failure.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/encode_options.h"
#include "tools/qvtool/engine_picture.h"
#include "tools/qvtool/entry_list.h"
#include "tools/qvtool/files.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;

struct Format {
  const char* group;
  const char* name;  ///< as EnginePicture tells it
  const char* about;
  std::vector<uint8_t> (*encode)(const codec::IndexedPicture&, const codec::Progress&);
};

std::vector<uint8_t> encodeBitmap(const codec::IndexedPicture& picture, const codec::Progress&) {
  return codec::encodeBmp(picture);
}

constexpr Format Mcg = {"mcg", "MCG", "The game's own picture format", codec::encodeMcg};
constexpr Format Sld = {"sld", "SLD", "The older picture format", codec::encodeSld};
constexpr Format Bmp = {"bmp", "BMP", "Bitmaps of 8 bits", encodeBitmap};

struct McgOnly {
  bool trueColour = false, rcg = false;
};

std::vector<uint32_t> opaqueRgb(const Image& image) {
  std::vector<uint32_t> rgb;
  for (size_t at = 0; at < image.rgba.size(); at += 4)
    rgb.push_back(static_cast<uint32_t>(image.rgba[at]) << 16 |
                  static_cast<uint32_t>(image.rgba[at + 1]) << 8 | image.rgba[at + 2]);
  return rgb;
}

void encode(const Format& format, const EncodeOptions& options, const McgOnly& more) {
  const codec::Progress progress = progressLine(options.target.filename().string());
  std::vector<uint8_t> bytes;
  if (more.trueColour) {
    if (!options.entries.empty() || !options.fixed.empty() || options.key >= 0 || options.asIs)
      throw Failure("--true-colour has no palette: it goes with --size alone.");
    const Image image = sourceImage(options);
    bytes = codec::encodeMcg24(image.width, image.height, opaqueRgb(image), progress);
  } else {
    bytes = format.encode(indexedSource(options), progress);
  }
  writeFile(options.target, more.rcg ? codec::wrapRcg(bytes) : bytes);
}

void tell(const fs::path& path, const Format& format) {
  const EnginePicture picture = readEnginePicture(path, format.name);
  const QVDib& dib = picture.dib;
  const size_t pixelBytes = dib.bits().size();
  std::printf("%s: %s, %d by %d, %d bits, %zu bytes for %zu of pixels", path.c_str(),
              picture.format.c_str(), dib.width(), dib.height(), dib.bitCount(),
              picture.bytes.size(), pixelBytes);
  if (!dib.colours().empty()) {
    std::printf(", %zu entries", dib.colours().size());
    if (format.name == std::string("MCG") && picture.format == "MCG")
      std::printf(", own: %s", entryList(dib.PaletteUseTable, dib.colours().size()).c_str());
  }
  std::printf("\n");
}

void addEncode(CLI::App& group, const Format& format) {
  CLI::App* command = group.add_subcommand("encode", "Write a picture from a PNG or SVG file");
  const auto options = std::make_shared<EncodeOptions>();
  const auto more = std::make_shared<McgOnly>();
  addEncodeOptions(*command, *options);
  if (&format == &Mcg) {
    command->add_flag("--true-colour", more->trueColour, "24 bits and no palette");
    command->add_flag("--rcg", more->rcg, "As a resource of the game (res/NAME.rcg)");
  }
  command->callback([&format, options, more] { encode(format, *options, *more); });
}

void addDecode(CLI::App& group, const Format& format) {
  CLI::App* command = group.add_subcommand(
      "decode", "Write a picture as PNG; one of 8 bits keeps its indices and palette");
  struct Paths {
    fs::path source, target;
  };
  const auto paths = std::make_shared<Paths>();
  command->add_option("SOURCE", paths->source, "The picture")->required();
  command->add_option("TARGET", paths->target, "The PNG file to write")->required();
  command->callback([&format, paths] {
    writeAsPng(readEnginePicture(paths->source, format.name), paths->target);
  });
}

void addInfo(CLI::App& group, const Format& format) {
  CLI::App* command = group.add_subcommand("info", "Say what a file holds, a line each");
  const auto files = std::make_shared<std::vector<fs::path>>();
  command->add_option("FILE", *files, "The pictures")->required();
  command->callback([&format, files] {
    for (const fs::path& file : *files)
      tell(file, format);
  });
}

void addGroup(CLI::App& program, const Format& format) {
  CLI::App* group = program.add_subcommand(format.group, format.about);
  group->require_subcommand(1);
  addEncode(*group, format);
  addDecode(*group, format);
  addInfo(*group, format);
}

}  // namespace

void addMcgCommands(CLI::App& program) {
  addGroup(program, Mcg);
}

void addSldCommands(CLI::App& program) {
  addGroup(program, Sld);
}

void addBmpCommands(CLI::App& program) {
  addGroup(program, Bmp);
}

}  // namespace qv::tool
