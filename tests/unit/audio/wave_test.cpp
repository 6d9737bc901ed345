#include "audio/wave.h"

#include <gtest/gtest.h>

#include "graphics/animation/animation_area.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "tests/support/failing_heap.h"
#include "tests/support/wave_bytes.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

constexpr uint32_t VoiceMillis = 1500;

class WaveTest : public ::testing::Test {
 protected:
  WaveTest() {
    write("voice.wav", silentWave(VoiceMillis));
    write("short.wav", silentWave(40, pcm(2, 44100, 16)));
  }
  void write(const char* name, const std::string& bytes) {
    platform.writeFile(platform.game() / name, bytes);
  }
  std::vector<NullWaveOutput::Sent> sent() { return platform.wave().sent(); }
  std::vector<ShownBox>& boxes() { return platform.dialogs.shown; }
  void expectBox(const std::string& utf8, const char* title) {
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(utf8OfShiftJis(boxes()[0].text), utf8);
    EXPECT_EQ(boxes()[0].caption, title);
    EXPECT_EQ(boxes()[0].flags, 0x12000u);
  }
  static uint32_t millisOf(const std::function<void()>& work) {
    const uint32_t start = tickCount();
    work();
    return tickCount() - start;
  }

  TestPlatform platform{true, makeSimulatedKernel()};
  QVWave wave;
};

TEST_F(WaveTest, PlaysTheWholeFileOnceAndEnds) {
  EXPECT_EQ(millisOf([&] { wave.play("voice.wav", 1, true, nullptr); }), 0u);
  EXPECT_TRUE(wave.isPlaying());
  EXPECT_STREQ(wave.currentPath().text(), "voice.wav");
  ASSERT_EQ(sent().size(), 1u);
  EXPECT_EQ(sent()[0].format.samplesPerSecond, 8000u);
  EXPECT_EQ(sent()[0].bytes, std::vector<uint8_t>(12000, 0x80));
  EXPECT_EQ(sent()[0].times, 1u);
  EXPECT_EQ(millisOf([&] { wave.wait(); }), VoiceMillis);
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_EQ(wave.currentPath().length(), 0);
  EXPECT_FALSE(sent()[0].cut);
  EXPECT_FALSE(platform.wave().isOpen());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, PlaysAsOftenAsTold) {
  wave.play("short.wav", 5, true, nullptr);
  EXPECT_EQ(sent()[0].times, 5u);
  EXPECT_EQ(millisOf([&] { wave.wait(); }), 5 * 40u);
}

TEST_F(WaveTest, PlaysForEverWithZero) {
  wave.play("short.wav", 0, true, nullptr);
  EXPECT_EQ(sent()[0].times, PlayForever);
  sleepMillis(3'600'000);
  EXPECT_TRUE(wave.isPlaying());
  wave.stop();
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_TRUE(sent()[0].cut);
}

TEST_F(WaveTest, CutsWhatSoundsForTheNext) {
  wave.play("voice.wav", 0, true, nullptr);
  sleepMillis(100);
  wave.play("short.wav", 1, true, nullptr);
  ASSERT_EQ(sent().size(), 2u);
  EXPECT_TRUE(sent()[0].cut);
  EXPECT_EQ(sent()[0].endTick - sent()[0].startTick, 100u);
  EXPECT_EQ(sent()[1].startTick, sent()[0].endTick);
}

TEST_F(WaveTest, WaitsForTheEndOfWhatSoundsWithoutStopFirst) {
  wave.play("voice.wav", 1, true, nullptr);
  sleepMillis(100);
  EXPECT_EQ(millisOf([&] { wave.play("short.wav", 1, false, nullptr); }), VoiceMillis - 100);
  EXPECT_FALSE(sent()[0].cut);
  EXPECT_TRUE(wave.isPlaying());
}

