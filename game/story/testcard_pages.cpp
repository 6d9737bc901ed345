// The pages of the test card that are read and listened to.

#include <string>

#include "game/story/testcard.h"
#include "platform/text/shift_jis.h"

using namespace qv;

QV_SCENE(sc_testcard);

namespace {

constexpr const char* PagePicture = "cg\\KTC002.mcg";
constexpr const char* TurnHint = "クリック、Return、Space で先へ";

// --- Text ---

/// Every face with its outline and with its shade; full and half width, signs of the story's font.
void everyFace() {
  constexpr const char* Faces[] = {"ＭＳ 明朝", "ＭＳ Ｐ明朝", "ＭＳ ゴシック", "ＭＳ Ｐゴシック"};
  constexpr int32_t LineHeight = 36, FaceHeight = 80;
  int32_t top = card::Sheet.top + 2;
  for (const char* face : Faces) {
    const std::string outlined = std::string(face) + "：傘ひとつ、雨ふたつ。ｶｻ Aa1\uE000\uE003";
    const std::string shaded = "全角ＡＢＣと half width、「ヴォーレーン」\uE006";
    const Rectangle line = {card::Sheet.left + 8, top, card::Sheet.right, top + LineHeight};
    card::write(line, outlined,
                {.height = 24,
                 .face = face,
                 .colour = card::Sky,
                 .outline = card::Navy,
                 .flags = QVPrintArea::FlagOutline});
    card::writeShaded(line.moved(0, LineHeight), shaded, {.height = 22, .face = face});
    top += FaceHeight;
  }
}

constexpr const char* LongText =
    "この頁の行は、右の端で折り返します。けれども「、」や「。」、「」」、「！」、「ー」、「っ」、「"
    "ょ」"
    "は、行のはじめには立ちません。そういう字が次の行へ送られるときは、前の一字がいっしょに降りて、"
    "先に立ちます。\n"
    "半角の half-width text "
    "は一字の半分の幅で、ｶﾀｶﾅもおなじです。外字\uE000\uE001\uE003\uE004\uE007は、"
    "この物語だけの字。\n"
    "行は左の端から一字ぶん下がってはじまり、頁がいっぱいになると、印がまわって、あなたを待ちます。"
    "クリックすれば、次の頁です。\n"
    "　六月の雨は、降るというより、浮いている。坂の上の校門まで、傘の数をかぞえて歩いた。水色がひと"
    "つ、"
    "紺がふたつ、透明なのがみっつ。「傘、持っていないの？」と、水色の傘が言った。正しくは、その下に"
    "いた"
    "ひとが言ったのだけれど、そのときは、傘がしゃべったのだと思った。\n"
    "「半分、貸してあげる。そのかわり、夏休みの補習、最後までつきあってよね」\n"
    "「……補習って、まだ六月だけど」\n"
    "「わたしの予言は、よく当たるの」\n"
    "傘の下では、雨の音が遠い。遠いのに、話し声より近い。半分しかない傘の下で、肩の半分ずつが濡れて"
    "、"
    "それでも、ちょうどいいと思った。図書室の窓に、だれかの眼鏡がひかった。レッサは本の陰から、水色"
    "の傘"
    "がひとつ、坂をのぼってくるのを見ていた。そして、しおりのかわりに、その朝をはさんだ\uE016\n"
    "これで、文字の頁はおわりです。";

void longText() {
  constexpr int32_t Indent = 18, Right = 10, TextHeight = 18, LineHeight = 26;
  const AreaHandle area("card.page");
  area.setFont(TextHeight, 400, 0, TextFont::VariablePitch, TextFont::ShiftJisCharset,
               sjis("ＭＳ 明朝").c_str());
  area.setLineHeight(LineHeight);
  area.setIndent(Indent, 0);
  area.setIndent(Right, 1);
  area.setNoLineStart(
      sjis("。」・）]｝‥！？、ー　ぁぃぅぇぉっゃゅょァィゥェォャュョッ\uE000\uE001\uE003\uE016")
          .c_str());
  area.home();
  area.printText(sjis(LongText).c_str(), nullptr, nullptr, nullptr, true);
}

}  // namespace

QV_SCENE(sc_testcardtext) {
  SetSceneName("sc_testcardtext");
  SceneEnter();
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1:
        card::openPage(PagePicture, "文字：四つの書体、縁と影", TurnHint);
        card::keepSheet();
        everyFace();
        card::waitForPlayer();
        break;
      case 2:
        card::openPage(PagePicture, "文字：行と頁", TurnHint);
        card::keepSheet();
        longText();
        break;
      case 3:
        return sc_testcard;
      default:
        passOver(3);
    }
  }
}

