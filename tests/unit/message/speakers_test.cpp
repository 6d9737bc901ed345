// Who a tag means, whose switch his voice has, and the hero's names in texts.

#include "message/speakers.h"

#include <deque>
#include <map>

#include <gtest/gtest.h>

#include "platform/text/shift_jis.h"
#include "scenario/story_tables.h"

namespace qv::testing {
namespace {

/// A story with rows of every form.
class SpeakersTest : public ::testing::Test {
 protected:
  SpeakersTest() {
    add("【　ベルーネ　】", "【　ベルーネ　】", 1);
    add("【Dtベルーネ　】", "【　ベルーネ　】", 1);
    add("【　ベルーネ　《替え玉》】", "【　ベルーネ　】", 6);
    add("【　駅員　《脇キャラ》】", "【　駅員　】", 30);
    add("【　＊＊＊　＆　レッサ　】", "【　＊＊＊　＆　レッサ　】", 2);
    add("【　ベルーネ〔アニメなし〕】", "【　ベルーネ　】", 0);
    add("【　女性の声　】", "【　女性の声　】", 31, "【　女の声　】");
    add("【　三枝 陽一　】", "【　三枝 陽一　】", 0, nullptr, true);
    // A tag that stands twice: the first row wins.
    add("【　駅員　《脇キャラ》】", "【　別人　】", 31);
    tables.speakers = rows;
    setStoryTables(&tables);
  }
  ~SpeakersTest() override { setStoryTables(nullptr); }

  void add(const char* tag, const char* shown, int32_t speakerClass, const char* printed = nullptr,
           bool ends = false) {
    rows.push_back({keep(tag), keep(shown), printed ? keep(printed) : nullptr, speakerClass, ends});
  }
  const char* keep(const char* text) { return texts.emplace_back(sjis(text)).c_str(); }
  static Speaker of(const char* tag) { return speakerOf(sjis(tag), sjis("湊")); }
  static void expectSpeaker(const char* tag, const char* shown, const char* printed,
                            int32_t speakerClass, bool ends = false) {
    const Speaker speaker = of(tag);
    EXPECT_EQ(utf8OfShiftJis(speaker.shown), shown) << tag;
    EXPECT_EQ(utf8OfShiftJis(speaker.printed.value_or("")), printed) << tag;
    EXPECT_EQ(speaker.speakerClass, speakerClass) << tag;
    EXPECT_EQ(speaker.ends, ends) << tag;
  }

  std::deque<std::string> texts;
  std::vector<SpeakerRow> rows;
  StoryTables tables;
};

TEST_F(SpeakersTest, EachFormOfARowShowsWhatItShould) {
  expectSpeaker("【　ベルーネ　】", "【　ベルーネ　】", "【　ベルーネ　】", 1);
  expectSpeaker("【Dtベルーネ　】", "【　ベルーネ　】", "【　ベルーネ　】", 1);
  expectSpeaker("【　ベルーネ　《替え玉》】", "【　ベルーネ　】", "【　ベルーネ　】", 6);
  expectSpeaker("【　駅員　《脇キャラ》】", "【　駅員　】", "【　駅員　】", 30);
  expectSpeaker("【　＊＊＊　＆　レッサ　】", "【　湊　＆　レッサ　】", "【　湊　＆　レッサ　】",
                2);
  expectSpeaker("【　ベルーネ〔アニメなし〕】", "【　ベルーネ　】", "【　ベルーネ　】", 0);
  expectSpeaker("【　女性の声　】", "【　女性の声　】", "【　女の声　】", 31);
  expectSpeaker("【　三枝 陽一　】", "【　三枝 陽一　】", "【　三枝 陽一　】", 0, true);
}

TEST_F(SpeakersTest, NarrationThoughtsAndNoisesPrintNothingAndEndTheCommand) {
  for (const char* tag : {"コメント", "【　心の声　】", "【　擬音　】"}) {
    const Speaker speaker = of(tag);
    EXPECT_EQ(utf8OfShiftJis(speaker.shown), "　") << tag;
    EXPECT_FALSE(speaker.printed.has_value()) << tag;
    EXPECT_TRUE(speaker.ends) << tag;
  }
}

TEST_F(SpeakersTest, TheHeroIsShownByHisNameAndGoesOnWithoutAClass) {
  expectSpeaker("【　＊＊＊　】", "【　湊　】", "【　湊　】", 0);
  expectSpeaker("【　＊＊＊　《主人公》】", "【　湊　】", "【　湊　】", 0);
}

TEST_F(SpeakersTest, ATagThatNoRowKnowsIsSomebodyUnknown) {
  for (const char* tag : {"", "だれか", "ベルーネ", "【　ベルーネ 】", "【　ベルーネ　】。"})
    expectSpeaker(tag, "【　？？　】", "【　？？　】", 254);
}

TEST(SpeakersStory, WithoutATableOnlyTheCommonRowsAreKnown) {
  setStoryTables(nullptr);
  EXPECT_EQ(speakerOf(sjis("【　ベルーネ　】"), "").speakerClass, UnknownSpeaker);
  EXPECT_TRUE(speakerOf(sjis("コメント"), "").ends);
}

TEST(VoiceSwitch, IsTheOneOfTheClassWithItsCrossingAndItsGaps) {
  std::map<int32_t, int32_t> expected{{0, 59}, {1, 51}, {2, 52}, {3, 53}, {4, 55},
                                      {5, 54}, {6, 57}, {7, 58}, {8, 56}};
  for (const int32_t others : {9, 10, 200, 201})
    expected[others] = 59;
  for (int32_t others = 12; others <= 20; ++others)
    expected[others] = 59;
  for (int32_t others = 30; others <= 43; ++others)
    expected[others] = 59;
  for (int32_t speakerClass = -2; speakerClass <= 300; ++speakerClass) {
    const auto row = expected.find(speakerClass);
    EXPECT_EQ(voiceSwitchOf(speakerClass), row == expected.end() ? 0 : row->second) << speakerClass;
  }
}

std::string named(const char* text, const char* family, const char* given) {
  return utf8OfShiftJis(withHeroNames(sjis(text), sjis(family), sjis(given)));
}

TEST(HeroNames, TakeThePlaceOfEveryMarker) {
  EXPECT_EQ(named("＊＊＊！※※※＊＊＊。", "三枝", "湊"), "湊！三枝湊。");
  EXPECT_EQ(named("＊＊と※", "三枝", "湊"), "＊＊と※") << "a part of a marker is none";
  EXPECT_EQ(named("＊＊＊＊＊＊＊", "三枝", "湊"), "湊湊＊");
  EXPECT_EQ(named("", "三枝", "湊"), "");
}

TEST(HeroNames, TheGivenNameComesFirstAndMayHoldTheOthersMarker) {
  EXPECT_EQ(named("＊＊＊", "三枝", "※※※"), "三枝");
  EXPECT_EQ(named("※※※", "＊＊＊", "湊"), "＊＊＊") << "but not the other way round";
}

TEST(HeroNames, AreFoundByWholeCharactersAlone) {
  // Second bytes that look like first ones: a marker begins where a character does.
  const std::string marker = sjis("＊＊＊");
  const std::string shifted = std::string("\x83") + marker.substr(0, 1) + marker.substr(1);
  EXPECT_EQ(withHeroNames(shifted, "F", "G").find('G'), std::string::npos);
}

}  // namespace
}  // namespace qv::testing
