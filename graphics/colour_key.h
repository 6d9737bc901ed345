#pragma once

/// The last argument of most blits: which colour of the source is not drawn.

#include <cstdint>

namespace qv {

using ColourKey = int32_t;  ///< 0 to 255: that palette index
inline constexpr ColourKey KeyNone = -2, KeyTopLeft = -1;
/// Of an animation cell alone: the cell holds no picture.
inline constexpr ColourKey KeyNoPicture = -3;

}  // namespace qv
