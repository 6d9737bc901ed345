#pragma once

/// The five arrangements of a song, made by rule from one source, for kinds of MIDI devices:
///   a  a General MIDI instrument, as written
///   b  one with banks of variation tones, which colours some instruments otherwise
///   c  one of 24 voices without effects
///   d  one of General MIDI level 2, told its room by system exclusive messages
///   e  a small one: five parts and the drums, eight instruments, 16 voices
/// Pure functions; any thread.

#include <cstdint>
#include <string>
#include <vector>

#include "tools/song/song.h"

namespace qv::song {

struct Instrument {
  int bankHigh = -1, bankLow = -1;  ///< controllers 0 and 32; -1 sends none
  int program = 0;
};

struct Variant {
  char letter = 'a';
  int voices = 0;        ///< most notes at once; 0 for no limit
  int melodicParts = 0;  ///< beside the drums; 0 for no limit
  bool effects = true;   ///< sends reverb and chorus
  Instrument (*instrument)(const Part& part) = nullptr;
  /// Whole messages, from F0 to F7. None of them resets the device: a file is repeated whole, and a
  /// reset would cut the last notes' reverberation at each repeat.
  std::vector<std::vector<uint8_t>> exclusive{};
};

/// Null for a letter other than a to e.
const Variant* variantOf(char letter);

/// The song as this kind of device plays it: parts left out, voices limited.
Song arrange(const Song& song, const Variant& variant);

/// Takes notes away, or ends them earlier, until no more than `voices` sound at once. Parts that
/// stand later give way first, the drums last; within a part the inner notes of a chord.
void limitVoices(Song& song, int voices);

}  // namespace qv::song
