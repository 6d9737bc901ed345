#pragma once

/// Handles: how scenes and commands hold named objects. A handle is a name, the object bound to it
/// and a keep flag; every operation of an unbound handle does nothing, and all handles are unbound
/// while there is no manager. A handle whose keep flag is 0 destroys the named object at the end of
/// its life. Scenario thread.

#include <cstdint>

#include "foundation/string.h"
#include "scenario/window_object.h"

namespace qv {

class LogicalObject;

inline constexpr int32_t KeepObject = 1, DestroyWithHandle = 0;

/// Flags of the handles that create windows.
inline constexpr int32_t WindowHidden = 1, WindowFramed = 2, WindowExtraWord = 4;

class NamedHandle {
 public:
  NamedHandle(const NamedHandle&) = delete;
  NamedHandle& operator=(const NamedHandle&) = delete;
  const QVString& name() const { return name_; }
  int32_t keep() const { return keep_; }

 protected:
  NamedHandle(const char* name, int32_t keep) : name_(name), keep_(keep) {}
  ~NamedHandle();

 private:
  QVString name_;
  int32_t keep_;
};

/// A print area; it is created with default settings where there is none.
class AreaHandle : public NamedHandle {
 public:
  explicit AreaHandle(const char* name, int32_t keep = KeepObject);
  bool bound() const { return object_ != nullptr; }
  LogicalObject* object() const { return object_; }

 private:
  LogicalObject* object_ = nullptr;
};

class SurfaceHandle : public NamedHandle {
 public:
  explicit SurfaceHandle(const char* name);
  /// Create the surface where there is none.
  SurfaceHandle(const char* name, const char* fileName, int32_t keep = KeepObject);
  SurfaceHandle(const char* name, int32_t width, int32_t height, int32_t keep = KeepObject);
  bool bound() const { return object_ != nullptr; }
  LogicalObject* object() const { return object_; }

 private:
  LogicalObject* object_ = nullptr;
};

/// A view; a frame's name gives its client view.
class ViewHandle : public NamedHandle {
 public:
  explicit ViewHandle(const char* name);
  /// Creates the view where there is none. `parent` null: the main window; `caption` may be null.
  ViewHandle(const char* name, const char* parent, const Rectangle& rectangle, const char* caption,
             int32_t flags, int32_t keep = KeepObject);
  bool bound() const { return view_ != nullptr; }
  WindowObject* view() const { return view_; }

 private:
  WindowObject* view_ = nullptr;
};

/// A window with its client view.
class FrameHandle : public NamedHandle {
 public:
  explicit FrameHandle(const char* name);
  /// Creates a frame where there is none: code 6 with WindowFramed, else code 8.
  FrameHandle(const char* name, const char* parent, const Rectangle& rectangle, const char* caption,
              int32_t flags, int32_t keep = KeepObject);
  bool bound() const { return window_ != nullptr; }
  WindowObject* window() const { return window_; }
  const ViewHandle& client() const { return client_; }

 private:
  WindowObject* window_ = nullptr;
  ViewHandle client_;
};

}  // namespace qv
