#include "graphics/palette.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "tests/support/failing_heap.h"
#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

using Entries = std::vector<uint32_t>;

Entries entriesOf(const scobjPalette& palette) {
  return {palette.entries().begin(), palette.entries().end()};
}

/// 0xRRGGBB each.
scobjPalette paletteOf(const Entries& entries) {
  scobjPalette palette;
  palette.create(static_cast<int32_t>(entries.size()));
  for (size_t i = 0; i < entries.size(); ++i)
    palette.set(static_cast<int32_t>(i), static_cast<int32_t>(entries[i] >> 16),
                static_cast<int32_t>(entries[i] >> 8), static_cast<int32_t>(entries[i]));
  return palette;
}

const Entries Five = {0x102030, 0x405060, 0x708090, 0xA0B0C0, 0xFFFFFF};

// Making.

TEST(Palette, IsEmptyFromTheStart) {
  const scobjPalette palette;
  EXPECT_EQ(palette.count(), 0);
  EXPECT_EQ(palette.table(), ColourTable{});
}

TEST(Palette, IsCreatedAllZeroAndWithStaticColoursOnlyAt256) {
  scobjPalette palette;
  for (const int32_t count : {1, 255, 257}) {
    palette.create(count);
    EXPECT_EQ(entriesOf(palette), Entries(static_cast<size_t>(count), 0)) << count;
  }
  palette.create(256);
  for (size_t i = 0; i < 256; ++i)
    EXPECT_EQ(palette.entries()[i], i < 10 || i > 245 ? defaultColours()[i] : 0u) << i;
}

TEST(Palette, KeepsItsEntriesWhenACountIsBelowOne) {
  scobjPalette palette = paletteOf(Five);
  for (const int32_t count : {0, -1, INT_MIN}) {
    palette.create(count);
    EXPECT_EQ(entriesOf(palette), Five);
  }
}

TEST(Palette, ThrowsWithItsOwnTitleWhenMemoryFails) {
  scobjPalette palette = paletteOf(Five);
  const auto titleOf = [&](int32_t count) -> std::string {
    try {
      palette.create(count);
      return "nothing";
    } catch (const NotEnoughMemoryException& exception) {
      return exception.title();
    }
  };
  EXPECT_EQ(titleOf(INT_MAX), "scobjPalette - create");
  const testing::FailingHeap heap(0, 1);
  EXPECT_EQ(titleOf(256), "scobjPalette - create");
  EXPECT_EQ(entriesOf(palette), Five);
}

TEST(Palette, SetsOneEntryAndNoneOutside) {
  scobjPalette palette = paletteOf(Five);
  palette.set(1, 1, 2, 3);
  for (const int32_t outside : {-1, 5, INT_MIN, INT_MAX})
    palette.set(outside, 9, 9, 9);
  EXPECT_EQ(entriesOf(palette), (Entries{0x102030, 0x010203, 0x708090, 0xA0B0C0, 0xFFFFFF}));
}

TEST(Palette, CopiesARangeOnlyWhenAllOfItIsInside) {
  const scobjPalette source = paletteOf({1, 2, 3});
  const scobjPalette empty;
  scobjPalette palette = paletteOf(Five);
  palette.copyRange(3, source, 0, 3);
  palette.copyRange(0, source, 1, 3);
  palette.copyRange(-1, source, 0, 2);
  palette.copyRange(0, source, -1, 2);
  palette.copyRange(0, source, 0, 0);
  palette.copyRange(0, source, 0, -1);
  palette.copyRange(0, empty, 0, 1);
  palette.copyRange(INT_MAX, source, INT_MAX, INT_MAX);
  EXPECT_EQ(entriesOf(palette), Five);
  palette.copyRange(3, source, 1, 2);
  EXPECT_EQ(entriesOf(palette), (Entries{0x102030, 0x405060, 0x708090, 2, 3}));
  palette.copyRange(1, palette, 0, 4);
  EXPECT_EQ(entriesOf(palette), (Entries{0x102030, 0x102030, 0x405060, 0x708090, 2}));
}

// Changing colours.

