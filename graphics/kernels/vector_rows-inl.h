// Single rows in vectors, for vector_kernels.cpp alone, which includes this file once per target;
// hence the toggled guard. No row writes outside its pixels: a row's end is done by a vector that
// ends there, over pixels already done, where doing them twice changes nothing, and by shorter and
// shorter vectors elsewhere.

#if defined(QV_VECTOR_ROWS) == defined(HWY_TARGET_TOGGLE)
#ifdef QV_VECTOR_ROWS
#undef QV_VECTOR_ROWS
#else
#define QV_VECTOR_ROWS
#endif

#include <algorithm>
#include <cstring>

#include <hwy/highway.h>

#include "graphics/kernels/vector_kernels.h"

HWY_BEFORE_NAMESPACE();
namespace qv::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Where a row's cells begin: `cells` repeat with `period`, the row's first pixel is cell `phase`.
struct PatternRow {
  const uint8_t* cells;
  size_t period, phase;
};

/// Entry by entry.
struct WordLookUp {
  explicit WordLookUp(const uint32_t* words) : palette(words) {}
  const uint32_t* palette;

  HWY_INLINE void row(uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                      size_t width) const {
    size_t x = 0;
    // One load of eight indices instead of eight loads.
    for (; x + 8 <= width; x += 8) {
      uint64_t indices;
      std::memcpy(&indices, source + x, sizeof indices);
      for (size_t i = 0; i < 8; ++i)
        target[x + i] = palette[indices >> (8 * i) & 0xFF];
    }
    for (; x < width; ++x)
      target[x] = palette[source[x]];
  }
};

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

// The least that a compiler's own processor has: plain loops without a branch, which the compiler
// turns into whatever vectors are certain there.

HWY_INLINE void keyRow(uint8_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                       size_t width, uint8_t key) {
  for (size_t x = 0; x < width; ++x)
    target[x] = source[x] == key ? target[x] : source[x];
}

template <bool Keyed>
HWY_INLINE void patternRow(uint8_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                           size_t width, PatternRow pattern, uint8_t key) {
  size_t phase = pattern.phase;
  for (size_t start = 0; start < width; start += MostLanes) {
    const uint8_t* HWY_RESTRICT cells = pattern.cells + phase;
    const size_t count = std::min(MostLanes, width - start);
    for (size_t i = 0; i < count; ++i) {
      const uint8_t pixel = source[start + i];
      const uint8_t mask = Keyed && pixel == key ? 0 : cells[i];
      target[start + i] = static_cast<uint8_t>((target[start + i] & ~mask) | (pixel & mask));
    }
    phase = (phase + MostLanes) % pattern.period;
  }
}

HWY_INLINE void keyRow32(uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                         const uint32_t* HWY_RESTRICT looked, size_t width, uint8_t key) {
  for (size_t x = 0; x < width; ++x)
    target[x] = source[x] == key ? target[x] : looked[x];
}

template <bool Keyed>
HWY_INLINE void blendRow(uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                         const uint32_t* HWY_RESTRICT looked, size_t width, uint16_t level,
                         uint8_t key) {
  // Blue and red in one word, green and the fourth in the other: a sum of sixteenths of two bytes
  // needs twelve bits of the sixteen.
  const uint32_t ofTarget = 16u - level, ofSource = level;
  constexpr uint32_t Even = 0x00FF00FF;
  for (size_t x = 0; x < width; ++x) {
    const uint32_t t = target[x], s = looked[x];
    const uint32_t even = (t & Even) * ofTarget + (s & Even) * ofSource;
    const uint32_t odd = (t >> 8 & Even) * ofTarget + (s >> 8 & Even) * ofSource;
    const uint32_t mixed = (even >> 4 & Even) | (odd << 4 & ~Even);
    target[x] = Keyed && source[x] == key ? t : mixed;
  }
}

#else

template <class D>
using HalfOf = hn::Half<D>;

/// Pixels other than the key.
template <class D>
HWY_INLINE void keyRowOf(D d, uint8_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                         size_t width, uint8_t key) {
  const size_t lanes = hn::Lanes(d);
  const auto keys = hn::Set(d, key);
  const auto doVector = [&](size_t x) HWY_ATTR {
    const auto pixels = hn::LoadU(d, source + x);
    hn::StoreU(hn::IfThenElse(hn::Eq(pixels, keys), hn::LoadU(d, target + x), pixels), d,
               target + x);
  };
  if (width >= lanes) {
    size_t x = 0;
    for (; x + lanes <= width; x += lanes)
      doVector(x);
    if (x < width) doVector(width - lanes);
  } else if constexpr (hn::MaxLanes(D()) > 1) {
    keyRowOf(HalfOf<D>(), target, source, width, key);
  }
}

