#include "scenario/named_surface.h"

#include <climits>

#include "scenario/handles.h"
#include "tests/unit/graphics/surface_ground.h"
#include "tests/unit/scenario/fake_host.h"

namespace qv {
namespace {

using testing::Lines;
using testing::linesOf;

class NamedSurfaces : public ::testing::Test {
 protected:
  NamedSurfaces() {
    manager.Start(&host, "Test", 10, 10, 10);
    theScenario = &manager;
  }
  ~NamedSurfaces() override { theScenario = nullptr; }

  testing::TestPlatform platform;
  testing::FakeHost host;
  QVScenario manager;
};

TEST_F(NamedSurfaces, AreCreatedByWidthAndHeight) {
  manager.CreateObject("cg.surf", TypeSurface, {640, 480});
  auto* surface = static_cast<QVVSurface*>(manager.FindNative("cg.surf", TypeSurface));
  ASSERT_NE(surface, nullptr);
  EXPECT_EQ(surface->width(), 640);
  EXPECT_EQ(surface->height(), 480);
  EXPECT_EQ(manager.FindObject("cg.surf")->typeCode(), TypeSurface);
}

TEST_F(NamedSurfaces, AreCreatedFromAPicturesFile) {
  QVVSurface picture;
  testing::putPattern(picture, 7, 5);
  picture.saveBmpByName("picture.bmp");
  const SurfaceHandle handle("a.surf", "picture.bmp");
  ASSERT_TRUE(handle.bound());
  EXPECT_EQ(linesOf(*handle.surface()), linesOf(picture));
}

TEST_F(NamedSurfaces, AreNotMadeWhenTheirPictureIsMissing) {
  EXPECT_THROW(manager.CreateObject("a.surf", TypeSurface, {"none.bmp"}), CannotOpenException);
  EXPECT_EQ(manager.FindObject("a.surf"), nullptr);
  EXPECT_THROW(manager.CreateObject("a.surf", TypeSurface, {INT_MAX, INT_MAX}),
               NotEnoughMemoryException);
  EXPECT_EQ(manager.FindObject("a.surf"), nullptr);
}

TEST_F(NamedSurfaces, WithoutArgumentsHaveTheirFirstPixels) {
  manager.CreateObject("a.surf", TypeSurface);
  EXPECT_EQ(SurfaceHandle("a.surf").width(), 16);
}

TEST_F(NamedSurfaces, GoWithAHandleThatDoesNotKeepThem) {
  { const SurfaceHandle handle("a.surf", 8, 8, DestroyWithHandle); }
  EXPECT_EQ(manager.FindObject("a.surf"), nullptr);
}

TEST_F(NamedSurfaces, TakeTheOperationsOfTheirHandles) {
  const SurfaceHandle a("a", 4, 2), b("b", 4, 2);
  a.fill('a');
  const Rectangle left = {0, 0, 1, 2};
  a.fill('k', &left);
  b.fill('.');
  a.blit(b, 0, 0, 0, 0, 4, 1, KeyTopLeft);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{".aaa", "...."}));
  b.mirror(2, 0, 0, 0, 0);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"aaa.", "...."}));
  a.blitBlended(b, 0, 1, 0, 0, 4, 1, 2);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"aaa.", ".a.a"}));
  a.blitBlendedKey(b, 0, 0, 0, 0, 4, 1, -8, 'k');
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"aaa.", ".a.a"}));
  a.stretchTo(b, 0, 0, 4, 1);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"kaaa", ".a.a"}));
  a.blitScaled(b, 0, 1, 0, 0, 2, 1, 2, 1);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"kaaa", "kkaa"}));
  b.create(6, 1);
  a.tileOnto(b, nullptr, false);
  EXPECT_EQ(linesOf(*b.surface()), (Lines{"kaaaka"}));
  EXPECT_EQ(b.width(), 6);
  EXPECT_EQ(b.height(), 1);
}