TEST(Palette, TintOfZeroIsBlackAndOf255PlainGrey) {
  scobjPalette palette = paletteOf({0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0x808080});
  palette.tint(255, 255, 255, 0, 0);
  EXPECT_EQ(entriesOf(palette), (Entries{0xFFFFFF, 0x4C4C4C, 0x969696, 0x1C1C1C, 0x808080}));
  palette.tint(0, 0, 0, 0, 0);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0));
}

TEST(Palette, RangesAreClampedIntoTheTable) {
  const Entries white(4, 0xFFFFFF);
  const auto tinted = [&](int32_t first, int32_t count) {
    scobjPalette palette = paletteOf(white);
    palette.tint(0, 0, 0, first, count);
    std::string which;
    for (const uint32_t entry : palette.entries())
      which += entry == 0 ? 'x' : '.';
    scobjPalette bright = paletteOf(white);
    bright.bright(0, first, count);
    EXPECT_EQ(entriesOf(bright), entriesOf(palette));
    return which;
  };
  EXPECT_EQ(tinted(1, 2), ".xx.");
  EXPECT_EQ(tinted(1, 0), ".xxx");
  EXPECT_EQ(tinted(0, 0), "xxxx");
  EXPECT_EQ(tinted(-5, 2), "xx..");
  EXPECT_EQ(tinted(2, INT_MAX), "..xx");
  EXPECT_EQ(tinted(9, 9), "...x");
  EXPECT_EQ(tinted(1, -1), "....");
  EXPECT_EQ(tinted(INT_MAX, INT_MIN), "....");
  scobjPalette empty;
  empty.tint(1, 1, 1, 0, 0);
  empty.bright(1, 0, 0);
  EXPECT_EQ(empty.count(), 0);
}

TEST(Palette, BrightAtItsCornersIsBlackSameAndWhite) {
  const auto after = [](int32_t percent) {
    scobjPalette palette = paletteOf({0x0A64C8});
    palette.bright(percent, 0, 0);
    return palette.entries()[0];
  };
  EXPECT_EQ(after(0), 0u);
  EXPECT_EQ(after(-7), 0u);
  EXPECT_EQ(after(100), 0x0A64C8u);
  EXPECT_EQ(after(200), 0xFFFFFFu);
  EXPECT_EQ(after(INT_MAX), 0xFFFFFFu);
  EXPECT_EQ(after(55), 0x05376Eu);   // 5.5, 55, 110
  EXPECT_EQ(after(133), 0x5A97DAu);  // 10 + 80.85, 100 + 51.15, 200 + 18.15
}

TEST(Palette, ChangesLeaveTheFourthByte) {
  testing::TestPlatform platform;
  const uint32_t entries[] = {0x05808080};
  std::string file("\x0D\0\0\0scobjPalette\0\x01\0\0\0", 21);
  file.append(reinterpret_cast<const char*>(entries), sizeof entries);
  platform.writeFile(platform.player() / "one.pal", file);
  scobjPalette palette;
  palette.readFile("one.pal");
  ASSERT_EQ(entriesOf(palette), Entries{0x05808080});
  palette.bright(200, 0, 0);
  EXPECT_EQ(entriesOf(palette), Entries{0x05FFFFFF});
  palette.raise(0, 0, -15, true, false, false);
  EXPECT_EQ(entriesOf(palette), Entries{0x05F0FFFF});
  palette.tint(0, 0, 0, 0, 0);
  EXPECT_EQ(entriesOf(palette), Entries{0x05000000});
}

TEST(Palette, RaiseAddsToTheFlaggedChannelsAndTheLastEntryToo) {
  scobjPalette palette = paletteOf(Five);
  palette.raise(1, 3, 0x50, true, false, true);
  EXPECT_EQ(entriesOf(palette), (Entries{0x102030, 0x9050B0, 0xC080E0, 0xF0B0FF, 0xFFFFFF}));
  palette.raise(-9, INT_MAX, INT_MIN, true, true, true);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0));
  palette.raise(0, 4, INT_MAX, false, true, false);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0x00FF00));
  palette.raise(3, 2, 1, true, true, true);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0x00FF00));
}

