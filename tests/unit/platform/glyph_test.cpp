// Glyphs beside the renderer: their rows on pixels, the names of faces, the forms that are made,
// and the game's own font.

#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "platform/text/external_font.h"
#include "platform/text/face_names.h"
#include "platform/text/font_search.h"
#include "platform/text/glyph_rows.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

/// A picture of bytes with borders that nobody may write, in either order of rows.
class Bytes {
 public:
  Bytes(int width, int height, bool bottomUp)
      : width_(width), height_(height), bottomUp_(bottomUp), bytes_(size(), Untouched) {}
  PixelTarget<uint8_t> target() {
    const int stride = width_ + 2 * Border;
    uint8_t* first = bytes_.data() + Border * stride + Border;
    if (!bottomUp_) return {first, width_, height_, stride};
    return {first + (height_ - 1) * stride, width_, height_, -stride};
  }
  uint8_t at(int x, int y) const {
    const int row = bottomUp_ ? height_ - 1 - y : y;
    return bytes_[static_cast<size_t>((row + Border) * (width_ + 2 * Border) + x + Border)];
  }
  static constexpr int Border = 3;
  static constexpr uint8_t Untouched = 0xA5;

 private:
  size_t size() const {
    return static_cast<size_t>((width_ + 2 * Border) * (height_ + 2 * Border));
  }
  int width_, height_;
  bool bottomUp_;
  std::vector<uint8_t> bytes_;
};

TEST(GlyphRows, SetTheirPixelsAndNoOthersWhereverTheyLie) {
  constexpr int Rows = 5, Words = 2;
  std::mt19937 random(3);
  std::vector<uint32_t> rows(Rows * Words + GlyphPaddingWords, 0xFFFFFFFF);
  for (int i = 0; i < Rows * Words; ++i)
    rows[static_cast<size_t>(i)] = random();
  const Glyph glyph = {1, -1, Rows, 0, Words, rows.data()};
  for (const int width : {1, 7, 31, 32, 33, 40, 70})
    for (const bool bottomUp : {false, true})
      for (int y = -6; y <= 10; ++y)
        for (int x = -70; x <= width + 1; ++x) {
          Bytes picture(width, 9, bottomUp);
          putGlyph(picture.target(), x, y, glyph, uint8_t{9});
          for (int row = -3; row < 12; ++row)
            for (int column = -3; column < width + 3; ++column) {
              const int inRow = row - (y - 1), inColumn = column - (x + 1);
              const bool inside = row >= 0 && row < 9 && column >= 0 && column < width;
              const bool inGlyph =
                  inRow >= 0 && inRow < Rows && inColumn >= 0 && inColumn < 32 * Words;
              const bool ink =
                  inside && inGlyph &&
                  (rows[static_cast<size_t>(inRow * Words + inColumn / 32)] >> (inColumn % 32) & 1);
              ASSERT_EQ(picture.at(column, row), ink ? 9 : Bytes::Untouched)
                  << width << ": " << x << ", " << y << " at " << column << ", " << row;
            }
        }
}

TEST(FaceNames, AreKnownInEverySpelling) {
  const std::pair<const char*, FontFace> Names[] = {
      {"ＭＳ ゴシック", FontFace::Gothic},
      {"ＭＳ　ゴシック", FontFace::Gothic},
      {"MS ゴシック", FontFace::Gothic},
      {"MS Gothic", FontFace::Gothic},
      {"ｍｓ ｺﾞｼｯｸ", FontFace::Gothic},
      {"ＭＳ Ｐゴシック", FontFace::ProportionalGothic},
      {"MS PGothic", FontFace::ProportionalGothic},
      {"ＭＳ 明朝", FontFace::Mincho},
      {"MS明朝", FontFace::Mincho},
      {"ms mincho", FontFace::Mincho},
      {"ＭＳ Ｐ明朝", FontFace::ProportionalMincho},
      {"MS P明朝", FontFace::ProportionalMincho},
      {"MS PMincho", FontFace::ProportionalMincho}};
  for (const auto& [name, face] : Names)
    EXPECT_EQ(faceOfName(sjis(name)), face) << name;
  for (const char* name : {"", "明朝", "ＭＳ ＵＩ", "Courier"})
    EXPECT_EQ(faceOfName(sjis(name)), std::nullopt) << name;
}

