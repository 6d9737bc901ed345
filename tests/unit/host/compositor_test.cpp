#include "host/compositor.h"

#include <atomic>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/golden.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

constexpr uint32_t Red = 0xC03028, Green = 0x289048, Blue = 0x3058C0, White = 0xF0F0F0,
                   Ground = Compositor::GroundColour;

/// Paints one colour, and keeps where.
class FlatSource : public PaintSource {
 public:
  explicit FlatSource(uint32_t first) : colour(first) {}
  void paint(std::span<uint32_t> pixels, int32_t width, int32_t height,
             const Rectangle& part) override {
    ASSERT_EQ(pixels.size(), static_cast<size_t>(width) * static_cast<size_t>(height));
    painted.push_back(part);
    for (int32_t y = part.top; y < part.bottom; ++y)
      for (int32_t x = part.left; x < part.right; ++x)
        pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] =
            colour;
  }
  std::atomic<uint32_t> colour;
  std::vector<Rectangle> painted;
};

/// A window with its source.
struct Pane {
  explicit Pane(uint32_t colour) : source(colour) {}
  FlatSource source;
  ScreenWindow window;
};

ClipShape shapeOf(std::initializer_list<Rectangle> runs) {
  ClipShape shape;
  shape.rectangles = runs;
  return shape;
}

class CompositorTest : public ::testing::Test {
 protected:
  void add(Pane& pane, const Rectangle& place, bool visible = true, Pane* parent = nullptr) {
    compositor.add(pane.window, parent ? &parent->window : nullptr,
                   {.outer = place,
                    .client = {0, 0, place.width(), place.height()},
                    .visible = visible,
                    .source = &pane.source});
  }
  Frame frame() {
    Frame taken;
    compositor.take(taken, true);
    return taken;
  }
  uint32_t at(int x, int y) {
    return frame()[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)];
  }
  void repaint(Pane& pane, uint32_t colour) {
    pane.source.colour = colour;
    compositor.flush(pane.window, nullptr);
  }

  testing::TestPlatform platform;
  Compositor compositor;
};

// --- Painting ---

TEST_F(CompositorTest, ANewWindowIsPaintedWholeWhereItIsShown) {
  Pane pane(Red);
  add(pane, {10, 20, 110, 70});
  EXPECT_EQ(at(10, 20), Red);
  EXPECT_EQ(at(109, 69), Red);
  EXPECT_EQ(at(9, 20), Ground);
  EXPECT_EQ(at(110, 69), Ground);
  EXPECT_EQ(pane.source.painted, (std::vector<Rectangle>{{0, 0, 100, 50}}));
}

TEST_F(CompositorTest, TheScreenShowsTheOldPictureUntilSomebodyFlushes) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  pane.source.colour = Green;
  EXPECT_EQ(at(50, 50), Red);
  // Nor does what happens around it bring the new one.
  Pane other(Blue);
  add(other, {20, 20, 80, 80});
  compositor.show(other.window, false);
  compositor.move(pane.window, 5, 5);
  EXPECT_EQ(at(50, 50), Red);
  compositor.flush(pane.window, nullptr);
  EXPECT_EQ(at(50, 50), Green);
}

TEST_F(CompositorTest, AFlushOfAPartBringsThatPartAlone) {
  Pane pane(Red);
  add(pane, {100, 100, 200, 200});
  pane.source.colour = Green;
  const Rectangle part = {10, 20, 30, 40};
  compositor.flush(pane.window, &part);
  const Frame shown = frame();
  for (int y = 90; y < 210; ++y)
    for (int x = 90; x < 210; ++x) {
      const bool inside = x >= 100 && x < 200 && y >= 100 && y < 200;
      const bool flushed = x >= 110 && x < 130 && y >= 120 && y < 140;
      ASSERT_EQ(shown[static_cast<size_t>(y) * ScreenWidth + static_cast<size_t>(x)],
                flushed  ? Green
                : inside ? Red
                         : Ground)
          << x << " " << y;
    }
}

