#include "platform/text/text_renderer.h"

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

constexpr uint32_t Untouched = 0x00A5A5A5, Ink = 0x00112233;

/// A picture with rows and columns around it that nobody may write.
class Canvas {
 public:
  Canvas(int width, int height)
      : width_(width),
        height_(height),
        pixels_(static_cast<size_t>((width + 2 * Border) * (height + 2 * Border)), Untouched) {}
  TextTarget target() {
    return {pixels_.data() + Border * stride() + Border, width_, height_, stride()};
  }
  uint32_t at(int x, int y) const {
    return pixels_[static_cast<size_t>((y + Border) * stride() + x + Border)];
  }
  bool bordersUntouched() const {
    for (int y = -Border; y < height_ + Border; ++y)
      for (int x = -Border; x < width_ + Border; ++x) {
        const bool inside = x >= 0 && y >= 0 && x < width_ && y < height_;
        if (!inside && at(x, y) != Untouched) return false;
      }
    return true;
  }
  int inked() const {
    int count = 0;
    for (const uint32_t pixel : pixels_)
      count += pixel == Ink;
    return count;
  }
  std::vector<std::string> rows() const {
    std::vector<std::string> rows;
    for (int y = 0; y < height_; ++y) {
      rows.emplace_back();
      for (int x = 0; x < width_; ++x)
        rows.back() += at(x, y) == Ink ? '#' : '.';
    }
    return rows;
  }

 private:
  static constexpr int Border = 40;
  int stride() const { return width_ + 2 * Border; }
  int width_, height_;
  std::vector<uint32_t> pixels_;
};

class TextRendererTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalGothic, FontFace::Mincho,
                                FontFace::ProportionalMincho})
      if (!text_.hasFont(face)) GTEST_SKIP() << "the IPA fonts are not installed";
  }
  KernelScope kernel_{makeRealKernel()};
  TextRenderer text_;
};

TEST_F(TextRendererTest, GivesHalfTheCellToSingleBytesAndAllOfItToDoubleOnesInFixedFaces) {
  for (const FontFace face : {FontFace::Gothic, FontFace::Mincho})
    for (const int height : {8, 12, 16, 20, 24, 48}) {
      const TextStyle style{face, height};
      EXPECT_EQ(text_.measure(style, "iW "), 3 * height / 2) << height;
      EXPECT_EQ(text_.measure(style, sjis("漢字かな、Ω")), 6 * height) << height;
      EXPECT_EQ(text_.measure(style, sjis("ｱｲｳｴ")), 4 * height / 2) << height;
    }
}

TEST_F(TextRendererTest, RoundsHalfAnOddCellUp) {
  EXPECT_EQ(text_.measure({FontFace::Gothic, 15}, "ab"), 16);
  EXPECT_EQ(text_.measure({FontFace::Gothic, 15}, sjis("漢")), 15);
}

TEST_F(TextRendererTest, TakesTheFontsOwnWidthsInProportionalFaces) {
  const TextStyle style{FontFace::ProportionalGothic, 16};
  EXPECT_LT(text_.measure(style, "iiii"), text_.measure(style, "WWWW"));
  EXPECT_EQ(text_.measure(style, sjis("漢字")), 32);
}

TEST_F(TextRendererTest, DrawsAsWideAsItMeasures) {
  const std::string run = sjis("保存 Save しました。");
  for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalMincho}) {
    Canvas canvas(400, 40);
    EXPECT_EQ(text_.draw(canvas.target(), 3, 3, {face, 16}, run, Ink),
              text_.measure({face, 16}, run));
    EXPECT_GT(canvas.inked(), 100);
  }
}

TEST_F(TextRendererTest, FitsWholeCharactersOnly) {
  const TextStyle style{FontFace::Gothic, 16};
  const std::string run = "a" + sjis("漢字") + "b";  // 8, 16, 16 and 8 pixels
  const std::pair<int, size_t> expected[] = {{-1, 0}, {-100000, 0}, {0, 0},  {7, 0},
                                             {8, 1},  {23, 1},      {24, 3}, {39, 3},
                                             {40, 5}, {47, 5},      {48, 6}, {2000000000, 6}};
  for (const auto& [width, bytes] : expected)
    EXPECT_EQ(text_.fitBytes(style, run, width), bytes) << width;
}

