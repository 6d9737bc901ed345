// What the pixel loops cost beside memcpy of the same pixels, SDL2's software blits and pixman, on
// a picture of 640 by 480, with the vectors of each of three kinds of processor.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <SDL.h>
#include <pixman.h>

#include "bench/ratio.h"
#include "graphics/kernels/kernels.h"
#include "platform/vector_dispatch.h"

namespace qv::bench {
namespace {

constexpr int Width = 640, Height = 480;
constexpr size_t Pixels = size_t{Width} * Height;
constexpr uint8_t Key = 7;

/// One measurement, some half a millisecond.
template <class Work>
std::function<void()> repeated(Work work, int times = 20) {
  return [=] {
    for (int i = 0; i < times; ++i)
      work();
  };
}

Pair compare(const std::function<void()>& ours, const std::function<void()>& theirs) {
  constexpr int Rounds = 151;
  return measure(ours, theirs, Rounds, threadSecondsOf);
}

/// A figure before the key colour, as sprites are: a body with a waving outline, holes, and single
/// pixels along its edges.
std::vector<uint8_t> sprite() {
  std::vector<uint8_t> pixels(Pixels);
  uint32_t state = 1;
  for (int y = 0; y < Height; ++y)
    for (int x = 0; x < Width; ++x) {
      state = state * 1103515245u + 12345u;
      const double wave = 60 * std::sin(y / 17.0) + 25 * std::sin(y / 3.0);
      const double edge = 190 + wave - std::abs(x - Width / 2) + static_cast<int>(state >> 28);
      const bool hole = (x / 12 + y / 9) % 7 == 0;
      uint8_t colour = static_cast<uint8_t>(state >> 16);
      if (colour == Key) ++colour;
      pixels[static_cast<size_t>(y) * Width + static_cast<size_t>(x)] =
          edge > 0 && !hole ? colour : Key;
    }
  return pixels;
}

struct Ground {
  std::vector<uint8_t> source = sprite(), target = std::vector<uint8_t>(Pixels, 3);
  std::vector<uint32_t> source32 = std::vector<uint32_t>(Pixels, 0x336699),
                        target32 = std::vector<uint32_t>(Pixels, 0x102030);
  std::array<uint32_t, 256> palette{};

