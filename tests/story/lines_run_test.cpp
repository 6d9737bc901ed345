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

TEST_F(LinesStory, AVoiceMovesTheMouthUntilItEnds) {
  const ProcessResult result =
      run("sc_voice",
          "ready\nkey Return\nready\nkey Return\nready\nkey Return\nready\nexpect reg 21 0\n"
          "expect reg 41 1\nsleep 150\nshot a.png\nsleep 130\nshot b.png\nsleep 130\nshot c.png\n"
          "sleep 2000\nshot d.png\nsleep 500\nshot e.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  // Where the figure's mouth lies: its place, its foot on the screen's edge.
  const auto mouth = [&](const char* name) { return part(shot(name), 304, 240, 32, 16); };
  EXPECT_TRUE(mouth("a") != mouth("b") || mouth("b") != mouth("c")) << "it moves";
  EXPECT_EQ(mouth("d"), mouth("e")) << "and is still behind the voice";
}

TEST_F(LinesStory, AVoiceThatMustNotSoundMovesTheMouthInSilence) {
  play("sc_silence",
       // No voice at all.
       "ready\nexpect reg 68 1\nexpect reg 69 0\nexpect reg 9 254\nexpect sound wave none\nkey Return\n"
       // The speaker's own switch is off; then that of all.
       "ready\nexpect strreg 33 \"ひとりだけ切る。\"\nexpect reg 9 3\nexpect reg 69 0\n"
       "expect reg 68 1\nexpect sound wave none\nkey Return\n"
       "ready\nexpect strreg 33 \"みんな切る。\"\nexpect reg 9 3\nexpect reg 69 0\n"
       "expect sound wave none\nkey Return\n"
       // Who does not stand there speaks without a mouth.
       "ready\nexpect strreg 33 \"ここにいない。\"\nexpect reg 9 254\nexpect reg 69 1\nexpect reg 68 1\n"
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
          "quit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  const auto mouth = [&](const char* name) { return part(shot(name), 304, 240, 32, 16); };
  EXPECT_TRUE(mouth("a") != mouth("b") || mouth("b") != mouth("c"));
  EXPECT_TRUE(mouth("d") != mouth("e") || mouth("e") != mouth("f"));
  EXPECT_EQ(mouth("after"), mouth("shut")) << "what lay under it comes back";
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

}  // namespace
}  // namespace qv::testing
