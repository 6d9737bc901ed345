#pragma once

/// The files that the engine itself loads, whatever the story: the standing pictures, the font of
/// its signs, the system's colours. A test holds this list against the engine's sources.

#include <span>

namespace qv::story {

/// As the engine says them: "dat\\mframe.mcg".
std::span<const char* const> engineFiles();

}  // namespace qv::story
