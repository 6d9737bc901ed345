#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>

#include "foundation/file.h"
#include "graphics/axis_map.h"
#include "graphics/colour_math.h"
#include "graphics/overlap.h"
#include "graphics/surface.h"
#include "graphics/surface_pair.h"
#include "graphics/surface_size.h"
#include "graphics/tagged_record.h"

// QVVSurface24: 32 bits a pixel.

namespace qv {

namespace {

constexpr int32_t FirstWidth = 16, FirstHeight = 16;
constexpr auto PixelBytes = static_cast<int>(sizeof(uint32_t));

/// Turns a row of a bitmap into pixels; `bytes` may end before the row does.
using RowReader = void (*)(uint32_t* target, std::span<const uint8_t> bytes, int32_t width,
                           std::span<const uint32_t> colours);

void readRow8(uint32_t* target, std::span<const uint8_t> bytes, int32_t width,
              std::span<const uint32_t> colours) {
  const size_t count = std::min(static_cast<size_t>(width), bytes.size());
  for (size_t x = 0; x < count; ++x)
    target[x] = bytes[x] < colours.size() ? colours[bytes[x]] & ColourMask : 0;
}

void readRow24(uint32_t* target, std::span<const uint8_t> bytes, int32_t width,
               std::span<const uint32_t>) {
  const size_t count = std::min(static_cast<size_t>(width), bytes.size() / 3);
  for (size_t x = 0; x < count; ++x)
    target[x] = colourOf(bytes[3 * x + 2], bytes[3 * x + 1], bytes[3 * x]);
}

void readRow32(uint32_t* target, std::span<const uint8_t> bytes, int32_t width,
               std::span<const uint32_t>) {
  const size_t count = std::min(static_cast<size_t>(width), bytes.size() / sizeof(uint32_t));
  if (count) std::memcpy(target, bytes.data(), count * sizeof(uint32_t));
  for (size_t x = 0; x < count; ++x)
    target[x] &= ColourMask;
}

/// Null for bitmaps that a surface does not take.
RowReader rowReader(const QVDib& dib) {
  if (dib.empty()) return nullptr;
  switch (dib.bitCount()) {
    case 8:
      return readRow8;
    case 24:
      return readRow24;
    case 32:
      return readRow32;
    default:
      return nullptr;
  }
}

}  // namespace

QVVSurface24::QVVSurface24() : lock_("surface24", LockRank::Surface), form_(kernelFormHere()) {
  remake(FirstWidth, FirstHeight);
}

void QVVSurface24::remake(int32_t width, int32_t height) {
  const SurfaceSize size = surfaceSize(width, height);
  bits_.replace(static_cast<size_t>(size.width) * static_cast<size_t>(size.height));
  width_ = size.width;
  height_ = size.height;
  header_ = {};
}

void QVVSurface24::create(int32_t width, int32_t height) {
  const std::lock_guard guard(lock_);
  remake(width, height);
}

void QVVSurface24::assignDib(const QVDib& dib) {
  const RowReader readRow = rowReader(dib);
  if (!readRow) return;
  const std::lock_guard guard(lock_);
  const std::span<const uint8_t> bits = dib.bits();
  if (bits.empty())
    remake(0, 0);
  else
    remake(dib.width(), dib.height());
  const auto stride = static_cast<size_t>(dib.strideBytes());
  for (int32_t y = height_ - 1; y >= 0 && width_ > 0; --y) {
    const size_t start = stride * static_cast<size_t>(height_ - y - 1);
    if (start >= bits.size()) break;
    readRow(at(0, y), bits.subspan(start), width_, dib.tableWords());
  }
  header_.xPelsPerMeter = dib.header().xPelsPerMeter;
  header_.yPelsPerMeter = dib.header().yPelsPerMeter;
  header_.sizeImage = static_cast<uint32_t>(bits_.size() * sizeof(uint32_t));
}

void QVVSurface24::loadByName(const char* name) {
  QVDib dib;
  dib.loadByName(name);
  assignDib(dib);
}

void QVVSurface24::loadResource(int32_t id) {
  QVDib dib;
  dib.loadResource(id);
  assignDib(dib);
}

void QVVSurface24::blitDib(const QVDib& dib, ColourKey key) {
  if (!rowReader(dib)) return;
  if (dib.bitCount() == 8) {
    QVVSurface picture;
    picture.assignDib(dib);
    picture.blitTo32(*this, 0, 0, 0, 0, picture.width(), picture.height(), key);
  } else {
    QVVSurface24 picture;
    picture.assignDib(dib);
    picture.blit(*this, 0, 0, 0, 0, picture.width(), picture.height());
  }
}

void QVVSurface24::blitArea(QVVSurface24& target, BlitArea area) const {
  if (!area.clip(target.width_, target.height_, width_, height_)) return;
  const KernelRows rows = {reinterpret_cast<uint8_t*>(target.at(area.x.target, area.y.target)),
                           target.width_ * PixelBytes,
                           reinterpret_cast<const uint8_t*>(at(area.x.source, area.y.source)),
                           width_ * PixelBytes,
                           area.width(),
                           area.height()};
  if (&target == this && area.overlapsItself())
    copyRows32Within(rows);
  else
    copyRows32(form_, rows);
}

void QVVSurface24::blit(QVVSurface24& target, int32_t dx, int32_t dy, int32_t sx, int32_t sy,
                        int32_t w, int32_t h) const {
  const SurfacePair pair(*this, target);
  blitArea(target, {dx, dy, sx, sy, w, h});
}

void QVVSurface24::tileOnto(QVVSurface24& target, const Rectangle* rectangle) {
  const SurfacePair pair(*this, target);
  const Rectangle area = rectangle ? *rectangle : Rectangle{0, 0, target.width_, target.height_};
  eachTile(area, width_, height_, target.width_, target.height_, [&](const Rectangle& tile) {
    blitArea(target, {tile.left, tile.top, 0, 0, tile.width(), tile.height()});
  });
}

void QVVSurface24::stretchTo(QVVSurface& target, int32_t x, int32_t y, int32_t w, int32_t h) const {
  const SurfacePair pair(*this, target);
  const AxisMap columns = mapStretched(x, w, target.width_, width_);
  const AxisMap rows = mapStretched(y, h, target.height_, height_);
  const size_t width = columns.sources.size();
  if (width == 0) return;
  // Neighbours are often of one colour, and a look through the whole table is dear.
  uint32_t colour = 0;
  uint8_t index = nearestEntry(target.shown_, colour);
  int32_t row = rows.first, rowAbove = -1;
  for (const int32_t sourceRow : rows.sources) {
    uint8_t* const to = target.at(columns.first, row++);
    if (sourceRow == rowAbove) {
      std::memcpy(to, to + QVVSurface::strideOf(target.width_), width);
      continue;
    }
    const uint32_t* const from = at(0, sourceRow);
    for (size_t column = 0; column < width; ++column) {
      const uint32_t wanted = from[columns.sources[column]] & ColourMask;
      if (wanted != colour) index = nearestEntry(target.shown_, wanted);
      colour = wanted;
      to[column] = index;
    }
    rowAbove = sourceRow;
  }
}

void QVVSurface24::fill(uint32_t colour, const Rectangle* rectangle) {
  const std::lock_guard guard(lock_);
  const Rectangle whole{0, 0, width_, height_};
  const Rectangle area = rectangle ? rectangle->intersected(whole) : whole;
  if (area.empty()) return;
  for (int32_t y = area.top; y < area.bottom; ++y)
    std::fill_n(at(area.left, y), area.width(), colour);
}

void QVVSurface24::paint(std::span<uint32_t> pixels, int32_t width, int32_t height, int32_t x,
                         int32_t y, const Rectangle& part) const {
  const std::lock_guard guard(lock_);
  PaintArea area(part, x, y);
  if (!area.clip(width, height, width_, height_)) return;
  const KernelRows rows = area.targetRows(pixels, width);
  for (int row = 0; row < rows.height; ++row) {
    auto* to = reinterpret_cast<uint32_t*>(rows.target - ptrdiff_t{row} * rows.targetStride);
    const uint32_t* from = at(area.x.source, area.y.source + row);
    // Blends mix the fourth bytes too; a window's pixels have nothing there.
    for (int column = 0; column < rows.width; ++column)
      to[column] = from[column] & ColourMask;
  }
}

int32_t QVVSurface24::width() const {
  const std::lock_guard guard(lock_);
  return width_;
}

int32_t QVVSurface24::height() const {
  const std::lock_guard guard(lock_);
  return height_;
}

uint32_t QVVSurface24::pixel(int32_t x, int32_t y) const {
  const std::lock_guard guard(lock_);
  return Rectangle{0, 0, width_, height_}.contains(x, y) ? *at(x, y) : 0;
}

HeapBlock QVVSurface24::infoBlockAndPixels() const {
  const std::lock_guard guard(lock_);
  BitmapInfoHeader header = header_;
  header.width = width_;
  header.height = height_;
  header.bitCount = TaggedSurface24.bitCount;
  const size_t pixelBytes = bits_.size() * sizeof(uint32_t);
  HeapBlock bytes(sizeof header + pixelBytes, HeapBlock::Content::Undefined, "QVHeap - malloc");
  std::memcpy(bytes.data(), &header, sizeof header);
  if (pixelBytes) std::memcpy(bytes.data() + sizeof header, bits_.data(), pixelBytes);
  return bytes;
}

void QVVSurface24::saveTagged(QVFile& file) {
  writeTagged(file, TaggedSurface24, infoBlockAndPixels().span());
}

void QVVSurface24::loadTagged(QVFile& file) {
  const HeapBlock record = readTagged(file, TaggedSurface24);
  if (record.empty()) return;
  QVDib dib;
  dib.loadPacked(record.span());
  if (!dib.empty()) {
    assignDib(dib);
    return;
  }
  // No bitmap tells of a surface without extent.
  BitmapInfoHeader header;
  std::memcpy(&header, record.data(), sizeof header);
  create(header.width, header.height);
}

void QVVSurface24::writeBmp(QVFile& file) {
  writeBitmapFile(file, TaggedSurface24, infoBlockAndPixels().span());
}

}  // namespace qv
