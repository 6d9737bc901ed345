// The walker over a small story (ways/) in which ways lie side by side.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process.h"

namespace qv::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

ProcessResult walked() {
  const std::string game = QV_OUTPUT_DIR "/test-stories/ways",
                    texts = QV_SOURCE_DIR "/tests/walker/ways";
  return runProcess({QV_BIN_DIR "/walker", game, texts, "--seed", "4"});
}

TEST(Walker, GoesEveryWayAlsoWhereSeveralLeadToOneScene) {
  const ProcessResult result = walked();
  EXPECT_EQ(result.errors, "");
  // Six in parts, four choices, six in branches, two by chance, two from the roof, two to the end,
  // and one from the title.
  EXPECT_THAT(result.output, HasSubstr("8 of 8 scenes and 22 of 23 ways walked"));
  EXPECT_THAT(result.output, Not(HasSubstr("not as its text")));
  EXPECT_THAT(result.output, Not(HasSubstr("a box")));
}

TEST(Walker, FailsForAWayThatNothingOpensThoughItsSceneIsReached) {
  const ProcessResult result = walked();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("never walked: sc000005 → END (620 and not 620)\n"));
  EXPECT_THAT(result.output, Not(HasSubstr("never walked: sc000004")));
}

TEST(Walker, CountsTheWaysOfRingsApart) {
  EXPECT_THAT(walked().output,
              HasSubstr("1 of 3 ways behind places walked: no ring turns to the others yet\n"));
}

}  // namespace
}  // namespace qv::testing
