#include "platform/sdl/sdl_events.h"

#include <algorithm>

#include "platform/display/key_codes.h"

namespace qv {

namespace {

struct KeyRange {
  SDL_Keycode first, last;  ///< of SDL, inclusive
  int code;                 ///< the virtual code of the first
};

constexpr KeyRange KeyTable[] = {
    {SDLK_a, SDLK_z, KeyA},
    {SDLK_0, SDLK_9, Key0},
    {SDLK_F1, SDLK_F12, KeyF1},
    {SDLK_KP_1, SDLK_KP_9, KeyNum0 + 1},
    {SDLK_KP_0, SDLK_KP_0, KeyNum0},
    {SDLK_BACKSPACE, SDLK_BACKSPACE, KeyBack},
    {SDLK_TAB, SDLK_TAB, KeyTab},
    {SDLK_RETURN, SDLK_RETURN, KeyReturn},
    {SDLK_KP_ENTER, SDLK_KP_ENTER, KeyReturn},
    {SDLK_ESCAPE, SDLK_ESCAPE, KeyEscape},
    {SDLK_SPACE, SDLK_SPACE, KeySpace},
    {SDLK_PAGEUP, SDLK_PAGEUP, KeyPageUp},
    {SDLK_PAGEDOWN, SDLK_PAGEDOWN, KeyPageDown},
    {SDLK_END, SDLK_END, KeyEnd},
    {SDLK_HOME, SDLK_HOME, KeyHome},
    {SDLK_LEFT, SDLK_LEFT, KeyLeft},
    {SDLK_UP, SDLK_UP, KeyUp},
    {SDLK_RIGHT, SDLK_RIGHT, KeyRight},
    {SDLK_DOWN, SDLK_DOWN, KeyDown},
    {SDLK_INSERT, SDLK_INSERT, KeyInsert},
    {SDLK_DELETE, SDLK_DELETE, KeyDelete},
    {SDLK_LSHIFT, SDLK_LSHIFT, KeyShift},
    {SDLK_RSHIFT, SDLK_RSHIFT, KeyShift},
    {SDLK_LCTRL, SDLK_LCTRL, KeyControl},
    {SDLK_RCTRL, SDLK_RCTRL, KeyControl},
    {SDLK_LALT, SDLK_LALT, KeyAlt},
    {SDLK_RALT, SDLK_RALT, KeyAlt},
};

/// What the keypad's 0 to 9 mean without the number lock; 5 means nothing.
constexpr int KeypadDirections[] = {KeyInsert, KeyEnd,   KeyDown, KeyPageDown, KeyLeft,
                                    0,         KeyRight, KeyHome, KeyUp,       KeyPageUp};

/// Letters and digits by their place, for layouts whose own keys there are neither.
int virtualKeyOfPlace(SDL_Scancode place) {
  if (place >= SDL_SCANCODE_A && place <= SDL_SCANCODE_Z) return KeyA + (place - SDL_SCANCODE_A);
  if (place >= SDL_SCANCODE_1 && place <= SDL_SCANCODE_9)
    return Key0 + 1 + (place - SDL_SCANCODE_1);
  return place == SDL_SCANCODE_0 ? Key0 : 0;
}

DisplayEvent pointerEvent(DisplayEvent::Kind kind, ScreenPoint at) {
  DisplayEvent event;
  event.kind = kind;
  event.x = at.x;
  event.y = at.y;
  return event;
}

DisplayEvent buttonEvent(const SDL_MouseButtonEvent& button, const WindowGeometry& geometry) {
  DisplayEvent event =
      pointerEvent(button.type == SDL_MOUSEBUTTONDOWN ? DisplayEvent::Kind::ButtonDown
                                                      : DisplayEvent::Kind::ButtonUp,
                   geometry.toGame(button.x, button.y));
  switch (button.button) {
    case SDL_BUTTON_LEFT:
      event.button = PointerButton::Left;
      return event;
    case SDL_BUTTON_RIGHT:
      event.button = PointerButton::Right;
      return event;
    case SDL_BUTTON_MIDDLE:
      event.button = PointerButton::Middle;
      return event;
    default:
      return {};  // the side buttons mean nothing to a game of its time
  }
}

DisplayEvent wheelEvent(const SDL_MouseWheelEvent& wheel) {
  const int turned = wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -wheel.y : wheel.y;
  if (turned == 0) return {};
  DisplayEvent event;
  event.kind = DisplayEvent::Kind::Wheel;
  event.y = turned > 0 ? 1 : -1;
  return event;
}

DisplayEvent keyEvent(const SDL_KeyboardEvent& key) {
  const int code = virtualKeyOf(key.keysym);
  if (code == 0) return {};
  DisplayEvent event;
  event.kind = key.type == SDL_KEYDOWN ? DisplayEvent::Kind::KeyDown : DisplayEvent::Kind::KeyUp;
  event.key = code;
  event.repeat = key.repeat != 0;
  event.alt = (key.keysym.mod & KMOD_ALT) != 0;
  return event;
}

/// A coordinate in other units; a length that is not known leaves it.
int scaled(int value, int to, int from) {
  return from == to || from <= 0 ? value : static_cast<int>(int64_t{value} * to / from);
}

}  // namespace

ScreenPoint WindowGeometry::toGame(int windowX, int windowY) const {
  return fit.toGame(scaled(windowX, outputWidth, windowWidth),
                    scaled(windowY, outputHeight, windowHeight));
}

ScreenPoint WindowGeometry::toWindow(int gameX, int gameY) const {
  const ScreenPoint output = fit.toOutput(gameX, gameY);
  ScreenPoint window{scaled(output.x, windowWidth, outputWidth),
                     scaled(output.y, windowHeight, outputHeight)};
  // A unit of several pixels may begin with those of the neighbour.
  const ScreenPoint shown = toGame(window.x, window.y);
  if (shown.x < std::min(gameX, ScreenWidth - 1)) ++window.x;
  if (shown.y < std::min(gameY, ScreenHeight - 1)) ++window.y;
  return window;
}

int virtualKeyOf(const SDL_Keysym& key) {
  for (const KeyRange& range : KeyTable)
    if (key.sym >= range.first && key.sym <= range.last) {
      const int code = range.code + (key.sym - range.first);
      const bool keypadDigit = code >= KeyNum0 && code <= KeyNum0 + 9;
      return keypadDigit && (key.mod & KMOD_NUM) == 0 ? KeypadDirections[code - KeyNum0] : code;
    }
  return virtualKeyOfPlace(key.scancode);
}

// --- Pads ---

namespace {

struct PadButton {
  SDL_GameControllerButton button;
  int key;
};
constexpr PadButton PadButtons[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_UP, KeyUp},     {SDL_CONTROLLER_BUTTON_DPAD_DOWN, KeyDown},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, KeyLeft}, {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, KeyRight},
    {SDL_CONTROLLER_BUTTON_A, KeyReturn},       {SDL_CONTROLLER_BUTTON_B, KeyEscape},
};
/// What the two axes of the left stick press to either side.
constexpr int StickKeys[2][2] = {{KeyLeft, KeyRight}, {KeyUp, KeyDown}};