HWY_INLINE void keyRow(uint8_t* target, const uint8_t* source, size_t width, uint8_t key) {
  keyRowOf(hn::CappedTag<uint8_t, MostLanes>(), target, source, width, key);
}

/// Pixels of set cells, and of those with a key only the ones other than the key.
template <bool Keyed, class D>
HWY_INLINE void patternRowOf(D d, uint8_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                             size_t width, PatternRow pattern, uint8_t key) {
  const size_t lanes = hn::Lanes(d);
  const auto keys = hn::Set(d, key);
  const auto doVector = [&](size_t x, size_t phase) HWY_ATTR {
    const auto pixels = hn::LoadU(d, source + x), old = hn::LoadU(d, target + x);
    auto mixed = hn::IfVecThenElse(hn::LoadU(d, pattern.cells + phase), pixels, old);
    if constexpr (Keyed) mixed = hn::IfThenElse(hn::Eq(pixels, keys), old, mixed);
    hn::StoreU(mixed, d, target + x);
  };
  if (width >= lanes) {
    const size_t advance = lanes % pattern.period;
    size_t x = 0, phase = pattern.phase;
    for (; x + lanes <= width; x += lanes) {
      doVector(x, phase);
      phase += advance;
      if (phase >= pattern.period) phase -= pattern.period;
    }
    if (x < width) doVector(width - lanes, (pattern.phase + width - lanes) % pattern.period);
  } else if constexpr (hn::MaxLanes(D()) > 1) {
    patternRowOf<Keyed>(HalfOf<D>(), target, source, width, pattern, key);
  }
}

template <bool Keyed>
HWY_INLINE void patternRow(uint8_t* target, const uint8_t* source, size_t width, PatternRow pattern,
                           uint8_t key) {
  patternRowOf<Keyed>(hn::CappedTag<uint8_t, MostLanes>(), target, source, width, pattern, key);
}

using Words = hn::CappedTag<uint32_t, MostLanes / sizeof(uint32_t)>;

/// Which of the pixels at `source` are the key, as a mask of words.
template <class D>
HWY_INLINE auto keyMask(D d, const uint8_t* source, uint8_t key) {
  const hn::Rebind<uint8_t, D> bytes;
  return hn::Eq(hn::PromoteTo(d, hn::LoadU(bytes, source)), hn::Set(d, uint32_t{key}));
}

template <class D>
HWY_INLINE void keyRow32Of(D d, uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                           const uint32_t* HWY_RESTRICT looked, size_t width, uint8_t key) {
  const size_t lanes = hn::Lanes(d);
  size_t x = 0;
  for (; x + lanes <= width; x += lanes)
    hn::StoreU(hn::IfThenElse(keyMask(d, source + x, key), hn::LoadU(d, target + x),
                              hn::LoadU(d, looked + x)),
               d, target + x);
  if constexpr (hn::MaxLanes(D()) > 1)
    if (x < width) keyRow32Of(HalfOf<D>(), target + x, source + x, looked + x, width - x, key);
}

HWY_INLINE void keyRow32(uint32_t* target, const uint8_t* source, const uint32_t* looked,
                         size_t width, uint8_t key) {
  keyRow32Of(Words(), target, source, looked, width, key);
}

/// Every byte becomes (target * (16 - level) + source * level) / 16, the fourth too. A sum needs
/// twelve bits, so that two bytes of each word's four fit the word without unpacking.
template <bool Keyed, class D>
HWY_INLINE void blendRowOf(D d, uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                           const uint32_t* HWY_RESTRICT looked, size_t width, uint16_t level,
                           uint8_t key) {
  const hn::Repartition<uint16_t, D> halves;
  const auto ofSource = hn::Set(halves, level);
  const auto ofTarget = hn::Set(halves, static_cast<uint16_t>(16 - level));
  const auto low = hn::Set(halves, uint16_t{0xFF});
  const size_t lanes = hn::Lanes(d);
  size_t x = 0;
  for (; x + lanes <= width; x += lanes) {
    const auto oldWords = hn::LoadU(d, target + x);
    const auto old = hn::BitCast(halves, oldWords);
    const auto add = hn::BitCast(halves, hn::LoadU(d, looked + x));
    const auto even =
        hn::Add(hn::Mul(hn::And(old, low), ofTarget), hn::Mul(hn::And(add, low), ofSource));
    const auto odd = hn::Add(hn::Mul(hn::ShiftRight<8>(old), ofTarget),
                             hn::Mul(hn::ShiftRight<8>(add), ofSource));
    const auto mixed =
        hn::BitCast(d, hn::Or(hn::ShiftRight<4>(even), hn::AndNot(low, hn::ShiftLeft<4>(odd))));
    if constexpr (Keyed)
      hn::StoreU(hn::IfThenElse(keyMask(d, source + x, key), oldWords, mixed), d, target + x);
    else
      hn::StoreU(mixed, d, target + x);
  }
  if constexpr (hn::MaxLanes(D()) > 1)
    if (x < width)
      blendRowOf<Keyed>(HalfOf<D>(), target + x, source + x, looked + x, width - x, level, key);
}

