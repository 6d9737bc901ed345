#pragma once

/// What lines, waits and selections share of the standing objects: names, regions of the screen's
/// map, the strip's place. Any thread.

#include <cstdint>

namespace qv {

// Click maps. The screen's is the one that the waits of lines sleep on; a selection's takes its
// place, and the pendant's lies under whichever of the two waits.
inline constexpr const char *WholeScreenMap = "clmall", *SelectionMap = "clmsel01",
                            *PendantMap = "systemButton.click";

// Their regions.
inline constexpr int32_t NeutralRegion = 0, QuickSaveRegion = 4, PendantRegion = 5, SkipRegion = 6,
                         QuickLoadRegion = 7, AdvanceRegion = 10;

// The strip of the message window, as a view and as a part of the screen: with its frame, and in
// drama mode.
inline constexpr const char *NormalView = "mess.view", *DramaView = "mess.Drama";
inline constexpr int32_t StripWidth = 640, NormalTop = 352, NormalHeight = 127, DramaTop = 372,
                         DramaHeight = 107;

}  // namespace qv
