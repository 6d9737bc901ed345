#include "graphics/region.h"

#include <algorithm>

#include "graphics/surface.h"

namespace qv {

namespace {

/// The up to four parts of `from` outside `hole`, which meets it.
std::vector<Rectangle> partsOutside(const Rectangle& from, const Rectangle& hole) {
  const Rectangle met = from.intersected(hole);
  const Rectangle parts[] = {{from.left, from.top, from.right, met.top},
                             {from.left, met.top, met.left, met.bottom},
                             {met.right, met.top, from.right, met.bottom},
                             {from.left, met.bottom, from.right, from.bottom}};
  std::vector<Rectangle> kept;
  for (const Rectangle& part : parts)
    if (!part.empty()) kept.push_back(part);
  return kept;
}

bool holds(const Rectangle& outer, const Rectangle& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

/// The two side by side make one rectangle.
bool fitTogether(const Rectangle& a, const Rectangle& b) {
  if (a.left == b.left && a.right == b.right) return a.bottom == b.top || b.bottom == a.top;
  if (a.top == b.top && a.bottom == b.bottom) return a.right == b.left || b.right == a.left;
  return false;
}

}  // namespace

void Region::append(Rectangle rectangle) {
  for (size_t at = 0; at < rectangles_.size();) {
    if (!fitTogether(rectangles_[at], rectangle)) {
      ++at;
      continue;
    }
    // The larger one may now fit to one that was passed over.
    rectangle = rectangle.united(rectangles_[at]);
    rectangles_[at] = rectangles_.back();
    rectangles_.pop_back();
    at = 0;
  }
  rectangles_.push_back(rectangle);
}

void Region::add(const Rectangle& rectangle) {
  if (rectangle.empty()) return;
  for (const Rectangle& known : rectangles_)
    if (holds(known, rectangle)) return;
  // What is there gives way: the new rectangle stays whole.
  subtract(rectangle);
  append(rectangle);
}

void Region::subtract(const Rectangle& rectangle) {
  if (rectangle.empty()) return;
  std::vector<Rectangle> cut;
  for (size_t at = 0; at < rectangles_.size();) {
    if (rectangles_[at].intersected(rectangle).empty()) {
      ++at;
      continue;
    }
    const std::vector<Rectangle> parts = partsOutside(rectangles_[at], rectangle);
    cut.insert(cut.end(), parts.begin(), parts.end());
    rectangles_[at] = rectangles_.back();
    rectangles_.pop_back();
  }
  rectangles_.insert(rectangles_.end(), cut.begin(), cut.end());
}

Rectangle Region::bounds() const {
  Rectangle bounds;
  for (const Rectangle& rectangle : rectangles_)
    bounds = bounds.united(rectangle);
  return bounds;
}

namespace {

constexpr uint8_t Outside = 0, Edge = 1, SinglePixel = 2, Inside = 0xFF;

/// Turns a row of Outside and Inside into marks: the two ends of each run, or its single pixel.
void markRow(uint8_t* row, int32_t width) {
  bool leftSet = false;
  for (int32_t x = 0; x < width; ++x) {
    const bool set = row[x] == Inside;
    const bool rightSet = x + 1 < width && row[x + 1] == Inside;
    if (set) row[x] = leftSet && rightSet ? Outside : leftSet || rightSet ? Edge : SinglePixel;
    leftSet = set;
  }
}

/// False once the list is full.
bool collectRow(const uint8_t* row, int32_t width, int32_t y, ClipShape& shape) {
  int32_t start = -1;
  for (int32_t x = 0; x < width; ++x) {
    if (row[x] == Outside) continue;
    if (start < 0) start = x;
    if (row[x] == Edge && start == x) continue;  // the run goes on
    const Rectangle run = {start, y, x + 1, y + 1};
    shape.rectangles.push_back(run);
    shape.bounds = shape.bounds.united(run);
    if (shape.rectangles.size() >= ClipShape::MostRectangles) return false;
    start = -1;
  }
  return true;
}

/// `row` gives the pixels of row y from the top.
template <typename Row>
ClipShape scan(Row row, int32_t width, int32_t height, ColourKey key) {
  ClipShape shape;
  if (width <= 0 || height <= 0) return shape;
  if (key == KeyTopLeft) key = row(0)[0];
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x)
      row(y)[x] = row(y)[x] == key ? Outside : Inside;
    markRow(row(y), width);
  }
  for (int32_t y = 0; y < height; ++y)
    if (!collectRow(row(y), width, y, shape)) break;
  return shape;
}

}  // namespace

size_t ClipShape::firstBelow(int32_t y) const {
  return static_cast<size_t>(std::ranges::upper_bound(rectangles, y, {}, &Rectangle::bottom) -
                             rectangles.begin());
}

ClipShape scanClipShape(QVVSurface& scratch, ColourKey key) {
  const int32_t width = scratch.width(), height = scratch.height();
  const QVVSurface::Access access(scratch);
  return scan([&](int32_t y) { return access.row(y); }, width, height, key);
}

ClipShape scanClipShape(std::span<uint8_t> pixels, int32_t width, int32_t height, ColourKey key) {
  return scan([&](int32_t y) { return pixels.data() + static_cast<ptrdiff_t>(y) * width; }, width,
              height, key);
}

}  // namespace qv
