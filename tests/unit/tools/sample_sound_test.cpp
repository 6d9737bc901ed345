// The sample's sounds as the build made them, and whether the scenes find theirs.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/process.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

fs::path source() {
  return fs::path(QV_SOURCE_DIR) / "game";
}
fs::path built() {
  return fs::path(QV_OUTPUT_DIR) / "vorlane";
}

struct Wave {
  std::string format;  ///< the head's 16 bytes: PCM, channels, rate ...
  std::vector<int16_t> samples;

  int peak() const {
    int most = 0;
    for (const int16_t sample : samples)
      most = std::max(most, std::abs(static_cast<int>(sample)));
    return most;
  }
  double loudness() const {
    double sum = 0;
    for (const int16_t sample : samples)
      sum += static_cast<double>(sample) * sample;
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
  }
  double seconds() const { return static_cast<double>(samples.size()) / 22050; }
};

Wave readWave(const fs::path& path) {
  Wave wave;
  if (!fs::exists(path)) {
    ADD_FAILURE() << path << " is missing";
    return wave;
  }
  const std::string bytes = testing::readWhole(path);
  for (size_t at = 12; at + 8 <= bytes.size();) {
    uint32_t length = 0;
    std::memcpy(&length, &bytes[at + 4], 4);
    const std::string body = bytes.substr(at + 8, length);
    if (bytes.compare(at, 4, "fmt ") == 0) wave.format = body.substr(0, 16);
    if (bytes.compare(at, 4, "data") == 0) {
      wave.samples.resize(body.size() / 2);
      std::memcpy(wave.samples.data(), body.data(), wave.samples.size() * 2);
    }
    at += 8 + length + length % 2;
  }
  return wave;
}

/// PCM, one channel, 22050 Hz, 16 bits.
const std::string Format("\1\0\1\0\x22\x56\0\0\x44\xAC\0\0\2\0\x10\0", 16);

void expectSound(const fs::path& path) {
  const Wave wave = readWave(path);
  ASSERT_FALSE(wave.samples.empty()) << path;
  EXPECT_EQ(wave.format, Format) << path;
  constexpr int OneDecibelBelow = 29205, Silent = 100, Soft = 40;
  EXPECT_LT(wave.peak(), OneDecibelBelow) << path;
  EXPECT_GT(wave.loudness(), Soft) << path;
  EXPECT_GT(wave.seconds(), 0.3) << path;
  // A step at either end would click.
  EXPECT_LT(std::abs(wave.samples.front()), Silent) << path;
  EXPECT_LT(std::abs(wave.samples.back()), Silent) << path;
}

std::vector<std::string> linesOf(const fs::path& file) {
  std::istringstream text(testing::readWhole(file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);)
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  return lines;
}

std::set<std::string> inScenes(const std::string& pattern) {
  std::set<std::string> found;
  const std::regex expression(pattern);
  for (const auto& entry : fs::recursive_directory_iterator(source() / "story")) {
    if (entry.path().extension() != ".scene") continue;
    const std::string text = testing::readWhole(entry.path());
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
      found.insert((*at)[1]);
  }
  return found;
}

TEST(SampleEffects, AreEvenSoftEndedAndNotClipped) {
  const std::vector<std::string> recipes = linesOf(source() / "wave/effects.txt");
  ASSERT_GE(recipes.size(), 10U);
  for (const std::string& recipe : recipes)
    expectSound(built() / "wave" / ("vlse" + recipe.substr(0, 3) + ".wav"));
}

TEST(SampleVoices, EveryLineIsSpoken) {
  int lines = 0;
  for (const std::string& line : linesOf(source() / "voices/voices.txt")) {
    if (line.starts_with("speaker ")) continue;
    const std::string name = line.substr(0, line.find(' '));
    expectSound(built() / "disc/VOICE" / (name + ".wav"));
    ++lines;
  }
  EXPECT_GE(lines, 26);
}

TEST(SampleVoices, EveryVoiceOfAScenesLineIsThere) {
  const std::set<std::string> names = inScenes(R"((V0\d\\\d{4}_\d{3}):)");
  ASSERT_FALSE(names.empty());
  for (std::string name : names) {
    std::replace(name.begin(), name.end(), '\\', '/');
    EXPECT_TRUE(fs::exists(source() / "voices" / (name + ".flac"))) << name;
  }
}

TEST(SampleSongs, EverySongThatASceneAsksForIsThere) {
  const std::set<std::string> names = inScenes(R"(@bgm (K\d\d))");
  ASSERT_FALSE(names.empty());
  for (const std::string& name : names)
    EXPECT_TRUE(fs::exists(source() / "midi" / (name + ".song"))) << name;
}

TEST(SampleDisc, ItsCueSheetNamesATrackThatIsThere) {
  const std::string sheet = testing::readWhole(built() / "disc/disc.cue");
  std::smatch track;
  ASSERT_TRUE(std::regex_search(sheet, track, std::regex("FILE \"([^\"]+)\" WAVE")));
  EXPECT_EQ(testing::readWhole(built() / "disc" / track[1].str()).substr(0, 4), "fLaC");
}

}  // namespace
}  // namespace qv
