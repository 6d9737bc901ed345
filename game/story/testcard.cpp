// The test card: what a player points at, reads and hears, a page for each. The first page is the
// card itself; its buttons lead to the others, which come back to it.

#include "game/story/testcard.h"

using namespace qv;

QV_SCENE(sc_menu);
QV_SCENE(sc_testcardtext);
QV_SCENE(sc_testcardvoice);
QV_SCENE(sc_testcardmusic);
QV_SCENE(sc_testcardsound);

namespace {

constexpr int32_t TextPage = 1, VoicePage = 2, MusicPage = 3, SoundPage = 4;

constexpr const char* BlinkSurface = "card.blink.cells";
constexpr const char* Blinking = "card.blinking";
constexpr const char* BlinkArea = "card.blink";

/// The story's prompt turns beside the words.
void startBlinking() {
  constexpr int32_t Cells = 8;
  constexpr Rectangle Place = Rectangle::at(312, 392, 16, 24);
  theScenario->CreateObject(BlinkSurface, TypeAnimationSurface,
                            {"dat\\Blink.mcg", Cells, KeyTopLeft});
  theScenario->CreateObject(Blinking, TypeAnimationSequence,
                            {"A5[.]B5[.]C5[.]D5[.]E5[.]F5[.]G5[.]H5[.]", 0});
  theScenario->CreateObject(BlinkArea, TypeAnimationArea, {&Place});
  theScenario->RelateAnimation(BlinkArea, BlinkSurface, Blinking, 1, 0, 0, 1);
  theScenario->ConnectObjects(card::Screen, BlinkArea);
  theScenario->ShowArea(BlinkArea, 1);
}

void stopBlinking() {
  theScenario->DestroyObjects({BlinkArea, BlinkSurface, Blinking});
}

void chooseButton() {
  card::Board board;
  board.add(TextPage, 160, 206, "文字");
  board.add(VoicePage, 328, 206, "声");
  board.add(MusicPage, 160, 254, "音楽");
  board.add(SoundPage, 328, 254, "音と円盤");
  board.addHome(248, 306, "題字へ");
  board.open();
  startBlinking();
  for (int32_t pressed = card::Board::NothingPressed; pressed == card::Board::NothingPressed;)
    if (pressed = board.wait(0); pressed == card::Board::Cancelled)
      Reg(card::ButtonRegister) = card::Board::Home;
  stopBlinking();
}

SceneFunction chosenPage() {
  switch (Reg(card::ButtonRegister)) {
    case TextPage:
      return sc_testcardtext;
    case VoicePage:
      return sc_testcardvoice;
    case MusicPage:
      return sc_testcardmusic;
    case SoundPage:
      return sc_testcardsound;
    default:
      card::putAway();
      return sc_menu;
  }
}

}  // namespace

QV_SCENE(sc_testcard) {
  SetSceneName("sc_testcard");
  SceneEnter();
  for (;; nextStep()) {
    switch (Reg(StepRegister)) {
      case 1: {
        constexpr Rectangle Words{200, 352, 440, 390};
        PlayBgm("FADEOUT", nullptr);
        card::openPage("cg\\KTC001.mcg", nullptr, nullptr);
        card::write(Words, "マウスでも、矢印・Tab と Return でも。\n右クリックか Esc で題字へ。",
                    {.height = 14, .flags = QVPrintArea::FlagCentre});
        chooseButton();
        break;
      }
      case 2:
        return chosenPage();
      default:
        passOver(2);
    }
  }
}
