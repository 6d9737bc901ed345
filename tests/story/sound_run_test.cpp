// What a story sounds like: in silence with its time kept, and as samples of a real output.

#include <algorithm>
#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/song_bytes.h"
#include "tests/support/test_platform.h"
#include "tests/support/wave_bytes.h"

namespace qv::testing {
namespace {

/// The story of sounds, whose files lie in the player's folder.
class SoundStory : public ::testing::Test {
 protected:
  SoundStory() {
    write("wave/vlse005.wav", silentWave(500));
    write("wave/vlse014.wav", silentWave(300));
    write("tone.wav", silentWave(700));
    write("midi/K03b.mid", song({TrackBytes().event(0, {0x90, 60, 100}).end(60'000)}));
  }
  void write(const char* name, const std::string& bytes) const {
    std::filesystem::create_directories((player() / name).parent_path());
    writeWhole(player() / name, bytes);
  }
  std::filesystem::path player() const { return folder.path() / "player"; }
  std::string trace() const { return (folder.path() / "trace").string(); }
  ProcessResult run(std::vector<std::string> more,
                    const std::vector<std::string>& environment = {}) const {
    const std::string host = QV_BIN_DIR "/qvrun";
    std::vector<std::string> command{QV_ONE_EXECUTABLE ? host + "-sound" : host, "--user",
                                     player().string(), "--trace", trace()};
    command.insert(command.end(), more.begin(), more.end());
    command.emplace_back(QV_OUTPUT_DIR "/test-stories/sound");
    return runProcess(command, environment);
  }
  std::string script(const std::string& text) const {
    const auto file = folder.path() / "script.play";
    writeWhole(file, text);
    return file.string();
  }
  const std::string story = QV_SOURCE_DIR "/tests/story/sound/sound.play";
  TemporaryFolder folder;
};

TEST_F(SoundStory, KeepsItsTimeInSilence) {
  const ProcessResult result = run({"--simulate", "1", "--play", story});
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::string seen = readWhole(trace());
  EXPECT_NE(seen.find(" wave wave\\vlse005.wav\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find(" wave tone.wav\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find(" song midi\\K03b.mid\n"), std::string::npos) << seen;
}

TEST_F(SoundStory, IsTheSameForTheSameSeedAndGoodUnderOthers) {
  std::string first;
  for (const char* seed : {"7", "7", "8", "9", "10"}) {
    std::filesystem::remove(player() / "Sound.system.dat");
    const ProcessResult result = run({"--simulate", seed, "--play", story});
    EXPECT_EQ(result.status, 0) << seed << ": " << result.errors;
    if (first.empty())
      first = readWhole(trace());
    else if (std::string(seed) == "7") {
      EXPECT_EQ(readWhole(trace()), first);
    }
  }
}

TEST_F(SoundStory, TellsWhatSoundsInsteadOfWhatAScriptExpects) {
  const auto fails = [&](const std::string& lines, const std::string& words) {
    const ProcessResult result = run({"--simulate", "1", "--play", script(lines)});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
  };
  fails("ready\nexpect sound wave SE01\n", "2: expect sound wave SE01: nothing sounds");
  fails("ready\nkey Return\nready\nexpect sound wave SE02\n",
        "4: expect sound wave SE02: what sounds is wave\\vlse005.wav");
  fails("ready\nkey Return\nready\nexpect sound wave none\n",
        "4: expect sound wave none: what sounds is wave\\vlse005.wav");
  fails("ready\nexpect sound song K03\n", "2: expect sound song K03: nothing sounds");
}

TEST_F(SoundStory, FailsAtTheBoxAboutAMissingWaveAtOnce) {
  std::filesystem::remove(player() / "wave/vlse005.wav");
  const ProcessResult result = run({"--simulate", "1", "--play", story});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("a box stands unanswered"), std::string::npos) << result.errors;
  EXPECT_EQ(run({"--simulate", "1", "--play",
                 script("ready\nkey Return\nanswer ok\nready\nexpect sound wave none\nquit\n")})
                .status,
            0);
}

TEST_F(SoundStory, KeepsTheVolumesThatItIsGiven) {
  const std::string quit = script("ready\nquit\n");
  EXPECT_EQ(run({"--simulate", "1", "--play", quit, "--volume-music", "40"}).status, 0);
  const std::string kept = readWhole(player() / "settings.toml");
  EXPECT_NE(kept.find("Music"), std::string::npos) << kept;
  EXPECT_EQ(run({"--simulate", "1", "--play", quit}).status, 0);
  EXPECT_EQ(readWhole(player() / "settings.toml"), kept);
  EXPECT_EQ(run({"--simulate", "1", "--play", quit, "--volume-wave", "101"}).status, 2);
}

TEST_F(SoundStory, IsToldOnceThatThereIsNoOutputAndGoesOn) {
  // No such driver; and one that knows of no card.
  for (const char* driver : {"none-such", "alsa"}) {
    const ProcessResult result =
        run({"--play", script("ready\nkey Return\nready\nexpect sound wave SE01\nquit\n")},
            {"SDL_VIDEODRIVER=dummy", std::string("SDL_AUDIODRIVER=") + driver,
             "ALSA_CONFIG_PATH=/dev/null"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(result.errors.ends_with("The game goes on in silence.\n")) << result.errors;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
}

/// On an output that takes everything, with a song whose instruments are not there.
TEST_F(SoundStory, IsToldOnceThatThereIsNoSoundFontAndGoesOn) {
  const std::string toTheSong = script(
      "ready\nkey Return\nready\nsleep 700\nkey Return\nready\nkey Return\nready\n"
      "expect sound song K03\nquit\n");
  writeWhole(folder.path() / "empty.sf2", "no instruments");
  for (const char* font : {"/nowhere/none.sf2", "empty.sf2"}) {
    const std::string path = font[0] == '/' ? font : (folder.path() / font).string();
    const ProcessResult result = run({"--sound-font", path, "--play", toTheSong},
                                     {"SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=dummy"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(result.errors.starts_with("qvrun")) << result.errors;
    EXPECT_TRUE(result.errors.ends_with("songs stay silent.\n")) << result.errors;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_NE(result.errors.find(path), std::string::npos) << result.errors;
  }
}

TEST_F(SoundStory, IsToldOnceThatItsMidiPortIsNotThereAndSingsByItself) {
  const ProcessResult result =
      run({"--midi-port", "no such port", "--play", script("ready\nkey Return\nready\nquit\n")},
          {"SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=dummy"});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_NE(result.errors.find("no such port"), std::string::npos) << result.errors;
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

TEST_F(SoundStory, IsToldOnceThatItsCueSheetCannotBeReadAndGoesOn) {
  const auto disc = folder.path() / "disc";
  std::filesystem::create_directories(disc);
  writeWhole(disc / "disc.cue", "FILE \"none.bin\" BINARY\n  TRACK many AUDIO\n");
  const ProcessResult result = run({"--disc", disc.string(), "--simulate", "1", "--play", story});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_NE(result.errors.find("disc.cue"), std::string::npos) << result.errors;
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

// --- As samples ---

constexpr double Rate = 48000;

/// The level that a sine of that frequency has in a stretch of one channel.
double levelOf(const std::vector<float>& mono, double hertz, size_t from, size_t count) {
  double real = 0, imaginary = 0;
  for (size_t i = from; i < std::min(from + count, mono.size()); ++i) {
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / Rate;
    real += mono[i] * std::cos(angle);
    imaginary += mono[i] * std::sin(angle);
  }
  return 2 * std::sqrt(real * real + imaginary * imaginary) / static_cast<double>(count);
}

class SoundOutput : public SoundStory {
 protected:
  /// Both sides of what the output was given.
  void hear(const std::vector<std::string>& options) {
    const auto file = folder.path() / "heard.raw";
    const ProcessResult result = run(options, {"SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=disk",
                                               "SDL_DISKAUDIOFILE=" + file.string()});
    ASSERT_EQ(result.status, 0) << result.errors;
    const std::string bytes = readWhole(file);
    for (size_t at = 0; at + 8 <= bytes.size(); at += 8)
      for (const size_t side : {0u, 1u}) {
        float sample = 0;
        std::memcpy(&sample, bytes.data() + at + side * 4, 4);
        (side ? right : left).push_back(sample);
      }
  }
  /// Where the sound begins and ends, in frames.
  std::pair<size_t, size_t> heardSpan() const {
    size_t first = 0, last = left.size();
    while (first < last && left[first] == 0)
      ++first;
    while (last > first && left[last - 1] == 0)
      --last;
    return {first, last};
  }
  std::vector<float> left, right;
};

TEST_F(SoundOutput, IsTheToneOfTheFileInItsLengthAndLevel) {
  const WaveFormat format = pcm(1, 22050, 16);
  write("wave/vlse005.wav", waveFile(format, sineSamples(format, 1000, 0.5, 22050 / 2)));
  hear({"--midi-port", "none", "--play", script("ready\nkey Return\nready\nsleep 900\nquit\n")});
  const auto [first, last] = heardSpan();
  EXPECT_NEAR(static_cast<double>(last - first), Rate / 2, 200);
  EXPECT_NEAR(levelOf(left, 1000, first, 24000), 0.5, 0.01);
  EXPECT_NEAR(levelOf(right, 1000, first, 24000), 0.5, 0.01);
  EXPECT_LT(levelOf(left, 2000, first, 24000), 0.01);
}

TEST_F(SoundOutput, IsAsLoudAsThePlayerWants) {
  const WaveFormat format = pcm(2, 44100, 16);
  write("wave/vlse005.wav", waveFile(format, sineSamples(format, 500, 0.8, 22050)));
  hear({"--midi-port", "none", "--volume-wave", "50", "--volume-whole", "50", "--play",
        script("ready\nkey Return\nready\nsleep 900\nquit\n")});
  const auto [first, last] = heardSpan();
  EXPECT_NEAR(levelOf(left, 500, first, 24000), 0.2, 0.005);
}

TEST_F(SoundOutput, LoopsUntilItIsStopped) {
  const WaveFormat format = pcm(1, 8000, 8);
  write("wave/vlse005.wav", waveFile(format, std::string(8, '\x80')));
  write("wave/vlse014.wav", waveFile(format, sineSamples(format, 400, 0.5, 400)));
  write("midi/K03b.mid", song({TrackBytes().end(10)}));
  hear({"--midi-port", "none", "--play",
        script("ready\nkey Return\nready\nkey Return\nready\nsleep 1200\n"
               "expect sound wave SE02\nkey Return\nready\nkey Return\nready\nsleep 300\nquit\n")});
  const auto [first, last] = heardSpan();
  EXPECT_GT(static_cast<double>(last - first), Rate * 1.1) << "many times its fiftieth of a second";
  EXPECT_LT(last, left.size() - 4800) << "silence behind the stop";
  for (size_t from = first; from + 9600 < last; from += 9600)
    EXPECT_NEAR(levelOf(left, 400, from, 9600), 0.5, 0.02) << from;
}

}  // namespace
}  // namespace qv::testing
