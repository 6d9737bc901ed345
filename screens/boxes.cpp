#include "screens/boxes.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "graphics/dib.h"
#include "graphics/scene/picture_drawing.h"
#include "input/animated_control.h"
#include "message/skip_poll.h"
#include "message/text_areas.h"
#include "platform/display/display.h"
#include "platform/text/shift_jis.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"
#include "screens/picture_button.h"

namespace qv {

namespace {

constexpr const char *BoxWindow = "chk.Window", *BoxArea = "chkMess.Aria", *PictureView = "cg.view",
                     *BoxPicture = "dat\\YesNo.mcg";
constexpr int32_t BoxWidth = 306, BoxHeight = 98;
constexpr int32_t YesId = 2, NoId = 3, OkId = 2;
constexpr int32_t UseKeys = 1, WithKeys = 1, WriteThrough = 1;
constexpr int32_t NoticeTenths = 50;

struct ButtonForm {
  const char* file;
  int32_t id, x, y;
};
struct BoxForm {
  int32_t xRegister, yRegister;  ///< where it stood last
  std::vector<ButtonForm> buttons;
};
const BoxForm Question{206, 207, {{"dat\\yes.mcg", YesId, 78, 67}, {"dat\\no.mcg", NoId, 165, 67}}};
const BoxForm Notice{208, 209, {{"dat\\ok.mcg", OkId, 121, 67}}};
const BoxForm Popup{210, 211, {}};

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

/// A box from its opening to its end; an abort closes it as any other way out does.
class Box {
 public:
  Box(const BoxForm& form, const char* text);
  ~Box();
  Box(const Box&) = delete;
  Box& operator=(const Box&) = delete;

  int32_t wait(int32_t timeoutTenths);

 private:
  void paint(View& view);
  void print(const char* text);
  void show();
  void keepPlace();

  const BoxForm& form_;
  FrameHandle window_;
  BoxPlace place_;
  std::vector<std::unique_ptr<PictureButton>> buttons_;
  AnimatedControl control_;
  QVClickMap* below_ = nullptr;
};

Rectangle centred() {
  return Rectangle::at(ScreenWidth / 2 - BoxWidth / 2, ScreenHeight / 2 - BoxHeight / 2, BoxWidth,
                       BoxHeight);
}

Box::Box(const BoxForm& form, const char* text)
    : form_(form),
      window_(BoxWindow, PictureView, centred(), nullptr, WindowHidden, DestroyWithHandle),
      place_(window_.client().view()) {
  View* view = window_.client().target();
  if (!view || !theScenario->host()) return;
  paint(*view);
  print(text);
  control_.create(BoxWidth, BoxHeight, theScenario->host());
  control_.setWindow(&place_);
  for (const ButtonForm& button : form.buttons) {
    buttons_.push_back(std::make_unique<PictureButton>(button.file));
    PictureButton& made = *buttons_.back();
    made.setRectangle(Rectangle::at(button.x, button.y, made.width(), made.height()));
    control_.addItem(button.id, &made, button.x, button.y);
  }
  show();
  control_.attachControl(*view, 0, 0);
  below_ = static_cast<QVClickMap*>(theScenario->FindNative(WholeScreenMap, TypeClickMap));
  if (below_) below_->setParent(&control_.clickMap());
}

Box::~Box() {
  if (below_) below_->setParent(nullptr);
  if (View* view = window_.client().target()) {
    keepPlace();
    window_.hide();
    control_.detachControl(*view);
  }
  if (theScenario) theScenario->DestroyObject(BoxArea);
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
  theScenario->CreateObject(BoxArea, TypePrintArea);
  theScenario->ConnectObjects(window_.client().name().text(), BoxArea);
  QVPrintArea* area = areaNamed(BoxArea);
  if (!area) return;
  area->setRect(0, 0, BoxWidth, TextHeight);
  area->setLineHeight(LineHeight);
  area->setFlags(QVPrintArea::FlagOneLine | QVPrintArea::FlagCentre);
  area->setFont(FontHeight, Weight, StyleStays, FixedPitch, ShiftJisCharset,
                sjis("ＭＳ Ｐ明朝").c_str());
  area->setPosition(PenX, PenY);
  area->printText(text);
}

void Box::show() {
  const int32_t x = std::clamp(theScenario->SysReg(form_.xRegister), 0, ScreenWidth - BoxWidth);
  const int32_t y = std::clamp(theScenario->SysReg(form_.yRegister), 0, ScreenHeight - BoxHeight);
  theScenario->MoveWindow(BoxWindow, x, y);
  window_.show();
}

void Box::keepPlace() {
  Rectangle place;
  if (!window_.window() || !window_.window()->windowRect(place)) return;
  theScenario->SetSysReg(form_.xRegister, place.left, WriteThrough);
  theScenario->SetSysReg(form_.yRegister, place.top, WriteThrough);
}

int32_t Box::wait(int32_t timeoutTenths) {
  if (!window_.client().target() || !theScenario->host()) return ClickCancel;
  control_.setTimeout(timeoutTenths);
  return control_.wait(UseKeys, WithKeys);
}

bool cancels(int32_t code) {
  return code == ClickCancel;
}

}  // namespace

int32_t ConfirmDialog(const char* text) {
  if (!theScenario) return 0;
  Box box(Question, text);
  for (;;) {
    const int32_t code = box.wait(AnimatedControl::WithoutLimit);
    if (code == YesId) return 1;
    if (code == NoId || cancels(code)) return 0;
  }
}

void NoticeDialog(const char* text) {
  if (!theScenario) return;
  Box box(Notice, text);
  for (;;) {
    const int32_t code = box.wait(AnimatedControl::WithoutLimit);
    if (code == OkId || cancels(code)) return;
  }
}

void PopupNotice(const char* text) {
  if (!theScenario) return;
  Box box(Popup, text);
  // A hover over the box is no click.
  while (box.wait(NoticeTenths) >= FirstHoverResult) {
  }
}

}  // namespace qv
