#pragma once

/// The plates of a selection: two or three child views of the picture with plate art on them. What
/// marks a plate is its palette alone. Scenario thread.

#include <array>
#include <cstdint>
#include <span>

#include "graphics/palette.h"

namespace qv {

inline constexpr int32_t TwoChoices = 2, MostChoices = 3;

/// A plate of a layout, by its names.
struct PlateForm {
  const char *view, *art, *map, *area;
  int32_t x, y, width, height;
};
/// The plates for that many choices: only two is told apart.
std::span<const PlateForm> platesFor(int32_t count);

/// The piece of the picture with the art over it, and the area for the choice's text, bright and
/// unseen.
void preparePlates(std::span<const PlateForm> plates);
void showPlates(std::span<const PlateForm> plates, bool visible);

/// The palettes of all plates, taken from the picture that stands.
class PlateColours {
 public:
  PlateColours();
  const scobjPalette& bright(int32_t choice) const;  ///< from 1
  const scobjPalette& dim() const { return dim_; }

 private:
  std::array<scobjPalette, MostChoices> bright_;
  scobjPalette dim_;
};
/// Marks that plate, 1 to their number, and dims the others; 0 dims all.
void markPlate(std::span<const PlateForm> plates, const PlateColours& colours, int32_t choice);

}  // namespace qv
