// What both forms of the kernel promise, tried with each of them.

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/kernel/kernel.h"

namespace qv {
namespace {

enum class Form { Real, Simulated };

/// Goes on once `count` threads do what `text` says in the kernel's report.
void awaitThreads(const std::string& text, int count = 1) {
  for (;;) {
    const std::string report = Kernel::current().describeThreads();
    int found = 0;
    for (size_t at = report.find(text); at != std::string::npos; at = report.find(text, at + 1))
      ++found;
    if (found >= count) return;
    sleepMillis(1);
  }
}

std::unique_ptr<Kernel> makeKernel(Form form, uint32_t startTick) {
  if (form == Form::Real) return makeRealKernel({.fixedStartTick = true, .startTick = startTick});
  return makeSimulatedKernel({.seed = 7, .startTick = startTick});
}

class KernelContract : public testing::TestWithParam<Form> {
 protected:
  bool simulated() const { return GetParam() == Form::Simulated; }

  KernelScope scope_{makeKernel(GetParam(), 1000)};
};

class KernelNearTheWrap : public testing::TestWithParam<Form> {
 protected:
  static constexpr uint32_t Start = 0U - 30;
  KernelScope scope_{makeKernel(GetParam(), Start)};
};

std::string formName(const testing::TestParamInfo<Form>& info) {
  return info.param == Form::Real ? "Real" : "Simulated";
}

INSTANTIATE_TEST_SUITE_P(Forms, KernelContract, testing::Values(Form::Real, Form::Simulated),
                         formName);
INSTANTIATE_TEST_SUITE_P(Forms, KernelNearTheWrap, testing::Values(Form::Real, Form::Simulated),
                         formName);

TEST_P(KernelContract, TellsItsForm) {
  EXPECT_EQ(Kernel::current().simulated(), simulated());
  EXPECT_EQ(Kernel::currentOrNull(), &Kernel::current());
}

TEST(KernelScope, LeavesNoKernelBehind) {
  { const KernelScope scope(makeRealKernel()); }
  EXPECT_EQ(Kernel::currentOrNull(), nullptr);
}

TEST_P(KernelContract, AManualEventStaysSetUntilReset) {
  Event event("manual", Event::Reset::Manual);
  EXPECT_EQ(event.wait(0), WaitTimeout);
  event.set();
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_TRUE(event.isSet());
  event.reset();
  EXPECT_FALSE(event.isSet());
  EXPECT_EQ(event.wait(0), WaitTimeout);
}

TEST_P(KernelContract, AnAutomaticEventLetsOneWaitThrough) {
  Event event("automatic", Event::Reset::Automatic, true);
  EXPECT_TRUE(event.isSet());
  EXPECT_TRUE(event.isSet()) << "a look takes nothing";
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), WaitTimeout);
}

TEST_P(KernelContract, AnAutomaticEventSetTwiceIsSetOnce) {
  Event event("automatic", Event::Reset::Automatic);
  event.set();
  event.set();
  EXPECT_EQ(event.wait(0), 0);
  EXPECT_EQ(event.wait(0), WaitTimeout);
}

TEST_P(KernelContract, OfSeveralSetEventsTheLowestPlaceIsTakenAndTheOthersStaySet) {
  Event first("first", Event::Reset::Automatic);
  Event second("second", Event::Reset::Automatic, true);
  Event third("third", Event::Reset::Automatic, true);
  EXPECT_EQ(waitAny({&first, &second, &third}), 1);
  EXPECT_FALSE(second.isSet());
  EXPECT_TRUE(third.isSet());
  EXPECT_EQ(waitAny({&first, &second, &third}), 2);
  EXPECT_EQ(waitAny({&first, &second, &third}, 0), WaitTimeout);
}

TEST_P(KernelContract, AWaitingThreadIsToldWhichEventWokeIt) {
  Event first("first", Event::Reset::Automatic);
  Event second("second", Event::Reset::Automatic);
  int woken = -10;
  Thread thread;
  thread.start("waiter", [&] { woken = waitAny({&first, &second}); });
  awaitThreads("waits for event \"first\" or \"second\"");
  second.set();
  EXPECT_TRUE(thread.join());
  EXPECT_EQ(woken, 1);
  EXPECT_FALSE(second.isSet());
  EXPECT_FALSE(first.isSet());
}

