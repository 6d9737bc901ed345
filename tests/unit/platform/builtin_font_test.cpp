#include "platform/text/builtin_font.h"

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text/shift_jis.h"
#include "platform/text/stroke_drawing.h"
#include "tests/support/golden.h"

namespace qv {
namespace {

/// What the font promises: texts in UTF-8, and rows of codes.
const char* const PromisedSigns =
    "、。・「」『』（）！？ー～…‥―－＝＋：；／　々ゝゞヽヾ〇，．゛゜‘’“”〔〕［］〈〉《》【】"
    "☆○◇□△▽→←↑↓♪×";

std::vector<uint16_t> codesOf(uint16_t from, uint16_t to) {
  std::vector<uint16_t> codes;
  for (unsigned code = from; code <= to; ++code)
    if (code < 0x100 || (code & 0xFF) != 0x7F) codes.push_back(static_cast<uint16_t>(code));
  return codes;
}

std::vector<uint16_t> codesOf(const std::string& shiftJis) {
  std::vector<uint16_t> codes;
  for (size_t at = 0; at + 1 < shiftJis.size(); at += 2)
    codes.push_back(static_cast<uint16_t>(static_cast<unsigned char>(shiftJis[at]) << 8 |
                                          static_cast<unsigned char>(shiftJis[at + 1])));
  return codes;
}

std::vector<uint16_t> promisedSingles() {
  std::vector<uint16_t> codes = codesOf(0x20, 0x7E);
  const std::vector<uint16_t> kana = codesOf(0xA1, 0xDF);
  codes.insert(codes.end(), kana.begin(), kana.end());
  return codes;
}

std::vector<uint16_t> promisedDoubles() {
  std::vector<uint16_t> codes = codesOf(sjis(PromisedSigns));
  constexpr std::pair<uint16_t, uint16_t> Rows[] = {{0x829F, 0x82F1},
                                                    {0x8340, 0x8396},  // hiragana, katakana
                                                    {0x824F, 0x8258},
                                                    {0x8260, 0x8279},
                                                    {0x8281, 0x829A}};  // digits, letters
  for (const auto& [from, to] : Rows) {
    const std::vector<uint16_t> row = codesOf(from, to);
    codes.insert(codes.end(), row.begin(), row.end());
  }
  return codes;
}

bool isSpace(uint16_t code) {
  return code == 0x20 || code == 0x8140;
}

int inkOf(const BuiltinGlyph& glyph) {
  int ink = 0;
  for (const uint16_t row : glyph.rows)
    for (unsigned bits = row; bits != 0; bits &= bits - 1)
      ++ink;
  return ink;
}

TEST(BuiltinFont, HasEveryCharacterThatItPromises) {
  for (const uint16_t code : promisedSingles()) {
    const auto glyph = builtinGlyph(code);
    ASSERT_TRUE(glyph) << std::hex << code;
    EXPECT_EQ(glyph->width, 8) << std::hex << code;
  }
  EXPECT_EQ(promisedDoubles().size(), 83u + 86u + 10u + 52u + codesOf(sjis(PromisedSigns)).size());
  for (const uint16_t code : promisedDoubles()) {
    const auto glyph = builtinGlyph(code);
    ASSERT_TRUE(glyph) << std::hex << code;
    EXPECT_EQ(glyph->width, 16) << std::hex << code;
  }
}

TEST(BuiltinFont, ShowsSomethingForEverythingButTheSpaces) {
  for (const auto& codes : {promisedSingles(), promisedDoubles()})
    for (const uint16_t code : codes)
      EXPECT_EQ(inkOf(*builtinGlyph(code)) == 0, isSpace(code)) << std::hex << code;
}

TEST(BuiltinFont, DrawsNoTwoCharactersAlike) {
  for (const auto& codes : {promisedSingles(), promisedDoubles()}) {
    std::map<std::array<uint16_t, 16>, uint16_t> seen;
    for (const uint16_t code : codes) {
      const auto [first, fresh] = seen.emplace(builtinGlyph(code)->rows, code);
      EXPECT_TRUE(fresh) << std::hex << code << " looks like " << first->second;
    }
  }
}

TEST(BuiltinFont, KeepsSingleBytesWithinTheirSevenColumns) {
  for (const uint16_t code : promisedSingles()) {
    if (code == '_') continue;  // joins its neighbour
    const auto rows = builtinGlyph(code)->rows;
    for (const uint16_t row : rows)
      EXPECT_EQ(row & 0x01FF, 0) << std::hex << code;
  }
  const auto joining = builtinGlyph('_')->rows;
  for (const uint16_t row : joining)
    EXPECT_EQ(row & 0x00FF, 0);
}

TEST(BuiltinFont, StandsCapitalsOnTheBaseLine) {
  for (uint16_t code = 'A'; code <= 'Z'; ++code) {
    if (code == 'Q') continue;  // its tail goes below
    const auto rows = builtinGlyph(code)->rows;
    EXPECT_NE(rows[12], 0) << code;
    EXPECT_TRUE(rows[13] == 0 && rows[14] == 0 && rows[15] == 0) << code;
    EXPECT_TRUE(rows[0] == 0 && rows[1] == 0) << code;
    EXPECT_NE(rows[2], 0) << code;
  }
}

TEST(BuiltinFont, HasNothingForOtherCodes) {
  for (const unsigned code : {0x00u, 0x0Au, 0x1Fu, 0x7Fu, 0x80u, 0xA0u, 0xE0u, 0xFFu,  // bytes
                              0x889Fu,                                                 // a kanji
                              0x837Fu, 0x8100u, 0x829Eu, 0x82F2u, 0x8397u,  // no character
                              0xF040u, 0xF9FCu,                             // external characters
                              0x0141u, 0xA141u, 0xFFFFu})                   // no lead bytes
    EXPECT_FALSE(builtinGlyph(static_cast<uint16_t>(code))) << std::hex << code;
}

TEST(BuiltinFont, AnswersAnyCodeAndKnowsNoMoreThanAFont) {
  int known = 0;
  for (unsigned code = 0; code <= 0xFFFF; ++code)
    if (const auto glyph = builtinGlyph(static_cast<uint16_t>(code))) {
      ++known;
      EXPECT_EQ(glyph->width, code < 0x100 ? 8 : 16);
    }
  EXPECT_GE(known, static_cast<int>(promisedSingles().size() + promisedDoubles().size()));
  EXPECT_LT(known, 600);
}

/// Rows of text on white, a pixel of room around each cell.
class Sheet {
 public:
  Sheet(int columns, int rows) : width_(columns * 18), height_(rows * 18) {
    pixels_.assign(static_cast<size_t>(width_) * static_cast<size_t>(height_), 0xFFFFFF);
  }
  void place(int column, int row, const BuiltinGlyph& glyph) {
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < glyph.width; ++x)
        if (glyph.rows[static_cast<size_t>(y)] & (0x8000 >> x)) {
          const int pixel = (row * 18 + y + 1) * width_ + column * 18 + x + 1;
          pixels_[static_cast<size_t>(pixel)] = 0;
        }
  }
  Picture picture() const { return {width_, height_, pixels_}; }