TEST_F(TextRendererTest, CountsALeadByteWithoutATrailByteAsOneCharacter) {
  const TextStyle style{FontFace::Gothic, 16};
  EXPECT_EQ(text_.measure(style, "\x88"), 8);
  EXPECT_EQ(text_.measure(style, std::string_view("\x88 a", 3)), 24);
  EXPECT_EQ(text_.fitBytes(style, "a\x88", 100), 2u);
}

TEST_F(TextRendererTest, DrawsTheGlyphAsTheFontsInstructionsShapeIt) {
  Canvas canvas(16, 16);
  text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, 16}, sjis("口"), Ink);
  EXPECT_EQ(canvas.rows(),
            std::vector<std::string>(
                {"................", "................", "................", "..############..",
                 "..#..........#..", "..#..........#..", "..#..........#..", "..#..........#..",
                 "..#..........#..", "..#..........#..", "..#..........#..", "..#..........#..",
                 "..############..", "..#..........#..", "................", "................"}));
}

TEST_F(TextRendererTest, KeepsInsideTheCell) {
  const std::string run = sjis("永鬱ｇjぱ");
  for (const int height : {12, 16, 24, 32}) {
    const int width = text_.measure({FontFace::Gothic, height}, run);
    Canvas canvas(width, height);
    text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, height}, run, Ink);
    EXPECT_TRUE(canvas.bordersUntouched()) << height;
    Canvas wide(width + 8, height + 8);
    text_.draw(wide.target(), 4, 4, {FontFace::Gothic, height}, run, Ink);
    EXPECT_EQ(canvas.inked(), wide.inked()) << height;
  }
}

TEST_F(TextRendererTest, ClipsAtAllFourEdges) {
  const std::string run = sjis("漢字") + "Ag";
  const TextStyle style{FontFace::Mincho, 24};
  const int width = text_.measure(style, run);
  Canvas whole(width + 80, 24 + 80);
  text_.draw(whole.target(), 40, 40, style, run, Ink);
  for (int y = -26; y <= 12; y += 2)
    for (int x = -width - 2; x <= 34; ++x) {
      Canvas canvas(32, 10);
      EXPECT_EQ(text_.draw(canvas.target(), x, y, style, run, Ink), width);
      ASSERT_TRUE(canvas.bordersUntouched()) << x << ", " << y;
      for (int row = 0; row < 10; ++row)
        for (int column = 0; column < 32; ++column) {
          const int wholeX = column - x + 40, wholeY = row - y + 40;
          const bool there = wholeX >= 0 && wholeY >= 0 && wholeX < width + 80 && wholeY < 24 + 80;
          ASSERT_EQ(canvas.at(column, row), there ? whole.at(wholeX, wholeY) : Untouched)
              << x << ", " << y << " at " << column << ", " << row;
        }
    }
}

TEST_F(TextRendererTest, DrawsNothingFarOutsideOrWithoutHeightOrTarget) {
  Canvas canvas(20, 20);
  text_.draw(canvas.target(), 2000000000, 2000000000, {}, sjis("漢"), Ink);
  text_.draw(canvas.target(), -2000000000, -2000000000, {}, sjis("漢"), Ink);
  EXPECT_EQ(text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, 0}, sjis("漢"), Ink), 0);
  EXPECT_EQ(text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, -5}, sjis("漢"), Ink), 0);
  EXPECT_EQ(text_.draw(TextTarget{}, 0, 0, {FontFace::Gothic, 16}, sjis("漢"), Ink), 16);
  EXPECT_EQ(canvas.inked(), 0);
}

TEST_F(TextRendererTest, DrawsHeightsBeyondAllReasonAtTheLargestOne) {
  EXPECT_EQ(text_.measure({FontFace::Gothic, 2000000000}, sjis("漢")), 512);
}

TEST_F(TextRendererTest, KeepsThePlaceOfControlBytesAndShowsNothing) {
  Canvas canvas(40, 16);
  EXPECT_EQ(text_.draw(canvas.target(), 0, 0, {}, std::string_view("\x01\x7f\x00", 3), Ink), 24);
  EXPECT_EQ(canvas.inked(), 0);
}

