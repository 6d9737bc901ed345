// The frame: which window is seen where. An area is walked from the top window down, with the part
// that nothing covers yet; so each pixel is copied once, except under shaped windows, whose outline
// is drawn over what lies below them.

#include <algorithm>
#include <mutex>

#include "host/compositor.h"

namespace qv {

struct Compositor::Scan {
  Region uncovered;
  std::vector<PlacedShape> shapes;  ///< of the windows around the one that is looked at
  std::vector<Copy> copies;         ///< from the top down
};

/// Moves a part of the client onto the screen and clips it to all that the window lies in; false
/// where nothing of it is seen.
bool Compositor::toScreen(const ScreenWindow& window, Rectangle& part) const {
  if (!seen(window)) return false;
  part =
      part.intersected({0, 0, window.client_.width(), window.client_.height()})
          .moved(window.outer_.left + window.client_.left, window.outer_.top + window.client_.top);
  for (const ScreenWindow* parent = window.parent_; parent; parent = parent->parent_)
    part = part.intersected({0, 0, parent->client_.width(), parent->client_.height()})
               .moved(parent->outer_.left + parent->client_.left,
                      parent->outer_.top + parent->client_.top);
  part = part.intersected(ScreenRectangle);
  return !part.empty();
}

/// Composes where the window stands, whether it is shown or has just been hidden.
void Compositor::composeWindow(const ScreenWindow& window) {
  int32_t x = 0, y = 0;
  originOf(window, x, y);
  const Rectangle place = Rectangle::at(x, y, window.outer_.width(), window.outer_.height());
  if (!window.parent_) return compose(place);
  if (!seen(*window.parent_)) return;
  Rectangle around = {0, 0, window.parent_->client_.width(), window.parent_->client_.height()};
  if (toScreen(*window.parent_, around)) compose(place.intersected(around));
}

void Compositor::compose(const Rectangle& area) {
  const Rectangle part = area.intersected(ScreenRectangle);
  if (part.empty()) return;
  Scan scan{Region(part), {}, {}};
  for (auto window = windows_.rbegin(); window != windows_.rend(); ++window)
    collect(**window, 0, 0, part, scan);
  for (const Rectangle& ground : scan.uncovered.rectangles())
    for (int32_t y = ground.top; y < ground.bottom; ++y)
      std::fill_n(frame_.begin() + static_cast<ptrdiff_t>(y) * ScreenWidth + ground.left,
                  ground.width(), GroundColour);
  for (auto copy = scan.copies.rbegin(); copy != scan.copies.rend(); ++copy)
    execute(*copy, copy->part, 0);
  // What is taken may be more than what has changed: many small parts are taken as one.
  constexpr size_t MostParts = 32;
  damage_.add(part);
  onlyNewWindows_ = false;
  if (damage_.rectangles().size() > MostParts) damage_ = Region(damage_.bounds());
}

/// x, y: the screen's place of the parent's client.
void Compositor::collect(const ScreenWindow& window, int32_t x, int32_t y, const Rectangle& clip,
                         Scan& scan) {
  if (!window.visible_ || scan.uncovered.empty()) return;
  x += window.outer_.left;
  y += window.outer_.top;
  const Rectangle seen =
      clip.intersected(Rectangle::at(x, y, window.outer_.width(), window.outer_.height()));
  if (seen.empty()) return;
  const bool shaped = !window.shape_.rectangles.empty();
  if (shaped) scan.shapes.push_back({&window.shape_, x, y});
  const int32_t clientX = x + window.client_.left, clientY = y + window.client_.top;
  const Rectangle client = seen.intersected(
      Rectangle::at(clientX, clientY, window.client_.width(), window.client_.height()));
  for (auto child = window.children_.rbegin(); child != window.children_.rend(); ++child)
    collect(**child, clientX, clientY, client, scan);
  if (!window.painted_.empty()) {
    for (const Rectangle& open : scan.uncovered.rectangles()) {
      const Rectangle part = open.intersected(seen);
      if (!part.empty()) scan.copies.push_back({&window, part, x, y, scan.shapes});
    }
    if (scan.shapes.empty()) scan.uncovered.subtract(seen);
  }
  if (shaped) scan.shapes.pop_back();
}

/// Draws what lies in all outlines from the one of that number on.
void Compositor::execute(const Copy& copy, const Rectangle& part, size_t shape) {
  if (shape == copy.shapes.size()) return copyRows(copy, part);
  const PlacedShape& placed = copy.shapes[shape];
  placed.shape->forEachIn(part.moved(-placed.x, -placed.y), [&](const Rectangle& run) {
    execute(copy, run.moved(placed.x, placed.y), shape + 1);
  });
}

void Compositor::copyRows(const Copy& copy, const Rectangle& part) {
  const int32_t stride = copy.window->outer_.width();
  for (int32_t y = part.top; y < part.bottom; ++y)
    std::copy_n(copy.window->painted_.begin() + static_cast<ptrdiff_t>(y - copy.y) * stride +
                    (part.left - copy.x),
                part.width(), frame_.begin() + static_cast<ptrdiff_t>(y) * ScreenWidth + part.left);
}

// --- The UI thread ---

Compositor::News Compositor::news() const {
  const std::lock_guard guard(lock_);
  if (damage_.empty()) return News::Nothing;
  return onlyNewWindows_ ? News::NewWindows : News::Pictures;
}

void Compositor::take(Frame& frame, bool whole) {
  const std::lock_guard guard(lock_);
  if (whole || frame.size() != frame_.size()) {
    frame = frame_;
  } else {
    for (const Rectangle& part : damage_.rectangles())
      for (int32_t y = part.top; y < part.bottom; ++y) {
        const ptrdiff_t at = static_cast<ptrdiff_t>(y) * ScreenWidth + part.left;
        std::copy_n(frame_.begin() + at, part.width(), frame.begin() + at);
      }
  }
  damage_.clear();
  onlyNewWindows_ = false;
}

/// The topmost window at a place of the screen, the innermost of those that lie in one another.
ScreenWindow* Compositor::hit(const std::vector<ScreenWindow*>& windows, int32_t originX,
                              int32_t originY, const Rectangle& clip, int32_t x, int32_t y) const {
  for (auto at = windows.rbegin(); at != windows.rend(); ++at) {
    ScreenWindow& window = **at;
    if (!window.visible_) continue;
    const int32_t left = originX + window.outer_.left, top = originY + window.outer_.top;
    const Rectangle place =
        clip.intersected(Rectangle::at(left, top, window.outer_.width(), window.outer_.height()));
    if (!place.contains(x, y)) continue;
    bool inside = window.shape_.rectangles.empty();
    if (!inside)
      window.shape_.forEachIn({x - left, y - top, x - left + 1, y - top + 1},
                              [&](const Rectangle&) { inside = true; });
    if (!inside) continue;
    const Rectangle client = window.client_.moved(left, top);
    if (ScreenWindow* child =
            hit(window.children_, client.left, client.top, place.intersected(client), x, y))
      return child;
    if (!window.painted_.empty()) return &window;
  }
  return nullptr;
}

Compositor::FrameHit Compositor::frameAt(int32_t x, int32_t y) const {
  const std::lock_guard guard(lock_);
  ScreenWindow* window = hit(windows_, 0, 0, ScreenRectangle, x, y);
  const auto found = [this](ScreenWindow& frame, bool caption, bool picture) {
    int32_t left = 0, top = 0;
    originOf(frame, left, top);
    return FrameHit{&frame, Rectangle::at(left, top, frame.outer_.width(), frame.outer_.height()),
                    caption, picture};
  };
  if (window && window->framed_) {
    int32_t left = 0, top = 0;
    originOf(*window, left, top);
    const Rectangle client = window->client_.moved(left, top);
    if (!client.contains(x, y)) return found(*window, y < client.top, false);
  }
  // The nearest frame counts: one with a border keeps what lies in it from moving.
  for (; window && !window->framed_; window = window->parent_)
    if (window->loose_) return found(*window, false, true);
  return {};
}

Compositor::WindowHit Compositor::windowAt(int32_t x, int32_t y) const {
  const std::lock_guard guard(lock_);
  const ScreenWindow* window = hit(windows_, 0, 0, ScreenRectangle, x, y);
  if (!window) return {};
  int32_t left = 0, top = 0;
  originOf(*window, left, top);
  return {window, x - left - window->client_.left, y - top - window->client_.top};
}

}  // namespace qv
