#pragma once

/// ControlItem: what stands on an animated control, a button or any other thing with a place and a
/// region. How it looks and what a click does to it is the item's own. Whoever makes it keeps it;
/// an item that goes leaves its control. Scenario thread.

#include <cstdint>

#include "graphics/rectangle.h"
#include "graphics/view.h"

namespace qv {

class AnimatedControl;

class ControlItem {
 public:
  ControlItem() = default;
  virtual ~ControlItem();
  ControlItem(const ControlItem&) = delete;
  ControlItem& operator=(const ControlItem&) = delete;

  /// What it covers: its place in the control's map.
  virtual void setRectangle(const Rectangle& rectangle) { rectangle_ = rectangle; }
  virtual void setEnabled(int32_t enabled) { enabled_ = enabled; }
  virtual void setShown(int32_t shown) { shown_ = shown; }
  /// Whether a click on it ends the wait.
  virtual bool takesClick(View& view) = 0;
  /// The focus comes and goes. Only called while the item is enabled and shown.
  virtual void onEnter(View& view) = 0;
  virtual void onLeave(View& view) = 0;
  /// Draws the item as it is.
  virtual void draw(View& view) = 0;
  /// The control goes onto a view, and off it.
  virtual void attach(View& view) { draw(view); }
  virtual void detach(View& /*view*/) {}

  int32_t region() const { return region_; }
  const Rectangle& rectangle() const { return rectangle_; }
  AnimatedControl* owner() const { return owner_; }  ///< null: it stands on none
  int32_t enabled() const { return enabled_; }
  int32_t shown() const { return shown_; }
  bool live() const { return enabled_ && shown_; }

 private:
  friend class AnimatedControl;
  int32_t region_ = -1;
  Rectangle rectangle_;
  AnimatedControl* owner_ = nullptr;
  int32_t enabled_ = 1, shown_ = 1;
};

}  // namespace qv
