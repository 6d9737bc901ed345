#pragma once

// The stage of the tests: a game folder of flat pictures with the module of the staging story,
// played in simulated time with the built-in font, so that its pictures are the same everywhere.

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "graphics/rectangle.h"
#include "platform/display/display.h"
#include "platform/display/png_file.h"
#include "tests/story/story_host.h"
#include "tests/support/flat_pictures.h"
#include "tests/support/golden.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

class Staging : public ::testing::Test {
 protected:
  Staging() {
    namespace fs = std::filesystem;
    writeFlatGame(game());
    fs::create_directories(folder.path() / "fonts");
    if (!QV_ONE_EXECUTABLE) fs::create_symlink(Stories + "staging/game.so", game() / "game.so");
  }

  std::filesystem::path game() const { return folder.path() / "game"; }
  std::filesystem::path player() const { return folder.path() / "player"; }

  /// Does the lines of the stage while the script plays. A new player unless `keepPlayer`.
  ProcessResult run(const std::string& lines, const std::string& script, int seed = 1,
                    bool keepPlayer = false) {
    if (!keepPlayer) std::filesystem::remove_all(player());
    writeWhole(game() / "dat/stage.txt", lines);
    writeWhole(folder.path() / "stage.play", script);
    ProcessResult result = runProcess(
        {hostOf("staging"), "--simulate", std::to_string(seed), "--fonts",
         (folder.path() / "fonts").string(), "--play", (folder.path() / "stage.play").string(),
         "--user", player().string(), "--trace", (folder.path() / "trace").string(), "--shots",
         folder.path().string(), game().string()});
    // There are no fonts but the built-in one, and it says so.
    if (result.errors.find("Fonts are missing") != std::string::npos)
      result.errors.erase(0, result.errors.find('\n') + 1);
    return result;
  }
  /// The same, and all went as the script says.
  void expectRun(const std::string& lines, const std::string& script, int seed = 1,
                 bool keepPlayer = false) {
    const ProcessResult result = run(lines, script, seed, keepPlayer);
    EXPECT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors << "stage:\n" << lines;
    EXPECT_EQ(result.errors, "");
  }

  /// The lines of the trace without their ticks that begin with those words.
  std::vector<std::string> traced(const std::string& words) const {
    std::vector<std::string> found;
    std::istringstream stream(readWhole(folder.path() / "trace"));
    for (std::string line; std::getline(stream, line);) {
      line.erase(0, line.find(' ') + 1);
      if (line.starts_with(words)) found.push_back(line);
    }
    return found;
  }

  /// When files were written, in milliseconds of the run.
  std::vector<int64_t> timesOfFiles() const {
    std::vector<int64_t> times;
    std::istringstream stream(readWhole(folder.path() / "trace"));
    for (std::string line; std::getline(stream, line);)
      if (line.compare(line.find(' ') + 1, 5, "file ") == 0) times.push_back(std::stoll(line));
    return times;
  }
  /// How long the lines take that stand between two writes of the system file.
  int64_t millisOf(const std::string& before, const std::string& lines,
                   const std::string& script = "sleep 5000\nready\nquit\n") {
    // The polls of the skip are waits too: the script lets the lines pass before it looks.
    expectRun(before + "sysreg 900 1\n" + lines + "sysreg 900 2\nkey\n", script);
    const std::vector<int64_t> times = timesOfFiles();
    if (times.size() < 2) {
      ADD_FAILURE() << "the stage was not played to its end";
      return -1;
    }
    return times.back() - times[times.size() - 2];
  }

  Picture shot(const std::string& name) const {
    const std::filesystem::path file = folder.path() / (name + ".png");
    const auto picture = readPng(file);
    if (picture) return *picture;
    ADD_FAILURE() << file << " is missing";
    return {ScreenWidth, ScreenHeight, std::vector<uint32_t>(size_t{ScreenWidth} * ScreenHeight)};
  }
  /// Parts of shots one below the other, with a line between them.
  Picture parts(const std::vector<std::string>& names, const Rectangle& part) const {
    constexpr uint32_t White = 0xFFFFFF;
    Picture whole{part.width(), 0, {}};
    for (const std::string& name : names) {
      const Picture screen = shot(name);
      if (whole.height > 0) {
        whole.pixels.insert(whole.pixels.end(), static_cast<size_t>(part.width()) * 2, White);
        whole.height += 2;
      }
      for (int32_t y = part.top; y < part.bottom; ++y) {
        const auto row = screen.pixels.begin() + y * screen.width + part.left;
        whole.pixels.insert(whole.pixels.end(), row, row + part.width());
      }
      whole.height += part.height();
    }
    return whole;
  }
  static std::filesystem::path golden(const std::string& name) {
    return std::filesystem::path(QV_SOURCE_DIR) / "tests/golden/staging" / (name + ".png");
  }

  TemporaryFolder folder;
};

inline const Rectangle WholeScreen = Rectangle::at(0, 0, ScreenWidth, ScreenHeight);

}  // namespace qv::testing
