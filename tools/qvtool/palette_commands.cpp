// palette: which colours a picture brings, and whether pictures can share a screen.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "graphics/static_colours.h"
#include "tools/failure.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/engine_picture.h"
#include "tools/qvtool/entry_list.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;

/// Sixteen rows of sixteen colours; a free entry is crossed out.
void writeSwatches(const codec::IndexedPicture& picture, const fs::path& path) {
  constexpr size_t Across = 16, Side = 24, Gap = 2, Size = Across * Side;
  constexpr uint32_t Ground = 0x404040;
  std::vector<uint32_t> rgb(Size * Size, Ground);
  for (size_t y = 0; y < Size; ++y) {
    for (size_t x = 0; x < Size; ++x) {
      const size_t inX = x % Side, inY = y % Side;
      const size_t entry = y / Side * Across + x / Side;
      const bool inside = inX >= Gap && inY >= Gap;
      const bool crossed = picture.marks[entry] && (inX == inY || inX + inY == Side - 1 + Gap);
      if (inside && !crossed) rgb[y * Size + x] = picture.colours[entry];
    }
  }
  writeRgbPng(Size, Size, rgb, path);
}

void show(const fs::path& path, const fs::path& swatches) {
  const EnginePicture source = readEnginePicture(path);
  const codec::IndexedPicture picture = indexedOf(source);
  std::vector<size_t> pixels(256);
  for (const uint8_t pixel : picture.pixels)
    ++pixels[pixel];
  std::printf("entry  colour   mark  pixels\n");
  for (size_t entry = 0; entry < source.dib.colours().size(); ++entry)
    std::printf("%5zu  #%06X  %-5s %7zu\n", entry, picture.colours[entry],
                picture.marks[entry] ? "free" : "own", pixels[entry]);
  std::printf("own: %s\n",
              entryList(source.dib.PaletteUseTable, source.dib.colours().size()).c_str());
  if (!swatches.empty()) writeSwatches(picture, swatches);
}

/// Says what is wrong with one picture's palette by itself; gives how many faults.
int tellOwnFaults(const fs::path& path, const codec::IndexedPicture& picture) {
  int faults = 0;
  constexpr auto Standard = greyRampWithStaticColours();
  std::vector<bool> used(256);
  for (const uint8_t pixel : picture.pixels)
    used[pixel] = true;
  for (size_t entry = 0; entry < 256; ++entry) {
    if (isStaticColour(entry) && !picture.marks[entry] &&
        picture.colours[entry] != Standard[entry]) {
      std::printf("%s: entry %zu is #%06X, but the static colour there is #%06X\n", path.c_str(),
                  entry, picture.colours[entry], Standard[entry]);
      ++faults;
    }
    if (used[entry] && picture.marks[entry]) {
      std::printf("%s: pixels use entry %zu, which is marked free\n", path.c_str(), entry);
      ++faults;
    }
  }
  return faults;
}

/// Entries that both own with different colours; static ones are told by each picture alone.
int tellClashes(const fs::path& pathA, const codec::IndexedPicture& a, const fs::path& pathB,
                const codec::IndexedPicture& b) {
  std::array<uint32_t, 256> clashes;
  int count = 0;
  for (size_t entry = 0; entry < 256; ++entry) {
    const bool clash = !isStaticColour(entry) && !a.marks[entry] && !b.marks[entry] &&
                       a.colours[entry] != b.colours[entry];
    clashes[entry] = clash ? 0 : 1;
    count += clash;
  }
  if (count)
    std::printf("%s and %s clash in %d entries: %s\n", pathA.c_str(), pathB.c_str(), count,
                entryList(clashes).c_str());
  return count;
}

void check(const std::vector<fs::path>& files) {
  std::vector<codec::IndexedPicture> pictures;
  int faults = 0;
  for (const fs::path& file : files) {
    const EnginePicture source = readEnginePicture(file);
    pictures.push_back(indexedOf(source));
    std::printf("%s owns %s\n", file.c_str(),
                entryList(source.dib.PaletteUseTable, source.dib.colours().size()).c_str());
  }
  for (size_t a = 0; a < files.size(); ++a) {
    faults += tellOwnFaults(files[a], pictures[a]);
    for (size_t b = a + 1; b < files.size(); ++b)
      faults += tellClashes(files[a], pictures[a], files[b], pictures[b]);
  }
  if (faults) throw Failure("These pictures cannot share a screen as they are.");
  std::printf("no clash\n");
}

}  // namespace

void addPaletteCommands(CLI::App& program) {
  CLI::App* group = program.add_subcommand("palette", "The colours of pictures");
  group->require_subcommand(1);

  CLI::App* shown = group->add_subcommand("show", "List the entries with their marks");
  struct Paths {
    fs::path file, swatches;
  };
  const auto paths = std::make_shared<Paths>();
  shown->add_option("FILE", paths->file, "The picture")->required();
  shown->add_option("--png", paths->swatches,
                    "Write the colours as a PNG of swatches, free entries crossed out");
  shown->callback([paths] { show(paths->file, paths->swatches); });

  CLI::App* checked = group->add_subcommand(
      "check",
      "Say which entries each picture owns, and where pictures clash that are meant to "
      "share a screen; status 1 when they do");
  const auto files = std::make_shared<std::vector<fs::path>>();
  checked->add_option("FILE", *files, "The pictures")->required();
  checked->callback([files] { check(*files); });
}

}  // namespace qv::tool
