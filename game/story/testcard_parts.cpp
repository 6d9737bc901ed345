// The parts of the test card's pages.

#include "game/story/testcard.h"
#include "graphics/dib.h"
#include "graphics/palette.h"
#include "input/system_button.h"
#include "platform/text/shift_jis.h"

using namespace qv;

namespace card {

namespace {

constexpr int32_t Width = 640, Height = 480;
constexpr const char* Control = "card.control";
constexpr const char* Strip = "card.strip";
constexpr const char* Text = "card.text";
constexpr const char* Page = "card.page";
constexpr const char* State = "card.state";
constexpr const char* Hitret = "card.hitret";
constexpr const char* ButtonPicture = "dat\\KTCbutton.mcg";
constexpr const char* HomePicture = "dat\\KTChome.mcg";
// Cursors are resources of the game.
constexpr const char* PointCursor = "KTCpoint";
constexpr const char* PressCursor = "KTCpress";

View& screen() {
  return *theScenario->FindView(Screen)->view();
}

void flush(const Rectangle& place) {
  screen().flush(&place, 0);
}

void prepare(const AreaHandle& area, const Rectangle& place, const Lettering& lettering) {
  constexpr int32_t NoStyle = 0;
  area.setView(ViewHandle(Screen));
  area.setRect(place.left, place.top, place.width(), place.height());
  area.setFlags(lettering.flags);
  area.setLineHeight(lettering.height + lettering.height / 4);
  area.setFont(lettering.height, lettering.weight, NoStyle, -1, TextFont::ShiftJisCharset,
               sjis(lettering.face).c_str());
  area.setColour(lettering.colour, 0);
  area.setColour(lettering.outline, 1);
  area.home();
}

}  // namespace

// --- The page ---

void takeColours(const char* picture) {
  constexpr int32_t FirstFree = 10, LastFree = 245;
  QVVSurface& pixels = *screen().surface8();
  QVDib dib;
  dib.loadByName(picture);
  ColourTable table = pixels.storedColours();
  MergePalette(dib, table, FirstFree, LastFree, false);
  pixels.setColours(table, 0, 0, static_cast<int32_t>(table.size()));
}

void openPage(const char* picture, const char* title, const char* hint) {
  constexpr int32_t PaletteFade = 9, FadeSteps = 8;
  theScenario->CreateView(Screen, nullptr, 0, 0, Width, Height, 0);
  theScenario->FadeView(Screen, FadeSteps, 0, 0);
  theScenario->DrawTo(Screen, picture, FadeSteps, 0, 0, 0, 0, 0, PaletteFade);
  for (const char* more : {ButtonPicture, "dat\\Blink.mcg"})
    takeColours(more);
  theScenario->SetCursor(Screen, PointCursor);
  constexpr Rectangle TitlePlace{82, 31, 470, 58}, HintPlace{38, 446, 604, 466};
  if (title)
    write(TitlePlace, title,
          {.height = 22, .colour = White, .outline = Navy, .flags = QVPrintArea::FlagOutline});
  if (hint) write(HintPlace, hint, {.colour = White});
}

void write(const Rectangle& place, const std::string& utf8, const Lettering& lettering) {
  const AreaHandle area(Text, DestroyWithHandle);
  prepare(area, place, lettering);
  area.printText(sjis(utf8).c_str());
  flush(place);
}

void writeShaded(const Rectangle& place, const std::string& utf8, const Lettering& lettering) {
  Lettering shade = lettering;
  shade.colour = Shade;
  const AreaHandle area(Text, DestroyWithHandle);
  const std::string text = sjis(utf8);
  for (const auto& [look, distance] : {std::pair{shade, 2}, std::pair{lettering, 0}}) {
    prepare(area, place.moved(distance, distance), look);
    area.printText(text.c_str());
  }
  flush(place);
}

void keepSheet() {
  theScenario->CreateObject(Hitret, TypeHitret, {Screen});
  const AreaHandle area(Page);
  prepare(area, Sheet, {});
  theScenario->ConnectObjects(Page, Hitret);
  area.saveBackground();
}

void waitForPlayer() {
  AreaHandle(Page).printText("", nullptr, nullptr, nullptr, true);
}

void putAway() {
  PlayBgm(nullptr, nullptr);
  theScenario->StopSound(ChannelMidi);
  StopSe();
  theScenario->DestroyObjects({Control, Strip, Page, State, Hitret});
  constexpr int32_t Arrow = 0;
  theScenario->SetCursor(Screen, Arrow);
}

// --- Buttons ---

namespace {

/// Lights under the focus; goes down for a moment when it is pressed.
class Button : public ControlItem {
 public:
  explicit Button(const char* label) : label_(label) {
    setRectangle(Rectangle::at(0, 0, Board::ButtonWidth, Board::ButtonHeight));
  }
  void draw(View& view) override { drawCell(view, enabled() ? Plain : OutOfUse); }
  void onEnter(View& view) override {
    drawCell(view, Lit);
    theScenario->SetCursor(Screen, PressCursor);
  }
  void onLeave(View& view) override {
    drawCell(view, Plain);
    theScenario->SetCursor(Screen, PointCursor);
  }
  bool takesClick(View& view) override {
    constexpr int32_t DownTenths = 1;
    if (!live()) return false;
    drawCell(view, Pressed);
    theScenario->WaitSound(DownTenths);
    drawCell(view, Lit);
    return true;
  }