  Ground() {
    for (uint32_t i = 0; i < 256; ++i)
      palette[i] = i * 0x010305 & 0xFFFFFF;
  }
  KernelRows rows(int width = Width, int height = Height) {
    const size_t corner = Pixels - Width;
    return {target.data() + corner, Width, source.data() + corner, Width, width, height};
  }
  KernelRows expandRows(int width = Width, int height = Height) {
    const size_t corner = Pixels - Width;
    return {reinterpret_cast<uint8_t*>(target32.data() + corner),
            Width * 4,
            source.data() + corner,
            Width,
            width,
            height};
  }
  KernelRows rows32() {
    const size_t corner = Pixels - Width;
    return {reinterpret_cast<uint8_t*>(target32.data() + corner),
            Width * 4,
            reinterpret_cast<uint8_t*>(source32.data() + corner),
            Width * 4,
            Width,
            Height};
  }
  std::function<void()> copy8() {
    return repeated([this] {
      std::memcpy(target.data(), source.data(), Pixels);
      keep(target);
    });
  }
  std::function<void()> copy32() {
    return repeated([this] {
      std::memcpy(target32.data(), source32.data(), Pixels * 4);
      keep(target32);
    });
  }
};

constexpr KernelForm Vector = KernelForm::Vector;

/// A kind of processor by what it has, and the limits there.
struct Vectors {
  const char* name;
  int64_t targets;
  double keyed, expand, blend;
};
constexpr Vectors Kinds[] = {
    {"sse2", HWY_SCALAR, 1.6, 3.5, 6.5},
    {"avx2", HWY_AVX2, 1.1, 3.5, 4.5},
    {"avx512", HWY_AVX3_DL, 1.1, 1.6, 4.5},
};

/// Rows that depend on the processor's vectors.
void vectorRows(Table& table, Ground& ground, const Vectors& kind) {
  pretendVectors(kind.targets);
  const auto row = [&](const char* what, double limit, Pair pair) {
    table.atMost((std::string(kind.name) + ": " + what).c_str(), limit, pair);
  };
  const uint32_t* palette = ground.palette.data();
  const auto copy8 = ground.copy8(), copy32 = ground.copy32();
  const KernelRows rows = ground.rows(), expanded = ground.expandRows();
  row("8 bit keyed to memcpy", kind.keyed,
      compare(repeated([=] { copyRowsKey(Vector, rows, Key); }), copy8));
  row("8 bit comb of 3 to memcpy", 2.5,
      compare(repeated([=] { combRows(Vector, rows, 3); }), copy8));
  row("8 bit comb of 16, keyed, to memcpy", 2.5,
      compare(repeated([=] { combRowsKey(Vector, rows, 16, Key); }), copy8));
  row("8 bit dither of 7 to memcpy", 2.5,
      compare(repeated([=] { ditherRows(Vector, rows, 7); }), copy8));
  row("8 bit dither of 7, keyed, to memcpy", 2.5,
      compare(repeated([=] { ditherRowsKey(Vector, rows, 7, Key); }), copy8));
  row("8 to 32 expand to memcpy of the target's bytes", kind.expand,
      compare(repeated([=] { expandRows(Vector, expanded, palette); }), copy32));
  row("8 to 32 blend to memcpy of the target's bytes", kind.blend,
      compare(repeated([=] { blendRows(Vector, expanded, palette, 5); }), copy32));
  table.note(
      (std::string(kind.name) + ": 8 to 32 expand, keyed, to the same").c_str(),
      compare(repeated([=] { expandRowsKey(Vector, expanded, palette, Key); }), copy32).ratio());
  table.note(
      (std::string(kind.name) + ": 8 to 32 blend, keyed, to the same").c_str(),
      compare(repeated([=] { blendRowsKey(Vector, expanded, palette, 5, Key); }), copy32).ratio());
}

/// SDL surfaces over the same pixels; both 8-bit ones share a palette, as ours do.
class SdlGround {
 public:
  explicit SdlGround(Ground& ground)
      : source(over(ground.source.data(), 8, SDL_PIXELFORMAT_INDEX8)),
        runs(over(ground.source.data(), 8, SDL_PIXELFORMAT_INDEX8)),
        target(over(ground.target.data(), 8, SDL_PIXELFORMAT_INDEX8)),
        target32(over(ground.target32.data(), 32, SDL_PIXELFORMAT_RGB888)) {
    for (int i = 0; i < 256; ++i) {
      const auto grey = static_cast<Uint8>(i);
      const SDL_Color colour = {grey, grey, grey, 255};
      SDL_SetPaletteColors(source->format->palette, &colour, i, 1);
    }
    SDL_SetSurfacePalette(runs, source->format->palette);
    SDL_SetSurfacePalette(target, source->format->palette);
    SDL_SetColorKey(runs, SDL_TRUE, Key);
    SDL_SetSurfaceRLE(runs, 1);
  }
  ~SdlGround() {
    for (SDL_Surface* surface : {source, runs, target, target32})
      SDL_FreeSurface(surface);
  }
  SdlGround(const SdlGround&) = delete;
  SdlGround& operator=(const SdlGround&) = delete;

  SDL_Surface *source, *runs, *target, *target32;

