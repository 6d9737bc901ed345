#include "graphics/lzss.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "graphics/little_endian.h"

// There is no ring here: a place in it is turned into a distance back from where the output stands,
// and the output itself is the history. Before its start the history is zero.

namespace qv {

namespace {

constexpr size_t RingMask = LzssRingBytes - 1;
constexpr size_t GroupFlags = 8, PairBytes = 2, LiteralBytes = 1;

/// A copy moves this many bytes at once and may write past the end of what it was asked for.
constexpr size_t WideBytes = 16;
/// What a group of flags with all that belongs to it takes from the stream at most, and what it
/// may write. The fast loop runs while there is room for both.
constexpr size_t GroupStreamBytes = 1 + GroupFlags * PairBytes + WideBytes;
constexpr size_t GroupOutputBytes = GroupFlags * LzssLongest + 2 * WideBytes;

struct Repeat {
  size_t distance, length;
};

template <LzssPairs Pairs>
inline Repeat repeatAt(const uint8_t* pair, size_t written) {
  const size_t word = littleWord(pair);
  size_t place, length;
  if constexpr (Pairs == LzssPairs::Mcg) {
    place = word & RingMask;
    length = (word >> 12) + LzssShortest;
  } else {
    place = (word & 0xFF) | (word >> 4 & 0xF00);
    length = (word >> 8 & 0xF) + LzssShortest;
  }
  // The place that is written next holds what was written a whole ring ago.
  return {((LzssRingStart - 1 + written - place) & RingMask) + 1, length};
}

inline void copyWide(uint8_t* target, const uint8_t* source) {
  std::memcpy(target, source, WideBytes);
  std::memcpy(target + WideBytes, source + WideBytes, LzssLongest - WideBytes);
}

/// A repeat that overlaps itself within one wide copy, or reaches back before the output's start.
[[gnu::noinline]] void copyCarefully(uint8_t* output, size_t written, const Repeat& repeat) {
  for (size_t end = written + repeat.length; written < end; ++written)
    output[written] = written < repeat.distance ? 0 : output[written - repeat.distance];
}

/// Byte by byte, for the end of the output.
template <LzssPairs Pairs>
void expandSlowly(const uint8_t* in, const uint8_t* inEnd, std::span<uint8_t> output,
                  size_t& written) {
  while (in < inEnd && written < output.size()) {
    const unsigned flags = *in++;
    for (size_t bit = 0; bit < GroupFlags && written < output.size(); ++bit) {
      if (flags >> bit & 1) {
        if (inEnd - in < static_cast<ptrdiff_t>(LiteralBytes)) return;
        output[written++] = *in++;
        continue;
      }
      if (inEnd - in < static_cast<ptrdiff_t>(PairBytes)) return;
      Repeat repeat = repeatAt<Pairs>(in, written);
      in += PairBytes;
      repeat.length = std::min(repeat.length, output.size() - written);
      copyCarefully(output.data(), written, repeat);
      written += repeat.length;
    }
  }
}

/// Where the history still reaches back before the output, and behind.
enum class Region { FirstRing, Rest };

/// One literal or repeat with room on both sides. A literal is a copy from the stream, and both
/// kinds take the same road by masks instead of branches: the processor would guess every other one
/// of them wrong, which costs as much as ten copies.
template <LzssPairs Pairs, Region Where>
[[gnu::always_inline]] inline void expandOne(const uint8_t*& in, uint8_t* start, size_t& at,
                                             size_t flag) {
  const size_t literal = 0 - flag;  // all bits, or none
  const Repeat repeat = repeatAt<Pairs>(in, at);
  const bool beforeStart = Where == Region::FirstRing && repeat.distance > at && !literal;
  // One comparison for a repeat that is near: a literal's mask makes it far.
  if (((repeat.distance - 1) | literal) < WideBytes - 1 || beforeStart) [[unlikely]] {
    copyCarefully(start, at, repeat);
  } else {
    const uintptr_t back = reinterpret_cast<uintptr_t>(start) + at - repeat.distance;
    const uintptr_t source = back ^ ((back ^ reinterpret_cast<uintptr_t>(in)) & literal);
    copyWide(start + at, reinterpret_cast<const uint8_t*>(source));
  }
  at += repeat.length ^ ((repeat.length ^ LiteralBytes) & literal);
  in += PairBytes ^ ((PairBytes ^ LiteralBytes) & literal);
}

/// Whole groups until the region ends.
template <LzssPairs Pairs, Region Where>
const uint8_t* expandFast(const uint8_t* in, const uint8_t* inEnd, std::span<uint8_t> output,
                          size_t& written) {
  uint8_t* const start = output.data();
  const size_t end = output.size() < GroupOutputBytes ? 0 : output.size() - GroupOutputBytes + 1;
  size_t at = written;
  while (inEnd - in >= static_cast<ptrdiff_t>(GroupStreamBytes) && at < end &&
         (Where == Region::Rest || at < LzssRingBytes)) {
    const size_t flags = *in++;
    [&]<size_t... Bits>(std::index_sequence<Bits...>) {
      (expandOne<Pairs, Where>(in, start, at, flags >> Bits & 1), ...);
    }
    (std::make_index_sequence<GroupFlags>());
  }
  written = at;
  return in;
}

template <LzssPairs Pairs>
size_t expand(std::span<const uint8_t> stream, std::span<uint8_t> output) {
  const uint8_t* in = stream.data();
  const uint8_t* const inEnd = in + stream.size();
  size_t written = 0;
  in = expandFast<Pairs, Region::FirstRing>(in, inEnd, output, written);
  in = expandFast<Pairs, Region::Rest>(in, inEnd, output, written);
  expandSlowly<Pairs>(in, inEnd, output, written);
  return written;
}

}  // namespace

size_t expandLzss(LzssPairs pairs, std::span<const uint8_t> stream, std::span<uint8_t> output) {
  return pairs == LzssPairs::Mcg ? expand<LzssPairs::Mcg>(stream, output)
                                 : expand<LzssPairs::Sld>(stream, output);
}

}  // namespace qv