TEST_F(WaveTest, WithoutStopFirstWaitsForEverOnAnEndlessSound) {
  wave.play("short.wav", 0, true, nullptr);
  std::atomic<bool> back = false;
  Thread scene;
  scene.start("scene", [&] {
    wave.play("voice.wav", 1, false, nullptr);
    back = true;
  });
  sleepMillis(500'000);
  EXPECT_FALSE(back);
  wave.stop();
  scene.join();
  EXPECT_TRUE(back);
  EXPECT_EQ(sent().size(), 2u);
}

TEST_F(WaveTest, AWaitWithNothingPlayingReturnsAtOnce) {
  EXPECT_EQ(millisOf([&] { wave.wait(); }), 0u);
  wave.play("short.wav", 1, true, nullptr);
  sleepMillis(100);
  EXPECT_EQ(millisOf([&] { wave.wait(); }), 0u);
}

TEST_F(WaveTest, ASecondStopDoesNothing) {
  wave.stop();
  wave.play("voice.wav", 1, true, nullptr);
  EXPECT_EQ(millisOf([&] { wave.stop(); }), 0u);
  wave.stop();
  EXPECT_EQ(sent().size(), 1u);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, ALimitedWaitThatIsTooShortWaitsForTheThreadAndTellsIt) {
  wave.play("voice.wav", 0, true, nullptr);
  EXPECT_EQ(millisOf([&] { wave.wait(100); }), 100 + QVWave::JoinMillis);
  expectBox("スレッドの終了を待てませんでした。", "QVWave - wait()");
  wave.setShowWaitTimeout(false);
  wave.wait(0);
  EXPECT_EQ(boxes().size(), 1u);
  wave.stop();
}

TEST_F(WaveTest, IsPlayingToTheEndOfTheLastCall) {
  static std::atomic<uint32_t> told;
  static QVWave* playing;
  static bool stillPlaying;
  told = 0;
  playing = &wave;
  wave.setOnFinished(
      [](uint32_t argument) {
        told = argument;
        stillPlaying = playing->isPlaying();
        sleepMillis(50);
      },
      7);
  wave.play("short.wav", 1, true, nullptr);
  EXPECT_EQ(millisOf([&] { wave.wait(); }), 40u + 50u);
  EXPECT_EQ(told, 7u);
  EXPECT_TRUE(stillPlaying);
  EXPECT_FALSE(wave.isPlaying());
}

TEST_F(WaveTest, LeavesAPlaybackAloneThatDoesNotEndAndDropsTheNext) {
  wave.setOnFinished([](uint32_t) { sleepMillis(20'000); }, 0);
  wave.play("voice.wav", 0, true, nullptr);
  EXPECT_EQ(millisOf([&] { wave.stop(); }), QVWave::JoinMillis);
  expectBox("スレッドの終了を待てませんでした。", "QVWave - stop()");
  boxes().clear();
  wave.play("short.wav", 1, true, nullptr);
  ASSERT_EQ(boxes().size(), 2u);
  EXPECT_EQ(utf8OfShiftJis(boxes()[1].text),
            "何らかの理由で、再生スレッドが終了していません。\n再生を中止して継続します。");
  EXPECT_EQ(boxes()[1].caption, "QVWave - play()");
  EXPECT_EQ(sent().size(), 1u);
  wave.setShowErrors(false);
  wave.play("short.wav", 1, true, nullptr);
  EXPECT_EQ(boxes().size(), 2u);
  sleepMillis(20'000);
  EXPECT_FALSE(wave.isPlaying());
  wave.setOnFinished(nullptr, 0);
  wave.play("short.wav", 1, true, nullptr);
  EXPECT_EQ(sent().size(), 2u);
}

TEST_F(WaveTest, TellsAFileThatCannotBeReadAndGoesOn) {
  wave.play("wave\\none.wav", 1, true, nullptr);
  expectBox("指定された wave ファイルを読み込めません\nファイル名：wave\\none.wav",
            "QVWave - play()");
  wave.wait();
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_TRUE(sent().empty());
  wave.play("short.wav", 1, true, nullptr);
  EXPECT_EQ(sent().size(), 1u);
}

TEST_F(WaveTest, TellsWhatIsNoPcmInTheSameWords) {
  write("adpcm.wav", riff(chunk("fmt ", formatBytes(pcm(1, 8000, 8), 2)) + chunk("data", "1234")));
  write("text.wav", "this is no sound");
  write("empty.wav", "");
  for (const char* name : {"adpcm.wav", "text.wav", "empty.wav"}) {
    boxes().clear();
    wave.play(name, 1, true, nullptr);
    expectBox(std::string("指定された wave ファイルを読み込めません\nファイル名：") + name,
              "QVWave - play()");
  }
  EXPECT_TRUE(sent().empty());
}

TEST_F(WaveTest, TellsAFailureOfMemoryInTheSameWords) {
  {
    FailingHeap none;
    EXPECT_FALSE(wave.loadWave("voice.wav"));
  }
  EXPECT_TRUE(wave.loadWave("voice.wav"));
}

TEST_F(WaveTest, PlaysWithALongerFormat) {
  write("long.wav", riff(chunk("fmt ", formatBytes(pcm(1, 8000, 8)) + std::string(2, '\0')) +
                         chunk("data", std::string(80, '\x80'))));
  wave.play("long.wav", 1, true, nullptr);
  EXPECT_EQ(millisOf([&] { wave.wait(); }), 10u);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, TellsADeviceThatIsTaken) {
  platform.wave().setTaken(true);
  wave.play("voice.wav", 1, true, nullptr);
  expectBox(
      "WAVE再生デバイスが開けません。\n"
      "他のアプリケーションが使用中である可能性があります。\n"
      "ゲーム中は、他のアプリケーションでWAVE再生を行わない方が良いでしょう。\n"
      "音声の再生をスキップして処理を継続します。",
      "QVWave - play()");
  wave.wait();
  EXPECT_FALSE(wave.isPlaying());
  platform.wave().setTaken(false);
  wave.play("voice.wav", 1, true, nullptr);
  EXPECT_TRUE(wave.isPlaying());
}

TEST_F(WaveTest, TellsFormatsThatNoDeviceCanPlayAsATakenDevice) {
  WaveFormat noBlock = pcm(1, 8000, 8), wrongBlock = pcm(2, 8000, 16), noRate = pcm(1, 0, 8);
  noBlock.blockBytes = 0;
  wrongBlock.blockBytes = 3;
  int count = 0;
  for (const WaveFormat& format :
       {noBlock, wrongBlock, noRate, pcm(0, 8000, 8), pcm(3, 8000, 16), pcm(1, 8000, 24),
        pcm(1, 8000, 0), pcm(1, 999, 8), pcm(1, 0xFFFFFFFF, 8)}) {
    write("odd.wav", waveFile(format, "12345678"));
    boxes().clear();
    wave.play("odd.wav", 0, true, nullptr);
    EXPECT_EQ(boxes().size(), 1u) << count;
    wave.wait();
    EXPECT_FALSE(wave.isPlaying()) << count++;
  }
  EXPECT_TRUE(sent().empty());
}

TEST_F(WaveTest, StaysSilentWhenTheDeviceRefusesTheBuffer) {
  platform.wave().setRefusingWrites(true);
  wave.play("voice.wav", 1, true, nullptr);
  wave.wait();
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_FALSE(platform.wave().isOpen());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, ShowsNoBoxesWithoutTheFlag) {
  wave.setShowErrors(false);
  wave.play("none.wav", 1, true, nullptr);
  platform.wave().setTaken(true);
  wave.play("voice.wav", 1, true, nullptr);
  EXPECT_TRUE(boxes().empty());
}

/// However early the end comes, it is not taken for the signal of the opening.
TEST_F(WaveTest, EndsWithASoundOfNoLength) {
  write("nothing.wav", waveFile(pcm(1, 8000, 8), ""));
  write("half.wav", waveFile(pcm(2, 8000, 16), "123"));
  for (const char* name : {"nothing.wav", "half.wav"})
    for (const uint32_t loops : {1u, 3u, 0u}) {
      wave.play(name, loops, true, nullptr);
      EXPECT_EQ(millisOf([&] { wave.wait(); }), 0u) << name;
      EXPECT_FALSE(wave.isPlaying());
    }
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, ReadsVoicesFromTheDisc) {
  platform.writeFile(platform.disc() / "VOICE/VSYS/SYS03024.WAV", silentWave(25));
  wave.play("%:\\VOICE\\VSYS\\SYS03024.WAV", 1, true, nullptr);
  EXPECT_EQ(sent().size(), 1u);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(WaveTest, TellsEachFileThatIsNotOnTheDisc) {
  for (const char* name : {"%:\\VOICE\\V00\\a.wav", "%:\\VOICE\\V00\\b.wav"}) {
    boxes().clear();
    wave.play(name, 1, true, nullptr);
    expectBox(std::string("指定された wave ファイルを読み込めません\nファイル名：") + name,
              "QVWave - play()");
  }
}

TEST_F(WaveTest, DoesNothingWithoutAName) {
  wave.play(nullptr, 1, true, nullptr);
  EXPECT_FALSE(wave.isPlaying());
}

TEST(WaveWithoutADisc, IsToldOnceAndOnlyOfTheDiscsFiles) {
  TestPlatform platform(false, makeSimulatedKernel());
  platform.writeFile(platform.game() / "VOICE/here.wav", silentWave(10));
  QVWave wave;
  const auto boxesOf = [&](const char* name) {
    platform.dialogs.shown.clear();
    wave.play(name, 1, true, nullptr);
    wave.wait();
    return platform.dialogs.shown.size();
  };
  EXPECT_EQ(boxesOf("%:\\VOICE\\V00\\a.wav"), 1u);
  EXPECT_EQ(boxesOf("%:\\VOICE\\V00\\a.wav"), 0u);
  EXPECT_EQ(boxesOf("%:\\VOICE\\V00\\b.wav"), 0u);
  EXPECT_EQ(boxesOf("%:"), 0u);
  EXPECT_EQ(boxesOf("wave\\a.wav"), 1u) << "the game's own files";
  EXPECT_EQ(boxesOf("wave\\b.wav"), 1u);
  EXPECT_TRUE(platform.wave().sent().empty());
  EXPECT_EQ(boxesOf("%:\\VOICE\\here.wav"), 0u);
  EXPECT_EQ(platform.wave().sent().size(), 1u) << "who has copied the disc into the game";
}

TEST(WaveWithoutAMapper, IsToldOnceAndThenSilent) {
  TestPlatform platform(false, makeSimulatedKernel());
  platform.wave().setAvailable(false);
  platform.writeFile(platform.game() / "a.wav", silentWave(10));
  QVWave wave;
  EXPECT_FALSE(wave.available());
  wave.play("a.wav", 0, true, nullptr);
  wave.wait();
  wave.stop();
  EXPECT_FALSE(wave.isPlaying());
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(utf8OfShiftJis(platform.dialogs.shown[0].text),
            "このコンピューターでは、wave mapperが利用できません。\n"
            "音声や効果音の再生は行われませんので、あらかじめご了承下さい。");
  EXPECT_EQ(platform.dialogs.shown[0].caption, "QVWave - getDeviceCaps()");
}

// --- Mouths ---

class WaveMouth : public WaveTest {
 protected:
  WaveMouth() {
    writeLetters(platform);
    cells.load(3, "abc.bmp", false, KeyTopLeft);
    sequence.setText("BC", false);
    view.surface.fill(26);
    area.setPosition(1, 1);
    area.relate(&cells);
    area.relateSequence(&sequence);
    area.setView(&view);
  }
  std::string screen() { return textOf(view.surface); }

  FakeView view{4, 3};
  QVAnimationSurface cells;
  AnimationSequence sequence;
  QVAnimationArea area;
};

TEST_F(WaveMouth, MovesAsLongAsTheVoiceAndIsClosedAtItsEnd) {
  wave.play("voice.wav", 1, true, &area);
  sleepMillis(VoiceMillis - 100);
  EXPECT_TRUE(area.running());
  EXPECT_NE(screen(), "ZZZZ/ZAAZ/ZAAZ");
  wave.wait();
  EXPECT_FALSE(area.running());
  EXPECT_EQ(screen(), "ZZZZ/ZAAZ/ZAAZ");
}

TEST_F(WaveMouth, IsClosedByAStop) {
  wave.play("voice.wav", 1, true, &area);
  sleepMillis(100);
  wave.stop();
  EXPECT_FALSE(area.running());
  EXPECT_EQ(screen(), "ZZZZ/ZAAZ/ZAAZ");
}

TEST_F(WaveMouth, NeverMovesWithASoundThatIsNot) {
  wave.play("none.wav", 1, true, &area);
  platform.wave().setTaken(true);
  wave.play("voice.wav", 1, true, &area);
  platform.wave().setTaken(false);
  platform.wave().setRefusingWrites(true);
  wave.play("voice.wav", 1, true, &area);
  sleepMillis(100);
  EXPECT_FALSE(area.running());
  EXPECT_EQ(screen(), "ZZZZ/ZZZZ/ZZZZ");
}

TEST_F(WaveMouth, IsForgottenBeforeItGoes) {
  QVAnimationArea other;
  {
    QVAnimationArea mouth;
    mouth.setPosition(1, 1);
    mouth.relate(&cells);
    mouth.relateSequence(&sequence);
    mouth.setView(&view);
    wave.play("voice.wav", 1, true, &mouth);
    sleepMillis(100);
    EXPECT_TRUE(mouth.running());
    wave.forget(&other);
    wave.forget(&mouth);
  }
  const int updates = view.updateCount();
  wave.wait();
  EXPECT_EQ(view.updateCount(), updates);
}

TEST_F(WaveMouth, IsForgottenWhoeverItIs) {
  wave.play("voice.wav", 1, true, &area);
  wave.forget(nullptr);
  wave.stop();
  EXPECT_TRUE(area.running());
}

/// A device that takes its time to open.
class SlowWaveOutput : public NullWaveOutput {
 public:
  bool open(const WaveFormat& format, Event& done) override {
    sleepMillis(10);
    return NullWaveOutput::open(format, done);
  }
};

TEST(WaveOnASlowDevice, IsStoppedAlsoWhileItOpens) {
  TestPlatform platform(false, makeSimulatedKernel());
  platform.writeFile(platform.game() / "a.wav", silentWave(30));
  SlowWaveOutput device;
  Services withDevice = services();
  withDevice.wave = &device;
  const ServicesScope scope(withDevice);
  QVWave wave;
  Thread window;
  window.start("window", [&] {
    sleepMillis(5);
    wave.stop();
  });
  wave.play("a.wav", 0, true, nullptr);
  window.join();
  EXPECT_FALSE(wave.isPlaying());
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

/// Plays, stops, waits and forgets from two threads end, whoever comes first.
TEST(WaveSeeds, NeverHangs) {
  for (uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    platform.writeFile(platform.game() / "a.wav", silentWave(30));
    QVWave wave;
    Thread window;
    window.start("window", [&] {
      for (int i = 0; i < 5; ++i) {
        sleepMillis(7);
        wave.stop();
        wave.isPlaying();
      }
    });
    for (int i = 0; i < 5; ++i) {
      wave.play("a.wav", i % 2 ? 0 : 1, true, nullptr);
      sleepMillis(5);
      if (i % 2 == 0) wave.wait();
    }
    window.join();
    wave.stop();
    EXPECT_FALSE(wave.isPlaying());
    EXPECT_TRUE(platform.dialogs.shown.empty()) << "a stop was lost";
  }
}

TEST(WaveInRealTime, TakesAsLongAsItsSamples) {
  TestPlatform platform;
  platform.writeFile(platform.game() / "a.wav", silentWave(120));
  QVWave wave;
  wave.play("a.wav", 1, true, nullptr);
  const uint32_t start = tickCount();
  wave.wait();
  EXPECT_GE(tickCount() - start, 100u);
  EXPECT_LT(tickCount() - start, 5000u);
}

}  // namespace
}  // namespace qv::testing
