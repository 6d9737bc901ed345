#include "platform/sound/sound_mixer.h"

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/wave_bytes.h"

namespace qv::testing {
namespace {

constexpr uint32_t Rate = 48000;

std::span<const uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

/// The level of a frequency in one channel: what a sine of that level would give.
double levelOf(const std::vector<float>& stereo, size_t channel, double hertz, size_t from,
               size_t frames) {
  double real = 0, imaginary = 0;
  for (size_t i = 0; i < frames; ++i) {
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / Rate;
    const double sample = stereo[2 * (from + i) + channel];
    real += sample * std::cos(angle);
    imaginary += sample * std::sin(angle);
  }
  return 2 * std::sqrt(real * real + imaginary * imaginary) / static_cast<double>(frames);
}

class MixerTest : public ::testing::Test {
 protected:
  std::vector<float> render(uint32_t frames, uint32_t part = 480) {
    std::vector<float> stereo(size_t{2} * frames, 9.0F);
    for (uint32_t at = 0; at < frames; at += part)
      mixer.render(stereo.data() + size_t{2} * at, std::min(part, frames - at));
    return stereo;
  }
  bool play(const WaveFormat& format, const std::string& samples, uint32_t times = 1) {
    if (!mixer.wave().open(format, done)) return false;
    done.reset();
    samples_ = samples;
    return mixer.wave().write(bytesOf(samples_), times);
  }

