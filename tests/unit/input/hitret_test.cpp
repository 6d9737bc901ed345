// Hitrets: what they take over, the box that stands for a wait without a view, and the prompt.

#include "input/hitret.h"

#include <gtest/gtest.h>

#include "input/prompt.h"
#include "platform/text/shift_jis.h"
#include "tests/unit/graphics/animation/animation_ground.h"
#include "tests/unit/input/fake_input.h"

namespace qv::testing {
namespace {

class MortalView : public FakeView {
 public:
  using FakeView::FakeView;
  bool alive() const override { return lives; }
  bool lives = true;
};

class HitretTest : public ::testing::Test {
 protected:
  HitretTest() {
    view.surface.fill(100);
    view.flush(nullptr, 0);
    updatesBefore = view.updateCount();
  }
  bool untouched() const {
    for (int32_t y = 0; y < view.surface.height(); ++y)
      for (int32_t x = 0; x < view.surface.width(); ++x)
        if (view.surface.pixel(x, y) != 100) return false;
    return true;
  }
  TestPlatform platform{false, makeSimulatedKernel()};
  FakeInputHost host;
  MortalView view{64, 64};
  QVHitret hitret;
  int updatesBefore = 0;
};

TEST_F(HitretTest, IsNewWithTheDefaultWaitAndWithoutLimit) {
  EXPECT_EQ(hitret.wait(), &defaultHitret);
  EXPECT_EQ(hitret.view(), nullptr);
  EXPECT_EQ(hitret.owner(), nullptr);
  EXPECT_EQ(hitret.time(), -1);
  EXPECT_TRUE(hitret.rectangle() == Rectangle{});
}

TEST_F(HitretTest, PassesItselfToItsWaitAndGivesItsResult) {
  hitret.setWait([](QVHitret& self) { return self.time() + self.rectangle().right; });
  EXPECT_EQ(hitret.run(7), 7);
  EXPECT_EQ(hitret.prepare({1, 2, 30, 40}, nullptr, 5), 35);
  EXPECT_EQ(hitret.time(), 5);
}

TEST_F(HitretTest, TakesAViewOnlyWhileItsWindowLives) {
  hitret.setWait([](QVHitret&) { return 0; });
  MortalView gone{8, 8};
  gone.lives = false;
  hitret.prepare({}, &view, -1);
  EXPECT_EQ(hitret.view(), &view);
  hitret.prepare({}, &gone, -1);
  EXPECT_EQ(hitret.view(), &view);
  hitret.prepare({}, nullptr, -1);
  EXPECT_EQ(hitret.view(), &view);
}

TEST_F(HitretTest, WithoutAViewOrAnOwnerABoxIsTheWait) {
  hitret.setOwner(&host);
  EXPECT_EQ(hitret.run(-1), 0);
  hitret.setView(&view);
  view.lives = false;
  EXPECT_EQ(hitret.run(-1), 0);
  view.lives = true;
  hitret.setOwner(nullptr);
  EXPECT_EQ(hitret.run(-1), 0);
  ASSERT_EQ(platform.dialogs.shown.size(), 3u);
  for (const ShownBox& box : platform.dialogs.shown) {
    EXPECT_EQ(box.text, "\x83\x71\x83\x62\x83\x67\x83\x8C\x83\x62\x83\x67\x91\xD2\x82\xBF");
    EXPECT_EQ(box.caption, "QVHitret - default");
    EXPECT_EQ(box.flags, BoxNotice);
  }
  EXPECT_TRUE(host.times.empty());
  EXPECT_TRUE(untouched());
}

TEST_F(HitretTest, ShowsThePromptInTheLowerRightCornerUntilAKeyComes) {
  hitret.setOwner(&host);
  QVVSurface strip;
  Prompt::drawFrames(strip);
  bool stood = false;
  host.onArmed = [&] {
    stood = true;
    for (int32_t y = 0; y < 64; ++y)
      for (int32_t x = 0; x < 64; ++x) {
        const bool inside = x >= 26 && x < 50 && y >= 36 && y < 60;
        const uint8_t drawn = inside ? strip.pixel(x - 26, y - 36) : uint8_t{Prompt::Key};
        ASSERT_EQ(view.surface.pixel(x, y), drawn == Prompt::Key ? 100 : drawn) << x << "," << y;
      }
    EXPECT_TRUE((view.updated == Rectangle{26, 36, 50, 60}));
    host.give(1);
  };
  EXPECT_EQ(hitret.prepare({10, 20, 50, 60}, &view, -1), 1);
  EXPECT_TRUE(stood);
  EXPECT_EQ(host.times, std::vector<int32_t>{-1});
  EXPECT_TRUE(untouched());
  EXPECT_TRUE((view.updated == Rectangle{26, 36, 50, 60})) << "the old pixels are shown, too";
}

TEST_F(HitretTest, GivesButtonsAsTheKeysOneAndTwo) {
  hitret.setOwner(&host);
  hitret.setView(&view);
  for (const int32_t key : {1, 2, 13}) {
    host.onArmed = [&] { host.give(key); };
    EXPECT_EQ(hitret.run(-1), key);
  }
}

TEST_F(HitretTest, PromptMovesThroughItsFramesAndRepeats) {
  hitret.setOwner(&host);
  const uint32_t start = tickCount();
  EXPECT_EQ(hitret.prepare({0, 0, 64, 64}, &view, 20), FakeInputHost::Timeout);
  EXPECT_EQ(tickCount() - start, 2000u);
  // The first frame, one every 90 ms, and the pixels that come back.
  const int frames = view.updateCount() - updatesBefore;
  EXPECT_GE(frames, 1 + 22 + 1);
  EXPECT_LE(frames, 1 + 23 + 1);
  EXPECT_TRUE(untouched());
}

TEST_F(HitretTest, TheEndOfTheGameTakesThePromptDown) {
  hitret.setOwner(&host);
  Thread ender;
  ender.start("ender", [this] {
    sleepMillis(500);
    host.exitGame();
  });
  EXPECT_THROW(hitret.prepare({0, 0, 64, 64}, &view, -1), ExitScenarioException);
  ender.join();
  EXPECT_TRUE(untouched());
}

TEST_F(HitretTest, PromptIsCutByTheViewsEdges) {
  hitret.setOwner(&host);
  hitret.setView(&view);
  host.onArmed = [this] { host.give(13); };
  for (const Rectangle& area :
       {Rectangle{}, Rectangle{0, 0, 70, 70}, Rectangle{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN},
        Rectangle{0, 0, INT32_MAX, INT32_MAX}}) {
    EXPECT_EQ(hitret.prepare(area, &view, -1), 13);
    EXPECT_TRUE(untouched());
  }
}

TEST(PromptPicture, HasAFrameThatDiffersFromItsNeighbours) {
  TestPlatform platform;
  QVVSurface strip;
  Prompt::drawFrames(strip);
  ASSERT_EQ(strip.width(), Prompt::Side * Prompt::Frames);
  ASSERT_EQ(strip.height(), Prompt::Side);
  for (int32_t frame = 0; frame < Prompt::Frames; ++frame) {
    const int32_t next = (frame + 1) % Prompt::Frames;
    int different = 0, drawn = 0;
    for (int32_t y = 0; y < Prompt::Side; ++y)
      for (int32_t x = 0; x < Prompt::Side; ++x) {
        const uint8_t pixel = strip.pixel(frame * Prompt::Side + x, y);
        different += pixel != strip.pixel(next * Prompt::Side + x, y);
        drawn += pixel != Prompt::Key;
      }
    EXPECT_GT(different, 0) << frame;
    EXPECT_GT(drawn, 80) << frame;
  }
}

class WideView : public FakeView {
 public:
  WideView() : FakeView(1, 1) {
    wide.create(32, 32);
    wide.fill(0x00123456);
  }
  QVVSurface* surface8() override { return nullptr; }
  QVVSurface24* surface32() override { return &wide; }
  void update() override {}
  QVVSurface24 wide;
};

TEST(PromptPicture, StandsOnAViewOf32BitsToo) {
  TestPlatform platform;
  WideView view;
  QVVSurface strip;
  Prompt::drawFrames(strip);
  {
    const Prompt prompt(view, 8, 8);
    bool white = false;
    for (int32_t x = 0; x < 32; ++x)
      white |= view.wide.pixel(x, 8 + 20) == 0x00FFFFFF;
    EXPECT_TRUE(white);
    EXPECT_EQ(view.wide.pixel(8, 8), 0x00123456u);
  }
  for (int32_t y = 0; y < 32; ++y)
    for (int32_t x = 0; x < 32; ++x)
      ASSERT_EQ(view.wide.pixel(x, y), 0x00123456u);
}

}  // namespace
}  // namespace qv::testing
