#include <cstdlib>

#include <gtest/gtest.h>

#include "graphics/animation/animation_area.h"
#include "graphics/animation/scroll_stage.h"
#include "tests/support/golden.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

// Of the default colours.
constexpr uint8_t Black = 0, DarkGrey = 60, Grey = 120, LightGrey = 200, Sky = 8, Cream = 246,
                  Red = 249, Green = 250, Yellow = 251, Blue = 252, Magenta = 253, White = 255;

/// What stood on a view's screen at several moments, side by side.
class Strip {
 public:
  Strip(const FakeView& view, int32_t moments) : view_(view) {
    picture_.width = static_cast<int>(moments * (width() + Gap) - Gap);
    picture_.height = static_cast<int>(view.surface.height());
    picture_.pixels.assign(static_cast<size_t>(picture_.width * picture_.height), 0x00FF00FF);
  }
  void take() {
    const int32_t left = taken_++ * (width() + Gap);
    for (int32_t y = 0; y < picture_.height; ++y)
      for (int32_t x = 0; x < width(); ++x)
        picture_.pixels[static_cast<size_t>(y * picture_.width + left + x)] =
            view_.screen[static_cast<size_t>(y * width() + x)];
  }
  const Picture& picture() const { return picture_; }

 private:
  static constexpr int32_t Gap = 4;
  int32_t width() const { return view_.surface.width(); }
  const FakeView& view_;
  Picture picture_;
  int32_t taken_ = 0;
};

class AnimationGolden : public ::testing::Test {
 protected:
  static std::filesystem::path golden(const char* name) {
    return std::filesystem::path(QV_SOURCE_DIR) / "tests/golden/animation" / name;
  }
  void card(const char* name, int32_t width, int32_t height,
            const std::function<uint8_t(int32_t x, int32_t y)>& index) {
    platform.writeFile(platform.game() / name, bitmapFile(width, height, defaultColours(), index));
  }
  /// A ground that shows where a backup was put back to a wrong place.
  static void paintGround(FakeView& view) {
    const QVVSurface::Access access(view.surface);
    for (int32_t y = 0; y < view.clientRectangle().height(); ++y)
      for (int32_t x = 0; x < view.clientRectangle().width(); ++x)
        access.row(y)[x] = (x + 2 * y) % 9 == 0 ? Cream : ((x / 8 + y / 8) % 2 ? Sky : LightGrey);
  }

  TestPlatform platform{false, makeSimulatedKernel()};
};

TEST_F(AnimationGolden, AMouthSpeaksAndCloses) {
  constexpr int32_t Width = 24, Height = 16;
  // Closed, half open, open.
  card("mouth.bmp", 3 * Width, Height, [](int32_t x, int32_t y) -> uint8_t {
    constexpr int32_t Opening[] = {1, 4, 7};
    const int32_t dx = x % Width - 12, dy = (y - 8) * 10 / Opening[x / Width];
    const int32_t distance = dx * dx + dy * dy;
    return distance < 49 ? DarkGrey : distance < 100 ? Red : Cream;
  });
  FakeView view(40, 32);
  paintGround(view);
  view.flush(nullptr, 0);
  QVAnimationSurface cells;
  cells.load(3, "mouth.bmp", false, KeyTopLeft);
  AnimationSequence sequence;
  sequence.setText("A5[.]C5[.]B5[.]", false);
  QVAnimationArea area;
  area.setView(&view);
  area.setPosition(9, 11);
  area.relateContainer("mouth", &cells, &sequence, 1, 0, 0, true);

  Strip strip(view, 5);
  strip.take();
  area.start(true);
  for (int moment = 0; moment < 3; ++moment) {
    sleepMillis(moment == 0 ? 60 : 120);
    strip.take();
  }
  area.stop(true);
  strip.take();
  EXPECT_TRUE(matchesGolden(strip.picture(), golden("mouth.png")));
}

