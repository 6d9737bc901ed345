// Where lines end and where the pen goes, with fixed widths.

#include <random>

#include "message/no_line_start.h"
#include "tests/unit/message/area_ground.h"

namespace qv::testing {
namespace {

using Layout = AreaTest;

TEST_F(Layout, CountsEachLineFeedAtTheBeginningAndOneInTheMiddle) {
  print("\n\nあ\n\nい");
  EXPECT_EQ(drawn(), (Runs{"0,40 あ", "0,60 い"}));
}

TEST_F(Layout, LeavesThePenBehindTheText) {
  print("あb");
  expectPen(27, 0);
}

TEST_F(Layout, OfATextThatEndsInALineFeedLeavesThePenAtTheNextLinesStart) {
  print("あ\n");
  expectPen(0, 20);
  print("い\n\n\n");
  expectPen(0, 40);
}

TEST_F(Layout, OfAnEmptyTextDrawsNothingAndLeavesThePen) {
  area.setPosition(30, 40);
  print("");
  EXPECT_TRUE(drawn().empty());
  expectPen(30, 40);
}

TEST_F(Layout, GoesToTheNextLineWhenTheFirstCharacterDoesNotFit) {
  area.setPosition(190, 40);
  print("あい");
  EXPECT_EQ(drawn(), (Runs{"0,60 あい"}));
}

TEST_F(Layout, NeverPartsACharacter) {
  area.setRect(0, 0, 50, 100);  // five bytes fit
  print("あいうえ");
  EXPECT_EQ(drawn(), (Runs{"0,0 あい", "0,20 うえ"}));
}

TEST_F(Layout, TakesALeadByteWithoutATrailByteAsACharacter) {
  area.setRect(0, 0, 27, 100);
  area.printText("a\x88\nb\x82\xa0");
  ASSERT_EQ(device.drawn.size(), 2u);
  EXPECT_EQ(device.drawn[0].text, "a\x88");
  EXPECT_EQ(device.drawn[1].text, "b\x82\xa0");
}

TEST_F(Layout, PullsCharactersThatMayNotBeginALineDownWithTheOneBefore) {
  area.setRect(0, 0, 180, 200);
  area.setNoLineStart(sjis("。っ").c_str());
  print("ああああああああああ。い");
  EXPECT_EQ(drawn(), (Runs{"0,0 あああああああああ", "0,20 あ。い"}));
  device.drawn.clear();
  area.setPosition(0, 0);
  print("あああああああああっっい");
  EXPECT_EQ(drawn(), (Runs{"0,0 ああああああああ", "0,20 あっっい"}));
}

TEST_F(Layout, TakesNoLineStartAsCharactersAndNotAsBytes) {
  area.setRect(0, 0, 18, 200);
  area.setNoLineStart("\x82\xa0");  // its second byte alone means nothing
  area.printText("x\xa0y\xa0");
  ASSERT_EQ(device.drawn.size(), 2u);
  EXPECT_EQ(device.drawn[0].text, "x\xa0");
}

TEST_F(Layout, BreaksALineOfNothingButSuchCharactersAtTheWidth) {
  area.setRect(0, 0, 54, 200);
  area.setNoLineStart(shortNoLineStart().c_str());
  print("。。。。。");
  EXPECT_EQ(drawn(), (Runs{"0,0 。。。", "0,20 。。"}));
  device.drawn.clear();
  area.setPosition(0, 0);
  print("あ。。。。");  // only the line's first character could begin one
  EXPECT_EQ(drawn(), (Runs{"0,0 あ。。", "0,20 。。"}));
}

TEST_F(Layout, TakesTheLeftIndentOffTwice) {
  area.setRect(10, 10, 120, 190);
  area.setIndent(10, 0);
  area.setIndent(8, 1);
  area.setPosition(20, 10);
  print("あいうえおかき");
  EXPECT_EQ(drawn(), (Runs{"20,10 あいうえお", "20,30 かき"}));
}

TEST_F(Layout, WithOneLineCutsAtTheLastCharacterThatFits) {
  area.setRect(0, 0, 50, 100);
  area.setFlags(QVPrintArea::FlagOneLine);
  print("あいうえ\nか");
  EXPECT_EQ(drawn(), (Runs{"0,0 あい", "0,20 か"}));
}

TEST_F(Layout, WithOneLineThrowsAwayARunOfWhichNothingFitsAndMakesNoLine) {
  area.setFlags(QVPrintArea::FlagOneLine | QVPrintArea::FlagCentre);
  area.setPosition(190, 0);
  print("あい");
  EXPECT_TRUE(drawn().empty());
  expectPen(190, 0);
  area.setRect(0, 0, 10, 100);
  area.setPosition(0, 0);
  print("あい");  // nor at a line's start
  EXPECT_TRUE(drawn().empty());
  expectPen(0, 0);
}

TEST_F(Layout, DrawsOneCharacterALineWhereNoneFits) {
  area.setRect(0, 0, 10, 100);
  print("あいb");
  EXPECT_EQ(drawn(), (Runs{"0,0 あ", "0,20 い", "0,40 b"}));
  device.drawn.clear();
  area.setRect(0, 0, 15, 20);
  area.setFlags(QVPrintArea::FlagOutline);  // each line is a page, which begins a pixel further in
  area.setPosition(1, 0);
  area.printText(sjis("あい").c_str());
  EXPECT_EQ(device.drawn.size(), 10u);
  EXPECT_EQ(area.fullPages(), 2u);
}

TEST_F(Layout, CentresWhatFitsWholeInTheRectangle) {
  area.setRect(20, 0, 101, 100);
  area.setFlags(QVPrintArea::FlagCentre);
  area.setPosition(60, 0);
  print("あい");
  EXPECT_EQ(drawn(), (Runs{"52,0 あい"}));
  expectPen(88, 0);
}

TEST_F(Layout, DrawsATextThatIsTooWideToBeCentredWhereThePenStands) {
  area.setFlags(QVPrintArea::FlagCentre);
  area.setRect(0, 0, 30, 100);
  area.setPosition(5, 0);
  area.setIndent(-40, 1);  // it fits beyond the right edge
  print("あいう");
  EXPECT_EQ(drawn(), (Runs{"5,0 あいう"}));
}

TEST_F(Layout, HomesAfterThePrintWithItsFlag) {
  area.setFlags(QVPrintArea::FlagHomeAfterPrint);
  area.setPosition(50, 50);
  print("あ");
  expectPen(0, 0);
}

TEST_F(Layout, EndsWhateverItIsAskedFor) {
  std::mt19937 random(7);
  const auto draw = [&](int from, int to) {
    return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
  };
  const char* const pieces[] = {"あ", "。", "a", "\n", "っ", "\x82"};
  for (int round = 0; round < 3000; ++round) {
    device.drawn.clear();
    boxes().clear();
    area.setRect(draw(-20, 100), draw(-20, 100), draw(-5, 120), draw(-5, 90));
    area.setLineHeight(draw(1, 40));
    area.setIndent(draw(-10, 90), 0);
    area.setIndent(draw(-200, 90), 1);
    area.setFlags(static_cast<uint32_t>(draw(0, 15)) << 8 | (random() & 1));
    area.setNoLineStart(draw(0, 1) ? longNoLineStart().c_str() : "");
    area.setPosition(draw(-50, 150), draw(-50, 150));
    std::string text;
    for (int i = draw(0, 30); i > 0; --i)
      text += *pieces[draw(0, 5)] == '\x82' ? "\x82" : sjis(pieces[draw(0, 4)]);
    area.printText(text.c_str());
    // What was drawn is the text's characters in their order; only FlagOneLine leaves any out.
    const bool outlined = area.flags() & QVPrintArea::FlagOutline;
    std::string all;
    for (size_t i = 0; i < device.drawn.size(); ++i)
      if (!outlined || i % 5 == 4) all += device.drawn[i].text;
    std::erase(text, '\n');
    if (area.flags() & QVPrintArea::FlagOneLine)
      EXPECT_LE(all.size(), text.size()) << round;
    else
      EXPECT_EQ(all, text) << round;
  }
}

TEST(TextRunsOfAText, StandBetweenLineFeeds) {
  TextRuns runs("\n\nab\n\n\nc");
  EXPECT_TRUE(runs.takeLeadingFeed());
  EXPECT_TRUE(runs.takeLeadingFeed());
  EXPECT_FALSE(runs.takeLeadingFeed());
  EXPECT_EQ(runs.next(), "ab");
  EXPECT_TRUE(runs.feedFollows());
  EXPECT_EQ(runs.next(), "c");
  EXPECT_FALSE(runs.feedFollows());
  EXPECT_EQ(runs.next(), "");
}

}  // namespace
}  // namespace qv::testing