 private:
  enum Cell : int32_t { Plain, Lit, Pressed, OutOfUse };

  void drawCell(View& view, Cell cell) const {
    constexpr int32_t LabelLeft = 26, LabelRight = 8, LabelTop = 10, LabelHeight = 20;
    const Rectangle& place = rectangle();
    const SurfaceHandle strip(Strip);
    QVVSurface* const pixels = view.surface8();
    if (!strip.surface() || !pixels || !owner()) return;
    owner()->background().blit(*pixels, place.left, place.top, place.left, place.top, place.width(),
                               place.height(), KeyNone);
    strip.surface()->blit(*pixels, place.left, place.top, cell * place.width(), 0, place.width(),
                          place.height(), KeyTopLeft);
    const int32_t sink = cell == Pressed ? 2 : 0;
    const Rectangle label = Rectangle::at(place.left + LabelLeft, place.top + LabelTop + sink,
                                          place.width() - LabelLeft - LabelRight, LabelHeight);
    const AreaHandle area(Text, DestroyWithHandle);
    prepare(area, label,
            {.colour = cell == OutOfUse ? Shade : Navy,
             .flags = QVPrintArea::FlagOneLine | QVPrintArea::FlagCentre,
             .weight = 600});
    area.printText(sjis(label_).c_str());
    view.flush(&place, 0);
  }

  const char* label_;
};

/// A system button with its word beside it: it has no look of its own under the focus.
class HomeButton : public ControlItem {
 public:
  HomeButton(const char* label) : label_(label), button_(&theScenario->host()->exitEvent()) {
    setRectangle(Rectangle::at(0, 0, PictureWidth + WordWidth, PictureHeight));
  }
  void attach(View& view) override {
    button_.place(&view, rectangle().left, rectangle().top, HomePicture, KeyTopLeft, 1, 0, 1);
    drawWord(Navy);
  }
  void draw(View&) override { button_.redraw(); }
  void onEnter(View&) override {
    drawWord(Focused);
    theScenario->SetCursor(Screen, PressCursor);
  }
  void onLeave(View&) override {
    drawWord(Navy);
    theScenario->SetCursor(Screen, PointCursor);
  }
  bool takesClick(View&) override {
    constexpr int32_t FlashTenths = 2, WaitForEnd = 1;
    button_.flash(FlashTenths, WaitForEnd);
    return true;
  }

 private:
  static constexpr int32_t PictureWidth = 88, PictureHeight = 30, WordWidth = 72;
  static constexpr ColourRef Focused = 0x6C5AD8;

  void drawWord(ColourRef colour) const {
    constexpr int32_t Gap = 8, Top = 6, LineHeight = 20;
    const Rectangle& place = rectangle();
    write({place.left + PictureWidth + Gap, place.top + Top, place.right,
           place.top + Top + LineHeight},
          label_, {.colour = colour, .flags = QVPrintArea::FlagOneLine, .weight = 600});
  }

  const char* label_;
  SystemButton button_;
};

}  // namespace

Board::Board() {
  theScenario->CreateObject(Control, TypeAnimatedControl, {Screen});
  const SurfaceHandle strip(Strip, ButtonPicture);
  control_ = static_cast<AnimatedControl*>(theScenario->FindNative(Control, TypeAnimatedControl));
}

Board::~Board() {
  theScenario->DestroyObject(Control);
}

void Board::add(int32_t region, int32_t x, int32_t y, const char* label, bool enabled) {
  items_.push_back(std::make_unique<Button>(label));
  items_.back()->setEnabled(enabled);
  control_->addItem(region, items_.back().get(), x, y);
}

void Board::addHome(int32_t x, int32_t y, const char* label) {
  items_.push_back(std::make_unique<HomeButton>(label));
  control_->addItem(Home, items_.back().get(), x, y);
}

void Board::open() {
  control_->attachControl(screen(), 0, 0);
  control_->clickMap().requestHover(1);
}

int32_t Board::wait(int32_t tenths) {
  constexpr int32_t UseKeys = 1;
  control_->setTimeout(tenths);
  const int32_t result = control_->wait(UseKeys, UseKeys);
  if (result == ClickCancel) return Cancelled;
  if (result < 0 || result >= AnimatedControl::Slots) return NothingPressed;
  Reg(ButtonRegister) = result;
  ++Reg(PressCountRegister);
  return result;
}

// --- A text that changes ---

StateText::StateText(const Rectangle& place) : place_(place) {
  const AreaHandle area(State);
  prepare(area, place, {.height = 20, .face = "ＭＳ ゴシック"});
  area.saveBackground();
}

StateText::~StateText() {
  theScenario->DestroyObject(State);
}

void StateText::show(const std::string& utf8) {
  if (utf8 == shown_) return;
  shown_ = utf8;
  const AreaHandle area(State);
  area.clear(false, false);
  area.printText(sjis(utf8).c_str());
  flush(place_);
}

}  // namespace card
