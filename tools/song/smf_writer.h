#pragma once

/// Writes a song as a Standard MIDI File of format 1 (MIDI Manufacturers Association, RP-001): a
/// track of tempo and metre, then one for each part. Every message has its own status byte, and all
/// tracks end with the song. The same song gives the same bytes.

#include <cstdint>
#include <vector>

#include "tools/song/song.h"
#include "tools/song/variants.h"

namespace qv::song {

std::vector<uint8_t> writeSmf(const Song& song, const Variant& variant);

/// Microseconds of a quarter note from which a whole tempo comes back when 60000000 is divided by
/// them without a rest.
uint32_t microsecondsOf(int beatsPerMinute);

}  // namespace qv::song
