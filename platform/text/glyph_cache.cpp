#include "platform/text/glyph_cache.h"

#include <algorithm>
#include <utility>

#include "platform/text/glyph_rows.h"

namespace qv {

namespace {

constexpr size_t MostBytes = 8u << 20, MostStyles = 64;

/// What four drawings of the glyph, one pixel to each side, cover together.
GlyphShape outlineOf(const GlyphShape& shape) {
  GlyphShape outline;
  outline.left = shape.left - 1;
  outline.top = shape.top - 1;
  outline.width = shape.width + 2;
  outline.height = shape.height + 2;
  outline.advance = shape.advance;
  outline.ink.assign(static_cast<size_t>(outline.width) * static_cast<size_t>(outline.height), 0);
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x)
      if (shape.at(x, y)) {
        outline.set(x, y + 1);
        outline.set(x + 2, y + 1);
        outline.set(x + 1, y);
        outline.set(x + 1, y + 2);
      }
  return outline;
}

}  // namespace

void GlyphShape::reframe(int newLeft, int newTop, int newWidth, int newHeight) {
  GlyphShape moved;
  moved.left = newLeft;
  moved.top = newTop;
  moved.width = newWidth;
  moved.height = newHeight;
  moved.advance = advance;
  moved.ink.assign(static_cast<size_t>(newWidth) * static_cast<size_t>(newHeight), 0);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (at(x, y)) moved.set(x + left - newLeft, y + top - newTop);
  *this = std::move(moved);
}

const Glyph& StyleGlyphs::keep(uint16_t code, const GlyphShape& shape, size_t& bytes) {
  Glyph glyph;
  glyph.left = shape.left;
  glyph.top = shape.top;
  glyph.height = shape.height;
  glyph.advance = shape.advance;
  glyph.words = (shape.width + Glyph::WordPixels - 1) / Glyph::WordPixels;
  const auto words = static_cast<size_t>(glyph.words);
  const size_t count = words * static_cast<size_t>(glyph.height) + GlyphPaddingWords;
  rows_.push_back(std::make_unique<uint32_t[]>(count));
  uint32_t* const rows = rows_.back().get();
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x)
      if (shape.at(x, y))
        rows[static_cast<size_t>(y) * words + static_cast<size_t>(x / Glyph::WordPixels)] |=
            uint32_t{1} << (x % Glyph::WordPixels);
  glyph.rows = rows;
  glyphs_.push_back(glyph);
  bytes += count * sizeof(uint32_t) + sizeof(Glyph);

  auto& page = pages_[code >> 8];
  if (!page) {
    page = std::make_unique<Page>();
    bytes += sizeof(Page);
  }
  return *((*page)[code & 0xFF] = &glyphs_.back());
}

StyleGlyphs& GlyphCache::glyphs(const TextStyle& style, bool outlines) {
  const auto found = std::ranges::find_if(kept_, [&](const Kept& kept) {
    return kept.outlines == outlines && kept.glyphs->style() == style;
  });
  if (found != kept_.end()) return *found->glyphs;
  if (kept_.size() >= MostStyles) clear();
  kept_.push_back({outlines, std::make_unique<StyleGlyphs>(style)});
  bytes_ += sizeof(StyleGlyphs);
  return *kept_.back().glyphs;
}

const Glyph& GlyphCache::make(StyleGlyphs*& glyphs, uint16_t code, bool outlines) {
  if (bytes_ > MostBytes) {
    const TextStyle style = glyphs->style();
    clear();
    glyphs = &this->glyphs(style, outlines);
  }
  const GlyphShape shape = source_.shape(glyphs->style(), code);
  return glyphs->keep(code, outlines ? outlineOf(shape) : shape, bytes_);
}

void GlyphCache::clear() {
  kept_.clear();
  bytes_ = 0;
}

}  // namespace qv
