#pragma once

/// AnimatedControl: a click map with up to 256 live items on it, for screens with many buttons.
/// The pointer's way into the map is the only one: a key that moves the focus moves the real
/// pointer, and the key that accepts presses its button there.
///
/// Threads: the scenario's. The lock guards what the window's thread looks up to paint the items;
/// it is never held while an item is called or a player is waited for.

#include <array>
#include <cstdint>
#include <vector>

#include "graphics/surface.h"
#include "input/click_map.h"
#include "input/control_item.h"
#include "input/input_host.h"
#include "platform/kernel/kernel.h"

namespace qv {

/// The window in which a control lies.
class ControlWindow {
 public:
  virtual ~ControlWindow() = default;
  /// Turns a point of its client into one of the screen; false when the window is gone.
  virtual bool clientToScreen(int32_t& x, int32_t& y) const = 0;
};

class AnimatedControl {
 public:
  static constexpr int32_t Slots = 256, NoFocus = -1;
  static constexpr int32_t WithoutLimit = -1;

  AnimatedControl();
  virtual ~AnimatedControl();  ///< lets its items and child controls go
  AnimatedControl(const AnimatedControl&) = delete;
  AnimatedControl& operator=(const AnimatedControl&) = delete;

  /// A map of that size whose regions are all 0. Throws NotEnoughMemoryException.
  void create(int32_t width, int32_t height, InputHost* host);
  /// Null switches all keyboard handling off: keys are no business of a wait unless the control has
  /// a window.
  void setWindow(const ControlWindow* window) { window_ = window; }
  /// Tenths of a second; 0 and -1 are without limit.
  void setTimeout(int32_t tenths) { timeout_ = tenths; }

  /// Puts the item's left top corner to x, y of the map, in the place of what had its region, and
  /// last in the tab order. Nothing for a region outside 0 to 255.
  void addItem(int32_t region, ControlItem* item, int32_t x, int32_t y);
  void removeItem(int32_t region);
  ControlItem* item(int32_t region) const;
  std::vector<int32_t> order() const;
  /// Another control whose items share this one's focus; its map joins this one's stack.
  void addChild(AnimatedControl& child);
  void removeChild(AnimatedControl& child);

  /// The map onto the view, which keeps the pixels there; all items are attached and drawn.
  void attachControl(View& view, int32_t x, int32_t y);
  void detachControl(View& view);

  /// A region whose item took the click; -1 the right button or Esc, -2 the time-out; a key (2048
  /// and on, with `keys`); 4096 + region for a hover where no item is. With `useKeys` keys move the
  /// focus and press. Raises ExitScenarioException.
  int32_t wait(int32_t useKeys, int32_t keys);
  /// Moves the focus and leaves the pointer.
  void setFocus(int32_t region);
  int32_t focus() const { return focus_; }

  QVClickMap& clickMap() { return clickMap_; }
  View* view() const { return view_; }
  const QVVSurface& background() const { return background_; }  ///< what the view showed there

 private:
  struct Holder {
    AnimatedControl* control = nullptr;
    ControlItem* item = nullptr;
  };
  enum class KeyAction { None, Next, Previous, Press, Cancel };

  static KeyAction actionOf(int32_t result);
  Holder holderOf(int32_t region);
  std::vector<ControlItem*> items() const;
  int32_t waitForItem(int32_t keys);
  ControlItem* moveFocus(int32_t region);
  bool takesClick(int32_t region);
  ControlItem* neighbour(int32_t step) const;
  void stepFocus(int32_t step);
  static void leave(const Holder& holder);
  static void enter(const Holder& holder);

  mutable Lock lock_;  ///< guards slots, order and children
  std::vector<AnimatedControl*> children_;
  AnimatedControl* parent_ = nullptr;
  std::array<ControlItem*, Slots> slots_{};
  QVClickMap clickMap_;
  View* view_ = nullptr;
  QVVSurface background_;
  int32_t timeout_ = WithoutLimit;
  int32_t focus_ = NoFocus;
  std::vector<int32_t> order_;
  const ControlWindow* window_ = nullptr;
  InputHost* host_ = nullptr;
};

}  // namespace qv
