#pragma once

/// The compression of the picture formats: literals and repeats of what stood at most 4096 bytes
/// before, in groups of eight under a byte of flags (1 is a literal, low bit first). The classical
/// decoder keeps the last 4096 bytes in a ring, which starts zeroed and is first written at 4078;
/// repeats name a place in that ring. Pure functions, any thread.

#include <cstddef>
#include <cstdint>
#include <span>

namespace qv {

inline constexpr size_t LzssRingBytes = 4096, LzssRingStart = 4078;
inline constexpr size_t LzssShortest = 3, LzssLongest = 18;

/// How the two bytes a, b of a repeat tell its place in the ring and its length less 3.
enum class LzssPairs {
  Mcg,  ///< place: a and the low four bits of b above it; length: the high four bits of b
  Sld,  ///< place: a and the high four bits of b above it; length: the low four bits of b
};

/// Expands until the stream or the output ends, wherever that is; gives the bytes written. What
/// lies behind them in `output` is undefined: copies are wide.
size_t expandLzss(LzssPairs pairs, std::span<const uint8_t> stream, std::span<uint8_t> output);

/// No stream needs more bytes than this for its output: all literals.
constexpr size_t longestLzssStream(size_t outputBytes) {
  return outputBytes + outputBytes / 8 + 1;
}

}  // namespace qv
