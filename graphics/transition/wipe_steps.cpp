/// The rectangles of flush wipes and sliding wipes: along each axis the shown part grows by
/// sixteenths from somewhere, or is whole.

#include <algorithm>
#include <iterator>

#include "graphics/transition/effects.h"

namespace qv {

namespace {

enum class Growth { Whole, FromStart, FromEnd, FromMiddle, FromBothEnds };

struct WipeRow {
  Growth x, y;
};

constexpr int32_t FirstFlushWipe = 10, FirstSlidingWipe = 30;
constexpr int32_t LastStep = 16;

constexpr WipeRow Wipes[] = {
    {Growth::FromStart, Growth::FromStart},        // 10, 30
    {Growth::FromStart, Growth::Whole},            // 11, 31
    {Growth::FromStart, Growth::FromEnd},          // 12, 32
    {Growth::Whole, Growth::FromEnd},              // 13, 33
    {Growth::FromEnd, Growth::FromEnd},            // 14, 34
    {Growth::FromEnd, Growth::Whole},              // 15, 35
    {Growth::FromEnd, Growth::FromStart},          // 16, 36
    {Growth::Whole, Growth::FromStart},            // 17, 37
    {Growth::Whole, Growth::FromMiddle},           // 18
    {Growth::FromMiddle, Growth::Whole},           // 19
    {Growth::FromMiddle, Growth::FromMiddle},      // 20
    {Growth::Whole, Growth::FromBothEnds},         // 21
    {Growth::FromBothEnds, Growth::Whole},         // 22
    {Growth::FromBothEnds, Growth::FromBothEnds},  // 23
};

struct Band {
  int32_t from, to;
};

/// `grown` pixels of an axis that goes from `start` to `end`. Halves truncate towards zero, also
/// where a narrow target has been outgrown.
Band grownBand(Growth growth, int32_t start, int32_t end, int32_t grown) {
  switch (growth) {
    case Growth::FromStart:
      return {start, start + grown};
    case Growth::FromEnd:
      return {end - grown, end};
    case Growth::FromMiddle: {
      const int32_t from = (end - start - grown) / 2 + start;
      return {from, from + grown};
    }
    default:
      return {start, end};
  }
}

int32_t grownAt(int32_t extent, int32_t step) {
  return std::max(extent / LastStep, 1) * step;
}

/// Bands at the edges that are not whole, in the order top, left, bottom, right.
std::vector<Rectangle> edgeBands(const WipeRow& row, const Rectangle& rect, int32_t width,
                                 int32_t height) {
  const bool rows = row.y == Growth::FromBothEnds, columns = row.x == Growth::FromBothEnds;
  const int32_t w = width / 2, h = height / 2;
  std::vector<Rectangle> bands;
  if (rows) bands.push_back({rect.left, rect.top, rect.right, rect.top + h});
  if (columns) bands.push_back({rect.left, rect.top, rect.left + w, rect.bottom});
  if (rows) bands.push_back({rect.left, rect.bottom - h, rect.right, rect.bottom});
  if (columns) bands.push_back({rect.right - w, rect.top, rect.right, rect.bottom});
  return bands;
}

}  // namespace

std::vector<Rectangle> wipeStep(int32_t effect, const Rectangle& rect, int32_t step) {
  if (step >= LastStep) return {rect};
  const int32_t row = effect - (effect >= FirstSlidingWipe ? FirstSlidingWipe : FirstFlushWipe);
  const WipeRow& wipe = Wipes[row];
  const int32_t width = grownAt(rect.width(), step), height = grownAt(rect.height(), step);
  if (wipe.x == Growth::FromBothEnds || wipe.y == Growth::FromBothEnds)
    return edgeBands(wipe, rect, width, height);
  const Band x = grownBand(wipe.x, rect.left, rect.right, width);
  const Band y = grownBand(wipe.y, rect.top, rect.bottom, height);
  return {{x.from, y.from, x.to, y.to}};
}

}  // namespace qv