TEST_F(CompositorTest, AFlushWithNullRepaintsTheWholeWindow) {
  Pane pane(Red);
  add(pane, {100, 100, 200, 180});
  pane.source.painted.clear();
  repaint(pane, Green);
  EXPECT_EQ(pane.source.painted, (std::vector<Rectangle>{{0, 0, 100, 80}}));
  EXPECT_EQ(at(100, 100), Green);
  EXPECT_EQ(at(199, 179), Green);
}

TEST_F(CompositorTest, PartsBeyondTheWindowAndEmptyOnesPaintNothing) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  pane.source.painted.clear();
  for (const Rectangle& part : {Rectangle{100, 0, 200, 100}, Rectangle{-50, -50, 0, 0},
                                Rectangle{10, 10, 10, 20}, Rectangle{}})
    compositor.flush(pane.window, &part);
  EXPECT_TRUE(pane.source.painted.empty());
  const Rectangle huge = {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
  compositor.flush(pane.window, &huge);
  EXPECT_EQ(pane.source.painted, (std::vector<Rectangle>{{0, 0, 100, 100}}));
}

TEST_F(CompositorTest, WhatNobodyUpdatesIsPaintedByTheUiThread) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  pane.source.colour = Green;
  const Rectangle part = {0, 0, 10, 10};
  compositor.invalidate(pane.window, &part);
  EXPECT_EQ(at(5, 5), Red);
  compositor.paintPending();
  EXPECT_EQ(at(5, 5), Green);
  EXPECT_EQ(at(50, 50), Red);
}

TEST_F(CompositorTest, AnUpdatePaintsExactlyWhatWasInvalidated) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  pane.source.colour = Green;
  for (const Rectangle& part : {Rectangle{0, 0, 10, 10}, Rectangle{50, 50, 60, 60}})
    compositor.invalidate(pane.window, &part);
  compositor.update(pane.window);
  EXPECT_EQ(at(5, 5), Green);
  EXPECT_EQ(at(55, 55), Green);
  EXPECT_EQ(at(30, 30), Red);
  pane.source.painted.clear();
  compositor.update(pane.window);
  EXPECT_TRUE(pane.source.painted.empty());
}

TEST_F(CompositorTest, AHoldDefersPaintingUntilTheLastRelease) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  compositor.hold(pane.window);
  compositor.hold(pane.window);
  repaint(pane, Green);
  compositor.paintPending();
  compositor.release(pane.window, true);
  EXPECT_EQ(at(50, 50), Red);
  compositor.release(pane.window, true);
  EXPECT_EQ(at(50, 50), Green);
}

TEST_F(CompositorTest, AReleaseWithoutRedrawLeavesThePaintingToTheUiThread) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  compositor.hold(pane.window);
  pane.source.colour = Green;
  const Rectangle part = {0, 0, 10, 10};
  compositor.flush(pane.window, &part);
  compositor.release(pane.window, false);
  EXPECT_EQ(at(5, 5), Red);
  compositor.paintPending();
  EXPECT_EQ(at(5, 5), Green);
  EXPECT_EQ(at(50, 50), Red);
}

TEST_F(CompositorTest, AReleaseTooManyDoesNothing) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  pane.source.colour = Green;
  compositor.release(pane.window, true);
  EXPECT_EQ(at(50, 50), Red);
  compositor.hold(pane.window);
  compositor.flush(pane.window, nullptr);
  EXPECT_EQ(at(50, 50), Red);
}

TEST_F(CompositorTest, AHiddenWindowIsPaintedWholeWhenItIsShown) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100}, false);
  compositor.flush(pane.window, nullptr);
  EXPECT_TRUE(pane.source.painted.empty());
  EXPECT_EQ(at(50, 50), Ground);
  pane.source.colour = Green;
  compositor.show(pane.window, true);
  EXPECT_EQ(at(50, 50), Green);
  compositor.show(pane.window, false);
  EXPECT_EQ(at(50, 50), Ground);
}

