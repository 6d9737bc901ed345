// A story of full size against the measure of a real one, and what a made story takes of its
// sample.

#include "tools/story/story_maker.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenes/generator/generator.h"
#include "scenes/generator/writer.h"
#include "tools/story/made_files.h"

namespace qv::story {
namespace {

constexpr uint64_t Seed = 3;

/// The texts of the story's tree, without the title, the endings and the way to them.
scenec::Story treeOf(const std::vector<MadeFile>& made) {
  std::vector<scenec::TextFile> texts;
  for (const MadeFile& file : made)
    if (file.name.starts_with("story/"))
      texts.push_back({file.name.substr(std::string("story/").size()), file.bytes});
  std::partition(texts.begin(), texts.end(),
                 [](const scenec::TextFile& file) { return file.name == "story.txt"; });
  scenec::Problems problems;
  scenec::Story story = scenec::readStory(texts, problems);
  EXPECT_EQ(problems.lines(), std::vector<std::string>{});
  std::erase_if(story.scenes,
                [](const scenec::Scene& scene) { return scene.name.starts_with("sc_"); });
  return story;
}

bool isWordByte(char byte) {
  return byte == '_' || (static_cast<unsigned char>(byte) < 0x80 && std::isalnum(byte) != 0);
}

/// The scenes as C++, in which the uses of the commands are counted.
class SceneCode {
 public:
  explicit SceneCode(const scenec::Story& story) {
    for (const scenec::SourceFile& unit : scenec::writeStory(story, texts(story), {}, 1))
      code_ += unit.text;
  }

  int uses(const std::string& words) const {
    int found = 0;
    for (size_t at = 0; (at = code_.find(words, at)) != std::string::npos; at += words.size())
      if (at == 0 || !isWordByte(code_[at - 1])) ++found;
    return found;
  }

 private:
  static std::vector<std::string> texts(const scenec::Story& story) {
    int last = 0;
    for (const scenec::Scene& scene : story.scenes)
      last = std::max(last, scene.place.file);
    return std::vector<std::string>(static_cast<size_t>(last) + 1, "x.scene");
  }
  std::string code_;
};

class FullSizeStory : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    StorySource sample;
    ASSERT_TRUE(readStorySource(QV_SOURCE_DIR "/game", sample));
    const GameFiles files = GameFiles::ofSources(QV_SOURCE_DIR "/game");
    code = new SceneCode(story = treeOf(makeStory(sample, files, FullSize, Seed)));
  }
  static void TearDownTestSuite() {
    delete code;
    code = nullptr;
    story = {};
  }
  static inline scenec::Story story;
  static inline SceneCode* code = nullptr;
};

struct Weight {
  const char* words;  ///< as the scenes' C++ says it
  int uses;
};

TEST_F(FullSizeStory, HasEveryCommandAsOftenAsARealOne) {
  constexpr Weight Weights[] = {
      {"PrintMessage(", 20744},
      {"WaitClick(", 17255},
      {"SpeakLine(", 17228},
      {"EffectCommand(", 2267},
      {"BgCommand(", 1172},
      {"SpriteCommand(", 938},
      {"SetChapter(", 923},
      {"SceneEnter(", 868},
      {"AreaText(", 774},
      {"PlayBgm(", 754},
      {"PlaySe(", 439},
      {"WaitSe(", 384},
      {"ClearSprite(", 293},
      {"EventCommand(", 277},
      {"SelectMain(", 139},
      {"SpriteCommandKZC(", 131},
      {"ChangeParameter(", 118},
      {"StopSe(", 117},
      {"Select3Setup(", 109},
      {"QuakeEffect(", 56},
      {"savePoint(", 39},
      {"TitleCommand(", 37},
      {"ShowCalendar(", 37},
      {"Select2Setup(", 30},
      {"SpriteCommandKYC(", 26},
      {"FlashRed(", 17},
      {"FadeScreenFast(", 16},
      {"ChapterCards(", 10},
      {"ChapterCatch(", 8},
      {"ChapterPreview(", 8},
      {"offerSave(", 8},
      {"SpecialEffect(", 8},
      {"SpriteCommandKXS(", 8},
      {"FlashbackTint(", 8},
      {"FlashbackEnd(", 8},
      {"HideMessageWindow(", 7},
      {"LocationRing(", 7},
      {"SysReg(SkipMode)", 7},
      {"SysReg(VoiceEnabled)", 7},
      {"SysReg(BgmEnabled)", 7},
      {"CompareAffection(", 6},
      {"WaitSound(", 6},
      {"SysReg(150)", 5},
      {"PlayWave(", 4},
      {"DrawFile(", 3},
      {"HideSystemWindow(", 3},
      {"AffectionAbove(", 3},
      {"Random(1)", 3},
      {"PictureRunFirst(", 3},
      {"ShowSystemWindow(", 2},
      {"Restart(", 2},
      {"playOpeningFilm(", 1},
      {"cueFilm(", 1},
      {"CueWait(", 1},
      {"SetSysReg(150, 1, 1)", 1},
      {"SetSysReg(", 1},
      // By their arguments.
      {"FadeToBlack(32)", 6},
      {"FadeToBlack(64)", 2},
      {"WaitClick(1, 1)", 34},
      {"WaitClick(9999, 2)", 32},
      {"WaitClick(10, 0)", 6},
      {"WaitClick(1, 0)", 5},
      {"WaitClick(30, 3)", 3},
      {"WaitClick(27, 0)", 1},
      {"WaitClick(30, 0)", 1},
      {"WaitClick(35, 0)", 1},
      {"SysReg(", 7 + 7 + 7 + 5},
  };
  EXPECT_EQ(story.scenes.size(), 931u);
  for (const Weight& weight : Weights)
    EXPECT_EQ(code->uses(weight.words), weight.uses) << weight.words;
}

