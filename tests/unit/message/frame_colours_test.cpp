// The tints of the message frame, against the formula written out again.

#include "message/frame_colours.h"

#include <gtest/gtest.h>

#include "tests/unit/message/colour_formula.h"

namespace qv::testing {
namespace {

Colour original(int32_t entry) {
  return {entry, 255 - entry, entry * 7 % 256};
}

/// What an entry between the system's becomes; 246 is only raised.
Colour expected(int32_t colour, bool dark, const Colour& from, bool tints) {
  const auto tint = [tints](const Colour& c, int32_t red, int32_t green, int32_t blue) {
    return tints ? tinted(c, {red, green, blue}) : c;
  };
  switch (colour) {
    case 0:
    case 6:
      return dark ? tint(raised(from, {100, 100, 100}), 240, 210, 240) : tint(from, 220, 190, 200);
    case 1:
      return raised(tint(from, 240, 100, 100), {dark ? 100 : 0, 0, 0});
    case 2:
      return raised(tint(from, 100, 100, 240), {0, 0, dark ? 100 : 0});
    case 3:
      return raised(tint(from, 100, 240, 100), {0, dark ? 100 : 0, 0});
    case 4:
      return tint(raised(from, {80, 80, 80}), 220, 220, 220);
    case 5:
      return tint(from, 100, 100, 100);
    default:
      return raised(from, {100, 100, 100});
  }
}

scobjPalette originals() {
  scobjPalette palette;
  palette.create(256);
  for (int32_t entry = 0; entry < 256; ++entry) {
    const Colour colour = original(entry);
    palette.set(entry, colour.red, colour.green, colour.blue);
  }
  return palette;
}

TEST(FrameColours, FollowTheirFormulaInAllEightColours) {
  for (const bool dark : {false, true})
    for (int32_t colour = 0; colour < 8; ++colour) {
      scobjPalette palette = originals();
      tintFrame(palette, colour, dark);
      for (int32_t entry = 0; entry < 256; ++entry) {
        const bool changed = entry >= 10 && entry <= 246;
        const Colour wanted =
            changed ? expected(colour, dark, original(entry), entry != 246) : original(entry);
        ASSERT_EQ(at(palette, entry), wanted)
            << "colour " << colour << (dark ? " dark" : "") << ", entry " << entry;
      }
    }
}

TEST(FrameColours, OfNoNumberOfTheirsChangeNothing) {
  for (const int32_t colour : {-1, 8, 255, INT32_MIN, INT32_MAX}) {
    scobjPalette palette = originals();
    tintFrame(palette, colour, true);
    for (int32_t entry = 0; entry < 256; ++entry)
      ASSERT_EQ(at(palette, entry), original(entry)) << colour;
  }
}

TEST(FrameColours, BlackStaysBlackWithoutARaiseAndBecomesRedWithOne) {
  scobjPalette plain, dark;
  plain.create(256);
  dark.create(256);
  tintFrame(plain, 1, false);
  tintFrame(dark, 1, true);
  EXPECT_EQ(at(plain, 100), (Colour{0, 0, 0}));
  EXPECT_EQ(at(dark, 100), (Colour{100, 0, 0}));
}

TEST(FrameColours, TextsAndFramesFindBlackBlackAndWhite) {
  scobjPalette palette = originals();
  setFixedColours(palette);
  EXPECT_EQ(at(palette, 0), (Colour{0, 0, 0}));
  EXPECT_EQ(at(palette, 1), (Colour{0, 0, 0}));
  EXPECT_EQ(at(palette, 255), (Colour{255, 255, 255}));
  EXPECT_EQ(at(palette, 2), original(2));
  EXPECT_EQ(at(palette, 254), original(254));
}

}  // namespace
}  // namespace qv::testing
