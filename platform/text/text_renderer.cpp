#include "platform/text/text_renderer.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <ft2build.h>

#include FT_FREETYPE_H

#include "platform/kernel/kernel.h"
#include "platform/text/font_search.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr int FaceCount = 4;
constexpr int LargestHeight = 512;        // cells above this are drawn at this height
constexpr size_t CachedBytes = 4u << 20;  // the cache is emptied when its bitmaps pass this

/// One character of one face and height: a bitmap of one bit a pixel, and its place in the cell.
struct Glyph {
  int left = 0, top = 0;  ///< of the bitmap in the cell, in pixels
  int width = 0, height = 0;
  int advance = 0;
  int strideBytes = 0;
  std::vector<uint8_t> bits;  ///< the leftmost pixel is the highest bit
};

struct Face {
  bool searched = false, opened = false;
  std::optional<std::filesystem::path> file;
  FT_Face face = nullptr;
  int height = 0;    ///< the cell height that the face is set to; 0: none yet
  int baseline = 0;  ///< rows above the base line at that height
};

bool isFixed(FontFace face) {
  return face == FontFace::Gothic || face == FontFace::Mincho;
}

/// The bytes of the character at `at` as one number: lead * 256 + trail, or the byte.
uint16_t codeAt(std::string_view run, size_t at, size_t bytes) {
  const auto first = static_cast<unsigned char>(run[at]);
  if (bytes < 2) return first;
  return static_cast<uint16_t>(first << 8 | static_cast<unsigned char>(run[at + 1]));
}

/// Forms that the fonts lack under the code that the conversion gives, and what looks the same.
char32_t substituteFor(char32_t character) {
  static constexpr std::pair<char32_t, char32_t> Substitutes[] = {
      {0x2211, 0x03A3}, {0xFF5E, 0x301C}, {0x2225, 0x2016}, {0xFF0D, 0x2212},
      {0xFFE0, 0x00A2}, {0xFFE1, 0x00A3}, {0xFFE2, 0x00AC}, {0xFFE4, 0x00A6}};
  for (const auto& [from, to] : Substitutes)
    if (from == character) return to;
  return 0;
}

}  // namespace

struct TextRenderer::Body {
  explicit Body(std::filesystem::path folder)
      : lock("text", LockRank::Leaf), fontFolder(std::move(folder)) {}
  ~Body() {
    for (Face& face : faces)
      if (face.face) FT_Done_Face(face.face);
    if (library) FT_Done_FreeType(library);
  }

  Lock lock;  // guards everything below
  std::filesystem::path fontFolder;
  FT_Library library = nullptr;
  std::array<Face, FaceCount> faces;
  std::unordered_map<uint64_t, Glyph> glyphs;
  size_t cachedBytes = 0;

  Face& searched(FontFace which);
  FT_Face opened(FontFace which, int height);
  const Glyph& glyph(const TextStyle& style, uint16_t code, bool wide);
  Glyph rendered(const TextStyle& style, uint16_t code, bool wide);
};

Face& TextRenderer::Body::searched(FontFace which) {
  Face& face = faces[static_cast<size_t>(which)];
  if (!face.searched) {
    face.searched = true;
    face.file = findFont(which, fontFolder);
  }
  return face;
}

/// The face, set to a cell height; null where there is none. Fonts are opened when their first
/// character is wanted, because most runs never show one.
FT_Face TextRenderer::Body::opened(FontFace which, int height) {
  Face& face = searched(which);
  if (!face.opened) {
    face.opened = true;
    if (face.file && (library || FT_Init_FreeType(&library) == 0) &&
        FT_New_Face(library, face.file->c_str(), 0, &face.face) != 0)
      face.face = nullptr;
  }
  if (!face.face) return nullptr;
  if (face.height != height) {
    const int cell = face.face->ascender - face.face->descender;
    if (cell <= 0) return nullptr;
    const int em = std::max(1, (height * face.face->units_per_EM + cell / 2) / cell);
    if (FT_Set_Pixel_Sizes(face.face, 0, static_cast<FT_UInt>(em)) != 0) return nullptr;
    face.height = height;
    face.baseline = (face.face->ascender * height + cell / 2) / cell;
  }
  return face.face;
}

namespace {

/// A hollow box in a cell: what stands for a character that no font has.
Glyph hollowBox(int advance, int height) {
  Glyph glyph;
  glyph.advance = advance;
  glyph.left = advance > 2 ? 1 : 0;
  glyph.top = height > 2 ? 1 : 0;
  glyph.width = std::max(1, advance - 2 * glyph.left);
  glyph.height = std::max(1, height - 2 * glyph.top);
  glyph.strideBytes = (glyph.width + 7) / 8;
  glyph.bits.assign(static_cast<size_t>(glyph.strideBytes) * glyph.height, 0);
  for (int y = 0; y < glyph.height; ++y)
    for (int x = 0; x < glyph.width; ++x)
      if (y == 0 || x == 0 || y == glyph.height - 1 || x == glyph.width - 1)
        glyph.bits[static_cast<size_t>(y) * glyph.strideBytes + x / 8] |=
            static_cast<uint8_t>(0x80 >> (x % 8));
  return glyph;
}

/// The character's number in the font, 0 where it has none.
FT_UInt glyphIndexOf(FT_Face face, uint16_t code) {
  const char32_t character = unicodeOfShiftJis(code);
  if (character == 0) return 0;
  if (const FT_UInt index = FT_Get_Char_Index(face, character)) return index;
  const char32_t substitute = substituteFor(character);
  return substitute ? FT_Get_Char_Index(face, substitute) : 0;
}

}  // namespace

