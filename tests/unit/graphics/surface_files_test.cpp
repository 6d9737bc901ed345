#include <algorithm>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/heap.h"
#include "foundation/path_name.h"
#include "tests/support/picture_bytes.h"
#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

using testing::bitmapOf;
using testing::Lines;
using testing::linesOf;
using testing::put;
using testing::putPattern;

class SurfaceFiles : public testing::SurfaceTest {
 protected:
  template <class Write>
  std::string written(Write write) {
    QVFile file;
    file.openName("written.bin", CreateAlways, GenericRead | GenericWrite, ShareRead,
                  AttributeNormal);
    write(file);
    file.close();
    return platform.readFile(platform.player() / "written.bin");
  }
  std::string tagged(QVVSurface& surface) {
    return written([&](QVFile& file) { surface.saveTagged(file); });
  }
  std::string tagged(QVVSurface24& surface) {
    return written([&](QVFile& file) { surface.saveTagged(file); });
  }
  /// Gives the file's position behind the read.
  template <class Any>
  int64_t load(Any& surface, const std::string& bytes) {
    platform.writeFile(platform.player() / "input.bin", bytes);
    QVFile file;
    file.openName("input.bin", OpenExisting, GenericRead, ShareRead, AttributeNormal);
    surface.loadTagged(file);
    return file.position();
  }
  static BitmapInfoHeader headerIn(const std::string& bytes, size_t at) {
    BitmapInfoHeader header;
    std::memcpy(&header, bytes.data() + at, sizeof header);
    return header;
  }
};

// From bitmaps.

TEST_F(SurfaceFiles, ABitmapOf8BitsBringsSizePixelsAndColours) {
  QVVSurface surface;
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface.assignDib(bitmapOf({.width = 3,
                              .height = 2,
                              .colours = {0x05111111, 0x222222},
                              .bits = {'d', 'e', 'f', '?', 'a', 'b', 'c', '?'}}));
  EXPECT_EQ(linesOf(surface), (Lines{"abc", "def"}));
  // What the bitmap has no colours for is as after `create`.
  ColourTable expected = defaultColours();
  expected[0] = 0x05111111;
  expected[1] = 0x222222;
  EXPECT_EQ(surface.storedColours(), expected);
  EXPECT_EQ(surface.shownColours(), expected);
}

TEST_F(SurfaceFiles, ABitmapWithMasksBringsAWordOfColoursMoreThanItTells) {
  // The table begins one mask into the three, so two of them are its first entries.
  const std::string block = testing::infoHeader(4, 1, 8, 3, 4, 3) + "RRRRGGGGBBBB" +
                            "111122223333" + std::string("\0\1\2\3", 4);
  QVDib dib;
  dib.loadPacked(testing::spanOf(block));
  ColourTable expected = defaultColours();
  std::memcpy(expected.data(), "GGGGBBBB11112222", 16);
  QVVSurface surface, other;
  surface.assignDib(dib);
  EXPECT_EQ(surface.storedColours(), expected);
  EXPECT_EQ(surface.shownColours(), expected);
  other.copyPaletteFromDib(dib);
  EXPECT_EQ(other.storedColours(), expected);
  QVVSurface24 wide;
  wide.assignDib(dib);
  for (int32_t x = 0; x < 4; ++x)
    EXPECT_EQ(wide.pixel(x, 0), expected[static_cast<size_t>(x)] & 0xFFFFFF) << x;
}

TEST_F(SurfaceFiles, ABitmapWithMasksAndAFullTableEndsWithTheSurfacesTable) {
  std::string table;
  for (uint32_t entry = 0; entry < 256; ++entry)
    table += testing::little(entry * 0x010203, 4);
  const std::string block =
      testing::infoHeader(4, 1, 8, 256, 4, 3) + "RRRRGGGGBBBB" + table + "abcd";
  QVDib dib;
  dib.loadPacked(testing::spanOf(block));
  QVVSurface surface;
  surface.assignDib(dib);
  const ColourTable colours = surface.storedColours();
  EXPECT_EQ(colours[1], 0x42424242u);
  EXPECT_EQ(colours[255], 253u * 0x010203);
}

TEST_F(SurfaceFiles, OtherDepthsLeaveASurfaceOf8BitsAlone) {
  QVVSurface surface;
  putPattern(surface, 5, 5);
  const Lines before = linesOf(surface);
  for (const uint16_t bitCount :
       {uint16_t{1}, uint16_t{4}, uint16_t{16}, uint16_t{24}, uint16_t{32}}) {
    const QVDib dib = bitmapOf({.bitCount = bitCount, .bits = std::string(4, '\1')});
    surface.assignDib(dib);
    surface.blitDib(dib, KeyNone);
  }
  surface.assignDib(QVDib());
  surface.blitDib(QVDib(), KeyNone);
  EXPECT_EQ(linesOf(surface), before);
}

