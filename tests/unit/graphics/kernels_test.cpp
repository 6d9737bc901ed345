#include "graphics/kernels/kernels.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <hwy/targets.h>

#include "platform/vector_dispatch.h"

namespace qv {
namespace {

// ---- What the loops shall do, written a second time and as simply as can be. ----

using Bytes = std::vector<uint8_t>;

/// A rectangle in a block of memory with margins all round. Pixel (x, y) counts from the top left;
/// rows lie bottom first. Cells beside the rectangle are sentinels that must stay.
struct Block {
  Bytes memory;
  size_t first = 0;  ///< of the top left pixel
  int stride = 0, pixelBytes = 1;

  uint8_t* corner() { return memory.data() + first; }
  uint8_t* at(int x, int y) {
    return corner() - static_cast<ptrdiff_t>(y) * stride + static_cast<ptrdiff_t>(x) * pixelBytes;
  }
};

/// `shift`: bytes beyond an address that 64 divides where the top left pixel lies.
Block blockOf(int width, int height, int pixelBytes, int extraStride, size_t shift,
              std::mt19937& random, int colours = 256) {
  constexpr size_t Margin = 128, Alignment = 64;
  Block block;
  block.pixelBytes = pixelBytes;
  block.stride = width * pixelBytes + extraStride;
  const auto rowBytes = static_cast<size_t>(block.stride);
  block.memory.resize(rowBytes * static_cast<size_t>(height) + 2 * Margin + 2 * Alignment);
  for (uint8_t& byte : block.memory)
    byte = static_cast<uint8_t>(random() % static_cast<unsigned>(colours));
  const size_t top = Margin + rowBytes * static_cast<size_t>(height - 1);
  const auto address = reinterpret_cast<uintptr_t>(block.memory.data()) + top;
  block.first = top + (Alignment - address % Alignment) % Alignment + shift;
  return block;
}

uint32_t wordAt(const uint8_t* place) {
  uint32_t word;
  std::memcpy(&word, place, sizeof word);
  return word;
}

using Palette = std::vector<uint32_t>;
Palette somePalette(std::mt19937& random, bool fourthBytes) {
  Palette palette(256);
  for (uint32_t& entry : palette)
    entry = static_cast<uint32_t>(random()) & (fourthBytes ? 0xFFFFFFFF : 0xFFFFFF);
  return palette;
}

uint32_t mixedWord(KernelForm form, uint32_t target, uint32_t source, int level) {
  uint32_t result = 0;
  for (int channel = 0; channel < 4; ++channel) {
    const int t = static_cast<int>(target >> (8 * channel) & 255);
    const int s = static_cast<int>(source >> (8 * channel) & 255);
    const int sum = t * (16 - level) + s * level;
    int value = form == KernelForm::Vector ? sum >> 4 : ((sum >> 8) & 15) << 4;
    if (form == KernelForm::Plain && channel == 3) value = 0;
    result |= static_cast<uint32_t>(value) << (8 * channel);
  }
  return result;
}

/// The set cells of every pattern, told by where each level adds (or moves) a cell.
bool cellSet(int level, int x, int y) {
  static const char* const Rows[16] = {
      "................", "X...............", "X.........X.....", "X.X.......X.....",
      "X.X.....X.X.....", "X.X..X..X.X.....", "X.X..X..X.X....X", "X.X..X.XX.X..X..",
      "X.X..X.XX.X..X.X", "X.XX.X.XX.X..X.X", "X.XX.X.XXXX..X.X", "X.XX.X.XXXXX.X.X",
      "XXXX.X.XXXXX.X.X", "XXXX.XXXXXXX.X.X", "XXXX.XXXXXXXXX.X", "XXXXXXXXXXXXXX.X"};
  return Rows[level][(y % 4) * 4 + x % 4] == 'X';
}

/// One call of a loop: what runs, and which pixel a reference gives at (x, y), or nothing where the
/// target stays.
struct Trial {
  std::string name;
  int pixelBytes = 1, sourceBytes = 1;
  std::function<void(KernelForm, const KernelRows&)> run;
  /// x, y, the rectangle's width, the form, target and source pixel.
  std::function<std::optional<uint32_t>(int, int, int, KernelForm, uint32_t, uint32_t)> pixel;
};

uint32_t pixelAt(Block& block, int x, int y) {
  return block.pixelBytes == 4 ? wordAt(block.at(x, y)) : *block.at(x, y);
}

/// Runs the trial on one rectangle and compares the whole memory of the target, sentinels and all.
void expectAsReference(const Trial& trial, KernelForm form, Block target, Block source, int width,
                       int height) {
  // A vector copies as values: what lay aligned need not be so in the copy.
  Block before = target, expected = target;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const auto value =
          trial.pixel(x, y, width, form, pixelAt(before, x, y), pixelAt(source, x, y));
      if (value) std::memcpy(expected.at(x, y), &*value, static_cast<size_t>(trial.pixelBytes));
    }
  trial.run(form, {target.corner(), target.stride, source.corner(), source.stride, width, height});
  if (target.memory == expected.memory) return;
  const auto place =
      std::mismatch(target.memory.begin(), target.memory.end(), expected.memory.begin());
  ADD_FAILURE() << trial.name << (form == KernelForm::Vector ? " in vectors, " : " plain, ")
                << width << " by " << height << ": byte "
                << (place.first - target.memory.begin()) - static_cast<ptrdiff_t>(target.first)
                << " from the top left pixel is " << int{*place.first} << ", expected "
                << int{*place.second} << ", was "
                << int{before.memory[static_cast<size_t>(place.first - target.memory.begin())]}
                << "; strides " << target.stride << ", " << source.stride;
}

using Pixel = std::optional<uint32_t>;

Trial copies() {
  return {"copyRows", 1, 1, [](KernelForm form, const KernelRows& rows) { copyRows(form, rows); },
          [](int, int, int, KernelForm, uint32_t, uint32_t s) -> Pixel { return s; }};
}

Trial copies32() {
  return {"copyRows32", 4, 4,
          [](KernelForm form, const KernelRows& rows) { copyRows32(form, rows); },
          [](int, int, int, KernelForm, uint32_t, uint32_t s) -> Pixel { return s; }};
}

Pixel unlessKey(int key, uint32_t source, uint32_t value) {
  if (static_cast<int>(source) == key) return std::nullopt;
  return value;
}

Trial keyed(uint8_t key) {
  return {"copyRowsKey " + std::to_string(key), 1, 1,
          [key](KernelForm form, const KernelRows& rows) { copyRowsKey(form, rows, key); },
          [key](int, int, int, KernelForm, uint32_t, uint32_t s) { return unlessKey(key, s, s); }};
}

Trial combed(int step, int key) {
  return {"combRows step " + std::to_string(step) + " key " + std::to_string(key), 1, 1,
          [=](KernelForm form, const KernelRows& rows) {
            if (key < 0)
              combRows(form, rows, step);
            else
              combRowsKey(form, rows, step, static_cast<uint8_t>(key));
          },
          [=](int x, int y, int width, KernelForm, uint32_t, uint32_t s) -> Pixel {
            const int64_t count = int64_t{y} * width + x + 1;
            if (step > 1 && count % step) return std::nullopt;
            return unlessKey(key, s, s);
          }};
}

Trial dithered(int level, int key) {
  return {"ditherRows level " + std::to_string(level) + " key " + std::to_string(key), 1, 1,
          [=](KernelForm form, const KernelRows& rows) {
            if (key < 0)
              ditherRows(form, rows, level);
            else
              ditherRowsKey(form, rows, level, static_cast<uint8_t>(key));
          },
          [=](int x, int y, int, KernelForm, uint32_t, uint32_t s) -> Pixel {
            if (level >= 16 || (level >= 1 && !cellSet(level, x, y))) return std::nullopt;
            return unlessKey(key, s, s);
          }};
}

Trial expanded(const Palette& palette, int key) {
  return {"expandRows key " + std::to_string(key), 4, 1,
          [&palette, key](KernelForm form, const KernelRows& rows) {
            if (key < 0)
              expandRows(form, rows, palette.data());
            else
              expandRowsKey(form, rows, palette.data(), static_cast<uint8_t>(key));
          },
          [&palette, key](int, int, int, KernelForm, uint32_t, uint32_t s) {
            return unlessKey(key, s, palette[s]);
          }};
}

Trial blended(const Palette& palette, int level, int key) {
  return {"blendRows level " + std::to_string(level) + " key " + std::to_string(key), 4, 1,
          [&palette, level, key](KernelForm form, const KernelRows& rows) {
            if (key < 0)
              blendRows(form, rows, palette.data(), level);
            else
              blendRowsKey(form, rows, palette.data(), level, static_cast<uint8_t>(key));
          },
          [&palette, level, key](int, int, int, KernelForm form, uint32_t t, uint32_t s) -> Pixel {
            if (level < 1) return std::nullopt;
            if (level >= 16) return unlessKey(key, s, palette[s]);
            return unlessKey(key, s, mixedWord(form, t, palette[s], level));
          }};
}

// ---- The plain form, and the vector form with every kind of vector that this machine has. ----

constexpr int64_t Plain = 0;

std::vector<int64_t> formsHere() {
  std::vector<int64_t> forms = {Plain, HWY_SCALAR};
  for (int64_t left = vectorTargets(); left; left &= left - 1)
    if ((left & -left) < HWY_EMU128) forms.push_back(left & -left);
  return forms;
}

class Kernels : public ::testing::TestWithParam<int64_t> {
 protected:
  void SetUp() override {
    if (GetParam() == Plain) return;
    pretendVectors(GetParam());
  }
  void TearDown() override { pretendVectors(0); }

