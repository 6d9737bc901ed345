// Whole runs of the host program over small stories: what a player and an author see of it.

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/story/story_host.h"
#include "tests/support/process.h"
#include "tests/support/sanitized.h"
#include "tests/support/song_bytes.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

class RunTest : public ::testing::Test {
 protected:
  /// Runs the host with a script of these lines, a player's folder of its own and a trace.
  ProcessResult play(const std::string& story, const std::string& script,
                     std::vector<std::string> options = {"--headless"}, bool freshPlayer = true) {
    if (freshPlayer) std::filesystem::remove_all(folder.path() / "player");
    writeWhole(folder.path() / "test.play", script);
    std::vector<std::string> command{hostOf(story),
                                     "--play",
                                     (folder.path() / "test.play").string(),
                                     "--user",
                                     (folder.path() / "player").string(),
                                     "--trace",
                                     tracePath().string(),
                                     "--shots",
                                     folder.path().string()};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(Stories + story);
    return runProcess(command);
  }
  ProcessResult bare(std::vector<std::string> arguments,
                     const std::vector<std::string>& environment = {}) {
    const bool trouble = !arguments.empty() && arguments.back() == Stories + "trouble";
    arguments.insert(arguments.begin(), trouble ? hostOf("trouble") : QV_BIN_DIR "/qvrun");
    return runProcess(arguments, environment);
  }
  std::filesystem::path tracePath() const { return folder.path() / "trace"; }
  std::string traceText() const { return readWhole(tracePath()); }
  /// The trace without its ticks.
  std::vector<std::string> traced() const {
    std::vector<std::string> lines;
    std::istringstream stream(traceText());
    for (std::string line; std::getline(stream, line);)
      lines.push_back(line.substr(line.find(' ') + 1));
    return lines;
  }
  bool tracedLine(const std::string& line) const {
    const auto lines = traced();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
  std::string scriptError(int line, const std::string& rest) const {
    return "qvrun: " + (folder.path() / "test.play").string() + ":" + std::to_string(line) + ": " +
           rest + "\n";
  }
  TemporaryFolder folder;
};

/// The run went well; the message shows what it said.
void expectGood(const ProcessResult& result) {
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.errors, "");
}

TEST_F(RunTest, TheFixedChainRunsFromItsFirstFunctionToItsLast) {
  for (const bool simulated : {false, true}) {
    const std::vector<std::string> options = simulated ? std::vector<std::string>{"--simulate", "1"}
                                                       : std::vector<std::string>{"--headless"};
    expectGood(play("chain", readWhole(QV_SOURCE_DIR "/tests/story/chain/chain.play"), options));
    std::vector<std::string> scenes;
    for (const std::string& line : traced())
      if (line.starts_with("scene ")) scenes.push_back(line.substr(6));
    ASSERT_GE(scenes.size(), 4u);
    EXPECT_EQ(scenes[0], "sc_start");
    EXPECT_EQ(scenes[1], "sc_menu");
    EXPECT_EQ(scenes[2], "sc000000");
    EXPECT_EQ(scenes.back(), "END");
  }
}

TEST_F(RunTest, ASimulatedRunIsAPureFunctionOfItsSeed) {
  const std::string script = readWhole(QV_SOURCE_DIR "/tests/story/chain/chain.play");
  std::vector<std::string> traces;
  for (const char* seed : {"1", "2", "3", "4", "5", "6"}) {
    expectGood(play("chain", script, {"--simulate", seed}));
    traces.push_back(traceText());
    const std::string system = readWhole(folder.path() / "player/Chain.system.dat");
    expectGood(play("chain", script, {"--simulate", seed}));
    EXPECT_EQ(traceText(), traces.back()) << "seed " << seed;
    EXPECT_EQ(readWhole(folder.path() / "player/Chain.system.dat"), system);
  }
  EXPECT_NE(std::count(traces.begin(), traces.end(), traces.front()), 6)
      << "six seeds and one and the same run";
}

