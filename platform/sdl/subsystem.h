#pragma once

/// The parts of SDL that are started. Window and sound start theirs on threads of their own, and
/// SDL counts them, and what they share, without a lock.

#include <cstdint>

namespace qv {

/// `part`: one of SDL_INIT_*. False leaves SDL's own error text. Any thread.
bool startSubsystem(uint32_t part);
/// Once for each start that was good. Any thread.
void quitSubsystem(uint32_t part);

}  // namespace qv