  std::mt19937 random_{20};
  const Palette palette_ = somePalette(random_, false);
  const Palette oddPalette_ = somePalette(random_, true);
  const KernelForm form_ = GetParam() == Plain ? KernelForm::Plain : KernelForm::Vector;

  /// Every width and height, with the strides and places going round. Sources have three colours,
  /// so that a key below 3 is there often and one above never.
  void expectAtEveryWidth(const Trial& trial) {
    for (int width = 0; width <= 70; ++width)
      for (int height = 1; height <= 5; ++height)
        expectAt(trial, width, height, 4 * (width % 3), height % 4,
                 static_cast<size_t>(4 * (width % 16)), static_cast<size_t>(7 * height % 16));
  }
  /// Every misalignment of both sides.
  void expectAtEveryPlace(const Trial& trial, int width) {
    const auto targetStep = static_cast<size_t>(trial.pixelBytes);
    const auto sourceStep = static_cast<size_t>(trial.sourceBytes);
    for (size_t target = 0; target < 16 * targetStep && target < 64; target += targetStep)
      for (size_t source = 0; source < 16 * sourceStep; source += sourceStep)
        expectAt(trial, width, 2, 8, 4, target, source);
    if (trial.pixelBytes != 1) return;
    // Bytes begin anywhere in the longest vector, and longer rows have vectors between both ends.
    for (size_t target = 0; target < 64; ++target)
      for (const int longer : {width, 70, 200})
        expectAt(trial, longer, 2, 8, 4, target, target * 7 % 16);
  }
  void expectAt(const Trial& trial, int width, int height, int targetExtra, int sourceExtra,
                size_t targetShift, size_t sourceShift, int colours = 3) {
    if (HasFailure()) return;  // one place is enough
    expectAsReference(
        trial, form_, blockOf(width, height, trial.pixelBytes, targetExtra, targetShift, random_),
        blockOf(width, height, trial.sourceBytes, sourceExtra, sourceShift, random_, colours),
        width, height);
  }
};

constexpr int NoKey = -1, PresentKey = 1, AbsentKey = 200;
constexpr int Keys[] = {NoKey, PresentKey, AbsentKey};
constexpr int Steps[] = {-3, 0,  1,  2,  3,  4,  5,  7,  8,  11, 13,  16,  17,   19,
                         31, 32, 33, 47, 62, 63, 64, 65, 66, 71, 128, 351, 70000};
/// Sixteen whole words and a row of several blocks of colours that are looked up together.
constexpr int LongWidths[] = {640, 511, 512, 513, 1100};

TEST_P(Kernels, CopyRowsCopiesAnyRectangleAndNothingBeside) {
  expectAtEveryWidth(copies());
  expectAtEveryPlace(copies(), 37);
}

TEST_P(Kernels, CopyRows32CopiesAnyRectangleAndNothingBeside) {
  expectAtEveryWidth(copies32());
  expectAtEveryPlace(copies32(), 37);
}

TEST_P(Kernels, CopyRowsKeyLeavesTheTargetWhereTheSourceIsTheKey) {
  for (const int key : {PresentKey, AbsentKey, 0, 255}) {
    expectAtEveryWidth(keyed(static_cast<uint8_t>(key)));
    for (const int width : {5, 16, 37, 100})
      expectAtEveryPlace(keyed(static_cast<uint8_t>(key)), width);
    for (const int width : {1, 7, 63, 640, 1001})  // rows without a gap between them
      expectAt(keyed(static_cast<uint8_t>(key)), width, 9, 0, 0, 4, 1);
  }
}

TEST_P(Kernels, CombRowsTakesEveryNthPixelCountedOnOverRows) {
  for (const int key : Keys)
    for (const int step : Steps) {
      expectAtEveryWidth(combed(step, key));
      expectAt(combed(step, key), 640, 9, 0, 4, 0, 3);
    }
}

TEST_P(Kernels, CombRowsDoesSoAtEveryPlace) {
  for (const int key : {NoKey, PresentKey})
    for (const int step : {2, 3, 19, 70})
      expectAtEveryPlace(combed(step, key), 37);
}

TEST_P(Kernels, DitherRowsTakesTheCellsOfThePatternFromTheCorner) {
  for (const int key : Keys)
    for (int level = -1; level <= 17; ++level)
      expectAtEveryWidth(dithered(level, key));
}

TEST_P(Kernels, DitherRowsDoesSoAtEveryPlace) {
  for (const int key : {NoKey, PresentKey})
    for (const int level : {1, 6, 15})
      expectAtEveryPlace(dithered(level, key), 37);
}

TEST_P(Kernels, ExpandRowsLooksUpEveryIndex) {
  for (const int key : Keys)
    for (const Palette* palette : {&palette_, &oddPalette_}) {
      expectAtEveryWidth(expanded(*palette, key));
      expectAtEveryPlace(expanded(*palette, key), 37);
      for (const int width : LongWidths)
        expectAt(expanded(*palette, key), width, 4, 8, 3, 4, 5, 256);
      // Large enough that every width meets the way by byte tables too.
      for (int width = 1; width <= 130; ++width)
        expectAt(expanded(*palette, key), width, 1024 / width + 1, 4, 1, 8, 3, 256);
    }
}

TEST_P(Kernels, BlendRowsMixesBySixteenths) {
  for (const int key : Keys)
    for (int level = -1; level <= 17; ++level) {
      expectAtEveryWidth(blended(palette_, level, key));
      expectAt(blended(oddPalette_, level, key), 640, 3, 0, 0, 0, 0, 256);
    }
}

TEST_P(Kernels, BlendRowsDoesSoAtEveryPlace) {
  for (const int key : {NoKey, PresentKey}) {
    expectAtEveryPlace(blended(oddPalette_, 7, key), 37);
    for (const int width : LongWidths)
      expectAt(blended(oddPalette_, 11, key), width, 4, 8, 3, 4, 5, 256);
  }
}

TEST_P(Kernels, BlendRowsGivesEveryPairOfChannelValuesItsSum) {
  // Targets 0 to 255 along the row, sources 0 to 255 down, in all four channels.
  Palette grey(256);
  for (uint32_t i = 0; i < 256; ++i)
    grey[i] = i * 0x01010101u;
  std::vector<uint32_t> target(256 * 256);
  std::vector<uint8_t> source(256 * 256);
  for (int level = 1; level <= 15; ++level) {
    for (size_t i = 0; i < target.size(); ++i) {
      target[i] = static_cast<uint32_t>(i & 255) * 0x01010101u;
      source[i] = static_cast<uint8_t>(i >> 8);
    }
    blendRows(form_,
              {reinterpret_cast<uint8_t*>(target.data() + 255 * 256), 1024,
               source.data() + 255 * 256, 256, 256, 256},
              grey.data(), level);
    for (size_t i = 0; i < target.size(); ++i)
      ASSERT_EQ(target[i],
                mixedWord(form_, static_cast<uint32_t>(i & 255) * 0x01010101u, grey[i >> 8], level))
          << "level " << level << ", target " << (i & 255) << ", source " << (i >> 8);
  }
}

TEST_P(Kernels, NothingIsDrawnWithoutWidthOrHeight) {
  uint8_t target[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  const uint8_t source[8] = {9, 9, 9, 9, 9, 9, 9, 9};
  alignas(4) uint8_t words[16] = {};
  for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-1, 2}, {2, -1}}) {
    const KernelRows rows = {target, 8, source, 8, width, height};
    const KernelRows rows32 = {words, 16, source, 8, width, height};
    copyRows(form_, rows);
    copyRowsKey(form_, rows, 0);
    combRows(form_, rows, 2);
    combRowsKey(form_, rows, 0, 0);
    ditherRows(form_, rows, 8);
    ditherRowsKey(form_, rows, 0, 0);
    expandRows(form_, rows32, oddPalette_.data());
    blendRowsKey(form_, rows32, oddPalette_.data(), 8, 0);
    copyRows32(form_, rows32);
  }
  EXPECT_THAT(target, ::testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_THAT(words, ::testing::Each(0));
}

