// The small boxes, the pendant, the help page and the start, on the real loop in simulated time.

#include "platform/text/shift_jis.h"
#include "tests/story/staging_ground.h"
#include "tests/support/sanitized.h"

namespace qv::testing {
namespace {

constexpr int Seeds = Sanitized ? 10 : 100;

/// Where the boxes first open, and their buttons in them.
constexpr int BoxX = 167, BoxY = 191, BoxWidth = 306, BoxHeight = 98;
const Rectangle BoxPart = Rectangle::at(BoxX - 10, BoxY - 10, BoxWidth + 20, BoxHeight + 20);
const std::string Yes = "260 270", No = "350 270", Ok = "300 270", Beside = "20 20";

const std::string Ground = "bg KBA001\neffect 1 16 12345\n";
const std::string Confirm = Ground + "reg 600 -7\nconfirm Save_it?\\nYes_or_no.\nkey\n";

class StagedBoxes : public Staging {};

// --- The question ---

TEST_F(StagedBoxes, AQuestionLooksPlainLitAndPressed) {
  expectRun(Confirm,
            "ready\nexpect shown chk.Window\nshot plain.png\nmove " + Yes +
                "\nsleep 50\nshot lit.png\nmove " + No + "\nsleep 50\nshot other.png\nnow click " +
                No +
                "\nsleep 30\nshot pressed.png\nready\nexpect reg 600 0\nshot gone.png\nquit\n");
  EXPECT_TRUE(
      matchesGolden(parts({"plain", "lit", "other", "pressed"}, BoxPart), golden("box-question")));
  expectRun(Ground, "ready\nshot without.png\nquit\n");
  EXPECT_EQ(shot("gone").pixels, shot("without").pixels);
}

TEST_F(StagedBoxes, AQuestionIsAnsweredByPointerAndKeys) {
  struct Answer {
    const char* what;
    std::string script;
    int result;
  };
  const Answer answers[] = {
      {"yes", "click " + Yes + "\n", 1},
      {"no", "click " + No + "\n", 0},
      {"escape", "key Esc\n", 0},
      {"the right button", "right " + Yes + "\n", 0},
      {"the right button beside it", "right " + Beside + "\n", 0},
      {"tab and return", "key Tab\nkey Return\n", 1},
      {"right and space", "key Right\nkey Space\n", 1},
      {"two tabs and return", "key Tab\nkey Tab\nkey Return\n", 0},
      {"up from nowhere", "key Up\nkey Return\n", 0},
      {"left and back", "key Left\nkey Down\nkey Return\n", 1},
      {"clicks beside it first", "click " + Beside + "\nclick " + Beside + "\nclick " + Yes + "\n",
       1},
      {"clicks on its text first", "click 200 210\nclick 200 210\nclick " + No + "\n", 0},
      {"keys that mean nothing", "key F5\nkey A\nclick " + Yes + "\n", 1},
  };
  for (const Answer& answer : answers) {
    SCOPED_TRACE(answer.what);
    expectRun(Confirm, "ready\nexpect shown chk.Window\nexpect reg 600 -7\n" + answer.script +
                           "sleep 500\nready\nexpect reg 600 " + std::to_string(answer.result) +
                           "\nquit\n");
  }
}

TEST_F(StagedBoxes, ABoxThatIsOverLeavesTheLineItsClicks) {
  expectRun(Ground + "confirm One?\nline 　 Text.\n",
            "ready\nkey Esc\nready\nclick 100 400\nready\n"
            "expect reg 600 10\nquit\n");
}

// --- Notices ---

TEST_F(StagedBoxes, ANoticeIsEndedByItsButtonOrEscape) {
  const std::string stage = Ground + "notice Nothing_there.\nreg 602 5\nkey\n";
  expectRun(stage, "ready\nshot plain.png\nmove " + Ok + "\nsleep 50\nshot lit.png\nnow click " +
                       Ok + "\nsleep 30\nshot pressed.png\nready\nexpect reg 602 5\nquit\n");
  EXPECT_TRUE(matchesGolden(parts({"plain", "lit", "pressed"}, BoxPart), golden("box-notice")));
  for (const std::string& script : {std::string("key Esc\n"), std::string("key Tab\nkey Return\n"),
                                    "click " + Beside + "\nexpect reg 602 0\nclick " + Ok + "\n"})
    expectRun(stage,
              "ready\nexpect reg 602 0\n" + script + "sleep 500\nready\nexpect reg 602 5\nquit\n");
}

TEST_F(StagedBoxes, APopupStandsForFiveSecondsOrUntilAClick) {
  const std::string stage = Ground + "popup Saved.\nreg 602 5\n";
  expectRun(stage,
            "ready\nshot popup.png\nsleep 4900\nexpect shown chk.Window\nsleep 200\nready\n"
            "expect reg 602 5\nquit\n");
  EXPECT_TRUE(matchesGolden(parts({"popup"}, BoxPart), golden("box-popup")));
  // The pointer that passes over it is no click.
  expectRun(stage,
            "ready\nmove 300 240\nsleep 100\nmove 10 10\nsleep 100\nmove 300 240\n"
            "sleep 4600\nexpect reg 602 0\nsleep 300\nready\nexpect reg 602 5\nquit\n");
  for (const char* input : {"click 20 20", "click 300 240", "right 20 20", "key Return", "key Esc"})
    expectRun(stage, std::string("ready\nexpect reg 602 0\n") + input +
                         "\nsleep 100\nready\nexpect reg 602 5\nquit\n");
}

// --- Places ---

TEST_F(StagedBoxes, ABoxOpensWhereItsKindWasLeftAcrossRuns) {
  expectRun(Confirm,
            "ready\ndrag 200 200 100 320\nready\nshot moved.png\nkey Esc\nready\n"
            "expect sysreg 206 67\nexpect sysreg 207 311\nexpect sysreg 208 167\nquit\n");
  expectRun(Confirm, "ready\nshot again.png\nquit\n", 1, true);
  const Rectangle moved = Rectangle::at(67, 311, BoxWidth, BoxHeight);
  EXPECT_EQ(parts({"again"}, moved).pixels, parts({"moved"}, moved).pixels);
  expectRun(Confirm, "ready\nshot first.png\nquit\n");
  EXPECT_EQ(parts({"again"}, moved).pixels,
            parts({"first"}, Rectangle::at(BoxX, BoxY, BoxWidth, BoxHeight)).pixels);
}

TEST_F(StagedBoxes, PlacesBeyondTheScreenAreClamped) {
  struct Place {
    int storedX, storedY, x, y;
  };
  for (const Place& place : {Place{5000, 5000, 640 - BoxWidth, 480 - BoxHeight},
                             Place{-50, -1, 0, 0}, Place{-1, 300, 0, 300}})
    expectRun("sysreg 206 " + std::to_string(place.storedX) + "\nsysreg 207 " +
                  std::to_string(place.storedY) + "\nconfirm Where?\n",
              "ready\nkey Esc\nready\nexpect sysreg 206 " + std::to_string(place.x) +
                  "\nexpect sysreg 207 " + std::to_string(place.y) + "\nquit\n");
}

// --- Questions about saving ---

TEST_F(StagedBoxes, LeavingAsksForTheScreenOfSavesInVain) {
  const std::string stage = Ground + "ask\nreg 602 5\nkey\n";
  expectRun(stage,
            "ready\nexpect shown chk.Window\nclick " + No + "\nready\nexpect reg 602 5\nquit\n");
  expectRun(stage, "ready\nclick " + Yes +
                       "\nready\nexpect shown chk.Window\nexpect reg 602 0\nclick " + Ok +
                       "\nready\nexpect reg 602 5\nquit\n");
  // What was just saved or loaded is not asked about.
  expectRun("reg 254 1\n" + stage, "ready\nexpect reg 602 5\nquit\n");
}

TEST_F(StagedBoxes, AnOfferOfSavingAsksEvenRightBehindASave) {
  expectRun("reg 254 1\noffer\nreg 602 5\nkey\n",
            "ready\nexpect shown chk.Window\nclick " + No + "\nready\nexpect reg 602 5\nquit\n");
}

// --- Trouble ---

TEST_F(StagedBoxes, AnAbortAtAnyMomentOfTheBoxesEndsTheRun) {
  const std::string stage = "key\n" + Confirm + "notice One.\npopup Two.\nchange ベルーネ 5\nkey\n";
  for (int millis = 0; millis <= 1200; millis += 40) {
    // The close comes while the rest of the script is still to be done.
    const ProcessResult result = run(
        stage, "ready\nkey Return\nsleep " + std::to_string(millis) + "\nnow close\n", millis + 1);
    ASSERT_EQ(result.status, 0) << millis << " ms: " << result.errors;
  }
  for (const char* upTo :
       {"", "now key Tab\n", "now key Tab\nsleep 20\nnow key Return\n",
        "now key Tab\nsleep 20\nnow key Return\nsleep 40\n", "now key Esc\nsleep 50\n",
        "now key Esc\nsleep 50\nnow key Esc\nsleep 2000\n"}) {
    const ProcessResult result =
        run(stage, std::string("ready\nkey Return\nsleep 50\n") + upTo + "now close\n");
    ASSERT_EQ(result.status, 0) << upTo << result.errors;
    EXPECT_LT(result.seconds, 5.0) << upTo;
    EXPECT_TRUE(traced("scene END").empty()) << upTo;
  }
}

TEST_F(StagedBoxes, ABoxWithoutItsPicturesEndsTheRunByTheSystemsBox) {
  for (const char* file : {"YesNo.mcg", "yes.mcg", "no.mcg"}) {
    const auto path = game() / "dat" / file;
    const std::string kept = readWhole(path);
    std::filesystem::remove(path);
    const ProcessResult result = run(Confirm, "answer cancel\nanswer ok\nsleep 500\n");
    EXPECT_LT(result.status, 128) << file << ": " << result.errors;
    EXPECT_FALSE(traced("box ").empty()) << file;
    EXPECT_TRUE(traced("scene END").empty()) << file;
    writeWhole(path, kept);
  }
}

TEST_F(StagedBoxes, ABoxIsSeenWithItsButtonsOnly) {
  // Where it stood is another place than the system's box about the button that is missing.
  const std::string corner = "sysreg 206 0\nsysreg 207 0\n";
  const Rectangle part = Rectangle::at(0, 0, BoxWidth, 60);
  expectRun(corner + Confirm, "ready\nshot box.png\nquit\n");
  expectRun(Ground, "ready\nshot without.png\nquit\n");
  ASSERT_NE(parts({"box"}, part).pixels, parts({"without"}, part).pixels);
  std::filesystem::remove(game() / "dat/no.mcg");
  run(corner + Confirm, "sleep 300\nshot trouble.png\nanswer cancel\nanswer ok\nsleep 500\n");
  EXPECT_FALSE(traced("box ").empty());
  EXPECT_EQ(parts({"trouble"}, part).pixels, parts({"without"}, part).pixels);
}

TEST_F(StagedBoxes, AHundredSeedsAnswerAlike) {
  const std::string stage =
      Confirm + "notice One.\npopup Two.\npendant 1\nchange ベルーネ 5\nkey\n";
  for (int seed = 1; seed <= Seeds; ++seed) {
    expectRun(stage,
              "ready\nkey Tab\nkey Return\nsleep 300\nready\nexpect reg 600 1\nkey "
              "Return\nready\nclick " +
                  Ok +
                  "\nready\nkey Space\nsleep 1000\nready\nexpect reg 601 9\nexpect reg 100 "
                  "5\nexpect shown "
                  "system.cut.win\nquit\n",
              seed);
    if (HasFailure()) return;
  }
}

// --- The pendant ---

class StagedPendant : public Staging {};

const Rectangle PendantPart = Rectangle::at(16, 16, 62, 122);

TEST_F(StagedPendant, TheGemTellsWhoLeadsAndByHowMuch) {
  struct Standing {
    int first, second;
  };
  std::string stage = Ground + "pendant 1\n", script;
  std::vector<std::string> names;
  for (const Standing& standing : {Standing{0, 0},
                                   {5, 0},
                                   {0, 5},
                                   {70, 10},
                                   {10, 70},
                                   {185, 0},
                                   {0, 185},
                                   {190, 0},
                                   {0, 190},
                                   {1000, -1000},
                                   {0, 0}}) {
    names.push_back("gem" + std::to_string(names.size()));
    stage += "reg 100 " + std::to_string(standing.first) + "\nreg 101 " +
             std::to_string(standing.second) + "\ngem\nkey\n";
    script += "ready\nshot " + names.back() + ".png\nkey Return\n";
  }
  expectRun(stage, script + "ready\nquit\n");
  EXPECT_TRUE(matchesGolden(parts(names, PendantPart), golden("pendant-gems")));
}

TEST_F(StagedPendant, RegistersOfAForeignSaveMayLieAsFarApartAsTheyCan) {
  const std::string least = "-2147483648", most = "2147483647";
  const auto standing = [](const std::string& first, const std::string& second) {
    return "reg 100 " + first + "\nreg 101 " + second + "\ngem\nkey\n";
  };
  expectRun(Ground + "pendant 1\n" + standing("1000", "-1000") + standing(most, least) +
                standing("-1000", "1000") + standing(least, most),
            "ready\nshot first.png\nkey Return\nready\nshot farfirst.png\nkey Return\nready\n"
            "shot second.png\nkey Return\nready\nshot farsecond.png\nquit\n");
  EXPECT_EQ(parts({"farfirst"}, PendantPart).pixels, parts({"first"}, PendantPart).pixels);
  EXPECT_EQ(parts({"farsecond"}, PendantPart).pixels, parts({"second"}, PendantPart).pixels);
  EXPECT_NE(parts({"first"}, PendantPart).pixels, parts({"second"}, PendantPart).pixels);
}

TEST_F(StagedPendant, AChangeGlintsForHalfASecond) {
  expectRun(
      Ground + "pendant 1\nkey\nchange ベルーネ 25\nkey\n",
      "ready\nshot before.png\nkey Return\nsleep 100\nshot lit.png\nsleep 350\nshot still.png\n"
      "sleep 100\nready\nshot after.png\nexpect reg 100 25\nquit\n");
  EXPECT_TRUE(
      matchesGolden(parts({"before", "lit", "after"}, PendantPart), golden("pendant-glint")));
  EXPECT_EQ(shot("still").pixels, shot("lit").pixels);
}

TEST_F(StagedPendant, AnUnknownNameOnlyGlints) {
  EXPECT_EQ(millisOf(Ground + "pendant 1\n", "change だれか 25\n"), 500);
  EXPECT_EQ(millisOf(Ground + "pendant 1\n", "change レッサ 25\n"), 500);
}

// --- Help ---

class StagedHelp : public Staging {};

TEST_F(StagedHelp, TheHelpPageStandsAtTheScreensCorner) {
  expectRun(
      Ground + "line 　 Text.\n",
      "ready\nexpect hidden HelpWindow\nkey F1\nexpect shown HelpWindow\nshot help.png\n"
      "click 100 100\nexpect hidden HelpWindow\nkey Return\nready\nexpect reg 600 13\nquit\n");
  EXPECT_TRUE(matchesGolden(parts({"help"}, Rectangle::at(0, 0, 340, 420)), golden("help")));
}

// --- The start ---

class StagedStart : public Staging {};

TEST_F(StagedStart, TheFirstStartSetsItsDefaultsAndTheSecondNone) {
  std::string defaults = "ready\n";
  const auto expects = [&](int number, int value) {
    defaults += "expect sysreg " + std::to_string(number) + " " + std::to_string(value) + "\n";
  };
  for (const int on : {49, 51, 52, 53, 54, 55, 56, 57, 58, 59, 31, 43, 250, 252, 42})
    expects(on, 1);
  expects(64, 5);
  const int places[] = {96, 124, 96, 124, 122, 172, 167, 191, 167, 191, 167, 191, 16, 16};
  for (int place = 0; place < 14; ++place)
    expects(200 + place, places[place]);
  expectRun("", defaults +
                    "expect reg 8 1\nexpect hidden mess.view\nexpect hidden mess.Drama\n"
                    "expect hidden system.cut.win\nexpect strreg 1 \"三枝\"\n"
                    "expect strreg 2 \"陽一\"\nexpect reg 251 0\nexpect reg 48 0\nquit\n");
  // What the player then sets stays.
  expectRun("sysreg 49 0\nsysreg 64 2\nsysreg 31 0\n", "ready\nquit\n", 1, true);
  expectRun("",
            "ready\nexpect sysreg 49 0\nexpect sysreg 64 2\nexpect sysreg 31 0\n"
            "expect sysreg 43 1\nquit\n",
            1, true);
}

TEST_F(StagedStart, PlatesOfSelectionsHaveTheirOutlines) {
  expectRun(Ground +
                "show select01.view 1\nshow select02.view 1\nshow select03.view 1\nkey\n"
                "show select01.view 0\nshow select02.view 0\nshow select03.view 0\n"
                "show select21.view 1\nshow select22.view 1\n",
            "ready\nshot three.png\nkey Return\nready\nshot two.png\nquit\n");
  EXPECT_TRUE(
      matchesGolden(parts({"three", "two"}, Rectangle::at(30, 50, 60, 360)), golden("plates")));
}

TEST_F(StagedStart, NamesAreKeptInTheirFileEachOnItsOwn) {
  expectRun("strreg 1 佐伯\nstrreg 2 湊\nnames SAVE\n", "ready\nquit\n");
  expectRun("", "ready\nexpect strreg 1 \"佐伯\"\nexpect strreg 2 \"湊\"\nquit\n", 1, true);
  std::filesystem::remove(player() / "Staging.system.dat");
  expectRun("strreg 1 \nnames SAVE\n", "ready\nquit\n", 1, true);
  expectRun("", "ready\nexpect strreg 1 \"三枝\"\nexpect strreg 2 \"湊\"\nquit\n", 1, true);
  expectRun("strreg 2 \nstrreg 1 佐伯\nnames SAVE\n", "ready\nquit\n", 1, true);
  expectRun("", "ready\nexpect strreg 1 \"佐伯\"\nexpect strreg 2 \"陽一\"\nquit\n", 1, true);
}

// --- Gallery, registers of what is to come ---

class StagedState : public Staging {};

TEST_F(StagedState, SeenPicturesAreWrittenAtOnce) {
  // Flags 0, 160, 60 and 98; a picture by colour has none.
  expectRun("bg KBA001\nevent KEV001\nsprite KUS011 2\nsprite KUC011_p 3\nbg BLACK\nkey\n",
            "ready\nexpect sysreg 300 1\nexpect sysreg 460 1\nexpect sysreg 360 1\n"
            "expect sysreg 398 1\nexpect sysreg 301 0\nexpect sysreg 299 0\nnow close\n");
  expectRun("",
            "ready\nexpect sysreg 300 1\nexpect sysreg 460 1\nexpect sysreg 360 1\n"
            "expect sysreg 398 1\nquit\n",
            1, true);
}

TEST_F(StagedState, ASavePointWritesItsRegisters) {
  expectRun("reg 2000 3\nreg 2001 6\nreg 2002 7\nautosave SAVE\nautosave LOAD\nautosave save\n",
            "ready\nexpect reg 92 5\nexpect reg 254 1\nexpect sysreg 109 3\nexpect sysreg 110 6\n"
            "expect sysreg 111 7\nquit\n");
  // It blackens the picture: a load of it begins without the people of the scene before.
  expectRun(
      "bg KBA001\nsprite KUS011 2\neffect 1 16 12345\nreg 8 0\nautosave LOAD\nkey\n"
      "autosave SAVE\nkey\n",
      "ready\nexpect strreg 10 \"KBA001\"\nexpect strreg 13 \"KDS011\"\nexpect reg 8 0\n"
      "key Return\nready\nexpect strreg 10 \"BLACK\"\nexpect strreg 13 \"\"\n"
      "expect strreg 23 \"\"\nexpect reg 30 0\nexpect reg 8 1\nquit\n");
}

TEST_F(StagedState, TheCalendarSetsItsDate) {
  expectRun("sysreg 36 1\nreg 72 2075\nreg 8 0\ncalendar 6 14\n",
            "ready\nexpect reg 2001 6\nexpect reg 2002 14\nexpect reg 72 0\nexpect sysreg 36 0\n"
            "expect reg 8 1\nexpect reg 251 0\nexpect reg 74 9999\nquit\n");
}

}  // namespace
}  // namespace qv::testing
