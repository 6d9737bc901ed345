#include "host/compositor.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace qv {

namespace {

size_t pixelCount(const Rectangle& rectangle) {
  return rectangle.empty()
             ? 0
             : static_cast<size_t>(rectangle.width()) * static_cast<size_t>(rectangle.height());
}

Rectangle sizeOf(const Rectangle& rectangle) {
  return {0, 0, std::max(0, rectangle.width()), std::max(0, rectangle.height())};
}

}  // namespace

class Compositor::Change {
 public:
  explicit Change(Compositor& compositor) : compositor_(compositor) { compositor.lock_.lock(); }
  ~Change() {
    const bool something = compositor_.pending_ || !compositor_.damage_.empty();
    compositor_.lock_.unlock();
    if (something && !compositor_.wakePending_.exchange(true) && compositor_.wakeHook_)
      compositor_.wakeHook_();
  }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;

 private:
  Compositor& compositor_;
};

Compositor::Compositor()
    : lock_("compositor", LockRank::Compositor),
      frame_(static_cast<size_t>(ScreenWidth) * ScreenHeight, GroundColour) {}

// --- Windows ---

void Compositor::add(ScreenWindow& window, ScreenWindow* parent, Placement placement) {
  const Change change(*this);
  if (window.present_) return;
  // What may fail comes first: a window without pixels is not put in.
  std::vector<uint32_t> painted = std::move(placement.decoration);
  if (painted.empty() && placement.source) painted.assign(pixelCount(placement.outer), 0);
  (parent ? parent->children_ : windows_).push_back(&window);
  window.present_ = true;
  window.visible_ = false;
  window.framed_ = placement.framed;
  window.loose_ = placement.loose;
  window.parent_ = parent;
  window.outer_ = placement.outer;
  window.client_ = placement.client;
  window.source_ = placement.source;
  window.painted_ = std::move(painted);
  window.visible_ = placement.visible;
  const bool onlyNewWindows = onlyNewWindows_ || damage_.empty();
  paintWhole(window);
  onlyNewWindows_ = onlyNewWindows;
}

void Compositor::remove(ScreenWindow& window) {
  const Change change(*this);
  if (!window.present_) return;
  window.visible_ = false;
  composeWindow(window);
  std::erase(window.parent_ ? window.parent_->children_ : windows_, &window);
  window.present_ = false;
  window.parent_ = nullptr;
  window.source_ = nullptr;
  window.shape_ = {};
  window.holds_ = 0;
  window.update_.clear();
  window.painted_ = {};
}

bool Compositor::present(const ScreenWindow& window) const {
  const std::lock_guard guard(lock_);
  return window.present_;
}

bool Compositor::shown(const ScreenWindow& window) const {
  const std::lock_guard guard(lock_);
  return window.visible_;
}

Rectangle Compositor::outer(const ScreenWindow& window) const {
  const std::lock_guard guard(lock_);
  return window.outer_;
}

Rectangle Compositor::client(const ScreenWindow& window) const {
  const std::lock_guard guard(lock_);
  return sizeOf(window.client_);
}

Rectangle Compositor::onScreen(const ScreenWindow& window) const {
  const std::lock_guard guard(lock_);
  int32_t x = 0, y = 0;
  originOf(window, x, y);
  return sizeOf(window.outer_).moved(x, y);
}

/// The corner of a window on the screen.
void Compositor::originOf(const ScreenWindow& window, int32_t& x, int32_t& y) const {
  x = window.outer_.left;
  y = window.outer_.top;
  for (const ScreenWindow* parent = window.parent_; parent; parent = parent->parent_) {
    x += parent->outer_.left + parent->client_.left;
    y += parent->outer_.top + parent->client_.top;
  }
}

/// Shown, and all that it lies in.
bool Compositor::seen(const ScreenWindow& window) const {
  const ScreenWindow* at = &window;
  while (at && at->visible_)
    at = at->parent_;
  return !at;
}

// --- Painting ---

void Compositor::addToUpdate(ScreenWindow& window, const Rectangle* area) {
  // What comes into sight later is painted whole then.
  if (!window.present_ || !window.source_ || !seen(window)) return;
  const Rectangle client = sizeOf(window.client_);
  window.update_.add(area ? area->intersected(client) : client);
}

void Compositor::paint(ScreenWindow& window) {
  if (window.holds_ > 0 || window.update_.empty()) return;
  if (seen(window) && window.source_) {
    const Rectangle size = sizeOf(window.client_);
    for (const Rectangle& part : window.update_.rectangles())
      window.source_->paint(window.painted_, size.width(), size.height(), part);
    for (Rectangle part : window.update_.rectangles())
      if (toScreen(window, part)) compose(part);
  }
  window.update_.clear();
}

void Compositor::paintTree(ScreenWindow& window) {
  addToUpdate(window, nullptr);
  if (window.holds_ == 0) {
    const Rectangle size = sizeOf(window.client_);
    for (const Rectangle& part : window.update_.rectangles())
      window.source_->paint(window.painted_, size.width(), size.height(), part);
    window.update_.clear();
  }
  for (ScreenWindow* child : window.children_)
    if (child->visible_) paintTree(*child);
}