TEST_F(TextRendererTest, DrawsWhatLooksTheSameWhereTheFontLacksACharacter) {
  Canvas sum(16, 16), sigma(16, 16);
  text_.draw(sum.target(), 0, 0, {}, "\x87\x94", Ink);    // the sum sign
  text_.draw(sigma.target(), 0, 0, {}, "\x83\xb0", Ink);  // the capital sigma
  EXPECT_EQ(sum.rows(), sigma.rows());
}

TEST_F(TextRendererTest, IgnoresTheHighestByteOfTheColour) {
  Canvas canvas(16, 16);
  text_.draw(canvas.target(), 0, 0, {}, sjis("口"), 0xFF000000 | Ink);
  EXPECT_GT(canvas.inked(), 0);
}

TEST_F(TextRendererTest, ServesManyThreadsAtOnce) {
  const int expected = text_.measure({FontFace::Mincho, 16}, sjis("同時に描く"));
  std::vector<int> drawn(4, 0);
  Thread threads[4];
  for (size_t i = 0; i < 4; ++i)
    threads[i].start("drawer", [&, i] {
      Canvas canvas(100, 20);
      for (int round = 0; round < 50; ++round)
        drawn[i] =
            text_.draw(canvas.target(), 0, 0, {FontFace::Mincho, 16}, sjis("同時に描く"), Ink);
      text_.measure({FontFace::Gothic, 10 + static_cast<int>(i)}, sjis("別の大きさ"));
    });
  for (Thread& thread : threads)
    thread.join();
  for (const int width : drawn)
    EXPECT_EQ(width, expected);
}

class MissingFontTest : public ::testing::Test {
 protected:
  testing::TemporaryFolder folder_;
  KernelScope kernel_{makeRealKernel()};
  TextRenderer text_{folder_.path()};
};

TEST_F(MissingFontTest, SaysSo) {
  EXPECT_FALSE(text_.hasFont(FontFace::Gothic));
  EXPECT_FALSE(text_.hasFont(FontFace::ProportionalMincho));
}

TEST_F(MissingFontTest, DrawsHollowBoxesOfTheRightWidth) {
  Canvas canvas(12, 8);
  EXPECT_EQ(text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, 8}, sjis("漢") + "\x90", Ink), 12);
  EXPECT_EQ(canvas.rows(), std::vector<std::string>({"............", ".######..##.", ".#....#..##.",
                                                     ".#....#..##.", ".#....#..##.", ".#....#..##.",
                                                     ".######..##.", "............"}));
}

TEST_F(MissingFontTest, WritesTheCodeIntoBoxesThatHaveRoomForIt) {
  Canvas canvas(18, 18);
  text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, 18}, "\x8a\xbf", Ink);
  EXPECT_EQ(canvas.rows(), std::vector<std::string>(
                               {"..................", ".################.", ".#..............#.",
                                ".#...###.###....#.", ".#...#.#.#.#....#.", ".#...###.###....#.",
                                ".#...#.#.#.#....#.", ".#...###.#.#....#.", ".#..............#.",
                                ".#...##..###....#.", ".#...#.#.#......#.", ".#...##..##.....#.",
                                ".#...#.#.#......#.", ".#...##..#......#.", ".#..............#.",
                                ".#..............#.", ".################.", ".................."}));
}

TEST_F(MissingFontTest, MeasuresProportionalFacesLikeFixedOnes) {
  EXPECT_EQ(text_.measure({FontFace::ProportionalGothic, 16}, sjis("漢") + "a"), 24);
  EXPECT_EQ(text_.fitBytes({FontFace::ProportionalGothic, 16}, sjis("漢") + "a", 20), 2u);
}

TEST_F(MissingFontTest, DrawsTinyCellsWithinTheirBounds) {
  for (int height = 1; height <= 5; ++height) {
    Canvas canvas(height + (height + 1) / 2, height);
    text_.draw(canvas.target(), 0, 0, {FontFace::Gothic, height}, sjis("漢") + "a", Ink);
    EXPECT_TRUE(canvas.bordersUntouched()) << height;
    EXPECT_GT(canvas.inked(), 0) << height;
  }
}

TEST(DamagedFont, IsAsGoodAsNone) {
  testing::TemporaryFolder folder;
  KernelScope kernel(makeRealKernel());
  std::ofstream(folder.path() / "ipag.ttf") << "this is no font";
  TextRenderer text(folder.path());
  EXPECT_EQ(text.measure({FontFace::Gothic, 16}, sjis("漢")), 16);
}

}  // namespace
}  // namespace qv
