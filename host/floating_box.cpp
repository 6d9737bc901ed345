#include "host/floating_box.h"

#include <algorithm>
#include <utility>

#include "host/box_drawing.h"
#include "platform/display/key_codes.h"

namespace qv {

using namespace box_look;

FloatingBox::FloatingBox(TextRenderer& text, std::string caption, std::vector<Button> buttons)
    : text_(text), caption_(std::move(caption)), buttons_(std::move(buttons)) {}

void FloatingBox::layOut(int insideWidth, int insideHeight) {
  const int count = static_cast<int>(buttons_.size());
  const int row = count * ButtonWidth + (count - 1) * ButtonGap;
  // The caption may widen the box, but only to what a line of text may.
  const int captionWidth = text_.measure(BodyText, caption_) + Margin;
  const int across = std::max({insideWidth, row, captionWidth}) + 2 * (FrameWidth + Margin);
  const int down = insideHeight + CaptionHeight + ButtonHeight + 2 * FrameWidth + 3 * Margin;
  bounds_.width = std::min(across, ScreenWidth);
  bounds_.height = std::min(down, ScreenHeight);
  moveTo((ScreenWidth - bounds_.width) / 2, (ScreenHeight - bounds_.height) / 2);
}

void FloatingBox::moveTo(int x, int y) {
  x = std::clamp(x, 0, ScreenWidth - bounds_.width);
  y = std::clamp(y, 0, ScreenHeight - bounds_.height);
  if (x == bounds_.x && y == bounds_.y) return;
  bounds_.x = x;
  bounds_.y = y;
  changed_ = true;
}

BoxRect FloatingBox::inside() const {
  const int edge = FrameWidth + Margin;
  return {bounds_.x + edge, bounds_.y + FrameWidth + CaptionHeight + Margin,
          bounds_.width - 2 * edge,
          bounds_.height - 2 * FrameWidth - CaptionHeight - ButtonHeight - 3 * Margin};
}

BoxRect FloatingBox::captionBar() const {
  return {bounds_.x + FrameWidth, bounds_.y + FrameWidth, bounds_.width - 2 * FrameWidth,
          CaptionHeight};
}

BoxRect FloatingBox::buttonRect(size_t index) const {
  const int count = static_cast<int>(buttons_.size());
  const int row = count * ButtonWidth + (count - 1) * ButtonGap;
  return {
      bounds_.x + (bounds_.width - row) / 2 + static_cast<int>(index) * (ButtonWidth + ButtonGap),
      bounds_.y + bounds_.height - FrameWidth - Margin - ButtonHeight, ButtonWidth, ButtonHeight};
}

std::optional<size_t> FloatingBox::buttonAt(int x, int y) const {
  for (size_t index = 0; index < buttons_.size(); ++index)
    if (buttonRect(index).contains(x, y)) return index;
  return std::nullopt;
}

void FloatingBox::setFocus(std::optional<size_t> focus) {
  if (focus == focus_) return;
  focus_ = focus;
  changed_ = true;
}

void FloatingBox::choose(int result) {
  chosen_ = result;
  changed_ = true;
}

bool FloatingBox::takeChanged() {
  return std::exchange(changed_, false);
}

void FloatingBox::take(const DisplayEvent& event) {
  if (done()) return;
  using Kind = DisplayEvent::Kind;
  switch (event.kind) {
    case Kind::PointerMove:
    case Kind::ButtonDown:
    case Kind::ButtonUp:
      if (held_ || dragging_ || !takeInside(event)) takePointer(event);
      break;
    case Kind::KeyDown:
    case Kind::KeyUp:
      if (event.key == KeyShift) shift_ = event.kind == Kind::KeyDown;
      if (!takeInside(event)) takeKey(event);
      break;
    case Kind::FocusLost:  // the release of what is held may never come
      shift_ = dragging_ = false;
      held_.reset();
      changed_ = true;
      break;
    default:
      takeInside(event);
      break;
  }
}

void FloatingBox::takePointer(const DisplayEvent& event) {
  using Kind = DisplayEvent::Kind;
  if (event.kind == Kind::PointerMove) {
    if (dragging_) moveTo(event.x - grabX_, event.y - grabY_);
    if (held_) {
      const bool over = buttonRect(*held_).contains(event.x, event.y);
      if (std::exchange(over_, over) != over) changed_ = true;
    }
    return;
  }
  if (event.button != PointerButton::Left) return;
  if (event.kind == Kind::ButtonDown) {
    held_ = buttonAt(event.x, event.y);
    over_ = held_.has_value();
    if (held_) {
      focus_ = held_;
      changed_ = true;
    } else if (captionBar().contains(event.x, event.y)) {
      dragging_ = true;
      grabX_ = event.x - bounds_.x;
      grabY_ = event.y - bounds_.y;
    }
    return;
  }
  dragging_ = false;
  if (!held_) return;
  const size_t released = *held_;
  held_.reset();
  changed_ = true;
  if (buttonRect(released).contains(event.x, event.y)) pressed(buttons_[released].result);
}

void FloatingBox::moveFocus(int by) {
  // One more stop than there are buttons where the inside takes the keys, too.
  const int stops = static_cast<int>(buttons_.size()) + (insideTakesFocus() ? 1 : 0);
  const int at = focus_ ? static_cast<int>(*focus_) : stops - 1;
  const int next = (at + by + stops) % stops;
  if (next < static_cast<int>(buttons_.size()))
    setFocus(static_cast<size_t>(next));
  else
    setFocus(std::nullopt);
}

void FloatingBox::takeKey(const DisplayEvent& event) {
  if (event.kind != DisplayEvent::Kind::KeyDown || event.alt) return;
  switch (event.key) {
    case KeyTab:
      moveFocus(shift_ ? -1 : 1);
      return;
    case KeyLeft:
    case KeyUp:
      moveFocus(-1);
      return;
    case KeyRight:
    case KeyDown:
      moveFocus(1);
      return;
    default:
      break;
  }
  // A key that was already down when the box came up must not answer it.
  if (event.repeat) return;
  if (event.key == KeyReturn || event.key == KeySpace) {
    if (focus_) pressed(buttons_[*focus_].result);
  } else if (event.key == KeyEscape) {
    if (const std::optional<int> result = cancelResult()) choose(*result);
  } else {
    for (const Button& button : buttons_)
      if (button.key != 0 && button.key == event.key) {
        pressed(button.result);
        return;
      }
  }
}

void FloatingBox::drawButton(Frame& frame, size_t index) const {
  const BoxRect rect = buttonRect(index);
  const bool down = held_ == index && over_;
  const bool focused = focus_ == index;
  fillRect(frame, rect, Face);
  edgeRect(frame, rect, Edge, Edge);
  edgeRect(frame, rect.shrunk(1), down ? Shade : Light, down ? Light : Shade);
  if (focused) edgeRect(frame, rect, ChosenBack, ChosenBack);
  const std::string label = shortened(text_, BodyText, buttons_[index].label, rect.width - 8);
  const int width = text_.measure(BodyText, label);
  const int shift = down ? 1 : 0;
  drawRun(frame, text_, rect.shrunk(2), rect.x + (rect.width - width) / 2 + shift,
          rect.y + (rect.height - BodyText.heightPixels) / 2 + shift, BodyText, label, Ink);
  if (focused) dottedRect(frame, rect.shrunk(4), FaintInk);
}

void FloatingBox::draw(Frame& frame) const {
  drawRaisedFrame(frame, &text_, bounds_, caption_);
  drawInside(frame);
  for (size_t index = 0; index < buttons_.size(); ++index)
    drawButton(frame, index);
}

}  // namespace qv
