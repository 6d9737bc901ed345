#include "graphics/dib.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/heap.h"
#include "foundation/path_name.h"
#include "platform/text/shift_jis.h"
#include "tests/support/picture_bytes.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using namespace qv::testing;

class QVDibTest : public ::testing::Test {
 protected:
  QVDib& loaded(std::string_view bytes) {
    platform_.writeFile(platform_.game() / "picture", bytes);
    dib_.loadByName("picture");
    return dib_;
  }
  QVDib& packed(std::string_view block) {
    dib_.loadPacked(spanOf(block));
    return dib_;
  }
  QVDib& resource(std::string_view bytes) {
    platform_.writeFile(platform_.game() / "res" / "7.bmp", bytes);
    dib_.loadResource(7);
    return dib_;
  }
  ptrdiff_t ownEntries() const {
    return std::count(dib_.PaletteUseTable.begin(), dib_.PaletteUseTable.end(), 0u);
  }
  TestPlatform platform_;
  QVDib dib_;
};

std::string bitmap8(std::string_view pixels = "abcdefgh") {
  return bmpFile(infoHeader(4, 2, 8, 2) + "1111" + "2222", pixels);
}

TEST_F(QVDibTest, IsEmptyWhenNewAndOwnsTheStaticColours) {
  EXPECT_TRUE(dib_.empty());
  EXPECT_EQ(dib_.width(), 0);
  EXPECT_EQ(dib_.height(), 0);
  EXPECT_FALSE(dib_.hasColourTable());
  for (size_t entry = 0; entry < 256; ++entry)
    EXPECT_EQ(dib_.PaletteUseTable[entry], entry < 10 || entry > 245 ? 0u : 1u) << entry;
}

TEST_F(QVDibTest, ReadsABitmapFileAndOwnsAllItsColours) {
  loaded(bitmap8());
  EXPECT_EQ(dib_.width(), 4);
  EXPECT_EQ(dib_.height(), 2);
  EXPECT_EQ(dib_.bitCount(), 8);
  EXPECT_EQ(dib_.strideBytes(), 4);
  EXPECT_EQ(dib_.colourCount(), 2);
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "11112222");
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
  EXPECT_EQ(ownEntries(), 256);
}

TEST_F(QVDibTest, WidensACoreHeaderAndItsColours) {
  const std::string core =
      little(12, 4) + little(3, 2) + little(2, 2) + little(1, 2) + little(1, 2) + "abcABC";
  loaded(bmpFile(core, "12345678"));
  EXPECT_EQ(dib_.header().size, 40u);
  EXPECT_EQ(dib_.width(), 3);
  EXPECT_EQ(dib_.height(), 2);
  EXPECT_EQ(dib_.bitCount(), 1);
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), std::string("abc\0ABC\0", 8));
  EXPECT_EQ(textOf(dib_.bits()), "12345678");
}

TEST_F(QVDibTest, ReadsACoreHeaderOfTrueColourWithoutATable) {
  const std::string core =
      little(12, 4) + little(1, 2) + little(2, 2) + little(1, 2) + little(24, 2);
  loaded(bmpFile(core, "rgb.RGB."));
  EXPECT_EQ(dib_.headerBlock().size(), 40u);
  EXPECT_FALSE(dib_.hasColourTable());
  EXPECT_TRUE(dib_.colours().empty());
  EXPECT_EQ(textOf(dib_.bits()), "rgb.RGB.");
}

TEST_F(QVDibTest, ReadsTheTableBehindALongerHeader) {
  std::string header = infoHeader(4, 1, 8, 1);
  header[0] = 108;
  header.resize(108, 'x');
  loaded(bmpFile(header + "1111", "abcd"));
  EXPECT_EQ(dib_.header().size, 40u);
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "1111");
  EXPECT_EQ(textOf(dib_.bits()), "abcd");
}

