#pragma once

/// Reads the classic cursor file (.cur): a directory of images, each a bitmap header with twice the
/// height, a colour table, the colours of the picture and then a mask of one bit a pixel that says
/// where nothing is drawn. Images of 1, 4, 8, 24 and 32 bits without compression. A pure function.

#include <cstdint>
#include <optional>
#include <span>

#include "platform/display/pointer_look.h"

namespace qv {

/// No image of a cursor is larger, either way.
inline constexpr int32_t MostCursorPixels = 256;
/// No cursor file that is read is longer.
inline constexpr int64_t MostCursorFileBytes = 4 << 20;

/// The image whose size is nearest to 32 by 32, the first of several. Pixels that should show the
/// screen's reverse are black. Nothing where no image is sound.
std::optional<CursorPicture> readCursorFile(std::span<const uint8_t> file);

}  // namespace qv
