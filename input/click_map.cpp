#include "input/click_map.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "foundation/diagnostic.h"

namespace qv {

namespace {

// Waits of a map that is polled while somebody posts and posts stay short of memory's end.
constexpr size_t MostPosted = 65'536;

}  // namespace

QVClickMap::QVClickMap()
    : event_("click map"),
      postedLock_("posted results", LockRank::Leaf),
      lastReturn_(tickCount()) {}

QVClickMap::~QVClickMap() {
  detach();
  setParent(nullptr);
  while (!below_.empty())
    below_.back()->setParent(nullptr);
}

void QVClickMap::create(int32_t width, int32_t height, uint8_t fill, int32_t hoverEnabled,
                        InputHost* host) {
  hoverEnabled_ = hoverEnabled;
  host_ = host;
  QVVSurface::create(width, height);
  QVVSurface::fill(fill);
}

void QVClickMap::loadDib(const QVDib& dib, int32_t hoverEnabled, InputHost* host) {
  hoverEnabled_ = hoverEnabled;
  host_ = host;
  assignDib(dib);
}

void QVClickMap::setCallback(InputCallback callback) {
  callback_ = callback;
}

void QVClickMap::setOrigin(int32_t x, int32_t y) {
  originX_ = x;
  originY_ = y;
}

void QVClickMap::addRect(int32_t x, int32_t y, int32_t width, int32_t height, int32_t region) {
  const Rectangle area = Rectangle::at(x, y, width, height);
  if (!area.empty()) QVVSurface::fill(static_cast<uint8_t>(region), &area);
}

void QVClickMap::Stamp(const QVVSurface& source, int32_t x, int32_t y, ColourKey key) {
  const int32_t wide = source.width(), high = source.height();
  const Rectangle area =
      Rectangle::at(x, y, wide, high).intersected(Rectangle::at(0, 0, width(), height()));
  if (area.empty()) return;
  if (stampMode_) {
    underlay_.create(wide, high);
    blit(underlay_, 0, 0, x, y, wide, high, KeyNone);
  }
  source.blit(*this, x, y, 0, 0, wide, high, key);
}

// --- The view ---

void QVClickMap::attach(View& view, int32_t x, int32_t y, int32_t captureView) {
  detach();
  view_ = &view;
  setOrigin(x, y);
  if (captureView) capture();
  view.addClickMap(*this);
}

void QVClickMap::detach() {
  if (!view_) return;
  // A window that went meanwhile has lost its maps, and has no place for the copy any more.
  if (view_->removeClickMap(*this)) putBack();
  captured_ = false;
  view_ = nullptr;
  event_.reset();
}

void QVClickMap::capture() {
  QVVSurface* const pixels = view_->surface8();
  if (!pixels) return;
  viewCopy_.create(width(), height());
  viewCopy_.copyPaletteFrom(*pixels);
  pixels->blit(viewCopy_, 0, 0, originX_, originY_, width(), height(), KeyNone);
  captured_ = true;
}

void QVClickMap::putBack() {
  QVVSurface* const pixels = view_->surface8();
  if (!captured_ || !pixels) return;
  viewCopy_.blit(*pixels, originX_, originY_, 0, 0, viewCopy_.width(), viewCopy_.height(), KeyNone);
  view_->invalidateArea(originX_, originY_, viewCopy_.width(), viewCopy_.height(), 0);
}

void QVClickMap::setParent(QVClickMap* parent) {
  // The window side walks up the stack: it must have an end.
  for (const QVClickMap* map = parent; map; map = map->parent_)
    if (map == this) return;
  if (parent_) std::erase(parent_->below_, this);
  parent_ = parent;
  if (parent_) parent_->below_.push_back(this);
}

// --- The window side ---

void QVClickMap::inputCallback(uint32_t message, int32_t region) {
  lastMessage_ = message;
  lastRegion_ = region;
  switch (message) {
    case PointerMoved:
      if (!hoverEnabled_) return;
      lastRegion_ = std::max(region, 0) + FirstHoverResult;
      event_.set();
      return;
    case LeftButtonDown:
    case RightButtonDown:
      event_.set();
      return;
    default:
      return;
  }
}

int32_t QVClickMap::regionAt(int32_t x, int32_t y) const {
  const int64_t column = int64_t{x} - originX_, row = int64_t{y} - originY_;
  if (column < 0 || row < 0 || column >= width() || row >= height()) return NoRegion;
  return pixel(static_cast<int32_t>(column), static_cast<int32_t>(row));
}

bool QVClickMap::report(uint32_t message, int32_t region) {
  if (message == PointerMoved && lastHit_.exchange(region) == region) return false;
  if (callback_)
    callback_(*this, message, region);
  else
    inputCallback(message, region);
  return eventIsSet();
}

void QVClickMap::postResult(int32_t result) {
  {
    const std::lock_guard guard(postedLock_);
    if (posted_.size() < MostPosted) posted_.push_back(result);
  }
  event_.set();
}

bool QVClickMap::hasPosted() const {
  const std::lock_guard guard(postedLock_);
  return !posted_.empty();
}

// --- The scene side ---

void QVClickMap::setTick(uint32_t millis) {
  tick_ = millis;
  lastReturn_ = tickCount();
}

void QVClickMap::requestHover(int32_t nudge) {
  refreshPending_ = 1;
  refreshNudge_ = nudge;
}

int32_t QVClickMap::ClickWait(uint32_t limitMillis, int32_t keys) {
  // What was posted before is given without any wait.
  if (hasPosted()) return resultOf(Leg::MapEvent, 0);
  const Wake wake = sleep(limitMillis, host_ && keys);
  if (wake.leg == Leg::Exit) {
    detach();
    throw ExitScenarioException();
  }
  return resultOf(wake.leg, wake.key);
}

QVClickMap::Wake QVClickMap::sleep(uint32_t limitMillis, bool keys) {
  event_.reset();
  // Something may have been posted just before the event was cleared.
  if (hasPosted()) return {Leg::MapEvent, 0};
  // The order is the rule: the map's own input comes before the end, the end before a key.
  std::array<Event*, 3> events{&event_.handle()};
  constexpr std::array Legs{Leg::MapEvent, Leg::Exit, Leg::Key};
  size_t count = 1;
  if (host_) {
    events[count++] = &host_->exitEvent();
    if (Event* key = host_->beginMapWait(*this, keys)) events[count++] = key;
  }
  startRefresh();
  const int first = waitAny(std::span(events.data(), count), limitMillis, WaitKind::Input);
  const int32_t key = host_ ? host_->endMapWait(keys) : 0;
  if (first >= 0) return {Legs[static_cast<size_t>(first)], key};
  // Who gave input in the moment of the time-out was told that it was taken.
  if (eventIsSet()) return {Leg::MapEvent, key};
  if (key != 0) return {Leg::Key, key};
  return {first == WaitTimeout ? Leg::Timeout : Leg::Cut, 0};
}

/// The highlight is brought up to date after the map changed under a still pointer: the next move
/// counts, and two that end where they began make it.
void QVClickMap::startRefresh() {
  if (!refreshPending_) return;
  refreshPending_ = 0;
  lastHit_ = AnyMoveCounts;
  if (!refreshNudge_ || !host_) return;
  host_->movePointerBy(1, 0);
  host_->movePointerBy(-1, 0);
}

int32_t QVClickMap::resultOf(Leg leg, int32_t key) {
  int32_t result = ClickCancel;
  switch (leg) {
    case Leg::Timeout:
      event_.reset();
      result = ClickTimeout;
      break;
    case Leg::MapEvent:
      if (lastMessage_ == RightButtonDown) break;
      result = lastRegion_;
      if (result == NoRegion && lastMessage_ == LeftButtonDown) result = 0;
      break;
    case Leg::Key:
      result = key + FirstKeyResult;
      break;
    case Leg::Exit:
    case Leg::Cut:
      break;
  }
  const std::lock_guard guard(postedLock_);
  if (posted_.empty()) return result;
  result = posted_.front();
  posted_.pop_front();
  return result;
}

uint32_t QVClickMap::tickWaitMillis(uint32_t millis, uint32_t now, uint32_t lastReturn) {
  const int64_t left = int64_t{millis} - (now - lastReturn);
  return left < 0 ? 1 : static_cast<uint32_t>(left);
}

int32_t QVClickMap::ClickTickWait(uint32_t millis, int32_t keys) {
  const uint32_t limit = tickWaitMillis(millis == 0 ? tick_ : millis, tickCount(), lastReturn_);
  const int32_t result = ClickWait(limit, keys);
  lastReturn_ = tickCount();
  return result;
}

}  // namespace qv