TEST_F(QVDibTest, ReadsHeadersThatEndEarly) {
  for (const size_t bytes :
       {size_t{16}, size_t{17}, size_t{20}, size_t{35}, size_t{36}, size_t{39}}) {
    std::string header = infoHeader(4, 2, 8, 2).substr(0, bytes);
    header[0] = static_cast<char>(bytes);
    // The count of colours stands at the end of 36 bytes.
    std::string table;
    for (uint32_t entry = 0; entry < (bytes < 36 ? 256u : 2u); ++entry)
      table += little(entry * 0x010203 + 7, 4);
    for (const bool file : {true, false}) {
      file ? loaded(bmpFile(header + table, "abcdefgh")) : packed(header + table + "abcdefgh");
      ASSERT_FALSE(dib_.empty()) << bytes;
      EXPECT_EQ(dib_.header().size, bytes);
      EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), table) << bytes;
      EXPECT_EQ(dib_.colours().size(), table.size() / 4) << bytes;
      EXPECT_EQ(textOf(dib_.bits()), "abcdefgh") << bytes;
    }
  }
}

TEST_F(QVDibTest, TakesThePixelsFromWhereTheFileSaysTheyAre) {
  const std::string head = infoHeader(4, 2, 8, 2) + "1111" + "2222";
  for (const std::string gap : {"", "?", "gap", "a gap of some more bytes"}) {
    const std::string file = bmpFile(head + gap, "abcdefgh");
    EXPECT_EQ(textOf(loaded(file).bits()), "abcdefgh") << gap;
    EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "11112222") << gap;
    EXPECT_EQ(textOf(resource(file).bits()), "abcdefgh") << gap;
    EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "11112222") << gap;
  }
  std::string outside = bmpFile(head, "abcdefgh");
  outside.replace(10, 4, little(0xFFFFFFF0, 4));
  EXPECT_TRUE(loaded(outside).bits().empty());
  EXPECT_TRUE(resource(outside).bits().empty());
}

TEST_F(QVDibTest, ReadsNothingBehindTheBitmapsOwnSize) {
  EXPECT_EQ(textOf(loaded(bitmap8() + "more and more").bits()), "abcdefgh");
}

TEST_F(QVDibTest, KeepsTwelveBytesOfMasks) {
  loaded(bmpFile(infoHeader(1, 1, 32, 0, 4, 3) + "RRRRGGGGBBBB", "abcd"));
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "RRRRGGGGBBBB");
  EXPECT_EQ(textOf(dib_.bits()), "abcd");
  EXPECT_EQ(dib_.colourCount(), 0);
  EXPECT_EQ(dib_.colourTableWordCount(), 1);
  EXPECT_FALSE(dib_.hasColourTable());
}

/// A header that is long enough to hold the masks itself.
std::string longHeader(size_t bytes, uint32_t bitCount, uint32_t told) {
  std::string header = infoHeader(1, 1, bitCount, told, 4, 3) + "RRRRGGGGBBBB";
  header[0] = static_cast<char>(bytes);
  header.resize(bytes, 'x');
  return header;
}

TEST_F(QVDibTest, FindsTheMasksWithinALongerHeaderAndNoneBehindIt) {
  for (const size_t bytes : {size_t{52}, size_t{56}, size_t{108}, size_t{124}}) {
    const std::string bare = longHeader(bytes, 32, 0), three = longHeader(bytes, 8, 3);
    const auto expectBare = [&](const char* how) {
      ASSERT_FALSE(dib_.empty()) << bytes << how;
      EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "RRRRGGGGBBBB") << bytes << how;
      EXPECT_EQ(textOf(dib_.bits()), "abcd") << bytes << how;
    };
    loaded(bmpFile(bare, "abcd"));
    expectBare(" file");
    resource(bmpFile(bare, "abcd"));
    expectBare(" resource");
    packed(bare + "abcd");
    expectBare(" block");
    for (const bool file : {true, false}) {
      const std::string table = "111122223333";
      file ? loaded(bmpFile(three + table, "abcd")) : packed(three + table + "abcd");
      EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "RRRRGGGGBBBB" + table) << bytes;
      EXPECT_EQ(textOf(dib_.bits()), "abcd") << bytes;
    }
    for (size_t size = 0; size < bytes; ++size)
      EXPECT_TRUE(packed(bare.substr(0, size)).empty()) << size;
  }
}

