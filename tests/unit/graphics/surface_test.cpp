#include "graphics/surface.h"

#include <algorithm>
#include <climits>
#include <fstream>
#include <random>

#include <unistd.h>

#include "foundation/diagnostic.h"
#include "graphics/surface_size.h"
#include "tests/support/failing_heap.h"
#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

using testing::Lines;
using testing::linesOf;
using testing::put;
using testing::putPattern;
using testing::putPlain;

class Surface : public testing::SurfaceTest {};

// Size and memory.

TEST_F(Surface, HasSixteenBySixteenPixelsFromTheStart) {
  QVVSurface surface;
  EXPECT_EQ(linesOf(surface), Lines(16, std::string(16, '\0')));
  EXPECT_EQ(surface.storedColours(), defaultColours());
  EXPECT_EQ(surface.shownColours(), defaultColours());
  QVVSurface24 surface24;
  EXPECT_EQ(surface24.width(), 16);
  EXPECT_EQ(surface24.height(), 16);
  EXPECT_EQ(surface24.pixel(15, 15), 0u);
}

TEST_F(Surface, IsCreatedAnewWithZeroesAndTheColoursOfANewOne) {
  QVVSurface surface;
  for (const int32_t width : {16, 5, 640}) {
    surface.fill(77);
    surface.copyPaletteFrom(surface);
    surface.setColoursRange(testing::someColours(), 0, 256);
    surface.create(width, 16);
    EXPECT_EQ(linesOf(surface), Lines(16, std::string(static_cast<size_t>(width), '\0')));
    EXPECT_EQ(surface.storedColours(), defaultColours());
    EXPECT_EQ(surface.shownColours(), defaultColours());
  }
}

TEST_F(Surface, OfNoExtentTakesEveryOperation) {
  for (const auto& [width, height] : {std::pair(0, 0),
                                      {-3, 5},
                                      {5, -3},
                                      {INT_MIN, INT_MIN},
                                      {int32_t{MostPixels}, 0},
                                      {0, int32_t{MostPixels}}}) {
    QVVSurface empty, other;
    QVVSurface24 wide;
    putPattern(other, 9, 9);
    const Lines before = linesOf(other);
    empty.create(width, height);
    EXPECT_EQ(empty.width(), std::max(width, 0));
    EXPECT_EQ(empty.height(), std::max(height, 0));
    EXPECT_EQ(empty.pixel(0, 0), 0);
    empty.fill(1);
    empty.mirror(1, 0, 0, 0, 0);
    empty.mirror(2, 0, 0, 0, 0);
    empty.blit(other, 0, 0, 0, 0, 9, 9, KeyTopLeft);
    other.blit(empty, 0, 0, 0, 0, 9, 9, KeyTopLeft);
    empty.blitScaled(other, 0, 0, 0, 0, 9, 9, 2, -2);
    other.blitScaled(empty, 0, 0, 0, 0, 9, 9, 2, -2);
    empty.stretchTo(other, 0, 0, 9, 9);
    other.stretchTo(empty, 0, 0, 9, 9);
    empty.tileOnto(other, nullptr, false);
    other.tileOnto(empty, nullptr, false);
    empty.blitTo32BlendKey(wide, 0, 0, 0, 0, 9, 9, 8, KeyTopLeft);
    wide.stretchTo(empty, 0, 0, 9, 9);
    wide.create(width, height);
    wide.stretchTo(other, 0, 0, 9, 9);
    uint32_t pixel = 5;
    empty.paint({&pixel, 1}, 1, 1, 0, 0, {0, 0, 9, 9});
    EXPECT_EQ(pixel, 5u);
    EXPECT_EQ(linesOf(other), before);
  }
}