TEST(Palette, RaiseEndsBelow256) {
  scobjPalette palette;
  palette.create(300);
  palette.raise(250, 299, 7, true, false, false);
  for (size_t i = 0; i < 300; ++i)
    EXPECT_EQ(palette.entries()[i], i >= 250 && i < 256 ? 0x070000u : 0u) << i;
}

TEST(Palette, FillTakesTheLastEntryWithIt) {
  scobjPalette palette = paletteOf(Five);
  palette.fill(1, 3, 1, 2, 3);
  EXPECT_EQ(entriesOf(palette), (Entries{0x102030, 0x010203, 0x010203, 0x010203, 0xFFFFFF}));
  palette.fill(INT_MIN, INT_MAX, 4, 5, 6);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0x040506));
  palette.fill(3, 2, 9, 9, 9);
  EXPECT_EQ(entriesOf(palette), Entries(5, 0x040506));
}

TEST(Palette, GivesATableOf256) {
  scobjPalette palette;
  palette.create(300);
  palette.fill(0, 299, 1, 2, 3);
  ColourTable expected;
  expected.fill(0x010203);
  EXPECT_EQ(palette.table(), expected);
  ColourTable few{};
  std::ranges::copy(Five, few.begin());
  EXPECT_EQ(paletteOf(Five).table(), few);
}

TEST(Palette, TakesTheStoredColoursOfASurface) {
  testing::TestPlatform platform;
  QVVSurface surface;
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface.fadePalette(testing::someColours(90), 1, 1);
  scobjPalette palette;
  palette.create(3);
  palette.takeFromSurface(surface);
  EXPECT_EQ(palette.count(), 256);
  EXPECT_EQ(palette.table(), testing::someColours());
}

// Files.

class PaletteFile : public testing::SurfaceTest {
 protected:
  static std::string bytesOf(const void* data, size_t size) {
    return {static_cast<const char*>(data), size};
  }
  static std::string word(uint32_t value) { return bytesOf(&value, sizeof value); }
  static std::string text(const std::string& value) {
    return word(static_cast<uint32_t>(value.size() + 1)) + value + '\0';
  }
  static std::string tagged(uint32_t count, const Entries& entries) {
    return text("scobjPalette") + word(count) + bytesOf(entries.data(), entries.size() * 4);
  }
  static std::string pf() {
    const ColourTable colours = testing::someColours();
    return "PF\n " + std::string(140, '?') + bytesOf(colours.data(), sizeof colours);
  }
  /// What is left of five entries after the file was read.
  Entries read(const std::string& file) {
    platform.writeFile(platform.player() / "table.pal", file);
    scobjPalette palette = paletteOf(Five);
    palette.readFile("table.pal");
    return entriesOf(palette);
  }
};

TEST_F(PaletteFile, WithPfGivesExactly256Entries) {
  const Entries entries = read(pf() + "more behind it");
  const ColourTable colours = testing::someColours();
  EXPECT_EQ(entries, Entries(colours.begin(), colours.end()));
}

TEST_F(PaletteFile, WithATagGivesItsEntries) {
  EXPECT_EQ(read(tagged(2, {0x112233, 0x05445566})), (Entries{0x112233, 0x05445566}));
  EXPECT_EQ(read(tagged(2, {1, 2, 3})), (Entries{1, 2}));
}

TEST_F(PaletteFile, ThatIsForeignOrCutChangesNothing) {
  const std::string whole = tagged(3, {1, 2, 3});
  for (size_t size = 0; size < whole.size(); ++size)
    EXPECT_EQ(read(whole.substr(0, size)), Five) << size;
  const std::string wholePf = pf();
  for (size_t size = 0; size < wholePf.size(); size += 7)
    EXPECT_EQ(read(wholePf.substr(0, size)), Five) << size;
  EXPECT_EQ(read(wholePf.substr(0, wholePf.size() - 1)), Five);
  EXPECT_EQ(read(text("scobjpalette") + word(1) + word(1)), Five);
  EXPECT_EQ(read(text("QVVSurface") + word(1) + word(1)), Five);
  for (const uint32_t count : {0u, 0xFFFFFFFFu, 0x80000000u, 0x40000000u, 4u})
    EXPECT_EQ(read(tagged(count, {1, 2, 3})), Five) << count;
}

