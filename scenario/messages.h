#pragma once

/// Message numbers between the scenario thread and the host: fixed contract numbers.

#include <cstdint>

namespace qv {

// Thread messages to the UI thread.
inline constexpr uint32_t MessageCreateWindow = 1125, MessageDestroyWindow = 1126,
                          MessageRefreshCursor = 1136;
// Sent messages.
inline constexpr uint32_t MessageSceneName = 1871, MessageAnimationStart = 1840,
                          MessageAnimationStop = 1841;
// Messages of the classic window system that windows of the game answer.
inline constexpr uint32_t MessageClose = 16, MessageSetFocus = 7, MessageKillFocus = 8,
                          MessageKeyDown = 256, MessageImeChar = 646;

}  // namespace qv
