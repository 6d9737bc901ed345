#include "graphics/kernels/vector_kernels.h"

#include <algorithm>
#include <cstring>

// The byte tables of the newest processors are wanted too; Highway leaves them out unless asked.
#define HWY_WANT_AVX3_DL 1
// Vectors whose length is known only at run time cannot be halved as the row ends need it.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)

// This file is compiled once for each target; vector_rows-inl.h holds what differs between them.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "graphics/kernels/vector_kernels.cpp"
#include <hwy/foreach_target.h>  // before highway.h
#include <hwy/highway.h>

#include "graphics/kernels/vector_rows-inl.h"
#include "platform/vector_dispatch.h"

HWY_BEFORE_NAMESPACE();
namespace qv::HWY_NAMESPACE {

void copyRowsKeyLoop(const KernelRows& rows, uint8_t key) {
  const auto width = static_cast<size_t>(rows.width);
  for (int y = 0; y < rows.height; ++y)
    keyRow(targetRow(rows, y), sourceRow(rows, y), width, key);
}

void patternRowsLoop(const KernelRows& rows, const CellPattern& pattern, int key) {
  const auto width = static_cast<size_t>(rows.width);
  size_t phase = 0;
  for (int y = 0; y < rows.height; ++y) {
    const PatternRow cells = {pattern.rows[y % 4], pattern.period, phase};
    if (key == NoKey)
      patternRow<false>(targetRow(rows, y), sourceRow(rows, y), width, cells, 0);
    else
      patternRow<true>(targetRow(rows, y), sourceRow(rows, y), width, cells,
                       static_cast<uint8_t>(key));
    phase += pattern.carry;
    if (phase >= pattern.period) phase -= pattern.period;
  }
}

/// Colours are looked up for this many pixels at a time, into a buffer that stays in the nearest
/// cache, and mixed with the target from there.
constexpr size_t ChunkPixels = 512;

/// Gives `mix` (target words, source bytes, looked-up words, count) the rows in chunks.
template <class LookUp, class Mix>
HWY_INLINE void eachChunk(const KernelRows& rows, const LookUp& lookUp, const Mix& mix) {
  alignas(64) uint32_t looked[ChunkPixels];
  const auto width = static_cast<size_t>(rows.width);
  for (int y = 0; y < rows.height; ++y) {
    auto* target = reinterpret_cast<uint32_t*>(targetRow(rows, y));
    const uint8_t* source = sourceRow(rows, y);
    for (size_t x = 0; x < width; x += ChunkPixels) {
      const size_t count = std::min(ChunkPixels, width - x);
      lookUp.row(looked, source + x, count);
      mix(target + x, source + x, looked, count);
    }
  }
}

template <class LookUp>
HWY_INLINE void expandWith(const KernelRows& rows, const LookUp& lookUp, int key) {
  if (key == NoKey) {
    for (int y = 0; y < rows.height; ++y)
      lookUp.row(reinterpret_cast<uint32_t*>(targetRow(rows, y)), sourceRow(rows, y),
                 static_cast<size_t>(rows.width));
    return;
  }
  const auto keyByte = static_cast<uint8_t>(key);
  eachChunk(rows, lookUp,
            [keyByte](uint32_t* target, const uint8_t* source, const uint32_t* looked, size_t count)
                HWY_ATTR { keyRow32(target, source, looked, count, keyByte); });
}

template <class LookUp>
HWY_INLINE void blendWith(const KernelRows& rows, const LookUp& lookUp, int level, int key) {
  const auto weight = static_cast<uint16_t>(level);
  const auto keyByte = static_cast<uint8_t>(key);
  if (key == NoKey)
    eachChunk(
        rows, lookUp,
        [weight](uint32_t* target, const uint8_t* source, const uint32_t* looked, size_t count)
            HWY_ATTR { blendRow<false>(target, source, looked, count, weight, 0); });
  else
    eachChunk(rows, lookUp,
              [weight, keyByte](uint32_t* target, const uint8_t* source, const uint32_t* looked,
                                size_t count)
                  HWY_ATTR { blendRow<true>(target, source, looked, count, weight, keyByte); });
}

/// Whether the rectangle is large enough to be worth cutting the palette into byte tables.
[[maybe_unused]] bool worthTables(const KernelRows& rows) {
  constexpr int64_t FewestPixels = 1024;
  return static_cast<int64_t>(rows.width) * rows.height >= FewestPixels;
}

void expandRowsLoop(const KernelRows& rows, const uint32_t* palette, int key) {
#if HWY_TARGET == HWY_AVX3_DL
  if (worthTables(rows)) return expandWith(rows, TableLookUp(palette), key);
#endif
  expandWith(rows, WordLookUp(palette), key);
}

void blendRowsLoop(const KernelRows& rows, const uint32_t* palette, int level, int key) {
#if HWY_TARGET == HWY_AVX3_DL
  if (worthTables(rows)) return blendWith(rows, TableLookUp(palette), level, key);
#endif
  blendWith(rows, WordLookUp(palette), level, key);
}

}  // namespace qv::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace qv {

QV_VECTOR_FORMS(copyRowsKeyLoop);
QV_VECTOR_FORMS(patternRowsLoop);
QV_VECTOR_FORMS(expandRowsLoop);
QV_VECTOR_FORMS(blendRowsLoop);

namespace vector {

void copyRowsKey(const KernelRows& rows, uint8_t key) {
  QV_VECTOR_LOOP(copyRowsKeyLoop)(rows, key);
}
void patternRows(const KernelRows& rows, const CellPattern& pattern, int key) {
  QV_VECTOR_LOOP(patternRowsLoop)(rows, pattern, key);
}
void expandRows(const KernelRows& rows, const uint32_t* palette, int key) {
  QV_VECTOR_LOOP(expandRowsLoop)(rows, palette, key);
}
void blendRows(const KernelRows& rows, const uint32_t* palette, int level, int key) {
  QV_VECTOR_LOOP(blendRowsLoop)(rows, palette, level, key);
}

}  // namespace vector
}  // namespace qv
#endif  // HWY_ONCE