TEST_F(Surface, KeepsItsPixelsWhenACreateFails) {
  QVVSurface surface;
  QVVSurface24 surface24;
  putPattern(surface, 40, 30);
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface24.fill(0x123456);
  const Lines before = linesOf(surface);
  const auto expectKept = [&] {
    EXPECT_EQ(linesOf(surface), before);
    EXPECT_EQ(surface.storedColours(), testing::someColours());
    EXPECT_EQ(surface24.width(), 16);
    EXPECT_EQ(surface24.pixel(3, 3), 0x123456u);
  };
  {
    const testing::FailingHeap none;
    EXPECT_THROW(surface.create(640, 480), NotEnoughMemoryException);
    EXPECT_THROW(surface24.create(640, 480), NotEnoughMemoryException);
  }
  expectKept();
  for (const auto& [width, height] : {std::pair(8001, 8000),
                                      {INT_MAX, INT_MAX},
                                      {1, INT_MAX},
                                      {INT_MAX, 0},
                                      {0, INT_MAX},
                                      {int32_t{MostPixels} + 1, 0}}) {
    EXPECT_THROW(surface.create(width, height), NotEnoughMemoryException);
    EXPECT_THROW(surface24.create(width, height), NotEnoughMemoryException);
    expectKept();
  }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
long residentPages() {
  long size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident;
}

TEST_F(Surface, CreatedAThousandTimesDoesNotGrowTheProcess) {
  QVVSurface surface;
  const auto createOften = [&](int times) {
    for (int i = 0; i < times; ++i) {
      surface.create(640, 480);
      surface.fill(static_cast<uint8_t>(i));
      surface.create(639 - i % 2, 479);
      surface.fill(static_cast<uint8_t>(i));
    }
  };
  createOften(10);
  const long before = residentPages();
  createOften(500);
  // One picture has 75 pages.
  EXPECT_LT(residentPages() - before, 150);
}
#endif

// Clipping and copies.

TEST_F(Surface, BlitOutsideEitherSurfaceDrawsNothing) {
  QVVSurface source, target;
  putPlain(source, 4, 4, 's');
  for (const auto& [dx, dy, sx, sy, w, h] : std::vector<std::array<int32_t, 6>>{
           {5, 0, 0, 0, 4, 4},
           {0, 5, 0, 0, 4, 4},
           {0, 0, 4, 0, 4, 4},
           {0, 0, 0, 4, 4, 4},
           {-4, 0, 0, 0, 4, 4},
           {0, -9, 0, 0, 4, 4},
           {0, 0, 0, 0, 0, 4},
           {0, 0, 0, 0, 4, -1},
           {INT_MIN, 0, INT_MAX, 0, INT_MAX, 4},
           {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN},
           {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX}}) {
    putPlain(target, 5, 5);
    source.blit(target, dx, dy, sx, sy, w, h, KeyNone);
    EXPECT_EQ(linesOf(target), Lines(5, ".....")) << dx << " " << dy << " " << sx << " " << sy;
  }
}

TEST_F(Surface, BlitThatHangsOverAnEdgeDrawsWhatIsInside) {
  QVVSurface source, target;
  put(source, {"abc", "def", "ghi"});
  const auto after = [&](int32_t dx, int32_t dy) {
    putPlain(target, 4, 4);
    source.blit(target, dx, dy, 0, 0, 3, 3, KeyNone);
    return linesOf(target);
  };
  EXPECT_EQ(after(-1, -2), (Lines{"hi..", "....", "....", "...."}));
  EXPECT_EQ(after(2, 3), (Lines{"....", "....", "....", "..ab"}));
  EXPECT_EQ(after(1, 0), (Lines{".abc", ".def", ".ghi", "...."}));
}

TEST_F(Surface, BlitFromBeforeTheSourceIsDrawnFurtherIn) {
  QVVSurface source, target;
  put(source, {"abcd"});
  const auto after = [&](int32_t dx, int32_t sx, int32_t w) {
    putPlain(target, 6, 1);
    source.blit(target, dx, 0, sx, 0, w, 1, KeyNone);
    return linesOf(target)[0];
  };
  EXPECT_EQ(after(1, -2, 5), "...abc");
  // A target further out than the source moves the source's corner in.
  EXPECT_EQ(after(-3, -1, 5), "cd....");
  // One that is not cancels the source's offset.
  EXPECT_EQ(after(-1, -3, 5), "..ab..");
  EXPECT_EQ(after(-2, -2, 5), "abc...");
}

TEST_F(Surface, TopLeftKeyIsTheWholeSourcesCorner) {
  QVVSurface source, target;
  put(source, {"abab", "baba"});
  putPlain(target, 3, 2);
  source.blit(target, 0, 0, 1, 0, 3, 2, KeyTopLeft);
  EXPECT_EQ(linesOf(target), (Lines{"b.b", ".b."}));
  putPlain(target, 3, 2);
  source.blit(target, 0, 0, 1, 0, 3, 2, 'b');
  EXPECT_EQ(linesOf(target), (Lines{".a.", "a.a"}));
}

TEST_F(Surface, BlendLevelsChooseNothingPatternCopyAndComb) {
  QVVSurface source, target;
  putPlain(source, 8, 2, 's');
  const auto after = [&](int32_t level) {
    putPlain(target, 8, 2);
    source.blitBlended(target, 0, 0, 0, 0, 8, 2, level);
    return linesOf(target);
  };
  const Lines nothing = {"........", "........"}, copy = {"ssssssss", "ssssssss"};
  EXPECT_EQ(after(INT_MIN), nothing);
  EXPECT_EQ(after(-17), nothing);
  EXPECT_EQ(after(-16), nothing);
  EXPECT_EQ(after(-15), (Lines{"s...s...", "........"}));
  EXPECT_EQ(after(-8), (Lines{"s.s.s.s.", ".s.s.s.s"}));
  EXPECT_EQ(after(-1), copy);
  EXPECT_EQ(after(0), copy);
  EXPECT_EQ(after(1), copy);
  EXPECT_EQ(after(2), (Lines{".s.s.s.s", ".s.s.s.s"}));
  EXPECT_EQ(after(3), (Lines{"..s..s..", "s..s..s."}));
  EXPECT_EQ(after(INT_MAX), nothing);
}

TEST_F(Surface, KeyedBlendsLeaveTheKeyOut) {
  QVVSurface source, target;
  put(source, {"ksksssks"});
  const auto after = [&](int32_t level, ColourKey key) {
    putPlain(target, 8, 1);
    source.blitBlendedKey(target, 0, 0, 0, 0, 8, 1, level, key);
    return linesOf(target)[0];
  };
  EXPECT_EQ(after(0, 'k'), ".s.sss.s");
  EXPECT_EQ(after(0, KeyTopLeft), ".s.sss.s");
  EXPECT_EQ(after(1, KeyNone), "ksksssks");
  EXPECT_EQ(after(-8, KeyTopLeft), "....s...");
  EXPECT_EQ(after(-8, KeyNone), "k.k.s.k.");
  EXPECT_EQ(after(2, 's'), "........");
  EXPECT_EQ(after(4, 's'), "........");
  EXPECT_EQ(after(3, 's'), "..k.....");
}

TEST_F(Surface, BlendIsAnchoredAtTheClippedRectangle) {
  QVVSurface source, target;
  putPlain(source, 8, 2, 's');
  putPlain(target, 4, 1);
  source.blitBlended(target, -1, 0, 0, 0, 8, 1, -15);
  EXPECT_EQ(linesOf(target)[0], "s...");
}

// Onto 32 bits.

TEST_F(Surface, BlitTo32GoesThroughTheStoredColours) {
  QVVSurface source;
  QVVSurface24 target;
  put(source, {"kab"});
  source.setColoursRange(testing::someColours(), 0, 256);
  source.fadePalette(testing::someColours(9), 1, 1);  // shown alone
  const ColourTable colours = testing::someColours();
  target.create(4, 1);
  target.fill(0x010203);
  source.blitTo32(target, 1, 0, 0, 0, 3, 1, KeyTopLeft);
  EXPECT_EQ(target.pixel(0, 0), 0x010203u);
  EXPECT_EQ(target.pixel(1, 0), 0x010203u);
  EXPECT_EQ(target.pixel(2, 0), colours['a']);
  EXPECT_EQ(target.pixel(3, 0), colours['b']);
  source.blitTo32(target, 0, 0, 0, 0, 3, 1, KeyNone);
  EXPECT_EQ(target.pixel(0, 0), colours['k']);
}

TEST_F(Surface, BlendTo32MixesBySixteenthsAndClampsTheLevel) {
  QVVSurface source;
  source.create(1, 1);
  source.fill(1);
  ColourTable colours{};
  colours[1] = 0x646464;  // 100 each
  source.setColoursRange(colours, 0, 256);
  const auto after = [&](int32_t level, ColourKey key) {
    QVVSurface24 target;
    target.fill(0xC8C8C8);  // 200 each
    if (key == KeyNone)
      source.blitTo32Blend(target, 0, 0, 0, 0, 1, 1, level);
    else
      source.blitTo32BlendKey(target, 0, 0, 0, 0, 1, 1, level, key);
    return target.pixel(0, 0);
  };
  EXPECT_EQ(after(8, KeyNone),
            kernelFormHere() == KernelForm::Vector ? 0x969696u : 0x909090u);  // 150, 144
  EXPECT_EQ(after(0, KeyNone), 0xC8C8C8u);
  EXPECT_EQ(after(-5, KeyNone), 0xC8C8C8u);
  EXPECT_EQ(after(16, KeyNone), 0x646464u);
  EXPECT_EQ(after(INT_MAX, KeyNone), 0x646464u);
  EXPECT_EQ(after(16, 2), 0x646464u);
  EXPECT_EQ(after(16, KeyTopLeft), 0xC8C8C8u);
}

// Sizes, repetitions, turning.

TEST_F(Surface, ScaledBlitRepeatsPixelsOrLeavesThemOut) {
  QVVSurface source, target;
  put(source, {"abcde", "fghij", "klmno"});
  const auto after = [&](int32_t dx, int32_t dy, int32_t sx, int32_t w, int32_t fx, int32_t fy) {
    putPlain(target, 6, 5);
    source.blitScaled(target, dx, dy, sx, 0, w, 3, fx, fy);
    return linesOf(target);
  };
  EXPECT_EQ(after(1, 0, 0, 2, 2, 1), (Lines{".aabb.", ".ffgg.", ".kkll.", "......", "......"}));
  EXPECT_EQ(after(0, 0, 0, 5, -2, 2), (Lines{"ac....", "ac....", "fh....", "fh....", "km...."}));
  EXPECT_EQ(after(0, 0, 1, 2, 3, -2), (Lines{"bbbccc", "......", "......", "......", "......"}));
  EXPECT_EQ(after(0, 1, 0, 5, -2, -3), (Lines{"......", "ac....", "......", "......", "......"}));
  for (const int32_t one : {-1, 0, 1})
    EXPECT_EQ(after(0, 0, 0, 5, one, 0), (Lines{"abcde.", "fghij.", "klmno.", "......", "......"}));
  // Over the edges the picture keeps its place; what the source does not have is not drawn.
  EXPECT_EQ(after(-1, -1, 0, 5, 2, 2), (Lines{"abbccd", "fgghhi", "fgghhi", "kllmmn", "kllmmn"}));
  EXPECT_EQ(after(0, 3, 3, 5, 2, 1), (Lines{"......", "......", "......", "ddee..", "iijj.."}));
  EXPECT_EQ(after(0, 4, -1, 3, 2, 1), (Lines{"......", "......", "......", "......", "..aabb"}));
  const Lines nothing(5, "......");
  EXPECT_EQ(after(0, 0, 0, -4, 2, 2), nothing);
  EXPECT_EQ(after(INT_MAX, 0, INT_MAX, INT_MAX, INT_MAX, 2), nothing);
  EXPECT_EQ(after(INT_MIN, 0, 0, INT_MAX, INT_MAX, 2),
            (Lines{"bbbbbb", "bbbbbb", "gggggg", "gggggg", "llllll"}));
}

TEST_F(Surface, StretchTakesThePixelUnderEachCentre) {
  QVVSurface source, target;
  put(source, {"abcde", "fghij", "klmno"});
  const auto after = [&](int32_t x, int32_t y, int32_t w, int32_t h) {
    putPlain(target, 7, 4);
    source.stretchTo(target, x, y, w, h);
    return linesOf(target);
  };
  EXPECT_EQ(after(0, 0, 5, 3), (Lines{"abcde..", "fghij..", "klmno..", "......."}));
  EXPECT_EQ(after(1, 1, 3, 1), (Lines{".......", ".fhj...", ".......", "......."}));
  EXPECT_EQ(after(0, 0, 2, 2), (Lines{"bd.....", "ln.....", ".......", "......."}));
  EXPECT_EQ(after(0, 0, 7, 4), (Lines{"abbcdde", "fgghiij", "fgghiij", "kllmnno"}));
  EXPECT_EQ(after(-5, 0, 10, 3), (Lines{"cddee..", "hiijj..", "mnnoo..", "......."}));
  EXPECT_EQ(after(5, 3, 10, 6), (Lines{".......", ".......", ".......", ".....aa"}));
  EXPECT_EQ(after(-1000, -1000, 2007, 2004), Lines(4, "hhhhhhh"));
  for (const int32_t none : {0, -1, -5, INT_MIN}) {
    EXPECT_EQ(after(3, 1, none, 3), Lines(4, "......."));
    EXPECT_EQ(after(3, 1, 3, none), Lines(4, "......."));
  }
}

TEST_F(Surface, StretchIsTheSameFromBothSides) {
  // A centre rule, unlike a corner rule, does not lean to one side.
  for (int32_t width = 1; width <= 24; ++width)
    for (int32_t stretched = 1; stretched <= 40; ++stretched) {
      // Where a centre falls between two pixels one of them must give way.
      bool between = false;
      for (int32_t i = 0; i < stretched; ++i)
        between |= (2 * i + 1) * width % (2 * stretched) == 0;
      if (between) continue;
      QVVSurface source, turned, target, again;
      putPattern(source, width, 1);
      putPattern(turned, width, 1);
      turned.mirror(2, 0, 0, 0, 0);
      target.create(stretched, 1);
      again.create(stretched, 1);
      source.stretchTo(target, 0, 0, stretched, 1);
      turned.stretchTo(again, 0, 0, stretched, 1);
      again.mirror(2, 0, 0, 0, 0);
      EXPECT_EQ(linesOf(target), linesOf(again)) << width << " to " << stretched;
    }
}

TEST_F(Surface, StretchOf32BitsTakesTheSamePixelsAsOneOf8) {
  QVVSurface source, target, expected;
  QVVSurface24 wide;
  putPattern(source, 13, 9);
  source.setColoursRange(testing::someColours(), 0, 256);
  wide.create(13, 9);
  source.blitTo32(wide, 0, 0, 0, 0, 13, 9, KeyNone);
  for (const auto& [x, y, w, h] : std::vector<std::array<int32_t, 4>>{{0, 0, 13, 9},
                                                                      {2, 1, 30, 4},
                                                                      {-5, -3, 40, 40},
                                                                      {12, 7, 5, 20},
                                                                      {3, 3, 0, 5},
                                                                      {3, 3, 5, -1}}) {
    for (QVVSurface* each : {&target, &expected}) {
      putPlain(*each, 20, 15);
      each->setColoursRange(testing::someColours(), 0, 256);
    }
    source.stretchTo(expected, x, y, w, h);
    wide.stretchTo(target, x, y, w, h);
    EXPECT_EQ(linesOf(target), linesOf(expected)) << x << " " << y << " " << w << " " << h;
  }
}

TEST_F(Surface, StretchOf32BitsFindsTheNearestOfTheColoursThatTheTargetShows) {
  std::mt19937 random(8);
  QVVSurface24 source;
  source.create(20, 10);
  {
    const QVVSurface24::Access access(source);
    for (int32_t y = 0; y < 10; ++y)
      for (int32_t x = 0; x < 20; ++x)
        access.row(y)[x] = random() % 3 ? static_cast<uint32_t>(random()) : 0;  // runs too
  }
  QVVSurface target;
  target.create(20, 10);
  ColourTable shown = testing::someColours(40);
  shown[9] = shown[5] = shown[200];  // of equal ones the lowest is taken
  target.fadePalette(shown, 1, 1);
  ASSERT_NE(target.storedColours(), shown);
  const auto distance = [&](size_t entry, uint32_t colour) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const int apart =
          static_cast<int>(shown[entry] >> shift & 0xFF) - static_cast<int>(colour >> shift & 0xFF);
      sum += apart * apart;
    }
    return sum;
  };
  source.stretchTo(target, 0, 0, 20, 10);
  for (int32_t y = 0; y < 10; ++y)
    for (int32_t x = 0; x < 20; ++x) {
      size_t nearest = 0;
      for (size_t entry = 1; entry < 256; ++entry)
        if (distance(entry, source.pixel(x, y)) < distance(nearest, source.pixel(x, y)))
          nearest = entry;
      ASSERT_EQ(target.pixel(x, y), nearest) << x << " " << y;
    }
  source.fill(shown[200]);
  source.stretchTo(target, 0, 0, 20, 10);
  EXPECT_EQ(target.pixel(7, 7), 5);
}

