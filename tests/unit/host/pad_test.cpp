// A game pad as keys: by itself, and through a real window.

#include <utility>

#include <gtest/gtest.h>

#include "platform/display/display.h"
#include "platform/display/key_codes.h"
#include "platform/sdl/sdl_events.h"

namespace qv {
namespace {

using Keys = std::vector<std::pair<int, bool>>;

Keys keysOf(PadKeys& pad, const SDL_Event& event) {
  Keys keys;
  for (const DisplayEvent& key : pad.translate(event))
    keys.emplace_back(key.key, key.kind == DisplayEvent::Kind::KeyDown);
  return keys;
}

SDL_Event button(SDL_GameControllerButton which, bool down) {
  SDL_Event event = {};
  event.type = down ? SDL_CONTROLLERBUTTONDOWN : SDL_CONTROLLERBUTTONUP;
  event.cbutton.button = static_cast<Uint8>(which);
  return event;
}

SDL_Event axis(SDL_GameControllerAxis which, int value) {
  SDL_Event event = {};
  event.type = SDL_CONTROLLERAXISMOTION;
  event.caxis.axis = static_cast<Uint8>(which);
  event.caxis.value = static_cast<Sint16>(value);
  return event;
}

TEST(PadKeysTest, TheCrossIsTheCursorKeysAndTwoButtonsAcceptAndCancel) {
  const std::pair<SDL_GameControllerButton, int> known[] = {
      {SDL_CONTROLLER_BUTTON_DPAD_UP, KeyUp},     {SDL_CONTROLLER_BUTTON_DPAD_DOWN, KeyDown},
      {SDL_CONTROLLER_BUTTON_DPAD_LEFT, KeyLeft}, {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, KeyRight},
      {SDL_CONTROLLER_BUTTON_A, KeyReturn},       {SDL_CONTROLLER_BUTTON_B, KeyEscape}};
  PadKeys pad;
  for (const auto& [which, key] : known) {
    EXPECT_EQ(keysOf(pad, button(which, true)), Keys({{key, true}}));
    EXPECT_EQ(keysOf(pad, button(which, false)), Keys({{key, false}}));
  }
  EXPECT_EQ(keysOf(pad, button(SDL_CONTROLLER_BUTTON_Y, true)), Keys());
  EXPECT_EQ(keysOf(pad, button(SDL_CONTROLLER_BUTTON_GUIDE, true)), Keys());
}

TEST(PadKeysTest, TheStickPressesOnceAndLetsGoNearTheMiddle) {
  PadKeys pad;
  constexpr auto X = SDL_CONTROLLER_AXIS_LEFTX, Y = SDL_CONTROLLER_AXIS_LEFTY;
  EXPECT_EQ(keysOf(pad, axis(X, 15'999)), Keys());
  EXPECT_EQ(keysOf(pad, axis(X, 16'000)), Keys({{KeyRight, true}}));
  EXPECT_EQ(keysOf(pad, axis(X, 32'767)), Keys());
  EXPECT_EQ(keysOf(pad, axis(X, 12'000)), Keys()) << "a stick trembles";
  EXPECT_EQ(keysOf(pad, axis(X, 9'000)), Keys({{KeyRight, false}}));
  EXPECT_EQ(keysOf(pad, axis(Y, -32'768)), Keys({{KeyUp, true}}));
  EXPECT_EQ(keysOf(pad, axis(Y, 32'767)), Keys({{KeyUp, false}, {KeyDown, true}}));
  EXPECT_EQ(keysOf(pad, axis(SDL_CONTROLLER_AXIS_RIGHTX, 32'767)), Keys());
}

TEST(PadKeysTest, APadThatGoesLetsItsStickGo) {
  PadKeys pad;
  keysOf(pad, axis(SDL_CONTROLLER_AXIS_LEFTY, 32'767));
  SDL_Event gone = {};
  gone.type = SDL_CONTROLLERDEVICEREMOVED;
  EXPECT_EQ(keysOf(pad, gone), Keys({{KeyDown, false}}));
  EXPECT_EQ(keysOf(pad, gone), Keys());
}

}  // namespace
}  // namespace qv