  std::string samples_;  // the mixer's, for as long as it plays them
  KernelScope kernel{makeRealKernel()};
  HostVolumes volumes;
  SoundMixer mixer{Rate, volumes};
  Event done{"done", Event::Reset::Manual};
};

TEST_F(MixerTest, IsSilentWithNothingToPlay) {
  EXPECT_EQ(render(1000), std::vector<float>(2000, 0.0F));
}

TEST_F(MixerTest, GivesTheSamplesOfItsOwnRateUnchanged) {
  const std::string samples = littleBytes(16384, 2) + littleBytes(0x8000, 2) + littleBytes(0, 2) +
                              littleBytes(32767, 2) + littleBytes(0, 2) + littleBytes(0, 2);
  ASSERT_TRUE(play(pcm(2, Rate, 16), samples));
  const std::vector<float> heard = render(3);
  EXPECT_EQ(heard, (std::vector<float>{0.5F, -1.0F, 0.0F, 32767.0F / 32768, 0.0F, 0.0F}));
  EXPECT_TRUE(done.isSet());
}

TEST_F(MixerTest, GivesMonoToBothSides) {
  ASSERT_TRUE(play(pcm(1, Rate, 8), "\x80\xC0\x40\x80"));
  EXPECT_EQ(render(4), (std::vector<float>{0, 0, 0.5F, 0.5F, -0.5F, -0.5F, 0, 0}));
}

TEST_F(MixerTest, DrawsStraightLinesBetweenSamplesOfALowerRate) {
  ASSERT_TRUE(play(pcm(1, Rate / 4, 16), littleBytes(0, 2) + littleBytes(16384, 2)));
  const std::vector<float> heard = render(8);
  const float expected[] = {0, 0.125F, 0.25F, 0.375F, 0.5F, 0.5F, 0.5F, 0.5F};
  for (size_t i = 0; i < 8; ++i)
    EXPECT_FLOAT_EQ(heard[2 * i], expected[i]) << i;
}

struct Tone {
  uint16_t channels;
  uint32_t rate;
  uint16_t bits;
};
class MixerTones : public MixerTest, public ::testing::WithParamInterface<Tone> {};

/// Frequency, level and length are the file's, whatever its format.
TEST_P(MixerTones, KeepFrequencyLevelAndLength) {
  const WaveFormat format = pcm(GetParam().channels, GetParam().rate, GetParam().bits);
  const uint32_t frames = format.samplesPerSecond / 2;
  ASSERT_TRUE(play(format, sineSamples(format, 440, 0.5, frames)));
  const std::vector<float> heard = render(Rate / 2 + 1000, 512);
  for (const size_t channel : {0u, 1u}) {
    EXPECT_NEAR(levelOf(heard, channel, 440, 0, Rate / 2 - 240), 0.5, 0.02);
    for (const double other : {220.0, 660.0, 880.0})
      EXPECT_LT(levelOf(heard, channel, other, 0, Rate / 2 - 240), 0.01) << other;
  }
  size_t last = heard.size();
  while (last > 0 && heard[last - 1] == 0)
    --last;
  EXPECT_NEAR(static_cast<double>(last) / 2, Rate / 2.0, 140) << "length, with the tail";
  EXPECT_TRUE(done.isSet());
}
INSTANTIATE_TEST_SUITE_P(Formats, MixerTones,
                         ::testing::Values(Tone{1, 8000, 8}, Tone{1, 8000, 16}, Tone{2, 11025, 8},
                                           Tone{1, 11025, 16}, Tone{1, 22050, 16},
                                           Tone{2, 22050, 16}, Tone{2, 32000, 8}, Tone{1, 44100, 8},
                                           Tone{2, 44100, 16}, Tone{2, 48000, 16},
                                           Tone{1, 96000, 16}),
                         [](const auto& instance) {
                           const Tone& tone = instance.param;
                           return std::to_string(tone.rate) + "x" + std::to_string(tone.channels) +
                                  "x" + std::to_string(tone.bits);
                         });

TEST_F(MixerTest, LoopsWithoutASeam) {
  const WaveFormat format = pcm(1, 8000, 16);
  ASSERT_TRUE(play(format, sineSamples(format, 400, 0.5, 2000), PlayForever));
  const std::vector<float> heard = render(5 * Rate, 700);
  EXPECT_NEAR(levelOf(heard, 0, 400, 0, heard.size() / 2), 0.5, 0.01);
  float steepest = 0;
  for (size_t i = 2; i < heard.size(); i += 2)
    steepest = std::max(steepest, std::abs(heard[i] - heard[i - 2]));
  EXPECT_LT(steepest, 0.03F);
  EXPECT_FALSE(done.isSet());
}

TEST_F(MixerTest, PlaysAsOftenAsToldThenTellsTheEnd) {
  ASSERT_TRUE(play(pcm(1, Rate, 16), littleBytes(16384, 2) + littleBytes(0, 2), 3));
  const std::vector<float> first = render(5);
  EXPECT_EQ(first, (std::vector<float>{0.5F, 0.5F, 0, 0, 0.5F, 0.5F, 0, 0, 0.5F, 0.5F}));
  EXPECT_FALSE(done.isSet());
  EXPECT_EQ(render(3), (std::vector<float>{0, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(done.isSet());
}

TEST_F(MixerTest, ACutSoundFallsToSilenceInAMoment) {
  const WaveFormat format = pcm(1, Rate, 16);
  std::string loud;
  for (int i = 0; i < 4000; ++i)
    loud += littleBytes(16384, 2);
  ASSERT_TRUE(play(format, loud));
  render(1000);
  mixer.wave().reset();
  const std::vector<float> tail = render(256);
  EXPECT_GT(tail[0], 0.45F);
  for (size_t i = 2; i < tail.size(); i += 2)
    EXPECT_LE(tail[i], tail[i - 2]);
  EXPECT_EQ(tail[2 * 128], 0.0F);
  EXPECT_FALSE(done.isSet());
}

TEST_F(MixerTest, ASoundWithoutAWholeFrameHasEnded) {
  for (const uint32_t times : {1u, PlayForever}) {
    ASSERT_TRUE(play(pcm(2, Rate, 16), "123", times));
    EXPECT_TRUE(done.isSet());
    mixer.wave().close();
  }
  EXPECT_EQ(render(4), std::vector<float>(8, 0.0F));
}

TEST_F(MixerTest, TheOpeningItselfSignals) {
  EXPECT_TRUE(mixer.wave().open(pcm(1, Rate, 8), done));
  EXPECT_TRUE(done.isSet());
  EXPECT_FALSE(mixer.wave().open(pcm(1, Rate, 8), done)) << "taken";
}

TEST_F(MixerTest, RefusesFormatsThatMeanNothing) {
  WaveFormat noBlock = pcm(1, Rate, 8);
  noBlock.blockBytes = 0;
  for (const WaveFormat& format : {noBlock, pcm(0, Rate, 8), pcm(4, Rate, 16), pcm(1, 0, 16),
                                   pcm(1, 0xFFFFFFFF, 16), pcm(1, Rate, 32)})
    EXPECT_FALSE(mixer.wave().open(format, done));
}

/// A source that is always there, at a level of its own.
class Constant : public SampleSource {
 public:
  explicit Constant(float level) : level_(level) {}
  void render(float* stereo, uint32_t frames, float gain) override {
    for (uint32_t i = 0; i < 2 * frames; ++i)
      stereo[i] += level_ * gain;
  }

 private:
  float level_;
};

TEST_F(MixerTest, AddsSongDiscAndWaveByTheirVolumes) {
  Constant song(0.5F), disc(0.25F);
  mixer.setSong(&song);
  mixer.setDisc(&disc);
  std::string wave;
  for (int i = 0; i < 100; ++i)
    wave += littleBytes(4096, 2);
  ASSERT_TRUE(play(pcm(1, Rate, 16), wave, PlayForever));
  EXPECT_FLOAT_EQ(render(1)[0], 0.5F + 0.25F + 0.125F);
  volumes.music = 50;
  volumes.disc = 0;
  EXPECT_FLOAT_EQ(render(1)[0], 0.25F + 0.125F);
  volumes.wave = 200;
  volumes.whole = 10;
  EXPECT_FLOAT_EQ(render(1)[0], 0.025F + 0.0125F);
  volumes.whole = -5;
  EXPECT_FLOAT_EQ(render(1)[0], 0.0F);
}

TEST_F(MixerTest, NeverLeavesTheRangeOfAnOutput) {
  Constant song(0.9F), disc(-3.0F);
  mixer.setSong(&song);
  std::string wave;
  for (int i = 0; i < 100; ++i)
    wave += littleBytes(32000, 2);
  ASSERT_TRUE(play(pcm(1, Rate, 16), wave, PlayForever));
  EXPECT_EQ(render(1)[0], 1.0F);
  mixer.setDisc(&disc);
  EXPECT_EQ(render(1)[0], -1.0F);
}

/// After `reset` the bytes may go: a sanitizer would see a read behind that.
TEST_F(MixerTest, ReadsNothingAfterAResetWhileAnOutputRenders) {
  std::atomic<bool> stop = false;
  std::thread output([&] {  // no thread of the kernel, as an output's is none
    std::vector<float> stereo(512);
    while (!stop)
      mixer.render(stereo.data(), 256);
  });
  for (int i = 0; i < 300; ++i) {
    auto bytes = std::make_unique<std::string>(sineSamples(pcm(1, 8000, 16), 300, 0.5, 50));
    ASSERT_TRUE(mixer.wave().open(pcm(1, 8000, 16), done));
    done.reset();
    ASSERT_TRUE(mixer.wave().write(bytesOf(*bytes), i % 3 ? 1 : PlayForever));
    if (i % 3 == 1) done.wait();
    mixer.wave().reset();
    std::fill(bytes->begin(), bytes->end(), '\xFF');
    bytes.reset();
    mixer.wave().close();
  }
  stop = true;
  output.join();
}

}  // namespace
}  // namespace qv::testing