TEST_F(Surface, TilesFillTheRectangleAndNoMore) {
  QVVSurface tile, target;
  put(tile, {"abc", "def"});
  const auto after = [&](const Rectangle* rectangle) {
    putPlain(target, 8, 5);
    tile.tileOnto(target, rectangle, false);
    return linesOf(target);
  };
  EXPECT_EQ(after(nullptr), (Lines{"abcabcab", "defdefde", "abcabcab", "defdefde", "abcabcab"}));
  const Rectangle inner = {1, 1, 6, 4}, hanging = {-4, -1, 3, 20}, turned = {6, 4, 1, 1},
                  small = {2, 2, 3, 3}, endless = {INT_MIN, INT_MIN, INT_MAX, INT_MAX};
  EXPECT_EQ(after(&inner), (Lines{"........", ".abcab..", ".defde..", ".abcab..", "........"}));
  EXPECT_EQ(after(&hanging), (Lines{"efd.....", "bca.....", "efd.....", "bca.....", "efd....."}));
  EXPECT_EQ(after(&turned), Lines(5, "........"));
  EXPECT_EQ(after(&small), (Lines{"........", "........", "..a.....", "........", "........"}));
  const Lines all = after(&endless);
  EXPECT_EQ(all[0].find('.'), std::string::npos);
  EXPECT_EQ(all[4].find('.'), std::string::npos);
}