TEST_F(SurfaceFiles, ABitmapWithoutPixelsMakesNoExtent) {
  QVVSurface surface;
  QVVSurface24 surface24;
  const QVDib dib = bitmapOf({.width = 3, .height = 2, .colours = {1}});
  surface.assignDib(dib);
  surface24.assignDib(dib);
  ASSERT_TRUE(dib.bits().empty());
  EXPECT_EQ(surface.width() * surface.height(), 0);
  EXPECT_EQ(surface24.width() * surface24.height(), 0);
}

TEST_F(SurfaceFiles, ABitmapDrawnAtTheTopLeftHonoursItsKeyAndLeavesTheColours) {
  QVVSurface surface;
  put(surface, {"....", "....", "...."});
  const QVDib dib = bitmapOf({.width = 2,
                              .height = 2,
                              .colours = {0x111111},
                              .bits = {'b', 'a', '?', '?', 'a', 'b', '?', '?'}});
  surface.blitDib(dib, KeyTopLeft);
  EXPECT_EQ(linesOf(surface), (Lines{".b..", "b...", "...."}));
  surface.blitDib(dib, KeyNone);
  EXPECT_EQ(linesOf(surface), (Lines{"ab..", "ba..", "...."}));
  EXPECT_EQ(surface.storedColours(), defaultColours());
}

TEST_F(SurfaceFiles, BitmapsOf8And24And32BitsBecome32) {
  QVVSurface24 surface;
  const auto row = [&](const QVDib& dib) {
    surface.assignDib(dib);
    std::vector<uint32_t> pixels;
    for (int32_t y = 0; y < surface.height(); ++y)
      for (int32_t x = 0; x < surface.width(); ++x)
        pixels.push_back(surface.pixel(x, y));
    return pixels;
  };
  EXPECT_EQ(row(bitmapOf({.width = 3, .colours = {0x05111111, 0x222222}, .bits = {0, 1, 2, 0}})),
            (std::vector<uint32_t>{0x111111, 0x222222, 0}));
  EXPECT_EQ(
      row(bitmapOf({.width = 1, .height = 2, .bitCount = 24, .bits = {4, 5, 6, 0, 1, 2, 3, 0}})),
      (std::vector<uint32_t>{0x030201, 0x060504}));
  EXPECT_EQ(row(bitmapOf({.width = 2, .bitCount = 32, .bits = {1, 2, 3, 9, 4, 5, 6, 9}})),
            (std::vector<uint32_t>{0x030201, 0x060504}));
  for (const uint16_t bitCount : {uint16_t{1}, uint16_t{4}, uint16_t{16}})
    EXPECT_EQ(row(bitmapOf({.bitCount = bitCount, .bits = std::string(4, '\1')})),
              (std::vector<uint32_t>{0x030201, 0x060504}));
}

TEST_F(SurfaceFiles, BitmapsAreDrawnOnto32BitsWithTheKeyFor8Alone) {
  QVVSurface24 surface;
  surface.fill(7);
  surface.blitDib(bitmapOf({.width = 3, .colours = {0x111111, 0x222222}, .bits = {0, 1, 0, 0}}),
                  KeyTopLeft);
  EXPECT_EQ(surface.pixel(0, 0), 7u);
  EXPECT_EQ(surface.pixel(1, 0), 0x222222u);
  surface.blitDib(bitmapOf({.bitCount = 24, .bits = {1, 2, 3, 0}}), KeyTopLeft);
  EXPECT_EQ(surface.pixel(0, 0), 0x030201u);
  EXPECT_EQ(surface.width(), 16);
}

TEST_F(SurfaceFiles, BitmapsWithTooFewPixelsFillWhatTheyHave) {
  for (const size_t bytes : {size_t{1}, size_t{4}, size_t{6}, size_t{7}}) {
    QVVSurface surface;
    QVVSurface24 surface24;
    surface.fill(1);
    const QVDib dib = bitmapOf({.width = 3,
                                .height = 4,
                                .colours = std::vector<uint32_t>('x' + 1, 0x0ABCDE),
                                .bits = std::string(bytes, 'x'),
                                .more = {.sizeImage = 16}});
    ASSERT_EQ(dib.bits().size(), bytes);
    surface.assignDib(dib);
    surface24.assignDib(dib);
    std::string all;
    for (const std::string& line : linesOf(surface))
      all = line + all;
    // Of each row of four bytes three are pixels, from the bottom row on.
    const size_t shown = bytes / 4 * 3 + std::min<size_t>(bytes % 4, 3);
    EXPECT_EQ(all, std::string(shown, 'x') + std::string(12 - shown, '\0')) << bytes;
    EXPECT_EQ(surface24.pixel(0, 3), 0x0ABCDEu);
    EXPECT_EQ(surface24.pixel(2, 0), 0u);
  }
}