/// A renderer without fonts, on a picture of 40 by 24.
class MadeForms : public ::testing::Test {
 protected:
  std::vector<std::string> drawn(const TextStyle& style, std::string_view run) {
    Bytes picture(40, 24, false);
    text_.draw(picture.target(), 4, 4, style, run, uint8_t{1});
    std::vector<std::string> rows;
    for (int y = 0; y < 24; ++y) {
      rows.emplace_back();
      for (int x = 0; x < 40; ++x)
        rows.back() += picture.at(x, y) == 1 ? '#' : '.';
    }
    return rows;
  }
  TestPlatform platform_;
  TextRenderer text_{platform_.game()};
};

TEST_F(MadeForms, OfBoldAreTheGlyphTwiceAndAPixelWider) {
  const auto plain = drawn({.heightPixels = 16}, "I");
  const auto bold = drawn({.heightPixels = 16, .bold = true}, "I");
  for (size_t y = 0; y < plain.size(); ++y)
    for (size_t x = 1; x < plain[y].size(); ++x)
      EXPECT_EQ(bold[y][x] == '#', plain[y][x] == '#' || plain[y][x - 1] == '#');
  EXPECT_EQ(text_.measure({.heightPixels = 16, .bold = true}, "II" + sjis("あ")), 2 * 9 + 17);
}

TEST_F(MadeForms, OfItalicLeanToTheRightAndKeepTheirWidth) {
  const auto plain = drawn({.heightPixels = 16}, "l"),
             leaning = drawn({.heightPixels = 16, .italic = true}, "l");
  const auto firstInk = [](const std::vector<std::string>& rows, bool fromBottom) {
    for (size_t i = 0; i < rows.size(); ++i) {
      const std::string& row = rows[fromBottom ? rows.size() - 1 - i : i];
      if (row.find('#') != std::string::npos) return static_cast<int>(row.find('#'));
    }
    return -1;
  };
  EXPECT_GT(firstInk(leaning, false), firstInk(plain, false) + 1);
  EXPECT_LE(firstInk(leaning, true), firstInk(plain, true) + 1);
  EXPECT_EQ(text_.measure({.heightPixels = 16, .italic = true}, "l"), 8);
}

TEST_F(MadeForms, OfLinesRunOnOverSpaces) {
  const auto under = drawn({.heightPixels = 16, .underline = true}, "  ");
  EXPECT_EQ(under[4 + 15], "...." + std::string(16, '#') + std::string(20, '.'));
  const auto struck = drawn({.heightPixels = 16, .strikeOut = true}, "  ");
  EXPECT_EQ(struck[4 + 8], "...." + std::string(16, '#') + std::string(20, '.'));
}

uint32_t numberAt(const std::string& bytes, size_t at, size_t count) {
  uint32_t number = 0;
  for (size_t i = 0; i < count; ++i)
    number = number << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return number;
}

void putNumber(std::string& bytes, size_t at, size_t count, uint32_t number) {
  for (size_t i = count; i-- > 0; number >>= 8)
    bytes.at(at + i) = static_cast<char>(number & 0xFF);
}

/// A TrueType file with another table of characters: U+E000 to U+E757 are its glyphs from 500 on.
std::string withPrivateCharacters(std::string font) {
  constexpr size_t Head = 12, Record = 16;
  constexpr uint32_t FirstGlyph = 500;
  for (size_t i = 0; i < numberAt(font, 4, 2); ++i) {
    if (font.compare(Head + Record * i, 4, "cmap") != 0) continue;
    const size_t table = numberAt(font, Head + Record * i + 8, 4);
    // One subtable, for the whole of Unicode: groups of characters, of which there is one.
    struct Field {
      size_t at, bytes;
      uint32_t number;
    };
    constexpr Field Fields[] = {{2, 2, 1},   {4, 2, 3},       {6, 2, 10},      {8, 4, 12},
                                {12, 2, 12}, {14, 2, 0},      {16, 4, 28},     {20, 4, 0},
                                {24, 4, 1},  {28, 4, 0xE000}, {32, 4, 0xE757}, {36, 4, FirstGlyph}};
    for (const Field& field : Fields)
      putNumber(font, table + field.at, field.bytes, field.number);
  }
  return font;
}

