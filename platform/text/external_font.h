#pragma once

/// The font of external characters (F040 to F9FC): a TrueType file that maps them to U+E000 and on.
/// Which file that is stands in the settings, where the game puts its own for the run. The game
/// turns external characters off while it changes that. Any thread.

#include <cstdint>
#include <vector>

namespace qv {

void enableExternalCharacters(bool on);
bool externalCharactersEnabled();  ///< on at first

/// Rises whenever another file may have become the font.
uint32_t externalFontGeneration();
/// The bytes of the font's file; empty where external characters are off, where no file is set or
/// it cannot be read, and where it is none that a font could be. Takes locks of the files and the
/// settings.
std::vector<uint8_t> readExternalFont();

constexpr bool isExternalCharacter(uint16_t code) {
  return code >= 0xF040 && code <= 0xF9FC;
}

}  // namespace qv
