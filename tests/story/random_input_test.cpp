// A player who does anything at all reads the sample: no crash, no deadlock, no message box.

#include <gtest/gtest.h>

#include "tests/story/random_play.h"
#include "tests/support/process.h"
#include "tests/support/sanitized.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

constexpr int SeedsInOne = Sanitized ? 2 : 10, Inputs = 150;

class RandomInput : public ::testing::TestWithParam<int> {};

TEST_P(RandomInput, NeitherStopsNorBreaksTheSample) {
  const TemporaryFolder folder;
  const std::string script = (folder.path() / "random.play").string();
  for (int seed = GetParam() * SeedsInOne + 1; seed <= (GetParam() + 1) * SeedsInOne; ++seed) {
    writeWhole(script, randomPlay(static_cast<uint64_t>(seed), Inputs));
    std::filesystem::remove_all(folder.path() / "player");
    const ProcessResult result =
        runProcess({QV_BIN_DIR "/qvrun", "--simulate", std::to_string(seed), "--play", script,
                    "--user", (folder.path() / "player").string(), QV_OUTPUT_DIR "/vorlane"},
                   {}, 200);
    ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
    ASSERT_EQ(result.errors, "") << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(AHundredSeeds, RandomInput, ::testing::Range(0, 10));

TEST(RandomPlay, IsAPureFunctionOfItsSeed) {
  EXPECT_EQ(randomPlay(7, 100), randomPlay(7, 100));
  EXPECT_NE(randomPlay(7, 100), randomPlay(8, 100));
}

}  // namespace
}  // namespace qv::testing
