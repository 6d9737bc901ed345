#include "scenario/start/standing_objects.h"

#include <string>

#include "graphics/scene/picture_drawing.h"
#include "message/area_forms.h"
#include "message/frame_buttons.h"
#include "message/pendant.h"
#include "message/standing_names.h"
#include "message/text_areas.h"
#include "platform/text/shift_jis.h"
#include "scenario/handles.h"
#include "scenario/picture_names.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char* FaceSurface = "mess.surf";
constexpr int32_t Visible = 0, Hidden = WindowHidden;
constexpr int32_t HoverOn = 1;
constexpr int32_t ScreenW = 640, ScreenH = 480;

// --- Rows of the graph ---

struct ViewForm {
  const char *name, *parent;
  int32_t x, y, width, height, flags;
};

void create(const ViewForm& form) {
  theScenario->CreateView(form.name, form.parent, form.x, form.y, form.width, form.height,
                          form.flags);
}

void createSurface(const char* name, int32_t width, int32_t height) {
  theScenario->CreateObject(name, TypeSurface, {width, height});
}

void loadSurface(const char* name, const char* file) {
  theScenario->CreateObject(name, TypeSurface, {file});
}

QVPrintArea* create(const AreaForm& form) {
  theScenario->CreateObject(form.name, TypePrintArea);
  QVPrintArea* area = areaNamed(form.name);
  if (area) shapeArea(*area, form);
  return area;
}

/// An area of a line stands on the face.
void createLineArea(const AreaForm& form) {
  create(form);
  theScenario->ConnectObjects(form.name, FaceSurface);
}

// --- The parts, in the order of the graph ---

void createScreen() {
  create({PictureView, nullptr, 0, 0, ScreenW, ScreenH, Visible});
  createSurface(PictureSurface, ScreenW, ScreenH);
}

void createFrame() {
  create({NormalView, nullptr, 0, NormalTop, StripWidth, NormalHeight, Hidden});
  create({DramaView, nullptr, 0, DramaTop, StripWidth, DramaHeight, Hidden});
  createSurface(FaceSurface, StripWidth, NormalHeight);
  loadSurface("mfrmR.surf", "dat\\mframeR.mcg");
  loadSurface("mfrm.surf", "dat\\mframe.mcg");
  loadSurface("dfrm.surf", "dat\\MDButton.mcg");
  createSurface("messTemp.surf", StripWidth, NormalHeight);
  theScenario->SetClipShape(NormalView, "mfrmR.surf", KeyTopLeft);
}

void createBlink() {
  constexpr int32_t Cells = 8, CellWidth = 16, CellHeight = 24;
  const ViewHandle frame(NormalView);
  const Rectangle place = Rectangle::at(frame.width() / 2 - CellWidth / 2,
                                        frame.height() - CellHeight, CellWidth, CellHeight);
  theScenario->CreateObject("Blink.Area", TypeAnimationArea, {&place});
  theScenario->CreateObject("Blink.Surf", TypeAnimationSurface,
                            {"DAT\\Blink.mcg", Cells, KeyTopLeft});
  theScenario->CreateObject("Blink.Sequ", TypeAnimationSequence, {"A..B..C..D..E..F..G..H..", 0});
  theScenario->RelateAnimation("Blink.Area", "Blink.Surf", "Blink.Sequ", 1, 0, 0, 1);
}

void createLineAndButtons() {
  createLineArea(NameAreaForm);
  createFrameButtons();
  createLineArea(MessageAreaForm);
}

void createScreenMap() {
  theScenario->CreateClickMap(WholeScreenMap, ScreenW, ScreenH, 0, HoverOn);
  theScenario->AddClickRect(WholeScreenMap, 0, 0, ScreenW, ScreenH, AdvanceRegion);
  theScenario->ConnectObjects(WholeScreenMap, PictureView);
}

void createLineMaps() {
  theScenario->LoadClickMap("clmmess", "dat\\mcframe.mcg", HoverOn);
  theScenario->MoveWindow("clmmess", 0, 0);
  theScenario->ConnectObjects("clmmess", NormalView);
  theScenario->ConnectObjects(WholeScreenMap, "clmmess");
  theScenario->CreateClickMap("clmdrama", StripWidth, DramaHeight, 0, HoverOn);
  theScenario->AddClickRect("clmdrama", 0, 0, StripWidth, DramaHeight, AdvanceRegion);
  theScenario->MoveWindow("clmdrama", 0, 0);
  theScenario->ConnectObjects("clmdrama", DramaView);
  theScenario->ConnectObjects(WholeScreenMap, "clmdrama");
}

