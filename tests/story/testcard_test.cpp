// The sample's test card in simulated time, by its own play script: how it looks, what sounds when,
// and that it can be left from anywhere.

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "graphics/rectangle.h"
#include "platform/display/png_file.h"
#include "platform/text/text_renderer.h"
#include "tests/support/golden.h"
#include "tests/support/process.h"
#include "tests/support/sanitized.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* Script = QV_SOURCE_DIR "/game/testcard.play";

// What moves by itself: the story's prompt on the card, the sheet's and the line's prompt,
// Belune's mouth.
constexpr Rectangle CardPrompt = Rectangle::at(312, 392, 16, 24),
                    SheetPrompt = Rectangle::at(568, 390, 24, 24),
                    LinePrompt = Rectangle::at(564, 376, 24, 24),
                    Mouth = Rectangle::at(160, 185, 32, 24), Buttons{150, 200, 490, 345};

Picture part(const Picture& screen, const Rectangle& place) {
  Picture cut{place.width(), place.height(), {}};
  for (int y = place.top; y < place.bottom; ++y) {
    const auto row = screen.pixels.begin() + y * screen.width;
    cut.pixels.insert(cut.pixels.end(), row + place.left, row + place.right);
  }
  return cut;
}

Picture without(Picture screen, std::initializer_list<Rectangle> places) {
  for (const Rectangle& place : places)
    for (int y = place.top; y < place.bottom; ++y)
      std::fill_n(screen.pixels.begin() + y * screen.width + place.left, place.width(), 0u);
  return screen;
}

class TestCard : public ::testing::Test {
 protected:
  using Shots = std::map<std::string, Picture>;

  ProcessResult play(const fs::path& script, int seed, std::vector<std::string> more = {}) {
    fs::remove_all(folder.path() / "player");
    const std::string host = QV_BIN_DIR "/qvrun";
    std::vector<std::string> command{host,
                                     "--simulate",
                                     std::to_string(seed),
                                     "--play",
                                     script.string(),
                                     "--user",
                                     (folder.path() / "player").string(),
                                     "--shots",
                                     folder.path().string(),
                                     "--trace",
                                     path("trace")};
    command.insert(command.end(), more.begin(), more.end());
    command.emplace_back(QV_OUTPUT_DIR "/vorlane");
    return runProcess(command);
  }
  Shots shotsOf(int seed) {
    const ProcessResult result = play(Script, seed);
    EXPECT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
    Shots shots;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      if (entry.path().extension() == ".png") {
        Picture screen = readPng(entry.path()).value_or(Picture{});
        if (screen.width == 640 && screen.height == 480)
          shots[entry.path().stem().string()] = std::move(screen);
      }
    EXPECT_EQ(shots.size(), 19u) << "seed " << seed;
    return shots;
  }
  /// The script's lines without its pictures, as many as are wanted.
  static std::vector<std::string> blindLines() {
    std::istringstream all(readWhole(Script));
    std::vector<std::string> lines;
    for (std::string line; std::getline(all, line);)
      if (!line.empty() && !line.starts_with("shot ") && !line.starts_with("#"))
        lines.push_back(line);
    return lines;
  }
  fs::path scriptOf(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines)
      text += line + "\n";
    fs::path file = folder.path() / "lines.play";
    writeWhole(file, text);
    return file;
  }
  void playSeeds(int first, int last) {
    const fs::path script = scriptOf(blindLines());
    for (int seed = first; seed <= last; ++seed) {
      const ProcessResult result = play(script, seed);
      ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
    }
  }
  std::string path(const char* name) const { return (folder.path() / name).string(); }

  TemporaryFolder folder;
};

bool hasFonts() {
  const TestPlatform platform;
  const TextRenderer text;
  for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalGothic, FontFace::Mincho,
                              FontFace::ProportionalMincho})
    if (!text.hasFont(face)) return false;
  return true;
}

TEST_F(TestCard, LooksAsItDidUnderEverySeed) {
  if (!hasFonts()) GTEST_SKIP() << "the IPA fonts are not installed";
  const fs::path goldens = QV_SOURCE_DIR "/tests/golden/testcard";
  for (const int seed : {1, 2, 3}) {
    const Shots shots = shotsOf(seed);
    ASSERT_FALSE(HasFailure());
    const auto looks = [&](const char* name, std::initializer_list<Rectangle> moving) {
      EXPECT_TRUE(
          matchesGolden(without(shots.at(name), moving), goldens / (std::string(name) + ".png")))
          << "seed " << seed;
    };
    looks("buttons-pointer", {CardPrompt});
    for (const char* name : {"faces", "page-1", "page-2"})
      looks(name, {SheetPrompt});
    for (const char* name : {"music-loops", "music-comes", "sound"})
      looks(name, {});
    for (const char* name : {"buttons-key", "buttons-home"})
      EXPECT_TRUE(
          matchesGolden(part(shots.at(name), Buttons), goldens / (std::string(name) + ".png")))
          << "seed " << seed;
  }
}

TEST_F(TestCard, ShowsItsPromptsMovingAndNothingElse) {
  const Shots shots = shotsOf(4);
  ASSERT_FALSE(HasFailure());
  const Picture &sooner = shots.at("faces"), &later = shots.at("faces-later");
  EXPECT_NE(part(sooner, SheetPrompt).pixels, part(later, SheetPrompt).pixels);
  EXPECT_EQ(without(sooner, {SheetPrompt}).pixels, without(later, {SheetPrompt}).pixels);
}

