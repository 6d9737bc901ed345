#pragma once

/// Type codes of named objects: fixed contract numbers.

namespace qv {

inline constexpr int TypeView = 5, TypeFrame = 6, TypeFrameless = 8, TypePlainWindow = 12,
                     TypeSecondView = 13, TypeReleasedWindow = 14, TypeAnimationControl = 37;
inline constexpr int TypeSurface = 41, TypeCursor = 42, TypeAnimatedControl = 43,
                     TypePrintArea = 44, TypeHitret = 45, TypeClickMap = 46,
                     TypeAnimationSurface = 47, TypeAnimationSequence = 48, TypeAnimationArea = 49,
                     TypeFrameFilm = 50;
inline constexpr int FirstTypeCode = 5, LastTypeCode = 50;

}  // namespace qv