TEST_F(CompositorTest, ShowingAWindowPaintsThoseThatLieInItAndAHoldIsKept) {
  Pane outer(Red), inner(Green), held(Blue);
  add(outer, {0, 0, 100, 100}, false);
  add(inner, {10, 10, 20, 20}, true, &outer);
  add(held, {30, 30, 40, 40}, true, &outer);
  compositor.hold(held.window);
  compositor.show(outer.window, true);
  EXPECT_EQ(at(15, 15), Green);
  EXPECT_EQ(at(35, 35), 0u);
  compositor.release(held.window, false);
  compositor.paintPending();
  EXPECT_EQ(at(35, 35), Blue);
}

TEST_F(CompositorTest, ResizingPaintsWholeAndUncoversWhatLiesBelow) {
  Pane below(Blue), pane(Red);
  add(below, ScreenRectangle);
  add(pane, {0, 0, 100, 100});
  pane.source.colour = Green;
  compositor.resize(pane.window, 60, 120, {0, 0, 60, 120}, {});
  EXPECT_EQ(at(10, 10), Green);
  EXPECT_EQ(at(59, 119), Green);
  EXPECT_EQ(at(60, 10), Blue);
}

TEST_F(CompositorTest, AWindowForWhichMemoryFailsStaysAsItWas) {
  Pane pane(Red), other(Blue);
  add(pane, {0, 0, 40, 30});
  // More pixels than any machine can have.
  constexpr int32_t Far = INT32_MAX;
  EXPECT_ANY_THROW(compositor.resize(pane.window, Far, Far, {0, 0, Far, Far}, {}));
  EXPECT_EQ(compositor.outer(pane.window), (Rectangle{0, 0, 40, 30}));
  EXPECT_EQ(compositor.client(pane.window), (Rectangle{0, 0, 40, 30}));
  EXPECT_TRUE(compositor.shown(pane.window));
  EXPECT_EQ(at(39, 29), Red);
  repaint(pane, Green);
  EXPECT_EQ(at(39, 29), Green);
  EXPECT_EQ(at(40, 29), Ground);
  EXPECT_ANY_THROW(add(other, {0, 0, Far, Far}));
  EXPECT_FALSE(compositor.present(other.window));
  add(other, {0, 0, 10, 10});
  EXPECT_EQ(at(9, 9), Blue);
}

TEST_F(CompositorTest, AHeldWindowKeepsItsOldPictureWhenItIsResized) {
  Pane pane(Red);
  add(pane, {0, 0, 100, 100});
  compositor.hold(pane.window);
  pane.source.colour = Green;
  compositor.resize(pane.window, 200, 50, {0, 0, 200, 50}, {});
  EXPECT_EQ(at(99, 49), Red);
  EXPECT_EQ(at(100, 49), 0u);
  compositor.release(pane.window, true);
  EXPECT_EQ(at(150, 25), Green);
}

// --- Stacking ---

TEST_F(CompositorTest, TheNewestSiblingIsOnTopAndShowingRaisesNothing) {
  Pane first(Red), second(Green), third(Blue);
  add(first, {0, 0, 100, 100});
  add(second, {20, 20, 120, 120});
  add(third, {40, 40, 140, 140});
  EXPECT_EQ(at(50, 50), Blue);
  compositor.show(first.window, false);
  compositor.show(first.window, true);
  EXPECT_EQ(at(50, 50), Blue);
  EXPECT_EQ(at(30, 30), Green);
  repaint(first, White);
  EXPECT_EQ(at(10, 10), White);
  EXPECT_EQ(at(30, 30), Green);
  compositor.show(third.window, false);
  EXPECT_EQ(at(50, 50), Green);
}

TEST_F(CompositorTest, AWindowIsClippedByItsParentAndHiddenWithIt) {
  Pane parent(Red), child(Green), grandchild(Blue);
  add(parent, {100, 100, 200, 200});
  add(child, {50, 50, 150, 150}, true, &parent);
  add(grandchild, {-10, -10, 30, 30}, true, &child);
  EXPECT_EQ(at(150, 150), Blue);
  EXPECT_EQ(at(149, 149), Red);
  EXPECT_EQ(at(190, 190), Green);
  EXPECT_EQ(at(200, 200), Ground);
  repaint(child, White);
  EXPECT_EQ(at(190, 190), White);
  EXPECT_EQ(at(200, 200), Ground);
  compositor.show(parent.window, false);
  EXPECT_EQ(at(150, 150), Ground);
  // What is hidden with its parent paints nothing either.
  child.source.painted.clear();
  compositor.flush(child.window, nullptr);
  EXPECT_TRUE(child.source.painted.empty());
}