TEST_F(NamedSurfaces, TakeColoursByTheirHandles) {
  const SurfaceHandle a("a", 4, 2), b("b", 4, 2);
  const ColourTable colours = testing::someColours();
  a.setColoursRange(colours, 0, 256);
  b.copyPaletteFrom(a);
  EXPECT_EQ(b.surface()->storedColours(), colours);
  scobjPalette palette;
  b.takePalette(palette);
  EXPECT_EQ(palette.table(), colours);
  b.setColours(colours, 0, 1, 1);
  EXPECT_EQ(b.surface()->storedColours()[0], colours[1]);
  b.fadePalette(ColourTable{}, 1, 1);
  EXPECT_EQ(b.surface()->shownColours(), ColourTable{});
  b.tintMonochrome(255, 255, 255, 0, 0);
  EXPECT_NE(b.surface()->shownColours(), ColourTable{});
  a.saveBmpByName("a.bmp");
  b.loadByName("a.bmp");
  EXPECT_EQ(b.surface()->storedColours(), colours);
}

TEST_F(NamedSurfaces, AreFilledAndRecolouredByName) {
  const SurfaceHandle a("a", 4, 2), b("b", 4, 2);
  manager.FillObject("a", 'f');
  EXPECT_EQ(linesOf(*a.surface()), (Lines{"ffff", "ffff"}));
  const ColourTable colours = testing::someColours();
  a.setColoursRange(colours, 0, 256);
  manager.CopyPalette("b", "a");
  EXPECT_EQ(b.surface()->storedColours(), colours);
  // What is no object is a picture's file.
  a.setColours(colours, 0, 9, 1);
  a.saveBmpByName("colours.bmp");
  manager.CopyPalette("b", "colours.bmp");
  EXPECT_EQ(b.surface()->storedColours()[0], colours[9]);
  manager.FillObject("none", 1);
  manager.FillObject(nullptr, 1);
  manager.CopyPalette("none", "a");
  manager.CopyPalette(nullptr, nullptr);
}

TEST_F(NamedSurfaces, UnboundHandlesTakeEveryOperation) {
  const SurfaceHandle none("none"), bound("b", 4, 2);
  bound.fill('b');
  scobjPalette palette;
  for (const SurfaceHandle* target : {&none, &bound}) {
    none.blit(*target, 0, 0, 0, 0, 4, 2, KeyNone);
    none.blitBlended(*target, 0, 0, 0, 0, 4, 2, 0);
    none.blitBlendedKey(*target, 0, 0, 0, 0, 4, 2, 0, 0);
    none.blitScaled(*target, 0, 0, 0, 0, 4, 2, 2, 2);
    none.stretchTo(*target, 0, 0, 4, 2);
    none.tileOnto(*target, nullptr, true);
    target->copyPaletteFrom(none);
  }
  bound.blit(none, 0, 0, 0, 0, 4, 2, KeyNone);
  none.create(3, 3);
  none.loadByName("none.bmp");
  none.fill(1);
  none.mirror(1, 0, 0, 0, 0);
  none.setColours(ColourTable{}, 0, 0, 1);
  none.setColoursRange(ColourTable{}, 0, 1);
  none.fadePalette(ColourTable{}, 0, 0);
  none.tintMonochrome(0, 0, 0, 0, 0);
  none.takePalette(palette);
  none.saveBmpByName("none.bmp");
  EXPECT_EQ(none.surface(), nullptr);
  EXPECT_EQ(none.width() + none.height() + palette.count(), 0);
  EXPECT_EQ(linesOf(*bound.surface()), (Lines{"bbbb", "bbbb"}));
  EXPECT_TRUE(platform.dialogs.shown.empty());
}

TEST_F(NamedSurfaces, KeepTheirNameFromAClickMap) {
  manager.CreateObject("taken", TypeSurface, {8, 8});
  manager.CreateClickMap("taken");
  EXPECT_EQ(platform.dialogs.shown.size(), 1u);
  EXPECT_EQ(SurfaceHandle("taken").width(), 8);
}

}  // namespace
}  // namespace qv
