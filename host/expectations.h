#pragma once

/// Holds what a play script expects against the game. Called while a scene waits and cannot go on.

#include <string>

#include "host/game_host.h"
#include "host/play_script.h"
#include "platform/display/display.h"

namespace qv {

/// Empty when the expectation holds, otherwise what was there, as part of a sentence.
std::string compareExpectation(const ScriptLine& line, GameHost& host, const Frame& frame);

}  // namespace qv
