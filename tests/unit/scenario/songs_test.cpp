#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/path_name.h"
#include "platform/sound/null_midi_output.h"
#include "scenario/scenario.h"
#include "tests/support/song_bytes.h"
#include "tests/support/test_platform.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

/// Opens the services to a MIDI device before the manager is made.
struct WithMidi {
  explicit WithMidi(MidiOutput* output) : all(services()) {
    all.midi = output;
    scope.emplace(all);
  }
  Services all;
  std::optional<ServicesScope> scope;
};

class ManagerSongs : public ::testing::Test {
 protected:
  ManagerSongs() {
    TrackBytes track;
    track.event(0, {0x90, 0x40, 0x40}).end(1'000'000);
    platform.writeFile(platform.game() / "midi" / "a.mid", song({track}));
    manager.Start(&host, "Test", 8, 4, 16);
  }
  void saveTo(const char* name) {
    QVFile file;
    file.open(QVPathName(name), CreateAlways, GenericRead | GenericWrite, ShareRead,
              AttributeNormal);
    manager.SaveState(file);
    file.close();
  }
  void restoreFrom(const char* name, int32_t releaseAll = 0, int32_t restartMusic = 0) {
    QVFile file;
    file.open(QVPathName(name), OpenExisting, GenericRead, ShareRead, AttributeNormal);
    manager.RestoreState(file, nullptr, releaseAll, restartMusic);
    file.close();
  }
  size_t notes() {
    size_t count = 0;
    for (const NullMidiOutput::Sent& one : output.takeSent())
      if (one.kind == NullMidiOutput::Kind::Short && one.bytes[0] == 0x90) ++count;
    return count;
  }

  static constexpr const char* Song = "midi\\a.mid";
  TestPlatform platform{false, makeSimulatedKernel()};
  NullMidiOutput output{100'000};
  WithMidi midi{&output};
  FakeHost host;
  QVScenario manager;
};

TEST_F(ManagerSongs, PlayAtOnceAndStopByTheirChannel) {
  manager.PlayMidi(Song, 1);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelMidi));
  EXPECT_EQ(manager.midi().loop(), 1u);
  EXPECT_TRUE(manager.midi().fileName().equals(Song));
  sleepMillis(100);
  EXPECT_EQ(notes(), 1u);
  manager.StopSound(ChannelWave);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelMidi));
  manager.StopSound(ChannelMidi);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi));
}

TEST_F(ManagerSongs, DoNotCountAsPlayingWhileTheyFade) {
  manager.FadeInSound(ChannelMidi, Song, 1000);
  EXPECT_EQ(manager.midi().state(), QVMidi::FadingIn);
  EXPECT_EQ(manager.midi().loop(), 1u);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi));
  sleepMillis(1100);
  EXPECT_TRUE(manager.IsSoundPlaying(ChannelMidi));
  manager.FadeOutSound(ChannelMidi, 1000);
  EXPECT_FALSE(manager.IsSoundPlaying(ChannelMidi));
  EXPECT_EQ(manager.midi().state(), QVMidi::FadingOut);
}

TEST_F(ManagerSongs, AreWaitedForToTheEndOfTheirFade) {
  manager.PlayMidi(Song, 1);
  manager.FadeOutSound(ChannelMidi, 3000);
  const uint32_t start = tickCount();
  manager.WaitSound(ChannelMidi);
  EXPECT_EQ(manager.midi().state(), QVMidi::Stopped);
  EXPECT_GE(tickCount() - start, 2400u);
  EXPECT_LE(tickCount() - start, 2500u);
}

TEST_F(ManagerSongs, AnAbortEndsTheWaitForThemAtOnce) {
  manager.PlayMidi(Song, 1);
  Thread closing;
  closing.start("closing", [&] {
    sleepMillis(700);
    host.abortEvent.set();
  });
  const uint32_t start = tickCount();
  EXPECT_THROW(manager.WaitSound(ChannelMidi), ExitScenarioException);
  EXPECT_EQ(tickCount() - start, 700u);
  closing.join();
}

TEST_F(ManagerSongs, AskForTheDevice) {
  EXPECT_EQ(manager.MidiDeviceCaps(nullptr), 1);
  MidiCaps caps;
  EXPECT_EQ(manager.MidiDeviceCaps(&caps), 1);
  EXPECT_STREQ(caps.name, "silent MIDI");
  EXPECT_EQ(caps.channelMask, 0xFFFF);

  const WithMidi none{nullptr};
  QVScenario other;
  MidiCaps untouched;
  EXPECT_EQ(other.MidiDeviceCaps(nullptr), 0);
  EXPECT_EQ(other.MidiDeviceCaps(&untouched), 0);
  EXPECT_STREQ(untouched.name, "");
  other.PlayMidi(Song, 1);
  EXPECT_EQ(other.midi().state(), QVMidi::Stopped);
}

TEST_F(ManagerSongs, OfASavePlayFromTheirBeginningOnlyWhenAsked) {
  manager.PlayMidi(Song, 1);
  saveTo("save0.dat");
  manager.StopSound(ChannelMidi);
  manager.midi().load(*std::make_unique<QVFile>(), true);  // a closed file says nothing
  output.takeSent();

  restoreFrom("save0.dat");
  EXPECT_EQ(manager.midi().state(), QVMidi::Stopped);
  EXPECT_TRUE(manager.midi().fileName().equals(Song));
  EXPECT_EQ(manager.midi().loop(), 1u);

  restoreFrom("save0.dat", 0, 1);
  EXPECT_EQ(manager.midi().state(), QVMidi::Playing);
  sleepMillis(100);
  EXPECT_EQ(notes(), 1u);
}

TEST_F(ManagerSongs, StopWithARestoreThatReleasesAllAndWithTheRun) {
  saveTo("save0.dat");
  manager.PlayMidi(Song, 1);
  restoreFrom("save0.dat", 1);
  EXPECT_EQ(manager.midi().state(), QVMidi::Stopped);
  manager.PlayMidi(Song, 1);
  manager.Release();
  EXPECT_EQ(manager.midi().state(), QVMidi::Stopped);
  EXPECT_FALSE(output.isOpen());
}

TEST_F(ManagerSongs, ThatAreMissingRaise) {
  EXPECT_THROW(manager.PlayMidi("midi\\none.mid", 1), CannotOpenException);
  EXPECT_EQ(manager.midi().state(), QVMidi::Stopped);
}

}  // namespace
}  // namespace qv::testing
