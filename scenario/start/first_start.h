#pragma once

/// What the very first start of a game sets, once in a player's life: the switches on, the places
/// of the boxes. Scenario thread.

namespace qv {

/// Nothing when it has been done before.
void setFirstStartDefaults();

}  // namespace qv
