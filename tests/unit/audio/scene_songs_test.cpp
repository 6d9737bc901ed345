// The songs of scenes on a player that plays them.

#include <gtest/gtest.h>

#include "audio/scene/commands.h"
#include "platform/sound/null_midi_output.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/start/start.h"
#include "tests/support/song_bytes.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

class SceneSongs : public ::testing::Test {
 protected:
  SceneSongs() {
    for (const char* file : {"K03b.mid", "K04b.mid", "K03e.mid"})
      platform.writeFile(platform.game() / "midi" / file,
                         song({TrackBytes().event(0, {0x90, 60, 100}).end(1'000'000)}));
    manager.emplace();
    manager->Start(&host, "Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&*manager);
    SysReg(BgmEnabled) = 1;
    SysReg(MidiDeviceKind) = 2;
  }
  ~SceneSongs() override { setTheScenario(nullptr); }
  std::string file() { return manager->midi().fileName().text(); }
  MidiSequencer::State state() { return manager->midi().state(); }
  void expectRegisters(int32_t current, int32_t last) {
    EXPECT_EQ(Reg(BgmCurrentRegister), current);
    EXPECT_EQ(Reg(BgmLastRegister), last);
  }
  /// How often a song was begun since the last look.
  size_t begun() {
    size_t count = 0;
    for (const NullMidiOutput::Sent& one : output.takeSent())
      if (one.kind == NullMidiOutput::Kind::Open) ++count;
    return count;
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  NullMidiOutput output{100'000};
  Services withMidi = [this] {
    Services all = services();
    all.midi = &output;
    return all;
  }();
  ServicesScope scope{withMidi};
  FakeHost host;
  std::optional<QVScenario> manager;
};

TEST_F(SceneSongs, OneThatIsAskedForWhileItPlaysPlaysOnAndIsNotedAgain) {
  PlayBgm("K03", nullptr);
  EXPECT_EQ(begun(), 1u);
  Reg(BgmLastRegister) = 9;
  for (const char* mode : {static_cast<const char*>(nullptr), "FADEIN", "anything"}) {
    PlayBgm("K03", mode);
    EXPECT_EQ(begun(), 0u);
    EXPECT_EQ(state(), QVMidi::Playing);
  }
  expectRegisters(3, 3);
}

TEST_F(SceneSongs, InTheMiddleOfItsFadeOutOneStartsAgainFadingIn) {
  PlayBgm("K03", nullptr);
  PlayBgm("FADEOUT", nullptr);
  EXPECT_EQ(state(), QVMidi::FadingOut);
  expectRegisters(0, 0);
  sleepMillis(1000);
  EXPECT_EQ(begun(), 1u);
  PlayBgm("K03", "FADEIN");
  EXPECT_EQ(state(), QVMidi::FadingIn);
  EXPECT_EQ(begun(), 1u);
  EXPECT_EQ(manager->midi().loop(), 1u);
  expectRegisters(3, 3);
  sleepMillis(3100);
  EXPECT_EQ(state(), QVMidi::Playing);
}

TEST_F(SceneSongs, WithoutADeviceKindAreNotedAndHeardOnceThereIsOne) {
  SysReg(MidiDeviceKind) = 0;
  PlayBgm("K04", nullptr);
  PlayBgm("K03", nullptr);
  expectRegisters(3, 3);
  EXPECT_EQ(begun(), 0u);
  SysReg(MidiDeviceKind) = 5;
  RestoreBgm();
  EXPECT_EQ(begun(), 1u);
  EXPECT_EQ(file(), "midi\\K03e.mid");
  expectRegisters(3, 3);
}

TEST_F(SceneSongs, ARestoreWithoutADeviceKindStopsAndStartsNothing) {
  PlayBgm("K03", nullptr);
  SysReg(MidiDeviceKind) = 0;
  Reg(BgmLastRegister) = 4;
  RestoreBgm();
  EXPECT_EQ(state(), QVMidi::Stopped);
  EXPECT_EQ(begun(), 1u) << "that of the song before";
  expectRegisters(4, 4);
}

TEST_F(SceneSongs, SwitchedOffTheLastOneComesBackThoughItsSceneHasEndedIt) {
  PlayBgm("K03", nullptr);
  SysReg(BgmEnabled) = 0;
  PlayBgm("FADEOUT", nullptr);
  expectRegisters(0, 3);
  SysReg(BgmEnabled) = 1;
  RestoreBgm();
  EXPECT_EQ(file(), "midi\\K03b.mid");
  expectRegisters(3, 3);
}

TEST_F(SceneSongs, OfAModeThatIsNoneStopsAndIsNoted) {
  PlayBgm("K03", nullptr);
  PlayBgm("K04", "fadein");
  EXPECT_EQ(state(), QVMidi::Stopped);
  expectRegisters(4, 4);
}

TEST_F(SceneSongs, NullAndUnknownNamesEndWhatPlays) {
  for (const char* name : {static_cast<const char*>(nullptr), "K17", "k03", "fadeout"}) {
    PlayBgm("K03", nullptr);
    PlayBgm(name, nullptr);
    EXPECT_EQ(state(), QVMidi::Stopped);
    expectRegisters(0, 0);
  }
}

}  // namespace
}  // namespace qv::testing
