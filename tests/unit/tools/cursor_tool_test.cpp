// The pointer's looks as the tool writes them and the engine reads them.

#include <string>

#include <gtest/gtest.h>

#include "input/cursor_file.h"
#include "tests/support/picture_bytes.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

class CursorTool : public ::testing::Test {
 protected:
  std::string at(const char* name) const { return (folder_.path() / name).string(); }
  ProcessResult encode(const std::string& svg, const std::vector<std::string>& more = {}) const {
    writeWhole(at("pointer.svg"), svg);
    const std::string tool = QV_BIN_DIR "/qvtool";
    std::vector<std::string> command{tool, "cursor", "encode", at("pointer.svg"),
                                     at("pointer.cur")};
    command.insert(command.end(), more.begin(), more.end());
    return runProcess(command);
  }
  static std::string drawing(int width, int height, const std::string& content) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
           "\" height=\"" + std::to_string(height) + "\" shape-rendering=\"crispEdges\">" +
           content + "</svg>";
  }
  TemporaryFolder folder_;
};

TEST_F(CursorTool, WritesWhatTheEngineReadsPixelByPixel) {
  for (const int width : {3, 32, 33}) {
    const ProcessResult result =
        encode(drawing(width, 2,
                       "<rect width=\"1\" height=\"1\" fill=\"#102030\"/>"
                       "<rect x=\"1\" y=\"1\" width=\"1\" height=\"1\" fill=\"#ff8000\"/>"),
               {"--hot-x", "2", "--hot-y", "1"});
    ASSERT_EQ(result.status, 0) << result.errors;
    const std::string bytes = readWhole(at("pointer.cur"));
    const std::optional<CursorPicture> read = readCursorFile(spanOf(bytes));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->width, width);
    EXPECT_EQ(read->height, 2);
    EXPECT_EQ(read->hotX, 2);
    EXPECT_EQ(read->hotY, 1);
    std::vector<uint32_t> wanted(static_cast<size_t>(width) * 2);
    wanted[0] = 0xFF102030;
    wanted[static_cast<size_t>(width) + 1] = 0xFFFF8000;
    EXPECT_EQ(read->pixels, wanted) << width;
  }
}

TEST_F(CursorTool, RefusesWhatNoCursorCanBe) {
  const ProcessResult large = encode(drawing(256, 8, ""));
  EXPECT_EQ(large.status, 1);
  EXPECT_EQ(large.errors, "qvtool: " + at("pointer.svg") +
                              " is larger than the 255 by 255 pixels that a cursor may have.\n");
  const ProcessResult outside = encode(drawing(8, 8, ""), {"--hot-x", "8"});
  EXPECT_EQ(outside.status, 1);
  EXPECT_EQ(outside.errors,
            "qvtool: The pixel that points, 8,0, is not inside of " + at("pointer.svg") + ".\n");
  EXPECT_FALSE(std::filesystem::exists(at("pointer.cur")));
  EXPECT_EQ(encode(drawing(8, 8, ""), {"--hot-y", "-1"}).status, 2);
}

}  // namespace
}  // namespace qv::testing