/// A choice's map; its plate's view is connected when a selection opens.
void createChoiceMap(const char* name, int32_t height, int32_t region) {
  constexpr int32_t PlateWidth = 565;
  theScenario->CreateClickMap(name, PlateWidth, height, 0, HoverOn);
  theScenario->AddClickRect(name, 0, 0, PlateWidth, height, region);
}

void createSelections() {
  loadSurface("sel01.surf", "dat\\select01.mcg");
  loadSurface("sel02.surf", "dat\\select02.mcg");
  loadSurface("sel03.surf", "dat\\select03.mcg");
  loadSurface("sel01R.surf", "dat\\select1R.mcg");
  loadSurface("sel02R.surf", "dat\\select2R.mcg");
  loadSurface("sel03R.surf", "dat\\select3R.mcg");
  create({"select01.view", PictureView, 40, 55, 565, 122, Hidden});
  create({"select21.view", PictureView, 40, 111, 565, 122, Hidden});
  create(TitleAreaForms[0]);
  createChoiceMap(SelectionMap, 122, 1);
  // The picture's own regions, for the small buttons of the first plate.
  theScenario->LoadClickMap("clmsel01a", "dat\\mcsel.mcg", HoverOn);
  theScenario->MoveWindow("clmsel01a", 0, 0);
  theScenario->StampClickMap(SelectionMap, "clmsel01a", 514, 0, KeyTopLeft);
  theScenario->SetClipShape("select01.view", "sel01R.surf", KeyTopLeft);
  theScenario->SetClipShape("select21.view", "sel01R.surf", KeyTopLeft);
  create({"select02.view", PictureView, 40, 177, 565, 111, Hidden});
  create({"select22.view", PictureView, 40, 233, 565, 111, Hidden});
  create(TitleAreaForms[1]);
  createChoiceMap("clmsel02", 111, 2);
  theScenario->SetClipShape("select02.view", "sel02R.surf", KeyTopLeft);
  theScenario->SetClipShape("select22.view", "sel03R.surf", KeyTopLeft);
  create({"select03.view", PictureView, 40, 288, 565, 111, Hidden});
  create(TitleAreaForms[2]);
  createChoiceMap("clmsel03", 111, 3);
  theScenario->SetClipShape("select03.view", "sel03R.surf", KeyTopLeft);
  theScenario->ConnectObjects(SelectionMap, "clmsel02");
  theScenario->ConnectObjects(SelectionMap, "clmsel03");
  // The second shape is the one that counts.
  theScenario->SetClipShape("select03.view", "sel02R.surf", KeyTopLeft);
}

/// Labels of the buttons, which nothing in the game shows.
void createLabels() {
  constexpr uint8_t WhiteIndex = 255;
  struct Label {
    ViewForm view;
    const char *area, *text;
    const FontForm& font;
  };
  const Label labels[] = {
      {{"comm01.view", nullptr, 542, 382, 96, 12, Hidden},
       "com01.Title.Aria",
       "Quicksave Button",
       GothicLabelFont},
      {{"comm02.view", nullptr, 542, 414, 96, 12, Hidden},
       "com02.Title.Aria",
       "Quickload Button",
       MinchoLabelFont},
      {{"comm03.view", nullptr, 544, 454, 92, 12, Hidden},
       "com03.Title.Aria",
       "Textskip Button",
       MinchoLabelFont},
  };
  for (const Label& label : labels) {
    create(label.view);
    theScenario->CopyPalette(label.view.name, "mfrm.surf");
    theScenario->FillObject(label.view.name, WhiteIndex);
    const AreaForm form{label.area, 0, 0,   label.view.width, label.view.height, 2, 1, 0, 12, 768,
                        label.font, 0, true};
    QVPrintArea* area = create(form);
    theScenario->ConnectObjects(label.view.name, label.area);
    if (area) area->printText(label.text);
  }
}

