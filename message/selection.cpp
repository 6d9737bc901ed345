// Select2Setup, Select3Setup and SelectMain: two or three plates over the picture, one for each
// choice. The pointer's hover decides which is taken; keys move the pointer.

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "graphics/scene/picture_drawing.h"
#include "input/click_map.h"
#include "input/system_button.h"
#include "message/commands.h"
#include "message/frame_buttons.h"
#include "message/message_strip.h"
#include "message/message_window.h"
#include "message/pendant.h"
#include "message/resume_flag.h"
#include "message/selection_plates.h"
#include "message/skip_poll.h"
#include "message/standing_names.h"
#include "message/system_screens.h"
#include "message/text_areas.h"
#include "message/wait_codes.h"
#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t TitleFromSelection = -5;
constexpr std::array Endings{1, 2, 3, WaitLoaded, WaitToTitle, WaitToEnd};

constexpr int32_t NoLimit = 0;
constexpr uint32_t MapTickMillis = 50, LineTickMillis = 20;

// Where the keys put the pointer, in the picture's view.
constexpr int32_t PointerX = 50, RowStep = 110, FirstRowOfThree = 146, FirstRowOfTwo = 202;

struct ButtonPlace {
  int32_t x, y;
  const char* file;
};
constexpr ButtonPlace SaveButton{514, 12, "dat\\SButton1.mcg"},
    LoadButton{514, 43, "dat\\SButton2.mcg"};

class Selection {
 public:
  explicit Selection(int32_t count)
      : plates_(platesFor(count)),
        told_(count),
        count_(static_cast<int32_t>(plates_.size())),
        firstRow_(count == TwoChoices ? FirstRowOfTwo : FirstRowOfThree),
        save_(exitEvent()),
        load_(exitEvent()) {}
  int32_t run();

 private:
  static Event* exitEvent() {
    ScenarioHost* host = theScenario->host();
    return host ? &host->abortEvent.handle() : nullptr;
  }
  void setUp();
  void end();
  void neutral();
  void dispatch(int32_t code);

  void toggle();
  void bringBack();
  void bringPlatesBack();
  void clickBeside();
  void take();
  void quickSave();
  void quickLoad();
  void configure();
  void toggleSkip();
  void toggleDrama();
  void showHistory();
  void moveDown();
  void moveUp();
  void moveTo(int32_t choice);
  void hover(int32_t choice);

  std::span<const PlateForm> plates_;
  const int32_t told_;  ///< what the scene said; only two is told apart
  const int32_t count_, firstRow_;
  PlateColours colours_;
  SystemButton save_, load_;
  int32_t result_ = 0;
  int32_t choice_ = 0;     ///< the plate under the last hover; 0: none
  int32_t lastHover_ = 0;  ///< hover code of the plate that is marked
};

void Selection::setUp() {
  lightPendant(false);
  HideMessageWindow();
  Reg(WaitKindRegister) = count_;
  markPlate(plates_, colours_, 0);
  showPlates(plates_, true);
  theScenario->DisconnectObjects(WholeScreenMap, PendantMap);
  theScenario->ConnectObjects(SelectionMap, PendantMap);
  neutral();
  View* first = viewNamed(plates_.front().view);
  for (const auto& [button, place] : {std::pair{&save_, &SaveButton}, {&load_, &LoadButton}})
    button->place(first, place->x, place->y, place->file, KeyTopLeft, 1, 0, 0);
  if (SysReg(SkipMode) != 0) {
    RestoreFrameCorner();
    SysReg(SkipMode) = 0;
    Reg(PendingCodeRegister) = 0;
  }
  MessageWindowHiddenFlag = 0;
  Reg(SelectionBookkeepingRegister) = told_;
  theScenario->SetClickTick(SelectionMap, MapTickMillis);
  theScenario->RequestHover(SelectionMap, WithoutNudge);
}

/// The rest of the screen answers as no region from now on.
void Selection::neutral() {
  theScenario->AddClickRect(WholeScreenMap, 0, 0, ScreenWidth, ScreenHeight, NeutralRegion);
  theScenario->ConnectObjects(SelectionMap, WholeScreenMap);
  theScenario->RequestHover(SelectionMap, WithoutNudge);
}

