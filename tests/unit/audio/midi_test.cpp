/// The song player: its states, fades, device, record and threads.

#include <mutex>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/path_name.h"
#include "tests/support/failing_heap.h"
#include "tests/unit/audio/midi_stage.h"

namespace qv::testing {
namespace {

using Kind = NullMidiOutput::Kind;

constexpr uint32_t TicksPerStep = 120;

TrackBytes lasting(uint32_t steps) {
  TrackBytes track;
  return track.event(0, {0x90, 0x40, 0x40}).end(steps * TicksPerStep);
}
std::string longSong() {
  return song({lasting(100'000)});
}

/// The volumes that a fade sent, one for the sixteen channels, with their steps.
std::vector<std::pair<uint32_t, int>> volumesOf(const Heard& heard) {
  std::vector<std::pair<uint32_t, int>> volumes;
  for (const auto& [step, message] : heard)
    if (message.substr(0, 4) == "bf07")
      volumes.emplace_back(step, std::stoi(message.substr(4), nullptr, 16));
  return volumes;
}

std::vector<Kind> kindsOf(const std::vector<NullMidiOutput::Sent>& sent) {
  std::vector<Kind> kinds;
  for (const NullMidiOutput::Sent& one : sent)
    if (one.kind != Kind::Short) kinds.push_back(one.kind);
  return kinds;
}

// --- Play and stop ---

TEST(MidiPlayer, IsStoppedUntilItPlays) {
  MidiStage stage;
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  stage.play(longSong());
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  EXPECT_TRUE(stage.midi->isPlaying());
  EXPECT_TRUE(stage.output.isOpen());
  stage.midi->stop(QVMidi::AtOnce, 2000);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_FALSE(stage.output.isOpen());
}

TEST(MidiPlayer, SilencesAllChannelsThenTheDeviceWhenItStops) {
  MidiStage stage;
  stage.play(longSong());
  stage.callbacks(3);
  stage.output.takeSent();
  stage.midi->stop(QVMidi::AtOnce, 2000);
  const auto sent = stage.output.takeSent();
  ASSERT_EQ(sent.size(), 34u);
  for (uint8_t channel = 0; channel < 16; ++channel) {
    EXPECT_EQ(sent[channel].bytes, (std::vector<uint8_t>{uint8_t(0xB0 | channel), 120, 0}));
    EXPECT_EQ(sent[channel + 16u].bytes, (std::vector<uint8_t>{uint8_t(0xB0 | channel), 121, 0}));
  }
  EXPECT_EQ(sent[32].kind, Kind::Reset);
  EXPECT_EQ(sent[33].kind, Kind::Close);
  // Nothing ticks any more.
  stage.callbacks(10);
  EXPECT_TRUE(stage.output.takeSent().empty());
  stage.midi->stop(QVMidi::AtOnce, 2000);
  EXPECT_TRUE(stage.output.takeSent().empty());
}

TEST(MidiPlayer, StopsTheOldSongWhenANewOnePlays) {
  MidiStage stage;
  stage.play(longSong());
  stage.callbacks(2);
  stage.play(longSong());
  EXPECT_EQ(kindsOf(stage.output.takeSent()),
            (std::vector<Kind>{Kind::Open, Kind::Reset, Kind::Close, Kind::Open}));
  stage.callbacks(1);
  EXPECT_EQ(stage.heard(), (Heard{{1, "904040"}}));
}

TEST(MidiPlayer, PlaysOnAfterASongWithoutALoopHasPlayedOut) {
  MidiStage stage;
  stage.play(song({lasting(3)}));
  stage.callbacks(1000);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  Event abort("abort", Event::Reset::Manual);
  Thread other;
  other.start("abort", [&] {
    sleepMillis(60'000);
    abort.set();
  });
  EXPECT_THROW(stage.midi->waitEnd(abort), ExitScenarioException);
  other.join();
  stage.midi->stop(QVMidi::AtOnce, 2000);
  abort.reset();
  EXPECT_NO_THROW(stage.midi->waitEnd(abort));
}

TEST(MidiPlayer, WaitsUntilAFadeHasEnded) {
  MidiStage stage;
  stage.play(longSong());
  stage.midi->stop(QVMidi::FadeOut, 1000);
  Event abort("abort", Event::Reset::Manual);
  const uint32_t start = tickCount();
  stage.midi->waitEnd(abort);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_GE(tickCount() - start, 700u);
  EXPECT_LE(tickCount() - start, 1000u);
}

TEST(MidiPlayer, PausedTakesNoSteps) {
  MidiStage stage;
  stage.write("song.mid", longSong());
  QVFile file;
  file.openName("song.mid", OpenExisting, GenericRead, ShareRead, AttributeNormal);
  const MidiFile bytes(file);
  MidiSequencer sequencer;
  sequencer.load(bytes);
  stage.output.open();
  sequencer.start(stage.output, false, 0, 0);
  sequencer.setState(MidiSequencer::Paused);
  stage.output.takeSent();
  sequencer.step(16);
  EXPECT_TRUE(stage.output.takeSent().empty());
  sequencer.setState(MidiSequencer::Playing);
  sequencer.step(16);
  EXPECT_EQ(stage.output.takeSent().size(), 1u);
  stage.output.close();
}

// --- Fades ---

TEST(MidiFade, OutOf3000FromVolume100EndsAt2400OnItsFixedScale) {
  MidiStage stage;
  stage.play(longSong());
  stage.midi->stop(QVMidi::FadeOut, 3000);
  EXPECT_EQ(stage.midi->state(), QVMidi::FadingOut);
  EXPECT_FALSE(stage.midi->isPlaying());
  stage.callbacks(149);
  EXPECT_EQ(stage.midi->state(), QVMidi::FadingOut);
  stage.callbacks(1);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  const auto volumes = volumesOf(stage.heard());
  ASSERT_EQ(volumes.size(), 30u);
  EXPECT_EQ(volumes[0], (std::pair<uint32_t, int>{5, 100 - 127 * 80 / 3000}));
  EXPECT_EQ(volumes[1], (std::pair<uint32_t, int>{10, 100 - 127 * 160 / 3000}));
  EXPECT_EQ(volumes[29], (std::pair<uint32_t, int>{150, 0}));
  EXPECT_FALSE(stage.output.isOpen());
}

TEST(MidiFade, OutOfNoTimeEndsAtTheFifthStep) {
  MidiStage stage;
  stage.play(longSong());
  stage.midi->stop(QVMidi::FadeOut, 0);
  stage.callbacks(4);
  EXPECT_EQ(stage.midi->state(), QVMidi::FadingOut);
  stage.callbacks(1);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
}

TEST(MidiFade, InEndsInPlainPlayingWhenItHasReachedTheVolume) {
  MidiStage stage;
  stage.play(longSong(), 1, QVMidi::FadeIn, 1000);
  EXPECT_EQ(stage.midi->state(), QVMidi::FadingIn);
  stage.callbacks(64);
  EXPECT_EQ(stage.midi->state(), QVMidi::FadingIn);
  stage.callbacks(1);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  const auto volumes = volumesOf(stage.heard());
  ASSERT_EQ(volumes.size(), 13u);
  EXPECT_EQ(volumes[0], (std::pair<uint32_t, int>{5, 0}));
  EXPECT_EQ(volumes[12], (std::pair<uint32_t, int>{65, 100}));
}

TEST(MidiFade, InComparesWithTheVolumeThatTheSongSetsMeanwhile) {
  MidiStage stage;
  TrackBytes track;
  track.event(10 * TicksPerStep, {0xB3, 7, 60}).end(100'000);
  stage.play(song({track}), 1, QVMidi::FadeIn, 1000);
  stage.callbacks(70);
  const Heard heard = stage.heard();
  // Whatever the file says, what is sent is that volume under the fade: 60 - 127 + 20.
  EXPECT_EQ(std::count(heard.begin(), heard.end(), std::pair<uint32_t, std::string>{10, "b30700"}),
            2);  // the fade's own of that step, and the song's
  EXPECT_EQ(volumesOf(heard).back(), (std::pair<uint32_t, int>{65, 60}));
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
}

TEST(MidiFade, OutStartsFromTheLastVolumeOfAnyChannel) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0xB0, 7, 120}).event(0, {0xB1, 7, 40}).end(100'000);
  stage.play(song({track}));
  stage.callbacks(1);
  EXPECT_EQ(stage.heard(), (Heard{{1, "b00778"}, {1, "b10728"}}));
  stage.midi->stop(QVMidi::FadeOut, 1000);
  stage.callbacks(5);
  EXPECT_EQ(volumesOf(stage.heard()), (std::vector<std::pair<uint32_t, int>>{{6, 40 - 10}}));
  stage.callbacks(100);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
}

TEST(MidiFade, IsCancelledByTheSongsNewBeginning) {
  MidiStage stage;
  stage.play(song({lasting(20)}), 1);
  stage.midi->stop(QVMidi::FadeOut, 3000);
  stage.callbacks(30);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
}

TEST(MidiFade, OutIsCutOffByANewSong) {
  MidiStage stage;
  stage.play(longSong());
  stage.midi->stop(QVMidi::FadeOut, 3000);
  stage.callbacks(50);
  stage.play(longSong());
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  stage.output.takeSent();
  stage.callbacks(200);
  EXPECT_EQ(stage.heard(), (Heard{{1, "904040"}}));
}

TEST(MidiFade, OutOfAStoppedSongDoesNothing) {
  MidiStage stage;
  stage.midi->stop(QVMidi::FadeOut, 1000);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
}

TEST(MidiFade, OutEndsEvenWhereABrokenSongSetsAVolumeBeyondTheGreatest) {
  MidiStage stage;
  TrackBytes track;
  track.event(0, {0xB0, 7, 0xFF}).end(100'000);
  stage.play(song({track}));
  stage.callbacks(1);
  stage.midi->stop(QVMidi::FadeOut, 100);
  stage.callbacks(10);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
}

// --- Devices and files that are not there ---

TEST(MidiDevice, ThatIsNotThereMakesEverythingDoNothing) {
  TestPlatform platform(false, makeSimulatedKernel());
  QVMidi midi;
  EXPECT_FALSE(midi.available());
  Event abort("abort", Event::Reset::Manual, true);
  midi.play("no such file", QVMidi::AtOnce, 0, 1);
  midi.stop(QVMidi::FadeOut, 100);
  midi.waitEnd(abort);
  EXPECT_EQ(midi.state(), QVMidi::Stopped);
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST(MidiDevice, ThatSaysThatItIsNoneIsTheSame) {
  MidiStage stage;
  stage.midi.reset();
  stage.output.setAvailable(false);
  stage.midi.emplace();
  stage.play(longSong());
  EXPECT_FALSE(stage.midi->available());
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_TRUE(stage.output.takeSent().empty());
}

TEST(MidiDevice, ThatIsTakenIsSilence) {
  MidiStage stage;
  stage.output.setTaken(true);
  stage.play(longSong());
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  stage.callbacks(5);
  stage.output.setTaken(false);
  EXPECT_TRUE(stage.output.takeSent().empty());
  stage.play(longSong());
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
}

TEST(MidiLoad, OfAnotherKindOfFileRunsInSilenceUntilItIsStopped) {
  MidiStage stage;
  stage.play(longSong(), 1);
  stage.write("other.mid", "RIFF....WAVE and so on");
  stage.midi->play("other.mid", QVMidi::AtOnce, 0, 1);
  stage.output.takeSent();
  stage.callbacks(10);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  EXPECT_TRUE(stage.output.isOpen());
  EXPECT_TRUE(stage.heard().empty());
  // The record keeps the name of the last song that was one.
  EXPECT_TRUE(stage.midi->fileName().equals("song.mid"));
}

TEST(MidiLoad, OfAMissingFileRaisesAndLeavesNoSong) {
  MidiStage stage;
  stage.play(longSong());
  EXPECT_THROW(stage.midi->play("missing.mid", QVMidi::AtOnce, 0, 1), CannotOpenException);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_FALSE(stage.output.isOpen());
}

TEST(MidiLoad, WithoutMemoryRaises) {
  MidiStage stage;
  stage.write("song.mid", longSong());
  for (int failing = 0; failing < 40; ++failing) {
    FailingHeap heap(failing, 1);
    try {
      stage.midi->play("song.mid", QVMidi::AtOnce, 0, 1);
    } catch (const NotEnoughMemoryException& exception) {
      if (std::string(exception.title()) == "QVMidi - loadMidi") {
        EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
        return;
      }
    }
  }
  FAIL() << "no allocation of the song was refused";
}

// --- The record ---

std::string word(uint32_t value) {
  std::string bytes;
  for (int at = 0; at < 4; ++at)
    bytes += static_cast<char>(value >> 8 * at);
  return bytes;
}
std::string text(const std::string& bytes) {
  return word(static_cast<uint32_t>(bytes.size() + 1)) + bytes + '\0';
}

class MidiRecord : public ::testing::Test {
 protected:
  std::string saved() {
    QVFile file;
    file.open(QVPathName("record.dat"), CreateAlways, GenericWrite, ShareRead, AttributeNormal);
    stage.midi->save(file);
    file.close();
    return stage.platform.readFile(stage.platform.player() / "record.dat");
  }
  void load(const std::string& bytes, bool restart) {
    stage.platform.writeFile(stage.platform.player() / "record.dat", bytes);
    QVFile file;
    file.openName("record.dat", OpenExisting, GenericRead, ShareRead, AttributeNormal);
    stage.midi->load(file, restart);
  }
  MidiStage stage;
};

TEST_F(MidiRecord, CountsASongThatFadesOutAsNotPlaying) {
  EXPECT_EQ(saved(), word(0) + word(0) + text(""));
  stage.play(longSong(), 1, QVMidi::FadeIn, 500);
  EXPECT_EQ(saved(), word(1) + word(1) + text("song.mid"));
  stage.callbacks(100);
  EXPECT_EQ(saved(), word(1) + word(1) + text("song.mid"));
  stage.midi->stop(QVMidi::FadeOut, 500);
  EXPECT_EQ(saved(), word(0) + word(1) + text("song.mid"));
  stage.play(longSong(), 0);
  stage.midi->stop(QVMidi::AtOnce, 2000);
  EXPECT_EQ(saved(), word(0) + word(0) + text("song.mid"));
}

TEST_F(MidiRecord, StopsTheSongAndPlaysTheRecordsOnlyWhenAsked) {
  stage.write("a.mid", longSong());
  stage.play(longSong());
  load(word(1) + word(1) + text("a.mid"), false);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_TRUE(stage.midi->fileName().equals("a.mid"));
  EXPECT_EQ(stage.midi->loop(), 1u);
  load(word(1) + word(1) + text("a.mid"), true);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing);
  load(word(0) + word(1) + text("a.mid"), true);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
}

TEST_F(MidiRecord, CutShortLeavesLoopAndNameAndStopsTheSong) {
  const std::string whole = word(1) + word(7) + text("a.mid");
  for (size_t length = 0; length < whole.size(); ++length) {
    stage.play(longSong(), 1);
    load(whole.substr(0, length), true);
    EXPECT_EQ(stage.midi->state(), QVMidi::Stopped) << length;
    EXPECT_EQ(stage.midi->loop(), 1u) << length;
    EXPECT_TRUE(stage.midi->fileName().equals("song.mid")) << length;
  }
}

// --- Threads ---

/// Stops its song from within a message.
class StoppingOutput : public NullMidiOutput {
 public:
  StoppingOutput() : NullMidiOutput(1000) {}
  void shortMessage(uint32_t message) override {
    NullMidiOutput::shortMessage(message);
    if ((message & 0xF0) == 0x90) midi->stop(QVMidi::AtOnce, 2000);
  }
  QVMidi* midi = nullptr;
};

TEST(MidiThreads, StopFromTheStepItself) {
  TestPlatform platform(false, makeSimulatedKernel());
  StoppingOutput output;
  Services with = services();
  with.midi = &output;
  const ServicesScope scope(with);
  QVMidi midi;
  output.midi = &midi;
  TrackBytes track;
  track.event(TicksPerStep, {0x90, 1, 9}).event(0, {0x80, 1, 9}).end(100'000);
  platform.writeFile(platform.game() / "song.mid", song({track}));
  for (int round = 0; round < 3; ++round) {
    midi.play("song.mid", QVMidi::AtOnce, 0, 1);
    sleepMillis(100);
    EXPECT_EQ(midi.state(), QVMidi::Stopped);
    const auto sent = output.takeSent();
    ASSERT_EQ(sent.size(), 1u + 1 + 32 + 2);
    EXPECT_EQ(kindsOf(sent), (std::vector<Kind>{Kind::Open, Kind::Reset, Kind::Close}));
  }
}

/// A box that stands while another thread plays a song.
class PlayingDialogs : public RecordingDialogs {
 public:
  explicit PlayingDialogs(MidiStage& stage) : stage_(stage) {}
  BoxAnswer messageBox(std::string_view, std::string_view, uint32_t) override {
    Thread other;
    other.start("other", [this] { stage_.midi->play("other.mid", QVMidi::AtOnce, 0, 1); });
    other.join();
    stage_.write("late.mid", "This is no song, and longer than a head.");
    return BoxAnswer::Retry;
  }

 private:
  MidiStage& stage_;
};

TEST(MidiThreads, AFileThatIsNoSongTakesTheOneAwayThatAnotherThreadHasLoadedMeanwhile) {
  MidiStage stage;
  TrackBytes track;
  for (int note = 0; note < 40; ++note)
    track.event(TicksPerStep, {0x90, 60, 9});
  stage.write("other.mid", song({track.end(100'000)}));
  PlayingDialogs dialogs(stage);
  Services with = services();
  with.dialogs = &dialogs;
  const ServicesScope scope(with);
  stage.midi->play("late.mid", QVMidi::AtOnce, 0, 1);
  EXPECT_STREQ(stage.midi->fileName().text(), "other.mid");
  stage.output.takeSent();
  sleepMillis(30 * QVMidi::PeriodMillis);
  EXPECT_EQ(stage.midi->state(), QVMidi::Playing) << "in silence";
  EXPECT_EQ(stage.heard(), Heard());
}

class MidiThreadsOfBothKernels : public ::testing::TestWithParam<bool> {};

TEST_P(MidiThreadsOfBothKernels, PlayFadeAndStopFromTwoSides) {
  MidiStage stage(GetParam() ? makeSimulatedKernel({.seed = 7}) : makeRealKernel());
  stage.write("a.mid", song({lasting(2)}));
  Thread other;
  other.start("other", [&] {
    for (int round = 0; round < 30; ++round) {
      stage.midi->stop(round % 3 ? QVMidi::FadeOut : QVMidi::AtOnce, 20);
      sleepMillis(7);
      static_cast<void>(stage.midi->isPlaying() || stage.midi->fileName().length() > 100);
    }
  });
  for (int round = 0; round < 20; ++round) {
    stage.midi->play("a.mid", round % 2 ? QVMidi::FadeIn : QVMidi::AtOnce, 30, round & 1);
    sleepMillis(11);
  }
  other.join();
  stage.midi->stop(QVMidi::AtOnce, 0);
  EXPECT_EQ(stage.midi->state(), QVMidi::Stopped);
  EXPECT_FALSE(stage.output.isOpen());
  // Every opening has its reset and its close, in turn.
  const std::vector<Kind> kinds = kindsOf(stage.output.takeSent());
  ASSERT_EQ(kinds.size(), 60u);
  for (size_t at = 0; at < kinds.size(); at += 3) {
    EXPECT_EQ(kinds[at], Kind::Open);
    EXPECT_EQ(kinds[at + 1], Kind::Reset);
    EXPECT_EQ(kinds[at + 2], Kind::Close);
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, MidiThreadsOfBothKernels, ::testing::Bool());

TEST(MidiThreads, RunTheSameInSimulatedTimeEachTime) {
  const auto run = [] {
    MidiStage stage(makeSimulatedKernel({.seed = 3}));
    stage.play(song({lasting(50), lasting(70)}), 1, QVMidi::FadeIn, 400);
    stage.callbacks(100);
    stage.midi->stop(QVMidi::FadeOut, 300);
    stage.callbacks(100);
    return stage.output.takeSent();
  };
  const auto first = run();
  EXPECT_GT(first.size(), 100u);
  EXPECT_EQ(run(), first);
}

}  // namespace
}  // namespace qv::testing
