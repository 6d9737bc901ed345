#include "graphics/mcg_reader.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/heap.h"
#include "tests/support/picture_bytes.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using namespace qv::testing;

PackedPicture decoded(std::string_view file) {
  return McgReader().decodeMemory(spanOf(file));
}

std::string pixelsOf(const PackedPicture& picture) {
  return textOf(picture.pixels());
}

class McgReaderTest : public ::testing::Test {
 protected:
  QVFile& opened(std::string_view bytes, uint32_t access = GenericRead) {
    platform_.writeFile(platform_.game() / "picture.mcg", bytes);
    file_.openName("picture.mcg", OpenExisting, access, ShareRead, AttributeNormal);
    return file_;
  }
  TestPlatform platform_;
  QVFile file_;
};

TEST_F(McgReaderTest, GivesTheRowsBottomFirst) {
  const std::string file =
      mcgFile({.width = 4, .height = 3, .pixelBytes = 12}, literals("aaaabbbbcccc"));
  EXPECT_EQ(pixelsOf(decoded(file)), "ccccbbbbaaaa");
}

TEST_F(McgReaderTest, DoesNotTurnAPictureOfOneRow) {
  const std::string file = mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, literals("abcd"));
  EXPECT_EQ(pixelsOf(decoded(file)), "abcd");
}

TEST_F(McgReaderTest, KeepsTheMiddleOfAnOddNumberOfRows) {
  std::string rows, turned;
  for (char row = 'a'; row < 'a' + 9; ++row) {
    rows += std::string(8, row);
    turned.insert(0, 8, row);
  }
  EXPECT_EQ(pixelsOf(decoded(mcgFile({.width = 8, .height = 9, .pixelBytes = 72}, literals(rows)))),
            turned);
}

TEST_F(McgReaderTest, HasRowsOfEightBytesForAWidthOfFive) {
  const std::string file =
      mcgFile({.width = 5, .height = 2, .pixelBytes = 16}, literals("abcde...ABCDE---"));
  EXPECT_EQ(pixelsOf(decoded(file)), "ABCDE---abcde...");
}

TEST_F(McgReaderTest, TurnsRowsByTheirLengthIn16Bits) {
  // Rows of 65540 bytes count as rows of four.
  constexpr size_t Row = 65540;
  const std::string rows = "abcdefgh" + std::string(2 * Row - 8, '.');
  const std::string file =
      mcgFile({.width = Row, .height = 2, .pixelBytes = 2 * Row}, literals(rows));
  EXPECT_EQ(pixelsOf(decoded(file)), "efghabcd" + rows.substr(8));
}

TEST_F(McgReaderTest, TurnsRowsByTheirWholeBytes) {
  // Rows of 33 bits count as rows of four bytes, though they lie eight apart.
  const std::string file = mcgFile({.width = 33, .height = 2, .bitCount = 1, .pixelBytes = 16},
                                   literals("abcdefghijklmnop"));
  EXPECT_EQ(pixelsOf(decoded(file)), "efghabcdijklmnop");
}

TEST_F(McgReaderTest, DecodesTrueColourWithoutAPalette) {
  const std::string file = mcgFile({.width = 2, .height = 2, .bitCount = 24, .pixelBytes = 16},
                                   literals("rgbRGB..xyzXYZ.."));
  const PackedPicture picture = decoded(file);
  EXPECT_EQ(picture.pixelsAt, 40u);
  EXPECT_EQ(pixelsOf(picture), "xyzXYZ..rgbRGB..");
  McgReader reader;
  reader.attach(opened(file));
  McgReader::UseTable use;
  use.fill(9);
  reader.readPaletteUse(use);
  EXPECT_EQ(std::count(use.begin(), use.end(), 0u), 256);
  EXPECT_EQ(reader.paletteCount(), 0);
}

TEST_F(McgReaderTest, ContinuesARepeatAcrossTheRingsEndAtItsStart) {
  // Eighteen bytes fill the ring's end from 4078; the nineteenth lies at its start. The repeat
  // begins at 4094.
  const std::string file = mcgFile({.width = 24, .height = 1, .pixelBytes = 24},
                                   "\xFF"
                                   "abcdefgh"
                                   "\xFF"
                                   "ijklmnop"
                                   "\x07"
                                   "qrs"
                                   "\xFE\x0F");
  EXPECT_EQ(pixelsOf(decoded(file)), "abcdefghijklmnopqrsqrs" + std::string(2, '\0'));
}