TEST_F(CompositorTest, ChildrenLieOverTheirParentAndUnderItsNewerSiblings) {
  Pane parent(Red), sibling(Blue), child(Green);
  add(parent, {0, 0, 100, 100});
  add(sibling, {50, 0, 150, 100});
  add(child, {20, 20, 80, 80}, true, &parent);
  EXPECT_EQ(at(30, 30), Green);
  EXPECT_EQ(at(60, 30), Blue);
  repaint(parent, White);
  EXPECT_EQ(at(30, 30), Green);
  EXPECT_EQ(at(10, 10), White);
}

TEST_F(CompositorTest, MovingAWindowTakesItsPixelsAlongAndUncoversTheOldPlace) {
  Pane below(Blue), pane(Red);
  add(below, ScreenRectangle);
  add(pane, {0, 0, 50, 50});
  const size_t paints = pane.source.painted.size();
  compositor.move(pane.window, 30, 30);
  EXPECT_EQ(at(10, 10), Blue);
  EXPECT_EQ(at(79, 79), Red);
  EXPECT_EQ(pane.source.painted.size(), paints);
  compositor.move(pane.window, 620, 460);
  EXPECT_EQ(at(639, 479), Red);
  EXPECT_EQ(at(79, 79), Blue);
}

TEST_F(CompositorTest, ARemovedWindowUncoversWhatLiesBelowAndTakesNoMoreCalls) {
  Pane below(Blue), pane(Red);
  add(below, ScreenRectangle);
  add(pane, {0, 0, 50, 50});
  compositor.remove(pane.window);
  EXPECT_EQ(at(10, 10), Blue);
  compositor.flush(pane.window, nullptr);
  compositor.show(pane.window, true);
  compositor.move(pane.window, 5, 5);
  compositor.resize(pane.window, 5, 5, {0, 0, 5, 5}, {});
  compositor.hold(pane.window);
  compositor.release(pane.window, true);
  compositor.reshape(pane.window, shapeOf({{0, 0, 1, 1}}));
  EXPECT_FALSE(compositor.drag(pane.window, 5, 5));
  EXPECT_EQ(at(10, 10), Blue);
  EXPECT_FALSE(compositor.present(pane.window));
  {
    Pane shortLived(Green);
    add(shortLived, {0, 0, 50, 50});
    compositor.remove(shortLived.window);
  }
  // It can come again, as new, and nothing else comes with it.
  add(pane, {0, 0, 50, 50});
  EXPECT_EQ(at(10, 10), Red);
}

// --- Shapes ---

TEST_F(CompositorTest, AShapeShowsWhatLiesBelowWhereItHasNoPixels) {
  Pane below(Blue), pane(Red);
  add(below, ScreenRectangle);
  add(pane, {100, 100, 120, 120});
  compositor.reshape(pane.window, shapeOf({{0, 0, 5, 1}, {10, 0, 20, 1}, {3, 7, 4, 8}}));
  EXPECT_EQ(at(104, 100), Red);
  EXPECT_EQ(at(105, 100), Blue);
  EXPECT_EQ(at(119, 100), Red);
  EXPECT_EQ(at(103, 107), Red);
  EXPECT_EQ(at(103, 106), Blue);
  // A flush below is seen through the holes, and the shape stays over it.
  repaint(below, White);
  EXPECT_EQ(at(105, 100), White);
  EXPECT_EQ(at(104, 100), Red);
  repaint(pane, Green);
  EXPECT_EQ(at(104, 100), Green);
  EXPECT_EQ(at(105, 100), White);
}