TEST_F(QVDibTest, FindsTheMasksBehindAHeaderThatEndsBeforeThem) {
  for (const size_t bytes : {size_t{41}, size_t{51}}) {
    std::string header = infoHeader(1, 1, 32, 0, 4, 3);
    header[0] = static_cast<char>(bytes);
    header.resize(bytes, 'x');
    loaded(bmpFile(header + "RRRRGGGGBBBB", "abcd"));
    EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "RRRRGGGGBBBB") << bytes;
    EXPECT_EQ(textOf(dib_.bits()), "abcd") << bytes;
  }
}

TEST_F(QVDibTest, FindsItsColoursFourBytesFurtherWithMasks) {
  loaded(bmpFile(infoHeader(4, 1, 8, 3, 4, 3) + "RRRRGGGGBBBB" + "111122223333", "abcd"));
  EXPECT_EQ(dib_.colourCount(), 2);
  EXPECT_EQ(dib_.colourTableWordCount(), 4);
  ASSERT_EQ(dib_.colours().size(), 2u);
  EXPECT_EQ(dib_.colours()[0], 0x47474747u);
}

TEST_F(QVDibTest, IsToldByItsContentAndNotByItsName) {
  platform_.writeFile(platform_.game() / "a.bmp",
                      mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("mcg!")));
  platform_.writeFile(platform_.game() / "b.mcg", sldFile(4, 1, "", literals("sld!")));
  platform_.writeFile(platform_.game() / "c.sld", bitmap8());
  dib_.loadByName("a.bmp");
  EXPECT_EQ(textOf(dib_.bits()), "mcg!");
  dib_.loadByName("b.mcg");
  EXPECT_EQ(textOf(dib_.bits()), "sld!");
  dib_.loadByName("c.sld");
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
}

TEST_F(QVDibTest, FromMemoryIsTheSameAsFromAFile) {
  for (const std::string& file : {bitmap8(), sldFile(5, 2, "1234", literals("abcde...ABCDE---")),
                                  mcgFile({.width = 4, .height = 2, .pixelBytes = 8, .entries = 1},
                                          "1234" + literals("abcdefgh"))}) {
    const QVDib fromFile = loaded(file);
    dib_.loadFromMemory(spanOf(file));
    EXPECT_EQ(textOf(dib_.headerBlock()), textOf(fromFile.headerBlock()));
    EXPECT_EQ(textOf(dib_.bits()), textOf(fromFile.bits()));
    EXPECT_EQ(dib_.PaletteUseTable, fromFile.PaletteUseTable);
    EXPECT_FALSE(dib_.empty());
  }
}

TEST_F(QVDibTest, TakesItsUseTableFromTheMarksOfAnMcg) {
  loaded(mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 2},
                 bytesOf({1, 1, 1, 0, 2, 2, 2, 5}) + literals("abcd")));
  EXPECT_EQ(dib_.PaletteUseTable[0], 0u);
  EXPECT_EQ(dib_.PaletteUseTable[1], 5u);
  EXPECT_EQ(dib_.PaletteUseTable[2], 0u);
  EXPECT_EQ(dib_.PaletteUseTable[100], 0u);
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), bytesOf({1, 1, 1, 0, 2, 2, 2, 0}));
}

TEST_F(QVDibTest, GetsTheRightPixelsOfAnMcgWithMasks) {
  loaded(mcgFile({.width = 2, .height = 1, .bitCount = 32, .pixelBytes = 8, .compression = 3},
                 "RRRRGGGGBBBB" + literals("abcdefgh")));
  // A picture without a size field: its row of two counts as two bytes, rounded up to four.
  EXPECT_EQ(textOf(dib_.bits()), "abcd");
  EXPECT_EQ(textOf(dib_.headerBlock().subspan(40)), "RRRRGGGGBBBB");
}

