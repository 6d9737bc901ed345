#include "scenario/random.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace qv {
namespace {

std::vector<uint32_t> draws(uint32_t seed, uint32_t limit) {
  RandomGenerator generator(seed);
  std::vector<uint32_t> all;
  for (int i = 0; i < 8; ++i)
    all.push_back(generator.draw(limit));
  return all;
}

TEST(Random, WithLimitZeroGivesZero) {
  EXPECT_EQ(draws(12345, 0), std::vector<uint32_t>(8, 0));
}

TEST(Random, WithLimitOneGivesBitThirtyOfTheState) {
  RandomGenerator generator(98765);
  for (int i = 0; i < 100; ++i) {
    const uint32_t draw = generator.draw(1);
    EXPECT_EQ(draw, (generator.state() >> 30) % 2);
  }
}

TEST(Random, WithoutALimitGivesTheState) {
  RandomGenerator generator(0);
  EXPECT_EQ(generator.draw(RandomGenerator::NoLimit), 1u);
  EXPECT_EQ(generator.draw(RandomGenerator::NoLimit), 1566083942u);
  EXPECT_EQ(generator.state(), 1566083942u);
}

TEST(Random, AboveTheHighestMaskDoesNotShift) {
  EXPECT_EQ(draws(0, 2147483648u),
            (std::vector<uint32_t>{1, 1566083942, 1622106430, 799445724, 638936268, 1134826466,
                                   909610538, 199520247}));
}

TEST(Random, JustBelowTheHighestMaskShiftsByOne) {
  EXPECT_EQ(draws(0, 2147483646u),
            (std::vector<uint32_t>{0, 783041971, 1884795039, 399722862, 1393209958, 567413233,
                                   1528547093, 1173501948}));
}

TEST(Random, StaysWithinTheLimitAndReachesIt) {
  for (const uint32_t limit : {2u, 5u, 7u, 99u, 256u}) {
    RandomGenerator generator(1);
    uint32_t highest = 0;
    for (int i = 0; i < 20000; ++i)
      highest = std::max(highest, generator.draw(limit));
    EXPECT_EQ(highest, limit);
  }
}

}  // namespace
}  // namespace qv
