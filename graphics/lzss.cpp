#include "graphics/lzss.h"

#include <algorithm>
#include <cstring>

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

/// A repeat that overlaps itself within one wide copy.
inline void copyNear(uint8_t* target, size_t distance, size_t length) {
  const uint8_t* source = target - distance;
  for (size_t at = 0; at < length; ++at)
    target[at] = source[at];
}

/// Byte by byte, for both ends of the output. `written` comes in and goes out.
template <LzssPairs Pairs>
const uint8_t* expandSlowly(const uint8_t* in, const uint8_t* inEnd, std::span<uint8_t> output,
                            size_t until, size_t& written) {
  while (in < inEnd && written < until) {
    const unsigned flags = *in++;
    for (size_t bit = 0; bit < GroupFlags && written < output.size(); ++bit) {
      if (flags >> bit & 1) {
        if (inEnd - in < static_cast<ptrdiff_t>(LiteralBytes)) return inEnd;
        output[written++] = *in++;
        continue;
      }
      if (inEnd - in < static_cast<ptrdiff_t>(PairBytes)) return inEnd;
      const Repeat repeat = repeatAt<Pairs>(in, written);
      in += PairBytes;
      const size_t end = std::min(written + repeat.length, output.size());
      for (; written < end; ++written)
        output[written] = written < repeat.distance ? 0 : output[written - repeat.distance];
    }
  }
  return in;
}

/// Whole groups with room on both sides, behind the first ring of output.
template <LzssPairs Pairs>
const uint8_t* expandFast(const uint8_t* in, const uint8_t* inEnd, std::span<uint8_t> output,
                          size_t& written) {
  uint8_t* const start = output.data();
  uint8_t* out = start + written;
  const uint8_t* const outEnd = start + output.size();
  while (inEnd - in >= static_cast<ptrdiff_t>(GroupStreamBytes) &&
         outEnd - out >= static_cast<ptrdiff_t>(GroupOutputBytes)) {
    unsigned flags = *in++;
    if (flags == 0xFF) {
      std::memcpy(out, in, GroupFlags);
      in += GroupFlags, out += GroupFlags;
      continue;
    }
    for (size_t bit = 0; bit < GroupFlags; ++bit, flags >>= 1) {
      // A literal is a copy from the stream. Both kinds take the same road, so that the processor
      // has no branch to guess at.
      const bool literal = flags & 1;
      const Repeat repeat = repeatAt<Pairs>(in, static_cast<size_t>(out - start));
      const uint8_t* const source = literal ? in : out - repeat.distance;
      if (!literal && repeat.distance < WideBytes) [[unlikely]]
        copyNear(out, repeat.distance, repeat.length);
      else
        copyWide(out, source);
      out += literal ? LiteralBytes : repeat.length;
      in += literal ? LiteralBytes : PairBytes;
    }
  }
  written = static_cast<size_t>(out - start);
  return in;
}

template <LzssPairs Pairs>
size_t expand(std::span<const uint8_t> stream, std::span<uint8_t> output) {
  const uint8_t* in = stream.data();
  const uint8_t* const inEnd = in + stream.size();
  size_t written = 0;
  in = expandSlowly<Pairs>(in, inEnd, output, std::min(LzssRingBytes, output.size()), written);
  if (written >= LzssRingBytes) in = expandFast<Pairs>(in, inEnd, output, written);
  expandSlowly<Pairs>(in, inEnd, output, output.size(), written);
  return written;
}

}  // namespace

size_t expandLzss(LzssPairs pairs, std::span<const uint8_t> stream, std::span<uint8_t> output) {
  return pairs == LzssPairs::Mcg ? expand<LzssPairs::Mcg>(stream, output)
                                 : expand<LzssPairs::Sld>(stream, output);
}

}  // namespace qv
