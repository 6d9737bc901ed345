#include "scenario/timekeeper.h"

#include <optional>

#include <gtest/gtest.h>

#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

class Timekeeper : public BothKernels {
 protected:
  Timekeeper() {
    manager.Start(&host, "Test", 1, 1, 1);
    theScenario = &manager;
    film.Restart(0);
  }
  ~Timekeeper() override { theScenario = nullptr; }

  FakeHost host;
  QVScenario manager;
  timekeeper film{"film"};
};
QV_IN_BOTH_KERNELS(Timekeeper);

TEST_P(Timekeeper, CueWaitsUntilItsTimeFromTheStart) {
  const uint32_t start = tickCount();
  EXPECT_EQ(film.Cue(60, 1000), 1);
  EXPECT_GE(tickCount() - start, 55u);
  EXPECT_EQ(film.Cue(60, 1000), 1);
  EXPECT_LT(tickCount() - start, 500u);
}

TEST_P(Timekeeper, CueGivesZeroOnceTheLimitHasPassed) {
  sleepMillis(30);
  EXPECT_EQ(film.Cue(5000, 20), 0);
  EXPECT_EQ(film.Cue(0, 0), 0);
}

TEST_P(Timekeeper, CueGivesZeroExactlyAtTheLimit) {
  if (!Kernel::current().simulated()) GTEST_SKIP() << "needs a clock that stands still";
  film.Restart(0);
  sleepMillis(20);
  EXPECT_EQ(film.Cue(0, 21), 1);
  EXPECT_EQ(film.Cue(0, 20), 0);
}

TEST_P(Timekeeper, RestartBeginsAnew) {
  sleepMillis(60);
  film.Restart(0);
  EXPECT_EQ(film.Cue(0, 50), 1);
}

TEST_P(Timekeeper, RaisesOnAbort) {
  host.abortEvent.set();
  EXPECT_THROW(film.Cue(60'000, 90'000), ExitScenarioException);
  EXPECT_THROW(film.CueWait(60'000), ExitScenarioException);
  film.Restart(1);
  EXPECT_THROW(film.Cue(60'000, 90'000), ExitScenarioException);
}

TEST_P(Timekeeper, InDemoFormIsCutShortByInput) {
  film.Restart(1);
  host.onInputWait = [&] { host.deliverInput(2061); };
  EXPECT_THROW(film.Cue(60'000, 90'000), AbortDemoException);
}

TEST_P(Timekeeper, InDemoFormGivesOneAtItsTime) {
  film.Restart(1);
  const uint32_t start = tickCount();
  EXPECT_EQ(film.Cue(40, 1000), 1);
  EXPECT_GE(tickCount() - start, 35u);
  sleepMillis(20);
  host.onInputWait = [&] { host.deliverInput(2061); };
  EXPECT_EQ(film.Cue(10, 1000), 1) << "a time that has passed asks for no input";
}

TEST_P(Timekeeper, WithoutDemoFormIgnoresInput) {
  EXPECT_FALSE(host.deliverInput(2061));
  EXPECT_EQ(film.Cue(30, 1000), 1);
  EXPECT_EQ(host.waitsBegan, 0);
}

TEST_P(Timekeeper, CueWaitGoesOnAtItsTime) {
  const uint32_t start = tickCount();
  film.CueWait(50);
  EXPECT_GE(tickCount() - start, 45u);
  film.CueWait(10);
  EXPECT_LT(tickCount() - start, 500u);
}

TEST_P(Timekeeper, WithoutAManagerDoesNotWait) {
  theScenario = nullptr;
  EXPECT_EQ(film.Cue(60'000, 90'000), 0);
  film.CueWait(60'000);
}

TEST(TimekeeperWrap, CountsAcrossTheWrapOfTheTicks) {
  TestPlatform platform(false, makeSimulatedKernel({.startTick = 0xFFFFFFF0}));
  FakeHost host;
  QVScenario manager;
  manager.Start(&host, "Test", 1, 1, 1);
  theScenario = &manager;
  timekeeper film;
  film.Restart(0);
  EXPECT_EQ(film.Cue(100, 200), 1);
  EXPECT_LT(tickCount(), 200u);
  EXPECT_EQ(film.Cue(150, 200), 1);
  sleepMillis(60);
  EXPECT_EQ(film.Cue(150, 200), 0);
  theScenario = nullptr;
}

}  // namespace
}  // namespace qv::testing
