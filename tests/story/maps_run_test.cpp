// A screen of click maps from a device to the scene and back, in simulated and in real time.

#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

class MapsStory : public ::testing::Test {
 protected:
  ProcessResult run(const std::string& script, std::vector<std::string> options) {
    const std::string host = QV_BIN_DIR "/qvrun";
    std::filesystem::remove_all(folder.path() / "player");
    std::vector<std::string> command{QV_ONE_EXECUTABLE ? host + "-maps" : host,
                                     "--play",
                                     script,
                                     "--user",
                                     (folder.path() / "player").string(),
                                     "--trace",
                                     path("trace"),
                                     "--shots",
                                     folder.path().string()};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(QV_OUTPUT_DIR "/test-stories/maps");
    return runProcess(command);
  }
  std::string path(const char* name) const { return (folder.path() / name).string(); }

  const std::string played = QV_SOURCE_DIR "/tests/story/maps/maps.play";
  TemporaryFolder folder;
};

TEST_F(MapsStory, IsPlayedByAScriptInSimulatedAndInRealTime) {
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--headless"}, {"--simulate", "1"}, {"--simulate", "2"}}) {
    const ProcessResult result = run(played, options);
    EXPECT_EQ(result.status, 0) << options.back() << ": " << result.errors;
    EXPECT_NE(readWhole(path("trace")).find("scene END\n"), std::string::npos);
  }
}

TEST_F(MapsStory, IsAPureFunctionOfItsSeed) {
  ASSERT_EQ(run(played, {"--simulate", "7"}).status, 0);
  const std::string trace = readWhole(path("trace")), picture = readWhole(path("maps.png"));
  ASSERT_EQ(run(played, {"--simulate", "7"}).status, 0);
  EXPECT_EQ(readWhole(path("trace")), trace);
  EXPECT_EQ(readWhole(path("maps.png")), picture);
}

TEST_F(MapsStory, PlaysThroughFortySeeds) {
  for (int seed = 1; seed <= 40; ++seed) {
    const ProcessResult result = run(played, {"--simulate", std::to_string(seed)});
    ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
  }
}

TEST_F(MapsStory, ReplaysFromItsOwnRecord) {
  ASSERT_EQ(run(played, {"--simulate", "3", "--record", path("first.play")}).status, 0);
  const std::string record = readWhole(path("first.play")), trace = readWhole(path("trace"));
  EXPECT_NE(record.find(" move "), std::string::npos) << record;
  EXPECT_NE(record.find(" press "), std::string::npos) << record;
  writeWhole(path("again.play"), record + "sleep 1000\n");
  const ProcessResult again =
      run(path("again.play"), {"--simulate", "3", "--record", path("second.play")});
  EXPECT_EQ(again.status, 0) << again.errors << record;
  EXPECT_EQ(readWhole(path("second.play")), record);
}

TEST_F(MapsStory, EndsWithinASecondWhenItIsClosedAnywhere) {
  for (int millis = 0; millis <= 400; millis += 20) {
    writeWhole(path("close.play"), "sleep " + std::to_string(millis) + "\nnow close\n");
    const ProcessResult result =
        run(path("close.play"), {"--simulate", std::to_string(millis + 1)});
    EXPECT_EQ(result.status, 0) << millis << " ms: " << result.errors;
    EXPECT_EQ(result.errors, "") << millis << " ms";
  }
}

}  // namespace
}  // namespace qv::testing
