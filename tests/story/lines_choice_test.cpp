// Selections in both layouts, by pointer and by keys.

#include "tests/story/lines_ground.h"

namespace qv::testing {
namespace {

class LinesChoice : public LinesStory {
 protected:
  /// Goes on behind a choice whose result is expected.
  static std::string result(int number, int value) {
    return "ready\nexpect strreg 33 \"選んだ。\"\nexpect reg " + std::to_string(700 + number * 2) +
           " " + std::to_string(value) + "\nexpect reg 140 0\nexpect reg 90 4\nclick 320 20\n" +
           "ready\n";
  }
};

TEST_F(LinesChoice, ThePointerTakesThePlateUnderItInBothLayouts) {
  play("sc_two",
       "ready\nexpect shown select21.view\nexpect shown select22.view\n"
       "expect hidden mess.view\nexpect reg 140 2\nexpect reg 90 2\nexpect reg 8 1\n"
       "click 200 150\n" +
           result(0, 1) + "click 200 290\n" + result(1, 2) + "quit\n");
  play("sc_three",
       "ready\nexpect shown select01.view\nexpect shown select02.view\n"
       "expect shown select03.view\nexpect reg 140 3\nexpect reg 90 3\n"
       "click 200 100\n" +
           result(0, 1) + "click 200 230\n" + result(1, 2) + "click 200 340\n" + result(2, 3) +
           "quit\n");
}

TEST_F(LinesChoice, KeysAloneReachEveryPlate) {
  play("sc_two", "ready\nkey Down\nready\nkey Return\n" + result(0, 1) +
                     "key Down\nready\nkey Down\nready\nkey Space\n" + result(1, 2) +
                     "key Up\nready\nkey Return\n" + result(2, 2) +
                     "key Num2\nready\nkey Num2\nready\nkey Num2\nready\nkey Return\n" +
                     result(3, 1) + "key Num8\nready\nkey Num8\nready\nkey Return\n" +
                     result(4, 1) + "quit\n");
  play("sc_three",
       "ready\nkey Down\nready\nkey Return\n" + result(0, 1) +
           "key Down\nready\nkey Down\nready\nkey Down\nready\nkey Return\n" + result(1, 3) +
           "key Up\nready\nkey Return\n" + result(2, 3) +
           "key Up\nready\nkey Up\nready\nkey Return\n" + result(3, 2) +
           "key Down\nready\nkey Down\nready\nkey Down\nready\nkey Down\nready\nkey Return\n" +
           result(4, 1) + "quit\n");
}

TEST_F(LinesChoice, KeysGoOnFromWhereThePointerIs) {
  play("sc_three", "ready\nmove 200 230\nready\nkey Down\nready\nkey Return\n" + result(0, 3) +
                       "move 200 340\nready\nkey Up\nready\nkey Return\n" + result(1, 2) +
                       "quit\n");
}

TEST_F(LinesChoice, APressOnAPlateThatTheGameHasNotSeenPointedAtTakesNothing) {
  play("sc_two",
       "ready\npress 200 150\nrelease 200 150\nready\nexpect reg 699 0\nkey Return\nready\n"
       "expect reg 699 0\nmove 200 290\nready\npress 200 290\nready\nexpect reg 700 2\nquit\n");
}

TEST_F(LinesChoice, AClickBesideThePlatesChangesNothing) {
  play("sc_two",
       "ready\nclick 20 20\nready\nclick 620 460\nready\nkey Return\nready\nexpect reg 699 0\n"
       "move 200 150\nready\nmove 20 400\nready\nkey Return\nready\nkey Space\nready\n"
       "expect reg 699 0\nexpect reg 140 2\nquit\n");
}

TEST_F(LinesChoice, ReturnAndSpaceBringThePlatesBackWithoutThePendant) {
  std::string script = "ready\nexpect shown system.cut.win\n";
  for (const char* back : {"key Return\n", "key Space\n"})
    script += std::string("move 200 150\nready\nright\nready\nexpect hidden select21.view\n") +
              back +
              "ready\nexpect shown select21.view\nexpect shown select22.view\n"
              "expect hidden system.cut.win\nexpect reg 699 0\n"
              // Hidden and brought back by the button, all is there.
              "right\nready\nexpect hidden select21.view\nright\nready\n"
              "expect shown select21.view\nexpect shown system.cut.win\n";
  play("sc_two", script + "click 200 150\n" + result(0, 1) + "quit\n");
}

TEST_F(LinesChoice, TheRightButtonHidesPlatesAndPendantAndAClickBringsThemBackWithoutChoosing) {
  std::string script = "ready\nexpect shown system.cut.win\n";
  for (const char* hide : {"right\n", "key Esc\n"})
    for (const char* back : {"click 200 150\n", "click 20 20\n", "right\n", "key Esc\n"})
      script += std::string("move 200 150\nready\n") + hide +
                "ready\nexpect hidden select21.view\nexpect hidden select22.view\n"
                "expect hidden system.cut.win\nkey Down\nready\nkey Up\nready\n" +
                back +
                "ready\nexpect shown select21.view\nexpect shown system.cut.win\n"
                "expect reg 699 0\nmove 20 20\nready\n";
  play("sc_two", script + "click 200 150\n" + result(0, 1) + "quit\n");
}

TEST_F(LinesChoice, KeysOfTheSystemLeaveTheChoiceOpen) {
  play("sc_three",
       "ready\nkey F5\nready\nexpect reg 693 1\nexpect shown select01.view\n"
       "key F7\nready\nexpect reg 694 1\nexpect shown select02.view\n"
       "key F2\nready\nexpect reg 691 1\nclick 564 77\nready\nexpect reg 691 2\n"
       "key F3\nready\nexpect reg 692 1\nclick 564 110\nready\nexpect reg 692 2\n"
       "click 46 76\nready\nexpect reg 693 2\nexpect reg 699 0\nclick 200 340\n" +
           result(0, 3) + "quit\n");
}

TEST_F(LinesChoice, HiddenPlatesStayHiddenBehindTheScreens) {
  play("sc_three",
       "ready\nright\nready\nkey F5\nready\nexpect reg 693 1\nexpect hidden select01.view\n"
       "key F7\nready\nexpect reg 694 1\nexpect hidden select01.view\nkey Return\nready\n"
       "expect shown select01.view\nexpect reg 699 0\nquit\n");
}

TEST_F(LinesChoice, WhatAScreenDidToTheMapIsMadeGoodBehindIt) {
  for (const std::string key : {"F4", "F5", "F6", "F7"}) {
    // Beside the plates is nowhere: a click there brings them back, and a hover puts them out.
    play("sc_spoilt", "ready\nright\nready\nexpect hidden select21.view\nkey " + key +
                          "\nready\nexpect hidden select21.view\nclick 20 20\nready\n"
                          "expect shown select21.view\nexpect shown select22.view\n"
                          "expect reg 699 0\nmove 200 150\nready\nmove 20 400\nready\n"
                          "key Return\nready\nexpect reg 699 0\nexpect reg 140 2\nquit\n");
    if (HasFatalFailure()) FAIL() << key;
  }
}

TEST_F(LinesChoice, ThePendantIsUnlitBehindTheConfiguration) {
  play("sc_spoilt", "ready\nkey F5\nready\nexpect reg 693 1\nexpect reg 70 0\nquit\n");
}

TEST_F(LinesChoice, SkipIsCutOffAtASelection) {
  play("sc_two",
       "ready\nclick 200 150\nready\nkey F4\nready\nexpect sysreg 36 0\n"
       "expect reg 701 -11\nexpect reg 140 2\nexpect reg 72 0\nsleep 60000\n"
       "expect reg 699 2\nquit\n");
}

TEST_F(LinesChoice, SkipAndDramaAreAskedFor) {
  play("sc_three",
       "ready\nkey F4\nready\nexpect strreg 40 \"テキストスキップを実行します\"\n"
       "expect sysreg 36 1\nkey F4\nready\nexpect strreg 40 \"テキストスキップを解除します\"\n"
       "expect sysreg 36 0\nkey F6\nready\nexpect strreg 40 \"ドラマチックモードを実行します\"\n"
       "expect sysreg 47 1\nexpect hidden mess.Drama\nexpect hidden mess.view\nkey F4\nready\n"
       "expect strreg 40 \"ドラマチックモード実行中は\\nテキストスキップできません。\"\n"
       "expect sysreg 36 0\nkey F6\nready\n"
       "expect strreg 40 \"ドラマチックモードを解除します\"\nexpect sysreg 47 0\nexpect reg 690 5\n"
       "expect shown select01.view\nexpect reg 699 0\nexpect reg 140 3\nquit\n");
}

TEST_F(LinesChoice, SkipThatWasAskedForBeginsBehindTheChoice) {
  // The line behind it is passed over, and the next choice cuts it.
  play("sc_three",
       "ready\nkey F4\nready\nclick 200 100\nsleep 500\nexpect reg 700 1\n"
       "expect reg 701 1\nexpect reg 699 2\nexpect sysreg 36 0\nexpect reg 140 3\nquit\n");
}

TEST_F(LinesChoice, AnotherCountThanTwoHasThreePlates) {
  std::string script;
  for (int round = 0; round < 5; ++round)
    script += "ready\nclick 200 100\nready\nclick 320 20\n";
  play("sc_three", script +
                       "ready\nexpect shown select03.view\nexpect reg 90 3\nexpect reg 140 7\n"
                       "click 200 340\nready\nexpect reg 710 3\nquit\n");
}

TEST_F(LinesChoice, ALoadInASelectionsWaitLeavesByTheLoadAlsoWithTheEndsResult) {
  for (const char* key : {"F3", "F5"})
    play("sc_load", std::string("ready\nexpect scene sc_load\nkey ") + key +
                        "\nready\nexpect scene sc_names\nexpect reg 700 " +
                        (key == std::string("F3") ? "-13" : "255") + "\nquit\n");
}

TEST_F(LinesChoice, ThePendantLightsUpBetweenThePlates) {
  play("sc_two",
       "ready\nexpect pixel 46 76 305030\nmove 46 76\nready\nexpect reg 70 1\n"
       "expect pixel 46 76 60F060\nmove 200 150\nready\nexpect reg 70 0\n"
       "expect pixel 46 76 305030\nclick 200 150\n" +
           result(0, 1) + "quit\n");
}

}  // namespace
}  // namespace qv::testing
