#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/string.h"

namespace qv {
namespace {

// Two-byte characters whose second byte is a backslash, single bytes, half-width katakana.
constexpr const char* Mixed = "a\x95\x5c\xb1\x83\x5c\x5cz";
const std::vector<int32_t> MixedStarts = {0, 1, 3, 4, 6, 7};

TEST(QVStringNext, StepsByCharactersAndTellsTheEnd) {
  QVString text(Mixed);
  std::vector<int32_t> starts = {text.cursorIndex()};
  while (text.next())
    starts.push_back(text.cursorIndex());
  EXPECT_EQ(starts, MixedStarts);
  EXPECT_EQ(text.cursorIndex(), text.length());
  EXPECT_EQ(text.next(), 0);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringNext, GivesZeroOnTheStepThatReachesTheEnd) {
  QVString text("ab");
  EXPECT_EQ(text.next(), 1);
  EXPECT_EQ(text.next(), 0);
}

TEST(QVStringPrev, StepsBackOverTheSameCharacters) {
  QVString text(Mixed);
  text.setCursorIndex(text.length());
  std::vector<int32_t> starts;
  while (text.prev())
    starts.insert(starts.begin(), text.cursorIndex());
  EXPECT_EQ(starts, MixedStarts);
  EXPECT_EQ(text.prev(), 0);
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringPrev, FindsTheSameCharactersAsNextInAnyBytes) {
  // All texts of four bytes from a set that has leads, trails, both and neither.
  const unsigned char bytes[] = {'a', 0x5c, 0x81, 0xb1, 0xfc, 0x0a};
  for (int code = 0; code < 6 * 6 * 6 * 6; ++code) {
    std::string raw;
    for (int rest = code, place = 0; place < 4; ++place, rest /= 6)
      raw += static_cast<char>(bytes[rest % 6]);
    QVString text(raw.c_str());
    std::vector<int32_t> forward = {0}, backward;
    while (text.next())
      forward.push_back(text.cursorIndex());
    while (text.prev())
      backward.insert(backward.begin(), text.cursorIndex());
    ASSERT_EQ(backward, forward) << code;
  }
}

TEST(QVStringCharAt, JoinsTheTwoBytesOfACharacterFromEitherOfThem) {
  QVString text("\x82\xa0\x82\xa2");
  EXPECT_EQ(text.charAt(), 0x82a0);
  text.setCursorIndex(1);
  EXPECT_EQ(text.charAt(), 0x82a0);
  text.setCursorIndex(2);
  EXPECT_EQ(text.charAt(), 0x82a2);
  text.setCursorIndex(4);
  EXPECT_EQ(text.charAt(), 0);
}

TEST(QVStringCharAt, GivesALeadByteWithoutItsTrailAlone) {
  QVString text("\x82");
  EXPECT_EQ(text.charAt(), 0x82);
  EXPECT_EQ(text.next(), 0);
  EXPECT_EQ(text.cursorIndex(), 1);
}

TEST(QVStringSeek, StandsOnTheEndWithOffsetZeroFromTheEnd) {
  QVString text(Mixed);
  EXPECT_EQ(text.seek(0, QVString::End), 0);
  EXPECT_EQ(text.cursorIndex(), text.length());
}

TEST(QVStringSeek, CountsCharactersFromEachOrigin) {
  QVString text(Mixed);
  EXPECT_EQ(text.seek(3, QVString::Start), 0x835c);
  EXPECT_EQ(text.seek(1, QVString::Current), 0x5c);
  EXPECT_EQ(text.seek(-3, QVString::Current), 0x955c);
  EXPECT_EQ(text.seek(-3, QVString::End), 0x835c);
  EXPECT_EQ(text.seek(0, QVString::Current), 0x835c);
}

TEST(QVStringSeek, LeavesTheCursorAloneWhenRefused) {
  QVString text(Mixed);
  text.setCursorIndex(3);
  EXPECT_EQ(text.seek(-1, QVString::Start), 0);
  EXPECT_EQ(text.cursorIndex(), 3);
  EXPECT_EQ(text.seek(1, QVString::End), 0);
  EXPECT_EQ(text.cursorIndex(), 3);
  EXPECT_EQ(text.seek(0, static_cast<QVString::Origin>(3)), 0);
  EXPECT_EQ(text.cursorIndex(), 3);
}

TEST(QVStringSeek, StopsAtTheEndsOfTheText) {
  QVString text(Mixed);
  EXPECT_EQ(text.seek(INT_MAX, QVString::Start), 0);
  EXPECT_EQ(text.cursorIndex(), text.length());
  EXPECT_EQ(text.seek(INT_MIN, QVString::Current), 'a');
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringCursor, IsClampedToTheText) {
  QVString text("abc");
  text.setCursorIndex(INT_MAX);
  EXPECT_EQ(text.cursorIndex(), 3);
  text.setCursorIndex(-1);
  EXPECT_EQ(text.cursorIndex(), 0);
}

}  // namespace
}  // namespace qv
