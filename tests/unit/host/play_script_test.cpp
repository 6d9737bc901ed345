#include "host/play_script.h"

#include <gtest/gtest.h>

#include "platform/display/key_codes.h"

namespace qv {
namespace {

using Verb = ScriptLine::Verb;
using Expectation = ScriptLine::Expectation;

ScriptLine only(const std::string& text) {
  const ParsedScript script = parsePlayScript(text);
  EXPECT_EQ(script.complaint, "") << text;
  EXPECT_EQ(script.lines.size(), 1u) << text;
  return script.lines.empty() ? ScriptLine{} : script.lines.front();
}

std::string complaintOf(const std::string& text) {
  return parsePlayScript(text).complaint;
}

TEST(PlayScript, PassesOverCommentsAndEmptyLinesButCountsThem) {
  const ParsedScript script = parsePlayScript("# a comment\n\n   \n  ready\r\n\tquit");
  ASSERT_EQ(script.lines.size(), 2u);
  EXPECT_EQ(script.lines[0].verb, Verb::Ready);
  EXPECT_EQ(script.lines[0].number, 4);
  EXPECT_EQ(script.lines[1].verb, Verb::Quit);
  EXPECT_EQ(script.lines[1].number, 5);
}

TEST(PlayScript, ReadsPointerLines) {
  const ScriptLine move = only("move 0 479");
  EXPECT_EQ(move.verb, Verb::Move);
  EXPECT_EQ(move.x, 0);
  EXPECT_EQ(move.y, 479);
  EXPECT_EQ(only("click 639 0").verb, Verb::Click);
  EXPECT_TRUE(only("right 5 6").hasPosition);
  EXPECT_FALSE(only("right").hasPosition);
  const ScriptLine drag = only("now drag 10 20 600 400");
  EXPECT_EQ(drag.verb, Verb::Drag);
  EXPECT_TRUE(drag.now);
  EXPECT_EQ(drag.x, 10);
  EXPECT_EQ(drag.y, 20);
  EXPECT_EQ(drag.toX, 600);
  EXPECT_EQ(drag.toY, 400);
  EXPECT_EQ(only("wheel UP").y, 1);
  EXPECT_EQ(only("wheel DOWN").y, -1);
}

TEST(PlayScript, RefusesPlacesOffTheScreen) {
  for (const char* text : {"click 640 0", "click 0 480", "move -1 0", "right 10 -3",
                           "drag 640 0 1 1", "drag 1 1 0 480"})
    EXPECT_EQ(complaintOf(text), "line 1: the place lies outside the 640 by 480 screen") << text;
}

TEST(PlayScript, KnowsEveryKeyByItsName) {
  const std::pair<const char*, int> keys[] = {
      {"Return", KeyReturn}, {"Esc", KeyEscape},    {"Space", KeySpace},
      {"Up", KeyUp},         {"Down", KeyDown},     {"Left", KeyLeft},
      {"Right", KeyRight},   {"PageUp", KeyPageUp}, {"PageDown", KeyPageDown},
      {"Home", KeyHome},     {"End", KeyEnd},       {"Tab", KeyTab},
      {"F1", KeyF1},         {"F12", KeyF1 + 11},   {"0", Key0},
      {"9", Key0 + 9},       {"Num0", KeyNum0},     {"Num9", KeyNum0 + 9},
      {"A", KeyA},           {"Z", KeyA + 25}};
  for (const auto& [name, key] : keys) {
    EXPECT_EQ(only(std::string("key ") + name).key, key) << name;
    EXPECT_EQ(nameOfKey(key), name);
  }
  for (const char* name : {"F0", "F13", "return", "Num", "Num10", "a", "AB"})
    EXPECT_EQ(complaintOf(std::string("key ") + name),
              std::string("line 1: there is no key named \"") + name + "\"");
}

TEST(PlayScript, NowStandsBeforeInputsAndTheWindowsStateAlone) {
  EXPECT_TRUE(only("now key Return").now);
  EXPECT_EQ(only("now minimise").verb, Verb::Minimise);
  EXPECT_EQ(only("now restore").verb, Verb::Restore);
  EXPECT_EQ(only("now close").verb, Verb::Close);
  EXPECT_EQ(complaintOf("now ready"), "line 1: \"ready\" cannot stand behind now");
  EXPECT_EQ(complaintOf("minimise"), "line 1: \"minimise\" stands behind now only");
}

TEST(PlayScript, AnInputMayNameTheWaitThatTakesIt) {
  EXPECT_EQ(only("@12 key Space").waitOrdinal, 12u);
  EXPECT_EQ(only("key Space").waitOrdinal, 0u);
  for (const char* text : {"@0 key Space", "@x key Space", "@ key Space"})
    EXPECT_NE(complaintOf(text), "") << text;
}

TEST(PlayScript, ReadsEveryAnswer) {
  EXPECT_EQ(only("answer yes").answer, BoxAnswer::Yes);
  EXPECT_EQ(only("answer no").answer, BoxAnswer::No);
  EXPECT_EQ(only("answer ok").answer, BoxAnswer::Ok);
  EXPECT_EQ(only("answer retry").answer, BoxAnswer::Retry);
  EXPECT_EQ(only("answer cancel").answer, BoxAnswer::Cancel);
  EXPECT_EQ(complaintOf("answer maybe"),
            "line 1: a box is answered by yes, no, ok, retry or cancel");
}

TEST(PlayScript, ReadsEveryExpectation) {
  EXPECT_EQ(only("expect scene sc_menu").text, "sc_menu");
  EXPECT_EQ(only("expect step 3").value, 3);
  const ScriptLine reg = only("expect reg 100 -5");
  EXPECT_EQ(reg.expectation, Expectation::Reg);
  EXPECT_EQ(reg.registerNumber, 100);
  EXPECT_EQ(reg.value, -5);
  EXPECT_EQ(only("expect sysreg 250 4294967295").value, 4294967295);
  EXPECT_EQ(only("expect strreg 1 \"a \\\"b\\\" \\\\ c\\n\"").text, "a \"b\" \\ c\n");
  EXPECT_EQ(only("expect shown mess.view").expectation, Expectation::Shown);
  EXPECT_EQ(only("expect hidden mess.view").expectation, Expectation::Hidden);
  EXPECT_EQ(only("expect pixel 1 2 FF8001").value, 0xFF8001);
  EXPECT_EQ(only("expect sound wave none").expectation, Expectation::Wave);
  EXPECT_EQ(only("expect sound song K03").expectation, Expectation::Song);
  EXPECT_EQ(only("expect sound song K03").text, "K03");
}

TEST(PlayScript, SaysWhatIsWrongWithALine) {
  EXPECT_EQ(complaintOf("ready\njump"), "line 2: \"jump\" is no word of a play script");
  EXPECT_EQ(complaintOf("ready now"), "line 1: there is more on the line than belongs there");
  EXPECT_EQ(complaintOf("sleep soon"),
            "line 1: here belongs a number of milliseconds, not \"soon\"");
  EXPECT_EQ(complaintOf("sleep"), "line 1: here belongs a number of milliseconds, not \"\"");
  EXPECT_EQ(complaintOf("type hello"), "line 1: here belongs a text in double quotes");
  EXPECT_EQ(complaintOf("type \"hello"), "line 1: the text has no closing double quote");
  EXPECT_EQ(complaintOf("expect luck 1"), "line 1: nothing can be expected of \"luck\"");
  EXPECT_EQ(complaintOf("expect sound horn x"), "line 1: a sound is a wave or a song");
  EXPECT_EQ(complaintOf("click 5"), "line 1: here belongs a row, not \"\"");
  EXPECT_EQ(complaintOf("# " + std::string(9000, 'x') + "\nready"), "");
  EXPECT_EQ(complaintOf("ready" + std::string(9000, ' ') + "x"), "line 1: the line is too long");
}

TEST(PlayScript, AQuotedTextReadsBackAsItWas) {
  for (const std::string text : {"", "plain", "a\"b", "\\", "line\nline", "日本語 \"x\""})
    EXPECT_EQ(only("type " + quotedText(text)).text, text);
}

}  // namespace
}  // namespace qv
