// Map files, whole and damaged.

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "input/click_map.h"
#include "tests/support/picture_bytes.h"
#include "tests/unit/input/input_ground.h"

namespace qv::testing {
namespace {

constexpr size_t SignatureEnd = 15, OriginEnd = 23, TagEnd = 38, PixelsAt = 1102;

class MapFile : public ::testing::Test {
 protected:
  std::string written(QVClickMap& map) {
    QVFile file;
    file.openName("out.clm", CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
    map.write(file);
    file.close();
    return platform.readFile(platform.player() / "out.clm");
  }
  /// Gives the file's position behind the load.
  int64_t load(QVClickMap& map, const std::string& bytes, int64_t position = 0) {
    platform.writeFile(platform.player() / "in.clm", bytes);
    QVFile file;
    file.openName("in.clm", OpenExisting, GenericRead, ShareRead, AttributeNormal);
    file.seek(position, SeekFrom::Start);
    map.loadFromFile(file, 1, nullptr);
    return file.position();
  }
  std::string good() {
    QVClickMap map;
    map.create(5, 3, 7, 0, nullptr);
    map.addRect(0, 0, 1, 1, 200);
    map.setOrigin(-2, 70'000);
    return written(map);
  }
  /// The map that a load must leave as it was.
  void expectUntouched(const std::string& bytes, const char* what) {
    QVClickMap map;
    map.create(2, 2, 9, 0, nullptr);
    map.setOrigin(1, 1);
    load(map, bytes);
    EXPECT_EQ(map.width(), 2) << what;
    EXPECT_EQ(map.regionAt(1, 1), 9) << what;
    EXPECT_EQ(map.regionAt(2, 2), 9) << what;
    EXPECT_EQ(map.originX(), 1) << what;
  }

  TestPlatform platform;
};

TEST_F(MapFile, HasItsFieldsInTheirPlaces) {
  const std::string bytes = good();
  ASSERT_EQ(bytes.size(), PixelsAt + size_t{3} * 8);
  EXPECT_EQ(bytes.substr(0, SignatureEnd), little(11, 4) + std::string("QVClickMap", 11));
  EXPECT_EQ(bytes.substr(SignatureEnd, 8),
            little(static_cast<uint32_t>(-2), 4) + little(70'000, 4));
  EXPECT_EQ(bytes.substr(OriginEnd, 15), little(11, 4) + std::string("QVVSurface", 11));
  EXPECT_EQ(bytes.substr(TagEnd, 12), little(40, 4) + little(5, 4) + little(3, 4));
  // Bottom row first.
  EXPECT_EQ(static_cast<uint8_t>(bytes[PixelsAt]), 7);
  EXPECT_EQ(static_cast<uint8_t>(bytes[PixelsAt + 16]), 200);
}

TEST_F(MapFile, ComesBackAsItWasWritten) {
  QVClickMap map;
  EXPECT_EQ(load(map, good()), static_cast<int64_t>(good().size()));
  EXPECT_EQ(map.width(), 5);
  EXPECT_EQ(map.height(), 3);
  EXPECT_EQ(map.originX(), -2);
  EXPECT_EQ(map.originY(), 70'000);
  EXPECT_EQ(map.regionAt(-2, 70'000), 200);
  EXPECT_EQ(map.regionAt(2, 70'002), 7);
  EXPECT_EQ(map.hoverEnabled(), 1);
  // The bitmap's head then tells the size of its pixels too.
  EXPECT_EQ(written(map).substr(TagEnd + 40), good().substr(TagEnd + 40));
}

TEST_F(MapFile, IsReadWhereTheFileStands) {
  QVClickMap map;
  load(map, "junk" + good() + "more", 4);
  EXPECT_EQ(map.width(), 5);
}

TEST_F(MapFile, AForeignSignatureLeavesMapAndPosition) {
  std::string longer = good(), other = good(), unended = good();
  longer[0] = 12;
  other[6] = 'x';
  unended[14] = '!';
  for (const std::string& bytes : {longer, other, unended, std::string("QVClickMap"), std::string(),
                                   std::string("\x0b\0\0", 3)}) {
    QVClickMap map;
    map.create(2, 2, 9, 0, nullptr);
    EXPECT_EQ(load(map, "ab" + bytes, 2), 2);
    EXPECT_EQ(map.width(), 2);
    EXPECT_EQ(map.regionAt(1, 1), 9);
  }
}

TEST_F(MapFile, OneThatIsCutOffAnywhereLeavesTheMap) {
  const std::string bytes = good();
  for (size_t length = 0; length < bytes.size(); length += length < 100 ? 1 : 37)
    expectUntouched(bytes.substr(0, length), std::to_string(length).c_str());
  expectUntouched(bytes.substr(0, bytes.size() - 1), "the last byte");
}

TEST_F(MapFile, OneThatAnnouncesMoreThanItHoldsLeavesTheMap) {
  const auto with = [this](size_t at, uint32_t value) {
    std::string bytes = good();
    bytes.replace(at, 4, little(value, 4));
    return bytes;
  };
  expectUntouched(with(TagEnd + 4, 0x7FFFFFFF), "wide");
  expectUntouched(with(TagEnd + 8, 0x7FFFFFFF), "high");
  expectUntouched(with(TagEnd + 4, 0xFFFFFFFF), "negative");
  expectUntouched(with(TagEnd, 12), "a short header");
  expectUntouched(with(TagEnd + 12, 0x00200001), "true colour");
  expectUntouched(with(OriginEnd, 0xFFFFFFFF), "an endless tag");
}

TEST_F(MapFile, ABitmapOfManyColoursGivesNoRegions) {
  // A head of 24 bits behind the bitmap's own.
  const std::string bitmap = "BM" + little(54 + 8, 4) + little(0, 4) + little(54, 4) +
                             little(40, 4) + little(2, 4) + little(1, 4) + little(0x00180001, 4) +
                             std::string(24, '\0') + std::string(8, '\x11');
  expectUntouched(bitmap, "24 bits");
}

TEST_F(MapFile, AClosedFileIsPassedOver) {
  QVFile closed;
  QVClickMap map;
  map.create(2, 2, 9, 0, nullptr);
  map.write(closed);
  map.read(closed);
  map.loadFromFile(closed, 1, nullptr);
  EXPECT_EQ(map.width(), 2);
  EXPECT_EQ(map.hoverEnabled(), 1);
}

TEST_F(MapFile, IsSavedAndLoadedByItsPath) {
  QVClickMap map, again;
  map.create(5, 3, 7, 0, nullptr);
  map.setOrigin(4, 4);
  map.saveAs("C:\\a.clm");
  again.loadFrom("C:\\a.clm");
  EXPECT_EQ(again.regionAt(8, 6), 7);
  map.saveAs(nullptr);
  again.loadFrom(nullptr);
  EXPECT_EQ(again.width(), 5);
  EXPECT_THROW(again.loadFrom("C:\\none.clm"), CannotOpenException);
}

}  // namespace
}  // namespace qv::testing
