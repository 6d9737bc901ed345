#include "graphics/lzss.h"

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace qv {
namespace {

/// The decoder as the formats were defined: with a ring, byte by byte, bounded on both sides.
std::vector<uint8_t> withARing(LzssPairs pairs, const std::vector<uint8_t>& stream, size_t most) {
  std::array<uint8_t, 4096> ring{};
  size_t at = 4078, in = 0;
  std::vector<uint8_t> out;
  const auto put = [&](uint8_t byte) {
    if (out.size() < most) out.push_back(byte);
    ring[at] = byte;
    at = (at + 1) % 4096;
  };
  unsigned flags = 0;
  while (in < stream.size() && out.size() < most) {
    flags >>= 1;
    if (!(flags & 0x100)) flags = stream[in++] | 0xFF00u;
    if (flags & 1) {
      if (in >= stream.size()) break;
      put(stream[in++]);
      continue;
    }
    if (in + 2 > stream.size()) break;
    const unsigned a = stream[in], b = stream[in + 1];
    in += 2;
    size_t place = pairs == LzssPairs::Mcg ? a | (b & 0x0Fu) << 8 : a | (b & 0xF0u) << 4;
    const size_t length = (pairs == LzssPairs::Mcg ? b >> 4 : b & 0x0Fu) + 3;
    for (size_t step = 0; step < length; ++step, place = (place + 1) % 4096)
      put(ring[place]);
  }
  return out;
}

std::vector<uint8_t> expanded(LzssPairs pairs, const std::vector<uint8_t>& stream, size_t most) {
  constexpr size_t Guard = 64;
  constexpr uint8_t Sentinel = 0xC3;
  std::vector<uint8_t> out(most + 2 * Guard, Sentinel);
  const size_t written = expandLzss(pairs, stream, std::span(out).subspan(Guard, most));
  EXPECT_LE(written, most);
  const auto untouched = [&](size_t from, size_t count) {
    return std::all_of(out.begin() + static_cast<ptrdiff_t>(from),
                       out.begin() + static_cast<ptrdiff_t>(from + count),
                       [](uint8_t byte) { return byte == Sentinel; });
  };
  EXPECT_TRUE(untouched(0, Guard)) << "before the output";
  EXPECT_TRUE(untouched(Guard + most, Guard)) << "behind the output";
  out.resize(Guard + written);
  out.erase(out.begin(), out.begin() + Guard);
  return out;
}

/// Random flags, with more or fewer literals, and bytes of a small or full range.
std::vector<uint8_t> randomStream(std::mt19937& random, size_t size) {
  std::vector<uint8_t> stream(size);
  const unsigned mask = 1u << random() % 9, extra = random() % 3 ? 0 : random();
  for (uint8_t& byte : stream)
    byte = static_cast<uint8_t>(random() % std::max(2u, mask) | (random() % 4 ? 0 : extra));
  return stream;
}

class Lzss : public ::testing::TestWithParam<LzssPairs> {};

TEST_P(Lzss, ExpandsAnyStreamAsTheRingDoes) {
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    const std::vector<uint8_t> stream = randomStream(random, random() % 9000);
    const size_t most = random() % 3 ? 60000 : random() % 9000;
    ASSERT_EQ(expanded(GetParam(), stream, most), withARing(GetParam(), stream, most))
        << "round " << round;
  }
}

TEST_P(Lzss, StopsWhereverTheStreamEnds) {
  std::mt19937 random(2);
  const std::vector<uint8_t> whole = randomStream(random, 300);
  for (size_t size = 0; size <= whole.size(); ++size) {
    const std::vector<uint8_t> stream(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
    ASSERT_EQ(expanded(GetParam(), stream, 9000), withARing(GetParam(), stream, 9000)) << size;
  }
}

TEST_P(Lzss, StopsWhereverTheOutputEnds) {
  std::mt19937 random(3);
  const std::vector<uint8_t> stream = randomStream(random, 4000);
  for (size_t most = 0; most < 700; ++most)
    ASSERT_EQ(expanded(GetParam(), stream, most), withARing(GetParam(), stream, most)) << most;
}

TEST_P(Lzss, CopiesRepeatsOfEveryDistanceAndLength) {
  // Enough literals that the ring is full, then one repeat of each kind in a group of literals.
  std::vector<uint8_t> head;
  std::mt19937 random(4);
  for (size_t group = 0; group < 520; ++group) {
    head.push_back(0xFF);
    for (int byte = 0; byte < 8; ++byte)
      head.push_back(static_cast<uint8_t>(random()));
  }
  constexpr size_t Written = 520 * 8;
  for (size_t distance : {1, 2, 3, 7, 8, 9, 15, 16, 17, 18, 19, 31, 640, 4078, 4095, 4096}) {
    for (size_t more = 0; more < 16; ++more) {
      const size_t place = (4078 + Written - distance) % 4096;
      std::vector<uint8_t> stream = head;
      stream.push_back(0xFE);
      stream.push_back(static_cast<uint8_t>(place));
      stream.push_back(static_cast<uint8_t>(
          GetParam() == LzssPairs::Mcg ? more << 4 | place >> 8 : (place >> 4 & 0xF0) | more));
      for (int byte = 0; byte < 700; ++byte)
        stream.push_back(0xFF);
      ASSERT_EQ(expanded(GetParam(), stream, 6000), withARing(GetParam(), stream, 6000))
          << "distance " << distance << ", length " << more + 3;
    }
  }
}

TEST_P(Lzss, ReadsZerosFromAFreshRing) {
  // Place 0 and the place that is written first.
  for (const std::vector<uint8_t>& stream :
       {std::vector<uint8_t>{0x00, 0x00, 0x00}, std::vector<uint8_t>{0x00, 0xEE, 0xFF}}) {
    const std::vector<uint8_t> out = expanded(GetParam(), stream, 100);
    ASSERT_GE(out.size(), 3u);
    EXPECT_EQ(std::count(out.begin(), out.end(), 0), static_cast<ptrdiff_t>(out.size()));
  }
}

TEST_P(Lzss, NeverNeedsMoreThanTheLongestStream) {
  for (size_t size : {0, 1, 7, 8, 9, 100, 4096}) {
    std::vector<uint8_t> stream;
    for (size_t at = 0; at < size; ++at) {
      if (at % 8 == 0) stream.push_back(0xFF);
      stream.push_back(static_cast<uint8_t>(at));
    }
    EXPECT_LE(stream.size(), longestLzssStream(size));
    EXPECT_EQ(expanded(GetParam(), stream, size).size(), size);
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, Lzss, ::testing::Values(LzssPairs::Mcg, LzssPairs::Sld),
                         [](const auto& given) {
                           return given.param == LzssPairs::Mcg ? "Mcg" : "Sld";
                         });

}  // namespace
}  // namespace qv
