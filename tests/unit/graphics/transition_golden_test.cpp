#include <string>

#include <gtest/gtest.h>

#include "tests/support/effect_cases.h"
#include "tests/support/effect_stage.h"
#include "tests/support/golden.h"
#include "tests/support/test_platform.h"

// Every effect at its first step, a quarter, half and three quarters on, and at its end, in one
// picture each. Columns are the five moments. Rows: an opaque draw on the whole view, as the window
// shows it and as indices (grey) with the stored and the shown colours below; a keyed draw of an
// odd rectangle, the same; an opaque draw on a 32-bit view.

namespace qv {
namespace {

using testing::EffectCase;
using testing::EffectStage;
using testing::everyEffect;
using testing::StageView;

constexpr int32_t Width = 64, Height = 48, Gap = 2, TableSide = 16;
constexpr int32_t Moments = 5;
constexpr TransitionPlace OddPlace{11, 5, 37, 29, 3, 2};

Picture blank(int32_t width, int32_t height) {
  return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height, 0xFFFFFF)};
}

void paste(Picture& target, const Picture& source, int32_t x, int32_t y) {
  for (int32_t row = 0; row < source.height; ++row)
    std::copy_n(source.pixels.begin() + row * source.width, source.width,
                target.pixels.begin() + (y + row) * target.width + x);
}

Picture greyOf(const QVVSurface& surface) {
  Picture picture{surface.width(), surface.height(), {}};
  for (const uint8_t index : testing::indicesOf(surface))
    picture.pixels.push_back(index * 0x010101u);
  return picture;
}

Picture tableOf(const ColourTable& table) {
  Picture picture{TableSide, TableSide, {}};
  for (const uint32_t entry : table)
    picture.pixels.push_back(entry & 0xFFFFFF);
  return picture;
}

/// A moment of one run: the frame, and of an 8-bit view its indices and both tables.
Picture momentOf(StageView& view) {
  const QVVSurface* surface = view.surface8();
  if (!surface) return view.frame;
  Picture picture = blank(Width, 2 * Height + TableSide + 2 * Gap);
  paste(picture, view.frame, 0, 0);
  paste(picture, greyOf(*surface), 0, Height + Gap);
  paste(picture, tableOf(surface->storedColours()), 0, 2 * (Height + Gap));
  paste(picture, tableOf(surface->shownColours()), TableSide + Gap, 2 * (Height + Gap));
  return picture;
}

/// The end is the closing flush; the others are among the steps before it.
std::vector<Picture> momentsOf(const EffectCase& given, const TransitionPlace& place,
                               bool target32) {
  EffectStage stage(Width, Height, target32);
  std::vector<Picture> all;
  stage.view.flushed = [&](const StageView::Flush&) { all.push_back(momentOf(stage.view)); };
  stage.run(given.call, place, given.masks);
  if (all.empty()) return {};
  const size_t steps = all.size() > 1 ? all.size() - 1 : 1;
  std::vector<Picture> moments;
  for (size_t quarter = 0; quarter < Moments - 1; ++quarter)
    moments.push_back(all[(steps - 1) * quarter / (Moments - 1)]);
  moments.push_back(all.back());
  return moments;
}

class TransitionGolden : public ::testing::TestWithParam<EffectCase> {
 protected:
  testing::TestPlatform platform{false, makeSimulatedKernel()};
};

TEST_P(TransitionGolden, LooksAsItDid) {
  const EffectCase opaque = GetParam();
  EffectCase keyed = opaque;
  if (opaque.call.effect != 9) keyed.call.key = 0;
  const std::vector<Picture> runs[] = {
      momentsOf(opaque, {}, false), momentsOf(keyed, OddPlace, false), momentsOf(opaque, {}, true)};
  int32_t height = 0;
  for (const std::vector<Picture>& moments : runs) {
    ASSERT_EQ(moments.size(), static_cast<size_t>(Moments));
    height += moments[0].height + Gap;
  }
  Picture strip = blank(Moments * (Width + Gap), height);
  int32_t y = 0;
  for (const std::vector<Picture>& moments : runs) {
    for (int32_t column = 0; column < Moments; ++column)
      paste(strip, moments[static_cast<size_t>(column)], column * (Width + Gap), y);
    y += moments[0].height + Gap;
  }
  const std::string name = std::to_string(opaque.call.effect) + ".png";
  EXPECT_TRUE(testing::matchesGolden(
      strip, std::filesystem::path(QV_SOURCE_DIR) / "tests/golden/effects" / name));
}

INSTANTIATE_TEST_SUITE_P(EveryEffect, TransitionGolden, ::testing::ValuesIn(everyEffect(KeyNone)),
                         [](const ::testing::TestParamInfo<EffectCase>& given) {
                           return "Number" + std::to_string(given.param.call.effect);
                         });

}  // namespace
}  // namespace qv