TEST_F(RunTest, AHundredSeedsPlayTheChainWithoutADeadlock) {
  const std::string script = readWhole(QV_SOURCE_DIR "/tests/story/chain/chain.play");
  for (int seed = 1; seed <= (Sanitized ? 20 : 100); ++seed) {
    const ProcessResult result = play("chain", script, {"--simulate", std::to_string(seed)});
    ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
  }
}

TEST_F(RunTest, AThousandSeedsPlayTheChainWithoutADeadlock) {
  const std::string script = readWhole(QV_SOURCE_DIR "/tests/story/chain/chain.play");
  for (int seed = 101; seed <= 1100; ++seed) {
    const ProcessResult result = play("chain", script, {"--simulate", std::to_string(seed)});
    ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
  }
}

// The abort.

/// The chain's script up to each of its inputs, at its standing lines and at its choice.
const std::vector<std::string> PartsOfTheChain = {
    "", "sleep 2500\nclick 320 240\n",
    "sleep 2500\nclick 320 240\nsleep 2500\nexpect scene sc000004\nkey Down\n",
    "sleep 2500\nclick 320 240\nsleep 2500\nkey Down\nkey Return\n"};

TEST_F(RunTest, ClosingAtAnyStandOfTheChainEndsTheRunWithinASecond) {
  for (const std::string& part : PartsOfTheChain) {
    const ProcessResult result = play("chain", part + "sleep 300\nquit\n");
    EXPECT_EQ(result.status, 0) << part << result.errors;
    EXPECT_EQ(result.errors, "") << part;
    EXPECT_LT(result.seconds, 8.0) << "five seconds of the script, and one to end";
    EXPECT_FALSE(tracedLine("scene END")) << "the abort does not go through END";
  }
}

TEST_F(RunTest, ClosingAtAnyMomentOfSimulatedTimeEndsTheRun) {
  for (const std::string& part : PartsOfTheChain) {
    for (int millis = 0; millis <= 2000; millis += 90) {
      const ProcessResult result =
          play("chain", part + "sleep " + std::to_string(millis) + "\nnow close\n",
               {"--simulate", std::to_string(millis + 1)});
      EXPECT_EQ(result.status, 0) << part << millis << " ms: " << result.errors;
      EXPECT_EQ(result.errors, "") << part << millis << " ms";
    }
  }
}

TEST_F(RunTest, ClosingWhileABoxIsUpAnswersItAndEndsTheRun) {
  for (const char* option : {"--headless", "--simulate=3"}) {
    expectGood(play("trouble", "key 1\nsleep 300\nshot box.png\nnow close\n", {option}));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "box.png"));
    EXPECT_FALSE(tracedLine("scene END"));
  }
}

TEST_F(RunTest, ClosingWhileTheGameIsMinimisedEndsTheRun) {
  for (const char* option : {"--headless", "--simulate=4"}) {
    const ProcessResult result =
        play("trouble", "key 2\nnow minimise\nsleep 1500\nquit\n", {option});
    expectGood(result);
    EXPECT_TRUE(tracedLine("scene sc000002"));
  }
}

TEST_F(RunTest, ARequestStandsStillWhileTheGameIsMinimisedAndGoesOnAfterwards) {
  for (const char* option : {"--headless", "--simulate=5"})
    expectGood(play("trouble",
                    "key 2\nnow minimise\nsleep 2000\nnow restore\nready\nexpect reg 600 1\n"
                    "expect shown late.view\nkey Return\n",
                    {option}));
}

TEST_F(RunTest, HandlesUnwindThroughTheAbortAndTheirWindowsGo) {
  for (const char* option : {"--headless", "--simulate=6"})
    expectGood(play("trouble",
                    "key 3\nready\nexpect shown mine.view\nexpect hidden ours.win\n"
                    "expect shown kept.winClient\nquit\n",
                    {option}));
}

