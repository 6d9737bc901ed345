#include "platform/display/screen_fit.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(ScreenFit, FillsAWindowOfTheSameShape) {
  const ScreenFit fit = fitScreen(1280, 960, Scaling::Fit);
  EXPECT_EQ(fit.x, 0);
  EXPECT_EQ(fit.y, 0);
  EXPECT_EQ(fit.width, 1280);
  EXPECT_EQ(fit.height, 960);
}

TEST(ScreenFit, LeavesBarsAtTheSidesOfAWideWindow) {
  const ScreenFit fit = fitScreen(1920, 1080, Scaling::Fit);
  EXPECT_EQ(fit.width, 1440);
  EXPECT_EQ(fit.height, 1080);
  EXPECT_EQ(fit.x, 240);
  EXPECT_EQ(fit.y, 0);
}

TEST(ScreenFit, LeavesBarsAboveAndBelowInATallWindow) {
  const ScreenFit fit = fitScreen(600, 1000, Scaling::Fit);
  EXPECT_EQ(fit.width, 600);
  EXPECT_EQ(fit.height, 450);
  EXPECT_EQ(fit.y, 275);
}

TEST(ScreenFit, WholeFactorsTakeTheLargestThatHasRoom) {
  const ScreenFit fit = fitScreen(1920, 1080, Scaling::WholeFactors);
  EXPECT_EQ(fit.width, 1280);
  EXPECT_EQ(fit.height, 960);
  EXPECT_EQ(fit.x, 320);
  EXPECT_EQ(fit.y, 60);
}

TEST(ScreenFit, WholeFactorsShrinkWhereNotOneScreenHasRoom) {
  const ScreenFit fit = fitScreen(320, 400, Scaling::WholeFactors);
  EXPECT_EQ(fit.width, 320);
  EXPECT_EQ(fit.height, 240);
}

TEST(ScreenFit, ClampsPointsInTheBars) {
  const ScreenFit fit = fitScreen(1920, 1080, Scaling::Fit);
  EXPECT_EQ(fit.toGame(0, 0), (ScreenPoint{0, 0}));
  EXPECT_EQ(fit.toGame(1919, 1079), (ScreenPoint{639, 479}));
  EXPECT_EQ(fit.toGame(-50, 5000), (ScreenPoint{0, 479}));
}

TEST(ScreenFit, LeadsEveryPixelThereAndBackWhereTheScreenIsNotShrunk) {
  const int sizes[][2] = {{640, 480}, {641, 481},   {700, 700},
                          {999, 749}, {1920, 1080}, {3840, 2160}};
  for (const auto& size : sizes)
    for (const Scaling scaling : {Scaling::Fit, Scaling::WholeFactors}) {
      const ScreenFit fit = fitScreen(size[0], size[1], scaling);
      for (int i = 0; i < ScreenWidth; ++i) {
        const ScreenPoint game{i, i * (ScreenHeight - 1) / (ScreenWidth - 1)};
        const ScreenPoint out = fit.toOutput(game.x, game.y);
        ASSERT_EQ(fit.toGame(out.x, out.y), game) << size[0] << " by " << size[1];
      }
    }
}

TEST(ScreenFit, SurvivesAWindowWithoutArea) {
  const ScreenFit fit = fitScreen(0, -5, Scaling::Fit);
  EXPECT_EQ(fit.width, 1);
  EXPECT_EQ(fit.height, 1);
  EXPECT_EQ(fit.toGame(0, 0), (ScreenPoint{0, 0}));
}

}  // namespace
}  // namespace qv
