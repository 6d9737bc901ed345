// What a story lacks as a whole, each told at its place.

#include "tools/story/story_checks.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fixed_text_device.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"
#include "tools/story/engine_files.h"

namespace qv::story {
namespace {

using scenec::Problems;
using scenec::Story;
using testing::FixedTextDevice;
using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

constexpr const char* StoryText =
    "@hero 三枝 陽一\n@speaker ベルーネ class 1\n@heroine ベルーネ\n@register 傘 600\n"
    "@figure KUS012 of ベルーネ at 0 0 file KDS012 mouth Kds012_a 10 10\n"
    "@figure KUC016 of ベルーネ at 0 0 mouth Kuc016_a 10 10\n"
    "@picture KEV004 mouth ベルーネ 1 KEV004_a 5 5\n";

/// A story of scenes behind a title that leads to the first; the scenes begin in line 1.
class StoryCheck : public ::testing::Test {
 protected:
  const Story& read(const std::string& scenes, const std::string& storyText = StoryText) {
    story = scenec::readStory({{"story.txt", storyText},
                               {"a.scene", scenes},
                               {"title.scene", "@scene sc_menu\n@go sc000000\n"}},
                              problems);
    EXPECT_EQ(problems.lines(), Lines{});
    return story;
  }
  void expect(const Lines& wanted) { EXPECT_EQ(problems.lines(), wanted); }

