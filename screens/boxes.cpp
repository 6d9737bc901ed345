#include "screens/boxes.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <vector>

#include "graphics/dib.h"
#include "graphics/scene/picture_drawing.h"
#include "input/animated_control.h"
#include "message/standing_names.h"
#include "message/text_areas.h"
#include "message/wait_codes.h"
#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "platform/text/shift_jis.h"
#include "scenario/handles.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "screens/picture_button.h"

namespace qv {

namespace {

constexpr const char *BoxWindow = "chk.Window", *BoxArea = "chkMess.Aria",
                     *BoxPicture = "dat\\YesNo.mcg";
constexpr int32_t BoxWidth = 306, BoxHeight = 98;
constexpr int32_t YesId = 2, NoId = 3, OkId = 2;
constexpr int32_t UseKeys = 1, WriteThrough = 1;
constexpr int32_t NoticeTenths = 50;

struct ButtonForm {
  const char* file;
  int32_t id, x, y;
};
constexpr std::array QuestionButtons{ButtonForm{"dat\\yes.mcg", YesId, 78, 67},
                                     ButtonForm{"dat\\no.mcg", NoId, 165, 67}};
constexpr std::array NoticeButtons{ButtonForm{"dat\\ok.mcg", OkId, 121, 67}};

struct BoxForm {
  int32_t xRegister, yRegister;  ///< where it stood last
  std::span<const ButtonForm> buttons;
};
constexpr BoxForm Question{QuestionBoxX, QuestionBoxY, QuestionButtons};
constexpr BoxForm Notice{NoticeBoxX, NoticeBoxY, NoticeButtons};
constexpr BoxForm Popup{PopupBoxX, PopupBoxY, {}};

/// Turns the box's points into the screen's.
class BoxPlace : public ControlWindow {
 public:
  explicit BoxPlace(const WindowObject* window) : window_(window) {}
  bool clientToScreen(int32_t& x, int32_t& y) const override {
    Rectangle place;
    if (!window_ || !window_->windowRect(place)) return false;
    x += place.left;
    y += place.top;
    return true;
  }

 private:
  const WindowObject* window_;
};

/// The map of the whole screen under that of a box, so that a click beside the box is the box's and
/// nobody else's.
class ScreenBelow {
 public:
  ScreenBelow() = default;
  ~ScreenBelow() { leave(); }
  ScreenBelow(const ScreenBelow&) = delete;
  ScreenBelow& operator=(const ScreenBelow&) = delete;
  void join(QVClickMap& box) {
    screen_ = static_cast<QVClickMap*>(theScenario->FindNative(WholeScreenMap, TypeClickMap));
    if (!screen_) return;
    above_ = screen_->parent();
    screen_->setParent(&box);
  }
  void leave() {
    if (screen_) screen_->setParent(above_);
    screen_ = nullptr;
  }

 private:
  QVClickMap* screen_ = nullptr;
  QVClickMap* above_ = nullptr;  ///< whom it reported to before
};

/// A box from its opening to its end. Its destructor, by which an abort leaves it, takes everything
/// away too, but keeps no place.
class Box {
 public:
  Box(const BoxForm& form, const char* text);
  ~Box() { takeDown(); }
  Box(const Box&) = delete;
  Box& operator=(const Box&) = delete;

  /// Until one of the buttons is taken or the box is cancelled; gives the button or ClickCancel.
  int32_t waitForButton();
  /// The ordinary end: the place is kept in the system file. Raises what the file raises.
  void close();

 private:
  void paint(View& view);
  void print(const char* text);
  void addButtons(View& view);
  void show();
  void takeDown();
  View* view() const { return window_.client().target(); }

