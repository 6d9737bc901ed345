#pragma once

/// A Standard MIDI File as text for a person: event by event, or as notation. Pure functions.

#include <string>

#include "tools/song/smf_reader.h"

namespace qv::song {

/// One line an event: bar, beat, tick within the beat, and what it says. Faults stand first.
std::string listSmf(const SmfFile& file);

/// The notation of docs/song-notation.md. Places and lengths go to its nearest values; a note that
/// sounds on where the next of its part begins ends there, which a comment tells. Set-up that the
/// notation has no word for is not carried over.
std::string notationOf(const SmfFile& file);

}  // namespace qv::song