TEST_F(Surface, TilesBringTheirColoursOnlyWhenAsked) {
  QVVSurface tile, target;
  tile.setColoursRange(testing::someColours(), 0, 256);
  tile.tileOnto(target, nullptr, false);
  EXPECT_EQ(target.storedColours(), defaultColours());
  tile.tileOnto(target, nullptr, true);
  EXPECT_EQ(target.storedColours(), testing::someColours());
  EXPECT_EQ(target.shownColours(), testing::someColours());
}

TEST_F(Surface, FillStaysInsideRectangleAndSurface) {
  QVVSurface surface;
  const auto after = [&](const Rectangle& rectangle) {
    putPlain(surface, 5, 3);
    surface.fill('f', &rectangle);
    return linesOf(surface);
  };
  EXPECT_EQ(after({1, 1, 3, 2}), (Lines{".....", ".ff..", "....."}));
  EXPECT_EQ(after({-3, 2, 2, 9}), (Lines{".....", ".....", "ff..."}));
  EXPECT_EQ(after({3, 2, 1, 0}), Lines(3, "....."));
  EXPECT_EQ(after({5, 0, 9, 9}), Lines(3, "....."));
  EXPECT_EQ(after({INT_MIN, INT_MIN, INT_MAX, INT_MAX}), Lines(3, "fffff"));
}

