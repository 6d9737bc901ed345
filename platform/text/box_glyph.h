#pragma once

/// Glyphs without a font file: the built-in font, and boxes. Pure.

#include <cstdint>

#include "platform/text/glyph.h"

namespace qv {

/// A character of the built-in font, or else a hollow box with the code's hexadecimal digits in it
/// where the cell has room for them.
GlyphShape builtInShape(uint16_t code, int advance, int height);
GlyphShape boxShape(uint16_t code, int advance, int height);

}  // namespace qv