// Bitmap files.

TEST_F(SurfaceFiles, BitmapFilesComeBackByAnyRoad) {
  QVVSurface surface;
  putPattern(surface, 37, 21);
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface.saveBmpByName("picture.xyz");
  const auto expectSame = [&](QVVSurface& other) {
    EXPECT_EQ(linesOf(other), linesOf(surface));
    EXPECT_EQ(other.storedColours(), testing::someColours());
  };
  QVVSurface byName, byFile, byPath;
  byName.loadByName("picture.bmp");
  expectSame(byName);
  byFile.loadFromFile("picture.bmp");
  expectSame(byFile);
  byPath.loadFromPathName(QVPathName("picture.bmp"));
  expectSame(byPath);
}

TEST_F(SurfaceFiles, NamesOfBitmapFilesGetTheirExtension) {
  QVVSurface surface;
  for (const auto& [given, made] :
       {std::pair("plain", "plain.bmp"), {"pic.mcg", "pic.bmp"}, {"done.bmp", "done.bmp"}}) {
    surface.saveBmpByName(given);
    EXPECT_EQ(platform.readFile(platform.player() / made).size(), 14u + 1064 + 256) << given;
    std::filesystem::remove(platform.player() / made);
  }
}

TEST_F(SurfaceFiles, TheStoredColoursAreWrittenNotTheShownOnes) {
  QVVSurface surface;
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface.fadePalette(testing::someColours(99), 1, 1);
  const std::string bytes = written([&](QVFile& file) { surface.writeBmp(file); });
  ColourTable table;
  std::memcpy(table.data(), bytes.data() + 54, sizeof table);
  EXPECT_EQ(table, testing::someColours());
}

TEST_F(SurfaceFiles, ABitmapsHeaderGoesOnIntoFilesAsFarAsItIsTrue) {
  QVVSurface surface;
  BitmapInfoHeader more;
  more.xPelsPerMeter = 2835;
  more.yPelsPerMeter = 2836;
  more.coloursImportant = 12;
  more.sizeImage = 8;
  surface.assignDib(bitmapOf(
      {.width = 3, .height = 2, .colours = {1, 2}, .bits = std::string(8, 'x'), .more = more}));
  BitmapInfoHeader header = headerIn(written([&](QVFile& file) { surface.writeBmp(file); }), 14);
  EXPECT_EQ(header.size, 40u);
  EXPECT_EQ(header.width, 3);
  EXPECT_EQ(header.height, 2);
  EXPECT_EQ(header.sizeImage, 8u);
  EXPECT_EQ(header.xPelsPerMeter, 2835);
  EXPECT_EQ(header.yPelsPerMeter, 2836);
  EXPECT_EQ(header.coloursImportant, 12u);
  EXPECT_EQ(header.coloursUsed, 0u);
  surface.create(3, 2);
  header = headerIn(written([&](QVFile& file) { surface.writeBmp(file); }), 14);
  EXPECT_EQ(header.xPelsPerMeter, 0);
  EXPECT_EQ(header.sizeImage, 0u);
}

TEST_F(SurfaceFiles, PaddingIsZeroWhateverTheBitmapHad) {
  QVVSurface surface;
  surface.assignDib(
      bitmapOf({.width = 3, .height = 2, .bits = {'a', 'b', 'c', '?', 'd', 'e', 'f', '?'}}));
  surface.fill('f');
  const std::string bytes = written([&](QVFile& file) { surface.writeBmp(file); });
  EXPECT_EQ(bytes.substr(14 + 1064), std::string("fff\0fff\0", 8));
}

TEST_F(SurfaceFiles, MissingPicturesRaise) {
  QVVSurface surface;
  QVVSurface24 surface24;
  EXPECT_THROW(surface.loadByName("none.bmp"), CannotOpenException);
  EXPECT_THROW(surface24.loadByName("none.bmp"), CannotOpenException);
  EXPECT_EQ(surface.width(), 16);
}

