#pragma once

/// The store of the lines that the player has read, in the string registers, so that a save holds
/// it. Scenario thread.

namespace qv {

/// Adds a line under the present SpeakerName; a full store drops its oldest.
void AddHistory(const char* text);

}  // namespace qv