TEST_F(McgReaderTest, GivesZerosForARepeatAtTheVeryStart) {
  const std::string file =
      mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, bytesOf({0x02, 0x00, 0x00, 'x'}));
  EXPECT_EQ(pixelsOf(decoded(file)), std::string("\0\0\0x", 4));
  // What is written first is found at 4078.
  const std::string again =
      mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, bytesOf({0x01, 'y', 0xEE, 0x0F}));
  EXPECT_EQ(pixelsOf(decoded(again)), "yyyy");
}

TEST_F(McgReaderTest, GivesZerosWhereThereIsNoStream) {
  const std::string file =
      mcgFile({.width = 6, .height = 3, .pixelBytes = 24, .entries = 2}, "\1\2\3\4\5\6\7\x08");
  EXPECT_EQ(pixelsOf(decoded(file)), std::string(24, '\0'));
}

TEST_F(McgReaderTest, StopsAtTheAnnouncedSize) {
  const std::string file = mcgFile({.width = 8, .height = 2, .pixelBytes = 16},
                                   literals(std::string(16, 'a') + std::string(40, 'X')));
  const PackedPicture picture = decoded(file);
  EXPECT_EQ(picture.block.size(), 40u + 16);
  EXPECT_EQ(pixelsOf(picture), std::string(16, 'a'));
  // The same where a repeat crosses the end.
  const std::string repeat =
      mcgFile({.width = 4, .height = 1, .pixelBytes = 4}, bytesOf({0x01, 'y', 0xEE, 0xFF}));
  EXPECT_EQ(pixelsOf(decoded(repeat)), "yyyy");
}

TEST_F(McgReaderTest, ClearsTheMarksOfThePaletteAndTellsThemAsUse) {
  const std::string palette = bytesOf({1, 2, 3, 0, 4, 5, 6, 7, 8, 9, 10, 255});
  const std::string file =
      mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 3}, palette + literals("abcd"));
  EXPECT_EQ(textOf(decoded(file).head().subspan(40)),
            bytesOf({1, 2, 3, 0, 4, 5, 6, 0, 8, 9, 10, 0}));
  McgReader reader;
  reader.attach(opened(file));
  McgReader::UseTable use;
  use.fill(9);
  reader.readPaletteUse(use);
  EXPECT_EQ(use[0], 0u);
  EXPECT_EQ(use[1], 7u);
  EXPECT_EQ(use[2], 255u);
  EXPECT_EQ(std::count(use.begin() + 3, use.end(), 0u), 253);
  McgReader::UseTable fromMemory;
  McgReader::paletteUseOf(spanOf(file), fromMemory);
  EXPECT_EQ(fromMemory, use);
}

TEST_F(McgReaderTest, TakesThePaletteFromBehindTheHeadEvenWhereMasksStandThere) {
  const std::string masks = "RRRRGGGGBBBB", palette = "aaaabbbbccccdddd";
  const std::string file = mcgFile(
      {.width = 1, .height = 1, .bitCount = 32, .pixelBytes = 4, .entries = 4, .compression = 3},
      masks + palette + literals("abcd"));
  const PackedPicture picture = decoded(file);
  EXPECT_EQ(textOf(picture.head().subspan(40)),
            std::string("RRRRGGGGBBBB") + std::string("RRR\0GGG\0BBB\0aaa\0", 16));
  EXPECT_EQ(pixelsOf(picture), "abcd");
}

TEST_F(McgReaderTest, ReadsFromItsEntryPositionAndReturnsThere) {
  const std::string picture = mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 1},
                                      "\1\2\3\4" + literals("abcd"));
  QVFile& file = opened("front" + picture);
  file.seek(5, SeekFrom::Start);
  McgReader reader;
  reader.attach(file);
  EXPECT_TRUE(reader.isSupported());
  EXPECT_TRUE(reader.isValid());
  EXPECT_EQ(file.position(), 5);
  EXPECT_EQ(pixelsOf(reader.decodeFile()), "abcd");
  EXPECT_EQ(file.position(), 5);
  McgReader::UseTable use;
  reader.readPaletteUse(use);
  EXPECT_EQ(reader.paletteCount(), 1);
  uint32_t entries[3] = {7, 7, 7};
  EXPECT_EQ(reader.readPalette(entries), 1);
  EXPECT_EQ(entries[0], 0x04030201u);
  EXPECT_EQ(entries[1], 7u);
  EXPECT_EQ(file.position(), 5);
}