TEST_F(TestCard, MovesTheMouthWithTheVoiceAndClosesItAtItsEnd) {
  for (const int seed : {5, 6, 7, 8}) {
    const Shots shots = shotsOf(seed);
    ASSERT_FALSE(HasFailure());
    const Picture &ended = shots.at("voice-ended"), &stays = shots.at("voice-stays");
    const auto closed = part(ended, Mouth).pixels;
    EXPECT_EQ(part(stays, Mouth).pixels, closed) << "seed " << seed;
    int open = 0;
    for (const char* name : {"voice-1", "voice-2", "voice-3"}) {
      const Picture& speaking = shots.at(name);
      open += part(speaking, Mouth).pixels != closed;
      EXPECT_EQ(without(speaking, {Mouth, LinePrompt}).pixels,
                without(ended, {Mouth, LinePrompt}).pixels)
          << "seed " << seed;
    }
    EXPECT_GE(open, 1) << "seed " << seed;
  }
}

TEST_F(TestCard, PlaysItsVoicesSongsAndEffectsInTheirOrder) {
  ASSERT_EQ(play(Script, 9).status, 0);
  std::istringstream lines(readWhole(path("trace")));
  std::vector<std::string> sounds;
  for (std::string line; std::getline(lines, line);)
    for (const char* kind : {" wave ", " song "})
      if (const size_t at = line.find(kind); at != std::string::npos)
        sounds.push_back(line.substr(at + 1));
  EXPECT_EQ(sounds,
            (std::vector<std::string>{"song midi\\K15a.mid", "wave %:\\VOICE\\V00\\0000_002.wav",
                                      "wave %:\\VOICE\\V01\\0000_031.wav", "song midi\\K07a.mid",
                                      "song midi\\K07a.mid", "song midi\\K15a.mid",
                                      "song midi\\K04a.mid", "wave wave\\vlse014.wav",
                                      "wave wave\\vlse010.wav", "song midi\\K15a.mid"}));
}

TEST_F(TestCard, TakesNoClickOnTheDiscsButtonsWhereThereIsNone) {
  const auto script = [this](const char* presses) {
    return scriptOf({"ready", "key T", "ready", "click 400 270", "ready",
                     "expect scene sc_testcardsound", "expect reg 2301 1", "click 100 160",
                     "sleep 500", presses, "quit"});
  };
  fs::create_directories(folder.path() / "empty");
  const ProcessResult none = play(script("expect reg 2301 1"), 1, {"--disc", path("empty")});
  EXPECT_EQ(none.status, 0) << none.errors;
  const ProcessResult own = play(script("expect reg 2301 2"), 1);
  EXPECT_EQ(own.status, 0) << own.errors;
}

constexpr int Seeds = Sanitized ? 10 : 100;

TEST_F(TestCard, AHundredSeedsGoThroughWithoutADeadlock) {
  playSeeds(1, Seeds);
}

TEST_F(TestCard, AThousandSeedsGoThroughWithoutADeadlock) {
  playSeeds(101, 1100);
}

TEST_F(TestCard, IsAPureFunctionOfItsSeed) {
  const Shots first = shotsOf(10);
  const std::string trace = readWhole(path("trace"));
  const Shots again = shotsOf(10);
  EXPECT_EQ(readWhole(path("trace")), trace);
  for (const auto& [name, screen] : first)
    EXPECT_EQ(again.at(name).pixels, screen.pixels) << name;
}

TEST_F(TestCard, EndsQuietlyWhenItIsClosedAtAnyMoment) {
  const std::vector<std::string> all = blindLines();
  std::mt19937 random(11);
  for (int run = 1; run <= Seeds; ++run) {
    const size_t kept = random() % all.size();
    std::vector<std::string> lines(all.begin(), all.begin() + static_cast<ptrdiff_t>(kept));
    const std::string pause = std::to_string(random() % 900);
    lines.push_back("sleep " + pause);
    lines.emplace_back("now close");
    const ProcessResult result = play(scriptOf(lines), run);
    EXPECT_EQ(result.status, 0) << "line " << kept << ", " << pause << " ms: " << result.errors;
    EXPECT_EQ(result.errors, "") << "line " << kept << ", " << pause << " ms";
  }
}

/// Pages that look at what sounds every half second have waits whose numbers nobody can foretell.
TEST_F(TestCard, ReplaysThePagesThatWaitForThePlayerAloneFromTheirRecord) {
  std::vector<std::string> lines = blindLines();
  lines.erase(std::ranges::find(lines, "expect scene sc_testcardmusic"), lines.end());
  lines.emplace_back("quit");
  for (const int seed : {12, 13, 14, 15}) {
    ASSERT_EQ(play(scriptOf(lines), seed, {"--record", path("first.play")}).status, 0);
    const std::string record = readWhole(path("first.play"));
    EXPECT_NE(record.find(" key Tab\n"), std::string::npos) << record;
    const ProcessResult again =
        play(folder.path() / "first.play", seed, {"--record", path("second.play")});
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_EQ(readWhole(path("second.play")), record) << "seed " << seed;
  }
}

}  // namespace
}  // namespace qv::testing