DisplayEvent padKey(int key, bool down) {
  DisplayEvent event;
  event.kind = down ? DisplayEvent::Kind::KeyDown : DisplayEvent::Kind::KeyUp;
  event.key = key;
  return event;
}

}  // namespace

std::vector<DisplayEvent> PadKeys::translate(const SDL_Event& event) {
  std::vector<DisplayEvent> keys;
  if (event.type == SDL_CONTROLLERBUTTONDOWN || event.type == SDL_CONTROLLERBUTTONUP)
    for (const PadButton& known : PadButtons)
      if (event.cbutton.button == known.button)
        keys.push_back(padKey(known.key, event.type == SDL_CONTROLLERBUTTONDOWN));
  if (event.type == SDL_CONTROLLERAXISMOTION) takeAxis(event.caxis.axis, event.caxis.value, keys);
  // A pad that goes lets its stick go.
  if (event.type == SDL_CONTROLLERDEVICEREMOVED)
    for (const int axis : {0, 1})
      takeAxis(axis, 0, keys);
  return keys;
}

void PadKeys::takeAxis(int axis, int value, std::vector<DisplayEvent>& keys) {
  static_assert(SDL_CONTROLLER_AXIS_LEFTX == 0 && SDL_CONTROLLER_AXIS_LEFTY == 1);
  if (axis < 0 || axis > 1) return;
  int& held = held_[axis];
  const int side = value >= HeldAxis ? 1 : value <= -HeldAxis ? -1 : 0;
  const bool trembles = side == 0 && value * held > LetGoAxis;
  if (side == held || trembles) return;
  if (held != 0) keys.push_back(padKey(StickKeys[axis][held > 0], false));
  if (side != 0) keys.push_back(padKey(StickKeys[axis][side > 0], true));
  held = side;
}

DisplayEvent translateEvent(const SDL_Event& event, const WindowGeometry& geometry) {
  switch (event.type) {
    case SDL_MOUSEMOTION:
      return pointerEvent(DisplayEvent::Kind::PointerMove,
                          geometry.toGame(event.motion.x, event.motion.y));
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
      return buttonEvent(event.button, geometry);
    case SDL_MOUSEWHEEL:
      return wheelEvent(event.wheel);
    case SDL_KEYDOWN:
    case SDL_KEYUP:
      return keyEvent(event.key);
    case SDL_TEXTINPUT: {
      DisplayEvent typed;
      typed.kind = DisplayEvent::Kind::Text;
      typed.text = event.text.text;
      return typed;
    }
    default:
      return {};
  }
}

}  // namespace qv
