// Worked cases of colour tables.

#include <algorithm>
#include <cstdlib>

#include "graphics/colour_math.h"
#include "graphics/palette.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"
#include "tests/vectors/surfaces.h"

namespace qv::vectors {
namespace {

/// A palette with these entries; it reads them from a file, as there is no other way to give it
/// many at once.
void put(testing::TestPlatform& platform, scobjPalette& palette, const std::string& entries) {
  if (entries.empty()) return;
  const std::string tag = "scobjPalette";
  const uint32_t words[] = {static_cast<uint32_t>(tag.size() + 1),
                            static_cast<uint32_t>(entries.size() / 4)};
  const auto word = [&](int i) {
    return std::string(reinterpret_cast<const char*>(&words[i]), sizeof words[i]);
  };
  platform.writeFile(platform.player() / "table.pal", word(0) + tag + '\0' + word(1) + entries);
  palette.readFile("table.pal");
  expectSameBytes("the given table", bytesOf(palette.entries()), entries);
}

/// The table of the case, changed by the call, and compared.
template <class Change>
void changeCase(Case& given, const char* table, Change change) {
  scobjPalette palette;
  put(given.platform(), palette, given.bytes(table));
  change(palette);
  given.expectBytes("expect", bytesOf(palette.entries()));
}

void create(Case& given) {
  given.platform();
  const int32_t count = given.int32("count");
  scobjPalette palette;
  palette.create(count);
  if (given.has("expect"))
    given.expectBytes("expect", bytesOf(palette.entries()));
  else
    expectEqual("entries", palette.count(), 0);
}

void set(Case& given) {
  changeCase(given, "table", [&](scobjPalette& palette) {
    palette.set(given.int32("index"), given.int32("red"), given.int32("green"),
                given.int32("blue"));
  });
}

void copyRange(Case& given) {
  scobjPalette source;
  put(given.platform(), source, given.bytes("source"));
  changeCase(given, "target", [&](scobjPalette& palette) {
    palette.copyRange(given.int32("target_first"), source, given.int32("source_first"),
                      given.int32("count"));
  });
}

void tint(Case& given) {
  changeCase(given, "table", [&](scobjPalette& palette) {
    palette.tint(given.int32("red"), given.int32("green"), given.int32("blue"),
                 given.int32("first"), given.int32("count"));
  });
}

void bright(Case& given) {
  changeCase(given, "table", [&](scobjPalette& palette) {
    palette.bright(given.int32("percent"), given.int32("first"), given.int32("count"));
  });
}

void raise(Case& given) {
  changeCase(given, "table", [&](scobjPalette& palette) {
    palette.raise(given.int32("first"), given.int32("last"), given.int32("amount"),
                  given.int32("red") != 0, given.int32("green") != 0, given.int32("blue") != 0);
  });
}

void fill(Case& given) {
  changeCase(given, "table", [&](scobjPalette& palette) {
    palette.fill(given.int32("first"), given.int32("last"), given.int32("red"),
                 given.int32("green"), given.int32("blue"));
  });
}

/// A colour of that luminance, where there is one.
std::optional<uint32_t> entryOfLuminance(int64_t wanted) {
  for (int red = 0; red < 256; ++red)
    for (int green = 0; green < 256; ++green) {
      const int64_t left = wanted - red * 30 - green * 59;
      if (left >= 0 && left % 11 == 0 && left / 11 < 256) return colourOf(red, green, left / 11);
    }
  return {};
}

void tintFormula(Case& given) {
  given.platform();
  for (const Json& row : given["rows"]) {
    const auto luminance = row[0].get<int64_t>();
    const auto tint = row[1].get<int32_t>();
    const Json expected = {row[2], row[3]};
    expectEqual("formulas, row " + row.dump(),
                Json({tintChannel(luminance, tint), monochromeChannel(luminance, tint)}), expected);
    const std::optional<uint32_t> entry = entryOfLuminance(luminance);
    if (!entry) continue;
    scobjPalette palette;
    palette.create(1);
    palette.set(0, redOf(*entry), greenOf(*entry), blueOf(*entry));
    palette.tint(tint, tint, tint, 0, 1);
    QVVSurface surface;
    ColourTable table{};
    table[0] = *entry;
    surface.setColoursRange(table, 0, 1);
    surface.tintMonochrome(tint, tint, tint, 0, 1);
    expectEqual("tables, row " + row.dump(),
                Json({greenOf(palette.entries()[0]), greenOf(surface.shownColours()[0])}),
                expected);
  }
}

/// A surface with the table of the case stored.
void putStored(QVVSurface& surface, const std::string& bytes) {
  surface.setColoursRange(tableOf(bytes), 0, 256);
}

void tintMonochrome(Case& given) {
  given.platform();
  QVVSurface surface;
  putStored(surface, given.bytes("table"));
  surface.tintMonochrome(given.int32("red"), given.int32("green"), given.int32("blue"),
                         given.int32("first"), given.int32("count"));
  given.expectBytes("expect", bytesOf(surface.shownColours()));
  given.expectBytes("table", bytesOf(surface.storedColours()));
}

template <class Change>
void surfaceCase(Case& given, Change change) {
  given.platform();
  QVVSurface surface;
  putStored(surface, given.bytes("surface"));
  change(surface, tableOf(given.bytes("table")));
  given.expectBytes("expect", bytesOf(surface.storedColours()));
  given.expectBytes("expect", bytesOf(surface.shownColours()));
}

void setColours(Case& given) {
  surfaceCase(given, [&](QVVSurface& surface, const ColourTable& table) {
    surface.setColours(table, given.int32("target_first"), given.int32("source_first"),
                       given.int32("count"));
  });
}

void setColoursRange(Case& given) {
  surfaceCase(given, [&](QVVSurface& surface, const ColourTable& table) {
    surface.setColoursRange(table, given.int32("first"), given.int32("count"));
  });
}

/// The tables that all fades of the file go between.
struct FadeTables {
  std::string stored, target;
};
FadeTables& fadeTables() {
  static FadeTables tables;
  return tables;
}

void fadeTablesCase(Case& given) {
  fadeTables() = {given.bytes("stored"), given.bytes("target")};
  expectEqual("bytes", Json({fadeTables().stored.size(), fadeTables().target.size()}),
              Json({sizeof(ColourTable), sizeof(ColourTable)}));
}

void fadePalette(Case& given) {
  given.platform();
  const FadeTables& tables = fadeTables();
  QVVSurface surface;
  putStored(surface, tables.stored);
  surface.fadePalette(tableOf(tables.target), given.int32("step"), given.int32("steps"));

  // The bytes that the case leaves open may be one off, and then count as what was expected.
  std::string shown = bytesOf(surface.shownColours());
  const std::string expected = given.bytes("shown");
  if (given.has("tolerant"))
    for (const Json& place : given["tolerant"]) {
      const auto at = place.get<size_t>();
      const int difference =
          static_cast<uint8_t>(shown.at(at)) - static_cast<uint8_t>(expected.at(at));
      if (std::abs(difference) == 1) shown[at] = expected[at];
    }
  expectSameBytes("shown", shown, expected);
  const bool unchanged = given.ascii("stored") == "unchanged";
  expectSameBytes("stored", bytesOf(surface.storedColours()),
                  unchanged ? tables.stored : tables.target);
}

QVDib pictureOf(Case& given, const char* table, const char* colours) {
  const auto count = given.uint32(colours);
  return bitmapOf(1, 1, 8, given.bytes(table).substr(0, count * 4), std::string(4, '\0'), count);
}

void useTable(QVDib& picture, const std::string& use) {
  expectEqual("bytes of the use table", use.size(), picture.PaletteUseTable.size());
  std::ranges::transform(use, picture.PaletteUseTable.begin(),
                         [](char byte) { return static_cast<uint8_t>(byte); });
}

void expectMerged(Case& given, int result, const ColourTable& table) {
  expectEqual("result is zero", result == 0, given["result_zero"]);
  given.expectBytes("expect", bytesOf(table));
}

void mergePalette(Case& given) {
  QVDib picture = pictureOf(given, "picture", "picture_colours");
  useTable(picture, given.bytes("use"));
  ColourTable table = tableOf(given.bytes("table"));
  const int result = MergePalette(picture, table, given.int32("first"), given.int32("last"),
                                  given.int32("force") != 0);
  expectMerged(given, result, table);
}

void mergePalette2(Case& given) {
  const QVDib a = pictureOf(given, "a", "a_colours");
  QVDib b = pictureOf(given, "b", "b_colours");
  useTable(b, given.bytes("b_use"));
  ColourTable table = tableOf(given.bytes("table"));
  const int result = MergePalette(a, b, table);
  expectMerged(given, result, table);
}

void readFile(Case& given) {
  testing::TestPlatform& platform = given.platform();
  platform.writeFile(platform.player() / "given.pal", given.bytes("input"));
  scobjPalette palette;
  put(platform, palette, given.bytes("old"));
  palette.readFile("given.pal");
  expectEqual("count", palette.count(), given["count"]);
  given.expectBytes("expect", bytesOf(palette.entries()));
}

constexpr Kind Kinds[] = {
    {"MergePalette", mergePalette},
    {"MergePalette2", mergePalette2},
    {"bright", bright},
    {"copyRange", copyRange},
    {"create", create},
    {"fadePalette", fadePalette},
    {"fade_tables", fadeTablesCase},
    {"fill", fill},
    {"raise", raise},
    {"readFile", readFile},
    {"set", set},
    {"setColours", setColours},
    {"setColoursRange", setColoursRange},
    {"tint", tint},
    {"tintMonochrome", tintMonochrome},
    {"tint_formula", tintFormula},
};

}  // namespace

std::span<const Kind> paletteKinds() {
  return Kinds;
}

}  // namespace qv::vectors