 private:
  int width_, height_;
  std::vector<uint32_t> pixels_;
};

TEST(BuiltinFont, LooksAsItsSheetShows) {
  constexpr int Columns = 24;
  std::vector<uint16_t> codes = promisedSingles();
  const std::vector<uint16_t> doubles = promisedDoubles();
  codes.insert(codes.end(), doubles.begin(), doubles.end());
  Sheet sheet(Columns, static_cast<int>(codes.size()) / Columns + 1);
  for (size_t at = 0; at < codes.size(); ++at)
    sheet.place(static_cast<int>(at % Columns), static_cast<int>(at / Columns),
                *builtinGlyph(codes[at]));
  EXPECT_TRUE(
      testing::matchesGolden(sheet.picture(), QV_SOURCE_DIR "/tests/golden/builtin_font.png"));
}

/// A picture as text: what a stroke must look like, as far as its last row and column of ink.
std::vector<std::string> shown(const StrokePicture& picture, size_t columns, size_t rows) {
  std::vector<std::string> text;
  for (size_t y = 0; y < rows; ++y) {
    text.emplace_back();
    for (size_t x = 0; x < columns; ++x)
      text.back() += picture[y] & (0x8000 >> x) ? '#' : '.';
  }
  return text;
}

StrokePicture drawn(std::string_view strokes, const StrokePlacing& placing = {}) {
  StrokePicture picture{};
  drawStrokes(picture, strokes, placing);
  return picture;
}

TEST(DrawStrokes, JoinsPointsByLinesAndPartsStrokesBySlashes) {
  EXPECT_EQ(shown(drawn("00 30 33 / 02"), 5, 5),
            (std::vector<std::string>{"####.", "...#.", "#..#.", "...#.", "....."}));
}

TEST(DrawStrokes, DrawsTheSameLineUpAndDown) {
  EXPECT_EQ(drawn("00 F7"), drawn("F7 00"));
  EXPECT_EQ(shown(drawn("00 42"), 5, 3), (std::vector<std::string>{"#....", ".##..", "...##"}));
}

TEST(DrawStrokes, RunsCurvesThroughTheirPointsWithoutThickCorners) {
  const StrokePicture curve = drawn("~00 44 08");
  for (const auto& [x, y] : {std::pair{0, 0}, {4, 4}, {0, 8}})
    EXPECT_TRUE(curve[static_cast<size_t>(y)] & (0x8000 >> x)) << x << ", " << y;
  for (size_t y = 0; y + 1 < 16; ++y) {
    const unsigned both = curve[y] & curve[y + 1];
    EXPECT_EQ(both & both << 1, 0u) << "a block of four at row " << y;
  }
}

TEST(DrawStrokes, MovesAndScalesInSixteenths) {
  EXPECT_EQ(drawn("00 80", {8, 32, 16, 48}), drawn("23 63"));
  EXPECT_EQ(drawn("44", {16, 7, 16, -8}), drawn("44"));
  EXPECT_EQ(drawn("44", {16, 8, 16, -9}), drawn("53"));
}

TEST(DrawStrokes, LeavesOutWhatLiesOutside) {
  EXPECT_EQ(drawn("00", {16, -17, 16, 0}), StrokePicture{});
  EXPECT_EQ(drawn("00 F0", {160, -160, 16, 0})[0], 0xFFFF);
  EXPECT_EQ(drawn("FF", {16, 16, 16, 0}), StrokePicture{});
}

TEST(DrawStrokes, DrawsNothingOfWhatIsNoStroke) {
  EXPECT_EQ(drawn(""), StrokePicture{});
  EXPECT_EQ(drawn(" / ~ / zz / 1"), StrokePicture{});
}

TEST(DrawStrokes, TellsStrokesFromOtherText) {
  for (const char* good : {"", "00", "00 FF", "~00 FF / 12", "00 / ~12 34 56"})
    EXPECT_TRUE(areStrokes(good)) << good;
  for (const char* bad : {"0", "00 F", "00F1", "G0", "00 /", "/ 00", "00 // 11", "0 11", "00 ~11",
                          "~", "00 / ~", "0a"})
    EXPECT_FALSE(areStrokes(bad)) << bad;
}

TEST(DrawStrokes, SpreadsToEveryNeighbourAndNoFurther) {
  EXPECT_EQ(spread(drawn("55")), drawn("44 64 / 45 65 / 46 66"));
  EXPECT_EQ(spread(drawn("00 / FF")), drawn("00 10 11 01 / FF EF EE FE"));
}

}  // namespace
}  // namespace qv
