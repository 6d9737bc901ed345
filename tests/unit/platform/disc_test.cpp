// The disc: a folder with a cue sheet, and what plays its tracks.

#include <bit>
#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/resource.h>

#include "platform/devices/disc_folder.h"
#include "platform/sound/cue_sheet.h"
#include "platform/sound/mixer_disc.h"
#include "tests/support/test_platform.h"
#include "tests/support/wave_bytes.h"

namespace qv::testing {
namespace {

constexpr uint32_t SectorBytes = 2352;

class DiscFolderTest : public ::testing::Test {
 protected:
  void write(const char* name, const std::string& bytes) {
    platform.writeFile(platform.disc() / name, bytes);
  }
  std::unique_ptr<DiscTracks> open() { return openDiscFolder(platform.disc(), whyNot); }
  static std::vector<float> samplesOf(DiscTracks& tracks, int32_t track, uint32_t frames) {
    const auto reader = tracks.open(track);
    std::vector<float> stereo(size_t{2} * frames);
    if (!reader) return {};
    reader->seek(0);
    stereo.resize(size_t{2} * reader->read(stereo.data(), frames));
    return stereo;
  }

  TestPlatform platform{true};
  std::string whyNot;
};

TEST_F(DiscFolderTest, WithoutASheetIsADiscWithoutAudio) {
  write("VOICE/V00/a.wav", "x");
  EXPECT_EQ(open(), nullptr);
  EXPECT_EQ(whyNot, "");
  EXPECT_EQ(openDiscFolder("", whyNot), nullptr);
  EXPECT_EQ(openDiscFolder("/nowhere", whyNot), nullptr);
  EXPECT_EQ(whyNot, "");
}

TEST_F(DiscFolderTest, HasTracksOfSoundFilesInAnyCaseOfTheirNames) {
  const WaveFormat format = pcm(1, 22050, 16);
  write("Song2.WAV", waveFile(format, sineSamples(format, 440, 0.5, 22050 * 2)));
  write("Disc.CUE", "FILE \"C:\\rip\\SONG2.wav\" WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  EXPECT_EQ(tracks->count(), 2);
  EXPECT_EQ(tracks->length(2), (DiscTime{0, 2, 0}));
  EXPECT_TRUE(tracks->length(1).empty());
  EXPECT_TRUE(tracks->length(3).empty());
  EXPECT_EQ(tracks->open(1), nullptr);
  const auto samples = samplesOf(*tracks, 2, 100);
  ASSERT_EQ(samples.size(), 200u);
  EXPECT_NEAR(samples[20], 0.5 * std::sin(2 * std::numbers::pi * 440 * 10 / 22050), 0.001);
  EXPECT_EQ(samples[20], samples[21]);
}

TEST_F(DiscFolderTest, HasTracksOfCompressedFiles) {
  std::filesystem::create_directories(platform.disc());
  for (const auto& [name, kind] : {std::pair{"a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                                   std::pair{"b.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS}}) {
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 2;
    info.format = kind;
    SNDFILE* file = sf_open((platform.disc() / name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << name;
    std::vector<float> samples;
    for (int i = 0; i < 44100; ++i)
      for (const float level : {0.5F, 0.25F})
        samples.push_back(level * static_cast<float>(std::sin(i * 0.05)));
    sf_writef_float(file, samples.data(), 44100);
    sf_close(file);
  }
  write("a.cue",
        "FILE a.flac WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n"
        "FILE b.ogg WAVE\nTRACK 03 AUDIO\nINDEX 01 00:00:00\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  for (const int32_t track : {2, 3}) {
    EXPECT_EQ(tracks->length(track), (DiscTime{0, 1, 0}));
    const auto samples = samplesOf(*tracks, track, 2000);
    ASSERT_EQ(samples.size(), 4000u);
    EXPECT_NEAR(samples[2 * 1000], 0.5 * std::sin(1000 * 0.05), 0.05);
    EXPECT_NEAR(samples[2 * 1000 + 1], 0.25 * std::sin(1000 * 0.05), 0.05);
  }
}

TEST_F(DiscFolderTest, HasTracksOfARawImage) {
  std::string image(size_t{SectorBytes} * 10, '\x11');
  for (int i = 0; i < 5 * 588; ++i)
    image += littleBytes(static_cast<uint32_t>(i), 2) + littleBytes(static_cast<uint32_t>(-i), 2);
  write("disc.bin", image);
  write("disc.cue",
        "FILE disc.bin BINARY\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n"
        "TRACK 02 AUDIO\nINDEX 01 00:00:10\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  EXPECT_TRUE(tracks->length(1).empty()) << "a track of data";
  EXPECT_EQ(tracks->length(2), (DiscTime{0, 0, 5}));
  const auto samples = samplesOf(*tracks, 2, 10'000);
  ASSERT_EQ(samples.size(), size_t{2} * 5 * 588);
  EXPECT_FLOAT_EQ(samples[2 * 100], 100.0F / 32768);
  EXPECT_FLOAT_EQ(samples[2 * 100 + 1], -100.0F / 32768);
}

TEST_F(DiscFolderTest, SplitsOneFileIntoTracks) {
  const WaveFormat format = pcm(1, 8000, 16);
  write("all.wav", waveFile(format, std::string(8000, '\0') + std::string(8000, '\1')));
  write("d.cue",
        "FILE all.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
        "TRACK 02 AUDIO\nINDEX 01 00:00:38\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  EXPECT_EQ(tracks->length(1), (DiscTime{0, 0, 38}));
  EXPECT_EQ(tracks->length(2), (DiscTime{0, 0, 37}));
  EXPECT_NE(samplesOf(*tracks, 2, 10)[0], 0.0F);
}

TEST_F(DiscFolderTest, TellsASheetThatCannotBeUsed) {
  write("d.cue", "FILE a WAVE\nTRACK none AUDIO\n");
  EXPECT_EQ(open(), nullptr);
  EXPECT_EQ(whyNot,
            "The cue sheet d.cue of the disc cannot be used: line 2: a TRACK has a number from 1 "
            "to 99.");
}

TEST_F(DiscFolderTest, AMissingFileCostsItsOwnTracksAlone) {
  const WaveFormat format = pcm(1, 8000, 16);
  write("b.wav", waveFile(format, std::string(16000, '\0')));
  write("noise.wav", "this is no sound");
  write("d.cue",
        "FILE a.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
        "FILE b.wav WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n"
        "FILE noise.wav WAVE\nTRACK 03 AUDIO\nINDEX 01 00:00:00\n"
        "FILE b.wav WAVE\nTRACK 04 AUDIO\nINDEX 01 00:59:00\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  EXPECT_EQ(whyNot, "The disc's file a.wav cannot be read.");
  EXPECT_TRUE(tracks->length(1).empty());
  EXPECT_EQ(tracks->length(2), (DiscTime{0, 1, 0}));
  EXPECT_TRUE(tracks->length(3).empty());
  EXPECT_TRUE(tracks->length(4).empty()) << "it begins behind its file's end";
  EXPECT_EQ(tracks->open(1), nullptr);
}

TEST_F(DiscFolderTest, GivesSilenceForSamplesThatAreNoNumbersOrBeyondAllLevels) {
  WaveFormat format = pcm(1, 8000, 16);
  format.bitsPerSample = 32;
  format.blockBytes = 4;
  format.bytesPerSecond = 32'000;
  constexpr uint16_t FloatTag = 3;
  std::string samples;
  const float levels[] = {0.5F, std::numeric_limits<float>::quiet_NaN(),
                          -std::numeric_limits<float>::infinity(), 3e38F, -1.5F};
  for (const float level : levels)
    samples += littleBytes(std::bit_cast<uint32_t>(level), 4);
  samples += std::string(8000, '\0');
  write("a.wav", riff(chunk("fmt ", formatBytes(format, FloatTag)) + chunk("data", samples)));
  write("d.cue", "FILE a.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 0:0:0\n");
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  const auto heard = samplesOf(*tracks, 1, 5);
  EXPECT_EQ(heard, (std::vector<float>{0.5, 0.5, 0, 0, 0, 0, 0, 0, -1.5, -1.5}));
}

TEST_F(DiscFolderTest, RefusesASoundFileOfARateThatNoDeviceHas) {
  std::string sheet;
  const std::pair<uint32_t, bool> rates[] = {{1, false},       {999, false},
                                             {1000, true},     {192'000, true},
                                             {192'001, false}, {0x7FFFFFFF, false}};
  int number = 0;
  for (const auto& [rate, good] : rates) {
    const std::string name = std::to_string(++number) + ".wav";
    // Two seconds of it where it is good.
    write(name.c_str(),
          waveFile(pcm(1, rate, 8), std::string(good ? size_t{2} * rate : 4096, '\x80')));
    sheet += "FILE " + name + " WAVE\nTRACK " + std::to_string(number) + " AUDIO\nINDEX 01 0:0:0\n";
  }
  write("d.cue", sheet);
  const auto tracks = open();
  ASSERT_NE(tracks, nullptr);
  EXPECT_EQ(whyNot, "The disc's file 1.wav cannot be read.");
  for (int32_t track = 1; track <= number; ++track) {
    const bool good = rates[track - 1].second;
    EXPECT_EQ(tracks->length(track), good ? (DiscTime{0, 2, 0}) : DiscTime{}) << track;
    EXPECT_EQ(tracks->open(track) != nullptr, good) << track;
  }
}

TEST(DiscTimes, AreFramesOfA75thAndKeepToTheirRange) {
  EXPECT_EQ(discTimeOf(75 * 60 + 76), (DiscTime{1, 1, 1}));
  EXPECT_EQ(discFramesOf({1, 1, 1}), 75u * 60 + 76);
  EXPECT_EQ(discTimeOf(UINT64_MAX), (DiscTime{255, 59, 74}));
  for (const DiscError error :
       {DiscError::NoDisc, DiscError::NoSuchTrack, DiscError::DeviceTaken, DiscError::Unreadable})
    EXPECT_STRNE(describe(error), "");
}

// --- Into the mixer ---

/// One track, number 2, of a tone.
class ToneTracks : public DiscTracks {
 public:
  ToneTracks(uint32_t rate, uint32_t frames) : rate_(rate), frames_(frames) {}
  int32_t count() const override { return 2; }
  DiscTime length(int32_t track) const override {
    return track == 2 ? discTimeOf(uint64_t{frames_} * DiscFramesPerSecond / rate_) : DiscTime{};
  }
  std::unique_ptr<TrackReader> open(int32_t) override {
    return std::make_unique<Tone>(rate_, frames_);
  }

 private:
  class Tone : public TrackReader {
   public:
    Tone(uint32_t rate, uint32_t frames) : rate_(rate), frames_(frames) {}
    uint32_t framesPerSecond() const override { return rate_; }
    void seek(uint64_t frame) override { at_ = frame; }
    uint32_t read(float* stereo, uint32_t frames) override {
      uint32_t got = 0;
      for (; got < frames && at_ < frames_; ++got, ++at_) {
        const double angle = 2 * std::numbers::pi * 441 * static_cast<double>(at_) / rate_;
        stereo[2 * got] = static_cast<float>(0.5 * std::cos(angle));
        stereo[2 * got + 1] = -stereo[2 * got];
      }
      return got;
    }

   private:
    const uint32_t rate_, frames_;
    uint64_t at_ = 0;
  };
  const uint32_t rate_, frames_;
};

class MixerDiscTest : public ::testing::Test {
 protected:
  /// Frames until the disc has fallen silent, in parts, as an output asks for them.
  std::vector<float> renderAll(MixerDisc& disc) {
    std::vector<float> heard;
    for (int part = 0; part < 5000 && disc.playing(); ++part) {
      std::vector<float> stereo(1024);
      disc.render(stereo.data(), 512, 1.0F);
      heard.insert(heard.end(), stereo.begin(), stereo.end());
      sleepMillis(10);
    }
    return heard;
  }
  KernelScope kernel{makeSimulatedKernel()};
};

TEST_F(MixerDiscTest, GivesTheTrackAtTheStreamsRate) {
  for (const uint32_t rate : {44100u, 48000u, 22050u}) {
    MixerDisc disc(std::make_unique<ToneTracks>(rate, rate * 2), 48000);
    ASSERT_EQ(disc.open(), DiscError::None);
    ASSERT_EQ(disc.play(2, {}, {0, 2, 0}), DiscError::None);
    sleepMillis(100);
    const std::vector<float> heard = renderAll(disc);
    EXPECT_FALSE(disc.playing());
    size_t last = heard.size() / 2;
    while (last > 0 && heard[2 * last - 2] == 0)
      --last;
    EXPECT_NEAR(static_cast<double>(last), 2 * 48000.0, 64) << rate;
    for (size_t i = 100; i < 90'000; i += 977) {
      const double expected =
          0.5 * std::cos(2 * std::numbers::pi * 441 * static_cast<double>(i) / 48000);
      EXPECT_NEAR(heard[2 * i], expected, 0.005) << i;
      EXPECT_EQ(heard[2 * i + 1], -heard[2 * i]);
    }
    disc.close();
  }
}

TEST_F(MixerDiscTest, TakesNoMoreMemoryForATrackOfASlowRate) {
  const auto peakKilobytes = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const long before = peakKilobytes();
  MixerDisc disc(std::make_unique<ToneTracks>(1, 4096), 48000);
  ASSERT_EQ(disc.open(), DiscError::None);
  ASSERT_EQ(disc.play(2, {}, {60, 0, 0}), DiscError::None);
  sleepMillis(100);
  std::vector<float> heard(size_t{2} * 3 * 48000);
  for (size_t frame = 0; frame < 3 * 48000; frame += 480, sleepMillis(10))
    disc.render(&heard[2 * frame], 480, 1.0F);
  disc.stop();
  EXPECT_LT(peakKilobytes() - before, 64 * 1024);
  // Each of its frames is a crest.
  for (size_t frame = 0; frame < 3 * 48000; frame += 997)
    EXPECT_NEAR(heard[2 * frame], 0.5, 0.001) << frame;
}

TEST_F(MixerDiscTest, PlaysFromAPlaceToAnother) {
  MixerDisc disc(std::make_unique<ToneTracks>(48000, 96000), 48000);
  ASSERT_EQ(disc.open(), DiscError::None);
  ASSERT_EQ(disc.play(2, {0, 0, 30}, {0, 1, 0}), DiscError::None);
  sleepMillis(100);
  const std::vector<float> heard = renderAll(disc);
  EXPECT_GE(heard.size() / 2, 28'800u);
  EXPECT_LT(heard.size() / 2, 28'800u + 1100);
}

TEST_F(MixerDiscTest, IsSilentAtOnceAfterAStop) {
  MixerDisc disc(std::make_unique<ToneTracks>(48000, 960'000), 48000);
  ASSERT_EQ(disc.open(), DiscError::None);
  ASSERT_EQ(disc.play(2, {}, {0, 20, 0}), DiscError::None);
  sleepMillis(100);
  std::vector<float> stereo(1024);
  disc.render(stereo.data(), 512, 1.0F);
  EXPECT_NE(stereo[0], 0.0F);
  disc.stop();
  EXPECT_FALSE(disc.playing());
  std::fill(stereo.begin(), stereo.end(), 0.0F);
  disc.render(stereo.data(), 512, 1.0F);
  EXPECT_EQ(stereo, std::vector<float>(1024, 0.0F));
}

TEST_F(MixerDiscTest, BelongsToOneUserAtATime) {
  MixerDisc disc(std::make_unique<ToneTracks>(48000, 48000), 48000);
  EXPECT_EQ(disc.play(2, {}, {0, 1, 0}), DiscError::NoDisc) << "not opened";
  EXPECT_EQ(disc.open(), DiscError::None);
  EXPECT_EQ(disc.open(), DiscError::DeviceTaken);
  EXPECT_EQ(disc.play(1, {}, {0, 1, 0}), DiscError::NoSuchTrack);
  disc.close();
  EXPECT_EQ(disc.open(), DiscError::None);
  MixerDisc none(nullptr, 48000);
  EXPECT_EQ(none.open(), DiscError::NoDisc);
  EXPECT_EQ(none.trackCount(), 0);
}

}  // namespace
}  // namespace qv::testing