int32_t Selection::run() {
  setUp();
  while (!isOneOf(Endings, result_) && theScenario->host()) {
    const int32_t code = theScenario->ClickWait(SelectionMap, NoLimit, WithKeys);
    restWithoutMap(SelectionMap, MapTickMillis);
    if (Reg(SavedStateRegister) != 0 && DataLoadedFlag != 0) {
      theScenario->RequestHover(SelectionMap, WithoutNudge);
      DataLoadedFlag = 0;
    }
    followPendant(code, SelectionMap);
    result_ = 0;
    dispatch(code);
  }
  end();
  return result_;
}

void Selection::end() {
  showPlates(plates_, false);
  if (result_ == WaitToTitle) result_ = TitleFromSelection;
  Reg(SavedStateRegister) = 0;
  MessageWindowHiddenFlag = 0;
  theScenario->DisconnectObjects(SelectionMap, WholeScreenMap);
  theScenario->DisconnectObjects(SelectionMap, PendantMap);
  theScenario->AddClickRect(WholeScreenMap, 0, 0, ScreenWidth, ScreenHeight, AdvanceRegion);
  theScenario->ConnectObjects(WholeScreenMap, PendantMap);
  Reg(SelectionBookkeepingRegister) = 0;
  Reg(WaitKindRegister) = 0;
  if (SysReg(SkipMode) != 0) {
    theScenario->SetClickTick(WholeScreenMap, LineTickMillis);
    showSkipCorner();
  }
  if (result_ >= 1 && result_ <= MostChoices) trace("choice", std::to_string(result_));
}

void Selection::dispatch(int32_t code) {
  struct Answer {
    int32_t code;
    void (Selection::*act)();
  };
  constexpr int32_t Key = FirstKeyResult;
  static constexpr Answer Answers[] = {
      {ClickCancel, &Selection::toggle},
      {Key + KeyEscape, &Selection::toggle},
      {NeutralRegion, &Selection::clickBeside},
      {Key + LeftButtonKey, &Selection::clickBeside},
      {1, &Selection::take},
      {2, &Selection::take},
      {3, &Selection::take},
      {Key + KeyReturn, &Selection::take},
      {Key + KeySpace, &Selection::take},
      {QuickSaveRegion, &Selection::quickSave},
      {Key + KeyF1 + 1, &Selection::quickSave},
      {QuickLoadRegion, &Selection::quickLoad},
      {Key + KeyF1 + 2, &Selection::quickLoad},
      {PendantRegion, &Selection::configure},
      {Key + KeyF1 + 4, &Selection::configure},
      {Key + KeyF1 + 3, &Selection::toggleSkip},
      {Key + KeyF1 + 5, &Selection::toggleDrama},
      {Key + KeyF1 + 6, &Selection::showHistory},
      {Key + KeyDown, &Selection::moveDown},
      {Key + KeyNum0 + 2, &Selection::moveDown},
      {Key + KeyUp, &Selection::moveUp},
      {Key + KeyNum0 + 8, &Selection::moveUp},
  };
  if (code >= FirstHoverResult && code <= FirstHoverResult + count_) {
    hover(code - FirstHoverResult);
    return;
  }
  const auto* found = std::ranges::find(Answers, code, &Answer::code);
  if (found != std::end(Answers)) (this->*found->act)();
}

void Selection::bringBack() {
  MessageWindowHiddenFlag = 0;
  ShowPendant();
  showPlates(plates_, true);
}

/// In the other order, in which the pendant does not come: the window counts as hidden until then.
void Selection::bringPlatesBack() {
  ShowPendant();
  showPlates(plates_, true);
  MessageWindowHiddenFlag = 0;
}

void Selection::toggle() {
  if (MessageWindowHiddenFlag != 0) {
    bringBack();
    lightPendant(false);
  } else {
    MessageWindowHiddenFlag = 1;
    HidePendant();
    showPlates(plates_, false);
  }
  theScenario->RequestHover(SelectionMap, WithNudge);
}