INSTANTIATE_TEST_SUITE_P(OfThisMachine, Kernels, ::testing::ValuesIn(formsHere()),
                         [](const ::testing::TestParamInfo<int64_t>& form) -> std::string {
                           return form.param == Plain ? "Plain" : hwy::TargetName(form.param);
                         });

// ---- Single facts, as a reader would check them by hand. ----

/// A row of one word each, blended in the form.
uint32_t blendedGrey(KernelForm form, uint32_t target, uint8_t source, int level) {
  Palette grey(256);
  for (uint32_t i = 0; i < 256; ++i)
    grey[i] = i * 0x010101;
  blendRows(form, {reinterpret_cast<uint8_t*>(&target), 4, &source, 1, 1, 1}, grey.data(), level);
  return target;
}

TEST(BlendRows, HalfOf200And100Is150InVectorsAnd144Plain) {
  EXPECT_EQ(blendedGrey(KernelForm::Vector, 200 * 0x010101, 100, 8), 150u * 0x010101);
  EXPECT_EQ(blendedGrey(KernelForm::Plain, 200 * 0x010101, 100, 8), 144u * 0x010101);
}

TEST(BlendRows, OfTwoSameValuesStaysTheSameInVectorsAndLosesFourBitsPlain) {
  for (uint32_t value = 0; value < 256; ++value) {
    EXPECT_EQ(blendedGrey(KernelForm::Vector, value * 0x010101, static_cast<uint8_t>(value), 1),
              value * 0x010101);
    EXPECT_EQ(blendedGrey(KernelForm::Plain, value * 0x010101, static_cast<uint8_t>(value), 1),
              (value & 0xF0) * 0x010101);
  }
}

