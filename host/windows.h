#pragma once

/// The host's window objects and their list. They are made and destroyed on the UI thread under
/// the host's list lock; other threads look them up under the same lock. What they show and where
/// they stand belongs to the compositor.

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "graphics/click_target.h"
#include "graphics/surface.h"
#include "graphics/view.h"
#include "host/compositor.h"
#include "scenario/scenario_host.h"
#include "scenario/window_object.h"

namespace qv {

/// The pointer as everybody may see it; the UI thread writes it.
class PointerState {
 public:
  void moveTo(int32_t x, int32_t y);
  void rightButton(bool down);
  void place(int32_t& x, int32_t& y) const;
  bool rightDown() const { return rightDown_; }
  /// How often the right button was pressed.
  uint32_t rightPresses() const { return rightPresses_; }

 private:
  std::atomic<uint32_t> place_ = 0;  ///< x in the upper half, y in the lower
  std::atomic<bool> rightDown_ = false;
  std::atomic<uint32_t> rightPresses_ = 0;
};

/// A message that is sent to a window; it stands on the sender's stack. The main window's thread
/// gets it by the message of that number.
struct WindowParcel {
  class HostWindowObject* target;
  uint32_t message;
  uintptr_t first, second;
};
inline constexpr uint32_t MessageToWindow = 40002;

/// What distinguishes the kinds.
struct HostWindowKind {
  int32_t code;
  bool hasClient;  ///< a client view of name + "Client" comes with it
  bool alwaysShown;
  bool hasCaption;  ///< and a border round the client
  bool loose;       ///< dragged by what it shows
  enum class Pixels { None, Bits8, Bits32 } pixels;
};
/// Null for a code that is no window's.
const HostWindowKind* hostWindowKind(int32_t code);

class HostWindowObject : public WindowObject,
                         public View,
                         public NativeWindow,
                         private PaintSource {
 public:
  HostWindowObject(const HostWindowKind& kind, Compositor& compositor, PointerState& pointer,
                   WindowHandle mainWindow);
  ~HostWindowObject() override;

  int typeCode() const override { return kind_.code; }

  // WindowObject.
  View* view() override { return this; }
  bool shown() const override { return compositor_.shown(screen_); }
  void show(bool visible) override;
  bool placeInParent(Rectangle& place) const override;
  bool windowRect(Rectangle& rectangle) const override;
  bool clientRect(Rectangle& rectangle) const override;
  int32_t MoveClamped(int32_t x, int32_t y, int32_t width, int32_t height, int32_t repaint,
                      int32_t keepOnScreen) override;
  void SetClipShape(QVVSurface& scratch, ColourKey key) override;
  void setCursor(const PointerLook& look) override;

  // View. The size is the client's.
  bool alive() const override { return compositor_.present(screen_); }
  void resize(int32_t width, int32_t height, int32_t repaint) override;
  void flush(const Rectangle* area, int32_t erase) override;
  void update() override { compositor_.update(screen_); }
  void invalidate(const Rectangle* area, int32_t erase) override;
  QVVSurface* surface8() override { return surface8_.get(); }
  QVVSurface24* surface32() override { return surface32_.get(); }
  Rectangle clientRectangle() const override { return compositor_.client(screen_); }
  void hold() override { compositor_.hold(screen_); }
  void release(bool redraw) override { compositor_.release(screen_, redraw); }
  bool rightButtonDown() const override { return pointer_.rightDown(); }
  uint32_t rightButtonPresses() const override { return pointer_.rightPresses(); }
  void addClickMap(ClickTarget& map) override;
  bool removeClickMap(ClickTarget& map) override;
  void repaintClickMaps() override;

  // NativeWindow.
  NativeWindow* parentWindow() const override;
  bool minimised() const override { return false; }
  uintptr_t send(uint32_t message, uintptr_t first, uintptr_t second) override;

  /// The region at a place of the client, of the newest map that is `waiting` or stands below it in
  /// a stack; nothing where no such map lies on the view. UI thread, while the scene waits.
  std::optional<int32_t> regionFor(const ClickTarget& waiting, int32_t x, int32_t y) const;
  /// What the pointer looks like over its client; nothing while no scene has said it.
  std::optional<PointerLook> cursor() const;
  /// Answers a message that was sent to it. UI thread.
  uintptr_t receive(uint32_t message, uintptr_t first, uintptr_t second);
  /// An animation control was started and not stopped since. Any thread.
  bool animating() const { return animating_; }

  QVString caption;
  uint8_t captionCharacter = 0;
  int32_t extraWord = 0;

 private:
  friend class WindowList;
  struct Geometry {
    Rectangle outer, client;
  };
  void open(const CreateWindowRequest& request, HostWindowObject* parent, const Rectangle& place,
            bool visible);
  void close();
  Geometry geometry(int32_t x, int32_t y, int32_t width, int32_t height) const;
  std::vector<uint32_t> decoration(const Geometry& geometry) const;
  void resizeSurface(int32_t width, int32_t height);
  std::vector<ClickTarget*> clickMaps() const;
  void paint(std::span<uint32_t> pixels, int32_t width, int32_t height,
             const Rectangle& part) override;

  const HostWindowKind& kind_;
  Compositor& compositor_;
  PointerState& pointer_;
  WindowHandle mainWindow_;
  std::unique_ptr<QVVSurface> surface8_;
  std::unique_ptr<QVVSurface24> surface32_;
  ScreenWindow screen_;
  HostWindowObject* client_ = nullptr;  ///< a frame's
  std::atomic<bool> animating_ = false;
  mutable Lock cursorLock_;  ///< guards what stands in the cursor's slot
  std::optional<PointerLook> cursor_;
  Lock mapsPaint_;                  ///< held while they paint, and to take one off
  mutable Lock mapsLock_;           ///< guards the list, for moments
  std::vector<ClickTarget*> maps_;  ///< the newest last
};

class WindowList {
 public:
  /// No window is larger, in either direction and in all: it keeps all its pixels painted.
  static constexpr int32_t MostPixelsAcross = 32767;
  static constexpr int64_t MostPixels = 16'000'000;

