/// The synthesiser, with the sound font of the packages, and songs rendered through it in simulated
/// time: sixteen milliseconds of the timer, then sixteen milliseconds of samples.

#include "platform/devices/synthesiser.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "audio/midi.h"
#include "platform/devices/midi_port.h"
#include "tests/support/song_bytes.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

constexpr uint32_t SampleRate = 44100;
constexpr uint32_t StepFrames = SampleRate * QVMidi::PeriodMillis / 1000;
const std::filesystem::path SoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";

using Samples = std::vector<float>;

std::unique_ptr<Synthesiser> makeWithFont() {
  std::string whyNot;
  std::unique_ptr<Synthesiser> synthesiser = makeSynthesiser(SampleRate, SoundFont, whyNot);
  EXPECT_EQ(whyNot, "");
  return synthesiser;
}

float loudest(const Samples& samples) {
  float most = 0;
  for (const float sample : samples)
    most = std::max(most, std::abs(sample));
  return most;
}

void renderInto(Samples& samples, Synthesiser& synthesiser, uint32_t frames, float gain = 1) {
  const size_t start = samples.size();
  samples.resize(start + size_t{2} * frames);
  synthesiser.render(samples.data() + start, frames, gain);
}

Samples rendered(Synthesiser& synthesiser, uint32_t frames = SampleRate / 2, float gain = 1) {
  Samples samples;
  renderInto(samples, synthesiser, frames, gain);
  return samples;
}

void send(Synthesiser& synthesiser, std::initializer_list<uint8_t> bytes) {
  const std::vector<uint8_t> message(bytes);
  if (message[0] == 0xF0) {
    synthesiser.longMessage(message);
    return;
  }
  uint32_t word = 0;
  for (size_t at = 0; at < message.size(); ++at)
    word |= uint32_t{message[at]} << (8 * at);
  synthesiser.shortMessage(word);
}

class SynthesiserTest : public ::testing::Test {
  KernelScope kernel_{makeRealKernel()};
};

TEST_F(SynthesiserTest, SoundsFromANoteToItsReset) {
  const auto synthesiser = makeWithFont();
  ASSERT_TRUE(synthesiser->open());
  EXPECT_FALSE(synthesiser->open());
  EXPECT_EQ(loudest(rendered(*synthesiser)), 0);
  send(*synthesiser, {0xC0, 19});
  send(*synthesiser, {0x90, 60, 100});
  EXPECT_GT(loudest(rendered(*synthesiser)), 0.01F);
  synthesiser->reset();
  EXPECT_EQ(loudest(rendered(*synthesiser)), 0);
  synthesiser->close();
  EXPECT_TRUE(synthesiser->open());
}

TEST_F(SynthesiserTest, AddsToWhatIsThereTimesItsGain) {
  const auto play = [](float ground, float gain) {
    const auto synthesiser = makeWithFont();
    send(*synthesiser, {0x90, 60, 100});
    Samples samples(size_t{2} * 4096, ground);
    synthesiser->render(samples.data(), 4096, gain);
    return samples;
  };
  const Samples plain = play(0, 1), raised = play(0.25F, 0.5F);
  ASSERT_GT(loudest(plain), 0.001F);
  for (size_t at = 0; at < plain.size(); ++at)
    ASSERT_NEAR(raised[at], 0.25F + 0.5F * plain[at], 1e-6F) << at;
}

/// The loudness of one long organ note behind messages.
float loudnessAfter(std::initializer_list<std::initializer_list<uint8_t>> messages) {
  const auto synthesiser = makeWithFont();
  send(*synthesiser, {0xC0, 19});
  for (const auto& message : messages)
    send(*synthesiser, message);
  send(*synthesiser, {0x90, 60, 100});
  rendered(*synthesiser);
  return loudest(rendered(*synthesiser));
}

TEST_F(SynthesiserTest, TakesTheMasterVolumeOfAnExclusiveMessage) {
  const float full = loudnessAfter({});
  EXPECT_NEAR(loudnessAfter({{0xF0, 0x7F, 0x7F, 4, 1, 0x7F, 0x7F, 0xF7}}), full, 1e-4F);
  EXPECT_NEAR(loudnessAfter({{0xF0, 0x7F, 0x7F, 4, 1, 0, 0x40, 0xF7}}), full / 4, full / 100);
  EXPECT_EQ(loudnessAfter({{0xF0, 0x7F, 0x7F, 4, 1, 0, 0, 0xF7}}), 0);
  // It ends with a reset of the whole.
  EXPECT_NEAR(
      loudnessAfter(
          {{0xF0, 0x7F, 0x7F, 4, 1, 0, 0, 0xF7}, {0xF0, 0x7E, 0x7F, 9, 1, 0xF7}, {0xC0, 19}}),
      full, 1e-4F);
}

