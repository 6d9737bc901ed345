// What scenec says of texts that are wrong: file, line, what and what to do.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenes/generator/generator.h"

namespace qv::scenec {
namespace {

const std::string Frame = "@scene sc_menu\n@go END\n";
const std::string StoryText =
    "@game Test\n@speaker ベルーネ\n@heroine ベルーネ\n@register 傘 600\n";

std::vector<std::string> problemsOf(const std::string& scenes, const std::string& story = StoryText,
                                    bool withMenu = true) {
  Problems problems;
  readStory({{"story.txt", story}, {"a.scene", scenes + (withMenu ? Frame : "")}}, problems);
  return problems.lines();
}

using Lines = std::vector<std::string>;

TEST(SceneLanguage, AGoodStoryHasNoProblems) {
  EXPECT_EQ(problemsOf("@scene sc000000\n雨。\n@go END\n"), Lines{});
}

struct Wrong {
  const char* scenes;
  const char* line;
};

class WrongScenes : public ::testing::TestWithParam<Wrong> {};

TEST_P(WrongScenes, IsToldWithFileLineAndRemedy) {
  const Lines lines = problemsOf(GetParam().scenes);
  EXPECT_THAT(lines, ::testing::Contains(GetParam().line)) << GetParam().scenes;
}

INSTANTIATE_TEST_SUITE_P(
    Language, WrongScenes,
    ::testing::Values(
        Wrong{"雨。\n", "a.scene:1: this stands outside of a scene; begin one with @scene NAME."},
        Wrong{"@scene\n@go END\n", "a.scene:1: the name is missing; write @scene NAME."},
        Wrong{"@scene intro\n@go END\n",
              "a.scene:1: \"intro\" is no name for a scene; use sc and six digits (two of the "
              "chapter, four of the scene), as sc010203, sc010203m or sc010203m_02, or sc_ and a "
              "word."},
        Wrong{"@scene sc_start\n@go END\n",
              "a.scene:1: \"sc_start\" belongs to the engine; choose another name."},
        Wrong{"@scene sc000000\n雨。\n",
              "a.scene:1: the scene \"sc000000\" does not say where it goes on; end it with @go "
              "SCENE, @choose or @places."},
        Wrong{"@scene sc000000\n@go sc000001\n",
              "a.scene:2: there is no scene \"sc000001\". Did you mean \"sc000000\"?"},
        Wrong{"@scene sc000000\n@go END\n@scene sc000000\n@go END\n",
              "a.scene:3: the scene \"sc000000\" is there already, in a.scene line 1; give one of "
              "them another name."},
        Wrong{"@scene sc000000\n@go sc_start\n",
              "a.scene:2: no scene can lead to \"sc_start\"; name another one."},
        Wrong{"@scene sc000000\n@sprit KUS011 3\n@go END\n",
              "a.scene:2: there is no command \"@sprit\". Did you mean \"sprite\"?"},
        Wrong{"@scene sc000000\n@sprite KUS011\n@go END\n",
              "a.scene:2: SLOT is missing; the form is @sprite PICTURE SLOT."},
        Wrong{"@scene sc000000\n@sprite KUS011 6\n@go END\n",
              "a.scene:2: \"6\" does not fit for SLOT of @sprite PICTURE SLOT; write a number from "
              "1 to 5."},
        Wrong{"@scene sc000000\n@bg BLACK B\n@go END\n",
              "a.scene:2: \"B\" is too much here; the form is @bg PICTURE."},
        Wrong{"@scene sc000000\nベルーね: 「雨」\n@go END\n",
              "a.scene:2: nobody called \"ベルーね\" speaks in this story. Did you mean "
              "\"ベルーネ\"?"},
        Wrong{"@scene sc000000\n雨☂。\n@go END\n",
              "a.scene:2: \"☂\" (U+2602) cannot be said in Shift-JIS; choose another character."},
        Wrong{"@scene sc000000\n\xFF\n@go END\n",
              "a.scene:2: this line is not UTF-8; save the file as UTF-8."},
        Wrong{"@scene sc000000\n@flag 2500\n@go END\n",
              "a.scene:2: there is no register 2500; registers go from 0 to 2499."},
        Wrong{"@scene sc000000\n@flag 7\n@go END\n",
              "a.scene:2: register 7 belongs to the form of scenes; use another one."},
        Wrong{
            "@scene sc000000\n@setting 2048 1\n@go END\n",
            "a.scene:2: \"2048\" does not fit for NUMBER of @setting NUMBER VALUE; write a number "
            "from 0 to 2047."},
        Wrong{"@scene sc000000\n@go END\n雨。\n",
              "a.scene:3: nothing is reached behind line 2, where the scene leaves; remove this or "
              "begin a new scene."},
        Wrong{"@scene sc000000\n@choose\nひとつ → END\n",
              "a.scene:2: a selection needs two or three lines TEXT → SCENE below it."},
        Wrong{"@scene sc000000\n@if 傘\n@go END\n",
              "a.scene:2: the @if that begins here has no end; close it with @end."},
        Wrong{"@scene sc000000\n@if かさ\n@go END\n@end\n@go END\n",
              "a.scene:2: no register is called \"かさ\". Name it in story.txt with @register NAME "
              "NUMBER, or write its number."},
        Wrong{
            "@scene sc000000\n@if 傘 and\n@go END\n@end\n@go END\n",
            "a.scene:2: the condition ends too early; a register or another question is missing."},
        Wrong{"@chain sc000000\n雨。\n@go END\n",
              "a.scene:2: a chain scene only decides where to go on; make it a @scene to show or "
              "say something."},
        Wrong{"@chain sc000000\n@flag 傘\n",
              "a.scene:1: the chain scene \"sc000000\" does not say where it goes on; end it with "
              "@go SCENE."},
        Wrong{"@scene sc000000\n@when 傘\n@go END\n",
              "a.scene:2: when no @when of this scene holds, it has no way on; end it with a part "
              "@otherwise."},
        Wrong{"@scene sc000000\n@when 傘\n@flag 傘\n@go END\n@otherwise\n@go END\n",
              "a.scene:3: register 600 chooses the part of this scene that runs (@when 傘); change "
              "it in another scene."},
        Wrong{"@scene sc000000\n@affection レッサ 5\n@go END\n",
              "a.scene:2: affection does not know \"レッサ\". Add @heroine レッサ to story.txt."},
        Wrong{"@scene sc000000\n@click soon\n@go END\n",
              "a.scene:2: \"soon\" is no time; write tenths of a second from 1 to 9998, seconds as "
              "2.7s, or forever."},
        Wrong{"@scene sc000000\n@cpp\nint x;\n",
              "a.scene:2: the C++ that begins here has no end; close it with @end cpp."}));

// Names that are looked up in the engine's tables and in the story's rows.

INSTANTIATE_TEST_SUITE_P(
    Names, WrongScenes,
    ::testing::Values(
        Wrong{"@scene sc000000\n@bgm K99\n@go END\n",
              "a.scene:2: there is no song \"K99\"; songs are K01 to K16."},
        Wrong{"@scene sc000000\n雨。\n@if 傘\n@bgm k03 fadein\n@end\n@go END\n",
              "a.scene:4: there is no song \"k03\"; songs are K01 to K16."},
        Wrong{"@scene sc000000\n@se SE99 loop\n@go END\n",
              "a.scene:2: there is no effect \"SE99\"; effects are SE01 to SE61."},
        Wrong{"@scene sc000000\n@se 足音\n@go END\n",
              "a.scene:2: there is no effect \"足音\"; effects are SE01 to SE61."},
        Wrong{"@scene sc000000\n@sprite NOBODY 3\n@go END\n",
              "a.scene:2: the figure \"NOBODY\" has no row, so that nobody would appear. Write "
              "@figure NOBODY of SPEAKER at X Y in story.txt."},
        Wrong{"@scene sc000000\n@sprite KUS015 3\n@go END\n",
              "a.scene:2: the figure \"KUS015\" has no row, so that nobody would appear. Did you "
              "mean \"KUS011\"? Write @figure KUS015 of SPEAKER at X Y in story.txt."},
        Wrong{"@scene sc000000\n@sprite-kzc KUC099 3\n@go END\n",
              "a.scene:2: the figure \"KUC099\" has no row, so that nobody would appear. Did you "
              "mean \"KUC039\"? Write @figure KUC099 of SPEAKER at X Y in story.txt."},
        Wrong{"@scene sc000000\n@bg BROWN\n@go END\n",
              "a.scene:2: there is no background \"BROWN\". If it is the story's own, write "
              "@picture BROWN in story.txt."},
        Wrong{"@scene sc000000\n@bg KBA0014\n@go END\n",
              "a.scene:2: there is no background \"KBA0014\". Did you mean \"KBA001\"? If it is "
              "the story's own, write @picture KBA0014 in story.txt."},
        Wrong{"@scene sc000000\n@event KEV405b\n@go END\n",
              "a.scene:2: there is no event picture \"KEV405b\". Did you mean \"KEV405A\"? If it "
              "is the story's own, write @picture KEV405b in story.txt."},
        Wrong{"@scene sc000000\n@title KEN405A\n@go END\n",
              "a.scene:2: there is no title picture \"KEN405A\". Did you mean \"KEN001A\"? If it "
              "is the story's own, write @picture KEN405A in story.txt."}));

TEST(SceneLanguage, KnowsNamesOfTheEngineAndOfTheStory) {
  const std::string rows = StoryText +
                           "@speaker レッサ class 2\n@figure KUS024 of レッサ at 0 0\n"
                           "@figure MINE of レッサ at 0 0\n@picture KBA060\n";
  EXPECT_EQ(problemsOf("@scene sc000000\n@bg BLACK\n@bg RED\n@bg KBA055\n@bg KBA060\n"
                       "@event KEV925A\n@event WHITE\n@title KTI001\n@title KBA060\n"
                       "@sprite KUS011 1\n@sprite KUS024 2\n@sprite MINE 3\n@sprite KUS091 4\n"
                       "@sprite-kzc KUC017 1\n@bgm K16\n@bgm stop\n@se SE61\n@se チャイム\n"
                       "@se ガルムファイヤー loop\n@go END\n",
                       rows),
            Lines{});
}

TEST(SceneLanguage, TellsEveryProblemOfARun) {
  EXPECT_EQ(problemsOf("@scene sc000000\n@bg\n@sprite KUS011 9\n@go sc999999\n").size(), 3u);
}

TEST(SceneLanguage, BeyondAHundredProblemsOnlyTheirNumberIsTold) {
  std::string scenes = "@scene sc000000\n";
  for (int line = 0; line < 150; ++line)
    scenes += "@bg\n";
  const Lines lines = problemsOf(scenes + "@go END\n");
  ASSERT_EQ(lines.size(), 101u);
  EXPECT_EQ(lines.back(), "and 50 more");
}

TEST(SceneLanguage, AStoryNeedsItsTitle) {
  EXPECT_EQ(problemsOf("@scene sc000000\n@go END\n", StoryText, false),
            Lines{"story.txt: the story has no scene \"sc_menu\", to which the way back to the "
                  "title leads; write it."});
}

TEST(SceneLanguage, StoryFilesAreCheckedToo) {
  const auto first = [](const std::string& story) {
    const Lines lines = problemsOf("", story);
    return lines.empty() ? std::string() : lines.front();
  };
  EXPECT_EQ(first("@gam X\n"), "story.txt:1: story.txt knows no \"@gam\". Did you mean \"game\"?");
  EXPECT_EQ(first("@game ../x\n"),
            "story.txt:1: \"../x\" cannot name the game's files; use letters A to Z, digits, - and "
            "_.");
  EXPECT_EQ(first("@register 傘 9999\n"),
            "story.txt:1: there is no register 9999; registers go from 0 to 2499.");
  EXPECT_EQ(first("@register random 1\n"),
            "story.txt:1: \"random\" means something else in conditions; choose another name.");
  EXPECT_EQ(first("@first sc000009\n"), "story.txt:1: there is no scene \"sc000009\". Write it.");
}

TEST(SceneLanguage, FullWidthSignsAreTakenAsNarrowOnes) {
  EXPECT_EQ(
      problemsOf("＠ｓｃｅｎｅ　sc000000\n＃ 注\n　＠ｓｐｒｉｔｅ　KUS011　３\n＠ｇｏ　END\n"),
      Lines{});
}

TEST(SceneLanguage, EveryStepKeepsItsUnitWhenAnotherSceneChanges) {
  std::string scenes;
  for (int number = 0; number < 60; ++number) {
    char text[64];
    std::snprintf(text, sizeof text, "@scene sc01%04d\n行。\n@go END\n", number);
    scenes += text;
  }
  Problems problems;
  const auto sourcesOf = [&](const std::string& text) {
    return writeStory(readStory({{"story.txt", StoryText}, {"a.scene", text + Frame}}, problems),
                      {"story.txt", "a.scene"}, "", 3);
  };
  const std::vector<SourceFile> before = sourcesOf(scenes);
  std::string changed = scenes;
  changed.replace(changed.find("行。"), std::string("行。").size(), "字。");
  const std::vector<SourceFile> after = sourcesOf(changed);
  ASSERT_EQ(problems.lines(), Lines{});
  ASSERT_EQ(before.size(), 4u) << "three units and the table";
  int different = 0;
  for (size_t i = 0; i < before.size(); ++i)
    different += before[i].text != after[i].text ? 1 : 0;
  EXPECT_EQ(different, 1);
}

TEST(SceneLanguage, OwnCppStandsOnceAndItsScenesBesideIt) {
  std::string scenes = "@cpp\nstatic void mine() {}\n@end cpp\n";
  for (int number = 10; number < 40; ++number)
    scenes += "@scene sc0100" + std::to_string(number) + "\n@go END\n";
  std::string others;
  for (int number = 10; number < 40; ++number)
    others += "@scene sc0200" + std::to_string(number) + "\n@go END\n";
  Problems problems;
  const std::vector<std::string> files = {"story.txt", "a.scene", "b.scene"};
  const Story story =
      readStory({{files[0], StoryText}, {files[1], scenes + Frame}, {files[2], others}}, problems);
  ASSERT_EQ(problems.lines(), Lines{});
  int units = 0, spread = 0;
  for (const SourceFile& source : writeStory(story, files, "", 3)) {
    if (source.name == "scene_table.cpp") continue;
    const bool own = source.text.find("static void mine()") != std::string::npos;
    units += own ? 1 : 0;
    EXPECT_EQ(source.text.find("SetSceneName(\"sc0100") != std::string::npos, own) << source.name;
    spread += source.text.find("SetSceneName(\"sc0200") != std::string::npos ? 1 : 0;
  }
  EXPECT_EQ(units, 1);
  EXPECT_EQ(spread, 3);
}

TEST(SceneLanguage, OwnCppOfATextWithoutScenesIsSeenEverywhere) {
  std::string scenes;
  for (int number = 10; number < 40; ++number)
    scenes += "@scene sc0100" + std::to_string(number) + "\n@go END\n";
  Problems problems;
  const std::vector<std::string> files = {"story.txt", "a.scene", "shared.scene"};
  const Story story = readStory({{files[0], StoryText},
                                 {files[1], scenes + Frame},
                                 {files[2], "@cpp\ninline void shared() {}\n@end cpp\n"}},
                                problems);
  ASSERT_EQ(problems.lines(), Lines{});
  for (const SourceFile& source : writeStory(story, files, "", 3))
    EXPECT_EQ(source.text.find("inline void shared()") != std::string::npos,
              source.name != "scene_table.cpp")
        << source.name;
}

}  // namespace
}  // namespace qv::scenec
