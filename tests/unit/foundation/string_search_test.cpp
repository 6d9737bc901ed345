#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/string.h"
#include "platform/services.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

// 表\ソ\十: each two-byte character ends in the byte of a backslash.
constexpr const char* Path = "\x95\x5c\\\x83\x5c\\\x8f\x5c";

/// Byte index of a place in the text; -1 for null.
int64_t placeIn(const QVString& text, const char* place) {
  return place ? place - text.text() : -1;
}

TEST(QVStringFind, FindsWholeCharactersOnly) {
  QVString text(Path);
  EXPECT_EQ(placeIn(text, text.find("\\")), 2);
  EXPECT_EQ(text.cursorIndex(), 2);
  text.next();
  EXPECT_EQ(placeIn(text, text.find("\\")), 5);
  text.next();
  EXPECT_EQ(text.find("\\"), nullptr);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringFind, NeverEndsAHitInsideACharacter) {
  QVString text("\x82\xa0");
  EXPECT_EQ(text.find("\x82"), nullptr);
}

TEST(QVStringFind, FindsTheEmptyTextWhereItStands) {
  QVString text("abc");
  text.setCursorIndex(2);
  EXPECT_EQ(placeIn(text, text.find("")), 2);
}

TEST(QVStringFindChars, FindsTheNextCharacterOfTheSet) {
  QVString text(Path);
  EXPECT_EQ(placeIn(text, text.findChars("\x8f\x5c\x83\x5c")), 3);
  text.next();
  EXPECT_EQ(placeIn(text, text.findChars("\x8f\x5c\x83\x5c")), 6);
  text.next();
  EXPECT_EQ(text.findChars("\x8f\x5c"), nullptr);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringFindLast, KeepsTheLastHit) {
  QVString text(Path);
  EXPECT_EQ(placeIn(text, text.findLast("\\")), 5);
  EXPECT_EQ(text.cursorIndex(), 5);
  EXPECT_EQ(text.findLast("?"), nullptr);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringFindNotChars, PassesOverTheSet) {
  QVString text("\\\\\x95\x5c\\");
  EXPECT_EQ(placeIn(text, text.findNotChars("\\")), 2);
  text.next();
  EXPECT_EQ(text.findNotChars("\\"), nullptr);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringFindToken, FindsAWholeTokenOnly) {
  QVString text("abc, ab ,b");
  EXPECT_EQ(placeIn(text, text.findToken("ab", ", ")), 5);
  EXPECT_EQ(text.cursorIndex(), 5);
  EXPECT_EQ(placeIn(text, text.findToken("b", ", ")), 9);
  EXPECT_EQ(text.findToken("abc", ", "), nullptr);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringFindToken, IsAPlainFindWithoutSeparators) {
  QVString text("abc, ab");
  EXPECT_EQ(placeIn(text, text.findToken("bc", nullptr)), 1);
}

TEST(QVStringReplaceAll, ReplacesWholeCharactersFromTheStart) {
  QVString text(Path);
  text.setCursorIndex(5);
  text.replaceAll("\\", "//");
  EXPECT_STREQ(text.text(), "\x95\x5c//\x83\x5c//\x8f\x5c");
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringReplaceAll, DoesNotLookAtWhatItPutIn) {
  QVString text("aaa");
  text.replaceAll("a", "aa");
  EXPECT_STREQ(text.text(), "aaaaaa");
  text.replaceAll("aa", "");
  EXPECT_STREQ(text.text(), "");
}

TEST(QVStringReplaceAll, LeavesAnotherOwnersText) {
  QVString text("abc");
  const QVString other(text);
  text.replaceAll("b", "x");
  EXPECT_STREQ(text.text(), "axc");
  EXPECT_STREQ(other.text(), "abc");
}

TEST(QVStringReplaceAll, TakesAnEmptyTextAsNothingToReplace) {
  QVString text("abc");
  text.replaceAll("", "x");
  EXPECT_STREQ(text.text(), "abc");
}

std::vector<std::string> tokensOf(QVString& text, const char* separators, int keep) {
  std::vector<std::string> tokens;
  for (QVString token; text.nextToken(token, separators, keep);)
    tokens.emplace_back(token.text());
  return tokens;
}