TEST_F(Surface, MirrorTurnsTheRegionInPlace) {
  QVVSurface surface;
  const auto after = [&](int32_t axis, int32_t x, int32_t y, int32_t w, int32_t h) {
    put(surface, {"abcde", "fghij", "klmno"});
    surface.mirror(axis, x, y, w, h);
    return linesOf(surface);
  };
  const Lines before = {"abcde", "fghij", "klmno"};
  EXPECT_EQ(after(1, 0, 0, 0, 0), (Lines{"klmno", "fghij", "abcde"}));
  EXPECT_EQ(after(2, 0, 0, 0, 0), (Lines{"edcba", "jihgf", "onmlk"}));
  EXPECT_EQ(after(1, 1, 0, 2, 2), (Lines{"aghde", "fbcij", "klmno"}));
  EXPECT_EQ(after(2, 1, 1, 3, 1), (Lines{"abcde", "fihgj", "klmno"}));
  EXPECT_EQ(after(2, 3, 2, 50, 50), (Lines{"abcde", "fghij", "klmon"}));
  EXPECT_EQ(after(2, -3, 0, 5, 1), (Lines{"bacde", "fghij", "klmno"}));
  EXPECT_EQ(after(3, 0, 0, 0, 0), before);
  EXPECT_EQ(after(1, 0, 0, -1, 3), before);
  EXPECT_EQ(after(1, INT_MAX, INT_MAX, INT_MAX, INT_MAX), before);
}