  /// `lock` guards the list.
  WindowList(Lock& lock, WindowHandle mainWindow, Compositor& compositor, PointerState& pointer)
      : lock_(lock), mainWindow_(mainWindow), compositor_(compositor), pointer_(pointer) {}
  ~WindowList();

  // Any thread.
  HostWindowObject* find(const char* name) const;
  HostWindowObject* findByCode(int32_t code) const;
  bool empty() const;

  // UI thread.
  /// The region under a place of the screen for a map that waits; nothing where the view there does
  /// not report to it.
  std::optional<int32_t> regionFor(const ClickTarget& waiting, int32_t x, int32_t y) const;
  /// What the pointer looks like there: as the window there says, else one that it lies in, else
  /// the arrow. Borders and captions are the system's.
  PointerLook lookAt(int32_t x, int32_t y) const;
  /// Makes the window, and for frames their client view of name + "Client". Null for a code that
  /// is no window's, a taken name, a parent that does not exist, and a size that is too large or
  /// that memory does not hold.
  HostWindowObject* create(const CreateWindowRequest& request);
  /// Destroys the window with all that lie in it; nothing happens for an unknown name.
  void destroy(const char* name);

 private:
  HostWindowObject* findLocked(const char* name) const;
  std::unique_ptr<HostWindowObject> shell(const HostWindowKind& kind, const char* name);
  HostWindowObject* add(const HostWindowKind& kind, const char* name,
                        const CreateWindowRequest& request, HostWindowObject* parent,
                        const Rectangle& place, bool visible);
  void retire(size_t index);
  void destroyLocked(const WindowObject* window);

  Lock& lock_;
  WindowHandle mainWindow_;
  Compositor& compositor_;
  PointerState& pointer_;
  std::vector<std::unique_ptr<HostWindowObject>> windows_;  ///< in order of creation
  /// Windows that are gone. One of the same name and kind comes to life again, so that there are
  /// never more of them than there are names.
  std::vector<std::unique_ptr<HostWindowObject>> shells_;
};

}  // namespace qv