TEST_F(QVDibTest, ReadsABitmapFromTheFilesStartAndOthersFromItsPosition) {
  const std::string mcg = mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("mcg!"));
  platform_.writeFile(platform_.game() / "two", "front" + mcg);
  QVFile file;
  file.openName("two", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  file.seek(5, SeekFrom::Start);
  dib_.loadFromFile(file);
  EXPECT_EQ(textOf(dib_.bits()), "mcg!");
  platform_.writeFile(platform_.game() / "three", bitmap8() + mcg);
  file.openName("three", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  file.seek(static_cast<int64_t>(bitmap8().size()), SeekFrom::Start);
  dib_.loadFromFile(file);
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
}

TEST_F(QVDibTest, IsEmptyForAFileOfAnotherKindOrAClosedOne) {
  EXPECT_TRUE(loaded("a text that is no picture at all").empty());
  EXPECT_TRUE(loaded("").empty());
  loaded(bitmap8());
  QVFile closed;
  dib_.loadFromFile(closed);
  EXPECT_TRUE(dib_.empty());
}

TEST_F(QVDibTest, AsksThePlayerWhenTheNameIsEmpty) {
  platform_.writeFile(platform_.game() / "chosen.bmp", bitmap8());
  platform_.dialogs.chosenPaths.push_back("C:\\chosen.bmp");
  dib_.loadByName("");
  ASSERT_EQ(platform_.dialogs.asked.size(), 1u);
  EXPECT_FALSE(platform_.dialogs.asked[0].saving);
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
}

TEST_F(QVDibTest, IsClearedWhenThePlayerCancels) {
  loaded(bitmap8());
  QVPathName empty;
  dib_.loadFromPathName(empty);
  EXPECT_EQ(platform_.dialogs.asked.size(), 1u);
  EXPECT_TRUE(dib_.empty());
}

TEST_F(QVDibTest, OfAMissingFileOffersToRetryAndThenThrows) {
  EXPECT_THROW(dib_.loadByName("missing.mcg"), CannotOpenException);
  EXPECT_EQ(platform_.dialogs.shown.size(), 1u);
}

TEST_F(QVDibTest, KeepsItsUseTableWhenCleared) {
  dib_.PaletteUseTable.fill(42);
  dib_.clear();
  packed("");
  EXPECT_EQ(std::count(dib_.PaletteUseTable.begin(), dib_.PaletteUseTable.end(), 42u), 256);
}

TEST_F(QVDibTest, FromABlockCopiesWhatTheBlockHoldsWhateverItsSizeFieldSays) {
  packed(infoHeader(4, 2, 8, 1, 0x7FFFFFFF) + "1111" + "abcdef");
  EXPECT_EQ(textOf(dib_.bits()), "abcdef");
  EXPECT_TRUE(platform_.dialogs.shown.empty());
}

TEST_F(QVDibTest, FromABlockWithoutASizeBringsInAQuarterOf32Bits) {
  packed(infoHeader(4, 2, 32) + std::string(32, 'p'));
  EXPECT_EQ(dib_.bits().size(), 8u);
  packed(infoHeader(4, 2, 32, 0, 32) + std::string(32, 'p'));
  EXPECT_EQ(dib_.bits().size(), 32u);
}

TEST_F(QVDibTest, FromABlockTakesThePixelsFromThere) {
  dib_.loadPacked(spanOf(infoHeader(4, 1, 8, 1) + "1111" + "abcd"), spanOf("efghij"));
  EXPECT_EQ(textOf(dib_.bits()), "efgh");
}

TEST_F(QVDibTest, OfAnMcgWithoutAPaletteHasBlackColours) {
  loaded(mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("abcd")));
  ASSERT_EQ(dib_.colours().size(), 256u);
  EXPECT_EQ(std::count(dib_.colours().begin(), dib_.colours().end(), 0u), 256);
  EXPECT_EQ(textOf(dib_.bits()), "abcd");
}

