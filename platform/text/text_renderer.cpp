#include "platform/text/text_renderer.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/kernel/kernel.h"
#include "platform/text/external_font.h"
#include "platform/text/glyph_cache.h"
#include "platform/text/glyph_source.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr int LargestHeight = 512;  // cells above this are drawn at this height
constexpr uint32_t ColourBits = 0xFFFFFF;

TextStyle bounded(TextStyle style) {
  style.heightPixels = std::clamp(style.heightPixels, 0, LargestHeight);
  return style;
}

}  // namespace

struct TextRenderer::Body {
  explicit Body(std::filesystem::path folder)
      : lock("text", LockRank::Leaf), source(std::move(folder)), cache(source) {}

  /// Takes the game's font of external characters where another one may be set now. Without the
  /// lock: its file is read under locks of others.
  void renewExternalFont() {
    const uint32_t now = externalFontGeneration();
    if (now == externalGeneration.load(std::memory_order_relaxed)) return;
    std::vector<uint8_t> bytes = readExternalFont();
    const std::lock_guard held(lock);
    source.setExternalFont(std::move(bytes));
    cache.clear();
    externalGeneration.store(now, std::memory_order_relaxed);
  }

  /// Gives `work` each glyph with its place in the run, until it gives false. With the lock held.
  template <class Work>
  void eachGlyph(const TextStyle& style, bool outlines, std::string_view run, const Work& work) {
    StyleGlyphs* glyphs = &cache.glyphs(style, outlines);
    const auto* bytes = reinterpret_cast<const unsigned char*>(run.data());
    for (size_t at = 0, count; (count = characterBytes(run, at)) != 0; at += count) {
      const auto code =
          count == 1 ? bytes[at] : static_cast<uint16_t>(bytes[at] << 8 | bytes[at + 1]);
      const Glyph* glyph = glyphs->find(code);
      if (!glyph) glyph = &cache.make(glyphs, code, outlines);
      if (!work(*glyph, at)) return;
    }
  }

  template <class Pixel>
  int put(const PixelTarget<Pixel>& target, int x, int y, const TextStyle& style, bool outlines,
          std::string_view run, Pixel value) {
    int64_t width = 0;
    eachGlyph(style, outlines, run, [&](const Glyph& glyph, size_t) {
      putGlyph(target, x + width, y, glyph, value);
      width += glyph.advance;
      return true;
    });
    return static_cast<int>(std::min<int64_t>(width, INT32_MAX));
  }

  template <class Pixel>
  int draw(const PixelTarget<Pixel>& target, int x, int y, const TextStyle& asked,
           std::string_view run, Pixel value, const Pixel* outline) {
    const TextStyle style = bounded(asked);
    if (style.heightPixels == 0) return 0;
    renewExternalFont();
    const std::lock_guard held(lock);
    if (outline) put(target, x, y, style, true, run, *outline);
    return put(target, x, y, style, false, run, value);
  }

  Lock lock;  // guards everything below
  GlyphSource source;
  GlyphCache cache;
  std::atomic<uint32_t> externalGeneration = 0;
};

TextRenderer::TextRenderer(std::filesystem::path fontFolder)
    : body_(std::make_unique<Body>(std::move(fontFolder))) {}

TextRenderer::~TextRenderer() = default;

bool TextRenderer::hasFont(FontFace face) const {
  const std::lock_guard held(body_->lock);
  return body_->source.hasFont(face);
}

int TextRenderer::measure(const TextStyle& asked, std::string_view run) {
  const TextStyle style = bounded(asked);
  if (style.heightPixels == 0) return 0;
  body_->renewExternalFont();
  const std::lock_guard held(body_->lock);
  int64_t width = 0;
  body_->eachGlyph(style, false, run, [&](const Glyph& glyph, size_t) {
    width += glyph.advance;
    return true;
  });
  return static_cast<int>(std::min<int64_t>(width, INT32_MAX));
}

size_t TextRenderer::fitBytes(const TextStyle& asked, std::string_view run, int widthPixels) {
  if (widthPixels < 0) return 0;
  const TextStyle style = bounded(asked);
  if (style.heightPixels == 0) return run.size();
  body_->renewExternalFont();
  const std::lock_guard held(body_->lock);
  size_t fitting = run.size();
  int64_t width = 0;
  body_->eachGlyph(style, false, run, [&](const Glyph& glyph, size_t at) {
    width += glyph.advance;
    if (width <= widthPixels) return true;
    fitting = at;
    return false;
  });
  return fitting;
}

int TextRenderer::draw(const PixelTarget<uint8_t>& target, int x, int y, const TextStyle& style,
                       std::string_view run, uint8_t index) {
  return body_->draw<uint8_t>(target, x, y, style, run, index, nullptr);
}

int TextRenderer::draw(const TextTarget& target, int x, int y, const TextStyle& style,
                       std::string_view run, uint32_t colour) {
  return body_->draw<uint32_t>(target, x, y, style, run, colour & ColourBits, nullptr);
}

int TextRenderer::drawOutlined(const PixelTarget<uint8_t>& target, int x, int y,
                               const TextStyle& style, std::string_view run, uint8_t index,
                               uint8_t outline) {
  return body_->draw<uint8_t>(target, x, y, style, run, index, &outline);
}

int TextRenderer::drawOutlined(const TextTarget& target, int x, int y, const TextStyle& style,
                               std::string_view run, uint32_t colour, uint32_t outline) {
  outline &= ColourBits;
  return body_->draw<uint32_t>(target, x, y, style, run, colour & ColourBits, &outline);
}

}  // namespace qv
