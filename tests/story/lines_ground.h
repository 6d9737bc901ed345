#pragma once

// The story of lines with its own pictures and voices, played by scripts in a player's folder that
// vanishes with the test.

#include <sstream>

#include <gtest/gtest.h>

#include "platform/display/png_file.h"
#include "tests/story/story_host.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tests/support/wave_bytes.h"

namespace qv::testing {

class LinesStory : public ::testing::Test {
 protected:
  static constexpr int LongVoiceMillis = 3000, ShortVoiceMillis = 1000;

  LinesStory() {
    const auto voices = folder.path() / "disc/VOICE/V00";
    std::filesystem::create_directories(voices);
    writeWhole(voices / "0000_001.wav", silentWave(LongVoiceMillis));
    writeWhole(voices / "0000_002.wav", silentWave(ShortVoiceMillis));
  }

  /// Runs one scene by a script in simulated time; a fresh player each time.
  ProcessResult run(const std::string& scene, const std::string& script,
                    std::vector<std::string> options = {"--simulate", "1"}) {
    const auto player = folder.path() / "player";
    std::filesystem::remove_all(player);
    std::filesystem::copy(QV_OUTPUT_DIR "/line_pictures", player,
                          std::filesystem::copy_options::recursive);
    writeWhole(folder.path() / "test.play", script);
    std::vector<std::string> command{hostOf("lines"),
                                     "--play",
                                     (folder.path() / "test.play").string(),
                                     "--user",
                                     player.string(),
                                     "--disc",
                                     (folder.path() / "disc").string(),
                                     "--trace",
                                     (folder.path() / "trace").string(),
                                     "--shots",
                                     folder.path().string(),
                                     "--scene",
                                     scene};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(Stories + "lines");
    return runProcess(command);
  }
  /// The same, and it must go well under three seeds.
  void play(const std::string& scene, const std::string& script) {
    for (const char* seed : {"3", "2", "1"}) {
      const ProcessResult result = run(scene, script, {"--simulate", seed});
      ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
      ASSERT_EQ(result.errors, "") << "seed " << seed;
    }
  }
  std::string trace() const { return readWhole(folder.path() / "trace"); }
  /// A picture that a script took.
  Picture shot(const std::string& name) const {
    const std::optional<Picture> picture = readPng(folder.path() / (name + ".png"));
    EXPECT_TRUE(picture.has_value()) << name;
    return picture.value_or(Picture{});
  }
  /// The pixels of a part of one.
  static std::vector<uint32_t> part(const Picture& picture, int x, int y, int width, int height) {
    std::vector<uint32_t> pixels;
    for (int row = y; row < y + height; ++row)
      for (int column = x; column < x + width; ++column)
        pixels.push_back(
            picture.pixels[static_cast<size_t>(row) * static_cast<size_t>(picture.width) +
                           static_cast<size_t>(column)]);
    return pixels;
  }

  TemporaryFolder folder;
};

}  // namespace qv::testing
