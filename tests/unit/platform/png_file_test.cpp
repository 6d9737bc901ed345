#include "platform/display/png_file.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/support/test_platform.h"

namespace qv {
namespace {

Picture somePicture(int width, int height) {
  Picture picture{width, height, {}};
  for (uint32_t at = 0; at < static_cast<uint32_t>(width * height); ++at)
    picture.pixels.push_back(at * 2654435761u & 0xFFFFFF);
  return picture;
}

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

size_t filesIn(const std::filesystem::path& folder) {
  return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(PngFile, ReadsWhatItHasWritten) {
  testing::TemporaryFolder folder;
  const Picture picture = somePicture(37, 11);
  ASSERT_TRUE(writePng(picture, folder.path() / "a.png"));
  const std::optional<Picture> read = readPng(folder.path() / "a.png");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->width, 37);
  EXPECT_EQ(read->height, 11);
  EXPECT_EQ(read->pixels, picture.pixels);
  EXPECT_EQ(filesIn(folder.path()), 1u);
}

TEST(PngFile, WritesAFrameAndIgnoresItsHighestByte) {
  testing::TemporaryFolder folder;
  Frame frame(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0xFF102030);
  ASSERT_TRUE(writePng(frame, folder.path() / "a.png"));
  const std::optional<Picture> read = readPng(folder.path() / "a.png");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->width, ScreenWidth);
  EXPECT_EQ(read->pixels.back(), 0x102030u);
}

TEST(PngFile, LeavesWhatWasThereWhenItFails) {
  testing::TemporaryFolder folder;
  // A folder in the place of the file cannot be replaced by it.
  std::filesystem::create_directory(folder.path() / "a.png");
  std::string complaint;
  EXPECT_FALSE(writePng(somePicture(4, 4), folder.path() / "a.png", &complaint));
  EXPECT_NE(complaint.find("a.png"), std::string::npos);
  EXPECT_EQ(filesIn(folder.path()), 1u);
  EXPECT_FALSE(writePng(somePicture(4, 4), folder.path() / "none" / "a.png", &complaint));
  EXPECT_EQ(filesIn(folder.path()), 1u);
}

TEST(PngFile, RefusesASizeThatDoesNotFitItsPixels) {
  testing::TemporaryFolder folder;
  Picture picture = somePicture(4, 4);
  picture.height = 5;
  EXPECT_FALSE(writePng(picture, folder.path() / "a.png"));
  EXPECT_EQ(filesIn(folder.path()), 0u);
}

TEST(PngFile, GivesNothingForBytesThatAreNoPicture) {
  testing::TemporaryFolder folder;
  EXPECT_FALSE(readPng(folder.path() / "missing.png"));
  std::ofstream(folder.path() / "empty.png");
  EXPECT_FALSE(readPng(folder.path() / "empty.png"));
  std::ofstream(folder.path() / "text.png") << "no picture at all";
  EXPECT_FALSE(readPng(folder.path() / "text.png"));
}

TEST(PngFile, SurvivesEveryTruncationAndEveryFlippedHeaderByte) {
  testing::TemporaryFolder folder;
  const auto path = folder.path() / "a.png";
  ASSERT_TRUE(writePng(somePicture(8, 8), path));
  const std::string whole = bytesOf(path);
  for (size_t size = 0; size < whole.size() - 12; ++size) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << whole.substr(0, size);
    EXPECT_FALSE(readPng(path)) << size;
  }
  for (size_t at = 0; at < 33; ++at) {  // signature and header, with its checksum
    std::string broken = whole;
    broken[at] = static_cast<char>(broken[at] ^ 0xFF);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << broken;
    EXPECT_FALSE(readPng(path)) << at;
  }
}

}  // namespace
}  // namespace qv
