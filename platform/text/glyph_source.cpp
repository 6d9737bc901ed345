#include "platform/text/glyph_source.h"

#include <algorithm>
#include <utility>

#include <ft2build.h>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "platform/text/box_glyph.h"
#include "platform/text/external_font.h"
#include "platform/text/font_search.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

// A damaged font may ask for pictures of any size; characters stay within some cells.
constexpr int MostCells = 4;

bool isFixed(FontFace face) {
  return face == FontFace::Gothic || face == FontFace::Mincho;
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

bool isWide(uint16_t code) {
  return code > 0xFF;
}

int cellAdvance(const TextStyle& style, uint16_t code) {
  return isWide(code) ? style.heightPixels : (style.heightPixels + 1) / 2;
}

bool isControl(uint16_t code) {
  return code < 0x20 || code == 0x7F;
}

// What the faces do not have of themselves, as the classic platform made it.

/// Rows lean by a third of their height over the base line, which stands at about seven eighths of
/// the cell.
void lean(GlyphShape& shape, int height) {
  const int baseline = height * 7 / 8;
  const auto shift = [&](int cellRow) {
    const int above = baseline - cellRow;
    return above >= 0 ? above / 3 : -((-above + 2) / 3);
  };
  if (shape.width == 0 || shape.height == 0) return;
  const int most = shift(shape.top), least = shift(shape.top + shape.height - 1);
  GlyphShape upright = shape;
  shape.reframe(upright.left + least, upright.top, upright.width + most - least, upright.height);
  std::ranges::fill(shape.ink, uint8_t{0});
  for (int y = 0; y < upright.height; ++y)
    for (int x = 0; x < upright.width; ++x)
      if (upright.at(x, y)) shape.set(x + shift(upright.top + y) - least, y);
}

void embolden(GlyphShape& shape) {
  const GlyphShape thin = shape;
  shape.reframe(thin.left, thin.top, thin.width + 1, thin.height);
  shape.advance = thin.advance + 1;
  for (int y = 0; y < thin.height; ++y)
    for (int x = 0; x < thin.width; ++x)
      if (thin.at(x, y)) shape.set(x + 1, y);
}

/// A line over the character's whole width, so that those of a run meet.
void putLine(GlyphShape& shape, int row, int thickness) {
  if (shape.advance <= 0) return;
  const bool bare = shape.width == 0 || shape.height == 0;
  const int left = bare ? 0 : std::min(shape.left, 0);
  const int right = bare ? shape.advance : std::max(shape.left + shape.width, shape.advance);
  const int top = bare ? row : std::min(shape.top, row);
  const int bottom = bare ? row + thickness : std::max(shape.top + shape.height, row + thickness);
  shape.reframe(left, top, right - left, bottom - top);
  for (int y = row; y < row + thickness; ++y)
    for (int x = 0; x < shape.advance; ++x)
      shape.set(x - shape.left, y - shape.top);
}

}  // namespace

struct GlyphSource::Library {
  Library() : ready(FT_Init_FreeType(&library) == 0) {}
  ~Library() {
    if (ready) FT_Done_FreeType(library);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  FT_Library library = nullptr;
  bool ready;
};

/// A font of FreeType, set to a cell height.
class GlyphSource::OpenFont {
 public:
  explicit OpenFont(FT_Face face) : face_(face) {}
  ~OpenFont() { FT_Done_Face(face_); }
  OpenFont(const OpenFont&) = delete;
  OpenFont& operator=(const OpenFont&) = delete;

  static std::unique_ptr<OpenFont> ofFile(Library& library, const std::filesystem::path& file) {
    FT_Face face = nullptr;
    if (!library.ready || FT_New_Face(library.library, file.c_str(), 0, &face) != 0) return nullptr;
    return checked(face);
  }
  static std::unique_ptr<OpenFont> ofBytes(Library& library, const std::vector<uint8_t>& bytes) {
    FT_Face face = nullptr;
    if (!library.ready || bytes.empty() ||
        FT_New_Memory_Face(library.library, bytes.data(), static_cast<FT_Long>(bytes.size()), 0,
                           &face) != 0)
      return nullptr;
    return checked(face);
  }

