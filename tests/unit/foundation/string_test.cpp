#include "foundation/string.h"

#include <climits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "tests/support/failing_heap.h"

namespace qv {
namespace {

/// The title of the exception that `work` ends in, or "none".
template <class Work>
std::string titleOf(Work work) {
  try {
    work();
  } catch (const NotEnoughMemoryException& exception) {
    return exception.title() ? exception.title() : "null";
  }
  return "none";
}

TEST(QVStringCreation, IsEmptyWithGrain256ByDefault) {
  const QVString text;
  EXPECT_STREQ(text.text(), "");
  EXPECT_EQ(text.length(), 0);
  EXPECT_EQ(text.grain(), 256);
  EXPECT_EQ(text.capacity(), 256);
  EXPECT_EQ(text.references(), 1);
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringCreation, HasABodyOfItsOwnEvenWhenEmpty) {
  EXPECT_NE(QVString().body(), nullptr);
  const QVString one, two;
  EXPECT_NE(one.body(), two.body());
}

TEST(QVStringCreation, TakesAGrainOfFiveAsSixteen) {
  const QVString text("abc", 5);
  EXPECT_EQ(text.grain(), 16);
  EXPECT_EQ(text.capacity(), 16);
  EXPECT_EQ(QVString("abc", -1).grain(), 16);
  EXPECT_EQ(QVString("abc", INT_MIN).grain(), 16);
}

TEST(QVStringCreation, TakesANullAsEmpty) {
  QVString text("abc");
  EXPECT_STREQ(text.create(32, nullptr), "");
  EXPECT_EQ(text.grain(), 32);
}

TEST(QVStringCreation, GivesTheTextAndPutsTheCursorAtTheStart) {
  QVString text("abc");
  text.setCursorIndex(2);
  const char* given = text.create(32, "defg");
  EXPECT_EQ(given, text.text());
  EXPECT_STREQ(text.text(), "defg");
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringCreation, MayBeMadeFromAPartOfItself) {
  QVString text("abcdef");
  text.create(16, text.text() + 2);
  EXPECT_STREQ(text.text(), "cdef");
}

TEST(QVStringCapacity, IsAboveTheLengthAndAMultipleOfTheGrain) {
  for (const int32_t grain : {16, 17, 32, 256})
    for (int32_t length = 0; length < 600; ++length) {
      const QVString text(std::string(static_cast<size_t>(length), 'x').c_str(), grain);
      EXPECT_GT(text.capacity(), length);
      EXPECT_EQ(text.capacity() % grain, 0);
      EXPECT_EQ(text.capacity(), ((length + 1) / grain + 1) * grain);
    }
}

TEST(QVStringSharing, SharesTheBodyAndCopiesTheCursor) {
  QVString one("abc");
  one.setCursorIndex(1);
  {
    const QVString two(one);
    EXPECT_EQ(two.body(), one.body());
    EXPECT_EQ(two.cursorIndex(), 1);
    EXPECT_EQ(one.references(), 2);
  }
  EXPECT_EQ(one.references(), 1);
}

TEST(QVStringSharing, SharesByAssignmentAndDropsTheOldBody) {
  const QVString one("abc");
  const QVString keeper("old");
  QVString two(keeper);
  two = one;
  EXPECT_EQ(two.body(), one.body());
  EXPECT_EQ(one.references(), 2);
  EXPECT_EQ(keeper.references(), 1);
}

TEST(QVStringSharing, TakesAnAssignmentOfItsOwnBodyAsNothing) {
  QVString one("abc");
  const QVString two(one);
  const QVString& self = one;
  one = self;
  one = two;
  EXPECT_EQ(one.references(), 2);
  EXPECT_STREQ(one.text(), "abc");
}

TEST(QVStringAppend, GrowsInPlaceWhereTheBodyHasRoom) {
  QVString text("abc", 32);
  const void* body = text.body();
  const char* bytes = text.text();
  text.append(std::string(28, 'x').c_str());
  EXPECT_EQ(text.body(), body);
  EXPECT_EQ(text.text(), bytes);
  EXPECT_EQ(text.length(), 31);
  text.append("y");
  EXPECT_NE(text.body(), body);
  EXPECT_EQ(text.length(), 32);
  EXPECT_EQ(text.capacity(), 64);
  EXPECT_EQ(text.view(), "abc" + std::string(28, 'x') + "y");
}

TEST(QVStringAppend, AllocatesNothingWhereTheBodyHasRoom) {
  QVString text("abc", 32);
  {
    const testing::FailingHeap heap;
    EXPECT_EQ(titleOf([&] { text.append("def"); }), "none");
    EXPECT_EQ(heap.refused(), 0);
  }
  EXPECT_STREQ(text.text(), "abcdef");
}

TEST(QVStringAppend, LeavesTheOtherOwnersTextUnchanged) {
  QVString owner("abc", 32);
  const QVString other(owner);
  owner.append("d");
  EXPECT_STREQ(owner.text(), "abcd");
  EXPECT_STREQ(other.text(), "abc");
  EXPECT_NE(owner.body(), other.body());
  EXPECT_EQ(owner.references(), 1);
  EXPECT_EQ(other.references(), 1);
}

TEST(QVStringAppend, MovesTheCursorWithTheText) {
  QVString text("abc", 16);
  text.setCursorIndex(2);
  text.append(std::string(100, 'x').c_str());
  EXPECT_EQ(text.cursorIndex(), 2);
  EXPECT_EQ(text.charAt(), 'c');
}

TEST(QVStringAppend, TakesNullAsNothing) {
  QVString text("abc");
  const char* none = nullptr;
  text.append(none);
  text.appendCount(nullptr, 5);
  EXPECT_STREQ(text.text(), "abc");
}

TEST(QVStringAppend, MayAppendItselfInPlaceAndInANewBody) {
  QVString text("abcd", 16);
  text.append(text.text() + 1);
  EXPECT_STREQ(text.text(), "abcdbcd");
  text.append(text);
  EXPECT_STREQ(text.text(), "abcdbcdabcdbcd");
  text.append(text.text());
  EXPECT_STREQ(text.text(), "abcdbcdabcdbcdabcdbcdabcdbcd");
}

TEST(QVStringAppend, TakesAtMostTheCountedBytes) {
  QVString text("a");
  text.appendCount("bcdef", 2);
  text.appendCount("xy", 100);
  text.appendCount("no", 0);
  text.appendCount("no", -1);
  EXPECT_STREQ(text.text(), "abcxy");
  const char unterminated[3] = {'1', '2', '3'};
  text.appendCount(unterminated, 3);
  EXPECT_STREQ(text.text(), "abcxy123");
}

TEST(QVStringNumbers, RightAlignsFiveAfterTwoPadTexts) {
  QVString text;
  text.appendInt(5, 10, 3);
  EXPECT_STREQ(text.text(), "  5");
}

TEST(QVStringNumbers, KeepsTheRightmostDigitsWhereTheWidthIsShort) {
  QVString text;
  text.appendInt(12345, 10, 3);
  EXPECT_STREQ(text.text(), "345");
}

TEST(QVStringNumbers, WritesEachRadixInLowerCase) {
  const auto written = [](uint32_t value, int32_t radix) {
    QVString text;
    text.appendUInt(value, radix, 0);
    return std::string(text.view());
  };
  EXPECT_EQ(written(0xBEEF, 16), "beef");
  EXPECT_EQ(written(35, 36), "z");
  EXPECT_EQ(written(8, 8), "10");
  EXPECT_EQ(written(UINT_MAX, 2), std::string(32, '1'));
  EXPECT_EQ(written(42, 1), "42");
  EXPECT_EQ(written(42, 37), "42");
}

TEST(QVStringNumbers, WritesTheLeastNumber) {
  QVString text("n=");
  text.appendInt(INT_MIN);
  text.appendInt(INT_MIN, 2);
  EXPECT_STREQ(text.text(), "n=-2147483648-10000000000000000000000000000000");
}

TEST(QVStringNumbers, TakesANegativeWidthAsNone) {
  QVString text;
  text.appendInt(12, 10, INT_MIN);
  EXPECT_STREQ(text.text(), "12");
}

TEST(QVStringClear, EmptiesASoleBodyInPlace) {
  QVString text("abc", 32);
  text.setCursorIndex(3);
  const void* body = text.body();
  text.clear();
  EXPECT_EQ(text.body(), body);
  EXPECT_STREQ(text.text(), "");
  EXPECT_EQ(text.length(), 0);
  EXPECT_EQ(text.cursorIndex(), 0);
}

TEST(QVStringClear, ReplacesASharedBodyByAnEmptyOneOfTheSameGrain) {
  QVString text("abc", 32);
  const QVString other(text);
  text.clear();
  EXPECT_STREQ(other.text(), "abc");
  EXPECT_STREQ(text.text(), "");
  EXPECT_EQ(text.grain(), 32);
  EXPECT_EQ(other.references(), 1);
}

TEST(QVStringSum, JoinsInANewStringOfGrain256) {
  const QVString sum = QVString("ab", 16) + QVString("cd", 32);
  EXPECT_STREQ(sum.text(), "abcd");
  EXPECT_EQ(sum.grain(), 256);
}

TEST(QVStringComparison, ComparesTheTextsAndNotTheBodies) {
  EXPECT_TRUE(QVString("ab") == QVString("ab", 16));
  EXPECT_FALSE(QVString("ab") == QVString("aB"));
  EXPECT_TRUE(QVString("ab").equals("ab"));
  EXPECT_FALSE(QVString("ab").equals("abc"));
  EXPECT_FALSE(QVString().equals(nullptr));
}

TEST(QVStringWithoutMemory, NamesTheOperationThatFailed) {
  const QVString shared("0123456789abcdef", 16);
  const std::pair<const char*, void (*)(QVString&)> failures[] = {
      {"QVString - create()", [](QVString& text) { text.create(32, "def"); }},
      {"QVString - create()", [](QVString& text) { text.clear(); }},
      {"QVString - create()", [](QVString& text) { text.substring(text, nullptr, nullptr); }},
      {"QVString - append", [](QVString& text) { text.append("x"); }},
      {"QVString - append", [](QVString& text) { text.appendInt(1, 10, 100); }},
      {"QVString - append", [](QVString& text) { text.replaceAll("b", "bb"); }},
      {"QVString", [](QVString& text) { text.nextToken(text, ",", 0); }}};
  // A body is two blocks, and either can be the one that fails.
  for (const auto& [title, work] : failures)
    for (const int granted : {0, 1}) {
      QVString text(shared);
      const testing::FailingHeap heap(granted, 1);
      EXPECT_EQ(titleOf([&] { work(text); }), title) << "block " << granted;
      EXPECT_EQ(heap.refused(), 1);
      EXPECT_TRUE(text == shared);
    }
}

TEST(QVStringWithoutMemory, KeepsItsTextAndCursor) {
  QVString text("abc", 16);
  text.setCursorIndex(1);
  for (const int granted : {0, 1}) {
    const testing::FailingHeap heap(granted);
    EXPECT_THROW(text.append("0123456789012345"), NotEnoughMemoryException);
    EXPECT_THROW(text.create(32, "def"), NotEnoughMemoryException);
  }
  EXPECT_STREQ(text.text(), "abc");
  EXPECT_EQ(text.cursorIndex(), 1);
}

TEST(QVStringWithoutMemory, RefusesALengthThatItsCountCannotHold) {
  QVString text("abc");
  EXPECT_THROW(text.appendInt(1, 10, INT_MAX), NotEnoughMemoryException);
  EXPECT_STREQ(text.text(), "abc");
}

}  // namespace
}  // namespace qv