template <bool Keyed>
HWY_INLINE void blendRow(uint32_t* target, const uint8_t* source, const uint32_t* looked,
                         size_t width, uint16_t level, uint8_t key) {
  blendRowOf<Keyed>(Words(), target, source, looked, width, level, key);
}

#endif  // HWY_TARGET == HWY_SCALAR

#if HWY_TARGET == HWY_AVX3_DL

/// The palette as four tables of 256 bytes, each in four registers.
class TableLookUp {
 public:
  HWY_INLINE explicit TableLookUp(const uint32_t* palette) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(palette);
    for (size_t part = 0; part < 4; ++part)
      hn::LoadInterleaved4(Bytes(), bytes + 256 * part, table_[0][part], table_[1][part],
                           table_[2][part], table_[3][part]);
  }

  HWY_INLINE void row(uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                      size_t width) const {
    constexpr size_t Lanes = MostLanes, Quarter = Lanes / 4;
    const hn::Full512<uint32_t> words;
    size_t x = 0;
    Vec out[4];
    for (; x + Lanes <= width; x += Lanes) {
      lookUp(hn::LoadU(Bytes(), source + x), out);
      for (size_t i = 0; i < 4; ++i)
        hn::StoreU(hn::BitCast(words, out[i]), words, target + x + Quarter * i);
    }
    if (x == width) return;
    // Masked loads and stores of this target touch nothing beside the mask.
    const size_t left = width - x;
    lookUp(hn::MaskedLoad(hn::FirstN(Bytes(), left), Bytes(), source + x), out);
    for (size_t i = 0; i < 4 && Quarter * i < left; ++i)
      hn::BlendedStore(hn::BitCast(words, out[i]), hn::FirstN(words, left - Quarter * i), words,
                       target + x + Quarter * i);
  }

 private:
  using Bytes = hn::Full512<uint8_t>;
  using Vec = hn::Vec<Bytes>;

  /// 64 indices to 64 words, in order.
  HWY_INLINE void lookUp(Vec indices, Vec (&out)[4]) const {
    const hn::Full512<uint32_t> words;
    const hn::Full512<uint16_t> halves;
    // Interleaving works within each 16 bytes, so the groups of four change places first.
    alignas(64) static constexpr uint32_t Transposed[16] = {0, 4, 8,  12, 1, 5, 9,  13,
                                                            2, 6, 10, 14, 3, 7, 11, 15};
    indices = hn::BitCast(Bytes(), hn::TableLookupLanes(hn::BitCast(words, indices),
                                                        hn::SetTableIndices(words, Transposed)));
    Vec channel[4];
    // The tables' halves by the index's high bit. Highway has no look-up in 128 bytes.
    const __mmask64 upper = _mm512_movepi8_mask(indices.raw);
    for (size_t i = 0; i < 4; ++i)
      channel[i].raw = _mm512_mask_blend_epi8(
          upper, _mm512_permutex2var_epi8(table_[i][0].raw, indices.raw, table_[i][1].raw),
          _mm512_permutex2var_epi8(table_[i][2].raw, indices.raw, table_[i][3].raw));
    const auto lowBg = hn::BitCast(halves, hn::InterleaveLower(Bytes(), channel[0], channel[1]));
    const auto lowRf = hn::BitCast(halves, hn::InterleaveLower(Bytes(), channel[2], channel[3]));
    const auto highBg = hn::BitCast(halves, hn::InterleaveUpper(Bytes(), channel[0], channel[1]));
    const auto highRf = hn::BitCast(halves, hn::InterleaveUpper(Bytes(), channel[2], channel[3]));
    out[0] = hn::BitCast(Bytes(), hn::InterleaveLower(halves, lowBg, lowRf));
    out[1] = hn::BitCast(Bytes(), hn::InterleaveUpper(halves, lowBg, lowRf));
    out[2] = hn::BitCast(Bytes(), hn::InterleaveLower(halves, highBg, highRf));
    out[3] = hn::BitCast(Bytes(), hn::InterleaveUpper(halves, highBg, highRf));
  }

  Vec table_[4][4];  ///< by channel, then 64 entries each
};

#endif  // HWY_TARGET == HWY_AVX3_DL

}  // namespace qv::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // toggled guard