/// One of the machine's fonts, changed, as the game's own.
class ExternalFont : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto file = findFont(FontFace::Gothic, {});
    if (!file) GTEST_SKIP() << "the IPA fonts are not installed";
    std::ifstream stream(*file, std::ios::binary);
    font = withPrivateCharacters({std::istreambuf_iterator<char>(stream), {}});
  }
  void TearDown() override { enableExternalCharacters(true); }

  void setFile(const std::string& bytes) {
    platform.writeFile(platform.game() / "dat/own.tte", bytes);
    setPath("C:\\dat\\own.tte");
  }
  void setPath(const std::string& path) {
    enableExternalCharacters(false);
    SettingValue value;
    value.data.assign(path.begin(), path.end());
    value.data.push_back(0);
    services().settings->set("HKEY_CURRENT_USER\\EUDC\\932", "SystemDefaultEUDCFont", value, false);
    enableExternalCharacters(true);
  }
  std::string drawn(std::string_view run, const TextStyle& style = {.heightPixels = 24}) {
    Bytes picture(24, 24, false);
    text.draw(picture.target(), 0, 0, style, run, uint8_t{1});
    std::string rows;
    for (int y = 0; y < 24; ++y) {
      for (int x = 0; x < 24; ++x)
        rows += picture.at(x, y) == 1 ? '#' : '.';
      rows += '\n';
    }
    return rows;
  }

  static constexpr const char* First = "\xf0\x40";
  static constexpr const char* Second = "\xf0\x41";
  TestPlatform platform;
  TextRenderer text;
  std::string font;
};

TEST_F(ExternalFont, IsTheFileThatTheGameSets) {
  const std::string box = drawn(First);
  setFile(font);
  EXPECT_NE(drawn(First), box);
  EXPECT_NE(drawn(Second), drawn(First));
  for (const FontFace face : {FontFace::Mincho, FontFace::ProportionalMincho})
    EXPECT_EQ(drawn(First, {face, 24}), drawn(First)) << "the same in every face";
  setPath("");
  EXPECT_EQ(drawn(First), box);
}

TEST_F(ExternalFont, IsAWholeCellWideInEveryFace) {
  setFile(font);
  for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalMincho})
    EXPECT_EQ(text.measure({face, 18}, std::string(First) + Second), 36);
}

TEST_F(ExternalFont, IsNotDrawnWhileExternalCharactersAreOff) {
  const std::string box = drawn(First);
  setFile(font);
  enableExternalCharacters(false);
  EXPECT_EQ(drawn(First), box);
  enableExternalCharacters(true);
  EXPECT_NE(drawn(First), box);
}

TEST_F(ExternalFont, ThatIsMissingOrNoneIsBoxes) {
  const std::string box = drawn(First);
  for (const std::string& bytes :
       {std::string(), std::string("no font"), std::string("\0\1\0\0", 4), std::string(100, '\0'),
        font.substr(0, 300), "%!PS-AdobeFont" + font}) {
    setFile(bytes);
    EXPECT_EQ(drawn(First), box);
  }
  for (const char* path : {"C:\\dat\\none.tte", "Z:\\x", "\\\\host\\x", "C:\\dat"}) {
    setPath(path);
    EXPECT_EQ(drawn(First), box);
  }
}

TEST_F(ExternalFont, ThatIsDamagedHarmsNothing) {
  std::mt19937 random(11);
  for (int round = 0; round < 60; ++round) {
    std::string damaged = font;
    for (int i = 0; i < 40; ++i)
      damaged[random() % (i % 2 ? 600 : damaged.size())] = static_cast<char>(random());
    putNumber(damaged, 0, 4, 0x00010000);
    setFile(damaged);
    drawn(First);
    EXPECT_EQ(text.measure({FontFace::Gothic, 24}, First), 24);
  }
}

}  // namespace
}  // namespace qv::testing
