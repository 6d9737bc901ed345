#include "message/print_area.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "audio/wave.h"
#include "foundation/file.h"
#include "graphics/animation/animation_area.h"
#include "graphics/dib.h"
#include "graphics/static_colours.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr uint32_t BoxWarning = BoxNotice | 0x30;
constexpr const char* BoxCaption = "QVPrintArea manager";
constexpr int32_t VoiceLoops = 1;

void report(const char* text) {
  services().dialogs->messageBox(sjis(text), BoxCaption, BoxWarning);
}

PrintTarget targetOf(View* view) {
  return {view->surface8(), view->surface32()};
}

Rectangle boundsOf(const PrintTarget& target) {
  if (target.surface8) return {0, 0, target.surface8->width(), target.surface8->height()};
  if (target.surface32) return {0, 0, target.surface32->width(), target.surface32->height()};
  return {};
}

}  // namespace

QVPrintArea::QVPrintArea() : device_(&systemTextDevice()) {}

// --- What scenes set ---

View* QVPrintArea::setView(View* view) {
  const std::lock_guard guard(lock_);
  View* const before = view_;
  view_ = view;
  if (view) target_ = targetOf(view);
  return before;
}

void QVPrintArea::setSurface(QVVSurface* surface) {
  const std::lock_guard guard(lock_);
  view_ = nullptr;
  target_ = {surface, nullptr};
}

void QVPrintArea::setWave(QVWave* wave) {
  const std::lock_guard guard(lock_);
  wave_ = wave;
}

void QVPrintArea::setLink(QVPrintArea* link) {
  const std::lock_guard guard(lock_);
  link_ = link;
}

void QVPrintArea::setHitret(const QVHitret& hitret) {
  const std::lock_guard guard(lock_);
  // The rectangle and the time are given to it at each wait.
  hitret_.setWait(hitret.wait());
  hitret_.setOwner(hitret.owner());
  hitret_.setView(view_);
}

void QVPrintArea::setRect(int32_t left, int32_t top, int32_t width, int32_t height) {
  const std::lock_guard guard(lock_);
  rect_ = Rectangle::at(left, top, width, height);
}

void QVPrintArea::setPosition(int32_t x, int32_t y) {
  const std::lock_guard guard(lock_);
  movePen(x, y);
}

int32_t QVPrintArea::setLineHeight(int32_t height) {
  const std::lock_guard guard(lock_);
  const int32_t before = lineHeight_;
  if (height >= 1) lineHeight_ = height;
  return before;
}

int32_t QVPrintArea::setIndent(int32_t pixels, int32_t side) {
  const std::lock_guard guard(lock_);
  return std::exchange(side == 0 ? indentLeft_ : indentRight_, pixels);
}

void QVPrintArea::setFlags(uint32_t flags, bool replace) {
  const std::lock_guard guard(lock_);
  flags_ = replace ? flags : flags_ | flags;
}

void QVPrintArea::setNoLineStart(const char* text) {
  const std::lock_guard guard(lock_);
  noLineStart_ = NoLineStart(text ? text : "");
}

void QVPrintArea::setColour(ColourRef colour, int32_t which) {
  const std::lock_guard guard(lock_);
  (which == 0 ? textColour_ : outlineColour_) = colour;
}

void QVPrintArea::setFont(int32_t height, int32_t weight, int32_t style, int32_t pitch,
                          int32_t charset, const char* face) {
  const std::lock_guard guard(lock_);
  font_.set(height, weight, style, pitch, charset, face);
}

void QVPrintArea::setTextDevice(TextDevice& device) {
  const std::lock_guard guard(lock_);
  device_ = &device;
}

void QVPrintArea::forget(const void* member) {
  const std::lock_guard guard(lock_);
  if (link_ == member) link_ = nullptr;
  if (target_.surface8 == member) target_ = {};
}

PenPosition QVPrintArea::position() const {
  const std::lock_guard guard(lock_);
  return position_;
}

Rectangle QVPrintArea::rectangle() const {
  const std::lock_guard guard(lock_);
  return rect_;
}

uint32_t QVPrintArea::flags() const {
  const std::lock_guard guard(lock_);
  return flags_;
}

int32_t QVPrintArea::indentLeft() const {
  const std::lock_guard guard(lock_);
  return indentLeft_;
}

TextFont QVPrintArea::font() const {
  const std::lock_guard guard(lock_);
  return font_;
}

uint32_t QVPrintArea::fullPages() const {
  const std::lock_guard guard(lock_);
  return fullPages_;
}

// --- The pen ---