Glyph TextRenderer::Body::rendered(const TextStyle& style, uint16_t code, bool wide) {
  const int cellAdvance = wide ? style.heightPixels : (style.heightPixels + 1) / 2;
  if (!wide && (code < 0x20 || code == 0x7F)) {  // controls keep their place and show nothing
    Glyph blank;
    blank.advance = cellAdvance;
    return blank;
  }
  const FT_Face face = opened(style.face, style.heightPixels);
  const FT_UInt index = face ? glyphIndexOf(face, code) : 0;
  // The fonts are drawn for their own instructions: without them, thin strokes vanish.
  if (index == 0 || FT_Load_Glyph(face, index, FT_LOAD_TARGET_MONO | FT_LOAD_RENDER) != 0)
    return hollowBox(cellAdvance, style.heightPixels);
  const FT_GlyphSlot slot = face->glyph;
  Glyph glyph;
  glyph.advance = isFixed(style.face) ? cellAdvance
                                      : std::max(0, static_cast<int>((slot->advance.x + 32) >> 6));
  glyph.left = slot->bitmap_left;
  glyph.top = searched(style.face).baseline - slot->bitmap_top;
  glyph.width = static_cast<int>(slot->bitmap.width);
  glyph.height = static_cast<int>(slot->bitmap.rows);
  glyph.strideBytes = (glyph.width + 7) / 8;
  glyph.bits.resize(static_cast<size_t>(glyph.strideBytes) * glyph.height);
  if (slot->bitmap.pixel_mode == FT_PIXEL_MODE_MONO)
    for (int y = 0; y < glyph.height; ++y)
      std::copy_n(slot->bitmap.buffer + static_cast<ptrdiff_t>(y) * slot->bitmap.pitch,
                  glyph.strideBytes,
                  glyph.bits.data() + static_cast<ptrdiff_t>(y) * glyph.strideBytes);
  return glyph;
}

const Glyph& TextRenderer::Body::glyph(const TextStyle& style, uint16_t code, bool wide) {
  const uint64_t key = static_cast<uint64_t>(style.face) << 48 |
                       static_cast<uint64_t>(style.heightPixels) << 24 |
                       static_cast<uint64_t>(wide) << 16 | code;
  if (const auto found = glyphs.find(key); found != glyphs.end()) return found->second;
  if (cachedBytes > CachedBytes) {
    glyphs.clear();
    cachedBytes = 0;
  }
  Glyph fresh = rendered(style, code, wide);
  cachedBytes += fresh.bits.size() + sizeof(Glyph);
  return glyphs.emplace(key, std::move(fresh)).first->second;
}

namespace {

/// Sets the glyph's pixels in the target, with the cell's top left corner at x, y.
void drawGlyph(const TextTarget& target, int64_t x, int64_t y, const Glyph& glyph,
               uint32_t colour) {
  x += glyph.left;
  y += glyph.top;
  const int64_t fromRow = std::max<int64_t>(0, -y);
  const int64_t endRow = std::min<int64_t>(glyph.height, target.height - y);
  const int64_t fromColumn = std::max<int64_t>(0, -x);
  const int64_t endColumn = std::min<int64_t>(glyph.width, target.width - x);
  for (int64_t row = fromRow; row < endRow; ++row) {
    const uint8_t* bits = glyph.bits.data() + row * glyph.strideBytes;
    uint32_t* pixels = target.pixels + (y + row) * target.strideWords + x;
    for (int64_t column = fromColumn; column < endColumn; ++column)
      if (bits[column / 8] & (0x80 >> (column % 8))) pixels[column] = colour;
  }
}

TextStyle bounded(TextStyle style) {
  style.heightPixels = std::clamp(style.heightPixels, 0, LargestHeight);
  return style;
}

}  // namespace

TextRenderer::TextRenderer(std::filesystem::path fontFolder)
    : body_(std::make_unique<Body>(std::move(fontFolder))) {}

TextRenderer::~TextRenderer() = default;

bool TextRenderer::hasFont(FontFace face) const {
  std::lock_guard held(body_->lock);
  return body_->searched(face).file.has_value();
}

int TextRenderer::measure(const TextStyle& asked, std::string_view run) {
  const TextStyle style = bounded(asked);
  if (style.heightPixels == 0) return 0;
  std::lock_guard held(body_->lock);
  int width = 0;
  for (size_t at = 0, bytes; (bytes = characterBytes(run, at)) != 0; at += bytes)
    width += body_->glyph(style, codeAt(run, at, bytes), bytes == 2).advance;
  return width;
}

size_t TextRenderer::fitBytes(const TextStyle& asked, std::string_view run, int widthPixels) {
  if (widthPixels < 0) return 0;
  const TextStyle style = bounded(asked);
  if (style.heightPixels == 0) return run.size();
  std::lock_guard held(body_->lock);
  size_t at = 0;
  int64_t width = 0;
  while (const size_t bytes = characterBytes(run, at)) {
    width += body_->glyph(style, codeAt(run, at, bytes), bytes == 2).advance;
    if (width > widthPixels) break;
    at += bytes;
  }
  return at;
}

int TextRenderer::draw(const TextTarget& target, int x, int y, const TextStyle& asked,
                       std::string_view run, uint32_t colour) {
  const TextStyle style = bounded(asked);
  if (style.heightPixels == 0) return 0;
  std::lock_guard held(body_->lock);
  int width = 0;
  for (size_t at = 0, bytes; (bytes = characterBytes(run, at)) != 0; at += bytes) {
    const Glyph& glyph = body_->glyph(style, codeAt(run, at, bytes), bytes == 2);
    if (target.pixels) drawGlyph(target, int64_t{x} + width, y, glyph, colour & 0xFFFFFF);
    width += glyph.advance;
  }
  return width;
}

}  // namespace qv
