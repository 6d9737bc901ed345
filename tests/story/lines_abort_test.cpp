// Closing the window at any moment of a reading, and whatever keys a player hits.

#include <chrono>
#include <random>

#include "tests/story/lines_ground.h"
#include "tests/support/sanitized.h"

namespace qv::testing {
namespace {

constexpr int Seeds = Sanitized ? 8 : 100;

class LinesAbort : public LinesStory {
 protected:
  /// What a player may do, as lines of a script; none of them waits for the game to be ready.
  static std::string someInput(std::mt19937& random, int count) {
    static const std::vector<std::string> Inputs{"now key Return",
                                                 "now key Space",
                                                 "now key Esc",
                                                 "now right",
                                                 "now key Up",
                                                 "now key Down",
                                                 "now key F1",
                                                 "now key F2",
                                                 "now key F3",
                                                 "now key F4",
                                                 "now key F5",
                                                 "now key F6",
                                                 "now key F7",
                                                 "now key Num2",
                                                 "now key Num8",
                                                 "now click 320 200",
                                                 "now click 200 150",
                                                 "now click 200 290",
                                                 "now click 200 340",
                                                 "now click 606 372",
                                                 "now click 606 402",
                                                 "now click 600 420",
                                                 "now click 46 76",
                                                 "now click 318 269",
                                                 "now click 320 420",
                                                 "now move 46 76",
                                                 "now move 200 230",
                                                 "now drag 46 76 146 176",
                                                 "now drag 146 176 46 76"};
    std::string script;
    for (int input = 0; input < count; ++input)
      script += Inputs[random() % Inputs.size()] + "\nsleep " +
                std::to_string(random() % 4 == 0 ? random() % 3000 : random() % 120) + "\n";
    return script;
  }
  void expectCleanEnd(const ProcessResult& result, const std::string& what) const {
    EXPECT_EQ(result.status, 0) << what << ": " << result.errors;
    EXPECT_EQ(result.errors, "") << what;
    EXPECT_EQ(trace().find("scene END"), std::string::npos) << "the abort does not go through END";
    EXPECT_EQ(trace().find(" box "), std::string::npos) << what << ": " << trace();
  }
};

TEST_F(LinesAbort, ClosingAtEachWaitEndsTheRun) {
  // The waits of the first round, as far as the inputs lead: lines, both selections, boxes.
  const std::string first = "ready\nkey Return\nready\nkey Return\nready\nclick 200 150\n",
                    second = first + "ready\nkey Return\nready\nsleep 3000\n",
                    third = second + "ready\nclick 200 340\n";
  for (const std::string& lead :
       {std::string(), std::string("ready\nkey Return\n"), first, second, third,
        third + "ready\nkey Return\n", std::string("ready\nright\n"),
        std::string("ready\nkey F4\nsleep 100\n"), std::string("ready\nkey F6\n"),
        std::string("ready\nkey F5\n"), first + "ready\nkey F2\n", first + "ready\nright\n",
        std::string("ready\nkey Return\nready\nkey Return\nready\nkey F4\n"),
        std::string("ready\nkey F1\n")})
    for (const char* option : {"--simulate=1", "--simulate=2", "--simulate=3"}) {
      expectCleanEnd(run("sc_endless", lead + "quit\n", {option}), lead);
      expectCleanEnd(run("sc_endless", lead + "ready\nquit\n", {option}), lead + "ready");
    }
}

TEST_F(LinesAbort, ClosingAtRandomMomentsOfSimulatedTimeEndsTheRun) {
  for (int seed = 1; seed <= Seeds; ++seed) {
    std::mt19937 random(static_cast<uint32_t>(seed));
    const std::string script = someInput(random, 1 + static_cast<int>(random() % 12)) + "sleep " +
                               std::to_string(random() % 500) + "\nnow close\n";
    const ProcessResult result = run("sc_endless", script, {"--simulate", std::to_string(seed)});
    expectCleanEnd(result, "seed " + std::to_string(seed) + "\n" + script);
    if (HasFailure()) return;
  }
}

TEST_F(LinesAbort, ClosingAtRandomMomentsOfRealTimeEndsTheRunWithinASecond) {
  std::mt19937 random(7);
  for (int moment = 0; moment < Seeds / 8; ++moment) {
    const uint32_t millis = random() % 1500;
    const char* input = moment % 3 == 0 ? "now key F4\n" : moment % 3 == 1 ? "now right\n" : "";
    const ProcessResult result = run(
        "sc_endless",
        std::string(input) + "sleep " + std::to_string(millis) + "\nshot close.png\nnow close\n",
        {"--headless"});
    const auto end = std::filesystem::file_time_type::clock::now();
    expectCleanEnd(result, std::to_string(millis) + " ms");
    // The picture is the last thing before the close.
    const std::chrono::duration<double> ending =
        end - std::filesystem::last_write_time(folder.path() / "close.png");
    EXPECT_LT(ending.count(), 1) << millis << " ms";
  }
}

TEST_F(LinesAbort, AHundredSeedsOfRandomInputRunWithoutADeadlock) {
  for (int seed = 1; seed <= Seeds; ++seed) {
    std::mt19937 random(static_cast<uint32_t>(seed) * 7919);
    const std::string script = someInput(random, 40) + "quit\n";
    const ProcessResult result = run("sc_endless", script, {"--simulate", std::to_string(seed)});
    expectCleanEnd(result, "seed " + std::to_string(seed) + "\n" + script);
    if (HasFailure()) return;
  }
}

TEST_F(LinesAbort, ARunIsAPureFunctionOfItsSeed) {
  std::mt19937 random(11);
  const std::string script = someInput(random, 60) + "shot last.png\nquit\n";
  ASSERT_EQ(run("sc_endless", script, {"--simulate", "5"}).status, 0);
  const std::string seen = trace(), picture = readWhole(folder.path() / "last.png");
  ASSERT_EQ(run("sc_endless", script, {"--simulate", "5"}).status, 0);
  EXPECT_EQ(trace(), seen);
  EXPECT_EQ(readWhole(folder.path() / "last.png"), picture);
  EXPECT_NE(seen.find(" line "), std::string::npos);
}

}  // namespace
}  // namespace qv::testing