void QVPrintArea::movePen(int32_t x, int32_t y) {
  position_ = {x, y};
  if (rect_.contains(x, y)) return;
  position_ = {rect_.left, rect_.top};
  report(
      "表示許可領域外に初期化しようとしています\n"
      "表示許可領域の左上座標で初期化して処理を継続します");
}

void QVPrintArea::reportIndent() {
  indentLeft_ = 0;
  position_ = {rect_.left, rect_.top};
  report(
      "プリントエリアに関連付けられたインデント幅が大きすぎて\n"
      "初期位置がプリントエリアの外にはみ出しています。\n"
      "システムは、インデントを０に設定して処理を継続します。");
}

void QVPrintArea::home() {
  const std::lock_guard guard(lock_);
  goHome();
}

/// An outline keeps inside the area: it begins one pixel further in.
void QVPrintArea::goHome() {
  const int outline = (flags_ & FlagOutline) ? 1 : 0;
  const int32_t x = nearestCoordinate(int64_t{rect_.left} + indentLeft_ + outline);
  const int32_t y = nearestCoordinate(int64_t{rect_.top} + outline);
  if (rect_.contains(x, y))
    position_ = {x, y};
  else
    reportIndent();
}

void QVPrintArea::newLine(QVHitret& hitret) {
  position_.x = nearestCoordinate(int64_t{rect_.left} + indentLeft_);
  position_.y = nearestCoordinate(int64_t{position_.y} + lineHeight_);
  if (position_.x < rect_.left || position_.x >= rect_.right) reportIndent();
  const int32_t bottom = nearestCoordinate(int64_t{position_.y} + lineHeight_ - 1);
  if (rect_.contains(position_.x, bottom)) return;
  ++fullPages_;
  if (view_) {
    flushArea();
    runWait(hitret, waitTenths_);
  }
  clear(false, true);
  position_.y = rect_.top;
}

void QVPrintArea::runWait(QVHitret& hitret, int32_t tenths) {
  hitret.prepare(rect_, view_, tenths);
}

// --- What lies under the text ---

void QVPrintArea::flushArea() {
  if (view_ && !rect_.empty()) view_->invalidate(&rect_, 0);
}

void QVPrintArea::paintBackground() {
  if (target_.surface8) {
    if (clearsToBackground_)
      background_.tileOnto(*target_.surface8, &rect_, false);
    else
      target_.surface8->fill(clearIndex_, &rect_);
    return;
  }
  if (clearsToBackground_)
    background_.blitTo32(*target_.surface32, rect_.left, rect_.top, 0, 0, rect_.width(),
                         rect_.height(), KeyNone);
  else
    target_.surface32->fill(greyRampWithStaticColours()[clearIndex_], &rect_);
}

void QVPrintArea::clear(bool withLink, bool withFlush) {
  const std::lock_guard guard(lock_);
  if (!target_ || clearing_) return;
  paintBackground();
  if (withFlush) flushArea();
  if (withLink && link_) {
    clearing_ = true;
    link_->clear(withLink, withFlush);
    if (link_->flags() & FlagHomeAfterPrint) link_->home();
    clearing_ = false;
  }
  goHome();
}

void QVPrintArea::saveBackground() {
  const std::lock_guard guard(lock_);
  if (!target_.surface8 || rect_.empty()) return;
  const Rectangle inside = rect_.intersected(boundsOf(target_));
  if (inside.empty()) return;
  background_.create(rect_.width(), rect_.height());
  background_.copyPaletteFrom(*target_.surface8);
  target_.surface8->blit(background_, 0, 0, inside.left, inside.top, inside.width(),
                         inside.height(), KeyNone);
  clearsToBackground_ = true;
}

// --- Voice and mouth ---

void QVPrintArea::startVoice(const char* path, QVAnimationArea* mouth) {
  if (path && wave_ && wave_->available())
    wave_->play(path, VoiceLoops, true, mouth);
  else if (mouth)
    mouth->start(false);
}

void QVPrintArea::stopVoice(const char* path, QVAnimationArea* mouth) {
  if (path && wave_ && wave_->available())
    wave_->stop();
  else if (mouth)
    mouth->stop(true);
}

// --- Printing ---

/// The font and the colour are those of the outermost print, however they are set meanwhile.
class QVPrintArea::DeviceUse {
 public:
  explicit DeviceUse(QVPrintArea& area) : area_(area) {
    if (area.deviceUses_++ > 0) return;
    area.usedStyle_ = area.font_.style();
    area.usedColour_ = area.textColour_;
  }
  ~DeviceUse() { --area_.deviceUses_; }
  DeviceUse(const DeviceUse&) = delete;
  DeviceUse& operator=(const DeviceUse&) = delete;

 private:
  QVPrintArea& area_;
};

