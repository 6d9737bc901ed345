#pragma once

/// SDL's events as the display's, and the display's cursors as SDL's. Pure functions of their
/// arguments; any thread.

#include <vector>

#include <SDL2/SDL.h>

#include "platform/display/display.h"
#include "platform/display/screen_fit.h"

namespace qv {

/// The way from the window's coordinates (what events carry) to the game screen.
struct WindowGeometry {
  int windowWidth = ScreenWidth, windowHeight = ScreenHeight;  ///< in the window's units
  int outputWidth = ScreenWidth, outputHeight = ScreenHeight;  ///< in real pixels
  ScreenFit fit;

  ScreenPoint toGame(int windowX, int windowY) const;
  ScreenPoint toWindow(int gameX, int gameY) const;
};

/// The virtual code of a key; 0 for keys that the game does not know. The keypad's digits are
/// directions while the number lock is off.
int virtualKeyOf(const SDL_Keysym& key);

/// SDL's form of a system cursor by the classic platform's number; the arrow for any other.
SDL_SystemCursor systemCursorOf(int32_t number);

/// A cursor of SDL's, which the caller frees; null where none can be had. With video started.
SDL_Cursor* makeCursor(const PointerLook& look);
/// A game pad as keys: the cross and the left stick are the cursor keys, the lower button accepts
/// (Return), the right one cancels (Esc). All pads are one.
class PadKeys {
 public:
  /// So far the stick must lie over to count as held, and so near the middle to count as let go.
  static constexpr int HeldAxis = 16'000, LetGoAxis = 10'000;

  /// The keys that a pad's event presses and lets go; none for others.
  std::vector<DisplayEvent> translate(const SDL_Event& event);

 private:
  void takeAxis(int axis, int value, std::vector<DisplayEvent>& keys);
  int held_[2] = {};  ///< of each axis of the left stick: -1, 0 or 1
};

/// The display's form of a pointer, wheel, key or text event; Kind::None for all others. Fingers
/// and the window's own events are the window's to translate, because they depend on its state.
DisplayEvent translateEvent(const SDL_Event& event, const WindowGeometry& geometry);

}  // namespace qv