TEST_F(QVDibTest, FromABlockOfAnOddDepthShowsABoxAndGoesOn) {
  packed(infoHeader(4, 2, 2) + std::string(16, 't') + "abcdefgh");
  ASSERT_EQ(platform_.dialogs.shown.size(), 1u);
  EXPECT_EQ(
      platform_.dialogs.shown[0].text,
      sjis(
          "colorDepth()がおかしな値を返しました：2\n４バイトデータだと仮定して処理を継続します。"));
  EXPECT_EQ(platform_.dialogs.shown[0].caption, "QVString class");
  EXPECT_EQ(platform_.dialogs.shown[0].flags, 0x12000u);
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
}

TEST_F(QVDibTest, FromABlockThatIsCutAnywhereIsEmptyOrShort) {
  const std::string block = infoHeader(4, 2, 8, 2) + "11112222" + "abcdefgh";
  for (size_t size = 0; size < block.size(); ++size) {
    packed(block.substr(0, size));
    EXPECT_EQ(dib_.empty(), size < 40) << size;
    EXPECT_EQ(dib_.colours().size(), size < 40 ? 0u : 2u) << size;
    EXPECT_EQ(dib_.bits().size(), size < 48 ? 0 : size - 48) << size;
  }
}

TEST_F(QVDibTest, FromABitmapFileThatIsCutAnywhereIsEmptyOrShort) {
  const std::string file = bitmap8();
  const size_t pixelsAt = file.size() - 8;
  for (size_t size = 0; size < file.size(); ++size) {
    loaded(file.substr(0, size));
    EXPECT_EQ(dib_.empty(), size < pixelsAt) << size;
    EXPECT_EQ(dib_.bits().size(), size < pixelsAt ? 0 : size - pixelsAt) << size;
  }
}

struct Refused {
  const char* what;
  uint32_t width, height, bitCount, told;
};
class QVDibRefuses : public QVDibTest, public ::testing::WithParamInterface<Refused> {};

TEST_P(QVDibRefuses, SuchABitmap) {
  const Refused& given = GetParam();
  const std::string header = infoHeader(given.width, given.height, given.bitCount, given.told);
  const std::string behind(4096, 'x');
  EXPECT_TRUE(packed(header + behind).empty());
  EXPECT_TRUE(loaded(bmpFile(header, behind)).empty());
  EXPECT_TRUE(platform_.dialogs.shown.empty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, QVDibRefuses,
                         ::testing::Values(Refused{"NoWidth", 0, 4, 8, 0},
                                           Refused{"NoHeight", 4, 0, 8, 0},
                                           Refused{"NegativeHeight", 4, 0xFFFFFFFC, 8, 0},
                                           Refused{"NegativeWidth", 0xFFFFFFFC, 4, 8, 0},
                                           Refused{"Overflow", 0x7FFFFFFF, 0x7FFFFFFF, 32, 0},
                                           Refused{"TooManyPixels", 8001, 8000, 8, 0},
                                           Refused{"ThreeHundredColours", 4, 4, 8, 300},
                                           Refused{"FourMilliardColours", 4, 4, 8, 0xFFFFFFFF}),
                         [](const auto& given) { return given.param.what; });

TEST_F(QVDibTest, RefusesHeadersOfSizesThatAreNone) {
  for (const uint32_t size : {0u, 1u, 11u, 13u, 15u, 1025u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    std::string block = infoHeader(4, 1, 8, 1) + "1111abcd";
    block.replace(0, 4, little(size, 4));
    EXPECT_TRUE(packed(block).empty()) << size;
  }
}

TEST_F(QVDibTest, OfAPaletteOfThreeHundredEntriesInAnMcgIsEmpty) {
  loaded(mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 300},
                 std::string(1200, 'p') + literals("abcd")));
  EXPECT_TRUE(dib_.empty());
}