void Selection::clickBeside() {
  if (MessageWindowHiddenFlag == 0) return;
  bringBack();
  theScenario->RequestHover(SelectionMap, WithoutNudge);
  choice_ = 0;
}

/// The region of the click is not asked: what counts is the plate that the player sees marked.
void Selection::take() {
  if (MessageWindowHiddenFlag != 0) {
    bringPlatesBack();
    return;
  }
  result_ = choice_;
  if (result_ != 0) LineAreas().clear();
}

void Selection::quickSave() {
  flashHit(save_);
  if (systemScreens()) systemScreens()->quickSave();
  theScenario->RequestHover(SelectionMap, WithoutNudge);
}

void Selection::quickLoad() {
  flashHit(load_);
  if (systemScreens() && systemScreens()->quickLoad()) result_ = WaitLoaded;
  theScenario->RequestHover(SelectionMap, WithNudge);
}

void Selection::configure() {
  showPlates(plates_, false);
  if (systemScreens()) result_ = systemScreens()->configuration();
  const bool leaves = result_ == WaitLoaded || result_ == WaitToTitle || result_ == WaitToEnd;
  if (!leaves && MessageWindowHiddenFlag == 0) showPlates(plates_, true);
  Reg(HoverRegister) = 0;
  neutral();
}

void Selection::toggleSkip() {
  SystemScreens* screens = systemScreens();
  if (!screens) return;
  if (SysReg(SkipMode) != 0) {
    if (screens->confirm(sjis("テキストスキップを解除します").c_str())) {
      SysReg(SkipMode) = 0;
      Reg(PendingCodeRegister) = 0;
    }
  } else if (SysReg(DramaMode) == 0) {
    if (screens->confirm(sjis("テキストスキップを実行します").c_str())) SysReg(SkipMode) = 1;
  } else {
    screens->notice(noSkipInDrama().c_str());
  }
  neutral();
}

void Selection::toggleDrama() {
  const char* question =
      SysReg(DramaMode) != 0 ? "ドラマチックモードを解除します" : "ドラマチックモードを実行します";
  if (systemScreens() && systemScreens()->confirm(sjis(question).c_str())) ToggleDramaMode();
  neutral();
}

void Selection::showHistory() {
  showPlates(plates_, false);
  if (systemScreens()) systemScreens()->history();
  if (MessageWindowHiddenFlag == 0) showPlates(plates_, true);
  neutral();
}

void Selection::moveDown() {
  if (MessageWindowHiddenFlag != 0) return;
  moveTo(choice_ >= 1 && choice_ < count_ ? choice_ + 1 : 1);
}

void Selection::moveUp() {
  if (MessageWindowHiddenFlag != 0) return;
  moveTo(choice_ >= 2 && choice_ <= count_ ? choice_ - 1 : count_);
}

void Selection::moveTo(int32_t choice) {
  Rectangle view;
  const WindowObject* picture = theScenario->FindView(PictureView);
  if (picture && picture->windowRect(view) && theScenario->host())
    theScenario->host()->setPointer(view.left + PointerX,
                                    view.top + firstRow_ + (choice - 1) * RowStep);
  hover(choice);
}

void Selection::hover(int32_t choice) {
  choice_ = choice;
  if (choice != 0 && lastHover_ == FirstHoverResult + choice) return;
  lastHover_ = FirstHoverResult + choice;
  markPlate(plates_, colours_, choice);
  theScenario->RequestHover(SelectionMap, WithoutNudge);
}

}  // namespace

void Select2Setup() {
  if (theScenario) preparePlates(platesFor(TwoChoices));
}

void Select3Setup() {
  if (theScenario) preparePlates(platesFor(MostChoices));
}

int32_t SelectMain(int32_t count) {
  return theScenario ? Selection(count).run() : 0;
}

void AreaText(AreaHandle& area, const char* text, int32_t flag) {
  area.printText(text, nullptr, nullptr, nullptr, flag != 0);
}

}  // namespace qv
