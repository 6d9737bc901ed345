#include <algorithm>
#include <string_view>

#include "graphics/overlap.h"
#include "graphics/surface_size.h"
#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

using testing::Lines;
using testing::linesOf;
using testing::put;
using testing::putPattern;

class SurfaceWithinItself : public testing::SurfaceTest {};

TEST_F(SurfaceWithinItself, BlitOntoItselfFurtherDownRepeatsItsFirstRows) {
  QVVSurface surface;
  put(surface, {"abc", "def", "ghi", "jkl"});
  surface.blit(surface, 0, 1, 0, 0, 3, 3, KeyNone);
  EXPECT_EQ(linesOf(surface), (Lines{"abc", "abc", "abc", "abc"}));
}

TEST_F(SurfaceWithinItself, BlitOntoItselfFurtherUpScrolls) {
  QVVSurface surface;
  put(surface, {"abc", "def", "ghi", "jkl"});
  surface.blit(surface, 0, 0, 0, 1, 3, 3, KeyNone);
  EXPECT_EQ(linesOf(surface), (Lines{"def", "ghi", "jkl", "jkl"}));
}

TEST_F(SurfaceWithinItself, BlitOntoItselfFurtherLeftScrolls) {
  for (const int32_t width : {7, 16, 23, 40}) {
    QVVSurface surface;
    putPattern(surface, width, 1);
    std::string expected = linesOf(surface)[0];
    std::copy(expected.begin() + 1, expected.end(), expected.begin());
    surface.blit(surface, 0, 0, 1, 0, width - 1, 1, KeyNone);
    EXPECT_EQ(linesOf(surface)[0], expected) << width;
  }
}

TEST_F(SurfaceWithinItself, BlitOntoItselfFurtherRightSmearsInTheMovesOfTheClassicLoop) {
  QVVSurface surface;
  // Five pixels are one move of four and one: of either form.
  put(surface, {"abcdefgh"});
  surface.blit(surface, 1, 0, 0, 0, 5, 1, KeyNone);
  EXPECT_EQ(linesOf(surface)[0], "aabcddgh");
  // From sixteen on the vector form moves eight; the other forms are tried below.
  if (kernelFormHere() != KernelForm::Vector) return;
  put(surface, {"abcdefghijklmnopqrst"});
  surface.blit(surface, 1, 0, 0, 0, 18, 1, KeyNone);
  EXPECT_EQ(linesOf(surface)[0], "aabcdefghhjklmnopppt");
}

TEST_F(SurfaceWithinItself, KeyedBlitOntoItselfGoesPixelByPixelInNarrowRectangles) {
  QVVSurface surface;
  put(surface, {"abkdefgh"});
  surface.blit(surface, 1, 0, 0, 0, 7, 1, 'k');
  EXPECT_EQ(linesOf(surface)[0], "aaaaaaaa");
  put(surface, {"kbkdefgh"});
  surface.blit(surface, 1, 0, 0, 0, 7, 1, KeyTopLeft);
  EXPECT_EQ(linesOf(surface)[0], "kbbbbbbb");
}

TEST_F(SurfaceWithinItself, BlendsOntoItselfGoPixelByPixel) {
  QVVSurface surface;
  std::string row;
  for (int i = 0; i < 100; ++i)
    row += static_cast<char>('!' + i % 90);
  for (const int32_t level : {2, 3, -8, -1}) {
    put(surface, {row, row});
    surface.blitBlended(surface, 2, 0, 0, 0, 90, 2, level);
    Lines expected = {row, row};
    int left = level;
    constexpr std::string_view checker[] = {"X.X.", ".X.X"}, dense[] = {"XXXX", "XXXX"};
    for (size_t y = 0; y < 2; ++y)
      for (size_t x = 0; x < 90; ++x) {
        const bool drawn = level > 0     ? --left == 0
                           : level == -8 ? checker[y][x % 4] == 'X'
                                         : dense[y][x % 4] == 'X';
        if (level > 0 && left == 0) left = level;
        if (drawn) expected[y][x + 2] = expected[y][x];
      }
    EXPECT_EQ(linesOf(surface), expected) << level;
  }
}

TEST_F(SurfaceWithinItself, BlitWithinItselfThatDoesNotOverlapIsAnyBlit) {
  QVVSurface surface;
  put(surface, {"abcd....", "efgh...."});
  surface.blit(surface, 4, 0, 0, 0, 4, 2, KeyTopLeft);
  EXPECT_EQ(linesOf(surface), (Lines{"abcd.bcd", "efghefgh"}));
}

/// One row of moves, as they are told: each reads its pixels, then writes those that are not key.
std::string moved(std::string row, size_t from, size_t to, size_t width, int key, size_t move,
                  size_t wholeMoves) {
  size_t x = 0;
  while (x < width) {
    const size_t count = x < wholeMoves ? move : 1;
    const std::string held = row.substr(from + x, count);
    for (size_t i = 0; i < count; ++i)
      if (static_cast<uint8_t>(held[i]) != key) row[to + x + i] = held[i];
    x += count;
  }
  return row;
}

TEST(Overlap, MovesPixelsInTheSizesOfEitherForm) {
  for (const KernelForm form : {KernelForm::Plain, KernelForm::Vector})
    for (size_t width = 1; width <= 70; ++width)
      for (const size_t distance : {size_t{1}, size_t{3}, size_t{4}, size_t{8}, size_t{13}})
        for (const bool right : {false, true}) {
          std::string row;
          for (size_t i = 0; i < width + distance; ++i)
            row += static_cast<char>(i % 5 == 2 ? 'k' : '0' + i);
          const size_t from = right ? 0 : distance, to = right ? distance : 0;
          const bool eights = form == KernelForm::Vector && width >= 16;
          const auto run = [&](auto loop) {
            std::string copy = row;
            auto* bytes = reinterpret_cast<uint8_t*>(copy.data());
            loop(KernelRows{bytes + to, 0, bytes + from, 0, static_cast<int>(width), 1});
            return copy;
          };
          EXPECT_EQ(run([&](const KernelRows& rows) { copyRowsWithin(form, rows); }),
                    moved(row, from, to, width, -1, eights ? 8 : 4,
                          eights ? width / 16 * 16 : width / 4 * 4));
          EXPECT_EQ(run([&](const KernelRows& rows) { copyRowsKeyWithin(form, rows, 'k'); }),
                    moved(row, from, to, width, 'k', eights ? 8 : 1, eights ? width / 16 * 16 : 0));
        }
}

TEST_F(SurfaceWithinItself, Of32BitsIsSmearedPixelByPixel) {
  QVVSurface24 surface;
  surface.create(5, 1);
  for (int32_t x = 0; x < 5; ++x) {
    const Rectangle one = Rectangle::at(x, 0, 1, 1);
    surface.fill(static_cast<uint32_t>(x + 1), &one);
  }
  surface.blit(surface, 1, 0, 0, 0, 4, 1);
  for (int32_t x = 0; x < 5; ++x)
    EXPECT_EQ(surface.pixel(x, 0), 1u) << x;
}

}  // namespace
}  // namespace qv
