#include "foundation/thread.h"

#include <memory>

#include <gtest/gtest.h>

#include "foundation/event.h"
#include "foundation/system_info.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

/// Runs each test under both kernels.
class QVThreadTest : public ::testing::TestWithParam<bool> {
 protected:
  testing::TestPlatform platform_{false, GetParam() ? makeSimulatedKernel() : makeRealKernel()};
};

struct Worker {
  QVEvent begun{"begun"}, go{"go"};
  int rounds = 0;
  int result = 0;
  static void run(void* self) {
    auto& worker = *static_cast<Worker*>(self);
    ++worker.rounds;
    worker.begun.set();
    worker.result = worker.go.wait();
  }
};

TEST_P(QVThreadTest, RunsTheFunctionWithItsArgument) {
  Worker worker;
  QVThread thread;
  EXPECT_FALSE(thread.running());
  EXPECT_EQ(thread.threadId(), 0u);
  thread.start("worker", &Worker::run, &worker);
  worker.begun.wait();
  EXPECT_TRUE(thread.running());
  EXPECT_NE(thread.threadId(), Thread::currentId());
  worker.go.set();
  thread.join();
  EXPECT_FALSE(thread.running());
  EXPECT_EQ(worker.result, 0);
}

TEST_P(QVThreadTest, DoesNothingOnAStartWhileItRuns) {
  Worker worker, other;
  QVThread thread;
  thread.start("worker", &Worker::run, &worker);
  worker.begun.wait();
  thread.start("other", &Worker::run, &other, QVThread::MayTerminate);
  EXPECT_FALSE(thread.terminationFlag());
  worker.go.set();
  thread.join();
  EXPECT_EQ(other.rounds, 0);
}

TEST_P(QVThreadTest, CanBeStartedAgainAfterItsEnd) {
  Worker worker;
  worker.go.set();
  QVThread thread;
  for (int round = 1; round <= 3; ++round) {
    thread.start("worker", &Worker::run, &worker);
    thread.join();
    EXPECT_EQ(worker.rounds, round);
  }
}

TEST_P(QVThreadTest, JoinsWithinALimit) {
  Worker worker;
  QVThread thread;
  thread.start("worker", &Worker::run, &worker);
  thread.join(5);
  EXPECT_TRUE(thread.running());
  worker.go.set();
  thread.join();
  EXPECT_FALSE(thread.running());
  thread.join();
}

TEST_P(QVThreadTest, EndsAtItsNextWaitWhenTerminated) {
  Worker worker;
  QVThread thread;
  thread.start("worker", &Worker::run, &worker, QVThread::MayTerminate);
  EXPECT_TRUE(thread.terminationFlag());
  worker.begun.wait();
  thread.terminate();
  EXPECT_FALSE(thread.running());
  EXPECT_FALSE(thread.terminationFlag());
  EXPECT_EQ(worker.result, WaitTerminated);
  thread.terminate();
}

TEST_P(QVThreadTest, MayBeTerminatedByItself) {
  struct OwnEnd {
    QVThread thread;
    QVEvent started{"started"};  // the object is the starter's until `start` has returned
    int result = 0;
  } subject;
  subject.thread.start(
      "own end",
      [](void* self) {
        auto& mine = *static_cast<OwnEnd*>(self);
        mine.started.wait();
        mine.thread.terminate();
        mine.result = QVEvent("never").wait();
      },
      &subject);
  subject.started.set();
  subject.thread.join();
  EXPECT_EQ(subject.result, WaitTerminated);
}

TEST_P(QVThreadTest, StandsForTheCallingThread) {
  QVThread thread;
  thread.adoptCurrent();
  EXPECT_TRUE(thread.running());
  EXPECT_EQ(thread.threadId(), Thread::currentId());
}

INSTANTIATE_TEST_SUITE_P(Kernels, QVThreadTest, ::testing::Bool(),
                         [](const auto& form) { return form.param ? "Simulated" : "Real"; });

class QVEventTest : public QVThreadTest {};

TEST_P(QVEventTest, StaysSetUntilResetWhenManual) {
  QVEvent event("manual", true);
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), 0);
  event.reset();
  EXPECT_EQ(event.wait(0), WaitTimeout);
}

TEST_P(QVEventTest, LetsOneWaitThroughWhenAutomatic) {
  QVEvent event("automatic", false, Event::Reset::Automatic);
  event.set();
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), WaitTimeout);
}

INSTANTIATE_TEST_SUITE_P(Kernels, QVEventTest, ::testing::Bool(),
                         [](const auto& form) { return form.param ? "Simulated" : "Real"; });

TEST(HasMmx, IsOneWhereTheVectorFormRuns) {
  // Every processor that this code is built for has it, or has what stands in for it.
  EXPECT_EQ(HasMmx(), 1);
}

}  // namespace
}  // namespace qv
