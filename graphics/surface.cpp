#include "graphics/surface.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "foundation/system_info.h"
#include "graphics/colour_math.h"
#include "graphics/static_colours.h"
#include "graphics/surface_size.h"

namespace qv {

namespace {

// What a surface is born with, so that none is ever without pixels.
constexpr int32_t FirstWidth = 16, FirstHeight = 16;

constexpr ColourTable NewColours = greyRampWithStaticColours();

/// In pieces that the processor's vectors move.
void swapRows(uint8_t* a, uint8_t* b, size_t width) {
  std::array<uint8_t, 256> held;
  for (size_t x = 0; x < width; x += held.size()) {
    const size_t count = std::min(held.size(), width - x);
    std::memcpy(held.data(), a + x, count);
    std::memcpy(a + x, b + x, count);
    std::memcpy(b + x, held.data(), count);
  }
}

}  // namespace

const ColourTable& defaultColours() {
  return NewColours;
}

KernelForm kernelFormHere() {
  return HasMmx() ? KernelForm::Vector : KernelForm::Plain;
}

QVVSurface::QVVSurface() : lock_("surface", LockRank::Surface), form_(kernelFormHere()) {
  remake(FirstWidth, FirstHeight, true);
}

void QVVSurface::remake(int32_t width, int32_t height, bool zeroed) {
  const SurfaceSize size = surfaceSize(width, height);
  bits_.replace(static_cast<size_t>(strideOf(size.width)) * static_cast<size_t>(size.height),
                zeroed);
  width_ = size.width;
  height_ = size.height;
  header_ = {};
  stored_ = shown_ = NewColours;
}

void QVVSurface::create(int32_t width, int32_t height) {
  const std::lock_guard guard(lock_);
  remake(width, height, true);
}

int32_t QVVSurface::width() const {
  const std::lock_guard guard(lock_);
  return width_;
}

int32_t QVVSurface::height() const {
  const std::lock_guard guard(lock_);
  return height_;
}

uint8_t QVVSurface::pixel(int32_t x, int32_t y) const {
  const std::lock_guard guard(lock_);
  return Rectangle{0, 0, width_, height_}.contains(x, y) ? *at(x, y) : 0;
}

void QVVSurface::fill(uint8_t index, const Rectangle* rectangle) {
  const std::lock_guard guard(lock_);
  const Rectangle whole{0, 0, width_, height_};
  const Rectangle area = rectangle ? rectangle->intersected(whole) : whole;
  if (area.empty()) return;
  for (int32_t y = area.top; y < area.bottom; ++y)
    std::memset(at(area.left, y), index, static_cast<size_t>(area.width()));
}

void QVVSurface::mirror(int32_t axis, int32_t x, int32_t y, int32_t w, int32_t h) {
  constexpr int32_t ExchangeRows = 1, ReverseRows = 2;
  const std::lock_guard guard(lock_);
  BlitArea area(x, y, x, y, w ? w : width_, h ? h : height_);
  if (!area.clip(width_, height_, width_, height_)) return;
  if (axis == ExchangeRows) {
    for (int64_t above = area.y.target, below = above + area.y.count - 1; above < below;
         ++above, --below)
      swapRows(at(area.x.target, above), at(area.x.target, below),
               static_cast<size_t>(area.width()));
  } else if (axis == ReverseRows) {
    for (int64_t row = area.y.target; row < area.y.target + area.y.count; ++row)
      std::reverse(at(area.x.target, row), at(area.x.target, row) + area.width());
  }
}

void QVVSurface::paint(std::span<uint32_t> pixels, int32_t width, int32_t height, int32_t x,
                       int32_t y, const Rectangle& part) const {
  const std::lock_guard guard(lock_);
  PaintArea area(part, x, y);
  if (!area.clip(width, height, width_, height_)) return;
  // Window pixels have nothing in their fourth byte, whatever a picture's table says.
  ColourTable palette = shown_;
  for (uint32_t& entry : palette)
    entry &= ColourMask;
  KernelRows rows = area.targetRows(pixels, width);
  rows.source = at(area.x.source, area.y.source);
  rows.sourceStride = strideOf(width_);
  expandRows(form_, rows, palette.data());
}

}  // namespace qv
