#pragma once

/// SkipPoll: what picture commands do between their stages while messages are skipped. It takes
/// input that is to stop the skip and keeps it for the next wait. Scenario thread; raises on abort.

#include <cstdint>

namespace qv {

/// The map over the whole screen, on which the waits of messages sleep.
inline constexpr const char* WholeScreenMap = "clmall";
inline constexpr uint32_t SkipPollMillis = 70;

void SkipPoll();

}  // namespace qv
