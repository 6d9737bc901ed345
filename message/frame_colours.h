#pragma once

/// How a picture's colours become the frame's: the tint of the window's colour over all entries
/// that are not the system's. Pure.

#include <cstdint>

#include "graphics/palette.h"

namespace qv {

/// `colour` 0 to 7, others leave the palette as it is; a dark picture is raised, since a tint of
/// black is black.
void tintFrame(scobjPalette& palette, int32_t colour, bool dark);

/// Black, black and white, where texts and frames expect them.
void setFixedColours(scobjPalette& palette);

}  // namespace qv
