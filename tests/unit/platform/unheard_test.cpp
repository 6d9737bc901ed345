#include "platform/sound/unheard.h"

#include <gtest/gtest.h>

#include "platform/kernel/kernel.h"
#include "platform/sound/sound_mixer.h"
#include "tests/support/wave_bytes.h"

namespace qv::testing {
namespace {

constexpr uint32_t Rate = 48000, SoundMillis = 1234;

/// Counts what it is asked for.
class Counter : public SampleSource {
 public:
  void render(float* /*stereo*/, uint32_t frames, float /*gain*/) override { asked += frames; }
  std::atomic<uint64_t> asked = 0;
};

class UnheardTest : public ::testing::TestWithParam<uint32_t> {
 protected:
  KernelScope kernel_{makeSimulatedKernel({.startTick = GetParam()})};
  HostVolumes volumes_;
  SoundMixer mixer_{Rate, volumes_};
  Event stop_{"stop", Event::Reset::Manual};
  Thread thread_;
};

// The second starts just before the clock wraps.
INSTANTIATE_TEST_SUITE_P(Starts, UnheardTest, ::testing::Values(0u, 0xFFFFFE00u));

TEST_P(UnheardTest, KeepsTheTimeOfASound) {
  Event done("done", Event::Reset::Manual);
  ASSERT_TRUE(mixer_.wave().open(pcm(1, 1000, 8), done));
  done.reset();
  const std::string samples(SoundMillis, '\x80');
  ASSERT_TRUE(
      mixer_.wave().write({reinterpret_cast<const uint8_t*>(samples.data()), samples.size()}, 1));
  thread_.start("unheard", [&] { playUnheard(mixer_, stop_); });
  const uint32_t start = tickCount();
  ASSERT_EQ(done.wait(60'000), 0);
  EXPECT_GE(tickCount() - start, SoundMillis);
  EXPECT_LE(tickCount() - start, SoundMillis + 20);
  stop_.set();
  ASSERT_TRUE(thread_.join());
  mixer_.wave().close();
}

TEST_P(UnheardTest, AsksForNoMoreThanTheTimeThatPasses) {
  Counter counter;
  mixer_.setSong(&counter);
  thread_.start("unheard", [&] { playUnheard(mixer_, stop_); });
  sleepMillis(10'000);
  stop_.set();
  ASSERT_TRUE(thread_.join());
  EXPECT_LE(counter.asked, uint64_t{10} * Rate);
  EXPECT_GE(counter.asked, uint64_t{10} * Rate - Rate / 50);
}

}  // namespace
}  // namespace qv::testing
