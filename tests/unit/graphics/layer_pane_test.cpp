#include "graphics/layer_pane.h"

#include <gtest/gtest.h>

#include "graphics/surface.h"
#include "graphics/view.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

/// A view that only counts what is flushed.
class CountingView : public View {
 public:
  CountingView(int32_t width, int32_t height) { surface.create(width, height); }
  int typeCode() const override { return 5; }
  void resize(int32_t, int32_t, int32_t) override {}
  void flush(const Rectangle* area, int32_t) override {
    flushed.push_back(area ? *area : clientRectangle());
  }
  void update() override {}
  void invalidate(const Rectangle*, int32_t) override {}
  QVVSurface* surface8() override { return &surface; }
  QVVSurface24* surface32() override { return nullptr; }
  Rectangle clientRectangle() const override { return {0, 0, surface.width(), surface.height()}; }
  void hold() override {}
  void release(bool) override {}
  bool rightButtonDown() const override { return false; }

  QVVSurface surface;
  std::vector<Rectangle> flushed;
};

using Areas = std::vector<Rectangle>;

class LayerPaneTest : public ::testing::Test {
 protected:
  LayerPaneTest() : view(100, 80), pane({10, 5, 70, 45}) {
    pane.setView(&view);
    for (QVVSurface* surface : {&red, &blue})
      surface->create(20, 20);
    red.fill(1);
    blue.fill(2);
    const Rectangle corner = {0, 0, 5, 5};
    blue.fill(0, &corner);
  }
  PaneLayer layer(const QVVSurface& surface, int32_t identifier, int32_t x, int32_t y) {
    return {
        .surface = &surface, .identifier = identifier, .rectangle = Rectangle::at(x, y, 20, 20)};
  }

  testing::TestPlatform platform;
  CountingView view;
  LayerPane pane;
  QVVSurface red, blue;
};

TEST_F(LayerPaneTest, WithNothingDirtyPaintsAndFlushesNothing) {
  pane.paint();
  EXPECT_TRUE(view.flushed.empty());
  const Rectangle outside = {200, 200, 210, 210};
  pane.invalidate(&outside, true);
  EXPECT_TRUE(view.flushed.empty());
  EXPECT_TRUE(pane.dirty().empty());
}

TEST_F(LayerPaneTest, DrawsItsLayersInOrderAtItsPlaceAndFlushesWhatWasDirty) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.addLayer(layer(blue, 2, 10, 10));
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10, 5), 1);
  EXPECT_EQ(view.surface.pixel(20, 15), 0);  // no key: the corner of the upper one
  EXPECT_EQ(view.surface.pixel(26, 21), 2);
  EXPECT_EQ(view.surface.pixel(39, 34), 2);
  EXPECT_EQ(view.flushed, (Areas{{10, 5, 40, 35}}));
  EXPECT_TRUE(pane.dirty().empty());
}

TEST_F(LayerPaneTest, LeavesTheColourKeyOut) {
  pane.addLayer(layer(red, 1, 0, 0));
  PaneLayer upper = layer(blue, 2, 10, 10);
  upper.key = KeyTopLeft;
  pane.addLayer(upper);
  pane.paint();
  EXPECT_EQ(view.surface.pixel(20, 15), 1);
  EXPECT_EQ(view.surface.pixel(26, 21), 2);
}

TEST_F(LayerPaneTest, KeepsOneDirtyRectangleTheUnionOfAllChanges) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.addLayer(layer(blue, 2, 40, 20));
  pane.paint();
  pane.showLayer(1, false);
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 20, 20}));
  pane.setLayerLevel(2, 3);
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 60, 40}));
}

TEST_F(LayerPaneTest, AMoveDirtiesTheOldPlaceAndTheNew) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.paint();
  pane.moveLayer(1, 30, 10);
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 50, 30}));
  pane.moveLayer(7, 1, 1);
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 50, 30}));
}

TEST_F(LayerPaneTest, HiddenLayersAreNotDrawn) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.showLayer(1, false);
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10, 5), 0);
  pane.showLayer(1, true);
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10, 5), 1);
}

TEST_F(LayerPaneTest, ALevelDrawsAComb) {
  PaneLayer upper = layer(red, 1, 0, 0);
  upper.level = 2;
  pane.addLayer(upper);
  pane.paint();
  int drawn = 0;
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 20; ++x)
      drawn += view.surface.pixel(10 + x, 5 + y);
  EXPECT_EQ(drawn, 200);
}

TEST_F(LayerPaneTest, AnIdentifierThatExistsIsReplacedAndItsPlaceDirtied) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.paint();
  pane.addLayer(layer(blue, 1, 40, 20));
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 60, 40}));
  view.surface.fill(9);
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10, 5), 9);
  EXPECT_EQ(view.surface.pixel(60, 35), 2);
  pane.removeLayer(1);
  EXPECT_EQ(pane.dirty(), (Rectangle{40, 20, 60, 40}));
}

