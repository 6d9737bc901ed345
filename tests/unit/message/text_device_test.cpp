// What stands on surfaces when text is printed with the machine's text: colours, outlines, fonts.

#include "message/text_device.h"

#include <gtest/gtest.h>

#include "graphics/surface.h"
#include "message/print_area.h"
#include "message/text_font.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

constexpr int32_t Width = 200, Height = 60;
constexpr uint8_t Ground = 17;

class TextOnSurfaces : public ::testing::Test {
 protected:
  TextOnSurfaces() {
    surface.create(Width, Height);
    surface.fill(Ground);
    wide.create(Width, Height);
    wide.fill(0x123456);
  }
  TextRun run(std::string_view words, PrintTarget target) const {
    return {target, 20, 20, style, words};
  }
  int countOf(uint8_t index) const {
    int count = 0;
    for (int32_t y = 0; y < Height; ++y)
      for (int32_t x = 0; x < Width; ++x)
        count += surface.pixel(x, y) == index;
    return count;
  }

  TestPlatform platform;
  TextRenderer text{platform.game()};  // there are no fonts: the built-in one is drawn
  Services all = [this] {
    Services given = services();
    given.text = &text;
    return given;
  }();
  ServicesScope scope{all};
  TextStyle style{.heightPixels = 16};
  QVVSurface surface;
  QVVSurface24 wide;
  TextDevice& device = systemTextDevice();
};

TEST_F(TextOnSurfaces, TakesTheNearestOfTheSurfacesColoursAndOfEqualsTheFirst) {
  struct Row {
    ColourRef colour;
    uint8_t index;
  };
  // Index 0 and 10 are both nearly black; 246 on are static; greys stand between.
  constexpr Row Rows[] = {{0x000000, 0},   {0xFFFFFF, 255}, {0x0000FF, 249}, {0x00FF00, 250},
                          {0xFF0000, 252}, {0x646464, 100}, {0x0101FE, 249}};
  for (const Row& row : Rows) {
    surface.fill(Ground);
    device.draw(run("A", {&surface, nullptr}), row.colour);
    EXPECT_GT(countOf(row.index), 10) << std::hex << row.colour;
    EXPECT_EQ(countOf(row.index) + countOf(Ground), Width * Height) << std::hex << row.colour;
  }
  ColourTable same{};
  same[30] = same[40] = 0x00808080;
  surface.setColours(same, 0, 0, 256);
  surface.fill(Ground);
  device.draw(run("A", {&surface, nullptr}), 0x7F7F7F);
  EXPECT_GT(countOf(30), 10);
  EXPECT_EQ(countOf(40), 0);
}

TEST_F(TextOnSurfaces, LooksAtTheColoursThatAreShown) {
  ColourTable red{};
  red[77] = 0x00FF0000;
  surface.fadePalette(red, 8, 8);
  device.draw(run("A", {&surface, nullptr}), 0x0000FF);
  EXPECT_GT(countOf(77), 10);
}

TEST_F(TextOnSurfaces, DrawsExactColoursOn32Bits) {
  device.draw(run("A", {nullptr, &wide}), 0xFF332211);
  int drawn = 0;
  for (int32_t y = 0; y < Height; ++y)
    for (int32_t x = 0; x < Width; ++x) {
      const uint32_t pixel = wide.pixel(x, y);
      drawn += pixel == 0x112233;
      EXPECT_TRUE(pixel == 0x112233 || pixel == 0x123456);
    }
  EXPECT_GT(drawn, 10);
}

TEST_F(TextOnSurfaces, DrawsTheSameShapeOnBothDepths) {
  const std::string words = sjis("あg漢");
  device.draw(run(words, {&surface, nullptr}), 0xFFFFFF);
  device.draw(run(words, {nullptr, &wide}), 0xFFFFFF);
  for (int32_t y = 0; y < Height; ++y)
    for (int32_t x = 0; x < Width; ++x)
      ASSERT_EQ(surface.pixel(x, y) == 255, wide.pixel(x, y) == 0xFFFFFF) << x << ", " << y;
}

