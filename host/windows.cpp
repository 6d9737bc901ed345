#include "host/windows.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "foundation/diagnostic.h"
#include "graphics/position.h"
#include "host/box_drawing.h"
#include "platform/services.h"
#include "scenario/messages.h"
#include "scenario/type_codes.h"

namespace qv {

namespace {

using Pixels = HostWindowKind::Pixels;

constexpr std::array WindowKinds{
    HostWindowKind{TypeView, false, false, false, false, Pixels::Bits8},
    HostWindowKind{TypeFrame, true, false, true, false, Pixels::None},
    HostWindowKind{TypeFrameless, true, false, false, true, Pixels::None},
    HostWindowKind{TypePlainWindow, false, true, false, false, Pixels::None},
    HostWindowKind{TypeSecondView, false, false, false, false, Pixels::Bits32},
    HostWindowKind{TypeReleasedWindow, false, false, false, false, Pixels::Bits8},
    HostWindowKind{TypeAnimationControl, false, true, false, false, Pixels::None},
};

// The surface of a window that is gone.
constexpr int32_t ShellPixels = 16;
// Places beyond are as far off the screen as any, and sums of a few stay numbers.
constexpr int32_t FarthestPlace = 100'000;

int32_t bounded(int32_t coordinate) {
  return std::clamp(coordinate, -FarthestPlace, FarthestPlace);
}

bool liesIn(const WindowObject* window, const WindowObject* ancestor) {
  for (; window; window = window->parent)
    if (window == ancestor) return true;
  return false;
}

/// A rectangle of a scene, from left top to right bottom; nothing where no window is so large.
bool takePlace(const Rectangle& asked, Rectangle& place) {
  const Rectangle ordered = asked.normalised();
  const int64_t width = int64_t{ordered.right} - ordered.left,
                height = int64_t{ordered.bottom} - ordered.top;
  constexpr int64_t Most = WindowList::MostPixelsAcross;
  if (width > Most || height > Most || width * height > WindowList::MostPixels) return false;
  place = Rectangle::at(bounded(ordered.left), bounded(ordered.top), static_cast<int32_t>(width),
                        static_cast<int32_t>(height));
  return true;
}

}  // namespace

const HostWindowKind* hostWindowKind(int32_t code) {
  const auto kind = std::ranges::find(WindowKinds, code, &HostWindowKind::code);
  return kind == WindowKinds.end() ? nullptr : &*kind;
}

// --- The pointer ---

void PointerState::moveTo(int32_t x, int32_t y) {
  place_ = static_cast<uint32_t>(x) << 16 | (static_cast<uint32_t>(y) & 0xFFFF);
}

void PointerState::rightButton(bool down) {
  if (down) ++rightPresses_;
  rightDown_ = down;
}

void PointerState::place(int32_t& x, int32_t& y) const {
  const uint32_t place = place_;
  x = static_cast<int16_t>(place >> 16);
  y = static_cast<int16_t>(place & 0xFFFF);
}

// --- One window ---

HostWindowObject::HostWindowObject(const HostWindowKind& kind, Compositor& compositor,
                                   PointerState& pointer, WindowHandle mainWindow)
    : kind_(kind),
      compositor_(compositor),
      pointer_(pointer),
      mainWindow_(mainWindow),
      cursorLock_("cursor slot", LockRank::Leaf),
      mapsPaint_("click maps", LockRank::ClickMaps),
      mapsLock_("list of click maps", LockRank::Leaf) {
  window = this;
  if (kind.pixels == Pixels::Bits8) surface8_ = std::make_unique<QVVSurface>();
  if (kind.pixels == Pixels::Bits32) surface32_ = std::make_unique<QVVSurface24>();
}

HostWindowObject::~HostWindowObject() {
  compositor_.remove(screen_);
}

HostWindowObject::Geometry HostWindowObject::geometry(int32_t x, int32_t y, int32_t width,
                                                      int32_t height) const {
  if (!kind_.hasCaption)
    return {Rectangle::at(x, y, width, height), Rectangle::at(0, 0, width, height)};
  using namespace box_look;
  return {Rectangle::at(x, y, width + 2 * FrameWidth, height + 2 * FrameWidth + CaptionHeight),
          Rectangle::at(FrameWidth, FrameWidth + CaptionHeight, width, height)};
}

std::vector<uint32_t> HostWindowObject::decoration(const Geometry& geometry) const {
  if (!kind_.hasCaption) return {};
  const int32_t width = geometry.outer.width(), height = geometry.outer.height();
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
  const char character = static_cast<char>(captionCharacter);
  const std::string_view text = caption.length() > 0 || !character
                                    ? std::string_view(caption.view())
                                    : std::string_view(&character, 1);
  drawRaisedFrame({pixels, width, height}, services().text, {0, 0, width, height}, text);
  return pixels;
}

void HostWindowObject::open(const CreateWindowRequest& request, HostWindowObject* parentWindow,
                            const Rectangle& place, bool visible) {
  const Geometry where = geometry(place.left, place.top, place.width(), place.height());
  parent = parentWindow;
  caption = request.caption;
  captionCharacter = request.captionCharacter;
  extraWord = request.extraWord;
  animating_ = false;
  if (surface8_) surface8_->create(place.width(), place.height());
  if (surface32_) surface32_->create(place.width(), place.height());
  compositor_.add(screen_, parentWindow ? &parentWindow->screen_ : nullptr,
                  {.outer = where.outer,
                   .client = where.client,
                   .visible = visible,
                   .framed = kind_.hasCaption,
                   .loose = kind_.loose,
                   .source = surface8_ || surface32_ ? this : nullptr,
                   .decoration = decoration(where)});
}

void HostWindowObject::close() {
  compositor_.remove(screen_);
  {
    const std::lock_guard guard(mapsLock_);
    maps_.clear();
  }
  // Whoever still draws into it draws into these few pixels.
  if (surface8_) surface8_->create(ShellPixels, ShellPixels);
  if (surface32_) surface32_->create(ShellPixels, ShellPixels);
  parent = nullptr;
  client_ = nullptr;
  const std::lock_guard guard(cursorLock_);
  cursor_.reset();
}

void HostWindowObject::paint(std::span<uint32_t> pixels, int32_t width, int32_t height,
                             const Rectangle& part) {
  if (surface8_) surface8_->paint(pixels, width, height, part.left, part.top, part);
  if (surface32_) surface32_->paint(pixels, width, height, part.left, part.top, part);
}

void HostWindowObject::show(bool visible) {
  compositor_.show(screen_, visible);
}

bool HostWindowObject::placeInParent(Rectangle& place) const {
  if (!compositor_.present(screen_)) return false;
  place = compositor_.outer(screen_);
  return true;
}

bool HostWindowObject::windowRect(Rectangle& rectangle) const {
  if (!compositor_.present(screen_)) return false;
  rectangle = compositor_.onScreen(screen_);
  return true;
}

bool HostWindowObject::clientRect(Rectangle& rectangle) const {
  if (!compositor_.present(screen_)) return false;
  rectangle = compositor_.client(screen_);
  return true;
}

int32_t HostWindowObject::MoveClamped(int32_t x, int32_t y, int32_t width, int32_t height,
                                      int32_t repaint, int32_t keepOnScreen) {
  Rectangle present;
  if (!placeInParent(present)) return 0;
  if (width == 0) width = present.width();
  if (height == 0) height = present.height();
  width = std::clamp(width, 0, WindowList::MostPixelsAcross);
  height = std::clamp(height, 0, WindowList::MostPixelsAcross);
  const ClampedMove move =
      clampedMove(ScreenWidth, ScreenHeight, x, y, width, height, keepOnScreen != 0);
  compositor_.move(screen_, bounded(move.position.x), bounded(move.position.y));
  if (width != present.width() || height != present.height()) {
    const Geometry empty = geometry(0, 0, 0, 0);
    resize(width - empty.outer.width(), height - empty.outer.height(), repaint);
  }
  return move.result;
}

void HostWindowObject::SetClipShape(QVVSurface& scratch, ColourKey key) {
  compositor_.reshape(screen_, scanClipShape(scratch, key));
}

/// Gives the surface another size; the picture stays as far as it goes, and so do the colours.
void HostWindowObject::resizeSurface(int32_t width, int32_t height) {
  if (surface8_) {
    QVVSurface old;
    old.create(surface8_->width(), surface8_->height());
    surface8_->blit(old, 0, 0, 0, 0, old.width(), old.height(), KeyNone);
    old.copyPaletteFrom(*surface8_);
    surface8_->create(width, height);
    surface8_->copyPaletteFrom(old);
    old.blit(*surface8_, 0, 0, 0, 0, old.width(), old.height(), KeyNone);
  }
  if (surface32_) {
    QVVSurface24 old;
    old.create(surface32_->width(), surface32_->height());
    surface32_->blit(old, 0, 0, 0, 0, old.width(), old.height());
    surface32_->create(width, height);
    old.blit(*surface32_, 0, 0, 0, 0, old.width(), old.height());
  }
}

void HostWindowObject::resize(int32_t width, int32_t height, int32_t repaint) {
  width = std::clamp(width, 0, WindowList::MostPixelsAcross);
  height = std::clamp(height, 0, WindowList::MostPixelsAcross);
  Rectangle present;
  if (!placeInParent(present) || clientRectangle() == Rectangle{0, 0, width, height}) return;
  if (int64_t{width} * height > WindowList::MostPixels) return;
  const Geometry where = geometry(present.left, present.top, width, height);
  resizeSurface(width, height);
  compositor_.resize(screen_, where.outer.width(), where.outer.height(), where.client,
                     decoration(where));
  if (client_) client_->resize(width, height, repaint);
}

void HostWindowObject::flush(const Rectangle* area, int32_t) {
  compositor_.flush(screen_, area);
}

void HostWindowObject::invalidate(const Rectangle* area, int32_t) {
  compositor_.invalidate(screen_, area);
}

NativeWindow* HostWindowObject::parentWindow() const {
  return parent ? parent->window : mainWindow_;
}

uintptr_t HostWindowObject::send(uint32_t message, uintptr_t first, uintptr_t second) {
  if (!mainWindow_) return receive(message, first, second);
  WindowParcel parcel{this, message, first, second};
  return mainWindow_->send(MessageToWindow, reinterpret_cast<uintptr_t>(&parcel), 0);
}

uintptr_t HostWindowObject::receive(uint32_t message, uintptr_t, uintptr_t) {
  if (kind_.code != TypeAnimationControl || !compositor_.present(screen_)) return 0;
  if (message == MessageAnimationStart) animating_ = true;
  if (message == MessageAnimationStop) animating_ = false;
  return message == MessageAnimationStart || message == MessageAnimationStop;
}

// --- Click maps ---

void HostWindowObject::addClickMap(ClickTarget& map) {
  // A window that is gone keeps nothing.
  if (!compositor_.present(screen_)) return;
  const std::lock_guard guard(mapsLock_);
  maps_.push_back(&map);
}

bool HostWindowObject::removeClickMap(ClickTarget& map) {
  const std::lock_guard painting(mapsPaint_);
  const std::lock_guard guard(mapsLock_);
  return std::erase(maps_, &map) > 0;
}

std::vector<ClickTarget*> HostWindowObject::clickMaps() const {
  const std::lock_guard guard(mapsLock_);
  return maps_;
}

void HostWindowObject::repaintClickMaps() {
  const std::lock_guard painting(mapsPaint_);
  for (ClickTarget* map : clickMaps())
    map->repaint();
}

std::optional<int32_t> HostWindowObject::regionFor(const ClickTarget& waiting, int32_t x,
                                                   int32_t y) const {
  const std::vector<ClickTarget*> maps = clickMaps();
  for (auto map = maps.rbegin(); map != maps.rend(); ++map)
    for (const ClickTarget* asked = *map; asked; asked = asked->above())
      if (asked == &waiting) return (*map)->regionAt(x, y);
  return std::nullopt;
}

void HostWindowObject::setCursor(const PointerLook& look) {
  if (!compositor_.present(screen_)) return;
  const std::lock_guard guard(cursorLock_);
  cursor_ = look;
}

std::optional<PointerLook> HostWindowObject::cursor() const {
  const std::lock_guard guard(cursorLock_);
  return cursor_;
}

// --- The list ---

WindowList::~WindowList() {
  // Children were made after their parents.
  while (!windows_.empty())
    windows_.pop_back();
}

HostWindowObject* WindowList::findLocked(const char* name) const {
  if (!name) return nullptr;
  for (const auto& window : windows_)
    if (window->name.equals(name)) return window.get();
  return nullptr;
}

HostWindowObject* WindowList::find(const char* name) const {
  const std::lock_guard guard(lock_);
  return findLocked(name);
}

HostWindowObject* WindowList::findByCode(int32_t code) const {
  const std::lock_guard guard(lock_);
  for (const auto& window : windows_)
    if (window->typeCode() == code) return window.get();
  return nullptr;
}

bool WindowList::empty() const {
  const std::lock_guard guard(lock_);
  return windows_.empty();
}

std::optional<int32_t> WindowList::regionFor(const ClickTarget& waiting, int32_t x,
                                             int32_t y) const {
  const Compositor::WindowHit hit = compositor_.windowAt(x, y);
  if (!hit.window) return std::nullopt;
  const HostWindowObject* view = nullptr;
  {
    const std::lock_guard guard(lock_);
    for (const auto& window : windows_)
      if (&window->screen_ == hit.window) view = window.get();
  }
  return view ? view->regionFor(waiting, hit.x, hit.y) : std::nullopt;
}

PointerLook WindowList::lookAt(int32_t x, int32_t y) const {
  const Compositor::WindowHit hit = compositor_.windowAt(x, y);
  const std::lock_guard guard(lock_);
  const auto found = std::ranges::find_if(
      windows_, [&hit](const auto& window) { return &window->screen_ == hit.window; });
  if (found == windows_.end() || !(*found)->clientRectangle().contains(hit.x, hit.y)) return {};
  for (const WindowObject* window = found->get(); window; window = window->parent)
    if (std::optional<PointerLook> look = static_cast<const HostWindowObject*>(window)->cursor())
      return *std::move(look);
  return {};
}

/// The object of that name and kind from the shells, or a new one.
std::unique_ptr<HostWindowObject> WindowList::shell(const HostWindowKind& kind, const char* name) {
  for (auto at = shells_.begin(); at != shells_.end(); ++at)
    if ((*at)->typeCode() == kind.code && (*at)->name.equals(name)) {
      std::unique_ptr<HostWindowObject> found = std::move(*at);
      shells_.erase(at);
      return found;
    }
  auto made = std::make_unique<HostWindowObject>(kind, compositor_, pointer_, mainWindow_);
  made->name.create(QVString::DefaultGrain, name);
  return made;
}

HostWindowObject* WindowList::add(const HostWindowKind& kind, const char* name,
                                  const CreateWindowRequest& request, HostWindowObject* parent,
                                  const Rectangle& place, bool visible) {
  windows_.push_back(shell(kind, name));
  try {
    windows_.back()->open(request, parent, place, visible);
  } catch (...) {
    retire(windows_.size() - 1);
    throw;
  }
  return windows_.back().get();
}

HostWindowObject* WindowList::create(const CreateWindowRequest& request) {
  const HostWindowKind* kind = hostWindowKind(request.typeCode);
  const std::lock_guard guard(lock_);
  if (!kind || findLocked(request.name.text())) return nullptr;
  HostWindowObject* parent = nullptr;
  if (request.parentName.length() > 0) {
    parent = findLocked(request.parentName.text());
    if (!parent) return nullptr;
  }
  Rectangle place;
  if (kind->code != TypePlainWindow && !takePlace(request.rectangle, place)) return nullptr;
  const std::string clientName = std::string(request.name.view()) + "Client";
  if (kind->hasClient && findLocked(clientName.c_str())) return nullptr;
  const bool visible = kind->alwaysShown || request.visible != 0;
  HostWindowObject* window = nullptr;
  try {
    // A frame is shown with its client in it, not before.
    window = add(*kind, request.name.text(), request, parent, place, visible && !kind->hasClient);
    if (!kind->hasClient) return window;
    window->client_ = add(*hostWindowKind(TypeView), clientName.c_str(), {}, window,
                          Rectangle::at(0, 0, place.width(), place.height()), true);
    window->show(visible);
  } catch (const Diagnostic&) {
    if (window) destroyLocked(window);
    return nullptr;
  } catch (const std::bad_alloc&) {
    if (window) destroyLocked(window);
    return nullptr;
  }
  return window;
}

/// Takes a window off the list and the screen; the object stays.
void WindowList::retire(size_t index) {
  windows_[index]->close();
  shells_.push_back(std::move(windows_[index]));
  windows_.erase(windows_.begin() + static_cast<ptrdiff_t>(index));
}

void WindowList::destroyLocked(const WindowObject* window) {
  // Children go first, so that no parent pointer ever hangs; they were made after their parents.
  for (size_t i = windows_.size(); i-- > 0;)
    if (windows_[i].get() != window && liesIn(windows_[i].get(), window)) retire(i);
  for (size_t i = windows_.size(); i-- > 0;)
    if (windows_[i].get() == window) retire(i);
}

void WindowList::destroy(const char* name) {
  const std::lock_guard guard(lock_);
  if (const HostWindowObject* window = findLocked(name)) destroyLocked(window);
}

}  // namespace qv