// --- Voices ---

namespace {

struct Speaker {
  const char *sprite, *mouth;
  Rectangle mouthOnSprite;  ///< where the strip's cells lie
  int32_t x;
  Rectangle words;
};

/// A figure stands behind the sheet's lower edge.
constexpr int32_t SpriteTop = 60, SpriteWidth = 300, SpriteHeight = 370;
constexpr Speaker Belune{"cg\\KDS012.mcg",
                         "cg\\Kds012_a.mcg",
                         Rectangle::at(136, 125, 32, 24),
                         24,
                         {316, 120, 588, 400}};
constexpr Speaker Lessa{"cg\\KDS022.mcg",
                        "cg\\Kds022_a.mcg",
                        Rectangle::at(132, 139, 32, 24),
                        296,
                        {52, 120, 326, 400}};

constexpr const char* MouthCells = "card.mouth.cells";
constexpr const char* Speech = "card.speech";
constexpr const char* Mouth = "card.mouth";
constexpr const char* Line = "card.line";

void standUp(const Speaker& speaker) {
  constexpr int32_t Cells = 3;
  card::takeColours(speaker.sprite);
  card::takeColours(speaker.mouth);
  theScenario->DrawTo(card::Screen, speaker.sprite, speaker.x, SpriteTop, SpriteWidth, SpriteHeight,
                      0, 0, 1, KeyTopLeft);
  const Rectangle place = speaker.mouthOnSprite.moved(speaker.x, SpriteTop);
  theScenario->DestroyObjects({Mouth, MouthCells});
  theScenario->CreateObject(MouthCells, TypeAnimationSurface, {speaker.mouth, Cells, KeyTopLeft});
  theScenario->CreateObject(Speech, TypeAnimationSequence,
                            {"A3[.]B3[.]C5[.]B3[.]A5[.]C4[.]B2[.]", 0});
  theScenario->CreateObject(Mouth, TypeAnimationArea, {&place});
  theScenario->RelateAnimation(Mouth, MouthCells, Speech, 1, 0, 0, 1);
  theScenario->ConnectObjects(card::Screen, Mouth);
}

/// The line with its voice and its mouth. Where nobody is waited for, the voice's end leads on.
void say(const Speaker& speaker, const char* voice, const char* words, bool waitForPlayer) {
  const AreaHandle area(Line);
  area.setView(ViewHandle(card::Screen));
  area.setRect(speaker.words.left, speaker.words.top, speaker.words.width(),
               speaker.words.height());
  area.setFlags(QVPrintArea::FlagOutline);
  area.setFont(22, 500, 0, TextFont::VariablePitch, TextFont::ShiftJisCharset,
               sjis("ＭＳ Ｐ明朝").c_str());
  area.setLineHeight(30);
  area.setColour(card::Navy, 0);
  area.setColour(card::White, 1);
  area.setNoLineStart(sjis("。」、！？").c_str());
  theScenario->ConnectObjects(Line, "card.hitret");
  area.saveBackground();
  area.home();
  const std::string file = std::string("%:\\VOICE\\") + voice + ".wav";
  auto* mouth = static_cast<QVAnimationArea*>(theScenario->FindNative(Mouth, TypeAnimationArea));
  area.printText(sjis(words).c_str(), nullptr, file.c_str(), mouth, waitForPlayer);
  if (waitForPlayer) return;
  WaitVoiceThenPause();
  area.clear();
}

void leaveVoices() {
  theScenario->DestroyObjects({Mouth, MouthCells, Speech, Line});
}

}  // namespace

QV_SCENE(sc_testcardvoice) {
  SetSceneName("sc_testcardvoice");
  SceneEnter();
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1:
        card::openPage(PagePicture, "声：ベルーネ",
                       "口は声とともに止まります。クリックか Return で先へ");
        card::keepSheet();
        standUp(Belune);
        say(Belune, "V00\\0000_002",
            "「半分、貸してあげる。そのかわり、夏休みの補習、最後までつきあってよね」", true);
        break;
      case 2:
        card::openPage(PagePicture, "声：レッサ", "声が終わると、ひとりでに先へ");
        card::keepSheet();
        standUp(Lessa);
        say(Lessa, "V01\\0000_031", "「なくしたんじゃありません。隠れたんです」", false);
        break;
      case 3:
        leaveVoices();
        return sc_testcard;
      default:
        passOver(3);
    }
  }
}
