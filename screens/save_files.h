#pragma once

/// What is known of the files of saved games by looking at them from outside. Scenario thread.

namespace qv {

/// Whether a save of that name is there. A file of 7 July 1997 is none: that date marks the blank
/// ones of an installation. Raises what opening it raises.
bool SaveIsUsed(const char* file);

}  // namespace qv
