#include "input/animated_control.h"

#include <algorithm>
#include <mutex>

#include "platform/display/key_codes.h"

namespace qv {

namespace {

constexpr int64_t TenthMillis = 100;

constexpr bool isRegion(int32_t value) {
  return value >= 0 && value < AnimatedControl::Slots;
}

/// Times below -1 are over at once.
constexpr uint32_t limitMillis(int32_t tenths) {
  if (tenths == 0 || tenths == AnimatedControl::WithoutLimit) return WaitForever;
  return static_cast<uint32_t>(
      std::clamp(int64_t{tenths} * TenthMillis, int64_t{0}, int64_t{WaitForever} - 1));
}

constexpr bool isHover(int32_t result) {
  return isRegion(result - FirstHoverResult);
}

}  // namespace

ControlItem::~ControlItem() {
  if (owner_) owner_->removeItem(region_);
}

AnimatedControl::AnimatedControl() : lock_("animated control", LockRank::Object) {}

AnimatedControl::~AnimatedControl() {
  if (parent_) parent_->removeChild(*this);
  while (!children_.empty())
    removeChild(*children_.back());
  for (ControlItem* item : slots_)
    if (item) item->owner_ = nullptr;
}

void AnimatedControl::create(int32_t width, int32_t height, InputHost* host) {
  host_ = host;
  clickMap_.create(width, height, 0, 1, host);
}

// --- Items ---

void AnimatedControl::addItem(int32_t region, ControlItem* item, int32_t x, int32_t y) {
  if (!isRegion(region) || !item) return;
  if (item->owner_) item->owner_->removeItem(item->region_);
  removeItem(region);
  item->setRectangle(Rectangle::at(x, y, item->rectangle().width(), item->rectangle().height()));
  item->region_ = region;
  item->owner_ = this;
  {
    const std::lock_guard guard(lock_);
    slots_[static_cast<size_t>(region)] = item;
    order_.push_back(region);
  }
  const Rectangle& area = item->rectangle();
  clickMap_.addRect(area.left, area.top, area.width(), area.height(), region);
}

void AnimatedControl::removeItem(int32_t region) {
  ControlItem* const gone = item(region);
  if (!gone) return;
  {
    const std::lock_guard guard(lock_);
    std::erase(order_, region);
    slots_[static_cast<size_t>(region)] = nullptr;
  }
  gone->owner_ = nullptr;
  const Rectangle& area = gone->rectangle();
  clickMap_.addRect(area.left, area.top, area.width(), area.height(), 0);
}

ControlItem* AnimatedControl::item(int32_t region) const {
  const std::lock_guard guard(lock_);
  return isRegion(region) ? slots_[static_cast<size_t>(region)] : nullptr;
}

std::vector<int32_t> AnimatedControl::order() const {
  const std::lock_guard guard(lock_);
  return order_;
}

/// In the tab order, as the item calls find them: one that takes another item off does no harm.
std::vector<ControlItem*> AnimatedControl::items() const {
  std::vector<ControlItem*> found;
  const std::lock_guard guard(lock_);
  for (const int32_t region : order_)
    found.push_back(slots_[static_cast<size_t>(region)]);
  return found;
}

void AnimatedControl::addChild(AnimatedControl& child) {
  for (const AnimatedControl* above = this; above; above = above->parent_)
    if (above == &child) return;
  if (child.parent_) child.parent_->removeChild(child);
  child.parent_ = this;
  child.clickMap_.setParent(&clickMap_);
  const std::lock_guard guard(lock_);
  children_.push_back(&child);
}

void AnimatedControl::removeChild(AnimatedControl& child) {
  if (child.parent_ != this) return;
  child.parent_ = nullptr;
  child.clickMap_.setParent(nullptr);
  const std::lock_guard guard(lock_);
  std::erase(children_, &child);
}

AnimatedControl::Holder AnimatedControl::holderOf(int32_t region) {
  if (ControlItem* own = item(region)) return {this, own};
  std::vector<AnimatedControl*> children;
  {
    const std::lock_guard guard(lock_);
    children = children_;
  }
  for (AnimatedControl* child : children)
    if (const Holder holder = child->holderOf(region); holder.item) return holder;
  return {};
}

// --- The view ---

void AnimatedControl::attachControl(View& view, int32_t x, int32_t y) {
  view_ = &view;
  if (QVVSurface* pixels = view.surface8()) {
    const int32_t width = clickMap_.width(), height = clickMap_.height();
    background_.create(width, height);
    background_.copyPaletteFrom(*pixels);
    pixels->blit(background_, 0, 0, x, y, width, height, KeyNone);
  }
  clickMap_.attach(view, x, y, 1);
  for (ControlItem* standing : items())
    standing->attach(view);
}

void AnimatedControl::detachControl(View& view) {
  if (view_ != &view) return;
  for (ControlItem* standing : items())
    standing->detach(view);
  clickMap_.detach();
  view.update();
  view_ = nullptr;
}

// --- The focus ---

void AnimatedControl::leave(const Holder& holder) {
  if (holder.item && holder.item->live() && holder.control->view_)
    holder.item->onLeave(*holder.control->view_);
}

void AnimatedControl::enter(const Holder& holder) {
  if (holder.item && holder.item->live() && holder.control->view_)
    holder.item->onEnter(*holder.control->view_);
}

ControlItem* AnimatedControl::moveFocus(int32_t region) {
  leave(holderOf(focus_));
  focus_ = region;
  const Holder holder = holderOf(region);
  enter(holder);
  return holder.item;
}

void AnimatedControl::setFocus(int32_t region) {
  moveFocus(region);
}

/// The live item that stands `step` places from the focus in the tab order, which has no ends: it
/// may be the one that has the focus. Null where none is live.
ControlItem* AnimatedControl::neighbour(int32_t step) const {
  const std::lock_guard guard(lock_);
  const auto count = static_cast<int32_t>(order_.size());
  if (count == 0) return nullptr;
  const auto found = std::ranges::find(order_, focus_);
  // Without a focus the first step leads to that end of the order from which it leads away.
  int32_t at = found != order_.end() ? static_cast<int32_t>(found - order_.begin())
               : step > 0            ? count - 1
                                     : 0;
  for (int32_t tried = 0; tried < count; ++tried) {
    at = (at + step + count) % count;
    ControlItem* const candidate = slots_[static_cast<size_t>(order_[static_cast<size_t>(at)])];
    if (candidate->live()) return candidate;
  }
  return nullptr;
}

void AnimatedControl::stepFocus(int32_t step) {
  const ControlItem* const next = neighbour(step);
  if (!next) return;
  int32_t x = clickMap_.originX() + next->rectangle().left;
  int32_t y = clickMap_.originY() + next->rectangle().top;
  if (host_ && window_->clientToScreen(x, y)) host_->setPointer(x, y);
  moveFocus(next->region());
}

// --- The wait ---

bool AnimatedControl::takesClick(int32_t region) {
  const Holder holder = holderOf(region);
  return holder.item && holder.control->view_ && holder.item->takesClick(*holder.control->view_);
}

int32_t AnimatedControl::waitForItem(int32_t keys) {
  const uint32_t limit = limitMillis(timeout_);
  for (;;) {
    const int32_t result = clickMap_.ClickWait(limit, keys);
    if (isHover(result)) {
      const int32_t region = result - FirstHoverResult;
      if (region == focus_ || moveFocus(region)) continue;
      return result;
    }
    if (!isRegion(result)) {
      // The next wait brings the highlight up to date.
      if (result == ClickTimeout) clickMap_.requestHover(1);
      return result;
    }
    if (result != focus_) moveFocus(result);
    if (takesClick(result)) return result;
  }
}

AnimatedControl::KeyAction AnimatedControl::actionOf(int32_t result) {
  struct Row {
    int key;
    KeyAction action;
  };
  constexpr Row Rows[] = {
      {KeyTab, KeyAction::Next},          {KeyRight, KeyAction::Next},
      {KeyDown, KeyAction::Next},         {KeyNum0 + 2, KeyAction::Next},
      {KeyNum0 + 6, KeyAction::Next},     {KeyLeft, KeyAction::Previous},
      {KeyUp, KeyAction::Previous},       {KeyNum0 + 4, KeyAction::Previous},
      {KeyNum0 + 8, KeyAction::Previous}, {KeyReturn, KeyAction::Press},
      {KeySpace, KeyAction::Press},       {KeyEscape, KeyAction::Cancel},
  };
  for (const Row& row : Rows)
    if (result == FirstKeyResult + row.key) return row.action;
  return KeyAction::None;
}

int32_t AnimatedControl::wait(int32_t useKeys, int32_t keys) {
  for (;;) {
    const int32_t result = waitForItem(keys);
    if (!useKeys || !window_) return result;
    switch (actionOf(result)) {
      case KeyAction::Next:
        stepFocus(1);
        return result;
      case KeyAction::Previous:
        stepFocus(-1);
        return result;
      case KeyAction::Press:
        // The click comes back as an ordinary press on what lies under the pointer.
        if (!host_) return result;
        host_->pressPointer();
        break;
      case KeyAction::Cancel:
        return ClickCancel;
      case KeyAction::None:
        return result;
    }
  }
}

}  // namespace qv