TEST_F(AnimationGolden, APromptBlinksOverItsGround) {
  constexpr int32_t Width = 16, Height = 24, Cells = 8;
  // An arrow that sinks and fills, on a key.
  card("blink.bmp", Cells * Width, Height, [](int32_t x, int32_t y) -> uint8_t {
    const int32_t cell = x / Width, dx = std::abs(x % Width - 8), dy = y - 4 - cell;
    if (dy < 0 || dy > 7 || dx > 7 - dy) return Green;
    return dy == 0 || dx == 7 - dy ? Black : dy <= cell ? Blue : White;
  });
  FakeView view(32, 32);
  paintGround(view);
  view.flush(nullptr, 0);
  QVAnimationSurface cells;
  cells.load(Cells, "blink.bmp", true, KeyTopLeft);
  AnimationSequence sequence;
  sequence.setText("A..B..C..D..E..F..G..H..", false);
  QVAnimationArea area;
  area.setView(&view);
  area.setRect(Rectangle::at(8, 4, Width, Height));
  area.relateContainer("blink", &cells, &sequence, 1, 0, 0, true);

  Strip strip(view, 6);
  area.start(true);
  for (int moment = 0; moment < 5; ++moment) {
    sleepMillis(moment == 0 ? 10 : 120);
    strip.take();
  }
  area.stop(true);
  strip.take();
  EXPECT_TRUE(matchesGolden(strip.picture(), golden("blink.png")));
}

TEST_F(AnimationGolden, AStageScrollsItsLayersAndFades) {
  card("sky.bmp", 96, 48, [](int32_t x, int32_t y) -> uint8_t {
    return (x - 20) * (x - 20) + (y - 14) * (y - 14) < 60 ? Yellow : (x + y) % 32 < 3 ? White : Sky;
  });
  card("hills.bmp", 40, 24, [](int32_t x, int32_t y) -> uint8_t {
    const int32_t height = std::abs(x - 20) / 2 + 4;
    return y < height ? Magenta : y < height + 2 ? Black : Green;
  });
  card("roll.bmp", 24, 80, [](int32_t x, int32_t y) -> uint8_t {
    return y / 10 % 2 == 0 && x > 2 && x < 8 + y / 5 ? Red : Magenta;
  });
  QVVSurface sky, hills, roll;
  sky.loadFromFile("sky.bmp");
  hills.loadFromFile("hills.bmp");
  roll.loadFromFile("roll.bmp");
  constexpr int32_t MagentaKey = Magenta;
  FakeView view(64, 48);
  ScrollStage stage(&view);
  ScrollLayer::Setting layer;
  layer = {.surface = &sky,
           .place = {0, 0, 64, 48},
           .stepX = 3,
           .priority = 1,
           .wrap = ScrollLayer::WrapX};
  stage.put(1, layer);
  layer = {.surface = &hills,
           .place = {0, 24, 64, 48},
           .stepX = -5,
           .priority = 2,
           .wrap = ScrollLayer::WrapX,
           .key = MagentaKey};
  stage.put(2, layer);
  // Its end is a place of its own: without one it would not be drawn any more.
  layer = {.surface = &roll,
           .place = {20, 4, 44, 44},
           .stepY = 4,
           .finalY = 40,
           .priority = 3,
           .key = MagentaKey};
  stage.put(3, layer);

  Strip strip(view, 5);
  ColourTable dark{};
  stage.setRoutine([&](ScrollStage& running) {
    if (view.updates == 12) running.startFade(8, 0, 255, dark);
    return true;
  });
  stage.start(50);
  sleepMillis(25);
  for (const uint32_t millis : {0U, 200U, 350U, 150U, 150U}) {
    sleepMillis(millis);
    strip.take();
  }
  stage.stop();
  EXPECT_EQ(stage.layer(3)->state(), ScrollLayer::Resting);
  EXPECT_TRUE(stage.layer(3)->ended().handle().isSet());
  EXPECT_TRUE(matchesGolden(strip.picture(), golden("scroll_stage.png")));
}

}  // namespace
}  // namespace qv::testing
