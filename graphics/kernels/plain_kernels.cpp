#include "graphics/kernels/plain_kernels.h"

#include <array>
#include <cstring>
#include <utility>

#include "graphics/kernels/dither_cells.h"

namespace qv::plain {
namespace {

// Surfaces of 32 bits are whole words in memory.
uint32_t* targetWords(const KernelRows& rows, int y) {
  return reinterpret_cast<uint32_t*>(targetRow(rows, y));
}

}  // namespace

void copyRowsKey(const KernelRows& rows, uint8_t key) {
  for (int y = 0; y < rows.height; ++y) {
    uint8_t* target = targetRow(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (int x = 0; x < rows.width; ++x)
      if (source[x] != key) target[x] = source[x];
  }
}

void combRows(const KernelRows& rows, int step, int key) {
  // The counter is not set anew at a row: where the step does not divide the width, the comb
  // slants, and the transitions live on that.
  int left = step;
  for (int y = 0; y < rows.height; ++y) {
    uint8_t* target = targetRow(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (int x = 0; x < rows.width; ++x) {
      if (--left) continue;
      left = step;
      if (source[x] != key) target[x] = source[x];
    }
  }
}

void ditherRows(const KernelRows& rows, int level, int key) {
  for (int y = 0; y < rows.height; ++y) {
    const char* cells = DitherCells[level][y % 4];
    uint8_t* target = targetRow(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (int x = 0; x < rows.width; ++x)
      if (cells[x % 4] == 'X' && source[x] != key) target[x] = source[x];
  }
}

void expandRows(const KernelRows& rows, const uint32_t* palette, int key) {
  for (int y = 0; y < rows.height; ++y) {
    uint32_t* target = targetWords(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (int x = 0; x < rows.width; ++x)
      if (source[x] != key) target[x] = palette[source[x]];
  }
}

namespace {

/// `value` times a number below 16 by shifts and adds.
template <uint32_t Factor>
constexpr uint32_t times(uint32_t value) {
  uint32_t product = 0;
  if constexpr (Factor & 1) product += value;
  if constexpr (Factor & 2) product += value << 1;
  if constexpr (Factor & 4) product += value << 2;
  if constexpr (Factor & 8) product += value << 3;
  return product;
}

/// Blue and red go together in one word, green in another. The masks fall before the shift back,
/// so that of every channel only the high four bits stay, and nothing of the fourth byte: the
/// coarse mixing is how a surface without vectors looks.
template <uint32_t Level>
uint32_t mixed(uint32_t target, uint32_t source) {
  constexpr uint32_t RedBlue = 0xFF00FF, Green = 0xFF00;
  const uint32_t redBlue = times<16 - Level>(target & RedBlue) + times<Level>(source & RedBlue);
  const uint32_t green = times<16 - Level>(target & Green) + times<Level>(source & Green);
  return (redBlue & 0xFF00FF00) >> 4 | (green & 0xFF0000) >> 4;
}

template <uint32_t Level>
void blendLevel(const KernelRows& rows, const uint32_t* palette, int key) {
  for (int y = 0; y < rows.height; ++y) {
    uint32_t* target = targetWords(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (int x = 0; x < rows.width; ++x)
      if (source[x] != key) target[x] = mixed<Level>(target[x], palette[source[x]]);
  }
}

using Loop = void (*)(const KernelRows&, const uint32_t*, int);
/// Levels 1 to 15 in their order.
template <size_t... Index>
constexpr auto loopsFor(std::index_sequence<Index...>) {
  return std::array<Loop, sizeof...(Index)>{blendLevel<Index + 1>...};
}
constexpr auto BlendLoops = loopsFor(std::make_index_sequence<15>());

}  // namespace

void blendRows(const KernelRows& rows, const uint32_t* palette, int level, int key) {
  BlendLoops[static_cast<size_t>(level - 1)](rows, palette, key);
}

}  // namespace qv::plain
