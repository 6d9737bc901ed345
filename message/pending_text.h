#pragma once

/// The text of the running line in its string registers: collected by PrintMessage, taken when the
/// wait prints it. Scenario thread.

#include <optional>
#include <string>

namespace qv {

/// Adds to the text that waits, and to the line's own record of all its pieces.
void appendPending(const char* text);

/// What is to be printed now, with the hero's names in it; nothing when no text waits. It becomes
/// MessageLast, and goes into the history unless it repeats the last text.
std::optional<std::string> takePending();

}  // namespace qv
