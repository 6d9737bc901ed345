#include "platform/display/headless_display.h"

#include <gtest/gtest.h>

#include "platform/kernel/kernel.h"

namespace qv {
namespace {

enum class Clock { Real, Simulated };

class HeadlessDisplayTest : public ::testing::TestWithParam<Clock> {
 protected:
  KernelScope kernel_{GetParam() == Clock::Real ? makeRealKernel() : makeSimulatedKernel()};
  HeadlessDisplay display_;
  DisplayEvent event_;

  static DisplayEvent keyDown(int key) {
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::KeyDown;
    event.key = key;
    return event;
  }
  static DisplayEvent ofKind(DisplayEvent::Kind kind) {
    DisplayEvent event;
    event.kind = kind;
    return event;
  }
};

TEST_P(HeadlessDisplayTest, GivesEventsInTheOrderTheyWerePushed) {
  display_.push(keyDown(1));
  display_.push(keyDown(2));
  ASSERT_TRUE(display_.waitEvent(event_, WaitForever));
  EXPECT_EQ(event_.key, 1);
  ASSERT_TRUE(display_.waitEvent(event_, WaitForever));
  EXPECT_EQ(event_.key, 2);
}

TEST_P(HeadlessDisplayTest, GivesUpAtTheLimit) {
  const uint32_t start = tickCount();
  EXPECT_FALSE(display_.waitEvent(event_, 30));
  EXPECT_GE(tickCount() - start, 30u);
}

TEST_P(HeadlessDisplayTest, KeepsTheLimitAfterAnEventThatWasTakenWithoutAWait) {
  display_.push(keyDown(1));
  ASSERT_TRUE(display_.waitEvent(event_, 0));
  const uint32_t start = tickCount();
  EXPECT_FALSE(display_.waitEvent(event_, 30));
  EXPECT_GE(tickCount() - start, 30u);
}

TEST_P(HeadlessDisplayTest, AWakeEndsTheNextWaitOnce) {
  display_.wake();
  display_.wake();
  const uint32_t start = tickCount();
  EXPECT_FALSE(display_.waitEvent(event_, WaitForever));
  EXPECT_FALSE(display_.waitEvent(event_, 30));
  EXPECT_GE(tickCount() - start, 30u);
}

TEST_P(HeadlessDisplayTest, AnotherThreadEndsTheWaitThatRuns) {
  Thread thread;
  thread.start("waker", [this] {
    sleepMillis(20);
    display_.wake();
    sleepMillis(20);
    display_.push(keyDown(7));
  });
  EXPECT_FALSE(display_.waitEvent(event_, WaitForever));
  EXPECT_TRUE(display_.waitEvent(event_, WaitForever));
  EXPECT_EQ(event_.key, 7);
  EXPECT_TRUE(thread.join());
}

TEST_P(HeadlessDisplayTest, KeepsACopyOfTheFrameAndCountsThem) {
  Frame frame(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0x123456);
  EXPECT_EQ(display_.frame()[0], 0u);
  display_.present(frame);
  frame[0] = 0xFFFFFF;
  EXPECT_EQ(display_.frame()[0], 0x123456u);
  display_.present(frame);
  EXPECT_EQ(display_.frame()[0], 0xFFFFFFu);
  EXPECT_EQ(display_.presents(), 2u);
}

TEST_P(HeadlessDisplayTest, IsMinimisedBetweenTheTwoEvents) {
  display_.push(ofKind(DisplayEvent::Kind::Minimised));
  display_.push(ofKind(DisplayEvent::Kind::Restored));
  EXPECT_FALSE(display_.minimised());
  ASSERT_TRUE(display_.waitEvent(event_, 0));
  EXPECT_TRUE(display_.minimised());
  ASSERT_TRUE(display_.waitEvent(event_, 0));
  EXPECT_FALSE(display_.minimised());
}

TEST_P(HeadlessDisplayTest, RemembersTitlePointerAndFullScreen) {
  display_.setTitle("sc000000");
  display_.setFullScreen(true);
  display_.movePointer(12, 34);
  int x = 0, y = 0;
  display_.pointer(x, y);
  EXPECT_EQ(display_.title(), "sc000000");
  EXPECT_TRUE(display_.fullScreen());
  EXPECT_EQ(x, 12);
  EXPECT_EQ(y, 34);
}

INSTANTIATE_TEST_SUITE_P(Clocks, HeadlessDisplayTest,
                         ::testing::Values(Clock::Real, Clock::Simulated), [](const auto& run) {
                           return run.param == Clock::Real ? "Real" : "Simulated";
                         });

}  // namespace
}  // namespace qv