TEST_F(SurfaceFiles, PicturesAreLoadedFromTheGamesResourcesByNumber) {
  QVVSurface picture, surface;
  QVVSurface24 surface24;
  putPattern(picture, 7, 5);
  platform.writeFile(platform.game() / "res" / "101.bmp",
                     written([&](QVFile& file) { picture.writeBmp(file); }));
  surface.loadResource(101);
  EXPECT_EQ(linesOf(surface), linesOf(picture));
  surface24.loadResource(101);
  EXPECT_EQ(surface24.width(), 7);
  // A file of that name elsewhere is none of them.
  platform.writeFile(platform.player() / "102",
                     written([&](QVFile& file) { picture.writeBmp(file); }));
  QVVSurface other;
  other.loadResource(102);
  EXPECT_EQ(other.width(), 16);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(SurfaceFiles, AnEmptyNameAsksThePlayerForAPicture) {
  QVVSurface picture, surface;
  putPattern(picture, 7, 5);
  picture.saveBmpByName("chosen.bmp");
  surface.loadFromFile("");
  EXPECT_EQ(platform.dialogs.asked.size(), 1u);
  EXPECT_EQ(surface.width(), 16);  // refused
  platform.dialogs.chosenPaths.push_back("C:\\chosen.bmp");
  surface.loadFromFile("");
  EXPECT_EQ(linesOf(surface), linesOf(picture));
}

TEST_F(SurfaceFiles, ClosedFilesArePassedOver) {
  QVFile closed;
  QVVSurface surface;
  QVVSurface24 surface24;
  surface.writeBmp(closed);
  surface.saveTagged(closed);
  surface.loadTagged(closed);
  surface24.writeBmp(closed);
  surface24.saveTagged(closed);
  surface24.loadTagged(closed);
  EXPECT_EQ(surface.width(), 16);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

// Tagged records.

TEST_F(SurfaceFiles, TaggedRecordsComeBack) {
  for (const auto& [width, height] : {std::pair(1, 1), {37, 21}, {640, 3}}) {
    QVVSurface surface, again;
    putPattern(surface, width, height);
    surface.setColoursRange(testing::someColours(), 0, 256);
    const std::string bytes = tagged(surface);
    EXPECT_EQ(load(again, bytes + "behind"), static_cast<int64_t>(bytes.size()));
    EXPECT_EQ(linesOf(again), linesOf(surface));
    EXPECT_EQ(again.storedColours(), testing::someColours());
    EXPECT_EQ(tagged(again).size(), bytes.size());
  }
}

TEST_F(SurfaceFiles, WideTaggedRecordsComeBackWholeWithoutASizeOfTheImage) {
  QVVSurface source;
  QVVSurface24 surface, again;
  putPattern(source, 13, 9);
  surface.create(13, 9);
  source.blitTo32(surface, 0, 0, 0, 0, 13, 9, KeyNone);
  const std::string bytes = tagged(surface);
  EXPECT_EQ(headerIn(bytes, 4 + 13).sizeImage, 0u);
  EXPECT_EQ(load(again, bytes), static_cast<int64_t>(bytes.size()));
  ASSERT_EQ(again.width(), 13);
  ASSERT_EQ(again.height(), 9);
  for (int32_t y = 0; y < 9; ++y)
    for (int32_t x = 0; x < 13; ++x)
      EXPECT_EQ(again.pixel(x, y), surface.pixel(x, y)) << x << " " << y;
  EXPECT_EQ(headerIn(tagged(again), 4 + 13).sizeImage, 13u * 9 * 4);
}

TEST_F(SurfaceFiles, TaggedRecordsOfNoExtentComeBackToo) {
  for (const auto& [width, height] : {std::pair(0, 0), {5, 0}, {0, 7}}) {
    QVVSurface surface, again;
    QVVSurface24 wide, wideAgain;
    surface.create(width, height);
    surface.setColoursRange(testing::someColours(), 0, 256);
    wide.create(width, height);
    putPattern(again, 9, 9);
    const std::string bytes = tagged(surface), wideBytes = tagged(wide);
    EXPECT_EQ(load(again, bytes + "behind"), static_cast<int64_t>(bytes.size()));
    EXPECT_EQ(again.width(), width);
    EXPECT_EQ(again.height(), height);
    EXPECT_EQ(again.storedColours(), testing::someColours());
    EXPECT_EQ(again.shownColours(), testing::someColours());
    EXPECT_EQ(load(wideAgain, wideBytes), static_cast<int64_t>(wideBytes.size()));
    EXPECT_EQ(wideAgain.width(), width);
    EXPECT_EQ(wideAgain.height(), height);
  }
}

TEST_F(SurfaceFiles, RecordsSayWhenThereIsNoMemory) {
  QVVSurface surface;
  QVVSurface24 wide;
  putPattern(surface, 40, 30);
  wide.create(40, 30);
  const std::string bytes = tagged(surface), wideBytes = tagged(wide);
  const auto expectNone = [&](const auto& attempt) {
    // The record alone is refused, whose size no other block has.
    QVHeap::setPermit([](size_t size) { return size != 1064 + 1200 && size != 40 + 4800; });
    try {
      attempt();
      ADD_FAILURE() << "nothing was thrown";
    } catch (const NotEnoughMemoryException& exception) {
      EXPECT_STREQ(exception.title(), "QVHeap - malloc");
    }
    QVHeap::setPermit(nullptr);
  };
  expectNone([&] { tagged(surface); });
  expectNone([&] { tagged(wide); });
  expectNone([&] { written([&](QVFile& file) { surface.writeBmp(file); }); });
  expectNone([&] { written([&](QVFile& file) { wide.writeBmp(file); }); });
  expectNone([&] { load(surface, bytes); });
  expectNone([&] { load(wide, wideBytes); });
}

TEST_F(SurfaceFiles, AForeignTagLeavesTheSurfaceAndStandsBehindTheTag) {
  QVVSurface surface;
  QVVSurface24 surface24;
  putPattern(surface, 5, 5);
  const Lines before = linesOf(surface);
  const std::string bytes = tagged(surface), bytes24 = tagged(surface24);
  EXPECT_EQ(load(surface, bytes24), 4 + 13);
  EXPECT_EQ(load(surface24, bytes), 4 + 11);
  EXPECT_EQ(linesOf(surface), before);
  EXPECT_EQ(surface24.width(), 16);
}

TEST_F(SurfaceFiles, ARecordThatIsCutLeavesTheSurface) {
  QVVSurface source, surface;
  QVVSurface24 surface24;
  putPattern(source, 3, 2);
  putPattern(surface, 5, 5);
  surface24.create(2, 2);
  const std::string bytes = tagged(source), bytes24 = tagged(surface24);
  surface24.create(9, 9);
  const Lines before = linesOf(surface);
  for (size_t size = 0; size < bytes.size(); size += size < 80 ? 1 : 13) {
    load(surface, bytes.substr(0, size));
    EXPECT_EQ(linesOf(surface), before) << size;
  }
  for (size_t size = 0; size < bytes24.size(); ++size) {
    load(surface24, bytes24.substr(0, size));
    EXPECT_EQ(surface24.width(), 9) << size;
  }
}

TEST_F(SurfaceFiles, ARecordOfAnotherKindBehindTheRightTagLeavesTheSurface) {
  QVVSurface source, surface;
  putPattern(source, 3, 2);
  putPattern(surface, 5, 5);
  const Lines before = linesOf(surface);
  const std::string bytes = tagged(source);
  constexpr size_t Header = 4 + 11;
  struct Change {
    size_t at;
    uint32_t value;
  };
  for (const Change change : {Change{0, 12},
                              {0, 0xFFFFFFFF},
                              {4, 0xFFFFFFFF},
                              {8, 0xFFFFFFFE},
                              {4, 0x7FFFFFFF},
                              {8, 0x7FFFFFFF},
                              {12, 0x200001},
                              {16, 1},
                              {16, 3}}) {
    std::string changed = bytes;
    std::memcpy(changed.data() + Header + change.at, &change.value, sizeof change.value);
    EXPECT_EQ(load(surface, changed), static_cast<int64_t>(Header)) << change.at;
    EXPECT_EQ(linesOf(surface), before) << change.at;
  }
  // A side beyond the limit is none of a surface without extent either.
  for (const auto& [wrong, none] : {std::pair(size_t{4}, size_t{8}), {8, 4}}) {
    std::string changed = bytes;
    changed.replace(Header + wrong, 4, testing::little(0x7FFFFFFF, 4));
    changed.replace(Header + none, 4, testing::little(0, 4));
    EXPECT_EQ(load(surface, changed), static_cast<int64_t>(Header)) << wrong;
    EXPECT_EQ(linesOf(surface), before) << wrong;
  }
}

TEST_F(SurfaceFiles, ARecordsOwnCountsDoNotMoveItsPixels) {
  QVVSurface source, surface;
  putPattern(source, 3, 2);
  std::string bytes = tagged(source);
  constexpr size_t SizeImageAt = 4 + 11 + 20, ColoursUsedAt = 4 + 11 + 32;
  bytes[SizeImageAt] = 1;
  bytes[ColoursUsedAt] = 16;
  load(surface, bytes);
  EXPECT_EQ(linesOf(surface), linesOf(source));
}

}  // namespace
}  // namespace qv
