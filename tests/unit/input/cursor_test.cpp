// Cursor files, and where a cursor's name or number leads.

#include "input/cursor.h"

#include <gtest/gtest.h>

#include "input/cursor_file.h"
#include "tests/support/cursor_bytes.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

std::optional<CursorPicture> read(const std::string& file) {
  return readCursorFile({reinterpret_cast<const uint8_t*>(file.data()), file.size()});
}

TEST(CursorFile, GivesThePictureItsHotPixelAndWhatIsNotDrawn) {
  const auto picture = read(cursorFile({smallCursor()}));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 2);
  EXPECT_EQ(picture->height, 2);
  EXPECT_EQ(picture->hotX, 1);
  EXPECT_EQ(picture->hotY, 0);
  EXPECT_EQ(picture->pixels, SmallCursorPixels);
}

TEST(CursorFile, IsReadInEveryDepth) {
  const std::string open(4, '\0');
  const std::vector<uint32_t> table = {0x112233, 0x445566};
  struct Row {
    uint32_t bits;
    std::string colours;
  };
  for (const Row& row : {Row{1, std::string("\x40\0\0\0", 4)}, Row{4, std::string("\x01\0\0\0", 4)},
                         Row{8, std::string("\0\x01\0\0", 4)},
                         Row{24, std::string("\x33\x22\x11\x66\x55\x44\0\0", 8)},
                         Row{32, std::string("\x33\x22\x11\0\x66\x55\x44\0", 8)}}) {
    const auto picture =
        read(cursorFile({{2, 1, row.bits, 0, 0, row.bits <= 8 ? table : std::vector<uint32_t>{},
                          row.colours, open}}));
    ASSERT_TRUE(picture) << row.bits;
    EXPECT_EQ(picture->pixels, (std::vector<uint32_t>{0xFF112233, 0xFF445566})) << row.bits;
  }
}

TEST(CursorFile, Of32BitsSaysItselfHowOpaqueItIs) {
  const auto picture = read(cursorFile({{2,
                                         1,
                                         32,
                                         0,
                                         0,
                                         {},
                                         std::string("\x33\x22\x11\x80\x66\x55\x44\0", 8),
                                         std::string(4, '\xFF')}}));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->pixels, (std::vector<uint32_t>{0x80112233, 0x00445566}));
}

CursorImage plain(uint32_t side, uint8_t shade) {
  const size_t maskRow = (side + 31) / 32 * 4, row = (side + 3) / 4 * 4;
  return {side,
          side,
          8,
          0,
          0,
          std::vector<uint32_t>(256, shade * 0x010101u),
          std::string(row * side, '\0'),
          std::string(maskRow * side, '\0')};
}

TEST(CursorFile, OfSeveralImagesTheOneNearestToTheUsualSizeCounts) {
  EXPECT_EQ(read(cursorFile({plain(16, 1), plain(32, 2), plain(48, 3)}))->width, 32);
  EXPECT_EQ(read(cursorFile({plain(64, 1), plain(24, 2)}))->width, 24);
  const auto first = read(cursorFile({plain(32, 7), plain(32, 8)}));
  EXPECT_EQ(first->pixels[0], 0xFF070707u);
  CursorImage broken = plain(32, 2);
  broken.colours.clear();
  EXPECT_EQ(read(cursorFile({broken, plain(16, 1)}))->width, 16) << "the next best that is sound";
}

TEST(CursorFile, OfTheLargestSizeIsRead) {
  const auto picture = read(cursorFile({plain(256, 9)}));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 256);
}

TEST(CursorFile, ItsHotPixelIsOneOfItsPixels) {
  CursorImage image = smallCursor();
  image.hotX = 65535;
  image.hotY = 500;
  const auto picture = read(cursorFile({image}));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->hotX, 1);
  EXPECT_EQ(picture->hotY, 1);
}

TEST(CursorFile, CutAnywhereIsNoneOrTheWhole) {
  const std::string file = cursorFile({smallCursor()});
  for (size_t length = 0; length < file.size(); ++length)
    EXPECT_FALSE(read(file.substr(0, length))) << length;
}

