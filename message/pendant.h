#pragma once

/// The pendant: a small window of its own that opens the configuration screen. The player may drag
/// it; where it was hidden last it comes back, also in another game. Without a manager or without
/// its window the commands do nothing. Scenario thread.

#include <cstdint>

namespace qv {

inline constexpr const char* PendantWindow = "system.cut.win";

/// What waits when the pendant is to be shown: values of WaitKindRegister.
inline constexpr int32_t WaitKindNone = 0, WaitKindFirst = 1, WaitKindClick = 4,
                         WaitKindLast = WaitKindClick;
/// PendantSuppressRegister: the configuration screen runs, and the pendant stays away.
inline constexpr int32_t PendantSuppressed = 1;

/// Whether the player has the message window hidden; the wait for a click keeps it.
extern int32_t MessageWindowHiddenFlag;

/// Shows it where its registers say, pulled onto the screen. Not while it is suppressed or shown,
/// nor in a wait whose message window the player has hidden.
void ShowPendant();
/// Hides it if it is shown, and writes its place to the system file.
void HidePendant();

}  // namespace qv
