#pragma once

/// The one real window that shows the game screen, and the devices on it. All calls but `wake`
/// come from the UI thread (the program's main thread). Coordinates are pixels of the 640 by 480
/// game screen, whatever the size of the real window.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/display/pointer_look.h"

namespace qv {

inline constexpr int ScreenWidth = 640, ScreenHeight = 480;

/// 640 by 480 words 0x00RRGGBB, top row first, no padding.
using Frame = std::vector<uint32_t>;

enum class PointerButton { Left, Right, Middle };

struct DisplayEvent {
  enum class Kind {
    None,
    PointerMove,  ///< x, y
    ButtonDown,   ///< button, x, y
    ButtonUp,     ///< button, x, y
    Wheel,        ///< y: 1 up, -1 down
    KeyDown,      ///< key; `repeat` for auto-repeat
    KeyUp,        ///< key
    Text,         ///< text (UTF-8)
    Close,
    Minimised,
    Restored,
    FocusGained,
    FocusLost,
  };
  Kind kind = Kind::None;
  int x = 0, y = 0;
  PointerButton button = PointerButton::Left;
  int key = 0;  ///< virtual key code, see platform/display/key_codes.h
  bool repeat = false;
  bool alt = false;  ///< KeyDown, KeyUp: an Alt key is held (Alt+Return is the host's)
  std::string text;
};

class Display {
 public:
  virtual ~Display() = default;
  /// Takes the frame to the screen. Never waits for the display's rate longer than one frame.
  /// While minimised the frame is kept and shown on restoring.
  virtual void present(const Frame& frame) = 0;
  virtual void setTitle(std::string_view utf8) = 0;
  virtual void setFullScreen(bool on) = 0;
  virtual bool fullScreen() const = 0;
  virtual bool minimised() const = 0;
  /// Waits until an event, `wake`, or the limit. False when there is no event.
  virtual bool waitEvent(DisplayEvent& event, uint32_t limitMillis) = 0;
  /// Ends the `waitEvent` that runs, or the next one. Events that came first are given first.
  /// Any thread.
  virtual void wake() = 0;
  /// Moves the system's pointer while the window has the focus.
  virtual void movePointer(int x, int y) = 0;
  /// What the pointer looks like over the window from now on; the arrow at first.
  virtual void setCursor(const PointerLook& look) = 0;
};

enum class Scaling { Fit, WholeFactors };

struct WindowOptions {
  std::string title;
  Scaling scaling = Scaling::Fit;
  bool fullScreen = false;
  int scale = 1;  ///< the window's size at first, in whole game screens
};

/// The SDL2 form (library qv_sdl). Null where no window can be opened; `whyNot` then says so in a
/// sentence.
std::unique_ptr<Display> makeWindowDisplay(const WindowOptions& options, std::string& whyNot);

}  // namespace qv
