#pragma once

/// The songs and effects that scenes ask for, and the files they are. Constant; any thread.

#include <cstdint>
#include <span>
#include <string>

namespace qv {

inline constexpr int32_t SongCount = 16;
/// Device kinds of the configuration: each has its own arrangement of every song.
inline constexpr int32_t FirstDeviceKind = 1, LastDeviceKind = 5;

/// 1 to SongCount for "K01" to "K16", exactly so; 0 for anything else, and for null.
int32_t songNumber(const char* name);
/// "midi\K03b.mid" for song 3 and kind 2; empty where there is no such song or kind.
std::string songFile(int32_t number, int32_t deviceKind);

struct SoundEffect {
  const char* key;     ///< "SE01"
  const char* label;   ///< another name for it (UTF-8); null: none
  const char* digits;  ///< of the file; empty: the file has none
  int32_t code;        ///< what the registers keep
};

std::span<const SoundEffect> soundEffects();
/// The first row in the table's order whose key or label it is (Shift-JIS); null: none.
const SoundEffect* findSoundEffect(const char* name);
/// "wave\vlse005.wav"
std::string fileOf(const SoundEffect& effect);
/// "SE05" for code 5.
std::string effectKey(int32_t code);

}  // namespace qv
