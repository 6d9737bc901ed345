#pragma once

/// How input of the window becomes the one integer that scenes and screens see.

#include <cstdint>

#include "platform/display/key_codes.h"

namespace qv {

inline constexpr int32_t CodeNothing = -2, CodeRight = -1, CodePress = 0, CodeKey = 2048;

constexpr int32_t codeOfKey(int key) {
  return CodeKey + key;
}
/// The wheel turns as the cursor keys step: 1 up, -1 down.
constexpr int32_t codeOfWheel(int turn) {
  return codeOfKey(turn > 0 ? KeyUp : KeyDown);
}

}  // namespace qv
