#include <atomic>

#include "tests/unit/graphics/surface_ground.h"

namespace qv {
namespace {

TEST(SurfaceThreads, BlitInBothDirectionsAndPaintAtOnce) {
  testing::TestPlatform platform;
  constexpr int Rounds = 1500, Width = 64, Height = 48;
  QVVSurface a, b;
  testing::putPlain(a, Width, Height, 'a');
  testing::putPlain(b, Width, Height, 'b');
  ColourTable colours{};
  for (uint32_t i = 0; i < 256; ++i)
    colours[i] = i;
  a.setColoursRange(colours, 0, 256);
  b.setColoursRange(colours, 0, 256);

  std::atomic<bool> torn = false, done = false;
  Thread there, back, painter;
  there.start("there", [&] {
    for (int i = 0; i < Rounds; ++i) {
      a.blit(b, 0, 0, 0, 0, Width, Height, KeyNone);
      b.fill('b');
    }
  });
  back.start("back", [&] {
    for (int i = 0; i < Rounds; ++i) {
      b.blit(a, 0, 0, 0, 0, Width, Height, KeyNone);
      a.copyPaletteFrom(b);
      a.fill('a');
    }
  });
  painter.start("painter", [&] {
    std::vector<uint32_t> pixels(Width * Height);
    while (!done) {
      // Each surface is of one letter at any moment, so whatever is painted is of one letter.
      for (const QVVSurface* surface : {&a, &b}) {
        surface->paint(pixels, Width, Height, 0, 0, {0, 0, Width, Height});
        for (const uint32_t pixel : pixels)
          if (pixel != pixels[0] || (pixel != 'a' && pixel != 'b')) torn = true;
      }
    }
  });
  there.join();
  back.join();
  done = true;
  painter.join();
  EXPECT_FALSE(torn);
}

TEST(SurfaceThreads, ResizeWhileOthersDrawAndRead) {
  testing::TestPlatform platform;
  QVVSurface a, b;
  QVVSurface24 wide;
  std::atomic<bool> done = false;
  Thread resizer, drawer, reader;
  resizer.start("resizer", [&] {
    for (int i = 0; i < 400; ++i) {
      a.create(1 + i % 50, 1 + i % 31);
      wide.create(1 + i % 29, 1 + i % 37);
    }
    done = true;
  });
  drawer.start("drawer", [&] {
    while (!done) {
      a.blit(b, 0, 0, 0, 0, 99, 99, KeyTopLeft);
      b.stretchTo(a, 0, 0, 40, 40);
      a.tileOnto(b, nullptr, true);
      b.blitTo32Blend(wide, 0, 0, 0, 0, 99, 99, 8);
      a.fadePalette(defaultColours(), 1, 2);
    }
  });
  reader.start("reader", [&] {
    std::vector<uint32_t> pixels(50 * 50);
    while (!done) {
      a.paint(pixels, 50, 50, 0, 0, {0, 0, 50, 50});
      wide.paint(pixels, 50, 50, 0, 0, {0, 0, 50, 50});
      a.pixel(a.width() - 1, a.height() - 1);
      a.shownColours();
    }
  });
  resizer.join();
  drawer.join();
  reader.join();
  EXPECT_EQ(a.width(), 1 + 399 % 50);
}

TEST(SurfaceThreads, BlitsInBothDirectionsMakeNoCircleUnderAnySeed) {
  for (uint64_t seed = 1; seed <= 40; ++seed) {
    testing::TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    QVVSurface a, b;
    int finished = 0;
    Thread there, back;
    there.start("there", [&] {
      for (int i = 0; i < 5; ++i)
        a.blit(b, 0, 0, 0, 0, 16, 16, KeyNone);
      ++finished;
    });
    back.start("back", [&] {
      for (int i = 0; i < 5; ++i)
        b.blit(a, 0, 0, 0, 0, 16, 16, KeyNone);
      ++finished;
    });
    there.join();
    back.join();
    EXPECT_EQ(finished, 2) << seed;
  }
}

}  // namespace
}  // namespace qv