TEST(QVStringNextToken, WalksTheTokensBetweenSeparators) {
  QVString text(
      "\\\\"
      "\x95\x5c"
      "\\ab\\\\\x83\x5c\\");
  EXPECT_EQ(tokensOf(text, "\\", 0), (std::vector<std::string>{"\x95\x5c", "ab", "\x83\x5c"}));
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringNextToken, PassesOverOneSeparatorWithTheKeepFlag) {
  QVString text("ab,,c");
  QVString token;
  EXPECT_EQ(placeIn(text, text.nextToken(token, ",", 0)), 0);
  EXPECT_EQ(text.cursorIndex(), 2);
  text.setCursorIndex(0);
  EXPECT_EQ(placeIn(text, text.nextToken(token, ",", 1)), 0);
  EXPECT_EQ(text.cursorIndex(), 3);
  EXPECT_EQ(placeIn(text, text.nextToken(token, ",", 1)), 4);
  EXPECT_EQ(text.cursorIndex(), 5);
  EXPECT_EQ(token.grain(), 32);
}

TEST(QVStringNextToken, GivesNullAndAnEmptyTextForAnEmptyToken) {
  QVString text(",,,");
  QVString token("old");
  EXPECT_EQ(text.nextToken(token, ",", 0), nullptr);
  EXPECT_STREQ(token.text(), "");
  EXPECT_EQ(text.cursorIndex(), 3);
}

TEST(QVStringNextToken, MayPutTheTokenInItsOwnText) {
  QVString text("ab,cd");
  EXPECT_EQ(placeIn(text, text.nextToken(text, ",", 0)), 0);
  EXPECT_STREQ(text.text(), "ab");
}

class QVStringSubstring : public ::testing::Test {
 protected:
  testing::RecordingDialogs dialogs_;
  ServicesScope services_{Services{.dialogs = &dialogs_}};
  QVString text_{"abcdef"};
  QVString target_{"old"};
};

TEST_F(QVStringSubstring, HasBothEndsInside) {
  text_.substring(target_, text_.text() + 1, text_.text() + 3);
  EXPECT_STREQ(target_.text(), "bcd");
}

TEST_F(QVStringSubstring, GivesTheSameWithTheEndsSwapped) {
  text_.substring(target_, text_.text() + 3, text_.text() + 1);
  EXPECT_STREQ(target_.text(), "bcd");
}

TEST_F(QVStringSubstring, TakesNullAsTheEndOfThatSide) {
  text_.substring(target_, nullptr, text_.text() + 1);
  EXPECT_STREQ(target_.text(), "ab");
  text_.substring(target_, text_.text() + 4, nullptr);
  EXPECT_STREQ(target_.text(), "ef");
  text_.substring(target_, nullptr, nullptr);
  EXPECT_STREQ(target_.text(), "abcdef");
}

TEST_F(QVStringSubstring, TakesACursorOnTheEnd) {
  text_.setCursorIndex(6);
  text_.substring(target_, text_.text() + 5, text_.cursor());
  EXPECT_STREQ(target_.text(), "f");
  EXPECT_TRUE(dialogs_.shown.empty());
}

TEST_F(QVStringSubstring, ShowsABoxAndLeavesTheTargetForAPlaceOutside) {
  const char* outside = text_.text() + 7;
  text_.substring(target_, text_.text() + 1, outside);
  EXPECT_STREQ(target_.text(), "old");
  ASSERT_EQ(dialogs_.shown.size(), 1u);
  const auto number = [](const char* place) {
    return std::to_string(reinterpret_cast<uintptr_t>(place));
  };
  EXPECT_EQ(dialogs_.shown[0].caption, "QVString class");
  EXPECT_EQ(dialogs_.shown[0].text, "  start:" + number(text_.text() + 1) +
                                        "\n    end:" + number(outside) +
                                        "\nstrings:" + number(text_.text()) + "\n length:6");
  EXPECT_EQ(dialogs_.shown[0].flags, BoxNotice);

  text_.substring(target_, QVString("other").text(), nullptr);
  EXPECT_STREQ(target_.text(), "old");
  EXPECT_EQ(dialogs_.shown.size(), 2u);
}

TEST_F(QVStringSubstring, MayPutThePartInItsOwnText) {
  text_.substring(text_, text_.text() + 2, nullptr);
  EXPECT_STREQ(text_.text(), "cdef");
}

TEST(QVStringSearches, TakeNullAsNothing) {
  QVString text("a,b"), token("old");
  text.setCursorIndex(1);
  EXPECT_EQ(text.find(nullptr), nullptr);
  EXPECT_EQ(text.findChars(nullptr), nullptr);
  EXPECT_EQ(text.findLast(nullptr), nullptr);
  EXPECT_EQ(text.findNotChars(nullptr), nullptr);
  EXPECT_EQ(text.findToken(nullptr, ","), nullptr);
  EXPECT_EQ(text.nextToken(token, nullptr, 1), nullptr);
  text.replaceAll(nullptr, "x");
  text.replaceAll("a", nullptr);
  EXPECT_EQ(text.cursorIndex(), 1);
  EXPECT_STREQ(text.text(), "a,b");
  EXPECT_STREQ(token.text(), "old");
}

}  // namespace
}  // namespace qv
