#include "tools/qvtool/encode_options.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "tools/failure.h"
#include "tools/qvtool/quantise.h"

namespace qv::tool {

void addEncodeOptions(CLI::App& command, EncodeOptions& options) {
  command.add_option("SOURCE", options.source, "A PNG picture or an SVG drawing")->required();
  command.add_option("TARGET", options.target, "The file to write")->required();
  command.add_option("--size", options.size,
                     "WxH: the size in which an SVG drawing is rendered; 0 for one of them follows "
                     "the drawing's shape");
  command.add_option("--entries", options.entries,
                     "FIRST-LAST: the palette entries that the picture may fill (10-245); the "
                     "static colours can always be used");
  command
      .add_option("--fix", options.fixed,
                  "ENTRY=#RRGGBB: a colour that stands at this entry; may be repeated")
      ->allow_extra_args(false);
  command
      .add_option("--key-transparent", options.key,
                  "INDEX: transparent pixels get this index, and with them the top left one")
      ->check(CLI::Range(0, 255));
  command
      .add_option(
          "--palette-of", options.companions,
          "FILE: a picture that shares this one's colours; may be repeated. All of them are "
          "given the same options")
      ->allow_extra_args(false);
  command.add_flag("--no-statics", options.noStatics,
                   "Pixels get no static colour, so that tints and fades of the palette find them "
                   "all");
  command.add_option("--dither", options.dither, "0 (none) to 1 (the default)")
      ->check(CLI::Range(0.0, 1.0));
  command.add_flag("--as-is", options.asIs,
                   "Take the indices and colours of an indexed PNG untouched, static entries too");
}

void parseSize(const std::string& text, int& width, int& height) {
  width = height = 0;
  if (text.empty()) return;
  int taken = 0;
  if (std::sscanf(text.c_str(), "%5dx%5d%n", &width, &height, &taken) != 2 ||
      taken != static_cast<int>(text.size()) || width < 0 || height < 0 || width > LongestSide ||
      height > LongestSide)
    throw Failure("\"" + text + "\" is no size; write 640x480.");
}

Image sourceImage(const EncodeOptions& options) {
  int width, height;
  parseSize(options.size, width, height);
  return readPicture(options.source, width, height);
}

codec::IndexedPicture indexedSource(const EncodeOptions& options) {
  const Image image = sourceImage(options);
  const bool chosen = !options.entries.empty() || !options.fixed.empty() || options.key >= 0 ||
                      options.noStatics || !options.companions.empty();
  if (options.asIs) {
    if (chosen)
      throw Failure(
          "--as-is goes with none of --entries, --fix, --key-transparent, --palette-of, "
          "--no-statics.");
    if (!image.indexed) throw Failure(options.source.string() + " is no indexed PNG.");
    return *image.indexed;
  }
  if (image.indexed && !chosen) {
    try {
      return keepIndices(*image.indexed);
    } catch (const Failure& failure) {
      throw Failure(options.source.string() + ": " + failure.what());
    }
  }
  QuantiseWishes wishes;
  if (!options.entries.empty()) wishes.entries = parseEntries(options.entries);
  for (const std::string& text : options.fixed)
    wishes.fixed.push_back(parseFixedColour(text));
  if (options.key >= 0) wishes.key = options.key;
  wishes.dither = options.dither;
  wishes.statics = !options.noStatics;
  // Each of the set has to come to the same colours, so all count in their own size.
  if (!options.companions.empty()) {
    std::vector<Image> together{readPicture(options.source, 0, 0)};
    for (const std::filesystem::path& companion : options.companions)
      together.push_back(readPicture(companion, 0, 0));
    wishes = commonColours(together, wishes);
  }
  std::vector<std::string> warnings;
  codec::IndexedPicture picture = quantise(image, wishes, warnings);
  for (const std::string& warning : warnings)
    std::fprintf(stderr, "qvtool: %s: %s\n", options.source.c_str(), warning.c_str());
  return picture;
}

}  // namespace qv::tool
