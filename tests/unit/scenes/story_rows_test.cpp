#include "scenes/generator/story_rows.h"

#include <gtest/gtest.h>

#include "platform/text/shift_jis.h"
#include "scenes/generator/generator.h"
#include "scenes/generator/text.h"

namespace qv::scenec {
namespace {

Story storyOf(const std::string& text, std::vector<std::string>& problems) {
  Problems told;
  Story story = readStory({{"story.txt", text}, {"a.scene", "@scene sc_menu\n@go END\n"}}, told);
  problems = told.lines();
  return story;
}

std::string firstProblem(const std::string& text) {
  std::vector<std::string> problems;
  storyOf(text, problems);
  return problems.empty() ? std::string() : problems.front();
}

std::string tablesOf(const std::string& text) {
  std::vector<std::string> problems;
  const Story story = storyOf(text, problems);
  EXPECT_EQ(problems, std::vector<std::string>{});
  return tablesCode(story);
}

bool hasRow(const std::string& tables, const std::string& tag, const std::string& shown,
            const std::string& rest) {
  return tables.find("{" + literal(tag) + ", " + literal(shown) + ", " + rest + "}") !=
         std::string::npos;
}

TEST(StoryRows, ASpeakersNameStandsForFourTags) {
  const std::string tables = tablesOf("@speaker レッサ class 2\n");
  EXPECT_TRUE(hasRow(tables, "【　レッサ　】", "【　レッサ　】", "nullptr, 2, false"));
  EXPECT_TRUE(hasRow(tables, "【Dtレッサ　】", "【　レッサ　】", "nullptr, 2, false"));
  EXPECT_TRUE(hasRow(tables, "【　レッサ〔アニメなし〕】", "【　レッサ　】", "nullptr, 0, false"));
  EXPECT_TRUE(hasRow(tables, "【　＊＊＊　＆　レッサ　】", "【　＊＊＊　＆　レッサ　】",
                     "nullptr, 2, false"));
}

TEST(StoryRows, AnAliasHidesWhoItTrulyIs) {
  const std::string tables = tablesOf("@speaker ？？ 【　？？　《レッサ》】 class 2\n");
  EXPECT_TRUE(hasRow(tables, "【　？？　《レッサ》】", "【　？？　】", "nullptr, 2, false"));
  EXPECT_EQ(tables.find(literal("【Dt？？　】")), std::string::npos);
}

TEST(StoryRows, ARowMayPrintAnotherTextThanItKeeps) {
  const std::string tables =
      tablesOf("@speaker 声 class 31 shows 【　女性の声　】 prints 【　女の声　】\n");
  EXPECT_TRUE(
      hasRow(tables, "【　声　】", "【　女性の声　】", literal("【　女の声　】") + ", 31, false"));
}

TEST(StoryRows, TheHerosFirstNamesEndTheLine) {
  const std::string tables = tablesOf("@hero 佐伯 湊\n");
  EXPECT_TRUE(hasRow(tables, "【　佐伯　湊　】", "【　佐伯　湊　】", "nullptr, 0, true"));
  EXPECT_NE(tables.find(".familyName = " + literal("佐伯")), std::string::npos);
  EXPECT_NE(tables.find(".givenName = " + literal("湊")), std::string::npos);
}

TEST(StoryRows, FiguresAndPicturesKeepTheirMouths) {
  const std::string tables = tablesOf(
      "@speaker ベルーネ class 1\n@speaker レッサ class 2\n"
      "@figure KUS012 of ベルーネ at -130 4 file KDS012 mouth Kds012_a 114 132 key 169\n"
      "@figure KUC011_p of レッサ at -175 0\n"
      "@picture KEV003B mouth ベルーネ 1 KEV003Ba 432 208 stands レッサ 2\n");
  EXPECT_NE(tables.find("{\"KUS012\", 1, -130, 4, \"KDS012\", \"Kds012_a\", 114, 132, 169}"),
            std::string::npos);
  EXPECT_NE(tables.find("{\"KUC011_p\", 2, -175, 0, nullptr, nullptr, 0, 0, -2}"),
            std::string::npos);
  EXPECT_NE(tables.find("{\"KEV003B\", nullptr, 2, {{1, 1, \"KEV003Ba\", 432, 208, -2}, "
                        "{2, 2, nullptr, 0, 0, -2}}}"),
            std::string::npos);
}

// A figure of class 0 would be found in the first empty slot.
TEST(StoryRows, AFiguresSpeakerHasAClass) {
  EXPECT_EQ(firstProblem("@speaker 駅員\n@figure KUS012 of 駅員 at 0 0\n"),
            "story.txt:2: the speaker \"駅員\" has no class, by which figures are known; give "
            "@speaker 駅員 a class of its own.");
  EXPECT_EQ(firstProblem("@speaker 駅員 class 0\n@figure KUS012 of 駅員 at 0 0 mouth A 1 2\n"),
            "story.txt:2: the speaker \"駅員\" has no class, by which figures are known; give "
            "@speaker 駅員 a class of its own.");
  EXPECT_EQ(firstProblem("@speaker 駅員 class 30\n@figure KUS012 of 駅員 at 0 0\n"), "");
}

TEST(StoryRows, APicturesRowMayStandForItsNameAlone) {
  const std::string tables = tablesOf(
      "@speaker レッサ class 2\n@picture KBA060\n@picture KAI001 stands レッサ 1\n"
      "@picture KUC201 stands レッサ 1\n");
  EXPECT_NE(tables.find("{\"KBA060\", nullptr, 0, {}}"), std::string::npos) << tables;
}

TEST(StoryRows, SayWhatIsWrongWithThem) {
  EXPECT_EQ(firstProblem("@hero 佐伯\n"), "story.txt:1: write @hero FAMILYNAME GIVENNAME.");
  EXPECT_EQ(firstProblem("@speaker レッサ class 999\n"),
            "story.txt:1: \"999\" is no number from 0 to 253.");
  EXPECT_EQ(firstProblem("@speaker レッサ 【　レッサ\n"),
            "story.txt:1: write @speaker NAME, or @speaker NAME 【　TAG　】 class N.");
  EXPECT_EQ(firstProblem("@figure KUS012 of レッサ at 0 0\n"),
            "story.txt:1: there is no speaker \"レッサ\" above; write its @speaker first.");
  EXPECT_EQ(firstProblem("@speaker レッサ\n@figure KUS012 of レッサ at 0 0 file ../x\n"),
            "story.txt:2: write @figure PICTURE of SPEAKER at X Y [file FILE] [mouth FILE X Y "
            "[key N]].");
  EXPECT_EQ(
      firstProblem(
          "@speaker レッサ class 2\n@figure A of レッサ at 0 0\n@figure A of レッサ at 1 0\n"),
      "story.txt:3: the row \"A\" is there already; remove one of the two.");
  EXPECT_EQ(firstProblem("@speaker レッサ\n@picture A stands レッサ 6\n"),
            "story.txt:2: \"6\" is no number from 0 to 5.");
  EXPECT_EQ(firstProblem("@speaker レッサ\n@picture KAI099 stands レッサ 1\n"),
            "story.txt:2: \"KAI099\" is no event or title that the engine knows, so that nobody "
            "would look at its row; write @picture KAI099 alone.");
  EXPECT_EQ(firstProblem("@picture KAI099 file KAI001\n"),
            "story.txt:1: \"KAI099\" is no event or title that the engine knows, so that nobody "
            "would look at its row; write @picture KAI099 alone.");
}

}  // namespace
}  // namespace qv::scenec