// Painting.

TEST_F(Surface, PaintsThroughTheShownColoursTopRowFirst) {
  QVVSurface surface;
  put(surface, {"ab", "cd"});
  ColourTable stored = testing::someColours(), shown = testing::someColours(7);
  shown['a'] |= 0x55000000;  // a fourth byte from a picture's table
  surface.setColoursRange(shown, 0, 256);
  surface.setColoursRange(stored, 0, 256);
  surface.fadePalette(shown, 1, 1);
  std::vector<uint32_t> pixels(12, 0x77777777);
  surface.paint(pixels, 4, 3, 1, 1, {0, 0, 2, 2});
  const uint32_t untouched = 0x77777777;
  const std::vector<uint32_t> expected = {
      untouched,  untouched, untouched, untouched,  untouched,  shown['a'] & 0xFFFFFF,
      shown['b'], untouched, untouched, shown['c'], shown['d'], untouched};
  EXPECT_EQ(pixels, expected);
}

TEST_F(Surface, PaintIsClippedToBothAndKeepsThePictureInItsPlace) {
  QVVSurface surface;
  QVVSurface24 surface24;
  putPattern(surface, 9, 7);
  surface.setColoursRange(testing::someColours(), 0, 256);
  surface24.create(9, 7);
  surface.blitTo32(surface24, 0, 0, 0, 0, 9, 7, KeyNone);
  constexpr int32_t Width = 6, Height = 5;
  const ColourTable colours = testing::someColours();
  std::mt19937 random(5);
  const auto draw = [&](int32_t low, int32_t high) {
    return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low + 1));
  };
  for (int i = 0; i < 2000; ++i) {
    const int32_t x = draw(-8, 8), y = draw(-8, 8);
    const Rectangle part = Rectangle::at(draw(-6, 10), draw(-6, 10), draw(-2, 14), draw(-2, 14));
    std::vector<uint32_t> expected(Width * Height, 0x88888888), pixels = expected,
                                                                pixels24 = expected;
    for (int32_t row = 0; row < part.height(); ++row)
      for (int32_t column = 0; column < part.width(); ++column) {
        const int32_t sx = part.left + column, sy = part.top + row, tx = x + column, ty = y + row;
        if (Rectangle{0, 0, 9, 7}.contains(sx, sy) &&
            Rectangle{0, 0, Width, Height}.contains(tx, ty))
          expected[static_cast<size_t>(ty * Width + tx)] = colours[surface.pixel(sx, sy)];
      }
    surface.paint(pixels, Width, Height, x, y, part);
    surface24.paint(pixels24, Width, Height, x, y, part);
    ASSERT_EQ(pixels, expected);
    ASSERT_EQ(pixels24, expected);
  }
  std::vector<uint32_t> pixels(Width * Height, 1);
  surface.paint(pixels, Width, Height, INT_MIN, INT_MAX, {INT_MIN, INT_MIN, INT_MAX, INT_MAX});
  EXPECT_EQ(std::ranges::count(pixels, 1u), Width * Height);
}

TEST_F(Surface, Of32BitsCopiesTilesAndFillsWithClipping) {
  QVVSurface24 tile, target;
  tile.create(3, 2);
  tile.fill(0x111111);
  const Rectangle corner = {0, 0, 1, 1};
  tile.fill(0x222222, &corner);
  target.create(5, 3);
  tile.tileOnto(target, nullptr);
  const Rectangle right = {4, 2, 99, 99};
  target.fill(0x333333, &right);
  tile.blit(target, -1, 1, 0, 0, 3, 1);
  const std::vector<std::vector<uint32_t>> expected = {
      {2, 1, 1, 2, 1}, {1, 1, 1, 1, 1}, {2, 1, 1, 2, 3}};
  for (int32_t y = 0; y < 3; ++y)
    for (int32_t x = 0; x < 5; ++x)
      EXPECT_EQ(target.pixel(x, y),
                0x111111 * expected[static_cast<size_t>(y)][static_cast<size_t>(x)])
          << x << " " << y;
  EXPECT_EQ(target.pixel(5, 0), 0u);
  EXPECT_EQ(target.pixel(0, -1), 0u);
}

}  // namespace
}  // namespace qv
