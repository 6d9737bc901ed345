#pragma once

/// Whether external characters (F040 to F9FC) are drawn from the game's font file. The game turns
/// them off while it changes which file that is. Any thread.

namespace qv {

void enableExternalCharacters(bool on);
bool externalCharactersEnabled();  ///< on at first

}  // namespace qv