TEST_F(QVDibTest, IsClearedAndSaysSoWhenThereIsNoMemory) {
  const std::string block = infoHeader(200, 100, 8, 1) + "1111" + std::string(20000, 'x');
  packed(bitmap8().substr(14));
  QVHeap::setPermit([](size_t size) { return size != 20000; });
  try {
    packed(block);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const NotEnoughMemoryException& exception) {
    EXPECT_STREQ(exception.title(), "QVDib - create");
    EXPECT_EQ(exception.message(), sjis("メモリが足りません！"));
  }
  QVHeap::setPermit(nullptr);
  EXPECT_TRUE(dib_.empty());
}

TEST_F(QVDibTest, CopiesAreTheirOwn) {
  loaded(bitmap8());
  const QVDib copy = dib_;
  dib_.clear();
  EXPECT_EQ(textOf(copy.bits()), "abcdefgh");
}

std::string rcg(std::string_view mcg) {
  return "RCG " + little(static_cast<uint32_t>(mcg.size()), 4) + std::string(mcg);
}

TEST_F(QVDibTest, FindsResourcesByNumberAndByName) {
  const std::string mcg = mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("mcg!"));
  platform_.writeFile(platform_.game() / "res" / "103.bmp", bitmap8());
  platform_.writeFile(platform_.game() / "res" / "104.rcg", rcg(mcg));
  platform_.writeFile(platform_.game() / "res" / "Logo.rcg", rcg(mcg));
  dib_.loadResource(103);
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
  dib_.loadResource(104);
  EXPECT_EQ(textOf(dib_.bits()), "mcg!");
  dib_.clear();
  dib_.loadResource("LOGO");
  EXPECT_EQ(textOf(dib_.bits()), "mcg!");
}

TEST_F(QVDibTest, PrefersABitmapToAnRcg) {
  platform_.writeFile(platform_.game() / "res" / "1.bmp", bitmap8());
  platform_.writeFile(platform_.game() / "res" / "1.rcg",
                      rcg(mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("mcg!"))));
  dib_.loadResource(1);
  EXPECT_EQ(textOf(dib_.bits()), "abcdefgh");
}

TEST_F(QVDibTest, OfAResourceKeepsItsUseTable) {
  platform_.writeFile(platform_.game() / "res" / "1.rcg",
                      rcg(mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 1},
                                  "111\7" + literals("mcg!"))));
  dib_.PaletteUseTable.fill(42);
  dib_.loadResource(1);
  EXPECT_EQ(dib_.PaletteUseTable[0], 42u);
}

TEST_F(QVDibTest, ByAResourcesNumberNeverTouchesOtherFiles) {
  platform_.writeFile(platform_.game() / "103", bitmap8());
  platform_.writeFile(platform_.game() / "103.bmp", bitmap8());
  platform_.writeFile(platform_.game() / "secret.bmp", bitmap8());
  dib_.loadResource(103);
  EXPECT_TRUE(dib_.empty());
  for (const char* name : {"..\\secret", "../secret", "C:\\secret", "", "a b", "\x83\x5C"}) {
    dib_.loadResource(name);
    EXPECT_TRUE(dib_.empty()) << name;
  }
  EXPECT_TRUE(platform_.dialogs.shown.empty());
  EXPECT_TRUE(platform_.dialogs.asked.empty());
}

TEST_F(QVDibTest, OfADamagedResourceIsEmpty) {
  const std::string whole =
      rcg(mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("mcg!")));
  for (size_t size = 0; size < 8 + 64; ++size) {
    platform_.writeFile(platform_.game() / "res" / "1.rcg", whole.substr(0, size));
    dib_.loadResource(1);
    EXPECT_TRUE(dib_.empty()) << size;
  }
  platform_.writeFile(platform_.game() / "res" / "1.rcg", "GCR " + whole.substr(4));
  dib_.loadResource(1);
  EXPECT_TRUE(dib_.empty());
  // A length beyond the file is the file's.
  std::string longer = whole;
  longer.replace(4, 4, little(0xFFFFFFFF, 4));
  platform_.writeFile(platform_.game() / "res" / "1.rcg", longer);
  dib_.loadResource(1);
  EXPECT_EQ(textOf(dib_.bits()), "mcg!");
}

}  // namespace
}  // namespace qv
