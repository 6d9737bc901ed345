// What each command of the language becomes: the whole vocabulary of scenes can be said.

#include "scenes/generator/vocabulary.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenes/generator/generator.h"

namespace qv::scenec {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* StoryText =
    "@speaker ベルーネ class 1\n@speaker 影 【　？？　《ベルーネ》】\n@heroine ベルーネ\n@heroine "
    "レッサ\n"
    "@figure KUS012 of ベルーネ at 0 0\n@register 傘 600\n";
constexpr const char* Title = "\n@scene sc_menu\n@go END\n";

/// The C++ of the scenes, a line each without indentation and comments.
Lines codeOf(const std::string& scenes) {
  Problems problems;
  const std::string text = scenes + Title;
  const Story story = readStory({{"story.txt", StoryText}, {"a.scene", text}}, problems);
  EXPECT_EQ(problems.lines(), Lines{}) << scenes;
  if (!problems.empty()) return {};
  const std::string code = writeStory(story, {"story.txt", "a.scene"}, "", 1)[0].text;
  Lines lines;
  for (size_t at = 0; at < code.size();) {
    const size_t end = code.find('\n', at);
    std::string line = code.substr(at, end - at);
    line.erase(0, line.find_first_not_of(' '));
    if (const size_t comment = line.find("  // \""); comment != std::string::npos)
      line.resize(comment);
    lines.push_back(line);
    at = end + 1;
  }
  return lines;
}

struct Sentence {
  const char* said;
  const char* code;
};
void PrintTo(const Sentence& sentence, std::ostream* stream) {
  *stream << sentence.said;
}

const Sentence Sentences[] = {
    {"@bg KBA014", "BgCommand(\"KBA014\");"},
    {"@event KEV001", "EventCommand(\"KEV001\");"},
    {"@title KAI001", "TitleCommand(\"KAI001\");"},
    {"@sprite KUS011 5", "SpriteCommand(\"KUS011\", 5);"},
    {"@sprite-kzc KUC017 1", "SpriteCommandKZC(\"KUC017\", 1);"},
    {"@sprite-kyc KUC017 2", "SpriteCommandKYC(\"KUC017\", 2);"},
    {"@sprite-kxs KUS012 3", "SpriteCommandKXS(\"KUS012\", 3);"},
    {"@clear 4", "ClearSprite(4);"},
    {"@clear all", "ClearSprite(0);"},
    {"@effect 9", "EffectCommand(9, 16, EffectConstant);"},
    {"@effect 200 32", "EffectCommand(200, 32, EffectConstant);"},
    {"@fade", "FadeToBlack(16);"},
    {"@fade 64", "FadeToBlack(64);"},
    {"@fade-fast 8", "FadeScreenFast(8);"},
    {"@draw dat\\QVlogo.mcg 16 9", "DrawFile(\"dat\\\\QVlogo.mcg\", 16, 0, 9);"},
    {"@quake 0 10 4", "QuakeEffect(0, 10, 4, 0);"},
    {"@quake -10 10 4 7", "QuakeEffect(-10, 10, 4, 7);"},
    {"@flash-red 3", "FlashRed(3);"},
    {"@special 32800", "SpecialEffect(32800);"},
    {"@flashback", "FlashbackTint();"},
    {"@flashback-end", "FlashbackEnd();"},
    {"@chapter-preview 1 0", "ChapterPreview(1, 0);"},
    {"@chapter-catch 2 1", "ChapterCatch(2, 1);"},
    {"@chapter-cards 6 1", "ChapterCards(6, 1);"},
    {"@picture-run", "PictureRunFirst();"},
    {"@bgm K03", "PlayBgm(\"K03\", nullptr);"},
    {"@bgm K03 fadein", "PlayBgm(\"K03\", \"FADEIN\");"},
    {"@bgm fadeout", "PlayBgm(\"FADEOUT\", nullptr);"},
    {"@bgm stop", "PlayBgm(nullptr, nullptr);"},
    {"@se SE02", "PlaySe(\"SE02\", 1);"},
    {"@se SE02 loop", "PlaySe(\"SE02\", 0);"},
    {"@se stop", "PlaySe(nullptr, 1);"},
    {"@stop-se", "StopSe();"},
    {"@wait-se 3.5s", "WaitSe(35);"},
    {"@wait-se click", "WaitSe(0);"},
    {"@wave %:\\VOICE\\V00\\0000_001.wav",
     "PlayWave(\"%:\\\\VOICE\\\\V00\\\\0000_001.wav\", 1, 1, nullptr);"},
    {"@wave a.wav CG_AREA01_MOUTH", "PlayWave(\"a.wav\", 1, 1, \"CG_AREA01_MOUTH\");"},
    {"@wait song", "WaitSound(WaitForSong);"},
    {"@wait sound", "WaitSound(WaitForWave);"},
    {"@wait 20", "WaitSound(20);"},
    {"@hide-message", "HideMessageWindow();"},
    {"@hide-system", "HideSystemWindow();"},
    {"@show-system", "ShowSystemWindow();"},
    {"@calendar 6 30", "ShowCalendar(6, 30);"},
    {"@ask-save", "AskSaveBeforeLeaving();"},
    {"@text select01.Mess.Aria A B", "AreaText(standing.select01Mess, \"A B\", 0);"},
    {"@flag 傘", "Reg(600) = 1;"},
    {"@count 200", "++Reg(200);"},
    {"@set 141 -2", "Reg(141) = -2;"},
    {"@setting 150 1", "SetSysReg(150, 1, 1);"},
    {"@affection レッサ -5", "ChangeParameter(\"\\203\\214\\203b\\203T\", -5);"},
    {"@film", "playOpeningFilm(film);"},
    {"@film-start", "film.Restart(0);"},
    {"@film-start demo", "film.Restart(1);"},
    {"@film-cue 1000 20000", "cueFilm(film, 1000, 20000);"},
    {"@film-wait 3000", "film.CueWait(3000);"},
    {"@save-point", "savePoint();"},
    {"@save-offer", "offerSave();"},
    {"@click", "if (const Leaving leaving = afterClick(WaitClick(9999, 0))) return leaving.next;"},
    {"@click 1 1", "if (const Leaving leaving = afterClick(WaitClick(1, 1))) return leaving.next;"},
    {"@click forever 2",
     "if (const Leaving leaving = afterClick(WaitClick(9999, 2))) return leaving.next;"},
    {"@click 2.7s",
     "if (const Leaving leaving = afterClick(WaitClick(27, 0))) return leaving.next;"},
    {"@if 傘 → sc_menu", "if (Reg(600) != 0) {"},
    {"@if not 傘 → sc_menu", "if (!(Reg(600) != 0)) {"},
    {"@if 200 ≧ 3 → sc_menu", "if (Reg(200) >= 3) {"},
    {"@if 傘 and (200 < 3 or 201=4) → sc_menu",
     "if ((Reg(600) != 0 && (Reg(200) < 3 || Reg(201) == 4))) {"},
    {"@if skip → sc_menu", "if (SysReg(SkipMode) != 0) {"},
    {"@if voices → sc_menu", "if (SysReg(VoiceEnabled) != 0) {"},
    {"@if music → sc_menu", "if (SysReg(BgmEnabled) != 0) {"},
    {"@if setting 47 = 1 → sc_menu", "if (SysReg(47) == 1) {"},
    {"@if random → sc_menu", "if (Random(1) != 0) {"},
    {"@if affection レッサ above -3 → sc_menu",
     "if (AffectionAbove(\"\\203\\214\\203b\\203T\", -3) != 0) {"},
    {"@if favourite レッサ is レッサ → sc_menu",
     "if (sameText(CompareAffection(\"\\203\\214\\203b\\203T\", nullptr), "
     "\"\\203\\214\\203b\\203T\")) {"},
    {"@leave title", "return leaveForTitle();"},
    {"@leave game", "return leaveGame();"},
    {"ベルーネ V00\\0000_004: 雨。",
     "SpeakLine(\"\\201y\\201@\\203x\\203\\213\\201[\\203l\\201@\\201z\", \"V00\\\\0000_004\");"},
    {"影：雨。",
     "SpeakLine(\"\\201y\\201@\\201H\\201H\\201@\\201s\\203x\\203\\213\\201[\\203l\\201t\\201z\", "
     "nullptr);"},
    {"雨。", "SpeakLine(\"\\203R\\203\\201\\203\\223\\203g\", nullptr);"},
    {"時刻は10:30だ。", "SpeakLine(\"\\203R\\203\\201\\203\\223\\203g\", nullptr);"},
    {": ベルーネ: 12", "PrintMessage(\"\\203x\\203\\213\\201[\\203l: 12\");"},
    {"say \"yes\" \\n", "PrintMessage(\"say \\\"yes\\\" \\\\n\");"},
};

class Vocabulary : public ::testing::TestWithParam<Sentence> {};

TEST_P(Vocabulary, BecomesItsStatement) {
  const std::string said = GetParam().said;
  const bool leaves = said.rfind("@leave", 0) == 0;
  const Lines code = codeOf("@scene sc000000\n" + said + (leaves ? "\n" : "\n@go END\n"));
  EXPECT_THAT(code, ::testing::Contains(std::string(GetParam().code)));
}

INSTANTIATE_TEST_SUITE_P(Commands, Vocabulary, ::testing::ValuesIn(Sentences));

TEST(VocabularyTable, EveryCommandOfItIsSaidAbove) {
  std::set<std::string> said;
  for (const Sentence& sentence : Sentences) {
    const std::string text = sentence.said;
    if (text[0] == '@') said.insert(text.substr(1, text.find(' ') - 1));
  }
  for (const CommandForm& form : commandForms())
    EXPECT_EQ(said.count(form.name), 1u) << form.name;
}

TEST(SceneCode, ASelectionIsSetUpNamedAndAnswered) {
  EXPECT_THAT(
      codeOf("@scene sc000000\n@choose\nA → sc_menu\nB -> END\n"),
      ::testing::IsSupersetOf({"Select2Setup();", "AreaText(standing.select01Title, \"A\", 0);",
                               "AreaText(standing.select02Title, \"B\", 0);",
                               "return afterSelection(SelectMain(2), sc_menu, END);"}));
  EXPECT_THAT(
      codeOf("@scene sc000000\n@choose\nA → sc_menu\nB → END\nC → sc000000\n"),
      ::testing::IsSupersetOf({"Select3Setup();", "AreaText(standing.select03Title, \"C\", 0);",
                               "return afterSelection(SelectMain(3), sc_menu, END, sc000000);"}));
}

TEST(SceneCode, ARingOfPlacesLeadsToAsManyScenes) {
  EXPECT_THAT(codeOf("@scene sc000000\n@places G\nA → sc_menu\nB → END\n"),
              ::testing::Contains(
                  "return afterPlaces(LocationRing(\"G\", \"A\", \"B\"), {sc_menu, END});"));
}

TEST(SceneCode, LinesOfOneMessageArePiecesOfOneStep) {
  const Lines code = codeOf("@scene sc000000\nA\nB\n\nC\n@go END\n");
  const auto at = [&](const char* line) {
    return std::find(code.begin(), code.end(), std::string(line)) - code.begin();
  };
  EXPECT_LT(at("PrintMessage(\"A\\n\");"), at("PrintMessage(\"B\");"));
  EXPECT_LT(at("PrintMessage(\"B\");"), at("case 2: {"));
  EXPECT_LT(at("case 2: {"), at("PrintMessage(\"C\");"));
  EXPECT_LT(at("PrintMessage(\"C\");"), at("case 3: {"));
  EXPECT_LT(at("case 3: {"), at("return END;"));
  EXPECT_EQ(std::count(code.begin(), code.end(), "case 4: {"), 0);
}

TEST(SceneCode, TheChapterIsTheNameWithoutItsPart) {
  EXPECT_THAT(codeOf("@scene sc050102n_03b\n@go END\n"),
              ::testing::Contains("SetChapter(\"050102n\");"));
  EXPECT_THAT(codeOf("@chain sc010000 without-chapter\n@go END\n"),
              ::testing::Not(::testing::Contains("SetChapter(\"010000\");")));
  EXPECT_THAT(codeOf("@scene sc_bat0001m\n@go END\n"),
              ::testing::Not(::testing::Contains(::testing::HasSubstr("SetChapter"))));
}

TEST(SceneNames, FollowOnePattern) {
  for (const char* good : {"sc000000", "sc050102n", "sc050102ma_03", "sc010203_12b", "sc_menu31",
                           "sc_bat0001m", "sc_DBG_Launcher"})
    EXPECT_TRUE(isSceneName(good)) << good;
  for (const char* bad : {"", "sc", "sc00000", "sc0000000", "sc000000x", "sc000000_", "sc000000_b",
                          "sc_", "sc_1", "sc_a-b", "xx000000", "END", "sc_\xE3\x81\x82"})
    EXPECT_FALSE(isSceneName(bad)) << bad;
}

}  // namespace
}  // namespace qv::scenec
