// Lines and their waits, as a player meets them: what each key does, what ends a line, who speaks.

#include "tests/story/lines_ground.h"

namespace qv::testing {
namespace {

// --- Time ---

TEST_F(LinesStory, ATimedLineEndsByItselfAndOneThatIsOnlyShownAtOnce) {
  play("sc_timed",
       "ready\nexpect reg 90 4\nexpect shown mess.view\nexpect hidden mess.Drama\n"
       "sleep 2900\nexpect strreg 33 \"三秒。\"\nsleep 200\nexpect strreg 33 \"終わり。\"\n"
       "expect reg 700 10\nexpect reg 750 3000\nexpect reg 701 0\nexpect reg 751 0\n"
       "expect reg 720 0\nquit\n");
}

TEST_F(LinesStory, AHiddenWindowFreezesTheTimeOfALine) {
  play("sc_timed",
       "sleep 1000\nready\nright\nready\nexpect hidden mess.view\nexpect hidden system.cut.win\n"
       "sleep 60000\nexpect strreg 33 \"三秒。\"\nexpect reg 699 0\nkey Return\nready\n"
       "expect shown mess.view\nexpect shown system.cut.win\nexpect reg 699 0\n"
       "sleep 2200\nexpect strreg 33 \"終わり。\"\nexpect reg 700 10\nquit\n");
}

TEST_F(LinesStory, ABoxInsideALineCostsItsTimeAtMostOneStep) {
  // Three seconds, of which one is over; the box stands for ten.
  play("sc_timed",
       "ready\nsleep 1000\nkey F2\nready\nexpect shown chk.WindowClient\nsleep 10000\n"
       "click 318 269\nready\nsleep 1700\nexpect strreg 33 \"三秒。\"\nsleep 400\n"
       "expect strreg 33 \"終わり。\"\nexpect reg 700 10\nquit\n");
}

// --- Modes and results ---

TEST_F(LinesStory, EndsWithAResultForEachWayToGoOn) {
  play("sc_names",
       "ready\nclick 320 200\nready\nexpect reg 700 10\nkey Return\nready\nexpect reg 701 13\n"
       "key Space\nready\nexpect reg 702 32\nexpect reg 90 4\nquit\n");
}

TEST_F(LinesStory, ModeTwoOnlyWaitsAndTouchesNoText) {
  play("sc_modes",
       "ready\nexpect strreg 33 \"立つ。\"\nexpect strreg 32 \"まだ。\"\nexpect hidden mess.view\n"
       "expect reg 8 1\nkey Return\nready\nexpect strreg 33 \"まだ。次。\"\nexpect strreg 32 \"\"\n"
       "expect shown mess.view\nexpect reg 8 0\nexpect reg 701 13\nquit\n");
}

// --- Voices and mouths ---

TEST_F(LinesStory, AClickCutsAVoiceUnlessTheModeLeavesIt) {
  play("sc_voice",
       "ready\nexpect sound wave 0000_001\nexpect reg 68 1\nexpect reg 69 1\nexpect reg 9 254\n"
       "expect reg 73 0\nexpect reg 74 9999\nsleep 500\nkey Return\nready\n"
       "expect strreg 33 \"残る声。\"\nexpect sound wave 0000_001\nsleep 100\nkey Return\nready\n"
       "expect strreg 33 \"まだ聞こえる。\"\nexpect sound wave 0000_001\nexpect reg 69 1\n"
       "expect reg 68 0\nkey Return\nready\nexpect sound wave 0000_002\nsleep 1200\n"
       "expect sound wave none\nexpect reg 69 1\nkey Return\nready\nexpect reg 69 0\n"
       "expect strreg 33 \"終わり。\"\nexpect sound wave none\nquit\n");
}

TEST_F(LinesStory, ALineThatIsSkippedCutsAVoiceThatWasLeftUnlessItsModeLeavesIt) {
  play("sc_left",
       "ready\nexpect sound wave 0000_001\nkey F4\nsleep 500\nready\n"
       "expect strreg 33 \"静か。\"\nexpect reg 700 -11\nexpect reg 701 1\nexpect reg 720 1\n"
       "expect reg 702 1\nexpect reg 721 0\nexpect reg 722 0\nexpect reg 69 0\n"
       "expect sound wave none\nquit\n");
}

TEST_F(LinesStory, AVoiceMovesTheMouthUntilItEnds) {
  ProcessResult result = run("sc_silence", "ready\nsleep 100\nshot shut.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  result =
      run("sc_voice",
          "ready\nkey Return\nready\nkey Return\nready\nkey Return\nready\nexpect reg 21 0\n"
          "expect reg 41 1\nsleep 150\nshot a.png\nsleep 130\nshot b.png\nsleep 130\nshot c.png\n"
          "sleep 2000\nshot d.png\nsleep 500\nshot e.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  // Where the figure's mouth lies: its place, its foot on the screen's edge.
  const auto mouth = [&](const char* name) { return part(shot(name), 304, 240, 32, 16); };
  EXPECT_TRUE(mouth("a") != mouth("b") || mouth("b") != mouth("c")) << "it moves";
  EXPECT_EQ(mouth("d"), mouth("shut")) << "and is shut behind the voice";
  EXPECT_EQ(mouth("e"), mouth("shut"));
}

TEST_F(LinesStory, AVoiceThatMustNotSoundMovesTheMouthInSilence) {
  play(
      "sc_silence",
      // No voice at all.
      "ready\nexpect reg 68 1\nexpect reg 69 0\nexpect reg 9 254\nexpect sound wave none\nkey "
      "Return\n"
      // The speaker's own switch is off; then that of all.
      "ready\nexpect strreg 33 \"ひとりだけ切る。\"\nexpect reg 9 3\nexpect reg 69 0\n"
      "expect reg 68 1\nexpect sound wave none\nkey Return\n"
      "ready\nexpect strreg 33 \"みんな切る。\"\nexpect reg 9 3\nexpect reg 69 0\n"
      "expect sound wave none\nkey Return\n"
      // Who does not stand there speaks without a mouth.
      "ready\nexpect strreg 33 \"ここにいない。\"\nexpect reg 9 254\nexpect reg 69 1\nexpect reg "
      "68 1\n"
      "expect sound wave 0000_001\nkey Return\n"
      // Of two slots the first; a class without a switch moves none and says nothing.
      "ready\nexpect strreg 33 \"ふたり。\"\nexpect reg 9 1\nexpect sound wave none\nkey Return\n"
      "ready\nexpect strreg 33 \"番人。\"\nexpect reg 9 254\nexpect reg 69 0\nexpect reg 68 1\n"
      "expect sound wave none\nkey Return\n"
      // Narration, and somebody whom no row knows.
      "ready\nexpect strreg 33 \"地の文。\"\nexpect strreg 30 \"　\"\nexpect reg 68 0\nkey Return\n"
      "ready\nexpect strreg 30 \"【　？？　】\"\nexpect reg 68 0\nexpect reg 69 0\n"
      "expect sound wave none\nquit\n");
}

TEST_F(LinesStory, ASilentMouthMovesForAsLongAsTheLineStands) {
  const ProcessResult result =
      run("sc_silence",
          "ready\nsleep 100\nshot shut.png\nkey Return\nready\nsleep 200\nshot a.png\nsleep 130\n"
          "shot b.png\nsleep 130\nshot c.png\nsleep 20000\nshot d.png\nsleep 130\nshot e.png\n"
          "sleep 130\nshot f.png\nkey Return\nready\nkey Return\nready\nsleep 100\nshot after.png\n"
          "sleep 130\nshot later.png\nsleep 130\nshot last.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  const auto mouth = [&](const char* name) { return part(shot(name), 304, 240, 32, 16); };
  EXPECT_TRUE(mouth("a") != mouth("b") || mouth("b") != mouth("c"));
  EXPECT_TRUE(mouth("d") != mouth("e") || mouth("e") != mouth("f"));
  for (const char* after : {"after", "later", "last"})
    EXPECT_EQ(mouth(after), mouth("shut")) << after << ": what lay under it comes back";
}

// --- Names and texts ---

TEST_F(LinesStory, PrintsTheHerosNamesAsTheyAreAtThatMoment) {
  play("sc_names",
       "ready\nexpect strreg 33 \"湊、三枝。\"\nexpect strreg 31 \"＊＊＊、※※※。\"\n"
       "expect strreg 32 \"\"\nexpect strreg 30 \"　\"\nkey Return\n"
       "ready\nexpect strreg 30 \"【　湊　】\"\nexpect reg 68 0\nquit\n");
}

TEST_F(LinesStory, ATextThatRepeatsTheLastIsPrintedButNotKept) {
  play("sc_names",
       "ready\nkey Return\nready\nkey Return\nready\nexpect strreg 33 \"同じ。\"\n"
       "expect strreg 30 \"【　女性の声　】\"\nexpect strreg 171 \"湊、三枝。\"\n"
       "expect strreg 100 \"　\"\nexpect strreg 172 \"同じ。\"\nexpect strreg 101 \"【　湊　】\"\n"
       "expect strreg 173 \"\"\nexpect strreg 102 \"\"\nkey Return\nready\n"
       "expect strreg 102 \"【　ベルーネ　】\"\nexpect strreg 173 \"違う。\"\nquit\n");
}

TEST_F(LinesStory, AffectionEndsAtItsBounds) {
  play("sc_hearts",
       "ready\nexpect reg 722 999\nexpect reg 723 1000\nexpect reg 724 1000\nexpect reg 725 -999\n"
       "expect reg 726 -1000\nquit\n");
}

// --- Keys ---

/// A step of scripts: F6, and how the story stands behind it.
constexpr const char* Drama = "key F6\nready\nexpect sysreg 47 1\n";

TEST_F(LinesStory, TheRightButtonAndEscHideTheWindowAndAnyAdvanceBringsItBack) {
  std::string script = "ready\n";
  for (const char* hide : {"right\n", "key Esc\n", "right 320 400\n"})
    for (const char* back :
         {"right\n", "key Esc\n", "key Return\n", "key Space\n", "click 320 200\n"})
      script += std::string(hide) +
                "ready\nexpect hidden mess.view\nexpect hidden mess.Drama\n"
                "expect hidden system.cut.win\nexpect reg 8 0\n" +
                back +
                "ready\nexpect shown mess.view\nexpect shown system.cut.win\nexpect reg 699 0\n";
  play("sc_names", script + "key Return\nready\nexpect reg 699 1\nexpect reg 700 13\nquit\n");
}

TEST_F(LinesStory, AClickOnTheHiddenWindowGivesTheSceneNothing) {
  play("sc_drama",
       "ready\nright\nready\nclick 320 400\nready\nexpect reg 699 0\nexpect shown mess.view\n"
       "click 320 400\nready\nexpect reg 699 1\nexpect reg 700 10\nquit\n");
}

TEST_F(LinesStory, KeysOfScreensThatAreNotThereShowANoticeAndTheLineStands) {
  std::string script;
  int lines = 0;
  for (const char* key : {"key F2\n", "key F3\n", "key F5\n", "key F7\n", "click 606 372\n",
                          "click 606 400\n", "click 40 60\n"}) {
    script += "ready\nexpect reg 699 " + std::to_string(lines) + "\n" + key +
              "ready\nexpect shown chk.WindowClient\nclick 318 269\nready\nexpect reg 699 " +
              std::to_string(lines) + "\nexpect shown mess.view\nkey Return\n";
    ++lines;
  }
  play("sc_skip", script + "ready\nexpect reg 699 7\nquit\n");
}

TEST_F(LinesStory, TheHelpKeyShowsAndHidesTheHelpAndTheLineStands) {
  play("sc_skip",
       "ready\nexpect hidden HelpWindow\nkey F1\nready\nexpect shown HelpWindow\nexpect reg 699 0\n"
       "key F1\nready\nexpect hidden HelpWindow\nkey F1\nready\nkey Esc\nready\n"
       "expect hidden HelpWindow\nexpect shown mess.view\nexpect reg 699 0\nquit\n");
}

TEST_F(LinesStory, OtherKeysAndPressesChangeNothing) {
  std::string script = "ready\n";
  for (const char* key :
       {"F8", "F9", "F12", "A", "1", "Num5", "Up", "Down", "Left", "Tab", "Home", "PageUp"})
    script += std::string("key ") + key + "\nready\n";
  play("sc_skip", script +
                      "wheel UP\nready\nexpect reg 699 0\nexpect shown mess.view\n"
                      "expect sysreg 36 0\nexpect sysreg 47 0\nquit\n");
}

// --- The pendant ---

TEST_F(LinesStory, ThePendantLightsUpUnderThePointer) {
  play("sc_names",
       "ready\nexpect reg 70 0\nexpect pixel 46 76 305030\nmove 46 76\nready\nexpect reg 70 1\n"
       "expect pixel 46 76 60F060\nmove 320 200\nready\nexpect reg 70 0\n"
       "expect pixel 46 76 305030\nmove 46 76\nready\nexpect reg 70 1\nkey Return\nready\n"
       "expect reg 70 0\nexpect pixel 46 76 305030\nquit\n");
}

TEST_F(LinesStory, BehindALoadThePointersRegionIsToldWithoutAMove) {
  play("sc_resumed",
       "ready\nmove 46 76\nready\nexpect reg 70 1\nkey Return\nready\nsleep 300\n"
       "expect strreg 33 \"読み込んだあと。\"\nexpect reg 70 1\nexpect pixel 46 76 60F060\n"
       "key Return\nready\nsleep 300\nexpect strreg 33 \"そのあと。\"\nexpect reg 721 0\n"
       "expect reg 70 0\nexpect pixel 46 76 305030\nquit\n");
}

// --- Drama ---

TEST_F(LinesStory, DramaGoesOnASecondBehindAVoiceAndByTheLengthOfATextWithoutOne) {
  // The first line is narration of eight bytes, and counts from where it is switched on.
  play("sc_drama",
       "ready\nkey F6\nsleep 5000\nexpect strreg 33 \"二十。\"\nexpect reg 700 10\n"
       // A voice of a second, and a second behind it.
       "expect reg 701 10\nexpect reg 751 2050\n"
       // Twenty bytes, ten, none.
       "expect reg 702 10\nexpect reg 752 1000\nexpect reg 703 10\nexpect reg 753 500\n"
       "expect reg 704 10\nexpect reg 754 50\nquit\n");
}

TEST_F(LinesStory, AClickEndsALineOfDramaToo) {
  play("sc_drama",
       "ready\nkey F6\nready\nexpect shown mess.Drama\nexpect hidden mess.view\nclick 320 420\n"
       "ready\nexpect reg 700 10\nexpect strreg 33 \"一秒の声。\"\nkey Space\nready\n"
       "expect reg 701 32\nexpect sound wave none\nquit\n");
}

TEST_F(LinesStory, AHiddenWindowStopsEveryCountOfDramaButTheOneBehindAVoice) {
  const std::string hide = "right\nready\nexpect hidden mess.Drama\nsleep 30000\n";
  play("sc_drama",
       std::string("ready\n") + Drama +
           // By the text, without a speaker.
           hide + "expect reg 699 0\nright\nready\nkey Return\nready\n" +
           // Behind the voice the time runs on: the window comes back, and the line ends.
           "expect strreg 33 \"一秒の声。\"\nright\nready\nexpect hidden mess.Drama\nsleep 2300\n"
           "expect reg 699 2\nexpect reg 701 10\nexpect shown mess.Drama\n"
           "expect strreg 33 \"あいうえおかきくけこ\"\n" +
           hide + "expect reg 699 2\nquit\n");
}

TEST_F(LinesStory, SkipIsRefusedInDrama) {
  play("sc_screens",
       std::string("ready\n") + Drama +
           "key F4\nready\nexpect sysreg 36 0\nexpect reg 690 1\n"
           "expect strreg 40 \"ドラマチックモード実行中は\\nテキストスキップできません。\"\n"
           "expect reg 699 0\nexpect shown mess.Drama\nquit\n");
}

// --- Skip ---

TEST_F(LinesStory, SkipPassesALineInSeventyMillisecondsAndNothingSpeaks) {
  play("sc_skip",
       "ready\nexpect sound wave 0000_001\nkey F4\nsleep 1200\nexpect sysreg 36 1\n"
       "expect reg 700 -11\nexpect reg 701 1\nexpect reg 702 1\nexpect reg 752 70\n"
       "expect sound wave none\nexpect reg 9 254\nexpect strreg 30 \"【　ベルーネ　】\"\n"
       "quit\n");
}

TEST_F(LinesStory, AnyStopOfSkipLetsTheNextLineStand) {
  ASSERT_EQ(run("sc_skip", "ready\nsleep 500\nshot fresh.png\nquit\n").status, 0);
  for (const char* stop :
       {"key Return", "key Space", "key Esc", "right", "click 320 200", "key F1", "key F2",
        "key F3", "key F4", "key F5", "key F6", "key F7", "click 606 372", "click 46 76"}) {
    const ProcessResult result =
        run("sc_skip", std::string("ready\nkey F4\nsleep 700\nexpect sysreg 36 1\n") + stop +
                           "\nready\nsleep 2000\nexpect sysreg 36 0\nexpect reg 72 0\n"
                           "expect shown mess.view\nexpect sysreg 47 0\nshot stopped.png\n"
                           "expect hidden chk.Window\nquit\n");
    // No box was ever made.
    EXPECT_NE(result.errors.find("expect hidden chk.Window: there is no window of that name"),
              std::string::npos)
        << stop << ": " << result.errors;
    EXPECT_TRUE(part(shot("stopped"), 586, 352, 54, 74) == part(shot("fresh"), 586, 352, 54, 74))
        << stop << ": the corner has its buttons again";
  }
}

TEST_F(LinesStory, OtherKeysDoNotStopSkip) {
  play("sc_skip",
       "ready\nkey F4\nsleep 300\nkey A\nkey F8\nkey Up\nready\nexpect sysreg 36 1\nquit\n");
}

TEST_F(LinesStory, TwoInputsBetweenTwoPollsOfSkipCountOnce) {
  play(
      "sc_fade",
      "sleep 420\nnow key Return\nnow key Space\nsleep 3000\nexpect sysreg 36 0\nexpect reg 699 1\n"
      "expect reg 700 0\nexpect strreg 33 \"二行目。\"\nquit\n");
}

TEST_F(LinesStory, WhatStopsSkipWhileAPictureIsBroughtStopsItAtTheNextLine) {
  for (const char* input : {"key Return", "key F3", "right"})
    play("sc_poll", std::string("sleep 100\n") + input +
                        "\nsleep 2000\nexpect sysreg 36 0\nexpect reg 699 1\nexpect reg 700 0\n"
                        "expect reg 750 0\nexpect reg 72 0\nexpect strreg 33 \"二行目。\"\nquit\n");
  // Without input both lines pass, and a click on the open screen means nothing there.
  for (const char* input : {"", "click 46 400\n"}) {
    const ProcessResult result =
        run("sc_poll", std::string("sleep 100\n") + input + "sleep 2000\nready\n");
    EXPECT_NE(result.errors.find("the game has ended"), std::string::npos) << result.errors;
  }
}

TEST_F(LinesStory, SkipWithAHiddenWindowIsRefused) {
  play("sc_screens",
       "ready\nright\nready\nkey F4\nready\nexpect sysreg 36 0\nexpect reg 690 1\n"
       "expect strreg 40 \"メッセージウインドウを表示させた\\n状態にして下さい\"\n"
       "expect hidden mess.view\nkey Return\nready\nexpect reg 699 0\nexpect shown "
       "mess.view\nquit\n");
}

TEST_F(LinesStory, SkipThatTheConfigurationSwitchesOnBehindAHiddenWindowShowsItAgain) {
  play("sc_hidden_skip",
       "ready\nright\nready\nexpect hidden mess.view\nkey F5\nsleep 500\nexpect sysreg 36 1\n"
       "expect reg 700 13\nkey Return\nready\nsleep 200\nexpect sysreg 36 0\n"
       "expect shown mess.view\nexpect hidden system.cut.win\n"
       // The wait has forgotten that it was hidden; hidden and shown once more, all is there.
       "right\nready\nexpect hidden mess.view\nright\nready\nexpect shown mess.view\n"
       "expect shown system.cut.win\nquit\n");
}

// --- What the screens answer ---

TEST_F(LinesStory, TheScreensAnswersEndTheWaitOrLetTheLineStand) {
  play("sc_screens",
       "ready\nkey F5\nready\nexpect reg 693 1\nexpect reg 699 0\nexpect shown mess.view\n"
       "key F7\nready\nexpect reg 694 1\nexpect shown mess.view\nkey F2\nready\nexpect reg 691 1\n"
       "key F3\nready\nexpect reg 692 1\nexpect reg 699 0\nkey Return\n"
       // To the title, to the end, skip from now on, a load.
       "ready\nkey F5\nready\nexpect reg 701 -10\nclick 46 76\nready\nexpect reg 702 255\n"
       "key F5\nready\nexpect reg 703 13\nexpect strreg 33 \"読み込む。\"\nkey F3\nready\n"
       "expect reg 704 -13\nexpect strreg 33 \"読み込んだあと。\"\nkey Return\nready\n"
       "expect reg 721 0\nquit\n");
}

TEST_F(LinesStory, ALoadOutOfALineLeavesTheScene) {
  play("sc_load_line",
       "ready\nexpect scene sc_load_line\nexpect reg 254 0\nkey F3\nready\n"
       "expect scene sc_names\nexpect reg 700 -13\nexpect reg 699 1\nexpect reg 254 1\nquit\n");
}

TEST_F(LinesStory, TheScreensAnswersEndASelectionWithItsOwnCodes) {
  std::string lines = "ready\nkey Return\nready\n";
  lines += "key F5\nready\nkey F5\nready\nkey F5\nready\nkey F3\nready\nkey Return\nready\n";
  play("sc_screens",
       lines +
           // The title's code is another one than of a line.
           "expect reg 140 2\nexpect reg 90 2\nkey F5\nready\nexpect reg 706 -5\nexpect reg 140 2\n"
           "key F5\nready\nexpect reg 707 255\nexpect reg 140 3\nexpect reg 90 3\n"
           "key F5\nready\nexpect reg 699 8\nexpect shown select01.view\n"
           "key F3\nready\nexpect reg 708 -13\nexpect reg 6 1\nquit\n");
}

TEST_F(LinesStory, AMapThatIsGoneIsToldAndTheWaitNeitherSpinsNorHoldsTheEnd) {
  const ProcessResult result = run("sc_lost", "answer ok\nanswer ok\nsleep 500\nnow close\n");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_NE(trace().find("は、クリックマップではありません。"), std::string::npos) << trace();
}

TEST_F(LinesStory, AMapThatIsGoneIsToldWhereAPictureIsBroughtToo) {
  // Once: the poll keeps it as the player's wish to stop, and the line takes it.
  const ProcessResult result =
      run("sc_lost_poll",
          "answer ok\nready\nexpect reg 720 -1\nexpect reg 721 70\nexpect reg 700 0\n"
          "expect sysreg 36 0\nexpect reg 72 0\nquit\n");
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::string told = trace();
  const size_t first = told.find("は、クリックマップではありません。");
  ASSERT_NE(first, std::string::npos) << told;
  EXPECT_EQ(told.find(" box ", first), std::string::npos) << told;
}

}  // namespace
}  // namespace qv::testing
