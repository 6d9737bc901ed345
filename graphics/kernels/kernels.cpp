#include "graphics/kernels/kernels.h"

#include <array>
#include <cstring>
#include <functional>
#include <limits>

#include "graphics/kernels/dither_cells.h"
#include "graphics/kernels/plain_kernels.h"
#include "graphics/kernels/vector_kernels.h"

namespace qv {
namespace {

constexpr int WholeBlend = 16;

bool nothingIn(const KernelRows& rows) {
  return rows.width <= 0 || rows.height <= 0;
}

/// The whole rectangle as one row, where rows follow one another in memory without a gap, as those
/// of a whole surface do, and no row reads what another wrote. Pixels are bytes.
KernelRows joined(const KernelRows& rows) {
  if (rows.targetStride != rows.width || rows.sourceStride != rows.width) return rows;
  const int64_t pixels = static_cast<int64_t>(rows.width) * rows.height;
  uint8_t* target = targetRow(rows, rows.height - 1);
  const uint8_t* source = sourceRow(rows, rows.height - 1);
  const std::less_equal<const uint8_t*> notAbove;
  const bool apart = notAbove(target + pixels, source) || notAbove(source + pixels, target);
  if (!apart || pixels > std::numeric_limits<int>::max()) return rows;
  const int width = static_cast<int>(pixels);
  return {target, width, source, width, width, 1};
}

/// The C library's copy is the fastest there is in either form. Rectangles that overlap are
/// allowed: each row arrives whole, and rows follow from the top.
void copyBytes(const KernelRows& given) {
  const KernelRows rows = joined(given);
  for (int y = 0; y < rows.height; ++y)
    std::memmove(targetRow(rows, y), sourceRow(rows, y), static_cast<size_t>(rows.width));
}

using DitherMasks = std::array<std::array<std::array<uint8_t, 2 * MostLanes>, 4>,
                               static_cast<size_t>(DitherLevels)>;

constexpr DitherMasks masksOfCells() {
  DitherMasks masks{};
  for (size_t level = 0; level < masks.size(); ++level)
    for (size_t row = 0; row < 4; ++row)
      for (size_t x = 0; x < masks[level][row].size(); ++x)
        masks[level][row][x] = DitherCells[level][row][x % 4] == 'X' ? 0xFF : 0;
  return masks;
}
constexpr DitherMasks Masks = masksOfCells();

void ditherVector(const KernelRows& rows, int level, int key) {
  const auto& masks = Masks[static_cast<size_t>(level)];
  const CellPattern pattern = {
      {masks[0].data(), masks[1].data(), masks[2].data(), masks[3].data()}, MostLanes, 0};
  vector::patternRows(rows, pattern, key);
}

/// Above this step a vector holds at most one pixel to copy, and going from one to the next is as
/// quick as looking at all.
constexpr int WidestPattern = static_cast<int>(MostLanes);

void combWide(const KernelRows& rows, int step, int key) {
  // The column of the next pixel, counted from the row's start.
  int64_t next = step - 1;
  for (int y = 0; y < rows.height; ++y, next -= rows.width) {
    uint8_t* target = targetRow(rows, y);
    const uint8_t* source = sourceRow(rows, y);
    for (; next < rows.width; next += step)
      if (source[next] != key) target[next] = source[next];
  }
}

void combVector(const KernelRows& rows, int step, int key) {
  if (step > WidestPattern) {
    combWide(rows, step, key);
    return;
  }
  // The shortest multiple of the step that is no shorter than a vector.
  const auto cell = static_cast<size_t>(step);
  const size_t period = (MostLanes + cell - 1) / cell * cell;
  std::array<uint8_t, 3 * MostLanes> mask{};
  for (size_t x = cell - 1; x < period + MostLanes; x += cell)
    mask[x] = 0xFF;
  const uint8_t* cells = mask.data();
  vector::patternRows(
      rows, {{cells, cells, cells, cells}, period, static_cast<size_t>(rows.width) % period}, key);
}

// The common forms of a loop with and without a key; what differs stands in the functions below.

void copyOrKey(KernelForm form, const KernelRows& rows, int key) {
  if (key == NoKey)
    copyRows(form, rows);
  else
    copyRowsKey(form, rows, static_cast<uint8_t>(key));
}

void comb(KernelForm form, const KernelRows& rows, int step, int key) {
  if (step <= 1)
    copyOrKey(form, rows, key);
  else if (nothingIn(rows))
    return;
  else
    (form == KernelForm::Vector ? combVector : plain::combRows)(rows, step, key);
}

void dither(KernelForm form, const KernelRows& rows, int level, int key) {
  if (level < 1)
    copyOrKey(form, rows, key);
  else if (level >= DitherLevels || nothingIn(rows))
    return;
  else
    (form == KernelForm::Vector ? ditherVector : plain::ditherRows)(rows, level, key);
}

void expand(KernelForm form, const KernelRows& rows, const uint32_t* palette, int key) {
  if (nothingIn(rows)) return;
  (form == KernelForm::Vector ? vector::expandRows : plain::expandRows)(rows, palette, key);
}

void blend(KernelForm form, const KernelRows& rows, const uint32_t* palette, int level, int key) {
  if (level < 1 || nothingIn(rows)) return;
  if (level >= WholeBlend)
    expand(form, rows, palette, key);
  else
    (form == KernelForm::Vector ? vector::blendRows : plain::blendRows)(rows, palette, level, key);
}

}  // namespace

void copyRows(KernelForm, const KernelRows& rows) {
  if (!nothingIn(rows)) copyBytes(rows);
}

void copyRowsKey(KernelForm form, const KernelRows& rows, uint8_t key) {
  if (nothingIn(rows)) return;
  (form == KernelForm::Vector ? vector::copyRowsKey : plain::copyRowsKey)(joined(rows), key);
}

void combRows(KernelForm form, const KernelRows& rows, int step) {
  comb(form, rows, step, NoKey);
}
void combRowsKey(KernelForm form, const KernelRows& rows, int step, uint8_t key) {
  comb(form, rows, step, key);
}

void ditherRows(KernelForm form, const KernelRows& rows, int level) {
  dither(form, rows, level, NoKey);
}
void ditherRowsKey(KernelForm form, const KernelRows& rows, int level, uint8_t key) {
  dither(form, rows, level, key);
}

void expandRows(KernelForm form, const KernelRows& rows, const uint32_t* palette) {
  expand(form, rows, palette, NoKey);
}
void expandRowsKey(KernelForm form, const KernelRows& rows, const uint32_t* palette, uint8_t key) {
  expand(form, rows, palette, key);
}

void blendRows(KernelForm form, const KernelRows& rows, const uint32_t* palette, int level) {
  blend(form, rows, palette, level, NoKey);
}
void blendRowsKey(KernelForm form, const KernelRows& rows, const uint32_t* palette, int level,
                  uint8_t key) {
  blend(form, rows, palette, level, key);
}

void copyRows32(KernelForm, const KernelRows& rows) {
  if (nothingIn(rows)) return;
  KernelRows bytes = rows;
  bytes.width *= static_cast<int>(sizeof(uint32_t));
  copyBytes(bytes);
}

}  // namespace qv
