#include "message/frame_colours.h"

namespace qv {

namespace {

constexpr int32_t FirstTinted = 10, TintedCount = 236, LastRaised = 246;

struct Tint {
  int32_t red, green, blue;
};
struct Raise {
  int32_t amount;  ///< 0: none
  bool red = false, green = false, blue = false;
};
/// What is done to a picture: a raise, a tint, another raise; a tint of no colour is none.
struct Recipe {
  Raise before;
  bool tints;
  Tint tint;
  Raise after;
};
struct WindowTint {
  Recipe plain, dark;
};

constexpr Raise None{0};
constexpr Raise AllUp{100, true, true, true}, AllUpLess{80, true, true, true};
constexpr Raise RedUp{100, true}, BlueUp{100, false, false, true}, GreenUp{100, false, true};

constexpr WindowTint Pearl{{None, true, {220, 190, 200}, None},
                           {AllUp, true, {240, 210, 240}, None}};
constexpr Recipe Glass{AllUpLess, true, {220, 220, 220}, None};
constexpr Recipe Shade{None, true, {100, 100, 100}, None};
constexpr Recipe Clear{AllUp, false, {}, None};
constexpr WindowTint Tints[] = {
    Pearl,
    {{None, true, {240, 100, 100}, None}, {None, true, {240, 100, 100}, RedUp}},
    {{None, true, {100, 100, 240}, None}, {None, true, {100, 100, 240}, BlueUp}},
    {{None, true, {100, 240, 100}, None}, {None, true, {100, 240, 100}, GreenUp}},
    {Glass, Glass},
    {Shade, Shade},
    Pearl,
    {Clear, Clear},
};

void raise(scobjPalette& palette, const Raise& how) {
  if (how.amount != 0)
    palette.raise(FirstTinted, LastRaised, how.amount, how.red, how.green, how.blue);
}

}  // namespace

void tintFrame(scobjPalette& palette, int32_t colour, bool dark) {
  if (colour < 0 || colour >= static_cast<int32_t>(std::size(Tints))) return;
  const WindowTint& tint = Tints[colour];
  const Recipe& recipe = dark ? tint.dark : tint.plain;
  raise(palette, recipe.before);
  if (recipe.tints)
    palette.tint(recipe.tint.red, recipe.tint.green, recipe.tint.blue, FirstTinted, TintedCount);
  raise(palette, recipe.after);
}

void setFixedColours(scobjPalette& palette) {
  constexpr int32_t White = 255;
  palette.set(0, 0, 0, 0);
  palette.set(1, 0, 0, 0);
  palette.set(White, White, White, White);
}

}  // namespace qv
