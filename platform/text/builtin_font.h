#pragma once

/// The small font that every build carries: text never fails for want of a font file. It has ASCII,
/// the half-width katakana, kana, full-width letters and the signs that Japanese text needs; no
/// other kanji than the repetition mark. The shapes are strokes in `builtin_strokes.inc`.
/// Pure functions; any thread.

#include <array>
#include <cstdint>
#include <optional>

namespace qv {

/// A picture of 16 rows, the top one first. Bit 15 of a row is its leftmost pixel. Capitals stand
/// on row 12; a pixel of space is kept at the right of single bytes.
struct BuiltinGlyph {
  int width = 0;  ///< 8 for single bytes, 16 for double-byte characters
  std::array<uint16_t, 16> rows{};
};

/// The picture of a character: one byte, or lead * 256 + trail. Drawn anew at each call (some
/// microseconds): keep it. Nothing where the font has no such character.
std::optional<BuiltinGlyph> builtinGlyph(uint16_t shiftJisCode);

}  // namespace qv