TEST(BlendRows, MixesTheFourthByteInVectorsAndClearsItPlain) {
  EXPECT_EQ(blendedGrey(KernelForm::Vector, 0xC0000000, 0, 4), 0x90000000u);
  EXPECT_EQ(blendedGrey(KernelForm::Plain, 0xC0000000, 0, 4), 0u);
}

/// Which columns of each row of 640 are copied.
std::vector<std::vector<int>> columnsCopied(const std::function<void(const KernelRows&)>& run,
                                            int height) {
  constexpr int Width = 640;
  const auto pixels = static_cast<size_t>(Width * height);
  Bytes target(pixels, 0), source(pixels, 1);
  const size_t top = pixels - Width;
  run({target.data() + top, Width, source.data() + top, Width, Width, height});
  std::vector<std::vector<int>> columns(static_cast<size_t>(height));
  for (size_t i = 0; i < pixels; ++i)
    if (target[i]) columns[pixels / Width - 1 - i / Width].push_back(static_cast<int>(i % Width));
  return columns;
}

class EitherForm : public ::testing::TestWithParam<KernelForm> {};
INSTANTIATE_TEST_SUITE_P(Kernels, EitherForm,
                         ::testing::Values(KernelForm::Plain, KernelForm::Vector));

TEST_P(EitherForm, CombOfThreeSlantsByOneColumnARowOf640) {
  const auto columns =
      columnsCopied([](const KernelRows& rows) { combRows(GetParam(), rows, 3); }, 2);
  ASSERT_EQ(columns[0].front(), 2);
  EXPECT_EQ(columns[0][1], 5);
  EXPECT_EQ(columns[1].front(), 1);
  EXPECT_EQ(columns[1][1], 4);
}