  testing::TestPlatform platform{false, makeSimulatedKernel()};
  Problems problems;
  Story story;
};

// --- Ways ---

TEST_F(StoryCheck, TellsScenesThatNothingLeadsTo) {
  checkReach(read("@scene sc000000\n@go END\n@scene sc000001\n@go sc000002\n"
                  "@scene sc000002\n@go END\n"),
             problems);
  expect(
      {"a.scene:3: nothing leads to the scene \"sc000001\"; lead to it from another scene, or "
       "remove it.",
       "a.scene:5: only scenes that nobody can reach lead to \"sc000002\"."});
}

TEST_F(StoryCheck, FollowsEveryKindOfWay) {
  checkReach(read("@scene sc000000\n@if 傘 → sc000001\nA\n@choose\nA → sc000002\nB → sc000003\n"
                  "@scene sc000001\n@places G\nA → sc000004\n"
                  "@scene sc000002\n@cpp\nreturn sc000005;\n@end cpp\n@go END\n"
                  "@chain sc000003\n@if random\n@go sc000006\n@else\n@go sc_hand\n@end\n"
                  "@scene sc000004\n@go END\n@scene sc000005\n@go END\n@scene sc000006\n@go END\n"
                  "@handwritten sc_hand → sc000007 END\n"
                  "@scene sc000007\n@when 傘\n@go sc000008\n@otherwise\n@go END\n"
                  "@scene sc000008\n@go END\n"),
             problems);
  expect({});
}

TEST_F(StoryCheck, AHandWrittenSceneLeadsWhereItsRowSaysAlone) {
  checkReach(read("@scene sc000000\n@go sc_hand\n@handwritten sc_hand\n@scene sc000001\n@go END\n"),
             problems);
  expect(
      {"a.scene:4: nothing leads to the scene \"sc000001\"; lead to it from another scene, or "
       "remove it."});
}

TEST(HandWrittenRows, LeadToScenesThatExist) {
  Problems problems;
  scenec::readStory({{"story.txt", ""},
                     {"a.scene",
                      "@scene sc_menu\n@go sc_hand\n@handwritten sc_hand → sc000001\n"
                      "@handwritten sc_other sc_menu\n"}},
                    problems);
  EXPECT_EQ(problems.lines(),
            (Lines{"a.scene:3: there is no scene \"sc000001\". Write it, or lead elsewhere.",
                   "a.scene:4: write where the scene leads as @handwritten NAME → SCENE SCENE."}));
}

// --- Flags ---

TEST_F(StoryCheck, TellsFlagsThatAreAskedAndNeverSet) {
  checkFlags(read("@scene sc000000\n@set 傘 0\n@if 傘 → END\n@if 601 and not 傘 → END\n"
                  "@go sc000001\n@scene sc000001\n@when 602 > 1\n@go END\n@otherwise\n@go END\n"),
             {}, problems);
  expect(
      {"a.scene:3: register \"傘\" (600) is asked here, but every scene that writes it clears it; "
       "write @flag where it is to become true.",
       "a.scene:4: register 601 is asked here, but no scene sets it; write @flag where it is to "
       "become true.",
       "a.scene:7: register 602 is asked here, but no scene sets it; write @flag where it is to "
       "become true."});
}

TEST_F(StoryCheck, FlagsAreSetByCommandsByCodeAndByTheEngine) {
  checkFlags(read("@scene sc000000\n@flag 傘\n@count 200\n@set 141 2\n@cpp\nReg(603) = 1;\n"
                  "@end cpp\n@if 傘 and 200 and 141 and 603 and 604 and 100 and 2001 → END\n"
                  "@go END\n"),
             {{"hand.cpp", "void f() { qv::Reg(604) = 1; }"}}, problems);
  expect({});
}

// --- Songs ---

TEST_F(StoryCheck, TellsWaitsForSongsThatGoRound) {
  checkSongs(read("@scene sc000000\n@bgm K03\nひとつ。\n@wait song\n@go sc000001\n"
                  "@scene sc000001\n@bgm K04\n@if 600\n@bgm stop\n@end\n@wait song\n"
                  "@if 600\n@bgm K05 fadein\n@wait song\n@end\n@go END\n"),
             problems);
  expect({"a.scene:4: this never ends, because K03 goes round; write @bgm fadeout before it.",
          "a.scene:14: this never ends, because K05 goes round; write @bgm fadeout before it."});
}

TEST_F(StoryCheck, AcceptsWaitsForSongsThatEndOrThatItDoesNotKnow) {
  checkSongs(read("@scene sc000000\n@wait song\n@bgm K03\n@bgm fadeout\n@wait song\n"
                  "@if 600\n@bgm K04\n@go END\n@end\n@wait song\n@go END\n"),
             problems);
  expect({});
}

// --- Files ---

GameFiles engineAnd(std::initializer_list<const char*> names) {
  GameFiles files;
  for (const char* name : engineFiles())
    files.add(nameInGame(name));
  for (const char* name : names)
    files.add(name);
  return files;
}

constexpr const char* AllKinds =
    "@scene sc000000\n@bg KBA014\n@bg BLACK\n@sprite KUS012 1\n@sprite-kzc KUC016 2\n@event "
    "KEV004\n"
    "@title KAI001\n@bgm K03 fadein\n@bgm fadeout\n@bgm stop\n@se SE02 loop\n@se stop\n"
    "@draw dat\\QVlogo.mcg 16 9\n@wave %:\\VOICE\\V00\\0000_001.wav\n"
    "ベルーネ V00\\0000_002: 「雨」\n@go END\n";

TEST_F(StoryCheck, AcceptsFilesInAnyLetterCase) {
  checkFiles(read(AllKinds),
             engineAnd({"cg/kba014.mcg", "cg/KDS012.mcg", "cg/KDS012_A.mcg", "cg/KZC016.mcg",
                        "cg/Kzc016_a.mcg", "cg/KEV004.mcg", "cg/KEV004_a.mcg", "cg/KAI001.mcg",
                        "midi/K03a.mid", "midi/K03b.mid", "midi/K03c.mid", "midi/K03d.mid",
                        "midi/K03e.mid", "wave/vlse014.wav", "dat/QVlogo.mcg",
                        "disc/VOICE/V00/0000_001.wav", "disc/VOICE/V00/0000_002.wav"}),
             problems);
  expect({});
}

TEST_F(StoryCheck, TellsEveryFileThatIsMissing) {
  checkFiles(read(AllKinds), engineAnd({"midi/K03a.mid"}), problems);
  const auto missing = [](int line, const std::string& what, const std::string& file) {
    return "a.scene:" + std::to_string(line) + ": " + what + ", and the game has no file " + file +
           ".";
  };
  expect({missing(2, "this shows the picture KBA014", "cg/KBA014.mcg"),
          missing(4, "this shows the picture KDS012", "cg/KDS012.mcg"),
          missing(4, "this shows the mouth Kds012_a", "cg/Kds012_a.mcg"),
          missing(5, "this shows the picture KZC016", "cg/KZC016.mcg"),
          missing(5, "this shows the mouth KZC016_a", "cg/KZC016_a.mcg"),
          missing(6, "this shows the picture KEV004", "cg/KEV004.mcg"),
          missing(6, "this shows the mouth KEV004_a", "cg/KEV004_a.mcg"),
          missing(7, "this shows the picture KAI001", "cg/KAI001.mcg"),
          missing(8, "this plays the song K03", "midi/K03b.mid"),
          missing(11, "this plays the effect SE02", "wave/vlse014.wav"),
          missing(13, "this takes the file dat\\QVlogo.mcg", "dat/QVlogo.mcg"),
          missing(14, "this takes the file %:\\VOICE\\V00\\0000_001.wav",
                  "disc/VOICE/V00/0000_001.wav"),
          missing(15, "this line speaks with the voice V00\\0000_002",
                  "disc/VOICE/V00/0000_002.wav")});
}

TEST_F(StoryCheck, AsksForThePicturesThatEffectsLeaveBehind) {
  checkFiles(read("@scene sc000000\n@special 32800\n@special 7\n@picture-run\n@go END\n"),
             engineAnd({"cg/KEV102.mcg", "cg/KEV103.mcg"}), problems);
  expect({"a.scene:2: this shows the picture BLACK, and the game has no file cg/BLACK.mcg.",
          "a.scene:4: this shows the picture KEV60219, and the game has no file cg/KEV60219.mcg."});
}

/// What is told of a picture's file that is missing, by the line.
std::string missingPicture(int line, const char* what, const std::string& name) {
  return "a.scene:" + std::to_string(line) + ": this shows the " + what + " " + name +
         ", and the game has no file cg/" + name + ".mcg.";
}

TEST_F(StoryCheck, AFigureWithoutAFileIsLookedForAsItsSister) {
  const char* rows =
      "@speaker ベルーネ class 1\n@figure KUS013 of ベルーネ at 0 0\n"
      "@figure KUS060 of ベルーネ at 0 0\n";
  checkFiles(read("@scene sc000000\n@sprite KUS013 1\n@sprite KUS060 1\n@go END\n", rows),
             engineAnd({"cg/KUS013.mcg"}), problems);
  expect({missingPicture(2, "picture", "KDS013"), missingPicture(3, "picture", "KUS060")});
}

TEST_F(StoryCheck, AStorysRowStandsBeforeTheEnginesOpenOne) {
  const char* rows =
      "@speaker ベルーネ class 1\n@picture KEV205 mouth ベルーネ 1 KEV205_a 5 5\n"
      "@picture KEV230B file KEV231\n";
  const char* scenes = "@scene sc000000\n@event KEV205\n@event KEV230B\n@event KEV001\n@go END\n";
  checkFiles(read(scenes, rows), engineAnd({"cg/KEV205.mcg", "cg/KEV230.mcg", "cg/KEV001.mcg"}),
             problems);
  expect({missingPicture(2, "mouth", "KEV205_a"), missingPicture(3, "picture", "KEV231"),
          missingPicture(4, "mouth", "KEV001_a")});
}

TEST_F(StoryCheck, WithoutAStorysRowTheEnginesOpenOneStands) {
  checkFiles(read("@scene sc000000\n@event KEV205\n@event KEV230B\n@go END\n"),
             engineAnd({"cg/KEV205.mcg", "cg/KEV230.mcg"}), problems);
  expect({});
}

TEST_F(StoryCheck, AGroupShotHasTheMouthsOfItsPicturesRow) {
  checkFiles(read("@scene sc000000\n@sprite KUS091 1\n@sprite KUC201 1\n@go END\n",
                  "@speaker ベルーネ class 1\n@speaker レッサ class 2\n"
                  "@picture KUS091 mouth ベルーネ 1 Kus091_a 5 5 mouth レッサ 2 Kus091_b 9 5\n"
                  "@picture KUC201 stands ベルーネ 1 mouth レッサ 2 Kuc201_b 9 5\n"),
             engineAnd({"cg/KUC201.mcg", "cg/Kus091_a.mcg"}), problems);
  expect({missingPicture(2, "picture", "KUS091"), missingPicture(2, "mouth", "Kus091_b"),
          missingPicture(3, "mouth", "Kuc201_b")});
}

TEST_F(StoryCheck, APairHasTwoMouths) {
  checkFiles(read("@scene sc000000\n@sprite KUS110 1\n@go END\n",
                  "@speaker ベルーネ class 1\n"
                  "@figure KUS110 of ベルーネ at 0 0 mouth Kus110_a 5 5\n"),
             engineAnd({"cg/KUS110.mcg"}), problems);
  expect({missingPicture(2, "mouth", "Kus110_a"), missingPicture(2, "mouth", "Kus110_b")});
}

TEST_F(StoryCheck, AsksForTheSongsThatCommandsPlayByThemselves) {
  checkFiles(read("@scene sc000000\n@chapter-preview 2 0\n@chapter-preview 5 1\n@chapter-catch 5 "
                  "0\n@go END\n"),
             engineAnd({"midi/K15a.mid"}), problems);
  expect({"a.scene:2: this plays the song K15, and the game has no file midi/K15b.mid.",
          "a.scene:3: this plays the song K16, and the game has no file midi/K16a.mid."});
}

TEST_F(StoryCheck, TellsFiguresOfTheWrongFamily) {
  checkFiles(read("@scene sc000000\n@sprite-kxs KUS011 1\n@sprite-kyc KUS012 1\n@go END\n"),
             engineAnd({}), problems);
  expect(
      {"a.scene:2: @sprite-kxs knows figures of KUS012 and KUS082 alone, and not KUS011; nobody "
       "would appear.",
       "a.scene:3: @sprite-kyc knows figures of KUC alone, and not KUS012; nobody would appear."});
}

TEST_F(StoryCheck, TheEnginesOwnFilesAreAskedForUnlessTheStoryIsBare) {
  GameFiles files = engineAnd({});
  checkFiles(read("@scene sc000000\n@go END\n"), files, problems);
  expect({});
  checkFiles(story, GameFiles(), problems);
  EXPECT_EQ(problems.count(), engineFiles().size());
  Problems ofBare;
  story.bare = true;
  checkFiles(story, GameFiles(), ofBare);
  EXPECT_TRUE(ofBare.empty());
}

/// Literals of the engine that name files of dat\.
Lines filesInEngineSources() {
  Lines found;
  const std::regex literal("\"(dat\\\\\\\\[A-Za-z0-9_]+\\.[A-Za-z]+)\"", std::regex::icase);
  for (const char* folder : {"audio", "graphics", "input", "message", "scenario", "screens"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(QV_SOURCE_DIR) / folder)) {
      if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
      const std::string text = testing::readWhole(entry.path().string());
      for (std::sregex_iterator at(text.begin(), text.end(), literal), end; at != end; ++at)
        found.push_back((*at)[1]);
    }
  }
  return found;
}

TEST(EngineFiles, AreAllThatTheEnginesSourcesName) {
  GameFiles known;
  for (const char* name : engineFiles())
    known.add(nameInGame(name));
  GameFiles named;
  for (std::string name : filesInEngineSources()) {
    name.erase(name.find('\\'), 1);
    named.add(nameInGame(name));
  }
  EXPECT_EQ(named.names(), known.names());
}

TEST(GameFilesOfSources, AreWhatTheBuildMakesOfThem) {
  const testing::TemporaryFolder folder;
  const fs::path& root = folder.path();
  const auto write = [&](const char* name, const char* text) {
    fs::create_directories((root / name).parent_path());
    std::ofstream(root / name) << text;
  };
  write("cg/pictures.txt", "# a list\nKBA014 KBA014.svg - 10-127 -\n\ndat/mframe m.svg - - 0\n");
  write("midi/K03.song", "");
  write("wave/effects.txt", "# sounds\n014 synth 1 sine\n");
  write("voices/V00/0000_001.flac", "");
  write("voices/V00/notes.txt", "");
  const GameFiles files = GameFiles::ofSources(root);
  EXPECT_THAT(files.names(), ::testing::UnorderedElementsAre(
                                 "cg/kba014.mcg", "dat/mframe.mcg", "midi/k03a.mid",
                                 "midi/k03b.mid", "midi/k03c.mid", "midi/k03d.mid", "midi/k03e.mid",
                                 "wave/vlse014.wav", "disc/voice/v00/0000_001.wav"));
}

// --- Layout ---

class LayoutCheck : public StoryCheck {
 protected:
  /// Double-byte characters 18 pixels wide, single bytes 9: 27 of them fill a line of the frame.
  FixedTextDevice device;
  static std::string wide(int count) {
    std::string text;
    for (int at = 0; at < count; ++at)
      text += "あ";
    return text;
  }
};

TEST_F(LayoutCheck, ThreeLinesFillTheFrameAndAFourthIsTold) {
  checkLayout(read("@scene sc000000\n" + wide(81) + "\n\nあ\nい\nう\n@go END\n"), device, problems);
  expect({});
  checkLayout(read("@scene sc000000\n" + wide(82) + "\n\nあ\nい\nう\nえ\n@go END\n"), device,
              problems);
  const std::string what =
      "this message is longer than the frame, and its beginning would scroll away unread; make two "
      "of it.";
  expect({"a.scene:2: " + what, "a.scene:4: " + what});
}

TEST_F(LayoutCheck, MarksOfTheHerosNameAreMeasuredAsHisFirstNames) {
  checkLayout(read("@scene sc000000\n" + wide(78) + "＊＊＊あ\n@go END\n"), device, problems);
  expect({});
  checkLayout(read("@scene sc000000\n" + wide(78) + "＊＊＊あ\n@go END\n",
                   "@hero 三枝 陽一郎\n@speaker ベルーネ\n"),
              device, problems);
  EXPECT_EQ(problems.count(), 1u);
}

TEST_F(LayoutCheck, AChoiceHasTwoLines) {
  const std::string two = wide(50), three = wide(60);
  checkLayout(read("@scene sc000000\n@choose\n" + two + " → END\nB → END\n"), device, problems);
  expect({});
  checkLayout(read("@scene sc000000\n@choose\nA → END\n" + three + " → END\n"), device, problems);
  expect({"a.scene:4: the choice \"" + three + "\" has more than two lines; shorten it."});
}

TEST_F(LayoutCheck, ANameThatWouldBeCutIsTold) {
  const std::string name = wide(30);
  checkLayout(read("@scene sc000000\n@go END\n", "@speaker " + name + "\n"), device, problems);
  expect({"story.txt:1: the name 【　" + name +
          "　】 is wider than the frame's line and would be cut; shorten it."});
}

TEST_F(LayoutCheck, TextsIntoAreasAreMeasuredToo) {
  checkLayout(read("@scene sc000000\n@text message.Area " + wide(82) + "\n@go END\n"), device,
              problems);
  EXPECT_EQ(problems.count(), 1u);
}

}  // namespace
}  // namespace qv::story
