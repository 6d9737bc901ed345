#include "graphics/animation/animation_sequence.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

using Frame = AnimationSequence::Frame;

class Sequence : public ::testing::Test {
 protected:
  /// Cells as letters, "." where nothing new is shown, "#" at the end.
  std::string played(int steps, bool force = false) {
    std::string result;
    for (int step = 0; step < steps; ++step) {
      const int32_t cell = sequence.step(force).cell;
      result += cell == AnimationSequence::NoChange ? '.'
                : cell == AnimationSequence::Ended  ? '#'
                                                    : static_cast<char>('A' + cell);
    }
    return result;
  }
  std::string played(const char* text, int steps, bool stopAtEnd = false) {
    sequence.setText(text, stopAtEnd);
    return played(steps);
  }
  std::vector<Frame> frames(const char* text, int steps) {
    sequence.setText(text, false);
    std::vector<Frame> result;
    for (int step = 0; step < steps; ++step)
      result.push_back(sequence.step(false));
    return result;
  }

  TestPlatform platform;
  AnimationSequence sequence;
};

TEST_F(Sequence, HoldsACellForATickMoreWithAPoint) {
  EXPECT_EQ(played("A.", 6), "A.A.A.");
}

TEST_F(Sequence, RunsNestedLoopsAndStartsOver) {
  EXPECT_EQ(played("2[A3[.]]B", 18), "A...A...BA...A...B");
  EXPECT_EQ(played("3[2[A.]B]C", 17), "A.A.BA.A.BA.A.BCA");
}

TEST_F(Sequence, TakesBothCasesForOneCell) {
  EXPECT_EQ(played("aAbB", 4), "AABB");
}

TEST_F(Sequence, PlacesACellAndReturnsToTheOriginAtTheEnd) {
  EXPECT_EQ(frames("BA(10,-5)A", 4),
            (std::vector<Frame>{{1, 0, 0}, {0, 10, -5}, {0, 10, -5}, {1, 0, 0}}));
}

TEST_F(Sequence, MovesEveryCellFromTheFirstOn) {
  EXPECT_EQ(frames("A{1,0}BBB", 4),
            (std::vector<Frame>{{0, 1, 0}, {1, 2, 0}, {1, 3, 0}, {1, 4, 0}}));
}

TEST_F(Sequence, KeepsItsMotionOverTheEndOfTheText) {
  EXPECT_EQ(frames("BA{2,1}A", 6),
            (std::vector<Frame>{{1, 0, 0}, {0, 2, 1}, {0, 4, 2}, {1, 2, 1}, {0, 4, 2}, {0, 6, 3}}));
}

TEST_F(Sequence, EndsAMotionAtAFixedPlace) {
  EXPECT_EQ(frames("A{2,1}B(7,7)C", 3), (std::vector<Frame>{{0, 2, 1}, {1, 7, 7}, {2, 7, 7}}));
}

TEST_F(Sequence, LeavesAMissingNumberAsItWas) {
  EXPECT_EQ(frames("A(4,5)B(,6)C(3,)D()", 4),
            (std::vector<Frame>{{0, 4, 5}, {1, 4, 6}, {2, 3, 6}, {3, 3, 6}}));
  EXPECT_EQ(frames("A{,2}B", 2), (std::vector<Frame>{{0, 0, 2}, {1, 0, 4}}));
  EXPECT_EQ(frames("A(8)B", 2), (std::vector<Frame>{{0, 8, 0}, {1, 8, 0}}));
}

TEST_F(Sequence, SkipsWhatIsNoNumberInABracket) {
  EXPECT_EQ(frames("A( x=12px, y:+3 )B", 2), (std::vector<Frame>{{0, 12, 3}, {1, 12, 3}}));
}

TEST_F(Sequence, StaysEndedWhenItStopsAtTheEnd) {
  EXPECT_EQ(played("AB.", 6, true), "AB.###");
  EXPECT_EQ(sequence.next(), AnimationSequence::Ended);
}

