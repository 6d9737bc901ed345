#include "graphics/overlap.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace qv {

namespace {

constexpr int VectorMove = 8, VectorGroup = 16, PlainMove = 4, PixelBytes32 = 4;

bool inVectorMoves(KernelForm form, int width) {
  return form == KernelForm::Vector && width >= VectorGroup;
}

template <int Pixels>
void move(uint8_t* target, const uint8_t* source) {
  std::array<uint8_t, Pixels> held;
  std::memcpy(held.data(), source, Pixels);
  std::memcpy(target, held.data(), Pixels);
}

template <int Pixels>
void moveKey(uint8_t* target, const uint8_t* source, uint8_t key) {
  std::array<uint8_t, Pixels> held;
  std::memcpy(held.data(), source, Pixels);
  for (int i = 0; i < Pixels; ++i)
    if (held[static_cast<size_t>(i)] != key) target[i] = held[static_cast<size_t>(i)];
}

/// Calls `row` with target and source of each row, from the top.
template <class Row>
void eachRow(const KernelRows& rows, Row row) {
  for (int y = 0; y < rows.height; ++y)
    row(rows.target - static_cast<ptrdiff_t>(y) * rows.targetStride,
        rows.source - static_cast<ptrdiff_t>(y) * rows.sourceStride);
}

}  // namespace

void copyRowsWithin(KernelForm form, const KernelRows& rows) {
  const bool vector = inVectorMoves(form, rows.width);
  const int moved =
      vector ? rows.width - rows.width % VectorGroup : rows.width - rows.width % PlainMove;
  eachRow(rows, [&](uint8_t* target, const uint8_t* source) {
    int x = 0;
    if (vector)
      for (; x < moved; x += VectorMove)
        move<VectorMove>(target + x, source + x);
    for (; x < moved; x += PlainMove)
      move<PlainMove>(target + x, source + x);
    for (; x < rows.width; ++x)
      target[x] = source[x];
  });
}

void copyRowsKeyWithin(KernelForm form, const KernelRows& rows, uint8_t key) {
  const int moved = inVectorMoves(form, rows.width) ? rows.width - rows.width % VectorGroup : 0;
  eachRow(rows, [&](uint8_t* target, const uint8_t* source) {
    int x = 0;
    for (; x < moved; x += VectorMove)
      moveKey<VectorMove>(target + x, source + x, key);
    for (; x < rows.width; ++x)
      moveKey<1>(target + x, source + x, key);
  });
}

void copyRows32Within(const KernelRows& rows) {
  eachRow(rows, [&](uint8_t* target, const uint8_t* source) {
    for (int x = 0; x < rows.width; ++x)
      move<PixelBytes32>(target + static_cast<ptrdiff_t>(x) * PixelBytes32,
                         source + static_cast<ptrdiff_t>(x) * PixelBytes32);
  });
}

}  // namespace qv