TEST_F(CompositorTest, AShapeClipsTheWindowsInIt) {
  Pane outer(Red), inner(Green);
  add(outer, {100, 100, 120, 120});
  add(inner, {0, 0, 20, 20}, true, &outer);
  compositor.reshape(outer.window, shapeOf({{0, 0, 10, 1}, {0, 1, 10, 2}}));
  compositor.reshape(inner.window, shapeOf({{5, 0, 15, 1}}));
  EXPECT_EQ(at(104, 100), Red);
  EXPECT_EQ(at(105, 100), Green);
  EXPECT_EQ(at(109, 100), Green);
  EXPECT_EQ(at(110, 100), Ground);
  EXPECT_EQ(at(105, 101), Red);
}

TEST_F(CompositorTest, AShapeWithoutPixelsLeavesTheOldOne) {
  Pane pane(Red);
  add(pane, {0, 0, 20, 20});
  compositor.reshape(pane.window, shapeOf({{0, 0, 10, 1}}));
  compositor.reshape(pane.window, {});
  EXPECT_EQ(at(9, 0), Red);
  EXPECT_EQ(at(10, 0), Ground);
}

/// Windows of every kind of shape over one another.
TEST_F(CompositorTest, AStackOfShapedWindowsLooksAsItDid) {
  Pane back(Blue), plate(Green), ring(Red), bar(White), chip(0xE0C040);
  add(back, ScreenRectangle);
  add(plate, {60, 60, 420, 300});
  add(ring, {200, 120, 520, 440});
  add(bar, {300, 20, 360, 470});
  add(chip, {10, 60, 130, 180}, true, &ring);
  const auto disc = [](int32_t size, int32_t hole) {
    ClipShape shape;
    for (int32_t y = 0; y < size; ++y) {
      const auto half = [&](int32_t radius) {
        const int64_t down = 2 * y + 1 - size, left = int64_t{4} * radius * radius - down * down;
        int32_t across = 0;
        while (int64_t{4} * (across + 1) * (across + 1) <= left)
          ++across;
        return left < 0 ? -1 : across;
      };
      const int32_t outer = half(size / 2), inner = hole > 0 ? half(hole) : -1, middle = size / 2;
      if (outer <= 0) continue;
      if (inner <= 0) {
        shape.rectangles.push_back({middle - outer, y, middle + outer, y + 1});
      } else {
        shape.rectangles.push_back({middle - outer, y, middle - inner, y + 1});
        shape.rectangles.push_back({middle + inner, y, middle + outer, y + 1});
      }
    }
    return shape;
  };
  compositor.reshape(ring.window, disc(320, 90));
  compositor.reshape(chip.window, disc(120, 0));
  compositor.reshape(bar.window, [] {
    ClipShape shape;
    for (int32_t y = 0; y < 450; y += 2)
      shape.rectangles.push_back({y / 10 % 20, y, 40 + y / 10 % 20, y + 1});
    return shape;
  }());
  EXPECT_TRUE(testing::matchesGolden(Picture{ScreenWidth, ScreenHeight, frame()},
                                     QV_SOURCE_DIR "/tests/golden/window_stack.png"));
}

// --- What the UI thread takes ---

TEST_F(CompositorTest, NewWindowsAreOtherNewsThanPictures) {
  using News = Compositor::News;
  EXPECT_EQ(compositor.news(), News::Nothing);
  Pane first(Red), second(Green);
  add(first, ScreenRectangle);
  add(second, {10, 10, 20, 20});
  EXPECT_EQ(compositor.news(), News::NewWindows);
  Frame taken;
  compositor.take(taken, false);
  EXPECT_EQ(compositor.news(), News::Nothing);
  compositor.flush(first.window, nullptr);
  Pane third(Red);
  add(third, {30, 10, 40, 20});
  EXPECT_EQ(compositor.news(), News::Pictures) << "a window that comes later hides no picture";
  compositor.take(taken, false);
  Pane fourth(Red);
  add(fourth, {50, 10, 60, 20});
  compositor.move(first.window, 5, 5);
  EXPECT_EQ(compositor.news(), News::Pictures);
}

