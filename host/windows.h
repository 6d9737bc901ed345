#pragma once

/// The host's window objects and their list. They are made, shown and destroyed on the UI thread
/// under the host's list lock; other threads look them up under the same lock.

#include <memory>
#include <vector>

#include "scenario/scenario_host.h"
#include "scenario/window_object.h"

namespace qv {

class WindowList;

/// One kind of window object for every code: what distinguishes the kinds grows with the views.
class HostWindowObject : public WindowObject {
 public:
  explicit HostWindowObject(int32_t code) : code_(code) {}
  int typeCode() const override { return code_; }

  Rectangle rectangle;  ///< in the parent's client coordinates
  bool visible = true;
  QVString caption;
  uint8_t captionCharacter = 0;
  int32_t extraWord = 0;

 private:
  int32_t code_;
};

class WindowList {
 public:
  /// `lock` guards the list.
  WindowList(Lock& lock, WindowHandle mainWindow) : lock_(lock), mainWindow_(mainWindow) {}

  // Any thread.
  HostWindowObject* find(const char* name) const;
  HostWindowObject* findByCode(int32_t code) const;
  bool empty() const;

  // UI thread.
  /// Makes the window, and for frames their client view of name + "Client". Null for a code that
  /// is no window's, a taken name, or a parent that does not exist.
  HostWindowObject* create(const CreateWindowRequest& request);
  /// Destroys the window with all that lie in it; nothing happens for an unknown name.
  void destroy(const char* name);

 private:
  HostWindowObject* findLocked(const char* name) const;
  HostWindowObject* add(int32_t code, const char* name, WindowObject* parent);
  void destroyLocked(const WindowObject* window);

  Lock& lock_;
  WindowHandle mainWindow_;
  std::vector<std::unique_ptr<HostWindowObject>> windows_;  ///< in order of creation
};

}  // namespace qv
