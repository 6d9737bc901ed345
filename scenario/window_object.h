#pragma once

/// What the engine knows of a window object: the host owns and implements it. Window objects
/// change on the UI thread only; the scenario thread reads what does not change after creation.

#include <cstdint>

#include "foundation/string.h"
#include "graphics/rectangle.h"

namespace qv {

class View;

/// A window of the host: the real one, a view, a box's owner.
class NativeWindow {
 public:
  virtual ~NativeWindow() = default;
  virtual NativeWindow* parentWindow() const = 0;  ///< null for a top window
  virtual bool minimised() const = 0;
  /// Sends a message to the window's thread and waits for its answer; 0 when that thread ended.
  virtual uintptr_t send(uint32_t message, uintptr_t first, uintptr_t second) = 0;
};
using WindowHandle = NativeWindow*;

class WindowObject {
 public:
  virtual ~WindowObject() = default;
  virtual int typeCode() const = 0;
  /// The window as what is drawn into; null where it is none.
  virtual View* view() { return nullptr; }

  WindowHandle window = nullptr;
  QVString name;
  WindowObject* parent = nullptr;  ///< null: the main window
};

}  // namespace qv