// A scene's form holds them as functions: two questions and a fade behind every wait, one of each
// behind every choice and every ring; handles of eight areas and a view in every scene with steps.
TEST_F(FullSizeStory, HasTheWeightOfWhatTheFormOfScenesSays) {
  const int waits = code->uses("WaitClick("),
            choices = code->uses("SelectMain(") + code->uses("LocationRing(");
  EXPECT_EQ(2 * waits + choices, 34656);
  EXPECT_EQ(waits + choices + code->uses("FadeToBlack("), 18031);
  EXPECT_EQ(code->uses("StandingHandles standing"), 868);
}

// --- What it takes of a sample ---

/// Of a sample with these rows and files, and so many stills that hardly one has to be made.
MadeStock stockOf(const std::string& rows, const std::vector<std::string>& names) {
  StorySource sample;
  sample.story = scenec::readStory({{"story.txt", rows}, {"a.scene", "@scene sc_menu\n@go END\n"}},
                                   sample.problems);
  EXPECT_TRUE(sample.problems.empty());
  GameFiles files;
  for (const char* name : {"102", "103", "601", "602", "603", "605", "606", "610", "620", "901",
                           "906", "907", "60219"})
    files.add(std::string("cg/KEV") + name + ".mcg");
  files.add("cg/KTI001.mcg");
  for (const std::string& name : names)
    files.add(name);
  std::vector<MadeFile> made;
  return stockOf(sample, files, made);
}

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

TEST(MadeStock, HasFiguresWhosePictureIsTheirSisters) {
  const std::string rows =
      "@speaker ベルーネ class 1\n@figure KUS013 of ベルーネ at 0 0\n"
      "@figure KUS015 of ベルーネ at 0 0 mouth Kds015_a 5 5\n"
      "@figure KUS060 of ベルーネ at 0 0\n";
  const MadeStock stock = stockOf(rows, {"cg/KDS013.mcg", "cg/KDS015.mcg", "cg/KDS060.mcg"});
  EXPECT_THAT(stock.figures, ElementsAre("KUS013"));
}

TEST(MadeStock, HasNoEventWhoseMouthTheSampleLacks) {
  const std::string rows =
      "@speaker ベルーネ class 1\n@picture KEV101 mouth ベルーネ 1 KEV101_a 5 5\n";
  EXPECT_THAT(stockOf(rows, {"cg/KEV101.mcg"}).events, Not(Contains("KEV101")));
  EXPECT_THAT(stockOf(rows, {"cg/KEV101.mcg", "cg/KEV101_a.mcg"}).events, Contains("KEV101"));
}

TEST(MadeStock, MakesNoEventThatARowOfTheSampleGivesAMouth) {
  // Without files of its own it makes twelve, from the table's first on.
  const std::string rows =
      "@speaker ベルーネ class 1\n@picture KEV104 mouth ベルーネ 1 KEV104_a 5 5\n";
  StorySource sample;
  sample.story = scenec::readStory({{"story.txt", rows}}, sample.problems);
  std::vector<MadeFile> made;
  const MadeStock stock = stockOf(sample, {}, made);
  EXPECT_THAT(stock.events, ::testing::AllOf(Contains("KEV105"), Not(Contains("KEV104"))));
}

TEST(MadeStock, HasAPreviewOnlyWithItsSong) {
  EXPECT_FALSE(stockOf("", {"midi/K15a.mid"}).previewSong);
  EXPECT_TRUE(stockOf("", {"midi/K15a.mid", "midi/K15b.mid", "midi/K15c.mid", "midi/K15d.mid",
                           "midi/K15e.mid"})
                  .previewSong);
}

}  // namespace
}  // namespace qv::story
