// Pages of real text as a player sees them: every face, with and without an outline, in the sizes
// of the game, centred, and cut at one line.

#include <gtest/gtest.h>

#include "graphics/surface.h"
#include "message/no_line_start.h"
#include "message/print_area.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "tests/support/golden.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

constexpr int32_t Width = 640, Height = 480;
constexpr uint32_t White = 0xFFFFFF, Black = 0;
constexpr uint8_t Blue = 4;

constexpr const char* Words =
    "「雨の日は、図書室がいちばん静かだ」と、彼女は小さな声で言った。ページをめくる音、"
    "窓をつたうしずく、ｱｲｳ 12:30 … Rainy Day！　それだけで、ぼくらの午後はいっぱいになった。";

class TextPages : public ::testing::Test {
 protected:
  TextPages() {
    surface.create(Width, Height);
    surface.fill(Blue);
    area.setSurface(&surface);
    area.setNoLineStart(longNoLineStart().c_str());
    area.setColour(White, 0);
    area.setColour(Black, 1);
  }
  void SetUp() override {
    for (const FontFace face : {FontFace::Gothic, FontFace::ProportionalGothic, FontFace::Mincho,
                                FontFace::ProportionalMincho})
      if (!text.hasFont(face)) GTEST_SKIP() << "the IPA fonts are not installed";
  }
  void print(const Rectangle& place, int32_t height, int32_t weight, const char* face,
             uint32_t flags, const char* words) {
    area.setRect(place.left, place.top, place.width(), place.height());
    area.setFont(height, weight, 0, TextFont::VariablePitch, 128, sjis(face).c_str());
    area.setLineHeight(height + 1);
    area.setFlags(flags);
    area.home();
    area.printText(sjis(words).c_str());
  }
  ::testing::AssertionResult matches(const char* name) const {
    Picture picture{Width, Height, std::vector<uint32_t>(size_t{Width} * Height)};
    surface.paint(picture.pixels, Width, Height, 0, 0, {0, 0, Width, Height});
    return matchesGolden(picture, std::string(QV_SOURCE_DIR "/tests/golden/text/") + name);
  }

  TestPlatform platform;
  TextRenderer text;
  Services all = [this] {
    Services given = services();
    given.text = &text;
    return given;
  }();
  ServicesScope scope{all};
  QVVSurface surface;
  QVPrintArea area;
};

constexpr const char* Faces[] = {"ＭＳ ゴシック", "ＭＳ Ｐゴシック", "ＭＳ 明朝", "ＭＳ Ｐ明朝"};

TEST_F(TextPages, OfEveryFacePlainAndOutlined) {
  int32_t top = 4;
  for (const char* face : Faces) {
    print({8, top, 312, top + 116}, 18, 500, face, 0, Words);
    print({328, top, 632, top + 116}, 18, 500, face, QVPrintArea::FlagOutline, Words);
    top += 119;
  }
  EXPECT_TRUE(matches("faces.png"));
}

TEST_F(TextPages, OfEverySizePlainAndBold) {
  int32_t top = 4;
  for (const int32_t height : {10, 12, 14, 15, 16, 18, 20, 24, 30}) {
    const char* face = Faces[static_cast<size_t>(height / 2 % 4)];
    const std::string words = std::to_string(height) + " 静かな雨の日、図書室で。Rainy";
    print({8, top, 320, top + height + 2}, height, 400, face, QVPrintArea::FlagOneLine,
          words.c_str());
    print({328, top, 632, top + height + 2}, height, 700, face,
          QVPrintArea::FlagOneLine | QVPrintArea::FlagOutline, words.c_str());
    top += height + 16;
  }
  EXPECT_TRUE(matches("sizes.png"));
}

TEST_F(TextPages, CentredAndCutAtOneLine) {
  const uint32_t centred = QVPrintArea::FlagCentre | QVPrintArea::FlagOutline;
  const uint32_t cut = QVPrintArea::FlagOneLine | QVPrintArea::FlagOutline;
  const Rectangle frames[] = {{20, 20, 620, 120},
                              {20, 140, 320, 170},
                              {20, 190, 320, 260},
                              {340, 140, 620, 260},
                              {20, 280, 620, 400}};
  for (const Rectangle& frame : frames)
    surface.fill(7, &frame);
  print(frames[0], 30, 400, Faces[3], centred, "雨の図書室\n二行目もまんなか\n３");
  print(frames[1], 20, 600, Faces[3], cut, "長い名前はここで切れて、次の行にはこない");
  print(frames[2], 18, 500, Faces[2], centred,
        "枠より長い行は、ペンの位置から描かれる。残りはまんなか");
  print(frames[3], 12, 300, Faces[0], 0, Words);
  area.setIndent(40, 0);
  area.setIndent(60, 1);
  print(frames[4], 16, 400, Faces[1], 0, Words);
  EXPECT_TRUE(matches("places.png"));
}

}  // namespace
}  // namespace qv::testing
