#pragma once

/// Set by save and load commands; the next wait then brings the pointer's region up to date once.
/// Not saved. Scenario thread.

#include <cstdint>

namespace qv {

extern int32_t DataLoadedFlag;

}  // namespace qv