 private:
  static SDL_Surface* over(void* pixels, int depth, Uint32 format) {
    return SDL_CreateRGBSurfaceWithFormatFrom(pixels, Width, Height, depth, Width * depth / 8,
                                              format);
  }
};

std::function<void()> sdlBlit(SDL_Surface* from, SDL_Surface* to) {
  return repeated([=] { SDL_BlitSurface(from, nullptr, to, nullptr); });
}

void sdlRows(Table& table, Ground& ground) {
  SdlGround sdl(ground);
  const KernelRows rows = ground.rows(), expanded = ground.expandRows();
  const uint32_t* palette = ground.palette.data();
  table.note(
      "SDL2's 8 bit opaque, times ours",
      compare(sdlBlit(sdl.source, sdl.target), repeated([=] { copyRows(Vector, rows); })).ratio());
  table.note("SDL2's 8 to 32 expand, times ours",
             compare(sdlBlit(sdl.source, sdl.target32),
                     repeated([=] { expandRows(Vector, expanded, palette); }))
                 .ratio());
  SDL_SetColorKey(sdl.source, SDL_TRUE, Key);
  const auto keyed = repeated([=] { copyRowsKey(Vector, rows, Key); });
  table.fasterBy("8 bit keyed, times as fast as SDL2's colour key", 10,
                 compare(keyed, sdlBlit(sdl.source, sdl.target)));
  table.fasterBy("8 bit keyed, times as fast as SDL2's run lengths", 3,
                 compare(keyed, sdlBlit(sdl.runs, sdl.target)));
}

void pixmanRows(Table& table, Ground& ground) {
  const auto over = [](pixman_format_code_t format, void* bits, int stride) {
    return pixman_image_create_bits(format, Width, Height, static_cast<uint32_t*>(bits), stride);
  };
  pixman_image_t* source8 = over(PIXMAN_a8, ground.source.data(), Width);
  pixman_image_t* target8 = over(PIXMAN_a8, ground.target.data(), Width);
  pixman_image_t* source32 = over(PIXMAN_x8r8g8b8, ground.source32.data(), Width * 4);
  pixman_image_t* target32 = over(PIXMAN_x8r8g8b8, ground.target32.data(), Width * 4);
  const pixman_color_t weight = {0, 0, 0, 0x5000};
  pixman_image_t* mask = pixman_image_create_solid_fill(&weight);
  const auto composite = [](pixman_op_t op, pixman_image_t* from, pixman_image_t* by,
                            pixman_image_t* to) {
    return repeated(
        [=] { pixman_image_composite32(op, from, by, to, 0, 0, 0, 0, 0, 0, Width, Height); });
  };
  const KernelRows rows = ground.rows(), rows32 = ground.rows32(), expanded = ground.expandRows();
  const uint32_t* palette = ground.palette.data();
  table.note("pixman's 8 bit copy, times ours",
             compare(composite(PIXMAN_OP_SRC, source8, nullptr, target8),
                     repeated([=] { copyRows(Vector, rows); }))
                 .ratio());
  table.note("pixman's 32 bit copy, times ours",
             compare(composite(PIXMAN_OP_SRC, source32, nullptr, target32),
                     repeated([=] { copyRows32(Vector, rows32); }))
                 .ratio());
  table.note("pixman's 32 on 32 with one weight, times our 8 on 32 blend",
             compare(composite(PIXMAN_OP_OVER, source32, mask, target32),
                     repeated([=] { blendRows(Vector, expanded, palette, 5); }))
                 .ratio());
  for (pixman_image_t* image : {source8, target8, source32, target32, mask})
    pixman_image_unref(image);
}

bool chosen(const Vectors& kind, const char* name) {
  return !name || std::strcmp(name, kind.name) == 0;
}

int run(const char* name) {
  if (std::none_of(std::begin(Kinds), std::end(Kinds),
                   [=](const Vectors& kind) { return chosen(kind, name); })) {
    std::fprintf(stderr, "usage: blit_bench [sse2|avx2|avx512]\n");
    return 2;
  }
  Table table;
  Ground ground;
  const KernelRows rows = ground.rows(), rows32 = ground.rows32();
  table.atMost("8 bit opaque to memcpy", 1.05,
               compare(repeated([=] { copyRows(Vector, rows); }), ground.copy8()));
  table.atMost("32 to 32 copy to memcpy", 1.05,
               compare(repeated([=] { copyRows32(Vector, rows32); }), ground.copy32()));
  const int64_t here = vectorTargets() | HWY_SCALAR;
  for (const Vectors& kind : Kinds) {
    if (!chosen(kind, name)) continue;
    if (here & kind.targets)
      vectorRows(table, ground, kind);
    else
      std::printf("%s: not on this machine\n", kind.name);
  }
  pretendVectors(0);  // others too use the best that the machine has
  sdlRows(table, ground);
  pixmanRows(table, ground);
  return table.status();
}

}  // namespace
}  // namespace qv::bench

int main(int count, char** arguments) {
  return qv::bench::run(count > 1 ? arguments[1] : nullptr);
}
