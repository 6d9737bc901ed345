#pragma once

/// How a run of text looks. Plain data.

#include <cstdint>

namespace qv {

enum class FontFace { Gothic, ProportionalGothic, Mincho, ProportionalMincho };

struct TextStyle {
  FontFace face = FontFace::Gothic;
  int heightPixels = 16;  ///< the cell's height; in the system fonts also the em
  /// The faces have neither bold nor italic forms: bold is drawn twice, one pixel apart, and makes
  /// each character one pixel wider; italic leans rows to the right and changes no width.
  bool bold = false, italic = false;
  bool underline = false, strikeOut = false;

  bool operator==(const TextStyle&) const = default;
};

}  // namespace qv