  const BoxForm& form_;
  FrameHandle window_;
  AreaHandle area_;
  BoxPlace place_;
  std::vector<std::unique_ptr<PictureButton>> buttons_;
  AnimatedControl control_;
  ScreenBelow screen_;
};

Rectangle centred() {
  return Rectangle::at(ScreenWidth / 2 - BoxWidth / 2, ScreenHeight / 2 - BoxHeight / 2, BoxWidth,
                       BoxHeight);
}

Box::Box(const BoxForm& form, const char* text)
    : form_(form),
      window_(BoxWindow, PictureView, centred(), nullptr, WindowHidden, DestroyWithHandle),
      area_(BoxArea, DestroyWithHandle),
      place_(window_.client().view()) {
  if (!view() || !theScenario->host()) return;
  paint(*view());
  addButtons(*view());
  print(text);
  show();
  screen_.join(control_.clickMap());
}

void Box::paint(View& view) {
  QVDib picture;
  picture.loadByName(BoxPicture);
  view.surface8()->copyPaletteFromDib(picture);
  view.surface8()->blitDib(picture, KeyNone);
}

void Box::print(const char* text) {
  constexpr int32_t TextHeight = 64, PenX = 16, PenY = 16, LineHeight = 18, FontHeight = 16,
                    Weight = 700, StyleStays = -1, FixedPitch = 1, ShiftJisCharset = 128;
  theScenario->ConnectObjects(window_.client().name().text(), BoxArea);
  area_.setRect(0, 0, BoxWidth, TextHeight);
  area_.setLineHeight(LineHeight);
  area_.setFlags(QVPrintArea::FlagOneLine | QVPrintArea::FlagCentre);
  area_.setFont(FontHeight, Weight, StyleStays, FixedPitch, ShiftJisCharset,
                sjis("ＭＳ Ｐ明朝").c_str());
  area_.setPosition(PenX, PenY);
  area_.printText(text);
}

void Box::show() {
  const int32_t x = std::clamp(theScenario->SysReg(form_.xRegister), 0, ScreenWidth - BoxWidth);
  const int32_t y = std::clamp(theScenario->SysReg(form_.yRegister), 0, ScreenHeight - BoxHeight);
  theScenario->MoveWindow(BoxWindow, x, y);
  window_.show();
}

void Box::addButtons(View& view) {
  control_.create(BoxWidth, BoxHeight, theScenario->host());
  control_.setWindow(&place_);
  for (const ButtonForm& button : form_.buttons) {
    buttons_.push_back(std::make_unique<PictureButton>(button.file));
    PictureButton& made = *buttons_.back();
    made.setRectangle(Rectangle::at(button.x, button.y, made.width(), made.height()));
    control_.addItem(button.id, &made, button.x, button.y);
  }
  control_.attachControl(view, 0, 0);
}

int32_t Box::waitForButton() {
  for (;;) {
    if (!view() || !control_.view()) return ClickCancel;
    const int32_t code = control_.wait(UseKeys, WithKeys);
    // The button and the key that cancel have codes of their own where no map takes them.
    if (code == ClickCancel || code == FirstKeyResult + RightButtonKey ||
        code == FirstKeyResult + KeyEscape)
      return ClickCancel;
    if (control_.item(code)) return code;
  }
}

void Box::close() {
  Rectangle place;
  if (window_.window() && window_.window()->windowRect(place)) {
    theScenario->SetSysReg(form_.xRegister, place.left, WriteThrough);
    theScenario->SetSysReg(form_.yRegister, place.top, WriteThrough);
  }
  takeDown();
}

void Box::takeDown() {
  window_.hide();
  screen_.leave();
  if (control_.view()) control_.detachControl(*control_.view());
}

int32_t answerOf(const BoxForm& form, const char* text) {
  Box box(form, text);
  const int32_t code = box.waitForButton();
  box.close();
  return code;
}

}  // namespace

int32_t ConfirmDialog(const char* text) {
  return theScenario && answerOf(Question, text) == YesId ? 1 : 0;
}

void NoticeDialog(const char* text) {
  if (theScenario) answerOf(Notice, text);
}

void PopupNotice(const char* text) {
  if (!theScenario) return;
  Box box(Popup, text);
  theScenario->WaitInput(nullptr, NoticeTenths);
  box.close();
}

}  // namespace qv