void QVPrintArea::printText(const char* text, QVHitret* given, const char* wavePath,
                            QVAnimationArea* mouth, bool wait) {
  const std::lock_guard guard(lock_);
  if (!target_ || !text) return;
  const DeviceUse use(*this);
  QVHitret& hitret = given ? *given : hitret_;
  // A copy: a wait may change what the scene's text stands in.
  const std::string copy = text;
  startVoice(wavePath, mouth);
  try {
    layOut(copy, hitret);
    flushArea();
    if (wait && view_) runWait(hitret, waitTenths_);
  } catch (...) {
    stopVoice(wavePath, mouth);
    throw;
  }
  if (wait && view_) {
    stopVoice(wavePath, mouth);
    goHome();
    clear(true, true);
  }
  if (flags_ & FlagHomeAfterPrint) goHome();
}

void QVPrintArea::layOut(std::string_view text, QVHitret& hitret) {
  TextRuns runs(text);
  while (runs.takeLeadingFeed())
    newLine(hitret);
  for (std::string_view run = runs.next(); !run.empty(); run = runs.next()) {
    printRun(run, hitret);
    if (runs.feedFollows()) newLine(hitret);
  }
}

/// The indent stands in the pen's place already and is taken off once more: lines end where they
/// always did.
int32_t QVPrintArea::roomAtPen() const {
  return nearestCoordinate(int64_t{rect_.right} - indentLeft_ - indentRight_ - position_.x);
}

void QVPrintArea::printRun(std::string_view run, QVHitret& hitret) {
  bool freshLine = false;
  while (!run.empty()) {
    const bool lineStart = freshLine || position_.x == int64_t{rect_.left} + indentLeft_;
    const LinePart part = nextLine({run, roomAtPen(), (flags_ & FlagOneLine) != 0, lineStart},
                                   noLineStart_, usedStyle_, *device_);
    const std::string_view line = run.substr(0, part.bytes);
    if (part.after == AfterLine::End) {
      if (!line.empty()) endRun(line);
      return;
    }
    if (!line.empty()) drawLine(line);
    run.remove_prefix(part.bytes);
    newLine(hitret);
    freshLine = true;
  }
}

/// What fits whole is drawn in the middle, where that is asked for, and moves the pen.
void QVPrintArea::endRun(std::string_view line) {
  const int32_t width = device_->measure(usedStyle_, line);
  if (flags_ & FlagCentre) {
    const int64_t half = (int64_t{rect_.right} - rect_.left - width) / 2;
    if (half > 0) position_.x = nearestCoordinate(rect_.left + half);
  }
  drawLine(line);
  position_.x = nearestCoordinate(int64_t{position_.x} + width);
}

void QVPrintArea::drawLine(std::string_view line) {
  const TextRun run = {target_, position_.x, position_.y, usedStyle_, line};
  if (flags_ & FlagOutline)
    device_->drawOutlined(run, usedColour_, outlineColour_);
  else
    device_->draw(run, usedColour_);
}

// --- Pictures ---

void QVPrintArea::printSurface(const QVVSurface& source, const Rectangle& part, ColourKey key,
                               bool clip, bool wait) {
  const std::lock_guard guard(lock_);
  if (!target_) return;
  const Rectangle taken =
      part.width() == 0 ? Rectangle{0, 0, source.width(), source.height()} : part;
  int32_t width = taken.width(), height = taken.height();
  if (clip) {
    width = nearestCoordinate(std::min<int64_t>(width, int64_t{rect_.right} - position_.x));
    height = nearestCoordinate(std::min<int64_t>(height, int64_t{rect_.bottom} - position_.y));
  }
  width = std::max(width, 0);
  if (target_.surface8)
    source.blit(*target_.surface8, position_.x, position_.y, taken.left, taken.top, width, height,
                key);
  else
    source.blitTo32(*target_.surface32, position_.x, position_.y, taken.left, taken.top, width,
                    height, key);
  const Rectangle drawn = Rectangle::at(position_.x, position_.y, width, height);
  if (view_ && !drawn.empty()) view_->invalidate(&drawn, 0);
  position_.x = drawn.right;
  if (position_.x >= rect_.right) newLine(hitret_);
  if (!wait || !view_) return;
  constexpr int32_t WithoutLimit = -1;
  runWait(hitret_, WithoutLimit);
  goHome();
  clear(true, true);
}

void QVPrintArea::printImageFile(const char* path, ColourKey key, bool clip, bool wait) {
  if (!path || !QVFile::existsName(path)) return;
  QVDib picture;
  picture.loadByName(path);
  if (picture.empty() || picture.bitCount() != 8) return;
  QVVSurface surface;
  surface.assignDib(picture);
  printSurface(surface, {}, key, clip, wait);
}

}  // namespace qv
