#include <gtest/gtest.h>

#include "audio/scene/commands.h"
#include "audio/scene/sound_tables.h"
#include "foundation/file.h"
#include "platform/display/key_codes.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/start/start.h"
#include "tests/support/wave_bytes.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

constexpr uint32_t EffectMillis = 700;

/// A story on its host, with the switches as a player has them.
class SceneSound : public ::testing::Test {
 protected:
  SceneSound() {
    manager.Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
    SysReg(SoundEffectsEnabled) = 1;
    SysReg(VoiceEnabled) = 1;
    SysReg(SpeakerVoiceFirst) = 1;
    Reg(SeLoopRegister) = 9999;
    for (const char* file : {"vlse005.wav", "vlse014.wav", "vlse055.wav", "vlse056.wav"})
      platform.writeFile(platform.game() / "wave" / file, silentWave(EffectMillis));
  }
  ~SceneSound() override { setTheScenario(nullptr); }

  size_t started() { return platform.wave().sent().size(); }
  bool sounds() { return manager.IsSoundPlaying(ChannelWave); }
  void expectNoted(int32_t code, int32_t loops) {
    EXPECT_EQ(Reg(SeCurrentRegister), code);
    EXPECT_EQ(Reg(SeLoopRegister), loops);
  }
  static uint32_t millisOf(const std::function<void()>& work) {
    const uint32_t start = tickCount();
    work();
    return tickCount() - start;
  }
  /// Gives the code to a wait after that time.
  void laterDeliver(uint32_t millis, int32_t code) {
    player.start("player", [this, millis, code] {
      sleepMillis(millis);
      host.deliverInput(code);
    });
  }

  TestPlatform platform{true, makeSimulatedKernel()};
  FakeHost host;
  QVScenario manager;
  Thread player;
};

TEST_F(SceneSound, AnEffectIsHeardByItsKeyAndNoted) {
  PlaySe("SE01", 1);
  ASSERT_EQ(started(), 1u);
  EXPECT_STREQ(manager.wave().currentPath().text(), "wave\\vlse005.wav");
  expectNoted(1, 1);
  PlaySe("SE02", 0);
  EXPECT_EQ(platform.wave().sent()[1].times, PlayForever);
  expectNoted(2, 0);
}

TEST_F(SceneSound, AnEffectIsHeardByItsLabel) {
  PlaySe(sjis("チャイム").c_str(), 1);
  EXPECT_STREQ(manager.wave().currentPath().text(), "wave\\vlse014.wav");
  expectNoted(2, 1);
}

