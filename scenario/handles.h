#pragma once

/// Handles: how scenes and commands hold named objects. A handle is a name, the object bound to it
/// and a keep flag; every operation of an unbound handle does nothing, and all handles are unbound
/// while there is no manager. A handle whose keep flag is 0 destroys the named object at the end of
/// its life. Scenario thread.

#include <cstdint>

#include "foundation/string.h"
#include "graphics/palette.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "scenario/window_object.h"

namespace qv {

class LogicalObject;
class QVAnimationArea;
class QVHitret;
class QVPrintArea;
class SurfaceHandle;
class ViewHandle;

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
  /// The area itself, or null.
  QVPrintArea* area() const;

  // The area's operations (message/print_area.h) by their names; unbound handles, of what is
  // given too, do nothing.
  void setView(const ViewHandle& view) const;
  void setSurface(const SurfaceHandle& surface) const;
  void setLink(const AreaHandle& link) const;
  void setHitret(const QVHitret& hitret) const;
  void setRect(int32_t left, int32_t top, int32_t width, int32_t height) const;
  void setPosition(int32_t x, int32_t y) const;
  int32_t setLineHeight(int32_t height) const;
  int32_t setIndent(int32_t pixels, int32_t side) const;
  void setFlags(uint32_t flags, bool replace = true) const;
  void setNoLineStart(const char* text) const;
  void setColour(uint32_t colour, int32_t which) const;
  void setFont(int32_t height, int32_t weight, int32_t style, int32_t pitch, int32_t charset,
               const char* face) const;
  void saveBackground() const;
  void clear(bool withLink = true, bool withFlush = true) const;
  void home() const;
  void printText(const char* text, QVHitret* hitret = nullptr, const char* wavePath = nullptr,
                 QVAnimationArea* mouth = nullptr, bool wait = false) const;
  void printSurface(const SurfaceHandle& source, const Rectangle& part, ColourKey key, bool clip,
                    bool wait = false) const;
  void printImageFile(const char* path, ColourKey key, bool clip, bool wait = false) const;
  void printSurfaceKeyless(const SurfaceHandle& source, const Rectangle& part, bool clip,
                           bool wait = false) const;
  void printImageKeyless(const char* path, bool clip, bool wait = false) const;

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
  /// The surface itself, or null.
  QVVSurface* surface() const;

  // The surface's operations (graphics/surface.h) by their names; unbound handles, of the target
  // too, do nothing and have no size.
  int32_t width() const;
  int32_t height() const;
  void create(int32_t width, int32_t height) const;
  void loadByName(const char* name) const;
  void fill(uint8_t index, const Rectangle* rectangle = nullptr) const;
  void mirror(int32_t axis, int32_t x, int32_t y, int32_t w, int32_t h) const;
  void blit(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
            int32_t h, ColourKey key) const;
  void blitBlended(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                   int32_t w, int32_t h, int32_t level) const;
  void blitBlendedKey(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                      int32_t w, int32_t h, int32_t level, ColourKey key) const;
  void blitScaled(const SurfaceHandle& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                  int32_t w, int32_t h, int32_t xFactor, int32_t yFactor) const;
  void stretchTo(const SurfaceHandle& target, int32_t x, int32_t y, int32_t w, int32_t h) const;
  void tileOnto(const SurfaceHandle& target, const Rectangle* rectangle, bool copyPalette) const;
  void setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst,
                  int32_t count) const;
  void setColoursRange(const ColourTable& table, int32_t first, int32_t count) const;
  void copyPaletteFrom(const SurfaceHandle& source) const;
  void fadePalette(const ColourTable& target, int32_t step, int32_t steps) const;
  void tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first, int32_t count) const;
  /// Takes the surface's stored colours into a palette.
  void takePalette(scobjPalette& palette) const;
  void saveBmpByName(const char* path) const;

 private:
  LogicalObject* object_ = nullptr;
};

/// Whether a drawing operation of a view also brings what it drew to the screen.
enum class Flush { No, Yes };

/// A view; a frame's name gives its client view.
class ViewHandle : public NamedHandle {
 public:
  explicit ViewHandle(const char* name);
  /// Creates the view where there is none. `parent` null: the main window; `caption` may be null.
  ViewHandle(const char* name, const char* parent, const Rectangle& rectangle, const char* caption,
             int32_t flags, int32_t keep = KeepObject);
  bool bound() const { return view_ != nullptr; }
  WindowObject* view() const { return view_; }
  /// What is drawn into, and its surface; null when unbound.
  View* target() const { return view_ ? view_->view() : nullptr; }
  QVVSurface* surface() const { return target() ? target()->surface8() : nullptr; }
  int32_t width() const;  ///< of the client
  int32_t height() const;

  // Operations of the view's surface, which then flush what they changed.
  /// A part of another surface, with the first two numbers as place; they may be position codes. A
  /// width or height of 0 is the source's.
  void draw(const SurfaceHandle& source, int32_t dx, int32_t dy, int32_t sx, int32_t sy, int32_t w,
            int32_t h, ColourKey key, Flush flush = Flush::Yes) const;
  void drawBlended(const SurfaceHandle& source, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                   int32_t w, int32_t h, int32_t level, ColourKey key = KeyNone,
                   Flush flush = Flush::Yes) const;
  void fill(uint8_t index, const Rectangle* rectangle = nullptr, Flush flush = Flush::Yes) const;
  void setColours(const ColourTable& table, int32_t targetFirst, int32_t sourceFirst, int32_t count,
                  Flush flush = Flush::Yes) const;
  void copyPaletteFrom(const SurfaceHandle& source, Flush flush = Flush::Yes) const;
  void fadePalette(const ColourTable& table, int32_t step, int32_t steps,
                   Flush flush = Flush::Yes) const;
  void tintMonochrome(int32_t red, int32_t green, int32_t blue, int32_t first, int32_t count,
                      Flush flush = Flush::Yes) const;
  /// Takes the surface's stored colours into a palette.
  void takePalette(scobjPalette& palette) const;

  // Operations of the view itself.
  void flush(const Rectangle* area = nullptr) const;
  void invalidate(const Rectangle* area = nullptr) const;
  void update() const;
  void hold() const;
  void release(bool redraw = true) const;
  void resize(int32_t width, int32_t height) const;
  void show(bool visible = true) const;
  void hide() const { show(false); }
  bool shown() const { return view_ && view_->shown(); }

 private:
  /// Does the work on the surface, then flushes the area or everything.
  template <typename Work>
  void change(const Rectangle* area, Flush flush, Work work) const;

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
  void show(bool visible = true) const {
    if (window_) window_->show(visible);
  }
  void hide() const { show(false); }
  bool shown() const { return window_ && window_->shown(); }

 private:
  WindowObject* window_ = nullptr;
  ViewHandle client_;
};

}  // namespace qv
