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

#include <bit>
#include <cstring>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "graphics/kernels/block_vectors.h"
#include "graphics/kernels/vector_kernels.h"

HWY_BEFORE_NAMESPACE();
namespace qv::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
namespace hn = qv::blocks;
#else
namespace hn = hwy::HWY_NAMESPACE;
#endif

/// Where a row's cells begin: `cells` repeat with `period`, the row's first pixel is cell `phase`.
struct PatternRow {
  const uint8_t* cells;
  size_t period, phase;
};

/// Entry by entry. Gathering instructions are a third quicker where they are quick at all; where a
/// processor's faults are mended in its microcode they take many times as long.
struct WordLookUp {
  explicit WordLookUp(const uint32_t* words) : palette(words) {}
  const uint32_t* palette;

  HWY_INLINE void row(uint32_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                      size_t width) const {
    size_t x = 0;
    // One load of eight indices instead of eight loads.
    static_assert(std::endian::native == std::endian::little);
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

/// Shorter vectors than a line of the cache wait for memory less when it is asked for some lines
/// ahead; what lies behind a row's end is only looked at.
constexpr size_t CacheLine = 64, FetchAhead = 8 * CacheLine;

/// How far behind `place` the next whole vector begins, 1 to `lanes`. Rows begin anywhere, and a
/// store that lies across two cache lines costs two; loads that do matter less.
HWY_INLINE size_t untilAligned(const uint8_t* place, size_t lanes) {
  return lanes - (reinterpret_cast<uintptr_t>(place) & (lanes - 1));
}

/// `old` where a pixel is the key, else the pixel.
template <class D, class V>
HWY_INLINE V unlessKey(D d, V pixels, V keys, V old) {
#if HWY_TARGET <= HWY_AVX3
  static_cast<void>(d);
  return hn::IfThenElse(hn::Eq(pixels, keys), old, pixels);
#else
  // A blend by bytes is three instructions in one; these three need no more.
  const V isKey = hn::VecFromMask(d, hn::Eq(pixels, keys));
  return hn::Or(hn::And(isKey, old), hn::AndNot(isKey, pixels));
#endif
}

/// Pixels other than the key.
template <class D>
HWY_INLINE void keyRowOf(D d, uint8_t* HWY_RESTRICT target, const uint8_t* HWY_RESTRICT source,
                         size_t width, uint8_t key) {
  const size_t lanes = hn::Lanes(d);
  const auto keys = hn::Set(d, key);
  const auto doVector = [&](size_t x) HWY_ATTR {
    hn::StoreU(unlessKey(d, hn::LoadU(d, source + x), keys, hn::LoadU(d, target + x)), d,
               target + x);
  };
  if (width >= lanes) {
    doVector(0);
    size_t x = untilAligned(target, lanes);
    // Four at a time: with short vectors the counting would take as long as the copying.
    for (; x + 4 * lanes <= width; x += 4 * lanes) {
      for (size_t line = 0; line < 4 * lanes; line += CacheLine) {
        hwy::Prefetch(source + x + line + FetchAhead);
        hwy::Prefetch(target + x + line + FetchAhead);
      }
      doVector(x);
      doVector(x + lanes);
      doVector(x + 2 * lanes);
      doVector(x + 3 * lanes);
    }
    for (; x + lanes <= width; x += lanes)
      doVector(x);
    if (x < width) doVector(width - lanes);
  } else if constexpr (hn::MaxLanes(D()) > 1) {
    keyRowOf(hn::Half<D>(), target, source, width, key);
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
  const auto doVector = [&](size_t x, const uint8_t* cells) HWY_ATTR {
    const auto pixels = hn::LoadU(d, source + x), old = hn::LoadU(d, target + x);
    auto mask = hn::LoadU(d, cells);
    if constexpr (Keyed) mask = hn::AndNot(hn::VecFromMask(d, hn::Eq(pixels, keys)), mask);
    hn::StoreU(hn::Or(hn::And(mask, pixels), hn::AndNot(mask, old)), d, target + x);
  };
  if (width >= lanes) {
    doVector(0, pattern.cells + pattern.phase);
    // No step is longer than the period, so that going on takes no division.
    size_t x = 0, phase = pattern.phase;
    const auto advance = [&, period = pattern.period](size_t step) {
      x += step, phase += step;
      if (phase >= period) phase -= period;
    };
    advance(untilAligned(target, lanes));
    while (x + MostLanes <= width) {
      for (size_t i = 0; i < MostLanes; i += lanes)
        doVector(x + i, pattern.cells + phase + i);
      advance(MostLanes);
    }
    while (x + lanes <= width) {
      doVector(x, pattern.cells + phase);
      advance(lanes);
    }
    if (x == width) return;
    const size_t back = x + lanes - width;
    doVector(x - back, pattern.cells + (phase >= back ? phase : phase + pattern.period) - back);
  } else if constexpr (hn::MaxLanes(D()) > 1) {
    patternRowOf<Keyed>(hn::Half<D>(), target, source, width, pattern, key);
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
    if (x < width) keyRow32Of(hn::Half<D>(), target + x, source + x, looked + x, width - x, key);
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
      blendRowOf<Keyed>(hn::Half<D>(), target + x, source + x, looked + x, width - x, level, key);
}

template <bool Keyed>
HWY_INLINE void blendRow(uint32_t* target, const uint8_t* source, const uint32_t* looked,
                         size_t width, uint16_t level, uint8_t key) {
  blendRowOf<Keyed>(Words(), target, source, looked, width, level, key);
}

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