TEST_F(SceneSound, NullAndUnknownNamesStopTheChannelAndTheNote) {
  for (const char* name : {static_cast<const char*>(nullptr), "SE62", "se01", "SE1", ""}) {
    PlaySe("SE01", 0);
    PlaySe(name, 1);
    EXPECT_FALSE(sounds());
    expectNoted(0, 9999);
  }
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(SceneSound, AnEffectAskedForWhileSkippingIsDropped) {
  PlaySe("SE01", 0);
  SysReg(SkipMode) = 1;
  PlaySe("SE02", 0);
  PlaySe(nullptr, 1);
  EXPECT_EQ(started(), 1u);
  EXPECT_TRUE(sounds());
  expectNoted(1, 0);
}

TEST_F(SceneSound, AnEffectWithTheSwitchOffIsDropped) {
  SysReg(SoundEffectsEnabled) = 0;
  PlaySe("SE02", 0);
  EXPECT_EQ(started(), 0u);
  expectNoted(0, 9999);
}

TEST_F(SceneSound, ARowWithoutAFileIsToldByTheWavePlayer) {
  PlaySe("SE17", 1);
  ASSERT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(utf8OfShiftJis(platform.dialogs.shown[0].text),
            "指定された wave ファイルを読み込めません\nファイル名：wave\\vlse.wav");
  expectNoted(17, 1);
}

TEST_F(SceneSound, StopSeStopsAndForgets) {
  PlaySe("SE01", 0);
  StopSe();
  EXPECT_FALSE(sounds());
  expectNoted(0, 9999);
}

TEST_F(SceneSound, OnlyEndlessEffectsComeBack) {
  PlaySe("SE01", 1);
  RestoreSe();
  EXPECT_EQ(started(), 1u);
  PlaySe("SE02", 0);
  StopSe();
  Reg(SeCurrentRegister) = 2;
  Reg(SeLoopRegister) = 0;
  RestoreSe();
  EXPECT_STREQ(manager.wave().currentPath().text(), "wave\\vlse014.wav");
  EXPECT_EQ(platform.wave().sent().back().times, PlayForever);
}

/// By way of a save, as players do it.
TEST_F(SceneSound, TheLastTwoEffectsStaySilentAfterALoad) {
  for (const char* name : {"SE60", "SE61"}) {
    PlaySe(name, 0);
    expectNoted(60, 0);
    QVFile save;
    save.openName("save", CreateAlways, GenericRead | GenericWrite, ShareRead, AttributeNormal);
    manager.SaveState(save);
    PlaySe(nullptr, 1);
    save.seek(0, SeekFrom::Start);
    manager.RestoreState(save);
    save.close();
    expectNoted(60, 0);
    const size_t before = started();
    RestoreSe();
    EXPECT_EQ(started(), before);
    EXPECT_FALSE(sounds());
  }
}

TEST_F(SceneSound, SongsAreKeptInTheRegistersWithoutADevice) {
  SysReg(BgmEnabled) = 1;
  PlayBgm("K03", nullptr);
  EXPECT_EQ(Reg(BgmCurrentRegister), 3);
  EXPECT_EQ(Reg(BgmLastRegister), 3);
  PlayBgm("FADEOUT", nullptr);
  EXPECT_EQ(Reg(BgmCurrentRegister), 0);
  EXPECT_EQ(Reg(BgmLastRegister), 3);
}

TEST_F(SceneSound, WaitSeWaitsItsTime) {
  EXPECT_EQ(millisOf([] { WaitSe(7); }), 700u);
}

TEST_F(SceneSound, WaitSeEndsWithAClick) {
  for (const int32_t code : {0, 10, 2048 + KeyReturn, 2048 + KeySpace}) {
    laterDeliver(300, code);
    EXPECT_EQ(millisOf([] { WaitSe(50); }), 300u);
    player.join();
    laterDeliver(300'000, code);
    EXPECT_EQ(millisOf([] { WaitSe(0); }), 300'000u);
    player.join();
  }
}

TEST_F(SceneSound, WaitSeIsNeitherEndedNorLengthenedByOtherInput) {
  for (const int32_t code : {-1, 4096 + 3, 2048 + KeyEscape}) {
    laterDeliver(300, code);
    EXPECT_EQ(millisOf([] { WaitSe(8); }), 800u);
    player.join();
  }
}

TEST_F(SceneSound, WaitSeReturnsAtOnceWhereNoEffectIsHeard) {
  SysReg(SkipMode) = 1;
  EXPECT_EQ(millisOf([] { WaitSe(50); }), 0u);
  SysReg(SkipMode) = 0;
  SysReg(SoundEffectsEnabled) = 0;
  EXPECT_EQ(millisOf([] { WaitSe(0); }), 0u);
}

TEST_F(SceneSound, WaitSeRaisesOnTheAbort) {
  player.start("closing", [&] {
    sleepMillis(200);
    host.abortEvent.set();
  });
  EXPECT_THROW(WaitSe(0), ExitScenarioException);
  player.join();
}

TEST_F(SceneSound, ASystemVoiceIsHeardOnlyWithBothSwitches) {
  platform.writeFile(platform.disc() / "VOICE/VSYS/IC_001.wav", silentWave(500));
  const char* voice = "%:\\VOICE\\VSYS\\IC_001.wav";
  SysReg(VoiceEnabled) = 0;
  PlaySystemVoice(voice);
  SysReg(VoiceEnabled) = 1;
  SysReg(SpeakerVoiceFirst) = 2;
  PlaySystemVoice(voice);
  EXPECT_EQ(started(), 0u);
  SysReg(SpeakerVoiceFirst) = 1;
  PlaySystemVoice(voice);
  EXPECT_EQ(started(), 1u);
}

TEST_F(SceneSound, WaitVoiceThenPauseLooksFiveTimesASecondAndAddsASecond) {
  PlaySe("SE01", 1);
  EXPECT_EQ(millisOf([] { WaitVoiceThenPause(); }), 800u + 1000u);
  EXPECT_EQ(millisOf([] { WaitVoiceThenPause(); }), 1000u);
}

TEST_F(SceneSound, WaitVoiceOrPauseAsksTheSwitches) {
  PlaySe("SE01", 1);
  SysReg(VoiceEnabled) = 0;
  EXPECT_EQ(millisOf([] { WaitVoiceOrPause(4); }), 400u);
  SysReg(VoiceEnabled) = 1;
  EXPECT_EQ(millisOf([] { WaitVoiceOrPause(3); }), 400u + 1000u);
}

TEST_F(SceneSound, WaitVoiceThenPauseIsLeftAtTheAbort) {
  PlaySe("SE01", 0);
  player.start("closing", [&] {
    sleepMillis(5000);
    host.abortEvent.set();
  });
  const uint32_t start = tickCount();
  EXPECT_THROW(WaitVoiceThenPause(), ExitScenarioException);
  EXPECT_EQ(tickCount() - start, 5000u);
  player.join();
}

TEST(SceneSoundsWithoutAGame, DoNothing) {
  TestPlatform platform(false, makeSimulatedKernel());
  PlayBgm("K01", nullptr);
  RestoreBgm();
  PlaySe("SE01", 1);
  RestoreSe();
  StopSe();
  WaitSe(0);
  PlayWave("a.wav", 1, 1, nullptr);
  PlaySystemVoice("a.wav");
  WaitSound(WaitForWave);
  WaitVoiceThenPause();
  WaitVoiceOrPause(5);
  EXPECT_TRUE(platform.wave().sent().empty());
}

TEST(SoundTables, HaveNoFileOutsideTheirRows) {
  EXPECT_EQ(songFile(0, 1), "");
  EXPECT_EQ(songFile(17, 1), "");
  EXPECT_EQ(songFile(1, 0), "");
  EXPECT_EQ(songFile(1, 6), "");
  EXPECT_EQ(songFile(16, 5), "midi\\K16e.mid");
  for (const char* name : {"K00", "K17", "k01", "K1", "K001", ""})
    EXPECT_EQ(songNumber(name), 0) << name;
  EXPECT_EQ(songNumber(nullptr), 0);
  EXPECT_EQ(soundEffects().size(), 61u);
}

}  // namespace
}  // namespace qv::testing
