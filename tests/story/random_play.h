#pragma once

// Play scripts of a player who does anything at all: keys, clicks and drags at random places, the
// pointer's wheel, a window minimised, at any time and mostly in waits, so that the story goes on.

#include <cstdint>
#include <string>

namespace qv::testing {

/// The same seed gives the same script, on every machine.
std::string randomPlay(uint64_t seed, int inputs);

}  // namespace qv::testing