  /// False when the font has not the character, or nothing that could be one.
  bool draw(uint16_t code, int height, GlyphShape& shape) {
    if (!setHeight(height)) return false;
    const FT_UInt index = indexOf(code);
    // The fonts are drawn for their own instructions: without them, thin strokes vanish.
    if (index == 0 || FT_Load_Glyph(face_, index, FT_LOAD_TARGET_MONO) != 0) return false;
    const FT_GlyphSlot slot = face_->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE) return false;
    FT_BBox box;
    FT_Outline_Get_CBox(&slot->outline, &box);
    const FT_Pos most = FT_Pos{64} * MostCells * height;
    if (box.xMin < -most || box.yMin < -most || box.xMax > most || box.yMax > most) return false;
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_MONO) != 0) return false;
    if (slot->bitmap.pixel_mode != FT_PIXEL_MODE_MONO) return false;
    take(*slot, shape);
    shape.advance =
        static_cast<int>(std::clamp<FT_Pos>((slot->advance.x + 32) >> 6, 0, height * 2));
    return true;
  }

 private:
  static std::unique_ptr<OpenFont> checked(FT_Face face) {
    auto font = std::make_unique<OpenFont>(face);
    const bool sound =
        FT_IS_SCALABLE(face) && face->units_per_EM > 0 && face->ascender - face->descender > 0;
    if (!sound) font.reset();
    return font;
  }

  bool setHeight(int height) {
    if (height_ == height) return true;
    const int cell = face_->ascender - face_->descender;
    const int em = std::max(1, (height * face_->units_per_EM + cell / 2) / cell);
    // A font whose cell is a sliver of its em would be drawn beyond all bounds.
    if (em > MostCells * height || FT_Set_Pixel_Sizes(face_, 0, static_cast<FT_UInt>(em)) != 0)
      return false;
    height_ = height;
    baseline_ = (face_->ascender * height + cell / 2) / cell;
    return true;
  }

  /// The character's number in the font, 0 where it has none.
  FT_UInt indexOf(uint16_t code) const {
    const char32_t character = unicodeOfShiftJis(code);
    if (character == 0) return 0;
    if (const FT_UInt index = FT_Get_Char_Index(face_, character)) return index;
    const char32_t substitute = substituteFor(character);
    return substitute ? FT_Get_Char_Index(face_, substitute) : 0;
  }

  void take(const FT_GlyphSlotRec_& slot, GlyphShape& shape) const {
    shape.left = slot.bitmap_left;
    shape.top = baseline_ - slot.bitmap_top;
    shape.width = static_cast<int>(slot.bitmap.width);
    shape.height = static_cast<int>(slot.bitmap.rows);
    shape.ink.assign(static_cast<size_t>(shape.width) * static_cast<size_t>(shape.height), 0);
    for (int y = 0; y < shape.height; ++y) {
      const uint8_t* row = slot.bitmap.buffer + static_cast<ptrdiff_t>(y) * slot.bitmap.pitch;
      for (int x = 0; x < shape.width; ++x)
        if (row[x / 8] & (0x80 >> (x % 8))) shape.set(x, y);
    }
  }

  FT_Face face_;
  int height_ = 0;    ///< the cell height that the face is set to; 0: none yet
  int baseline_ = 0;  ///< rows above the base line at that height
};

GlyphSource::GlyphSource(std::filesystem::path fontFolder) : fontFolder_(std::move(fontFolder)) {}

GlyphSource::~GlyphSource() {
  // Fonts go before the library that made them.
  external_.reset();
  for (Face& face : faces_)
    face.font.reset();
}

GlyphSource::Face& GlyphSource::searched(FontFace which) {
  Face& face = faces_[static_cast<size_t>(which)];
  if (!face.searched) {
    face.searched = true;
    face.file = findFont(which, fontFolder_);
  }
  return face;
}

bool GlyphSource::hasFont(FontFace face) {
  return searched(face).file.has_value();
}

void GlyphSource::setExternalFont(std::vector<uint8_t> bytes) {
  external_.reset();
  externalBytes_ = std::move(bytes);
  if (externalBytes_.empty()) return;
  if (!library_) library_ = std::make_unique<Library>();
  external_ = OpenFont::ofBytes(*library_, externalBytes_);
}

/// The font that the character is looked for in; null where there is none. Fonts are opened when
/// their first character is wanted, because most runs never show one.
GlyphSource::OpenFont* GlyphSource::fontFor(const TextStyle& style, uint16_t code) {
  if (isExternalCharacter(code)) return external_.get();
  Face& face = searched(style.face);
  if (!face.opened) {
    face.opened = true;
    if (!library_) library_ = std::make_unique<Library>();
    if (face.file) face.font = OpenFont::ofFile(*library_, *face.file);
  }
  return face.font.get();
}

GlyphShape GlyphSource::plainShape(const TextStyle& style, uint16_t code) {
  GlyphShape shape;
  shape.advance = cellAdvance(style, code);
  if (isControl(code)) return shape;  // keeps its place and shows nothing
  OpenFont* const font = fontFor(style, code);
  if (!font && !isExternalCharacter(code))
    return builtInShape(code, shape.advance, style.heightPixels);
  const int advance = shape.advance;
  if (!font || !font->draw(code, style.heightPixels, shape))
    return boxShape(code, advance, style.heightPixels);
  if (isFixed(style.face) || isExternalCharacter(code)) shape.advance = advance;
  return shape;
}

GlyphShape GlyphSource::shape(const TextStyle& style, uint16_t code) {
  GlyphShape shape = plainShape(style, code);
  if (style.italic) lean(shape, style.heightPixels);
  if (style.bold) embolden(shape);
  const int height = style.heightPixels, thickness = std::max(1, height / 18);
  if (style.underline) putLine(shape, std::min(height * 7 / 8 + 1, height - thickness), thickness);
  if (style.strikeOut) putLine(shape, height / 2, thickness);
  return shape;
}

}  // namespace qv
