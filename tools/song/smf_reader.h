#pragma once

/// Takes a Standard MIDI File apart, whatever its bytes are: what is broken is told, what stands
/// before it is kept, and nothing takes more memory than the file could hold. Pure functions.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qv::song {

struct SmfEvent {
  uint64_t tick = 0;
  uint8_t status = 0;         ///< with running status written out; 0xF0, 0xF7 and 0xFF as they are
  uint8_t type = 0;           ///< of a meta event
  std::vector<uint8_t> data;  ///< behind status and type, without the length
};

struct SmfTrack {
  std::vector<SmfEvent> events;
  bool ended = false;  ///< by its End of Track
};

struct SmfFile {
  int format = 0, declaredTracks = 0, division = 0;
  std::vector<SmfTrack> tracks;
  std::vector<std::string> faults;  ///< sentences; empty for a sound file
};

/// A file without "MThd" has a fault and nothing else.
SmfFile readSmf(std::span<const uint8_t> bytes);

}  // namespace qv::song