TEST_P(EitherForm, CombOfADivisorOfTheWidthStandsUpright) {
  for (const int step : {16, 8, 4, 2}) {
    const auto columns =
        columnsCopied([=](const KernelRows& rows) { combRows(GetParam(), rows, step); }, 3);
    EXPECT_EQ(columns[0].front(), step - 1);
    EXPECT_EQ(columns[1], columns[0]);
    EXPECT_EQ(columns[2], columns[0]);
  }
}

TEST_P(EitherForm, DitherOfEightIsAChequerAndOfFifteenLeavesOneInSixteen) {
  const auto chequer =
      columnsCopied([](const KernelRows& rows) { ditherRows(GetParam(), rows, 8); }, 4);
  for (size_t y = 0; y < 4; ++y) {
    EXPECT_EQ(chequer[y].size(), 320u);
    EXPECT_EQ(chequer[y].front(), static_cast<int>(y % 2));
  }
  const auto nearlyAll =
      columnsCopied([](const KernelRows& rows) { ditherRows(GetParam(), rows, 15); }, 4);
  EXPECT_EQ(nearlyAll[0].size() + nearlyAll[1].size() + nearlyAll[2].size(), 3 * 640u);
  EXPECT_EQ(nearlyAll[3].size(), 480u);
}

TEST_P(EitherForm, EachDitherLevelSetsThatManyOfSixteenCells) {
  for (int level = 1; level <= 15; ++level) {
    size_t count = 0;
    for (const auto& row :
         columnsCopied([=](const KernelRows& rows) { ditherRows(GetParam(), rows, level); }, 4))
      count += row.size();
    EXPECT_EQ(count, static_cast<size_t>(level) * 160);
  }
}

TEST_P(EitherForm, RectanglesOfOnePictureThatOverlapCopyRowByRow) {
  Bytes picture = {0, 1, 2, 3, 4, 5, 6, 7};
  copyRows(GetParam(), {picture.data() + 2, 8, picture.data(), 8, 6, 1});
  EXPECT_THAT(picture, ::testing::ElementsAre(0, 1, 0, 1, 2, 3, 4, 5));
}

TEST_P(EitherForm, APictureMovedDownWithinItselfRepeatsItsTopRow) {
  // Two pixels wide, bottom row first, rows without a gap.
  Bytes picture = {7, 8, 5, 6, 3, 4, 1, 2};
  copyRows(GetParam(), {picture.data() + 4, 2, picture.data() + 6, 2, 2, 3});
  EXPECT_THAT(picture, ::testing::ElementsAre(1, 2, 1, 2, 1, 2, 1, 2));
  picture = {7, 8, 5, 6, 3, 4, 1, 2};
  copyRows(GetParam(), {picture.data() + 6, 2, picture.data() + 4, 2, 2, 3});
  EXPECT_THAT(picture, ::testing::ElementsAre(7, 8, 7, 8, 5, 6, 3, 4));
}

}  // namespace
}  // namespace qv
