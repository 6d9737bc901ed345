#include <climits>
#include <cmath>

#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

using testing::someColours;

class SurfaceColours : public testing::SurfaceTest {
 protected:
  SurfaceColours() { surface.setColoursRange(stored, 0, 256); }
  void expectStoredAndShown(const ColourTable& table) const {
    EXPECT_EQ(surface.storedColours(), table);
    EXPECT_EQ(surface.shownColours(), table);
  }
  const ColourTable stored = someColours(), other = someColours(90);
  QVVSurface surface;
};

TEST_F(SurfaceColours, OfANewSurfaceAreAGreyRampBetweenTheStaticColours) {
  const ColourTable& table = defaultColours();
  EXPECT_EQ(table[0], 0u);
  EXPECT_EQ(table[1], 0x800000u);
  EXPECT_EQ(table[9], 0xA6CAF0u);
  EXPECT_EQ(table[10], 0x0A0A0Au);
  EXPECT_EQ(table[245], 0xF5F5F5u);
  EXPECT_EQ(table[246], 0xFFFBF0u);
  EXPECT_EQ(table[249], 0xFF0000u);
  EXPECT_EQ(table[255], 0xFFFFFFu);
}

TEST_F(SurfaceColours, AreCopiedInPartsThatEndWithEitherTable) {
  surface.setColours(other, 2, 5, 3);
  ColourTable expected = stored;
  for (size_t i = 0; i < 3; ++i)
    expected[2 + i] = other[5 + i];
  expectStoredAndShown(expected);
  surface.setColours(other, 254, 0, INT_MAX);
  expected[254] = other[0];
  expected[255] = other[1];
  expectStoredAndShown(expected);
  surface.setColours(other, 0, 255, 100);
  expected[0] = other[255];
  expectStoredAndShown(expected);
}

TEST_F(SurfaceColours, AreNotCopiedByFirstsOutsideOrCountsBelowOne) {
  for (const int32_t outside : {-1, 256, INT_MIN, INT_MAX}) {
    surface.setColours(other, outside, 0, 5);
    surface.setColours(other, 0, outside, 5);
  }
  for (const int32_t none : {0, -1, INT_MIN}) {
    surface.setColours(other, 0, 0, none);
    surface.setColoursRange(other, 0, none);
  }
  expectStoredAndShown(stored);
}

TEST_F(SurfaceColours, RangeHasItsFirstClamped) {
  surface.setColoursRange(other, -40, 2);
  ColourTable expected = stored;
  expected[0] = other[0];
  expected[1] = other[1];
  expectStoredAndShown(expected);
  surface.setColoursRange(other, 300, 2);
  expected[255] = other[255];
  expectStoredAndShown(expected);
}

TEST_F(SurfaceColours, OfAnotherSurfaceAreItsStoredOnes) {
  QVVSurface source;
  source.setColoursRange(other, 0, 256);
  source.fadePalette(ColourTable{}, 1, 1);
  surface.copyPaletteFrom(source);
  expectStoredAndShown(other);
}

TEST_F(SurfaceColours, CopiedFromItselfAreShownAgain) {
  surface.fadePalette(other, 1, 1);
  EXPECT_EQ(surface.shownColours(), other);
  surface.copyPaletteFrom(surface);
  expectStoredAndShown(stored);
}

TEST_F(SurfaceColours, OfABitmapAreTakenAsFarAsItHasThem) {
  surface.copyPaletteFromDib(
      testing::bitmapOf({.colours = {0x111111, 0x222222}, .bits = std::string(4, '\0')}));
  ColourTable expected = stored;
  expected[0] = 0x111111;
  expected[1] = 0x222222;
  expectStoredAndShown(expected);
  surface.copyPaletteFromDib(QVDib());
  surface.copyPaletteFromDib(testing::bitmapOf({.bitCount = 24, .bits = std::string(4, '\0')}));
  expectStoredAndShown(expected);
}

TEST_F(SurfaceColours, FadeShowsAndStoresOnlyAtItsEnd) {
  surface.fadePalette(other, 0, 4);
  expectStoredAndShown(stored);
  surface.fadePalette(other, 4, 4);
  EXPECT_EQ(surface.storedColours(), stored);
  EXPECT_EQ(surface.shownColours(), other);
  surface.fadePalette(other, 5, 4);
  expectStoredAndShown(other);
}

TEST_F(SurfaceColours, FadeWithoutStepsStoresAtOnce) {
  for (const auto& [step, steps] :
       {std::pair(0, 0), {-1, 4}, {3, -3}, {INT_MAX, 4}, {0, INT_MIN}}) {
    surface.setColoursRange(stored, 0, 256);
    surface.fadePalette(other, step, steps);
    expectStoredAndShown(other);
  }
}

TEST_F(SurfaceColours, FadeFollowsAQuarterCircleFromTheStoredColours) {
  ColourTable from{}, to{};
  from[0] = 0x0700FF10;
  to[0] = 0x00C80032;
  surface.setColoursRange(from, 0, 256);
  for (const int step : {7, 3, 5, 1}) {
    surface.fadePalette(to, step, 8);
    const double part = std::sqrt(1 - std::pow(1 - step / 8.0, 2));
    const auto expected = static_cast<uint32_t>(200 * part) << 16 |
                          static_cast<uint32_t>(255 - 255 * part) << 8 |
                          static_cast<uint32_t>(16 + 34 * part) | 0x07000000;
    EXPECT_EQ(surface.shownColours()[0], expected) << step;
  }
}

TEST_F(SurfaceColours, FadeOfVeryManyStepsStaysInRange) {
  ColourTable white;
  white.fill(0xFFFFFF);
  surface.setColoursRange(ColourTable{}, 0, 256);
  surface.fadePalette(white, INT_MAX - 1, INT_MAX);
  EXPECT_GE(surface.shownColours()[0], 0xFEFEFEu);
  surface.fadePalette(white, INT_MAX, INT_MAX);
  EXPECT_EQ(surface.shownColours(), white);
}

TEST_F(SurfaceColours, MonochromeTintIsShownAndNotStored) {
  surface.tintMonochrome(255, 255, 0, 10, 2);
  EXPECT_EQ(surface.storedColours(), stored);
  const ColourTable shown = surface.shownColours();
  for (size_t i = 0; i < 256; ++i) {
    if (i != 10 && i != 11) {
      EXPECT_EQ(shown[i], stored[i]) << i;
      continue;
    }
    const uint32_t grey =
        ((stored[i] & 0xFF) * 11 + (stored[i] >> 8 & 0xFF) * 59 + (stored[i] >> 16 & 0xFF) * 30) /
        100;
    const uint32_t blue =
        ((stored[i] & 0xFF) * 11 + (stored[i] >> 8 & 0xFF) * 59 + (stored[i] >> 16 & 0xFF) * 30) /
        25600;
    EXPECT_EQ(shown[i], grey << 16 | grey << 8 | blue) << i;
  }
}

TEST_F(SurfaceColours, MonochromeTintStartsFromTheStoredColoursEachTime) {
  surface.tintMonochrome(0, 0, 0, 0, 0);
  EXPECT_EQ(surface.shownColours(), ColourTable{});
  surface.tintMonochrome(255, 255, 255, -4, 1);
  EXPECT_EQ(surface.shownColours()[1], stored[1]);
  surface.tintMonochrome(0, 0, 0, 999, 999);
  EXPECT_EQ(surface.shownColours()[255], 0u);
  EXPECT_EQ(surface.shownColours()[254], stored[254]);
}

}  // namespace
}  // namespace qv
