// The reel of the tests: every family of effects, fades, windows, a drag and animations, as a play
// script sees them in simulated time.

#include <algorithm>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "platform/display/display.h"
#include "platform/display/png_file.h"
#include "tests/story/story_host.h"
#include "tests/support/golden.h"
#include "tests/support/process.h"
#include "tests/support/sanitized.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* Script = QV_SOURCE_DIR "/tests/story/reel/reel.play";
/// All that happens happens in this corner of the screen.
constexpr int StageWidth = 200, StageHeight = 140;

class ReelTest : public ::testing::Test {
 protected:
  ProcessResult play(const fs::path& script, int seed) {
    fs::remove_all(folder.path() / "player");
    return runProcess({hostOf("reel"), "--simulate", std::to_string(seed), "--play",
                       script.string(), "--user", (folder.path() / "player").string(), "--shots",
                       folder.path().string(), Stories + "reel"});
  }
  /// The corner of each shot, by piece: "zoom" has "zoom-1.png" and so on.
  std::map<std::string, std::vector<Picture>> shotsOf(int seed) {
    const ProcessResult result = play(Script, seed);
    EXPECT_EQ(result.status, 0) << result.errors;
    std::map<std::string, std::vector<Picture>> pieces;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      if (entry.path().extension() == ".png") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
      const std::string name = file.stem().string();
      pieces[name.substr(0, name.size() - 2)].push_back(corner(file));
    }
    return pieces;
  }
  /// The script without its pictures.
  fs::path blindScript() const {
    std::istringstream lines(readWhole(Script));
    std::string blind;
    for (std::string line; std::getline(lines, line);)
      if (!line.starts_with("shot ")) blind += line + "\n";
    const fs::path file = folder.path() / "blind.play";
    writeWhole(file, blind);
    return file;
  }
  void playSeeds(int first, int last) {
    const fs::path script = blindScript();
    for (int seed = first; seed <= last; ++seed) {
      const ProcessResult result = play(script, seed);
      ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
    }
  }
  static Picture corner(const fs::path& file) {
    const Picture screen = readPng(file).value_or(Picture{});
    Picture part{StageWidth, StageHeight, {}};
    if (screen.width != ScreenWidth || screen.height != ScreenHeight) {
      ADD_FAILURE() << file << " is no picture of the screen";
      part.pixels.resize(static_cast<size_t>(StageWidth) * StageHeight);
      return part;
    }
    for (int y = 0; y < StageHeight; ++y)
      part.pixels.insert(part.pixels.end(), screen.pixels.begin() + y * ScreenWidth,
                         screen.pixels.begin() + y * ScreenWidth + StageWidth);
    return part;
  }
  static Picture stripOf(const std::vector<Picture>& shots) {
    constexpr uint32_t White = 0xFFFFFF;
    constexpr int Gap = 4;
    const int width = static_cast<int>(shots.size()) * (StageWidth + Gap) - Gap;
    Picture strip{width, StageHeight, {}};
    for (int y = 0; y < StageHeight; ++y) {
      for (size_t shot = 0; shot < shots.size(); ++shot) {
        if (shot > 0) strip.pixels.insert(strip.pixels.end(), Gap, White);
        const auto row = shots[shot].pixels.begin() + y * StageWidth;
        strip.pixels.insert(strip.pixels.end(), row, row + StageWidth);
      }
    }
    return strip;
  }
  TemporaryFolder folder;
};

bool isRandom(const std::string& piece) {
  return piece.starts_with("random");
}

TEST_F(ReelTest, LooksAsItDidUnderEverySeed) {
  for (const int seed : {1, 2, 3}) {
    const auto pieces = shotsOf(seed);
    EXPECT_GE(pieces.size(), 28u);
    for (const auto& [piece, shots] : pieces) {
      if (isRandom(piece)) continue;
      EXPECT_TRUE(matchesGolden(stripOf(shots),
                                fs::path(QV_SOURCE_DIR) / "tests/golden/reel" / (piece + ".png")))
          << "seed " << seed;
    }
  }
}

TEST_F(ReelTest, RandomPiecesUncoverTheNewCardFromTheOldOneEachInItsOwnOrder) {
  std::map<std::string, std::vector<std::vector<uint32_t>>> middles;
  for (const int seed : {4, 5}) {
    const auto pieces = shotsOf(seed);
    const std::vector<uint32_t> after = pieces.at("cut").at(0).pixels;
    for (const auto& [piece, shots] : pieces) {
      if (!isRandom(piece)) continue;
      ASSERT_EQ(shots.size(), 3u) << piece;
      EXPECT_EQ(shots[2].pixels, after) << piece;
      size_t uncovered[2] = {0, 0};
      for (const size_t moment : {0, 1})
        for (size_t at = 0; at < after.size(); ++at)
          uncovered[moment] += shots[moment].pixels[at] == after[at];
      EXPECT_GT(uncovered[1], uncovered[0]) << piece;
      EXPECT_LT(uncovered[1], after.size()) << piece;
      middles[piece].push_back(shots[1].pixels);
    }
  }
  EXPECT_EQ(middles.size(), 4u);
  for (const auto& [piece, shots] : middles)
    EXPECT_NE(shots[0], shots[1]) << piece << " went the same way under two seeds";
}

constexpr int Seeds = Sanitized ? 10 : 100;

TEST_F(ReelTest, AHundredSeedsGoThroughWithoutADeadlock) {
  playSeeds(1, Seeds);
}

TEST_F(ReelTest, AThousandSeedsGoThroughWithoutADeadlock) {
  playSeeds(101, 1100);
}

TEST_F(ReelTest, TheSamePicturesComeFromTheSameSeed) {
  const auto first = shotsOf(9), again = shotsOf(9);
  ASSERT_EQ(first.size(), again.size());
  for (const auto& [piece, shots] : first)
    EXPECT_EQ(stripOf(shots).pixels, stripOf(again.at(piece)).pixels) << piece;
}

}  // namespace
}  // namespace qv::testing