TEST_F(TextOnSurfaces, OutlinesAsFiveDrawingsWould) {
  const std::string words = sjis("おAg漢ｶﾞ、");
  QVVSurface five;
  QVVSurface24 wideFive;
  for (const int height : {10, 16, 18, 30, 47})
    for (const bool bold : {false, true})
      for (const int32_t x : {-3, 20, Width - 30}) {
        style = {.heightPixels = height, .bold = bold};
        surface.fill(Ground);
        five.create(Width, Height);
        five.fill(Ground);
        wide.fill(0x123456);
        wideFive.create(Width, Height);
        wideFive.fill(0x123456);
        TextRun given = run(words, {&surface, nullptr});
        given.x = x;
        device.drawOutlined(given, 0xFFFFFF, 0xFF);
        given.target = {&five, nullptr};
        device.TextDevice::drawOutlined(given, 0xFFFFFF, 0xFF);
        given.target = {nullptr, &wide};
        device.drawOutlined(given, 0xFFFFFF, 0xFF);
        given.target = {nullptr, &wideFive};
        device.TextDevice::drawOutlined(given, 0xFFFFFF, 0xFF);
        for (int32_t row = 0; row < Height; ++row)
          for (int32_t column = 0; column < Width; ++column) {
            ASSERT_EQ(surface.pixel(column, row), five.pixel(column, row))
                << height << " at " << column << ", " << row;
            ASSERT_EQ(wide.pixel(column, row), wideFive.pixel(column, row))
                << height << " at " << column << ", " << row;
          }
        ASSERT_GT(countOf(255), 20);
        ASSERT_GT(countOf(249), 20);
      }
}

TEST_F(TextOnSurfaces, MeasuresWholeCharacters) {
  EXPECT_EQ(device.measure(style, sjis("あa")), 24);
  EXPECT_EQ(device.fitBytes(style, sjis("あa"), 23), 2u);
  EXPECT_EQ(device.fitBytes(style, sjis("あa"), -1), 0u);
}

TEST_F(TextOnSurfaces, WithoutAServiceDrawsNothing) {
  Services without = all;
  without.text = nullptr;
  const ServicesScope inner(without);
  QVPrintArea area;
  area.setSurface(&surface);
  area.setRect(0, 0, 20, 20);
  area.printText("abc def");
  EXPECT_EQ(countOf(Ground), Width * Height);
}

TEST_F(TextOnSurfaces, OnSurfacesWithoutPixelsDrawsNothing) {
  surface.create(0, 0);
  device.draw(run("A", {&surface, nullptr}), 0);
  device.draw(run("A", {}), 0);
  surface.create(5, 1);
  device.drawOutlined({{&surface, nullptr}, 0, -8, style, "A"}, 0xFFFFFF, 0);
}

TEST(TextFonts, AreNormalAtFiveHundredAndBoldFromAboveFiveFifty) {
  TextFont font;
  for (const auto& [weight, bold] : {std::pair{0, false},
                                     {400, false},
                                     {500, false},
                                     {550, false},
                                     {551, true},
                                     {600, true},
                                     {700, true}}) {
    font.set(-1, weight, -1, -1, -1, nullptr);
    EXPECT_EQ(font.style().bold, bold) << weight;
  }
}

TEST(TextFonts, KeepWhatIsNotGiven) {
  TextFont font;
  font.set(20, 600, TextFont::StyleItalic, TextFont::VariablePitch, 128,
           sjis("ＭＳ Ｐ明朝").c_str());
  EXPECT_EQ(font.style(), (TextStyle{FontFace::ProportionalMincho, 20, true, true}));
  font.set(-1, -1, TextFont::KeepStyle, -1, -1, nullptr);
  EXPECT_EQ(font.style(), (TextStyle{FontFace::ProportionalMincho, 20, true, true}));
  EXPECT_EQ(font.charset(), 128);
  font.set(-1, 400, TextFont::StyleUnderline | TextFont::StyleStrikeOut, -1, -1,
           std::string(32, 'x').c_str());
  EXPECT_EQ(font.style(), (TextStyle{FontFace::ProportionalMincho, 20, false, false, true, true}));
  EXPECT_EQ(utf8OfShiftJis(font.face()), "ＭＳ Ｐ明朝");
}

TEST(TextFonts, OfAnUnknownFaceAreThoseOfThePitch) {
  TextFont font;
  font.set(-1, -1, -1, TextFont::FixedPitch, -1, "Nobody's Own");
  EXPECT_EQ(font.style().face, FontFace::Gothic);
  font.set(-1, -1, -1, TextFont::VariablePitch, -1, nullptr);
  EXPECT_EQ(font.style().face, FontFace::ProportionalGothic);
  font.set(0, -1, -1, -1, -1, std::string(31, 'x').c_str());
  EXPECT_EQ(font.face().size(), 31u);
  EXPECT_EQ(font.style().heightPixels, 16);
}

}  // namespace
}  // namespace qv::testing
