#include "host/windows.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string>

#include "scenario/type_codes.h"

namespace qv {

namespace {

struct WindowKind {
  int32_t code;
  bool hasClient;  ///< a client view of name + "Client" comes with it
  bool alwaysShown;
};
constexpr std::array WindowKinds{
    WindowKind{TypeView, false, false},
    WindowKind{TypeFrame, true, false},
    WindowKind{TypeFrameless, true, false},
    WindowKind{TypePlainWindow, false, true},
    WindowKind{TypeSecondView, false, false},
    WindowKind{TypeReleasedWindow, false, false},
    WindowKind{TypeAnimationControl, false, true},
};

const WindowKind* kindOf(int32_t code) {
  const auto kind = std::find_if(WindowKinds.begin(), WindowKinds.end(),
                                 [code](const WindowKind& known) { return known.code == code; });
  return kind == WindowKinds.end() ? nullptr : &*kind;
}

bool liesIn(const WindowObject* window, const WindowObject* ancestor) {
  for (; window; window = window->parent)
    if (window == ancestor) return true;
  return false;
}

}  // namespace

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

HostWindowObject* WindowList::add(int32_t code, const char* name, WindowObject* parent) {
  auto window = std::make_unique<HostWindowObject>(code);
  window->window = mainWindow_;
  window->name.create(QVString::DefaultGrain, name);
  window->parent = parent;
  windows_.push_back(std::move(window));
  return windows_.back().get();
}

HostWindowObject* WindowList::create(const CreateWindowRequest& request) {
  const WindowKind* kind = kindOf(request.typeCode);
  const std::lock_guard guard(lock_);
  if (!kind || findLocked(request.name.text())) return nullptr;
  WindowObject* parent = nullptr;
  if (request.parentName.length() > 0) {
    parent = findLocked(request.parentName.text());
    if (!parent) return nullptr;
  }
  HostWindowObject* window = add(kind->code, request.name.text(), parent);
  window->rectangle = kind->code == TypePlainWindow ? Rectangle{} : request.rectangle;
  window->visible = kind->alwaysShown || request.visible != 0;
  window->caption = request.caption;
  window->captionCharacter = request.captionCharacter;
  window->extraWord = request.extraWord;
  if (kind->hasClient) {
    const std::string clientName = std::string(request.name.view()) + "Client";
    HostWindowObject* client = add(TypeView, clientName.c_str(), window);
    const Rectangle& outer = window->rectangle;
    client->rectangle = {0, 0, outer.right - outer.left, outer.bottom - outer.top};
  }
  return window;
}

void WindowList::destroyLocked(const WindowObject* window) {
  // Children go first, so that no parent pointer ever hangs.
  for (size_t i = windows_.size(); i-- > 0;)
    if (windows_[i].get() != window && liesIn(windows_[i].get(), window))
      windows_.erase(windows_.begin() + static_cast<ptrdiff_t>(i));
  std::erase_if(windows_, [window](const auto& entry) { return entry.get() == window; });
}

void WindowList::destroy(const char* name) {
  const std::lock_guard guard(lock_);
  if (const HostWindowObject* window = findLocked(name)) destroyLocked(window);
}

}  // namespace qv
