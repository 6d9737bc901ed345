#include "graphics/sld_reader.h"

#include <gtest/gtest.h>

#include "tests/support/picture_bytes.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using namespace qv::testing;

class SldReaderTest : public ::testing::Test {
 protected:
  PackedPicture decoded(std::string_view bytes, int64_t position = 0) {
    platform_.writeFile(platform_.game() / "picture.sld", bytes);
    file_.openName("picture.sld", OpenExisting, GenericRead, ShareRead, AttributeNormal);
    file_.seek(position, SeekFrom::Start);
    reader_.attach(file_);
    PackedPicture picture = reader_.decode();
    EXPECT_EQ(file_.position(), position);
    return picture;
  }
  TestPlatform platform_;
  QVFile file_;
  SldReader reader_;
};

TEST_F(SldReaderTest, KeepsTheRowsAsTheyAreStored) {
  const PackedPicture picture = decoded(sldFile(5, 2, "", literals("abcde...ABCDE---")));
  EXPECT_EQ(textOf(picture.pixels()), "abcde...ABCDE---");
  EXPECT_EQ(picture.block.size(), 1064u + 16);
}

TEST_F(SldReaderTest, CopiesThePaletteWithItsFourthBytes) {
  const PackedPicture picture = decoded(sldFile(4, 1, "\1\2\3\4", literals("abcd")));
  EXPECT_EQ(textOf(picture.head().subspan(40, 4)), "\1\2\3\4");
  EXPECT_EQ(reader_.palette()[0], 0x04030201u);
}

TEST_F(SldReaderTest, HoldsAGreyRampWithTheStaticColoursUntilAFileIsRead) {
  EXPECT_EQ(reader_.palette()[1], 0x800000u);
  EXPECT_EQ(reader_.palette()[9], 0xA6CAF0u);
  EXPECT_EQ(reader_.palette()[10], 0x0A0A0Au);
  EXPECT_EQ(reader_.palette()[245], 0xF5F5F5u);
  EXPECT_EQ(reader_.palette()[246], 0xFFFBF0u);
  EXPECT_FALSE(reader_.isValid());
}

TEST_F(SldReaderTest, ReadsFromItsEntryPositionAndReturnsThere) {
  EXPECT_EQ(textOf(decoded("front" + sldFile(4, 1, "", literals("abcd")), 5).pixels()), "abcd");
}

TEST_F(SldReaderTest, EndsNormallyWhereverTheStreamEnds) {
  const std::string stream = bytesOf({0x05, 'a', 0xEE, 0xF1, 'b', 0x10, 0x20});
  for (size_t size = 0; size <= stream.size(); ++size)
    EXPECT_EQ(decoded(sldFile(8, 2, "", stream.substr(0, size))).pixels().size(), 16u) << size;
}

TEST_F(SldReaderTest, ReadsZerosFromTheWholeOfAFreshRing) {
  // The last eighteen places too, of which 4095 is one; it is written only later.
  const PackedPicture picture = decoded(sldFile(4, 1, "", bytesOf({0x02, 0xFF, 0xF0, 'x'})));
  EXPECT_EQ(textOf(picture.pixels()), std::string("\0\0\0x", 4));
}

TEST_F(SldReaderTest, RefusesWhatIsNoPicture) {
  EXPECT_TRUE(decoded("SLD!" + std::string(2000, 'x')).empty());
  EXPECT_TRUE(decoded(sldFile(4, 1, "", "").substr(0, 1039)).empty());
  EXPECT_TRUE(decoded(sldFile(0, 4, "", "")).empty());
  EXPECT_TRUE(decoded(sldFile(4, 0, "", "")).empty());
  EXPECT_TRUE(decoded(sldFile(4, 0xFFFFFFFF, "", "")).empty());
  EXPECT_TRUE(decoded(sldFile(0x10000, 0x10000, "", "")).empty());
  EXPECT_TRUE(decoded(sldFile(0x7FFFFFFF, 1, "", "")).empty());
  EXPECT_TRUE(decoded(sldFile(8001, 8000, "", "")).empty());
  EXPECT_TRUE(decoded("").empty());
}

TEST_F(SldReaderTest, FromMemoryGivesTheSame) {
  const std::string file = sldFile(5, 2, "\1\2\3\4", literals("abcde...ABCDE---"));
  const PackedPicture fromFile = decoded(file);
  EXPECT_EQ(textOf(SldReader().decodeMemory(spanOf(file)).block.span()),
            textOf(fromFile.block.span()));
  for (size_t size = 0; size < 1040; size += 13)
    EXPECT_TRUE(SldReader().decodeMemory(spanOf(file).first(size)).empty()) << size;
}

}  // namespace
}  // namespace qv
