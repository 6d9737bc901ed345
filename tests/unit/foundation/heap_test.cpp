#include "foundation/heap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "platform/text/shift_jis.h"
#include "tests/support/failing_heap.h"

namespace qv {
namespace {

TEST(QVHeap, GivesABlockThatCanBeWritten) {
  auto* block = static_cast<char*>(QVHeap::malloc(1000));
  ASSERT_NE(block, nullptr);
  std::memset(block, 'x', 1000);
  QVHeap::free(block);
}

TEST(QVHeap, FillsWithZerosOnRequest) {
  for (int round = 0; round < 8; ++round) {
    auto* block = static_cast<uint8_t*>(QVHeap::malloc(4096, QVHeap::ZeroFill | QVHeap::Raise));
    EXPECT_TRUE(std::all_of(block, block + 4096, [](uint8_t byte) { return byte == 0; }));
    std::memset(block, 0xA5, 4096);
    QVHeap::free(block);
  }
}

TEST(QVHeap, GivesAnAddressForAnEmptyBlock) {
  void* block = QVHeap::malloc(0);
  EXPECT_NE(block, nullptr);
  QVHeap::free(block);
}

TEST(QVHeap, PassesOverANull) {
  QVHeap::free(nullptr, QVHeap::Raise);
}

TEST(QVHeap, GivesNullOnFailureWithoutTheFlag) {
  const testing::FailingHeap heap;
  EXPECT_EQ(QVHeap::malloc(16), nullptr);
  EXPECT_EQ(QVHeap::malloc(16, QVHeap::ZeroFill), nullptr);
}

TEST(QVHeap, RaisesOnFailureWithTheFlag) {
  const testing::FailingHeap heap(0, 1);
  try {
    QVHeap::malloc(16, QVHeap::Raise);
    FAIL() << "nothing was raised";
  } catch (const NotEnoughMemoryException& exception) {
    EXPECT_STREQ(exception.title(), "QVHeap - malloc");
    EXPECT_EQ(exception.message(), sjis("メモリが足りません！"));
  }
}

TEST(QVHeap, RefusesASizeThatNoBlockCanHave) {
  EXPECT_EQ(QVHeap::malloc(std::numeric_limits<size_t>::max()), nullptr);
  EXPECT_THROW(QVHeap::malloc(std::numeric_limits<size_t>::max(), QVHeap::Raise),
               NotEnoughMemoryException);
}

}  // namespace
}  // namespace qv