TEST_F(McgReaderTest, WritesThePaletteInPlaceAndNothingBehindIt) {
  const std::string stream = literals("abcd");
  QVFile& file =
      opened(mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 2}, "11112222" + stream),
             GenericRead | GenericWrite);
  McgReader reader;
  reader.attach(file);
  const uint32_t entries[] = {0x00616161, 0x01626262, 0x02636363};
  EXPECT_EQ(reader.writePalette(entries), 2);
  EXPECT_EQ(file.position(), 0);
  file.close();
  EXPECT_EQ(platform_.readFile(platform_.player() / "picture.mcg").substr(64),
            std::string("aaa\0bbb\1", 8) + stream);
}

TEST_F(McgReaderTest, OfAClosedFileFindsNothing) {
  QVFile closed;
  McgReader reader;
  reader.attach(closed);
  EXPECT_FALSE(reader.isValid());
  EXPECT_TRUE(reader.decodeFile().empty());
  EXPECT_EQ(reader.paletteCount(), 0);
}

TEST_F(McgReaderTest, RefusesAWrongMagicAndEveryShorterFile) {
  const std::string file = mcgFile({.width = 4, .height = 1, .pixelBytes = 4, .entries = 2},
                                   "11112222" + literals("abcd"));
  std::string wrong = file;
  wrong[3] = '!';
  EXPECT_TRUE(decoded(wrong).empty());
  for (size_t size = 0; size < 64 + 8; ++size)
    EXPECT_TRUE(decoded(file.substr(0, size)).empty()) << size;
  for (size_t size = 64 + 8; size < file.size(); ++size)
    EXPECT_EQ(decoded(file.substr(0, size)).pixels().size(), 4u) << size;
}

TEST_F(McgReaderTest, RefusesSizesThatNoPictureHasBeforeTakingMemory) {
  QVHeap::setPermit([](size_t) {
    ADD_FAILURE() << "memory was asked for";
    return false;
  });
  const McgFields wrong[] = {
      {.width = 0, .height = 4, .pixelBytes = 0},
      {.width = 4, .height = 0, .pixelBytes = 0},
      {.width = 4, .height = 0xFFFFFFFE, .pixelBytes = 8},
      {.width = 0x80000000, .height = 1, .pixelBytes = 4},
      {.width = 0x10000, .height = 0x10000, .pixelBytes = 0},
      {.width = 0x7FFFFFFF, .height = 0x7FFFFFFF, .pixelBytes = 4},
      {.width = 8001, .height = 8000, .pixelBytes = 64'032'000},
      {.width = 4, .height = 4, .pixelBytes = 0xFFFFFFFF},
      {.width = 4, .height = 4, .pixelBytes = 15},
      {.width = 4, .height = 4, .bitCount = 0, .pixelBytes = 0},
      {.width = 4, .height = 4, .bitCount = 0xFFFF, .pixelBytes = 16},
      {.width = 4, .height = 4, .pixelBytes = 16, .entries = 0xFFFFFFFF},
      {.width = 4, .height = 4, .pixelBytes = 16, .entries = 0x40000000},
  };
  for (const McgFields& fields : wrong) {
    const PackedPicture picture = decoded(mcgFile(fields, std::string(5000, '\0')));
    EXPECT_TRUE(picture.empty()) << fields.width << " by " << fields.height << ", "
                                 << fields.pixelBytes << " bytes";
  }
  QVHeap::setPermit(nullptr);
}

TEST_F(McgReaderTest, SaysSoWhenThereIsNoMemory) {
  const std::string file =
      mcgFile({.width = 400, .height = 100, .pixelBytes = 40000}, literals("abcd"));
  QVHeap::setPermit([](size_t size) { return size < 40000; });
  try {
    decoded(file);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const NotEnoughMemoryException& exception) {
    EXPECT_STREQ(exception.title(), "QVDib - create");
  }
  QVHeap::setPermit(nullptr);
}

}  // namespace
}  // namespace qv