void createPendant() {
  loadSurface("sysCut.surf", "dat\\SysCut.mcg");
  loadSurface("sysCut1.surf", "dat\\SysCut2.mcg");
  loadSurface("sysCutPn.surf", "dat\\stone1.mcg");
  loadSurface("sysCutP2.surf", "dat\\stone2.mcg");
  const Rectangle place = Rectangle::at(0, 0, 62, 122);
  const FrameHandle window(PendantWindow, nullptr, place, nullptr, WindowHidden);
  theScenario->SetClipShape(PendantWindow, "sysCut.surf", KeyTopLeft);
  theScenario->CreateClickMapOver(PendantMap, "system.cut.winClient", PendantRegion, HoverOn);
  theScenario->ConnectObjects(PendantMap, PendantWindow);
  theScenario->ConnectObjects(WholeScreenMap, PendantMap);
  theScenario->DrawTo(PendantWindow, "dat\\syscut.mcg", 0, 0, 0, 0, 0, 0);
}

}  // namespace

void createBareScreen() {
  createScreen();
  createScreenMap();
}

void createStandingObjects() {
  createScreen();
  createFrame();
  createBlink();
  createLineAndButtons();
  createScreenMap();
  createLineMaps();
  createSelections();
  createLabels();
  createPendant();
}

void createHelpWindow() {
  constexpr uint8_t WhiteIndex = 255;
  constexpr int32_t Colours = 256;
  const Rectangle place = Rectangle::at(4, 4, 320, 376);
  const FrameHandle window("HelpWindow", nullptr, place, "Vorlane Help",
                           WindowHidden | WindowFramed);
  const ViewHandle& client = window.client();
  scobjPalette colours;
  colours.create(Colours);
  client.setColours(colours.table(), 0, 0, Colours, Flush::No);
  client.fill(WhiteIndex, nullptr, Flush::No);
  QVPrintArea* area = create(HelpAreaForm);
  theScenario->ConnectObjects("HelpAria", "HelpWindowClient");
  if (!area) return;
  static constexpr const char* Lines[] = {
      "◎マウスの操作\n",
      "　左クリック　　決定\n",
      "　　　　　　　　メッセージ送り\n",
      "　右クリック　　メッセージウィンドウのＯＦＦ\n",
      "　　　　　　　　キャンセル\n\n",
      "◎キーボードの操作\n",
      "　リターンキー　決定\n",
      "　　　　　　　　メッセージ送り\n",
      "　スペースキー　リターンキーと同じ\n",
      "　ＥＳＣキー　　メッセージウィンドウのＯＦＦ\n",
      "　　　　　　　　キャンセル\n\n",
      "◎キーボードショートカット\n",
      "　Ｆ１　　　　　ヘルプ\n",
      "　Ｆ２　　　　　クイックセーブ\n",
      "　Ｆ３　　　　　クイックロード\n",
      "　Ｆ４　　　　　メッセージスキップ Ｏｎ/Ｏｆｆ\n",
      "　Ｆ５　　　　　コンフィグ画面の呼び出し\n",
      "　Ｆ６　　　　　ドラマチックモードＯｎ/Ｏｆｆ\n",
      "　Ｆ７　　　　　ヒストリー機能Ｏｎ/Ｏｆｆ\n\n",
      "◎コンフィグ画面の呼び出し\n",
      "　　ペンダントをクリック（光る時のみ反応します）\n",
      "　メッセージスキップ中にクリックまたは各種キーを\n",
      "　押すとメッセージスキップが解除されます。\n",
      "8/19 1:00\n",
  };
  for (const char* line : Lines)
    area->printText(sjis(line).c_str());
}

void createMouthSequences() {
  // All five move alike.
  static constexpr const char* Motion =
      "A5[.]C5[.]B5[.]A5[.]B5[.]C5[.]B5[.]A5[.]C5[.]B5[.]C5[.]A5[.]C5[.]A5[.]B5[.]C5[.]B5[.]A5[.]"
      "B5[.]A5[.]B5[.]A5[.]C5[.]A5[.]C5[.]B5[.]C5[.]A5[.]B5[.]A5[.]C5[.]A5[.]C5[.]B5[.]C5[.]B5[.]";
  for (const char* name : {"CG_SEQU01_MOUTH", "CG_SEQU02_MOUTH", "CG_SEQU03_MOUTH",
                           "CG_SEQU04_MOUTH", "CG_SEQU05_MOUTH"})
    theScenario->CreateObject(name, TypeAnimationSequence, {Motion, 0});
}

}  // namespace qv
