#pragma once

/// Makes glyphs: from the machine's fonts with their own hinting, from the game's font of external
/// characters, from the built-in font, and as a box with its code where none has the character. One
/// thread at a time.

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/text/glyph.h"
#include "platform/text/text_style.h"

namespace qv {

class GlyphSource {
 public:
  explicit GlyphSource(std::filesystem::path fontFolder);
  ~GlyphSource();
  GlyphSource(const GlyphSource&) = delete;
  GlyphSource& operator=(const GlyphSource&) = delete;

  /// Whether a file with that face's name was found; it may still be damaged.
  bool hasFont(FontFace face);
  /// The bytes of a TrueType file; empty or damaged ones leave external characters without a font.
  void setExternalFont(std::vector<uint8_t> bytes);

  /// `code`: lead * 256 + trail, or one byte.
  GlyphShape shape(const TextStyle& style, uint16_t code);

 private:
  class OpenFont;
  struct Face {
    bool searched = false, opened = false;
    std::optional<std::filesystem::path> file;
    std::unique_ptr<OpenFont> font;
  };

  struct Library;

  Face& searched(FontFace which);
  OpenFont* fontFor(const TextStyle& style, uint16_t code);
  GlyphShape plainShape(const TextStyle& style, uint16_t code);

  std::filesystem::path fontFolder_;
  std::unique_ptr<Library> library_;
  std::array<Face, 4> faces_;
  std::vector<uint8_t> externalBytes_;  ///< the font reads from them as long as it lives
  std::unique_ptr<OpenFont> external_;
};

}  // namespace qv