TEST_F(CompositorTest, OnlyWhatChangedIsTaken) {
  Pane pane(Red);
  add(pane, ScreenRectangle);
  Frame taken;
  compositor.take(taken, false);
  EXPECT_EQ(compositor.news(), Compositor::News::Nothing);
  std::ranges::fill(taken, 0x123456u);
  pane.source.colour = Green;
  const Rectangle part = {600, 440, 620, 450};
  compositor.flush(pane.window, &part);
  EXPECT_EQ(compositor.news(), Compositor::News::Pictures);
  compositor.take(taken, false);
  EXPECT_EQ(compositor.news(), Compositor::News::Nothing);
  EXPECT_EQ(std::ranges::count(taken, Green), 20 * 10);
  EXPECT_EQ(std::ranges::count(taken, 0x123456u), ScreenWidth * ScreenHeight - 20 * 10);
}

TEST_F(CompositorTest, ManySmallPartsAreAllTaken) {
  Pane pane(Red);
  add(pane, ScreenRectangle);
  Frame taken;
  compositor.take(taken, false);
  pane.source.colour = Green;
  for (int32_t y = 0; y < 480; y += 8)
    for (int32_t x = (y / 8 % 2) * 8; x < 640; x += 16) {
      const Rectangle part = Rectangle::at(x, y, 8, 8);
      compositor.flush(pane.window, &part);
    }
  compositor.take(taken, false);
  EXPECT_EQ(taken, frame());
  EXPECT_EQ(std::ranges::count(taken, Green), ScreenWidth * ScreenHeight / 2);
}

TEST_F(CompositorTest, OneWakeIsEnoughUntilTheUiThreadLooks) {
  int wakes = 0;
  compositor.setWakeHook([&] { ++wakes; });
  Pane pane(Red);
  add(pane, ScreenRectangle);
  repaint(pane, Green);
  repaint(pane, Blue);
  EXPECT_EQ(wakes, 1);
  Frame taken;
  compositor.beginLook();
  compositor.take(taken, false);
  // What changes nothing wakes nobody.
  compositor.update(pane.window);
  compositor.hold(pane.window);
  compositor.release(pane.window, false);
  compositor.show(pane.window, true);
  EXPECT_EQ(wakes, 1);
  compositor.invalidate(pane.window, nullptr);
  EXPECT_EQ(wakes, 2);
  compositor.beginLook();
  compositor.comesBack();
  repaint(pane, Red);
  EXPECT_EQ(wakes, 2);
}

// --- Frames ---

class FrameWindows : public CompositorTest {
 protected:
  /// With a border of 3 and a caption of 20 round a client of 100 by 50.
  void addFrame(ScreenWindow& frameWindow, int32_t x, int32_t y, Pane* parent = nullptr) {
    compositor.add(frameWindow, parent ? &parent->window : nullptr,
                   {.outer = Rectangle::at(x, y, 106, 76),
                    .client = {3, 23, 103, 73},
                    .framed = true,
                    .decoration = std::vector<uint32_t>(106 * 76, White)});
  }
  ScreenWindow window;
};

TEST_F(FrameWindows, AFramesClientLiesInsideItsBorder) {
  addFrame(window, 10, 10);
  Pane client(Red);
  compositor.add(client.window, &window,
                 {.outer = {0, 0, 100, 50}, .client = {0, 0, 100, 50}, .source = &client.source});
  EXPECT_EQ(at(10, 10), White);
  EXPECT_EQ(at(12, 33), White);
  EXPECT_EQ(at(13, 33), Red);
  EXPECT_EQ(at(112, 82), Red);
  EXPECT_EQ(at(113, 83), White);
  EXPECT_EQ(at(116, 86), Ground);
}

TEST_F(FrameWindows, IsFoundByItsCaptionWhereNothingCoversIt) {
  addFrame(window, 10, 10);
  EXPECT_EQ(compositor.frameAt(20, 15).window, &window);
  EXPECT_TRUE(compositor.frameAt(20, 15).caption);
  EXPECT_EQ(compositor.frameAt(20, 15).outer, (Rectangle{10, 10, 116, 86}));
  EXPECT_EQ(compositor.frameAt(11, 60).window, &window);
  EXPECT_FALSE(compositor.frameAt(11, 60).caption);
  EXPECT_EQ(compositor.frameAt(50, 50).window, nullptr);
  EXPECT_EQ(compositor.frameAt(200, 15).window, nullptr);
  Pane over(Blue);
  add(over, {10, 10, 40, 40});
  EXPECT_EQ(compositor.frameAt(20, 15).window, nullptr);
  EXPECT_EQ(compositor.frameAt(50, 15).window, &window);
  compositor.reshape(over.window, shapeOf({{0, 0, 2, 1}}));
  EXPECT_EQ(compositor.frameAt(20, 15).window, &window);
  compositor.show(window, false);
  EXPECT_EQ(compositor.frameAt(20, 15).window, nullptr);
}