TEST_F(LayerPaneTest, NothingIsDrawnBeyondItsExtentOrWhatIsDirty) {
  pane.addLayer(layer(red, 1, 50, 30));
  pane.paint();
  EXPECT_EQ(view.flushed, (Areas{{60, 35, 70, 45}}));
  EXPECT_EQ(view.surface.pixel(69, 44), 1);
  EXPECT_EQ(view.surface.pixel(70, 44), 0);
  EXPECT_EQ(view.surface.pixel(69, 45), 0);
  view.surface.fill(9);
  const Rectangle part = {52, 32, 54, 34};
  pane.invalidate(&part, true);
  EXPECT_EQ(view.surface.pixel(62, 37), 1);
  EXPECT_EQ(view.surface.pixel(64, 37), 9);
}

TEST_F(LayerPaneTest, NullDirtiesTheWholePane) {
  pane.addLayer(layer(red, 1, 0, 0));
  pane.invalidate(nullptr, false);
  EXPECT_EQ(pane.dirty(), (Rectangle{0, 0, 60, 40}));
  EXPECT_TRUE(view.flushed.empty());
  pane.invalidate(nullptr, true);
  EXPECT_EQ(view.flushed, (Areas{{10, 5, 70, 45}}));
}

TEST_F(LayerPaneTest, APaneInAPanePassesItsChangesOnAndIsPaintedWithIt) {
  LayerPane inner({5, 5, 45, 35}, &pane);
  inner.addLayer(layer(red, 1, 10, 10));
  pane.addLayer({.pane = &inner, .identifier = 3, .rectangle = {5, 5, 45, 35}});
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10 + 5 + 10, 5 + 5 + 10), 1);
  EXPECT_EQ(view.surface.pixel(10 + 5 + 9, 5 + 5 + 10), 0);
  EXPECT_TRUE(inner.dirty().empty());
  view.flushed.clear();
  view.surface.fill(9);
  const Rectangle part = {12, 12, 14, 14};
  inner.invalidate(&part, true);
  EXPECT_EQ(view.flushed, (Areas{{27, 22, 29, 24}}));
  EXPECT_EQ(view.surface.pixel(27, 22), 1);
  EXPECT_EQ(view.surface.pixel(29, 22), 9);
}

TEST_F(LayerPaneTest, APaneInALayerThatIsMovedIsPaintedAndChangedAtItsNewPlace) {
  LayerPane inner({5, 5, 35, 25}, &pane);
  inner.addLayer(layer(red, 1, 10, 0));
  pane.addLayer({.pane = &inner, .identifier = 3, .rectangle = {5, 5, 35, 25}});
  pane.paint();
  ASSERT_EQ(view.surface.pixel(10 + 5 + 10, 5 + 5), 1);
  view.surface.fill(9);
  view.flushed.clear();
  pane.moveLayer(3, 25, 15);
  pane.paint();
  EXPECT_EQ(view.flushed, (Areas{{15, 10, 65, 40}}));
  EXPECT_EQ(view.surface.pixel(10 + 25 + 10, 5 + 15), 1);
  EXPECT_EQ(view.surface.pixel(10 + 25 + 9, 5 + 15), 9);
  EXPECT_EQ(view.surface.pixel(64, 39), 1);
  EXPECT_EQ(view.surface.pixel(10 + 5 + 10, 5 + 5), 9);
  // What changes in it is looked for there too.
  view.surface.fill(9);
  view.flushed.clear();
  const Rectangle part = {12, 2, 14, 4};
  inner.invalidate(&part, true);
  EXPECT_EQ(view.flushed, (Areas{{47, 22, 49, 24}}));
  EXPECT_EQ(view.surface.pixel(47, 22), 1);
  EXPECT_EQ(view.surface.pixel(49, 22), 9);
}

TEST_F(LayerPaneTest, APaneLiesWhereTheLayerLiesThatItIsAddedIn) {
  LayerPane inner({0, 0, 30, 20}, &pane);
  inner.addLayer(layer(red, 1, 10, 0));
  pane.addLayer({.pane = &inner, .identifier = 3, .rectangle = {20, 10, 50, 30}});
  pane.paint();
  EXPECT_EQ(view.surface.pixel(10 + 20 + 10, 5 + 10), 1);
  EXPECT_EQ(view.surface.pixel(10 + 10, 5), 0);
}

TEST_F(LayerPaneTest, DrawsOnto32BitsWhereItIsToldTo) {
  QVVSurface24 target;
  target.create(100, 80);
  pane.setTarget(nullptr, &target);
  pane.addLayer(layer(red, 1, 0, 0));
  pane.paint();
  EXPECT_EQ(target.pixel(10, 5), red.storedColours()[1]);
  PaneLayer half = layer(red, 1, 0, 0);
  half.level = 16;
  half.key = 1;
  pane.addLayer(half);
  target.fill(0x111111);
  pane.paint();
  EXPECT_EQ(target.pixel(10, 5), 0x111111u);
}

}  // namespace
}  // namespace qv
