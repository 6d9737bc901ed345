#pragma once

/// SkipPoll: what picture commands do between their stages while messages are skipped. It takes
/// input that is to stop the skip and keeps it for the next wait. Scenario thread; raises on abort.

#include <cstdint>

#include "message/standing_names.h"

namespace qv {

inline constexpr uint32_t SkipPollMillis = 70;

void SkipPoll();

/// One poll of the whole screen with keys, as ClickTickWait gives it. Raises on abort.
int32_t pollWholeScreen(uint32_t millis);
/// Where a wait's map is gone, which the player was told, its loop rests instead of spinning.
/// Raises on abort.
void restWithoutMap(const char* name, uint32_t millis);

}  // namespace qv
