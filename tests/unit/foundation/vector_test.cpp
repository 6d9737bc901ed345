#include "foundation/vector.h"

#include <climits>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/failing_heap.h"

namespace qv {
namespace {

/// Counts those alive; the one numbered `failAt` cannot be built.
struct Frame {
  Frame() {
    if (built == failAt) throw std::bad_alloc();
    number = built++;
    ++alive;
  }
  Frame& operator=(Frame&& other) noexcept {
    name = std::move(other.name);
    return *this;
  }
  ~Frame() {
    --alive;
    lastDestroyed = number;
  }
  std::string name;
  int number = 0;

  static inline int built = 0, alive = 0, failAt = -1, lastDestroyed = -1;
};

class QVVectorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Frame::built = Frame::alive = 0;
    Frame::failAt = Frame::lastDestroyed = -1;
  }
  void TearDown() override { EXPECT_EQ(Frame::alive, 0); }
  static std::string titleOf(auto work) {
    try {
      work();
    } catch (const NotEnoughMemoryException& exception) {
      return exception.title() ? exception.title() : "null";
    }
    return "none";
  }
};

TEST_F(QVVectorTest, BuildsNothingBeforeInit) {
  const QVVector<Frame> frames(5);
  EXPECT_EQ(frames.size(), 0);
  EXPECT_EQ(frames.capacity(), 5);
  EXPECT_EQ(Frame::built, 0);
}

TEST_F(QVVectorTest, BuildsTheCapacitysElementsByInit) {
  QVVector<Frame> frames(5);
  frames.init();
  EXPECT_EQ(frames.size(), 5);
  EXPECT_EQ(Frame::alive, 5);
  frames[4].name = "last";
  EXPECT_EQ(frames[4].name, "last");
}

TEST_F(QVVectorTest, IsEmptiedByASecondInit) {
  QVVector<Frame> frames(5);
  frames.init();
  frames.init();
  EXPECT_EQ(frames.size(), 0);
  EXPECT_EQ(Frame::alive, 0);
  frames.init();
  EXPECT_EQ(frames.size(), 5);
}

TEST_F(QVVectorTest, DestroysInReverseOrder) {
  QVVector<Frame> frames(3);
  frames.init();
  frames.destroy();
  EXPECT_EQ(frames.size(), 0);
  EXPECT_EQ(Frame::lastDestroyed, 0);
  frames.destroy();
}

TEST_F(QVVectorTest, TakesACapacityBelowZeroAsZero) {
  QVVector<Frame> frames(INT_MIN);
  frames.init();
  EXPECT_EQ(frames.size(), 0);
}

TEST_F(QVVectorTest, RaisesWhenInitHasNoMemory) {
  QVVector<Frame> frames(5);
  const testing::FailingHeap heap(0, 1);
  EXPECT_EQ(titleOf([&] { frames.init(); }), "QVVector - init");
  EXPECT_EQ(frames.size(), 0);
}

TEST_F(QVVectorTest, RaisesWhenAnElementCannotBeBuilt) {
  QVVector<Frame> frames(5);
  Frame::failAt = 3;
  EXPECT_EQ(titleOf([&] { frames.init(); }), "QVVector - init");
  EXPECT_EQ(Frame::alive, 0);
  EXPECT_EQ(frames.size(), 0);
  Frame::failAt = -1;
  frames.init();
  EXPECT_EQ(frames.size(), 5);
}

TEST_F(QVVectorTest, RefusesMoreElementsThanMemoryCanAddress) {
  struct Large {
    char bytes[1 << 20];
  };
  QVVector<Large> frames(INT_MAX);
  const testing::FailingHeap heap(0, 1);
  EXPECT_EQ(titleOf([&] { frames.init(); }), "QVVector - init");
}

TEST_F(QVVectorTest, GrowsInStepsAndKeepsItsElements) {
  QVVector<Frame> frames(2);
  frames.init();
  frames[1].name = "kept";
  frames.increase(1, 32);
  EXPECT_EQ(frames.size(), 2);
  frames.increase(2, 32);
  EXPECT_EQ(frames.size(), 34);
  EXPECT_EQ(Frame::alive, 34);
  EXPECT_EQ(frames[1].name, "kept");
  frames.increase(98, 32);
  EXPECT_EQ(frames.size(), 130);
}

TEST_F(QVVectorTest, KeepsItsElementsWhenItCannotGrow) {
  QVVector<Frame> frames(2);
  frames.init();
  frames[1].name = "kept";
  {
    const testing::FailingHeap heap(0, 1);
    EXPECT_EQ(titleOf([&] { frames.increase(2, 32); }), "QVVector - increase");
  }
  EXPECT_EQ(titleOf([&] { frames.increase(INT_MAX, 32); }), "QVVector - increase");
  EXPECT_EQ(frames.size(), 2);
  EXPECT_EQ(frames[1].name, "kept");
}

}  // namespace
}  // namespace qv
