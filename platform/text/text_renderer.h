#pragma once

/// Draws and measures runs of Shift-JIS text in one colour without smoothing, with FreeType and
/// the machine's Japanese fonts. Any thread; one lock inside.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace qv {

enum class FontFace { Gothic, ProportionalGothic, Mincho, ProportionalMincho };

struct TextStyle {
  FontFace face = FontFace::Gothic;
  int heightPixels = 16;  ///< the cell's height; in the system fonts also the em
};

/// Pixels 0x00RRGGBB, top row first.
struct TextTarget {
  uint32_t* pixels = nullptr;
  int width = 0, height = 0;
  int strideWords = 0;
};

class TextRenderer {
 public:
  /// Looks for the fonts in the machine's font folders, or in `fontFolder` when that is given.
  explicit TextRenderer(std::filesystem::path fontFolder = {});
  ~TextRenderer();
  TextRenderer(const TextRenderer&) = delete;
  TextRenderer& operator=(const TextRenderer&) = delete;

  /// False where a face's font was not found: its characters are then drawn as boxes.
  bool hasFont(FontFace face) const;
  /// Width in pixels of a run (no line feeds). In the fixed faces a double-byte character is as
  /// wide as the cell is high, a single byte half of that, rounded up.
  int measure(const TextStyle& style, std::string_view run);
  /// The largest number of bytes, in whole characters, whose width is at most `widthPixels`.
  size_t fitBytes(const TextStyle& style, std::string_view run, int widthPixels);
  /// Draws with the cell's top left corner at x, y, clipped to the target; gives the width.
  int draw(const TextTarget& target, int x, int y, const TextStyle& style, std::string_view run,
           uint32_t colour);

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

}  // namespace qv
