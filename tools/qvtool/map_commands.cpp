// map: pictures of click maps, whose indices are region numbers. As a PNG every region has a colour
// of its own, which an author can paint with.

#include <array>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/failure.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/engine_picture.h"
#include "tools/qvtool/files.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;

/// Black for region 0. The others take the bits of their number in turn from the three channels,
/// high bits first, so that neighbours in number are far apart in colour.
constexpr uint32_t regionColour(unsigned region) {
  if (region == 0) return 0;
  unsigned channels[3] = {0x1F, 0x1F, 0x1F};
  for (unsigned bit = 0; bit < 8; ++bit)
    if (region >> bit & 1) channels[bit % 3] |= 0x80u >> bit / 3;
  return channels[0] << 16 | channels[1] << 8 | channels[2];
}

using RegionsByColour = std::map<uint32_t, uint8_t>;

RegionsByColour standardRegions() {
  RegionsByColour regions;
  for (unsigned region = 0; region < 256; ++region)
    regions[regionColour(region)] = static_cast<uint8_t>(region);
  return regions;
}

/// "#FF0000=3" adds to the table.
void addRegion(const std::string& text, RegionsByColour& regions) {
  uint32_t colour = 0, region = 256;
  if (text.size() > 8 && text[0] == '#' && text[7] == '=') {
    const char* const end = text.data() + text.size();
    const auto [colourEnd, colourError] = std::from_chars(&text[1], &text[7], colour, 16);
    const auto [regionEnd, regionError] = std::from_chars(&text[8], end, region);
    if (colourError != std::errc() || colourEnd != &text[7] || regionError != std::errc() ||
        regionEnd != end)
      region = 256;
  }
  if (region > 255) throw Failure("\"" + text + "\" is no region; write #FF0000=3.");
  regions[colour] = static_cast<uint8_t>(region);
}

std::string hexOf(uint32_t colour) {
  char text[8];
  std::snprintf(text, sizeof(text), "#%06X", colour);
  return text;
}

codec::IndexedPicture regionsOf(const fs::path& path, const RegionsByColour& regions) {
  const Image image = readPicture(path, 0, 0);
  codec::IndexedPicture map;
  map.width = image.width;
  map.height = image.height;
  for (unsigned region = 0; region < 256; ++region)
    map.colours[region] = regionColour(region);
  for (size_t at = 0; at < image.rgba.size(); at += 4) {
    const uint8_t* const pixel = &image.rgba[at];
    const uint32_t colour = pixel[3] < 128 ? 0
                                           : static_cast<uint32_t>(pixel[0]) << 16 |
                                                 static_cast<uint32_t>(pixel[1]) << 8 | pixel[2];
    const auto found = regions.find(colour);
    if (found == regions.end()) {
      const auto place = static_cast<int>(at / 4);
      throw Failure(path.string() + ": the colour " + hexOf(colour) + " at " +
                    std::to_string(place % image.width) + ", " +
                    std::to_string(place / image.width) +
                    " is no region's; `qvtool map colours` lists them, --region adds one.");
    }
    map.pixels.push_back(found->second);
  }
  return map;
}

void decode(const fs::path& source, const fs::path& target) {
  codec::IndexedPicture map = indexedOf(readEnginePicture(source));
  for (unsigned region = 0; region < 256; ++region)
    map.colours[region] = regionColour(region);
  writeIndexedPng(map, target);
}

struct MapOptions {
  fs::path source, target;
  std::vector<std::string> regions;
};

}  // namespace

void addMapCommands(CLI::App& program) {
  CLI::App* group = program.add_subcommand("map", "Pictures of click maps");
  group->require_subcommand(1);

  CLI::App* encoded = group->add_subcommand(
      "encode",
      "Write a map, an 8-bit bitmap of region numbers, from a PNG with one colour a "
      "region; transparent pixels are region 0");
  const auto options = std::make_shared<MapOptions>();
  encoded->add_option("SOURCE", options->source, "The PNG file")->required();
  encoded->add_option("TARGET", options->target, "The bitmap to write")->required();
  encoded
      ->add_option("--region", options->regions,
                   "#RRGGBB=NUMBER: a colour that means this region; may be repeated")
      ->allow_extra_args(false);
  encoded->callback([options] {
    RegionsByColour regions = standardRegions();
    for (const std::string& text : options->regions)
      addRegion(text, regions);
    writeFile(options->target, codec::encodeBmp(regionsOf(options->source, regions)));
  });

  CLI::App* decoded =
      group->add_subcommand("decode", "Write a map as a PNG with one colour a region");
  decoded->add_option("SOURCE", options->source, "The map")->required();
  decoded->add_option("TARGET", options->target, "The PNG file to write")->required();
  decoded->callback([options] { decode(options->source, options->target); });

  CLI::App* colours = group->add_subcommand("colours", "List the colour of every region");
  colours->callback([] {
    for (unsigned region = 0; region < 256; ++region)
      std::printf("%3u  %s\n", region, hexOf(regionColour(region)).c_str());
  });
}

}  // namespace qv::tool
