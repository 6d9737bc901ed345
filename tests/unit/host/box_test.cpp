#include "host/box.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "platform/display/key_codes.h"
#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"
#include "tests/support/golden.h"

namespace qv {
namespace {

constexpr uint32_t Ground = 0x305070;
constexpr BoxRect Screen{0, 0, ScreenWidth, ScreenHeight};

DisplayEvent key(int code, bool repeat = false) {
  DisplayEvent event;
  event.kind = DisplayEvent::Kind::KeyDown;
  event.key = code;
  event.repeat = repeat;
  return event;
}

DisplayEvent keyUp(int code) {
  DisplayEvent event = key(code);
  event.kind = DisplayEvent::Kind::KeyUp;
  return event;
}

DisplayEvent pointer(DisplayEvent::Kind kind, int x, int y,
                     PointerButton button = PointerButton::Left) {
  DisplayEvent event;
  event.kind = kind;
  event.x = x;
  event.y = y;
  event.button = button;
  return event;
}

constexpr auto Move = DisplayEvent::Kind::PointerMove, Down = DisplayEvent::Kind::ButtonDown,
               Up = DisplayEvent::Kind::ButtonUp;

class BoxTest : public ::testing::Test {
 protected:
  Box make(uint32_t flags, const std::string& text = "text") {
    return Box({text, "QVReg - item()", flags}, text_);
  }
  static void press(Box& box, size_t button) {
    const BoxRect rect = box.buttonRect(button);
    box.take(pointer(Down, rect.x + 5, rect.y + 5));
    box.take(pointer(Up, rect.x + rect.width - 1, rect.y + rect.height - 1));
  }
  static Frame ground() { return Frame(static_cast<size_t>(ScreenWidth) * ScreenHeight, Ground); }