TEST_F(Sequence, GivesTheLastCellAgainWhenForced) {
  sequence.setText("AB.", true);
  EXPECT_EQ(played(6, true), "ABBBBB");
  EXPECT_EQ(sequence.shown(), (Frame{1, 0, 0}));
}

TEST_F(Sequence, HasShownNothingBeforeItsFirstCell) {
  sequence.setText("..A", false);
  EXPECT_EQ(sequence.shown().cell, -1);
  EXPECT_EQ(sequence.step(true).cell, -1);
}

TEST_F(Sequence, BeginsAgainWithoutLoopsOffsetAndMotionWhenRewound) {
  sequence.setText("A3[B{5,5}.]C", false);
  played(4);
  sequence.rewind();
  EXPECT_EQ(sequence.step(false), (Frame{0, 0, 0}));
  EXPECT_EQ(played(7), "B.B.B.C");
}

TEST_F(Sequence, IsNotRewoundWhileItsTextIsEmpty) {
  sequence.setText("", true);
  EXPECT_EQ(played(1), "#");
  sequence.rewind();
  EXPECT_EQ(played(1), "#");
}

TEST_F(Sequence, RunsTheBodyOfACountOfZeroOnce) {
  EXPECT_EQ(played("0[A]B", 4), "ABAB");
  EXPECT_EQ(played("1[A]B", 4), "ABAB");
}

TEST_F(Sequence, EndsAtOnceWhereNothingCanBeShown) {
  for (const char* text : {"", "]", "]]]", "3[]", "9[9[9[9[]]]]", "7", "12[", "2[2[", "]3"})
    for (const bool stopAtEnd : {false, true})
      EXPECT_EQ(played(text, 3, stopAtEnd), "###") << text;
  sequence.setText(nullptr, false);
  EXPECT_EQ(played(2), "##");
}

TEST_F(Sequence, PassesEmptyLoopsInNoTime) {
  EXPECT_EQ(played("1000000[1000000[1000000[1000000[]]]]A", 3), "AAA");
  EXPECT_EQ(played("2[900000[]A900000[]]B", 6), "AABAAB");
}

TEST_F(Sequence, RepeatsAnOpenLoopAtTheEndOfTheText) {
  EXPECT_EQ(played("A2[BC", 7), "ABCBCBC");
}

TEST_F(Sequence, IgnoresAnEndOfALoopThatNobodyBegan) {
  EXPECT_EQ(played("A]B", 4), "ABAB");
}

TEST_F(Sequence, TakesTheCharacterBehindANumberForTheBracket) {
  EXPECT_EQ(played("2(A]B", 6), "AABAAB");
}

TEST_F(Sequence, EndsWhereLoopsNestTooDeep) {
  const auto nested = [](size_t depth) {
    std::string text;
    for (size_t level = 0; level < depth; ++level)
      text += "1[";
    return text + "A" + std::string(depth, ']');
  };
  EXPECT_EQ(played(nested(AnimationSequence::DeepestNesting).c_str(), 2), "AA");
  EXPECT_EQ(played(nested(AnimationSequence::DeepestNesting + 1).c_str(), 2), "##");
}

TEST_F(Sequence, BoundsNumbersAndOffsets) {
  constexpr int32_t Largest = AnimationSequence::LargestNumber;
  EXPECT_EQ(frames("A(99999999999999999999,-99999999999999999999)", 1),
            (std::vector<Frame>{{0, Largest, -Largest}}));
  EXPECT_EQ(played("99999999999999999999[A]B", 5), "AAAAA");

  sequence.setText("A{1000000,-1000000}9999[A]", true);
  for (int step = 0; step < 100; ++step)
    sequence.step(false);
  constexpr int32_t Farthest = AnimationSequence::FarthestOffset;
  EXPECT_EQ(sequence.shown(), (Frame{0, Farthest, -Farthest}));
}

TEST_F(Sequence, CutsABracketAtTheEndOfTheText) {
  for (const char* text : {"A(", "A(1", "A(1,", "A(1,2", "A{", "A{-", "A{,"})
    EXPECT_EQ(played(text, 3), "AAA") << text;
}

}  // namespace
}  // namespace qv::testing