TEST_F(RunTest, ASceneThatNeverComesBackIsLeftBehindWithinASecond) {
  const ProcessResult result = play("trouble", "key 4\nsleep 200\nnow close\n");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.errors, "qvrun: A scene did not end in time and is left behind.\n");
  EXPECT_LT(result.seconds, 5.0);
}

TEST_F(RunTest, ClosingCutsAWaitForASound) {
  const ProcessResult result = play("trouble", "key 6\nsleep 200\nnow close\n");
  expectGood(result);
  EXPECT_LT(result.seconds, 5.0) << "the wait alone is ten seconds";
  EXPECT_FALSE(tracedLine("scene END"));
}

// Boxes and errors.

TEST_F(RunTest, ABadRegisterIsReportedInABoxAndTheGameGoesOn) {
  expectGood(
      play("trouble", "key 1\nanswer ok\nready\nexpect reg 0 5\nexpect step 1\nkey Return\n"));
  EXPECT_TRUE(
      tracedLine("box QVReg - item(): 指定されたインデックス99999は\\n本レジスタの範囲 0 ～ "
                 "2499を越えています。\\n０番インデックスが指定されたと仮定して処理を継続します"
                 "。"))
      << traceText();
}

TEST_F(RunTest, WithoutAnyFontSaysSoOnceAndDrawsWithTheBuiltInOne) {
  std::filesystem::create_directories(folder.path() / "empty");
  for (const char* option : {"--headless", "--simulate=8"}) {
    const ProcessResult result =
        play("trouble", "key 1\nsleep 300\nshot box.png\nanswer ok\nready\nkey Return\n",
             {option, "--fonts", (folder.path() / "empty").string()});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors,
              "qvrun: Fonts are missing (ipag.ttf, ipagp.ttf, ipam.ttf, ipamp.ttf), and text in "
              "them is drawn with the built-in one, which has no kanji; the packages "
              "fonts-ipafont-gothic and fonts-ipafont-mincho bring them.\n");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "box.png"));
  }
  const ProcessResult nowhere =
      play("trouble", "quit\n", {"--headless", "--fonts", (folder.path() / "none").string()});
  EXPECT_EQ(nowhere.status, 2);
}

/// The disc's first voice brings a box, the second none; its track and what it lacks of songs go
/// by.
constexpr const char* PlayWithoutADisc =
    "ready\nkey 7\nanswer ok\nsleep 300\nready\nexpect scene sc000007\nexpect reg 600 2\nexpect "
    "reg 601 2\n"
    "expect sound wave none\nexpect sound song K01\nkey Return\n";

TEST_F(RunTest, WithoutADiscSaysSoOnceAndGoesOn) {
  writeWhole(folder.path() / "K01a.mid", song({TrackBytes().end(60'000)}));
  for (const char* option : {"--headless", "--simulate=8"}) {
    std::filesystem::create_directories(folder.path() / "player/midi");
    std::filesystem::copy_file(folder.path() / "K01a.mid", folder.path() / "player/midi/K01a.mid",
                               std::filesystem::copy_options::overwrite_existing);
    const ProcessResult result = play("trouble", PlayWithoutADisc, {option}, false);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    const auto lines = traced();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto& line) { return line.starts_with("box QVWave"); }),
              1);
  }
}

TEST_F(RunTest, AnUnansweredBoxFailsTheRun) {
  const ProcessResult result = play("trouble", "key 1\nready\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find(":2: ready: a box stands unanswered: QVReg - item(): "),
            std::string::npos)
      << result.errors;
}

TEST_F(RunTest, AMissingFileOffersToRetryAndThenEndsTheGame) {
  const ProcessResult result = play("trouble", "key 5\nanswer retry\nanswer cancel\nanswer ok\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("The game ended with an error: cannot open: "), std::string::npos)
      << result.errors;
  const auto lines = traced();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& line) { return line.starts_with("box QVFile - open"); }),
            2)
      << "retry asks the system again";
}