TEST_P(KernelContract, AResetRightAfterASetLosesNoThreadThatWaitsAlready) {
  Event gate("gate", Event::Reset::Manual);
  std::atomic<int> through = 0;
  std::array<Thread, 4> threads;
  for (Thread& thread : threads)
    thread.start("waiter", [&] { through += gate.wait(10'000) == 0 ? 1 : 0; });
  awaitThreads("waits for event \"gate\"", 4);
  gate.set();
  gate.reset();
  for (Thread& thread : threads)
    EXPECT_TRUE(thread.join());
  EXPECT_EQ(through.load(), 4);
  EXPECT_FALSE(gate.isSet());
}

TEST_P(KernelContract, EachSetOfAnAutomaticEventWakesOneOfItsWaiters) {
  Event event("turnstile", Event::Reset::Automatic);
  Event passed("passed", Event::Reset::Automatic);
  std::atomic<int> through = 0;
  std::array<Thread, 3> threads;
  for (Thread& thread : threads) {
    thread.start("waiter", [&] {
      event.wait();
      ++through;
      passed.set();
    });
  }
  for (int expected = 1; expected <= 3; ++expected) {
    event.set();
    passed.wait();
    sleepMillis(5);
    EXPECT_EQ(through.load(), expected);
  }
  for (Thread& thread : threads)
    EXPECT_TRUE(thread.join());
}

TEST_P(KernelContract, AWaitEndsWhenItsLimitHasPassed) {
  Event never("never", Event::Reset::Manual);
  const uint32_t start = tickCount();
  EXPECT_EQ(never.wait(20), WaitTimeout);
  EXPECT_GE(tickCount() - start, 20u);
  EXPECT_FALSE(sleepMillis(10));
  EXPECT_GE(tickCount() - start, 30u);
  if (simulated()) {
    EXPECT_EQ(tickCount() - start, 30u);
  }
}

TEST_P(KernelContract, TheTickCountStartsWhereItIsToldTo) {
  EXPECT_GE(tickCount(), 1000u);
  EXPECT_LT(tickCount(), 1000u + 60'000u);
}

TEST_P(KernelNearTheWrap, LimitsHoldAcrossTheWrap) {
  Event never("never", Event::Reset::Manual);
  EXPECT_EQ(never.wait(20), WaitTimeout);
  EXPECT_EQ(never.wait(20), WaitTimeout);
  EXPECT_GE(tickCount() - Start, 40u);
  EXPECT_LT(tickCount(), 60'000u) << "the tick count has wrapped";
  EXPECT_FALSE(sleepMillis(10));
  EXPECT_GE(tickCount() - Start, 50u);
}

TEST_P(KernelNearTheWrap, AnEventWakesAWaiterWhoseDeadlineLiesBeyondTheWrap) {
  Event event("event", Event::Reset::Automatic);
  Thread thread;
  thread.start("setter", [&] {
    sleepMillis(40);
    event.set();
  });
  EXPECT_EQ(event.wait(60'000), 0);
  EXPECT_LT(tickCount(), 50'000u);
}

TEST_P(KernelContract, TheWallClockGoesOnWithTheTicks) {
  const int64_t before = Kernel::current().wallClockMillis();
  sleepMillis(20);
  const int64_t passed = Kernel::current().wallClockMillis() - before;
  if (simulated()) {
    EXPECT_EQ(passed, 20);
    EXPECT_EQ(before, 946'728'000'000);
  } else {
    EXPECT_GE(passed, 15);
    EXPECT_GT(before, 1'700'000'000'000);
  }
}

TEST_P(KernelContract, LocalTimeHasTheFieldsOfACalendar) {
  const CalendarTime time =
      Kernel::current().localTime(951'825'600'123);  // 2000-02-29 12:00:00.123
  EXPECT_EQ(time.year, 2000);
  EXPECT_EQ(time.millisecond, 123);
  EXPECT_GE(time.hour, 0);
  EXPECT_LE(time.hour, 23);
  if (!simulated()) return;
  EXPECT_EQ(time.month, 2);
  EXPECT_EQ(time.day, 29);
  EXPECT_EQ(time.hour, 12);
  EXPECT_EQ(time.minute, 0);
  EXPECT_EQ(time.second, 0);
  EXPECT_EQ(time.weekday, 2) << "a Tuesday";
  const CalendarTime before = Kernel::current().localTime(-1);
  EXPECT_EQ(before.year, 1969);
  EXPECT_EQ(before.second, 59);
  EXPECT_EQ(before.millisecond, 999);
}

TEST_P(KernelContract, ALockKeepsOthersOut) {
  Lock lock("counter", LockRank::Leaf);
  int counter = 0;
  std::array<Thread, 4> threads;
  for (Thread& thread : threads) {
    thread.start("adder", [&] {
      for (int i = 0; i < 500; ++i) {
        const std::lock_guard guard(lock);
        const int seen = counter;
        if (i % 100 == 0) tickCount();
        counter = seen + 1;
      }
    });
  }
  for (Thread& thread : threads)
    EXPECT_TRUE(thread.join());
  EXPECT_EQ(counter, 2000);
}

TEST_P(KernelContract, ALockMayBeTakenAgainByItsHolderAndIsFreeAfterTheLastUnlock) {
  Lock lock("recursive", LockRank::Object);
  Lock later("later", LockRank::Leaf);
  lock.lock();
  later.lock();
  lock.lock();  // against the rank, but held already
  lock.unlock();
  later.unlock();
  Event taken("taken", Event::Reset::Manual);
  Thread thread;
  thread.start("other", [&] {
    const std::lock_guard guard(lock);
    taken.set();
  });
  EXPECT_EQ(taken.wait(20), WaitTimeout) << "still held once";
  lock.unlock();
  EXPECT_EQ(taken.wait(10'000), 0);
}

TEST_P(KernelContract, LocksHaveTheOrderInWhichTheyWereMade) {
  const Lock first("first", LockRank::Surface);
  const Lock second("second", LockRank::Surface);
  EXPECT_LT(first.order(), second.order());
}

TEST_P(KernelContract, ThreadsAreNumberedInOrderOfTheirStartAndKnowTheirNames) {
  EXPECT_EQ(Thread::currentId(), 1u);
  EXPECT_EQ(Thread::currentName(), "main");
  Thread none;
  EXPECT_EQ(none.id(), 0u);
  EXPECT_FALSE(none.running());
  EXPECT_TRUE(none.join(0)) << "there never was a thread";
  std::array<Thread, 3> threads;
  std::array<uint32_t, 3> ids = {};
  std::array<std::string, 3> names;
  for (size_t i = 0; i < threads.size(); ++i) {
    threads[i].start("thread with a long name " + std::to_string(i), [&, i] {
      ids[i] = Thread::currentId();
      names[i] = Thread::currentName();
    });
  }
  for (size_t i = 0; i < threads.size(); ++i) {
    EXPECT_TRUE(threads[i].join());
    EXPECT_EQ(ids[i], i + 2);
    EXPECT_EQ(threads[i].id(), i + 2);
    EXPECT_EQ(names[i], "thread with a long name " + std::to_string(i));
  }
}

TEST_P(KernelContract, AJoinWaitsNoLongerThanItsLimit) {
  Event go("go", Event::Reset::Manual);
  Thread thread;
  thread.start("stays", [&] { go.wait(); });
  EXPECT_TRUE(thread.running());
  EXPECT_FALSE(thread.join(0));
  EXPECT_FALSE(thread.join(20));
  go.set();
  EXPECT_TRUE(thread.join());
  EXPECT_FALSE(thread.running());
  EXPECT_TRUE(thread.join(0));
}

TEST_P(KernelContract, AStartOfARunningThreadDoesNothingAndAnEndedOneMayBeUsedAgain) {
  Event go("go", Event::Reset::Automatic);
  std::vector<int> ran;
  Thread thread;
  thread.start("first", [&] {
    go.wait();
    ran.push_back(1);
  });
  const uint32_t id = thread.id();
  thread.start("second", [&] { ran.push_back(2); });
  EXPECT_EQ(thread.id(), id);
  go.set();
  EXPECT_TRUE(thread.join());
  thread.start("third", [&] { ran.push_back(3); });
  EXPECT_NE(thread.id(), id);
  EXPECT_TRUE(thread.join());
  EXPECT_EQ(ran, (std::vector<int>{1, 3}));
}

TEST_P(KernelContract, ATerminationRequestEndsTheWaitInProgressAndAllLaterOnes) {
  Event never("never", Event::Reset::Manual);
  Event set("set", Event::Reset::Manual, true);
  std::vector<int> results;
  bool cut = false, requested = false, before = true;
  Thread thread;
  thread.start("victim", [&] {
    before = Thread::terminationRequested();
    results.push_back(never.wait());
    results.push_back(never.wait(60'000));
    results.push_back(set.wait());
    results.push_back(waitAny({&never, &set}, 0));
    cut = sleepMillis(60'000);
    requested = Thread::terminationRequested();
  });
  awaitThreads("waits for event \"never\"");
  const uint32_t start = tickCount();
  thread.terminate();
  EXPECT_TRUE(thread.join(30'000));
  EXPECT_LT(tickCount() - start, 30'000u);
  EXPECT_EQ(results, (std::vector<int>(4, WaitTerminated)));
  EXPECT_TRUE(cut);
  EXPECT_TRUE(requested);
  EXPECT_FALSE(before);
  EXPECT_FALSE(Thread::terminationRequested()) << "the request is that thread's alone";
  EXPECT_TRUE(set.isSet());
}

TEST_P(KernelContract, ATerminationRequestCutsNeitherALockNorAJoinShort) {
  Lock lock("lock", LockRank::Object);
  Event go("go", Event::Reset::Manual);
  bool tookLock = false, joined = false;
  Thread inner, outer;
  inner.start("inner", [&] { go.wait(); });
  lock.lock();
  outer.start("outer", [&] {
    {
      const std::lock_guard guard(lock);
      tookLock = true;
    }
    joined = inner.join();
  });
  awaitThreads("waits for lock \"lock\"");
  outer.terminate();
  sleepMillis(5);
  lock.unlock();
  awaitThreads("waits for the end of thread \"inner\"");
  EXPECT_FALSE(outer.join(5));
  go.set();
  EXPECT_TRUE(outer.join());
  EXPECT_TRUE(tookLock);
  EXPECT_TRUE(joined);
}

TEST_P(KernelContract, TheDestructorOfAThreadAsksItToEndAndJoinsIt) {
  bool ended = false;
  {
    Thread thread;
    thread.start("worker", [&] {
      while (!sleepMillis(60'000)) {
      }
      ended = true;
    });
  }
  EXPECT_TRUE(ended);
}

TEST_P(KernelContract, AnAdoptedThreadRunsAndIsNeverJoined) {
  Thread self;
  self.adoptCurrent();
  EXPECT_TRUE(self.running());
  EXPECT_EQ(self.id(), Thread::currentId());
  EXPECT_FALSE(self.join(0));
  EXPECT_FALSE(self.join(WaitForever)) << "it tells, it does not wait";

  std::optional<Thread> adopted(std::in_place);
  Event ready("ready", Event::Reset::Manual), go("go", Event::Reset::Manual);
  Thread worker;
  worker.start("worker", [&] {
    adopted->adoptCurrent();
    ready.set();
    go.wait();
  });
  ready.wait();
  EXPECT_EQ(adopted->id(), worker.id());
  EXPECT_TRUE(adopted->running());
  go.set();
  EXPECT_TRUE(worker.join());
  EXPECT_FALSE(adopted->running());
  EXPECT_TRUE(adopted->join(0));
  adopted.reset();
}

TEST_P(KernelContract, AnAdoptedThreadCanBeAskedToEnd) {
  Thread self;
  self.adoptCurrent();
  Thread other;
  other.start("other", [&] {
    sleepMillis(10);
    self.terminate();
  });
  EXPECT_TRUE(sleepMillis(600'000));
  EXPECT_TRUE(Thread::terminationRequested());
  EXPECT_TRUE(other.join());
}

TEST_P(KernelContract, AReportNamesEachThreadItsWaitAndItsLocks) {
  Event input("input", Event::Reset::Manual), abort("abort", Event::Reset::Manual);
  Lock manager("manager", LockRank::Manager), surface("surface", LockRank::Surface);
  Thread scenario, painter;
  scenario.start("scenario", [&] {
    const std::lock_guard outer(manager);
    const std::lock_guard inner(surface);
    waitAny({&abort, &input}, WaitForever, WaitKind::Input);
  });
  awaitThreads("waits for event");
  painter.start("painter", [&] { const std::lock_guard guard(surface); });
  awaitThreads("waits for lock");
  const std::string text = Kernel::current().describeThreads();
  EXPECT_NE(text.find("thread 1 \"main\" runs; holds no lock\n"), std::string::npos) << text;
  EXPECT_NE(
      text.find("thread 2 \"scenario\" waits for event \"abort\" or \"input\" (input) without "
                "limit; holds lock \"manager\", \"surface\"\n"),
      std::string::npos)
      << text;
  EXPECT_NE(
      text.find("thread 3 \"painter\" waits for lock \"surface\" held by \"scenario\" without "
                "limit; holds no lock\n"),
      std::string::npos)
      << text;
  input.set();
}

TEST_P(KernelContract, ManyThreadsHandOneTokenRound) {
  constexpr size_t Count = 8;
  constexpr int Rounds = 200;
  std::vector<std::unique_ptr<Event>> turn;
  for (size_t i = 0; i < Count; ++i)
    turn.push_back(std::make_unique<Event>("turn", Event::Reset::Automatic));
  std::vector<size_t> order;
  std::array<Thread, Count> threads;
  for (size_t i = 0; i < Count; ++i) {
    threads[i].start("ring " + std::to_string(i), [&, i] {
      for (int round = 0; round < Rounds; ++round) {
        if (turn[i]->wait() != 0) return;
        order.push_back(i);
        turn[(i + 1) % Count]->set();
      }
    });
  }
  turn[0]->set();
  for (Thread& thread : threads)
    EXPECT_TRUE(thread.join());
  ASSERT_EQ(order.size(), Count * Rounds);
  for (size_t i = 0; i < order.size(); ++i)
    ASSERT_EQ(order[i], i % Count) << "at " << i;
}

#ifdef QV_DEBUG
using KernelContractDeathTest = KernelContract;
INSTANTIATE_TEST_SUITE_P(Forms, KernelContractDeathTest,
                         testing::Values(Form::Real, Form::Simulated), formName);

TEST_P(KernelContractDeathTest, ALowerRankAfterAHigherOneIsAMistake) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Lock manager("manager", LockRank::Manager), surface("surface", LockRank::Surface);
  const auto takeBoth = [&] {
    surface.lock();
    manager.lock();
  };
  EXPECT_DEATH(takeBoth(), "lock order broken in thread \"main\": \"manager\"");
}

TEST_P(KernelContractDeathTest, LocksOfOneRankAgainstTheirOrderAreAMistake) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Lock first("first", LockRank::Surface), second("second", LockRank::Surface);
  first.lock();
  second.lock();
  second.unlock();
  first.unlock();
  const auto takeBoth = [&] {
    second.lock();
    first.lock();
  };
  EXPECT_DEATH(takeBoth(), "\"first\" .* taken after \"second\"");
}
#endif

using KernelDeathTest = KernelContract;
INSTANTIATE_TEST_SUITE_P(Forms, KernelDeathTest, testing::Values(Form::Real, Form::Simulated),
                         formName);

TEST_P(KernelDeathTest, AnExceptionThatLeavesAThreadEndsTheProcessWithTheThreadsName) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto throwInThread = [] {
    Thread thread;
    thread.start("thrower", [] { throw std::runtime_error("out of the window"); });
    thread.join();
  };
  EXPECT_DEATH(throwInThread(), "an exception left the thread \"thrower\": out of the window");
}

TEST_P(KernelDeathTest, AScopeThatLeavesAThreadBehindIsAMistake) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        static Thread forgotten;
        forgotten.start("forgotten", [] { sleepMillis(1'000'000); });
        scope_.~KernelScope();
      },
      "everyThreadIsJoined");
}

TEST_P(KernelDeathTest, AFaultThatIsReportedEndsTheProcessWithTheThreads) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(reportKernelFault("line 7 of the script was never met"), testing::ExitedWithCode(1),
              "Fault at tick [0-9]+: line 7 of the script was never met\n"
              "  thread 1 \"main\" runs; holds no lock");
}

}  // namespace
}  // namespace qv
