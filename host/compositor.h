#pragma once

/// What stands on the game screen: every window's painted pixels, and the frame that is composed
/// of them by stacking order and shape. Painting happens on the thread that asks for it, so that a
/// flush costs no turn of the UI thread; that one paints what nobody updates and takes the frame to
/// the display. One lock guards it all. It stands between the window list's and the surfaces',
/// since who paints a window holds it while the surface is read, and whoever holds a surface calls
/// nothing. Any thread, except where it says so.

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "graphics/region.h"
#include "platform/display/display.h"
#include "platform/kernel/kernel.h"

namespace qv {

inline constexpr Rectangle ScreenRectangle{0, 0, ScreenWidth, ScreenHeight};

/// What a window paints itself from.
class PaintSource {
 public:
  virtual ~PaintSource() = default;
  /// Paints `part` of the client at its own place. Called with the compositor's lock held: it
  /// takes locks of surfaces and no other.
  virtual void paint(std::span<uint32_t> pixels, int32_t width, int32_t height,
                     const Rectangle& part) = 0;
};

/// A window as the compositor sees it; all of it belongs to the compositor. Whoever owns it removes
/// it before it goes; every operation on one that is not in the screen does nothing.
class ScreenWindow {
 public:
  ScreenWindow() = default;
  ScreenWindow(const ScreenWindow&) = delete;
  ScreenWindow& operator=(const ScreenWindow&) = delete;

 private:
  friend class Compositor;
  bool present_ = false;
  bool visible_ = false;
  bool framed_ = false;  ///< with a border and a caption, by which it is dragged
  bool loose_ = false;   ///< without either: dragged by what it shows
  ScreenWindow* parent_ = nullptr;
  std::vector<ScreenWindow*> children_;  ///< the newest last, which is on top
  Rectangle outer_;                      ///< in the parent's client
  Rectangle client_;                     ///< in the window
  PaintSource* source_ = nullptr;
  ClipShape shape_;  ///< no rectangles: the whole window
  int32_t holds_ = 0;
  Region update_;                  ///< of the client
  std::vector<uint32_t> painted_;  ///< of the window; empty: it has no pixels of its own
};

class Compositor {
 public:
  static constexpr uint32_t GroundColour = 0x00182430;  ///< where no window is

  Compositor();

  /// Called on the thread that has changed something, without a lock: wakes the UI thread. Not
  /// called again before that thread has looked. Set before the first window.
  void setWakeHook(std::function<void()> hook) { wakeHook_ = std::move(hook); }

  struct Placement {
    Rectangle outer;   ///< in the parent's client
    Rectangle client;  ///< in the window
    bool visible = true;
    bool framed = false;
    bool loose = false;  ///< dragged by what it shows
    PaintSource* source = nullptr;
    /// What the window shows outside its client; empty where that is nothing.
    std::vector<uint32_t> decoration = {};
  };
  /// Puts a window on top of its siblings. Without a parent it lies in the screen itself.
  void add(ScreenWindow& window, ScreenWindow* parent, Placement placement);
  /// Takes it off the screen; those that lie in it have gone before.
  void remove(ScreenWindow& window);

  // Painting. Rectangles are of the client; null is the whole of it.
  void invalidate(ScreenWindow& window, const Rectangle* area);
  void update(ScreenWindow& window);
  void flush(ScreenWindow& window, const Rectangle* area);
  void hold(ScreenWindow& window);
  void release(ScreenWindow& window, bool redraw);

  // Changes of place. What is shown afresh, resized or reshaped is painted whole.
  void show(ScreenWindow& window, bool visible);
  void move(ScreenWindow& window, int32_t x, int32_t y);
  void resize(ScreenWindow& window, int32_t outerWidth, int32_t outerHeight,
              const Rectangle& client, std::vector<uint32_t> decoration);
  void reshape(ScreenWindow& window, ClipShape shape);

  bool present(const ScreenWindow& window) const;
  bool shown(const ScreenWindow& window) const;  ///< by itself, wherever it lies
  Rectangle outer(const ScreenWindow& window) const;
  Rectangle client(const ScreenWindow& window) const;
  Rectangle onScreen(const ScreenWindow& window) const;

  // The UI thread.
  /// From here on a change wakes again.
  void beginLook() { wakePending_ = false; }
  /// Changes need not wake: the thread comes back by itself.
  void comesBack() { wakePending_ = true; }
  /// Paints what nobody has updated.
  void paintPending();
  /// What has changed in the frame since it was last taken. New windows are empty, and what is
  /// drawn into them comes in the next moment.
  enum class News { Nothing, NewWindows, Pictures };
  News news() const;
  /// Copies what has changed, or the whole frame.
  void take(Frame& frame, bool whole);
  /// What stands round a frame's client, or the picture of one without a border.
  struct FrameHit {
    ScreenWindow* window = nullptr;  ///< null: none of them is there
    Rectangle outer;                 ///< its place on the screen
    bool caption = false;
    bool picture = false;
  };
  FrameHit frameAt(int32_t x, int32_t y) const;
  struct WindowHit {
    const ScreenWindow* window = nullptr;  ///< null: the ground
    int32_t x = 0, y = 0;                  ///< the place in its client
  };
  /// The window that shows the pixel, by stacking order and shapes.
  WindowHit windowAt(int32_t x, int32_t y) const;
  /// Puts its corner there on the screen, as far as it stays inside; false when it cannot be
  /// dragged any more.
  bool drag(ScreenWindow& window, int32_t x, int32_t y);

 private:
  struct PlacedShape {
    const ClipShape* shape;
    int32_t x, y;
  };
  struct Copy {
    const ScreenWindow* window;
    Rectangle part;  ///< of the screen
    int32_t x, y;    ///< of the window, on the screen
    std::vector<PlacedShape> shapes;
  };
  struct Scan;
  /// Holds the lock, and wakes the UI thread behind it where there is something for it.
  class Change;

  bool toScreen(const ScreenWindow& window, Rectangle& part) const;
  void originOf(const ScreenWindow& window, int32_t& x, int32_t& y) const;
  bool seen(const ScreenWindow& window) const;
  void addToUpdate(ScreenWindow& window, const Rectangle* area);
  void paint(ScreenWindow& window);
  void paintTree(ScreenWindow& window);
  void paintWhole(ScreenWindow& window);
  void paintPendingIn(ScreenWindow& window);
  void placeAt(ScreenWindow& window, int32_t x, int32_t y);
  void composeWindow(const ScreenWindow& window);
  void compose(const Rectangle& area);
  void collect(const ScreenWindow& window, int32_t x, int32_t y, const Rectangle& clip, Scan& scan);
  void execute(const Copy& copy, const Rectangle& part, size_t shape);
  void copyRows(const Copy& copy, const Rectangle& part);
  ScreenWindow* hit(const std::vector<ScreenWindow*>& windows, int32_t originX, int32_t originY,
                    const Rectangle& clip, int32_t x, int32_t y) const;

  mutable Lock lock_;  ///< guards all below but the flag, and everything of the windows
  std::vector<ScreenWindow*> windows_;  ///< those without a parent, the newest last
  Frame frame_;
  Region damage_;                ///< of the frame, since it was last taken
  bool onlyNewWindows_ = false;  ///< the damage is nothing else
  bool pending_ = false;         ///< some window has an update region that nobody paints
  std::atomic<bool> wakePending_ = false;
  std::function<void()> wakeHook_;
};

}  // namespace qv