TEST_F(SynthesiserTest, GoesBackToItsBeginningByTheResetsOfEveryMaker) {
  const auto play = [](const std::vector<uint8_t>& reset) {
    const auto synthesiser = makeWithFont();
    send(*synthesiser, {0xC0, 19});
    send(*synthesiser, {0xB0, 10, 0});
    synthesiser->longMessage(reset);
    send(*synthesiser, {0x90, 60, 100});
    return rendered(*synthesiser, 8192);
  };
  const std::vector<uint8_t> none = {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7E, 0xF7};
  const Samples left = play(none), general = play({0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
  EXPECT_GT(loudest(general), 0.001F);
  EXPECT_NE(left, general);
  EXPECT_EQ(play({0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7}), general);
  EXPECT_EQ(play({0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7}), general);
}

TEST_F(SynthesiserTest, LeavesNothingOfASongToTheNext) {
  const auto synthesiser = makeWithFont();
  const auto play = [&](uint8_t program) {
    EXPECT_TRUE(synthesiser->open());
    send(*synthesiser, {0xC0, program});
    for (uint8_t key = 40; key < 60; ++key)
      send(*synthesiser, {0x90, key, 100});
    const Samples samples = rendered(*synthesiser, 3000);
    synthesiser->reset();
    synthesiser->close();
    rendered(*synthesiser, 100);
    return samples;
  };
  const Samples first = play(19);
  EXPECT_NE(play(0), first);
  EXPECT_TRUE(play(19) == first);
  // Also where nothing is rendered between two songs.
  EXPECT_TRUE(synthesiser->open());
  send(*synthesiser, {0x90, 30, 100});
  synthesiser->reset();
  synthesiser->close();
  EXPECT_TRUE(play(19) == first);
}

TEST_F(SynthesiserTest, SurvivesBrokenMessages) {
  const auto synthesiser = makeWithFont();
  for (uint32_t status = 0; status < 256; ++status) {
    synthesiser->shortMessage(status | 0xFFFF00);
    synthesiser->shortMessage(status);
  }
  for (size_t length = 0; length < 40; ++length)
    for (const uint8_t kind : {0x7E, 0x7F, 0x41, 0x43, 0x00}) {
      std::vector<uint8_t> message(length, kind);
      synthesiser->longMessage(message);
      rendered(*synthesiser, 64);
    }
  synthesiser->reset();
  EXPECT_EQ(loudest(rendered(*synthesiser)), 0);
}

TEST_F(SynthesiserTest, SilencesItsNotesWhenMessagesAreLost) {
  const auto synthesiser = makeWithFont();
  send(*synthesiser, {0xC0, 19});
  send(*synthesiser, {0x90, 60, 100});
  for (int message = 0; message < 100'000; ++message)
    send(*synthesiser, {0xB0, 1, 0});
  rendered(*synthesiser, SampleRate * 3);
  EXPECT_LT(loudest(rendered(*synthesiser)), 0.001F);
}

TEST_F(SynthesiserTest, WithoutASoundFontIsSilentAndSaysSoOnce) {
  std::string whyNot;
  const auto synthesiser = makeSynthesiser(SampleRate, "/nowhere/font.sf2", whyNot);
  EXPECT_EQ(whyNot, "There is no sound font /nowhere/font.sf2; songs stay silent.");
  EXPECT_TRUE(synthesiser->available());
  EXPECT_TRUE(synthesiser->open());
  send(*synthesiser, {0x90, 60, 100});
  EXPECT_EQ(loudest(rendered(*synthesiser)), 0);
}

TEST_F(SynthesiserTest, WithAFileThatIsNoSoundFontIsSilent) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "font.sf2";
  FILE* file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("RIFF\x10", file);
  std::fclose(file);
  std::string whyNot;
  ::testing::internal::CaptureStderr();
  const auto synthesiser = makeSynthesiser(SampleRate, path, whyNot);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(whyNot, path.string() + " is no sound font that can be read; songs stay silent.");
  EXPECT_EQ(loudest(rendered(*synthesiser)), 0);
}

// --- Songs ---

/// Two voices, a bass and drums over four bars.
std::string littleSong() {
  TrackBytes tempo, tune, bass, drums;
  tempo.tempo(0, 500000).end();
  tune.event(0, {0xC0, 73}).event(0, {0xB0, 7, 110}).event(0, {0xB0, 91, 60});
  bass.event(0, {0xC1, 32});
  const int scale[] = {60, 62, 64, 67, 69, 67, 64, 62, 60, 64, 67, 72, 71, 67, 62, 60};
  for (const int key : scale) {
    tune.event(0, {0x90, key, 90}).event(48, {0x80, key, 0});
    bass.event(0, {0x91, key - 24, 80}).event(48, {0x81, key - 24, 0});
    drums.event(0, {0x99, key % 3 ? 42 : 36, 70}).event(48, {0x89, 36, 0});
  }
  return song({tempo, tune.end(), bass.end(), drums.end()}, 96);
}

class RenderedSong : public ::testing::Test {
 protected:
  RenderedSong() : platform_(false, makeSimulatedKernel()), synthesiser_(makeWithFont()) {
    with_ = services();
    with_.midi = synthesiser_.get();
    scope_ = std::make_unique<ServicesScope>(with_);
    platform_.writeFile(platform_.game() / "song.mid", littleSong());
    midi_ = std::make_unique<QVMidi>();
  }
  /// So many steps of the timer with their samples, from the middle between two callbacks.
  Samples steps(int count) {
    Samples samples;
    for (int step = 0; step < count; ++step) {
      sleepMillis(QVMidi::PeriodMillis);
      renderInto(samples, *synthesiser_, StepFrames);
    }
    return samples;
  }
  Samples wholeSong() {
    midi_->play("song.mid", QVMidi::AtOnce, 0, 0);
    sleepMillis(QVMidi::PeriodMillis / 2);
    const Samples samples = steps(300);
    midi_->stop(QVMidi::AtOnce, 0);
    return samples;
  }

  TestPlatform platform_;
  std::unique_ptr<Synthesiser> synthesiser_;
  Services with_;
  std::unique_ptr<ServicesScope> scope_;
  std::unique_ptr<QVMidi> midi_;
};

TEST_F(RenderedSong, IsTheSameSamplesEachTimeOnOneSynthesiser) {
  const Samples first = wholeSong();
  EXPECT_GT(loudest(first), 0.02F);
  EXPECT_LT(loudest(first), 1.0F);
  EXPECT_TRUE(wholeSong() == first);
  EXPECT_TRUE(wholeSong() == first);
}

TEST_F(RenderedSong, IsTheSameSamplesOnAnotherSynthesiser) {
  const Samples first = wholeSong();
  midi_.reset();
  scope_.reset();
  synthesiser_ = makeWithFont();
  with_.midi = synthesiser_.get();
  scope_ = std::make_unique<ServicesScope>(with_);
  midi_ = std::make_unique<QVMidi>();
  EXPECT_TRUE(wholeSong() == first);
}

TEST_F(RenderedSong, IsSilentAtOnceWhenItStops) {
  midi_->play("song.mid", QVMidi::AtOnce, 0, 1);
  sleepMillis(QVMidi::PeriodMillis / 2);
  EXPECT_GT(loudest(steps(50)), 0.01F);
  midi_->stop(QVMidi::AtOnce, 0);
  EXPECT_EQ(loudest(steps(50)), 0);
}

TEST_F(RenderedSong, FadesOut) {
  midi_->play("song.mid", QVMidi::AtOnce, 0, 1);
  sleepMillis(QVMidi::PeriodMillis / 2);
  const float before = loudest(steps(40));
  midi_->stop(QVMidi::FadeOut, 1000);
  steps(40);
  const float behind = loudest(steps(5));
  EXPECT_LT(behind, before / 4);
  EXPECT_GT(behind, 0);
  steps(10);
  EXPECT_EQ(midi_->state(), QVMidi::Stopped);
  EXPECT_EQ(loudest(steps(5)), 0);
}

// --- Ports ---

TEST(MidiPortTest, ThatIsNotThereIsSaidInOneSentence) {
  std::string whyNot;
  EXPECT_EQ(makeMidiPort("no such port", whyNot), nullptr);
  EXPECT_NE(whyNot.find("no such port"), std::string::npos);
  EXPECT_EQ(whyNot.back(), '.');
  EXPECT_EQ(makeMidiPort("9999", whyNot), nullptr);
  EXPECT_NE(whyNot.find("9999"), std::string::npos);
  EXPECT_EQ(makeMidiPort("", whyNot), nullptr);
}

TEST(MidiPortTest, TakesTheMessagesOfAPortOfThisMachine) {
  const std::vector<std::string> names = midiPortNames();
  if (names.empty()) GTEST_SKIP() << "this machine has no MIDI port";
  std::string whyNot;
  const std::unique_ptr<MidiOutput> port = makeMidiPort("0", whyNot);
  ASSERT_NE(port, nullptr) << whyNot;
  EXPECT_EQ(port->name(), names[0]);
  ASSERT_TRUE(port->open());
  EXPECT_FALSE(port->open());
  port->shortMessage(0x404090);
  port->reset();
  port->close();
  EXPECT_TRUE(port->open());
}

}  // namespace
}  // namespace qv::testing
