#pragma once

/// The test cards of the reel, drawn by rule into named surfaces, so that they are the same on
/// every machine. Scenario thread.

#include <cstdint>

namespace qv::reel {

inline constexpr int32_t CardWidth = 160, CardHeight = 120;
inline constexpr int32_t MouthWidth = 24, MouthHeight = 16, MouthCells = 3;
inline constexpr int32_t PromptSide = 12, PromptCells = 8;

/// The surfaces "old.card" (checks in warm colours) and "new.card" (rings in cold ones, whose
/// corners are index 0), "mask.card" (a slope that thins out), "disc.card" (a disc, for outlines),
/// "sky.card" (stripes) and "cloud.card" (hills on index 0, twice as wide), and the files of cells
/// "mouth.bmp" and "prompt.bmp" in the player's folder. All share one table of colours.
void drawCards();

}  // namespace qv::reel