  KernelScope kernel_{makeRealKernel()};
  TextRenderer text_;
};

using Answers = std::vector<BoxAnswer>;

TEST_F(BoxTest, ShowsTheButtonsThatTheFlagsAskFor) {
  const std::pair<uint32_t, Answers> expected[] = {
      {0, {BoxAnswer::Ok}},
      {1, {BoxAnswer::Ok, BoxAnswer::Cancel}},
      {2, {BoxAnswer::Retry, BoxAnswer::Cancel}},
      {3, {BoxAnswer::Yes, BoxAnswer::No, BoxAnswer::Cancel}},
      {4, {BoxAnswer::Yes, BoxAnswer::No}},
      {5, {BoxAnswer::Retry, BoxAnswer::Cancel}},
      {9, {BoxAnswer::Ok}},
      {BoxNotice, {BoxAnswer::Ok}},
      {BoxRetryCancel, {BoxAnswer::Retry, BoxAnswer::Cancel}},
      {BoxYesNo, {BoxAnswer::Yes, BoxAnswer::No}}};
  for (const auto& [flags, answers] : expected) {
    for (size_t index = 0; index < answers.size(); ++index) {
      Box box = make(flags);
      ASSERT_EQ(box.buttonCount(), answers.size()) << flags;
      EXPECT_TRUE(box.offers(answers[index])) << flags;
      EXPECT_FALSE(box.answer());
      press(box, index);
      EXPECT_EQ(box.answer(), answers[index]) << flags;
      EXPECT_TRUE(box.done());
    }
  }
}

TEST_F(BoxTest, GivesTheSafeAnswerWhenTheRunEnds) {
  EXPECT_EQ(make(0).abortAnswer(), BoxAnswer::Ok);
  EXPECT_EQ(make(1).abortAnswer(), BoxAnswer::Cancel);
  EXPECT_EQ(make(2).abortAnswer(), BoxAnswer::Cancel);
  EXPECT_EQ(make(3).abortAnswer(), BoxAnswer::Cancel);
  EXPECT_EQ(make(4).abortAnswer(), BoxAnswer::No);
  EXPECT_EQ(make(5).abortAnswer(), BoxAnswer::Cancel);
}

TEST_F(BoxTest, ReturnAndSpacePressTheFocus) {
  for (const int code : {KeyReturn, KeySpace}) {
    Box box = make(BoxRetryCancel);
    box.take(key(code));
    EXPECT_EQ(box.answer(), BoxAnswer::Retry);
    Box second = make(BoxRetryCancel);
    second.take(key(KeyRight));
    second.take(key(code));
    EXPECT_EQ(second.answer(), BoxAnswer::Cancel);
  }
}

TEST_F(BoxTest, TheFocusGoesRoundByArrowsAndTab) {
  Box box = make(3);
  EXPECT_EQ(box.focus(), 0u);
  for (const auto& [code, focus] : std::initializer_list<std::pair<int, size_t>>{{KeyRight, 1},
                                                                                 {KeyTab, 2},
                                                                                 {KeyRight, 0},
                                                                                 {KeyLeft, 2},
                                                                                 {KeyLeft, 1},
                                                                                 {KeyTab, 2},
                                                                                 {KeyTab, 0}}) {
    box.take(key(code));
    EXPECT_EQ(box.focus(), focus);
  }
  box.take(key(KeyShift));
  box.take(key(KeyTab));
  EXPECT_EQ(box.focus(), 2u);
  box.take(keyUp(KeyShift));
  box.take(key(KeyTab));
  EXPECT_EQ(box.focus(), 0u);
}

TEST_F(BoxTest, EscCancelsWhereThereIsACancelOrOkStandsAlone) {
  const std::pair<uint32_t, std::optional<BoxAnswer>> expected[] = {
      {0, BoxAnswer::Ok},     {1, BoxAnswer::Cancel}, {2, BoxAnswer::Cancel},
      {3, BoxAnswer::Cancel}, {4, std::nullopt},      {5, BoxAnswer::Cancel}};
  for (const auto& [flags, answer] : expected) {
    Box box = make(flags);
    box.take(key(KeyEscape));
    EXPECT_EQ(box.answer(), answer) << flags;
  }
}

TEST_F(BoxTest, YAndNAnswerAQuestionAndNothingElse) {
  Box yes = make(BoxYesNo), no = make(3), notice = make(BoxNotice);
  yes.take(key('Y'));
  no.take(key('N'));
  notice.take(key('Y'));
  EXPECT_EQ(yes.answer(), BoxAnswer::Yes);
  EXPECT_EQ(no.answer(), BoxAnswer::No);
  EXPECT_FALSE(notice.done());
}

TEST_F(BoxTest, AKeyThatWasHeldBeforeDoesNotAnswer) {
  Box box = make(BoxNotice);
  box.take(key(KeyReturn, true));
  box.take(keyUp(KeyReturn));
  box.take(key(KeyEscape, true));
  EXPECT_FALSE(box.done());
  DisplayEvent altReturn = key(KeyReturn);
  altReturn.alt = true;
  box.take(altReturn);
  EXPECT_FALSE(box.done());
  box.take(key(KeyReturn));
  EXPECT_TRUE(box.done());
}

TEST_F(BoxTest, TheFlagsChooseTheDefaultButton) {
  EXPECT_EQ(make(BoxYesNo).focus(), 0u);
  EXPECT_EQ(make(BoxYesNo | 0x100).focus(), 1u);
  EXPECT_EQ(make(3 | 0x200).focus(), 2u);
  EXPECT_EQ(make(BoxYesNo | 0x300).focus(), 0u);
}

TEST_F(BoxTest, APressThatEndsOutsideTheButtonAnswersNothing) {
  Box box = make(BoxYesNo);
  const BoxRect yes = box.buttonRect(0), no = box.buttonRect(1);
  box.take(pointer(Down, yes.x + 1, yes.y + 1));
  box.take(pointer(Move, no.x + 1, no.y + 1));
  box.take(pointer(Up, no.x + 1, no.y + 1));
  EXPECT_FALSE(box.done());
  box.take(pointer(Up, yes.x + 1, yes.y + 1));
  EXPECT_FALSE(box.done());
}

TEST_F(BoxTest, OtherPointerButtonsMeanNothing) {
  Box box = make(BoxNotice);
  const BoxRect ok = box.buttonRect(0);
  box.take(pointer(Down, ok.x + 1, ok.y + 1, PointerButton::Right));
  box.take(pointer(Up, ok.x + 1, ok.y + 1, PointerButton::Right));
  EXPECT_FALSE(box.done());
}

TEST_F(BoxTest, IsDraggedByItsCaptionAndStaysInTheScreen) {
  Box box = make(BoxNotice);
  const BoxRect start = box.bounds();
  box.take(pointer(Down, start.x + 20, start.y + 10));
  box.take(pointer(Move, start.x + 50, start.y - 30));
  EXPECT_EQ(box.bounds(), (BoxRect{start.x + 30, start.y - 40, start.width, start.height}));
  for (const auto& [x, y] :
       std::initializer_list<std::pair<int, int>>{{0, 0}, {639, 479}, {639, 0}, {-500, 900}}) {
    box.take(pointer(Move, x, y));
    EXPECT_TRUE(Screen.contains(box.bounds())) << x << ", " << y;
  }
  EXPECT_EQ(box.bounds().x, 0);
  EXPECT_EQ(box.bounds().y, ScreenHeight - start.height);
  box.take(pointer(Up, 0, 479));
  box.take(pointer(Move, 300, 200));
  EXPECT_EQ(box.bounds().x, 0);
}

TEST_F(BoxTest, IsNotDraggedByItsInside) {
  Box box = make(BoxNotice);
  const BoxRect start = box.bounds();
  box.take(pointer(Down, start.x + 20, start.y + 50));
  box.take(pointer(Move, start.x + 90, start.y + 90));
  EXPECT_EQ(box.bounds(), start);
}

TEST_F(BoxTest, LosingTheFocusLetsGo) {
  Box box = make(BoxNotice);
  const BoxRect start = box.bounds();
  box.take(pointer(Down, start.x + 20, start.y + 10));
  DisplayEvent lost;
  lost.kind = DisplayEvent::Kind::FocusLost;
  box.take(lost);
  box.take(pointer(Move, 0, 0));
  EXPECT_EQ(box.bounds(), start);
}

TEST_F(BoxTest, TellsWhenItsPictureHasChanged) {
  Box box = make(BoxYesNo);
  EXPECT_TRUE(box.takeChanged());
  box.take(pointer(Move, 1, 1));
  EXPECT_FALSE(box.takeChanged());
  box.take(key(KeyRight));
  EXPECT_TRUE(box.takeChanged());
  EXPECT_FALSE(box.takeChanged());
  const BoxRect yes = box.buttonRect(0);
  box.take(pointer(Down, yes.x, yes.y));
  EXPECT_TRUE(box.takeChanged());
  box.take(pointer(Move, 0, 0));
  EXPECT_TRUE(box.takeChanged());
}

TEST_F(BoxTest, AnAnsweredBoxTakesNoMoreInput) {
  Box box = make(BoxYesNo);
  box.take(key('Y'));
  box.take(key('N'));
  EXPECT_EQ(box.answer(), BoxAnswer::Yes);
}

TEST_F(BoxTest, BreaksLinesAtLineFeedsAndAtTheWidth) {
  const TextStyle style{FontFace::Gothic, 16};
  const auto wrap = [&](const std::string& run, int width) {
    return wrapText(text_, style, run, width);
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(wrap("", 100), Lines({""}));
  EXPECT_EQ(wrap("a\nb\r\n\nc\n", 100), Lines({"a", "b", "", "c"}));
  EXPECT_EQ(wrap("one two three", 64), Lines({"one two ", "three"}));
  EXPECT_EQ(wrap("abcdefgh", 32), Lines({"abcd", "efgh"}));
  EXPECT_EQ(wrap(sjis("漢字漢字漢"), 40), Lines({sjis("漢字"), sjis("漢字"), sjis("漢")}));
  EXPECT_EQ(wrap(sjis("漢字abc"), 48), Lines({sjis("漢字"), "abc"}));
  EXPECT_EQ(wrap("abc", 0), Lines({"a", "b", "c"}));
}

TEST_F(BoxTest, NoLineBeginsWithAClosingMark) {
  const std::vector<std::string> lines =
      wrapText(text_, {FontFace::Gothic, 16}, sjis("一二三四。五"), 64);
  EXPECT_EQ(lines, std::vector<std::string>({sjis("一二三"), sjis("四。五")}));
}

TEST_F(BoxTest, DrawsNothingOutsideItsBoundsAndNoTextOutsideItsInside) {
  const std::string texts[] = {"",
                               "x",
                               std::string(5000, 'x'),
                               sjis("存在しません。読み込み処理を中止します。"),
                               std::string(300, '\n') + "end",
                               std::string("\x88\x00\x01\xff\xa0", 5)};
  for (const std::string& text : texts)
    for (uint32_t flags = 0; flags <= 5; ++flags)
      for (const uint32_t icon : {0x00u, 0x30u}) {
        const Box box({text, std::string(200, 'c'), flags | icon}, text_);
        const BoxRect bounds = box.bounds();
        ASSERT_TRUE(Screen.contains(bounds));
        ASSERT_TRUE(bounds.contains(box.textRect()));
        for (size_t i = 0; i < box.buttonCount(); ++i) {
          ASSERT_TRUE(bounds.contains(box.buttonRect(i)));
          ASSERT_LE(box.textRect().y + box.textRect().height, box.buttonRect(i).y);
        }
        Frame frame = ground();
        box.draw(frame);
        for (int y = 0; y < ScreenHeight; ++y)
          for (int x = 0; x < ScreenWidth; ++x) {
            const uint32_t pixel =
                frame[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
            ASSERT_EQ(pixel == Ground, !bounds.contains(x, y)) << x << ", " << y;
          }
      }
}

TEST_F(BoxTest, SetsALongTextSmallerAndCutsWhatIsTooLongEvenThen) {
  std::string lines20, lines90;
  for (int i = 0; i < 20; ++i)
    lines20 += "line\n";
  for (int i = 0; i < 90; ++i)
    lines90 += "line\n";
  const Box fits = make(0, lines20), cut = make(0, lines90);
  EXPECT_EQ(fits.lines().size(), 20u);
  EXPECT_LT(cut.lines().size(), 90u);
  EXPECT_EQ(cut.lines().back(), "...");
}

TEST_F(BoxTest, LooksLikeTheGoldenPictures) {
  if (!text_.hasFont(FontFace::Gothic)) GTEST_SKIP() << "the IPA fonts are not installed";
  Frame frame = ground();
  Box notice({"cg\\bg01.mcg" + sjis("は\n存在しません。読み込み処理を中止します。"),
              "System Manager - inquire reading", BoxNotice},
             text_);
  notice.moveTo(40, 30);
  notice.draw(frame);
  Box question({sjis("タイトルへ戻ります。よろしいですか？"), sjis("確認"), 3 | 0x20}, text_);
  question.moveTo(250, 190);
  question.take(key(KeyRight));
  question.draw(frame);
  Box retry(
      {sjis("ファイルに書き込めませんでした。ディスクの空きを確かめてから、もう一度お試しください。"
            "キャンセルすると、この保存は行われません。"),
       "QVFile - close", BoxRetryCancel},
      text_);
  retry.moveTo(10, 330);
  const BoxRect button = retry.buttonRect(0);
  retry.take(pointer(Down, button.x + 3, button.y + 3));
  retry.draw(frame);
  EXPECT_TRUE(testing::matchesGolden({ScreenWidth, ScreenHeight, frame},
                                     QV_SOURCE_DIR "/tests/golden/box_notice.png"));
}

}  // namespace
}  // namespace qv