TEST(CursorFile, OfWildFieldsIsNone) {
  const std::string file = cursorFile({smallCursor()});
  constexpr size_t Info = 22;
  struct Row {
    size_t at;
    uint32_t value;
  };
  for (const Row& row :
       {Row{Info, 12}, Row{Info, 0xFFFFFFFF}, Row{Info + 4, 0}, Row{Info + 4, 257},
        Row{Info + 4, 0x80000000}, Row{Info + 8, 1}, Row{Info + 8, 0xFFFFFFFC}, Row{Info + 8, 1026},
        Row{Info + 16, 1}, Row{18, 0xFFFFFFFF}, Row{18, 60}, Row{14, 39}, Row{14, 0}}) {
    std::string wild = file;
    wild.replace(row.at, 4, little(row.value, 4));
    EXPECT_FALSE(read(wild)) << row.at << " " << row.value;
  }
  for (const uint32_t bits : {0u, 2u, 16u, 33u}) {
    std::string wild = file;
    wild.replace(Info + 14, 2, little(bits, 2));
    EXPECT_FALSE(read(wild)) << bits;
  }
  std::string icon = file;
  icon[2] = 1;
  EXPECT_FALSE(read(icon));
  EXPECT_FALSE(read(cursorFile({})));
}

TEST(CursorFile, IndicesBehindItsTableAreBlack) {
  CursorImage image = smallCursor();
  image.table.resize(2);
  const auto picture = read(cursorFile({image}));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->pixels[3], 0xFF000000u);
}

// --- The cursor ---

class CursorTest : public ::testing::Test {
 protected:
  CursorTest() {
    platform.writeFile(platform.game() / "res" / "300.cur", cursorFile({smallCursor()}));
    platform.writeFile(platform.game() / "res" / "hand.cur", cursorFile({plain(16, 1)}));
    platform.writeFile(platform.game() / "dat" / "hand.cur", cursorFile({plain(24, 2)}));
  }
  void expectArrow() {
    EXPECT_EQ(cursor.look(), PointerLook{});
    EXPECT_FALSE(cursor.fromFile());
    EXPECT_TRUE(platform.dialogs.shown.empty());
  }
  TestPlatform platform;
  QVCursor cursor;
};

TEST_F(CursorTest, IsTheArrowAtFirst) {
  expectArrow();
  EXPECT_EQ(cursor.look().system, 32512);
}

TEST_F(CursorTest, OfTheSystemsNumbersIsTheSystems) {
  for (const int32_t number : {32512, 32513, 32514, 32515, 32516, 32640, 32641, 32642, 32643, 32644,
                               32645, 32646, 32648, 32650}) {
    cursor.loadByNumber(number);
    EXPECT_EQ(cursor.look(), (PointerLook{number, std::nullopt}));
  }
  // Between them lie numbers that are none.
  for (const int32_t number : {0, 32517, 32639, 32647, 32649, 32651}) {
    cursor.loadByNumber(number);
    expectArrow();
  }
}

TEST_F(CursorTest, OfAnyOtherNumberIsAResource) {
  cursor.loadByNumber(300);
  ASSERT_TRUE(cursor.look().picture);
  EXPECT_EQ(cursor.look().picture->pixels, SmallCursorPixels);
  EXPECT_FALSE(cursor.fromFile());
  cursor.loadByNumber(301);
  expectArrow();
}

TEST_F(CursorTest, ByNameIsAResourceBeforeItIsAFile) {
  cursor.loadByName("hand");
  ASSERT_TRUE(cursor.look().picture);
  EXPECT_EQ(cursor.look().picture->width, 16);
  EXPECT_FALSE(cursor.fromFile());
  cursor.loadByName("dat\\hand.cur");
  ASSERT_TRUE(cursor.look().picture);
  EXPECT_EQ(cursor.look().picture->width, 24);
  EXPECT_TRUE(cursor.fromFile());
  cursor.loadByName("300");
  EXPECT_FALSE(cursor.fromFile());
}

TEST_F(CursorTest, ThatCannotBeHadIsTheArrowWithoutAWord) {
  for (const char* name :
       {static_cast<const char*>(nullptr), "", "none", "dat\\none.cur", "..\\x"}) {
    cursor.loadByNumber(300);
    cursor.loadByName(name);
    expectArrow();
  }
  platform.writeFile(platform.game() / "dat" / "text.cur", "no cursor");
  platform.writeFile(platform.game() / "dat" / "empty.cur", "");
  for (const char* name : {"dat\\text.cur", "dat\\empty.cur", "dat"}) {
    cursor.loadByName(name);
    expectArrow();
  }
}

}  // namespace
}  // namespace qv::testing