TEST_F(FrameWindows, IsDraggedAsFarAsTheScreenGoes) {
  addFrame(window, 10, 10);
  EXPECT_TRUE(compositor.drag(window, -50, 9999));
  EXPECT_EQ(compositor.outer(window), Rectangle::at(0, 480 - 76, 106, 76));
  EXPECT_TRUE(compositor.drag(window, 9999, -9999));
  EXPECT_EQ(compositor.outer(window), Rectangle::at(640 - 106, 0, 106, 76));
  EXPECT_EQ(at(639, 0), White);
  EXPECT_EQ(at(20, 20), Ground);
}

TEST_F(FrameWindows, InAViewIsDraggedOnTheScreenToo) {
  Pane parent(Blue);
  add(parent, {100, 100, 600, 400});
  addFrame(window, 10, 10, &parent);
  EXPECT_EQ(compositor.onScreen(window), Rectangle::at(110, 110, 106, 76));
  EXPECT_TRUE(compositor.drag(window, 200, 210));
  EXPECT_EQ(compositor.outer(window), Rectangle::at(100, 110, 106, 76));
  EXPECT_EQ(compositor.onScreen(window), Rectangle::at(200, 210, 106, 76));
}

TEST_F(FrameWindows, ThatAreHiddenMeanwhileAreDraggedNoMore) {
  addFrame(window, 10, 10);
  compositor.show(window, false);
  EXPECT_FALSE(compositor.drag(window, 50, 50));
  EXPECT_EQ(compositor.outer(window), Rectangle::at(10, 10, 106, 76));
}

// --- Threads ---

TEST_F(CompositorTest, TwoThreadsFlushWhileTheUiThreadTakes) {
  Pane left(Red), right(Blue);
  add(left, {0, 0, 400, 480});
  add(right, {200, 100, 640, 400});
  std::atomic<bool> ending = false;
  constexpr int Rounds = 60;
  const auto flushing = [&](Pane& pane, uint32_t last) {
    for (int round = 0; round < Rounds; ++round) {
      pane.source.colour = static_cast<uint32_t>(round);
      const Rectangle part = Rectangle::at(round, round, 100, 100);
      compositor.flush(pane.window, &part);
      compositor.move(pane.window, round % 2 * 3, round % 3);
    }
    pane.source.colour = last;
    compositor.flush(pane.window, nullptr);
  };
  Thread first, second;
  first.start("first", [&] { flushing(left, Green); });
  second.start("second", [&] { flushing(right, White); });
  Thread ui;
  Frame taken;
  ui.start("ui", [&] {
    while (!ending) {
      compositor.beginLook();
      compositor.paintPending();
      compositor.take(taken, false);
      sleepMillis(1);
    }
  });
  first.join();
  second.join();
  ending = true;
  ui.join();
  compositor.take(taken, false);
  EXPECT_EQ(taken, frame());
  EXPECT_EQ(at(300, 300), White);
  EXPECT_EQ(at(100, 460), Green);
}

TEST_F(CompositorTest, AWindowMayGoWhileAnotherThreadFlushesIt) {
  Pane pane(Red);
  std::atomic<bool> ending = false;
  Thread flushing;
  flushing.start("flushing", [&] {
    while (!ending) {
      compositor.flush(pane.window, nullptr);
      sleepMillis(0);
    }
  });
  for (int round = 0; round < 50; ++round) {
    add(pane, {0, 0, 40, 40});
    sleepMillis(0);
    compositor.remove(pane.window);
  }
  ending = true;
  flushing.join();
  EXPECT_EQ(at(10, 10), Ground);
}

}  // namespace
}  // namespace qv