/// Paints a window that has come into sight with all that lie in it.
void Compositor::paintWhole(ScreenWindow& window) {
  if (!seen(window)) return;
  paintTree(window);
  composeWindow(window);
}

void Compositor::invalidate(ScreenWindow& window, const Rectangle* area) {
  const Change change(*this);
  addToUpdate(window, area);
  if (!window.update_.empty() && window.holds_ == 0) pending_ = true;
}

void Compositor::update(ScreenWindow& window) {
  const Change change(*this);
  paint(window);
}

void Compositor::flush(ScreenWindow& window, const Rectangle* area) {
  const Change change(*this);
  addToUpdate(window, area);
  paint(window);
}

void Compositor::hold(ScreenWindow& window) {
  const Change change(*this);
  if (window.present_) ++window.holds_;
}

void Compositor::release(ScreenWindow& window, bool redraw) {
  const Change change(*this);
  if (window.holds_ == 0 || --window.holds_ > 0) return;
  if (redraw) {
    addToUpdate(window, nullptr);
    paint(window);
  } else if (!window.update_.empty()) {
    pending_ = true;
  }
}

void Compositor::paintPending() {
  // Who comes here looks by itself, and would wake itself for ever.
  const std::lock_guard guard(lock_);
  if (!std::exchange(pending_, false)) return;
  for (ScreenWindow* window : windows_)
    paintPendingIn(*window);
}

void Compositor::paintPendingIn(ScreenWindow& window) {
  paint(window);
  for (ScreenWindow* child : window.children_)
    paintPendingIn(*child);
}

// --- Changes of place ---

void Compositor::show(ScreenWindow& window, bool visible) {
  const Change change(*this);
  if (!window.present_ || window.visible_ == visible) return;
  window.visible_ = visible;
  if (visible)
    paintWhole(window);
  else
    composeWindow(window);
}

void Compositor::placeAt(ScreenWindow& window, int32_t x, int32_t y) {
  if (!window.present_ || (window.outer_.left == x && window.outer_.top == y)) return;
  // The old place is composed without the window, the new one with it: painted pixels stay.
  const bool visible = std::exchange(window.visible_, false);
  if (visible) composeWindow(window);
  window.outer_ = sizeOf(window.outer_).moved(x, y);
  window.visible_ = visible;
  if (visible) composeWindow(window);
}

void Compositor::move(ScreenWindow& window, int32_t x, int32_t y) {
  const Change change(*this);
  placeAt(window, x, y);
}

void Compositor::resize(ScreenWindow& window, int32_t outerWidth, int32_t outerHeight,
                        const Rectangle& client, std::vector<uint32_t> decoration) {
  const Change change(*this);
  if (!window.present_) return;
  const Rectangle outer =
      Rectangle::at(window.outer_.left, window.outer_.top, outerWidth, outerHeight);
  const bool takesPixels = !decoration.empty() || window.source_;
  std::vector<uint32_t> pixels = std::move(decoration);
  if (pixels.empty() && window.source_) {
    // Before anything changes, since memory may fail: the window then stays as it was.
    pixels.assign(pixelCount(outer), 0);
    // Under a hold the old picture stays as far as it goes.
    const Rectangle before = sizeOf(window.outer_), kept = before.intersected(sizeOf(outer));
    for (int32_t y = 0; y < kept.height(); ++y)
      std::copy_n(window.painted_.begin() + static_cast<ptrdiff_t>(y) * before.width(),
                  kept.width(), pixels.begin() + static_cast<ptrdiff_t>(y) * outerWidth);
  }
  const bool visible = std::exchange(window.visible_, false);
  if (visible) composeWindow(window);
  window.outer_ = outer;
  window.client_ = client;
  if (takesPixels) window.painted_ = std::move(pixels);
  window.update_.clear();
  window.visible_ = visible;
  if (visible) paintWhole(window);
}

void Compositor::reshape(ScreenWindow& window, ClipShape shape) {
  const Change change(*this);
  // A picture of nothing but its key leaves the window's outline alone.
  if (!window.present_ || shape.rectangles.empty()) return;
  window.shape_ = std::move(shape);
  if (window.visible_) paintWhole(window);
}

bool Compositor::drag(ScreenWindow& window, int32_t x, int32_t y) {
  const Change change(*this);
  if (!window.present_ || !seen(window)) return false;
  const Rectangle size = sizeOf(window.outer_);
  x = std::max(0, std::min(x, ScreenWidth - size.width()));
  y = std::max(0, std::min(y, ScreenHeight - size.height()));
  int32_t originX = 0, originY = 0;
  originOf(window, originX, originY);
  placeAt(window, window.outer_.left + x - originX, window.outer_.top + y - originY);
  return true;
}

}  // namespace qv
