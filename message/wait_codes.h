#pragma once

/// What the waits of lines and selections have in common: how they ask a click map, what they get
/// from it, and what they give to the scene. Any thread.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace qv {

/// A click map is waited on with the keys.
inline constexpr int32_t WithKeys = 1;
/// Keys that are the pointer's buttons, pressed where no map lies.
inline constexpr int32_t LeftButtonKey = 1, RightButtonKey = 2;
/// A hover that is asked for is told at the pointer's next move; with a nudge, at once.
inline constexpr int32_t WithoutNudge = 0, WithNudge = 1;

/// Results with which a line and a selection leave the scene.
inline constexpr int32_t WaitLoaded = -13, WaitToTitle = -10, WaitToEnd = 255;

template <size_t Count>
bool isOneOf(const std::array<int32_t, Count>& codes, int32_t code) {
  return std::ranges::find(codes, code) != codes.end();
}

}  // namespace qv
