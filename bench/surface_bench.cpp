// What surfaces cost beside moving the same bytes, at 640 by 480: from a decoded picture to a
// surface, fills, stretches, tiles, and the paint onto a window's pixels. Locks, clipping and
// colour tables are in these numbers; the loops alone are in the bench of the kernels.

#include <cstring>
#include <functional>
#include <vector>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "graphics/surface.h"

namespace {

using namespace qv;

constexpr int32_t Width = 640, Height = 480;
constexpr size_t Pixels = size_t{Width} * Height;
constexpr int Times = 20, Rounds = 151;

QVDib picture() {
  BitmapInfoHeader header;
  header.width = Width;
  header.height = Height;
  std::vector<uint8_t> block(sizeof header + sizeof(ColourTable) + Pixels);
  std::memcpy(block.data(), &header, sizeof header);
  for (size_t i = sizeof header; i < block.size(); ++i)
    block[i] = static_cast<uint8_t>(i * i >> 7);
  QVDib dib;
  dib.loadPacked(block);
  return dib;
}

template <class Work>
auto often(Work work) {
  return [work] {
    for (int i = 0; i < Times; ++i)
      work();
  };
}

bench::Pair compare(const std::function<void()>& ours, const std::function<void()>& theirs) {
  return bench::measure(ours, theirs, Rounds, bench::threadSecondsOf);
}

/// Bytes moved between the same two places as the row beside it: two places elsewhere may lie a
/// fifth better or worse for the caches.
auto moving(uint8_t* to, const uint8_t* from, size_t bytes) {
  return often([=] {
    std::memcpy(to, from, bytes);
    bench::keep(*to);
  });
}

/// A surface's pixels; nothing else draws here, and none is made anew.
uint8_t* pixelsOf(QVVSurface& surface) {
  const QVVSurface::Access access(surface);
  return access.row(Height - 1);
}

}  // namespace

int main() {
  bench::Table table;
  const bench::Ground ground;
  const QVDib dib = picture();
  QVVSurface surface, target, half, tile;
  surface.assignDib(dib);
  target.create(Width, Height);
  half.create(Width / 2, Height / 2);
  surface.stretchTo(half, 0, 0, Width / 2, Height / 2);
  tile.create(64, 48);
  surface.blit(tile, 0, 0, 0, 0, 64, 48, KeyNone);
  std::vector<uint32_t> window(Pixels);
  std::vector<uint8_t> frame(Pixels * sizeof(uint32_t), 1);
  const auto copy8 = moving(pixelsOf(target), pixelsOf(surface), Pixels);
  const auto copyOfDib = moving(pixelsOf(target), dib.bits().data(), Pixels);
  const auto copy32 = moving(reinterpret_cast<uint8_t*>(window.data()), frame.data(), frame.size());

  const auto row8 = [&](const char* what, double limit, auto work) {
    table.atMost(what, limit, compare(often(work), copy8));
  };
  table.atMost("bitmap to surface / memcpy", 1.15,
               compare(often([&] { target.assignDib(dib); }), copyOfDib));
  row8("blit / memcpy", 1.05, [&] { surface.blit(target, 0, 0, 0, 0, Width, Height, KeyNone); });
  row8("blit with a key / memcpy", 1.2,
       [&] { surface.blit(target, 0, 0, 0, 0, Width, Height, 1); });
  row8("fill / memcpy", 1.15, [&] { target.fill(7); });
  row8("tiles of 64 by 48 / memcpy", 5, [&] { tile.tileOnto(target, nullptr, false); });
  row8("mirror of rows / memcpy", 6, [&] { target.mirror(1, 0, 0, 0, 0); });
  row8("stretch to the double size / memcpy", 9,
       [&] { half.stretchTo(target, 0, 0, Width, Height); });
  row8("stretch by a third, clipped / memcpy", 12,
       [&] { surface.stretchTo(target, -100, -80, Width * 4 / 3, Height * 4 / 3); });
  row8("scaled blit by 2 / memcpy", 8,
       [&] { half.blitScaled(target, 0, 0, 0, 0, Width / 2, Height / 2, 2, 2); });
  table.atMost("paint / memcpy of the window's bytes", 3.5,
               compare(often([&] {
                         surface.paint(window, Width, Height, 0, 0, {0, 0, Width, Height});
                       }),
                       copy32));
  return table.status();
}