TEST_F(PaletteFile, ThatIsMissingRaises) {
  scobjPalette palette;
  EXPECT_THROW(palette.readFile("none.pal"), CannotOpenException);
}

TEST_F(PaletteFile, MayBeAPicture) {
  QVVSurface surface;
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface.saveBmpByName("colours.bmp");
  scobjPalette palette;
  palette.loadFromPicture("colours.bmp");
  EXPECT_EQ(palette.table(), testing::someColours());
  EXPECT_THROW(palette.loadFromPicture("none.bmp"), CannotOpenException);
}

// Merging.

class Merge : public testing::SurfaceTest {
 protected:
  static QVDib picture(size_t colours = 256, uint32_t use = 0, uint32_t start = 1) {
    const ColourTable table = testing::someColours(start);
    QVDib dib = testing::bitmapOf(
        {.colours = {table.begin(), table.begin() + static_cast<ptrdiff_t>(colours)},
         .bits = std::string(4, '\0')});
    dib.PaletteUseTable.fill(use);
    return dib;
  }
  ColourTable table{};
};

TEST_F(Merge, TakesOnlyWhatThePictureOwns) {
  QVDib dib = picture(256, 1);
  dib.PaletteUseTable[3] = dib.PaletteUseTable[7] = dib.PaletteUseTable[200] = 0;
  EXPECT_EQ(MergePalette(dib, table, 3, 199, false), 1);
  ColourTable expected{};
  expected[3] = testing::someColours()[3];
  expected[7] = testing::someColours()[7];
  EXPECT_EQ(table, expected);
  EXPECT_EQ(MergePalette(dib, table, 3, 200, false), 1);
  expected[200] = testing::someColours()[200];
  EXPECT_EQ(table, expected);
}

TEST_F(Merge, OfAPictureThatOwnsNothingChangesNothingUnlessForced) {
  EXPECT_NE(MergePalette(picture(256, 1), table, 0, 255, false), 0);
  EXPECT_EQ(table, ColourTable{});
  EXPECT_NE(MergePalette(picture(256, 1), table, INT_MIN, INT_MAX, true), 0);
  EXPECT_EQ(table, testing::someColours());
}

TEST_F(Merge, NeedsAWholeTable) {
  EXPECT_EQ(MergePalette(picture(255), table, 0, 255, true), 0);
  EXPECT_EQ(MergePalette(QVDib(), table, 0, 255, true), 0);
  EXPECT_EQ(MergePalette(testing::bitmapOf({.bitCount = 24, .bits = std::string(4, '\0')}), table,
                         0, 255, true),
            0);
  EXPECT_EQ(table, ColourTable{});
}

TEST_F(Merge, OfTwoPicturesTakesAllOfTheFirstAndWhatTheSecondOwns) {
  QVDib b = picture(256, 1, 60);
  b.PaletteUseTable[5] = 0;
  EXPECT_NE(MergePalette(picture(256, 1), b, table), 0);
  ColourTable expected = testing::someColours();
  expected[5] = testing::someColours(60)[5];
  EXPECT_EQ(table, expected);
  table.fill(9);
  EXPECT_EQ(MergePalette(picture(), picture(16), table), 0);
  EXPECT_EQ(MergePalette(picture(16), picture(), table), 0);
  EXPECT_EQ(table[0], 9u);
}

TEST_F(Merge, OfTwoFilesLoadsThem) {
  QVVSurface a, b;
  a.setColoursRange(testing::someColours(), 0, 256);
  b.setColoursRange(testing::someColours(60), 0, 256);
  a.saveBmpByName("a.bmp");
  b.saveBmpByName("b.bmp");
  // Bitmap files own all their colours.
  EXPECT_NE(MergePalette("a.bmp", "b.bmp", table), 0);
  EXPECT_EQ(table, testing::someColours(60));
}

}  // namespace
}  // namespace qv
