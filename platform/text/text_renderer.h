#pragma once

/// Draws and measures runs of Shift-JIS text in one colour without smoothing, with FreeType and
/// the machine's Japanese fonts; the built-in font stands in for those that are missing. External
/// characters come from the game's own font. Any thread; one lock inside.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/text/glyph_rows.h"
#include "platform/text/text_style.h"

namespace qv {

/// Pixels 0x00RRGGBB.
using TextTarget = PixelTarget<uint32_t>;

class TextRenderer {
 public:
  /// Looks for the fonts in the machine's font folders, or in `fontFolder` when that is given.
  explicit TextRenderer(std::filesystem::path fontFolder = {});
  ~TextRenderer();
  TextRenderer(const TextRenderer&) = delete;
  TextRenderer& operator=(const TextRenderer&) = delete;

  /// False where a face's font was not found: the built-in one is then drawn.
  bool hasFont(FontFace face) const;
  /// Width in pixels of a run (no line feeds). In the fixed faces a double-byte character is as
  /// wide as the cell is high, a single byte half of that, rounded up; bold adds a pixel to each.
  int measure(const TextStyle& style, std::string_view run);
  /// The largest number of bytes, in whole characters, whose width is at most `widthPixels`.
  size_t fitBytes(const TextStyle& style, std::string_view run, int widthPixels);
  // All draw with the cell's top left corner at x, y, clipped to the target, and give the width.
  int draw(const TextTarget& target, int x, int y, const TextStyle& style, std::string_view run,
           uint32_t colour);
  /// On pixels that are indices of colours.
  int draw(const PixelTarget<uint8_t>& target, int x, int y, const TextStyle& style,
           std::string_view run, uint8_t index);
  /// The same pixels as the run drawn one pixel to each of the four sides in the outline's colour,
  /// then at its place, for less than half the work.
  int drawOutlined(const PixelTarget<uint8_t>& target, int x, int y, const TextStyle& style,
                   std::string_view run, uint8_t index, uint8_t outline);
  int drawOutlined(const TextTarget& target, int x, int y, const TextStyle& style,
                   std::string_view run, uint32_t colour, uint32_t outline);

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

}  // namespace qv
