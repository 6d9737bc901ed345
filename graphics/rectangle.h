#pragma once

/// Rectangles of pixels and the codes that stand for places.

#include <algorithm>
#include <cstdint>

namespace qv {

/// The nearest coordinate: sums of wild numbers from a scene stay numbers.
constexpr int32_t nearestCoordinate(int64_t value) {
  return static_cast<int32_t>(std::clamp(value, int64_t{INT32_MIN}, int64_t{INT32_MAX}));
}

/// Right and bottom are exclusive.
struct Rectangle {
  int32_t left = 0, top = 0, right = 0, bottom = 0;

  static constexpr Rectangle at(int32_t x, int32_t y, int32_t width, int32_t height) {
    return {x, y, nearestCoordinate(int64_t{x} + width), nearestCoordinate(int64_t{y} + height)};
  }
  constexpr int32_t width() const { return nearestCoordinate(int64_t{right} - left); }
  constexpr int32_t height() const { return nearestCoordinate(int64_t{bottom} - top); }
  constexpr bool empty() const { return right <= left || bottom <= top; }
  constexpr bool contains(int32_t x, int32_t y) const {
    return x >= left && x < right && y >= top && y < bottom;
  }
  constexpr Rectangle normalised() const {
    return {std::min(left, right), std::min(top, bottom), std::max(left, right),
            std::max(top, bottom)};
  }
  constexpr Rectangle moved(int32_t dx, int32_t dy) const {
    return {nearestCoordinate(int64_t{left} + dx), nearestCoordinate(int64_t{top} + dy),
            nearestCoordinate(int64_t{right} + dx), nearestCoordinate(int64_t{bottom} + dy)};
  }
  constexpr Rectangle intersected(const Rectangle& other) const {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
  }
  /// The smallest rectangle round both; an empty one adds nothing.
  constexpr Rectangle united(const Rectangle& other) const {
    if (empty()) return other;
    if (other.empty()) return *this;
    return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
            std::max(bottom, other.bottom)};
  }
  constexpr bool operator==(const Rectangle&) const = default;
};

}  // namespace qv
