#pragma once

/// What all boxes of the system share: a raised frame in the game screen with a caption bar by
/// which it is dragged, and a row of buttons served by pointer and keys. A box is a state: events
/// go in, a picture and an answer come out, nothing waits. Used by the UI thread alone; texts are
/// Shift-JIS.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/display/display.h"
#include "platform/text/text_renderer.h"

namespace qv {

struct BoxRect {
  int x = 0, y = 0, width = 0, height = 0;
  bool contains(int px, int py) const {
    return px >= x && py >= y && px < x + width && py < y + height;
  }
  bool contains(const BoxRect& other) const {
    return other.x >= x && other.y >= y && other.x + other.width <= x + width &&
           other.y + other.height <= y + height;
  }
  BoxRect shrunk(int by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
  bool operator==(const BoxRect&) const = default;
};

class FloatingBox {
 public:
  virtual ~FloatingBox() = default;
  FloatingBox(const FloatingBox&) = delete;
  FloatingBox& operator=(const FloatingBox&) = delete;

  /// Takes a device event, unless the box is answered already. Coordinates are the screen's.
  void take(const DisplayEvent& event);
  /// True once a button has been chosen: the box is then to be taken off the screen.
  bool done() const { return chosen_.has_value(); }
  void draw(Frame& frame) const;
  /// True when the picture has changed since the last call; true the first time.
  bool takeChanged();

  /// The box in the screen; always wholly inside it.
  const BoxRect& bounds() const { return bounds_; }
  /// Moves the top left corner, as far as the box stays inside the screen.
  void moveTo(int x, int y);
  /// A button's place in the screen, by its index from the left.
  BoxRect buttonRect(size_t index) const;
  size_t buttonCount() const { return buttons_.size(); }
  /// The button that Return presses, or nothing while the keys go to the box's inside.
  std::optional<size_t> focus() const { return focus_; }

 protected:
  struct Button {
    std::string label;
    int result = 0;
    int key = 0;  ///< a key that chooses it at once, or 0
  };

  FloatingBox(TextRenderer& text, std::string caption, std::vector<Button> buttons);

  /// Sets the size for an inside of at least this size, centres the box, and places the buttons.
  void layOut(int insideWidth, int insideHeight);
  /// The part between caption bar and buttons, in the screen.
  BoxRect inside() const;
  void setFocus(std::optional<size_t> focus);
  void choose(int result);
  void changed() { changed_ = true; }
  std::optional<int> chosen() const { return chosen_; }
  const std::vector<Button>& buttons() const { return buttons_; }
  TextRenderer& text() const { return text_; }

  virtual void drawInside(Frame& frame) const = 0;
  /// The inside's own input, before that of the buttons. True when the event was used up.
  virtual bool takeInside(const DisplayEvent&) { return false; }
  /// A button was pressed; by default it is the answer.
  virtual void pressed(int result) { choose(result); }
  /// Esc: the result that cancels, or nothing.
  virtual std::optional<int> cancelResult() const = 0;
  /// True where Tab also stops at the inside.
  virtual bool insideTakesFocus() const { return false; }

 private:
  void takePointer(const DisplayEvent& event);
  void takeKey(const DisplayEvent& event);
  void moveFocus(int by);
  std::optional<size_t> buttonAt(int x, int y) const;
  BoxRect captionBar() const;
  void drawButton(Frame& frame, size_t index) const;

  TextRenderer& text_;
  std::string caption_;
  std::vector<Button> buttons_;
  BoxRect bounds_;
  std::optional<size_t> focus_ = 0;
  std::optional<size_t> held_;  ///< the button that the pointer pressed and has not released
  bool over_ = false;           ///< the pointer is on the held button
  bool dragging_ = false;
  bool shift_ = false;
  int grabX_ = 0, grabY_ = 0;  ///< the pointer's place in the box when the drag began
  bool changed_ = true;
  std::optional<int> chosen_;
};

}  // namespace qv
