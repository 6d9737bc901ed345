#pragma once

/// The characters that may not begin a line, in the two sets that the game's areas use. Shift-JIS.
/// Any thread.

#include <string>

namespace qv {

const std::string& shortNoLineStart();  ///< names and the help page
/// Messages and selections: with small kana, the long sound mark and signs of the game's own font.
const std::string& longNoLineStart();

}  // namespace qv