// Expectations.

TEST_F(RunTest, AnExpectationThatFailsTellsTheLineAndWhatWasThere) {
  ProcessResult result = play("trouble", "ready\n\nexpect scene sc000001\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, scriptError(3, "expect scene sc000001: the scene is sc_menu"));
  result = play("trouble", "expect reg 7 9\n");
  EXPECT_EQ(result.errors, scriptError(1, "expect reg 7 9: register 7 is 1"));
  result = play("trouble", "expect reg 2500 0\n");
  EXPECT_EQ(result.errors, scriptError(1, "expect reg 2500 0: there are only 2500 registers"));
  result = play("trouble", "expect sysreg 3 -1\n");
  EXPECT_EQ(result.errors, scriptError(1, "expect sysreg 3 -1: system register 3 is 0"));
  result = play("trouble", "expect strreg 30 \"名\"\n");
  EXPECT_EQ(result.errors, scriptError(1, "expect strreg 30 \"名\": string register 30 is \"\""));
  result = play("trouble", "expect shown mess.view\n");
  EXPECT_EQ(result.errors,
            scriptError(1, "expect shown mess.view: there is no window of that name"));
  result = play("trouble", "key 3\nexpect shown ours.win\n");
  EXPECT_EQ(result.errors, scriptError(2, "expect shown ours.win: it is hidden"));
  result = play("trouble", "expect pixel 0 0 FFFFFF\n");
  EXPECT_EQ(result.errors, scriptError(1, "expect pixel 0 0 FFFFFF: the pixel is 000000"));
}

TEST_F(RunTest, ALineThatTheGameNeverComesToIsToldWithEveryThreadsWait) {
  const ProcessResult result = play("trouble", "key 6\n@9 key Return\n", {"--simulate", "1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("the game has ended before this line"), std::string::npos)
      << result.errors;
  const ProcessResult stuck = play("trouble", "@9 key Return\n", {"--simulate", "1"});
  EXPECT_EQ(stuck.status, 1);
  for (const char* part : {"did not come to this line in ten minutes", "scenario", "main"})
    EXPECT_NE(stuck.errors.find(part), std::string::npos) << part << " in " << stuck.errors;
}

TEST_F(RunTest, AWordThatTheProgramCannotDoEndsWithStatusTwo) {
  const ProcessResult result = play("trouble", "ready\ntype \"x\"\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.errors.find("line 2: this program cannot"), std::string::npos) << result.errors;
}

// Recording.

TEST_F(RunTest, ARecordedRunReplaysExactly) {
  const std::string record = (folder.path() / "record.play").string();
  const std::string script = "key 1\nanswer ok\nsleep 50\nclick 12 34\n";
  expectGood(play("trouble", script, {"--simulate", "11", "--record", record}));
  const std::string first = traceText();
  const std::string recorded = readWhole(record);
  EXPECT_TRUE(recorded.starts_with("@1 key 1\nanswer ok\n@")) << recorded;
  EXPECT_TRUE(recorded.ends_with(" click 12 34\n")) << recorded;
  expectGood(play("trouble", recorded, {"--simulate", "12"}));
  const auto lines = traced();
  EXPECT_TRUE(tracedLine("scene END"));
  expectGood(play("trouble", recorded, {"--simulate", "12", "--record", record}));
  EXPECT_EQ(readWhole(record), recorded);
  EXPECT_EQ(traced(), lines);
}

// Starting.

TEST_F(RunTest, AGameMayStartAtAScene) {
  expectGood(play("trouble", "expect scene sc000003\nkey Return\n",
                  {"--headless", "--scene", "sc000003"}));
  EXPECT_EQ(traced()[0], "scene sc_start");
  const auto lines = traced();
  const auto next = std::find_if(lines.begin() + 1, lines.end(),
                                 [](const std::string& line) { return line.starts_with("scene"); });
  ASSERT_NE(next, lines.end());
  EXPECT_EQ(*next, "scene sc000003");
}

TEST_F(RunTest, WhatCannotBeUsedIsToldInOneSentenceWithStatusTwo) {
  const std::string user = (folder.path() / "player").string();
  writeWhole(folder.path() / "garbage/game.so", "no library");
  writeWhole(folder.path() / "bad.play", "ready\njump\n");
  const std::string trouble = Stories + "trouble";
  std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--nonsense"}, "nonsense"},
      {{"--simulate", "x", trouble}, "simulate"},
      {{(folder.path() / "nowhere").string()}, "There is no game folder"},
      {{"--headless", "--scene", "sc999999", trouble}, "no scene named sc999999"},
      {{"--headless", "--scene", "sc_start", trouble}, "no scene named sc_start"},
      {{"--headless", "--scene", "END", trouble}, "no scene named END"},
      {{"--headless", "--scene", "EXCEPTION_ENTRY", trouble}, "no scene named EXCEPTION_ENTRY"},
      {{"--headless", "--scene", "printf", trouble}, "no scene named printf"},
      {{"--headless", "--play", (folder.path() / "none.play").string(), trouble}, "cannot be read"},
      {{"--headless", "--play", folder.path().string(), trouble}, "cannot be read"},
      {{"--headless", "--play", (folder.path() / "bad.play").string(), trouble},
       "line 2: \"jump\""},
      {{"--headless", "--disc", "/nowhere", trouble}, "disc's folder"},
      {{"--headless", "--trace", "/nowhere/trace", trouble}, "trace"},
      {{"--headless", "--record", "/nowhere/record", trouble}, "record"},
      {{"--headless", "--user", "/proc/nowhere", trouble}, "player's folder"},
  };
  // A static build has its scenes within it and looks for no module.
  if (!QV_ONE_EXECUTABLE) {
    cases.push_back({{folder.path().string()}, "game.so is missing"});
    cases.push_back({{(folder.path() / "garbage").string()}, "cannot be loaded"});
    cases.push_back({{Stories + "foreign_number"}, "built for another version"});
    cases.push_back({{Stories + "nameless"}, "is no game module"});
  }
  for (const auto& [arguments, part] : cases) {
    const ProcessResult result = bare(arguments);
    EXPECT_EQ(result.status, 2) << part;
    EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
}

TEST_F(RunTest, WithoutADisplayItSaysSoInOneSentence) {
  const ProcessResult result =
      bare({"--user", (folder.path() / "player").string(), Stories + "trouble"},
           {"DISPLAY=", "WAYLAND_DISPLAY=", "SDL_VIDEODRIVER="});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

TEST_F(RunTest, HelpAndVersionAnswerWithStatusZero) {
  ProcessResult result = bare({"--help"});
  EXPECT_EQ(result.status, 0);
  for (const char* option : {"--play", "--headless", "--simulate", "--shots", "--trace", "--user",
                             "--disc", "--scene", "--record", "--frames"})
    EXPECT_NE(result.output.find(option), std::string::npos) << option;
  result = bare({"--version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.output.starts_with("qvrun ")) << result.output;
}

TEST_F(RunTest, EveryFrameCanBeKeptAsAPicture) {
  const std::string frames = (folder.path() / "frames").string();
  expectGood(play("trouble", "key 1\nsleep 300\nanswer ok\nkey Return\n",
                  {"--simulate", "1", "--frames", frames}));
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(frames))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  ASSERT_EQ(names.size(), 2u) << "the box, the empty screen";
  EXPECT_EQ(names.front(), "0001-0ms.png");
  const auto pixels = [&](const std::string& name) {
    return readWhole(std::filesystem::path(frames) / name);
  };
  EXPECT_NE(pixels(names[0]), pixels(names[1]));
  const ProcessResult result =
      play("trouble", "key 1\nanswer ok\nquit\n", {"--frames", "/proc/nowhere"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("/proc/nowhere/0001-0ms.png"), std::string::npos) << result.errors;
}

TEST_F(RunTest, SettingsSurviveARestartInTheSystemFile) {
  expectGood(play("chain", readWhole(QV_SOURCE_DIR "/tests/story/chain/chain.play")));
  const std::string system = readWhole(folder.path() / "player/Chain.system.dat");
  ASSERT_EQ(system.size(), 8206u) << "a setting is written at once";
  EXPECT_EQ(system[14 + 4 * 64], 3) << "the chain sets system register 64";
  // What the file says of another register is what the next run starts from.
  std::string changed = system;
  changed[14 + 4 * 65] = 5;
  writeWhole(folder.path() / "player/Chain.system.dat", changed);
  expectGood(
      play("chain", "expect sysreg 65 5\nexpect sysreg 64 3\nquit\n", {"--headless"}, false));
}

constexpr int ReelSeeds = Sanitized ? 2 : 20;

TEST_F(RunTest, SeedsOfTheShowReelGoThroughWithoutADeadlock) {
  const std::string script = (folder.path() / "reel.play").string();
  writeWhole(script, "ready\nexpect scene sc_reel\nsleep 65000\nready\nexpect scene sc_menu\n");
  for (int seed = 1; seed <= ReelSeeds; ++seed) {
    const ProcessResult result =
        bare({"--simulate", std::to_string(seed), "--scene", "sc_reel", "--play", script, "--user",
              (folder.path() / "player").string(), QV_OUTPUT_DIR "/vorlane"});
    ASSERT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
  }
}

TEST_F(RunTest, ClosingAtAnyMomentOfTheShowReelEndsTheRun) {
  const std::string script = (folder.path() / "reel.play").string();
  for (int millis = 0; millis <= 60'000; millis += 60'000 / ReelSeeds) {
    writeWhole(script, "sleep " + std::to_string(millis) + "\nnow close\n");
    const ProcessResult result =
        bare({"--simulate", "5", "--scene", "sc_reel", "--play", script, "--user",
              (folder.path() / "player").string(), QV_OUTPUT_DIR "/vorlane"});
    ASSERT_EQ(result.status, 0) << millis << " ms: " << result.errors;
    ASSERT_EQ(result.errors, "") << millis << " ms";
  }
}

TEST_F(RunTest, TheSampleIsReadFromItsTitleToEachOfItsEndings) {
  const std::string user = (folder.path() / "player").string();
  const std::string others = QV_SOURCE_DIR "/tests/story/sample/";
  for (const std::string& script : {std::string(QV_OUTPUT_DIR "/vorlane/sample.play"),
                                    others + "book.play", others + "rain.play"}) {
    for (const char* seed : {"1", "2", "3", "4", "5", "6", "7", "8"}) {
      std::filesystem::remove_all(user);
      const ProcessResult result =
          bare({"--simulate", seed, "--user", user, "--shots", folder.path().string(), "--play",
                script, QV_OUTPUT_DIR "/vorlane"});
      EXPECT_EQ(result.status, 0) << "seed " << seed << ": " << result.errors;
    }
  }
}

// Its own title plays a song of its own, over which this would not be seen.
TEST_F(RunTest, TheSamplesEndingLeavesTheFirstSongCurrentThoughNothingPlays) {
  expectGood(play("endings",
                  "ready\nexpect scene sc_menu\nexpect shown system.cut.win\nkey Return\n"
                  "ready\nexpect scene sc_bat9999\nexpect step 1\nexpect hidden system.cut.win\n"
                  "expect reg 251 0\nkey Return\n"
                  "ready\nexpect scene sc_menu\nexpect reg 251 1\nexpect strreg 10 \"BLACK\"\n"
                  "expect sound song none\nquit\n",
                  {"--simulate", "1"}));
}

}  // namespace
}  // namespace qv::testing
