#pragma once

/// Keeps the glyphs that were drawn once, found by style and code. One thread at a time.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/text/glyph.h"
#include "platform/text/glyph_source.h"
#include "platform/text/text_style.h"

namespace qv {

/// All glyphs of one style. Those that come together in texts lie together: a page for each lead
/// byte, the first for single bytes.
class StyleGlyphs {
 public:
  explicit StyleGlyphs(const TextStyle& style) : style_(style) {}
  const TextStyle& style() const { return style_; }

  /// Null where it has not been made yet. `code`: lead * 256 + trail, or the byte.
  const Glyph* find(uint16_t code) const {
    const auto& page = pages_[code >> 8];
    return page ? (*page)[code & 0xFF] : nullptr;
  }
  /// Keeps a glyph; gives it. Counts what it takes into `bytes`.
  const Glyph& keep(uint16_t code, const GlyphShape& shape, size_t& bytes);

 private:
  using Page = std::array<const Glyph*, 256>;
  TextStyle style_;
  std::array<std::unique_ptr<Page>, 256> pages_;
  std::deque<Glyph> glyphs_;
  std::vector<std::unique_ptr<uint32_t[]>> rows_;
};

class GlyphCache {
 public:
  explicit GlyphCache(GlyphSource& source) : source_(source) {}

  /// A style's glyphs, plain or as what lies one pixel beside, above and below their ink. They
  /// stand until the cache is emptied, which `make` does when it has grown large: the pointer that
  /// it was given then points to the new ones.
  StyleGlyphs& glyphs(const TextStyle& style, bool outlines);
  const Glyph& make(StyleGlyphs*& glyphs, uint16_t code, bool outlines);
  void clear();

 private:
  struct Kept {
    bool outlines;
    std::unique_ptr<StyleGlyphs> glyphs;
  };
  GlyphSource& source_;
  std::vector<Kept> kept_;
  size_t bytes_ = 0;
};

}  // namespace qv
