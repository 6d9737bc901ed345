#pragma once

/// What the engine knows of a window object: the host owns and implements it. Window objects are
/// made and destroyed on the UI thread at the request of the scenario thread; one that is gone
/// stays as a shell whose operations do nothing, so that an animation that still draws into it
/// needs no word about it. Their operations may come from any thread.

#include <cstdint>

#include "foundation/string.h"
#include "graphics/colour_key.h"
#include "graphics/rectangle.h"
#include "platform/display/pointer_look.h"

namespace qv {

class QVVSurface;
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

  // A host without a screen shows nothing and keeps no places.
  /// The window as what is drawn into; null where it is none.
  virtual View* view() { return nullptr; }
  virtual bool shown() const { return false; }  ///< by itself, wherever it lies
  virtual void show(bool /*visible*/) {}
  /// In the parent's client: the corner, and the size with all that stands round the client.
  virtual bool placeInParent(Rectangle& /*place*/) const { return false; }
  /// On the screen, and the client at 0, 0; false, and nothing given, for a window that is gone.
  virtual bool windowRect(Rectangle& /*rectangle*/) const { return false; }
  virtual bool clientRect(Rectangle& /*rectangle*/) const { return false; }
  /// Moves the corner to x, y in the parent's client; a width or height of 0 is the present one of
  /// the whole window. 0 when it was to be kept on the screen and does not fit there, else 1.
  virtual int32_t MoveClamped(int32_t /*x*/, int32_t /*y*/, int32_t /*width*/, int32_t /*height*/,
                              int32_t /*repaint*/, int32_t /*keepOnScreen*/) {
    return 0;
  }
  /// What the pointer looks like over the client, from when the host is next told (1136).
  virtual void setCursor(const PointerLook& /*look*/) {}
  /// Makes what is not `key` in the picture the window's outline. Overwrites the picture.
  virtual void SetClipShape(QVVSurface& /*scratch*/, ColourKey /*key*/) {}

  WindowHandle window = nullptr;
  QVString name;
  WindowObject* parent = nullptr;  ///< null: the main window
};

}  // namespace qv
