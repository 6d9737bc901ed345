#pragma once

/// The file that keeps the hero's names from one game to the next. Scenario thread.

namespace qv {

/// "LOAD": the file's names, or none, into the registers. "SAVE": the registers into the file.
/// Raises what the file raises.
void UserNameFile(const char* word);

}  // namespace qv
