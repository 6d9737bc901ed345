#include "scenario/scenario_host.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

class HostProtocol : public BothKernels {
 protected:
  /// Runs `action` on a thread of its own after `millis`.
  void after(uint32_t millis, std::function<void()> action) {
    helper.start("helper", [this, millis, action = std::move(action)] {
      sleepMillis(millis);
      action();
    });
  }
  bool requestEventIsSet() { return host.windowRequestEvent.wait(0) == 0; }
  bool inputEventIsSet() { return host.inputEvent.wait(0) == 0; }

  FakeHost host;
  Thread helper;
};
class InputWait : public HostProtocol {};
class WindowRequest : public HostProtocol {};
QV_IN_BOTH_KERNELS(InputWait);
QV_IN_BOTH_KERNELS(WindowRequest);

TEST(ScaledMillis, KeepsForEverAndNeverWraps) {
  EXPECT_EQ(scaledMillis(-1, 100), WaitForever);
  EXPECT_EQ(scaledMillis(-7, 100), WaitForever);
  EXPECT_EQ(scaledMillis(0, 100), 0u);
  EXPECT_EQ(scaledMillis(9999, 100), 999'900u);
  EXPECT_EQ(scaledMillis(std::numeric_limits<int32_t>::max(), 100), WaitForever - 1);
  EXPECT_EQ(scaledMillis(std::numeric_limits<int32_t>::max(), 1), 0x7FFFFFFFu);
}

// --- The input wait ---

TEST_P(InputWait, GivesTheDeliveredValue) {
  after(20, [&] { EXPECT_TRUE(host.deliverInput(2061)); });
  EXPECT_EQ(host.WaitForInput(InputForever, 0, 0), 2061);
  EXPECT_EQ(host.waitingFlag, 0);
  EXPECT_TRUE(inputEventIsSet());
  EXPECT_EQ(host.waitsBegan, 1);
  EXPECT_EQ(host.waitsEnded, 1);
}

TEST_P(InputWait, WithTimeZeroTimesOutAtOnce) {
  const uint32_t before = tickCount();
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
  EXPECT_LT(tickCount() - before, 50u);
}

TEST_P(InputWait, CountsTenthsOfASecondOrMilliseconds) {
  uint32_t start = tickCount();
  EXPECT_EQ(host.WaitForInput(1, 0, 0), WaitInputTimeout);
  EXPECT_GE(tickCount() - start, 100u);
  start = tickCount();
  EXPECT_EQ(host.WaitForInput(20, 1, 1), WaitInputTimeout);
  EXPECT_GE(tickCount() - start, 20u);
  EXPECT_LT(tickCount() - start, 1000u);
}

TEST_P(InputWait, MayBeginAgainAfterATimeOut) {
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
  EXPECT_TRUE(inputEventIsSet());
  EXPECT_EQ(host.waitingFlag, 0);
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
}

TEST_P(InputWait, WithoutLimitOutlastsAnyLimit) {
  if (!Kernel::current().simulated()) GTEST_SKIP() << "an hour";
  after(3'600'000, [&] { host.deliverInput(5); });
  EXPECT_EQ(host.WaitForInput(InputForever, 0, 1), 5);
  helper.join();
  after(3'600'000, [&] { host.deliverInput(6); });
  EXPECT_EQ(host.WaitForInput(std::numeric_limits<int32_t>::max(), 0, 0), 6);
}

TEST_P(InputWait, RaisesOnAbortAndLeavesTheEventForOthers) {
  after(20, [&] { host.abortEvent.set(); });
  EXPECT_THROW(host.WaitForInput(InputForever, 0, 0), ExitScenarioException);
  EXPECT_TRUE(inputEventIsSet());
  EXPECT_EQ(host.waitingFlag, 0);
  EXPECT_EQ(host.waitsEnded, 1);
  EXPECT_THROW(host.WaitForInput(InputForever, 0, 0), ExitScenarioException);
}

TEST_P(InputWait, LetsTheAbortWinOverInputThatCameWithIt) {
  host.onInputWait = [&] {
    EXPECT_TRUE(host.deliverInput(7));
    host.abortEvent.set();
  };
  EXPECT_THROW(host.WaitForInput(InputForever, 0, 0), ExitScenarioException);
  EXPECT_TRUE(inputEventIsSet());
}

TEST_P(InputWait, TakesNoInputWhileNobodyWaits) {
  EXPECT_FALSE(host.deliverInput(9));
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
  EXPECT_FALSE(host.deliverInput(9));
}

TEST_P(InputWait, TakesTheFirstOfTwoInputs) {
  host.onInputWait = [&] {
    EXPECT_TRUE(host.deliverInput(1));
    EXPECT_FALSE(host.deliverInput(2));
  };
  EXPECT_EQ(host.WaitForInput(0, 0, 0), 1);
}

TEST_P(InputWait, GivesInputThatWasTakenInTheMomentOfTheTimeOut) {
  // The taking side has the flag but not yet set the event when the limit passes.
  host.onInputWait = [&] {
    host.waitingFlag.exchange(0);
    host.inputValue = 4;
    after(60, [&] { host.inputEvent.set(); });
  };
  EXPECT_EQ(host.WaitForInput(10, 0, 1), 4);
  EXPECT_TRUE(inputEventIsSet());
}

TEST_P(InputWait, ClearsThePendingWordAtItsStart) {
  host.inputPending = 3;
  host.WaitForInput(0, 0, 0);
  EXPECT_EQ(host.inputPending, 0);
}

TEST_P(InputWait, LosesAndDoublesNothingBetweenTwoThreads) {
  constexpr int Rounds = 300;
  std::atomic<bool> over = false;
  std::atomic<int> taken = 0;
  Thread feeder;
  feeder.start("feeder", [&] {
    for (int code = 1; !over; sleepMillis(1))
      if (host.deliverInput(code)) taken = code++;
  });
  int expected = 1;
  for (int i = 0; i < Rounds; ++i) {
    const int result = host.WaitForInput(1, 0, 1);
    if (result == WaitInputTimeout) continue;
    EXPECT_EQ(result, expected++);
  }
  over = true;
  feeder.join();
  EXPECT_EQ(taken, expected - 1);
}

TEST(InputWaitInAnyOrder, LosesAndDoublesNothing) {
  for (uint64_t seed = 1; seed <= 200; ++seed) {
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    FakeHost host;
    bool over = false;
    std::vector<int> given, taken;
    Thread feeder;
    feeder.start("feeder", [&] {
      for (int code = 1; !over; ++code) {
        sleepMillis(1 + static_cast<uint32_t>(seed) % 3);
        if (host.deliverInput(code)) given.push_back(code);
      }
    });
    for (int i = 0; i < 20; ++i) {
      const int result = host.WaitForInput(2, 0, 1);
      if (result != WaitInputTimeout) taken.push_back(result);
    }
    over = true;
    feeder.join();
    EXPECT_EQ(taken, given) << "seed " << seed;
    EXPECT_EQ(host.inputEvent.wait(0), 0) << "seed " << seed;
  }
}

TEST(AbortInAnyOrder, LetsTheRunOutOfEveryWait) {
  for (uint64_t seed = 1; seed <= 200; ++seed) {
    TestPlatform platform(false, makeSimulatedKernel({.seed = seed}));
    FakeHost host;
    Thread ender;
    ender.start("ender", [&] {
      sleepMillis(static_cast<uint32_t>(seed) % 40);
      host.abortEvent.set();
    });
    QVScenario manager;
    manager.Start(&host, "Test", 1, 1, 1);
    bool raised = false;
    try {
      for (int round = 0;; ++round) {
        const Rectangle rectangle{0, 0, 8, 8};
        host.top.isMinimised = seed % 2 == 1 && round % 3 == 2;
        manager.CreateObject("v", TypeView, {nullptr, &rectangle});
        manager.WaitInput(nullptr, 0);
        manager.DestroyObject("v");
        host.SleepUnlessAborted(3);
      }
    } catch (const ExitScenarioException&) {
      raised = true;
    }
    EXPECT_TRUE(raised);
    const uint32_t start = tickCount();
    manager.Release();
    EXPECT_LT(tickCount() - start, 1000u);
    EXPECT_EQ(host.windowCount(), 0u) << "seed " << seed;
    ender.join();
  }
}

TEST_P(InputWait, OpenedByAnotherPartyIsClosedWithItsValue) {
  QVEvent& event = host.BeginInput();
  EXPECT_EQ(&event, &host.inputEvent);
  EXPECT_EQ(host.waitingFlag, 1);
  EXPECT_FALSE(inputEventIsSet());
  EXPECT_TRUE(host.deliverInput(300));
  EXPECT_EQ(host.EndInput(), 300);
  EXPECT_EQ(host.waitingFlag, 0);
  EXPECT_TRUE(inputEventIsSet());
  host.BeginInput();
  host.EndInput();
  EXPECT_TRUE(inputEventIsSet());
}

TEST_P(InputWait, WaitsItsTurnBehindAnotherParty) {
  host.BeginInput();
  after(30, [&] { host.EndInput(); });
  const uint32_t start = tickCount();
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
  EXPECT_GE(tickCount() - start, 25u);
}

TEST_P(InputWait, DoesNotHangBehindAnotherPartyAfterTheAbort) {
  host.BeginInput();
  host.abortEvent.set();
  EXPECT_THROW(host.WaitForInput(InputForever, 0, 0), ExitScenarioException);
}

TEST_P(InputWait, StandsStillWhileThePauseFlagIsSet) {
  host.pauseFlag = 1;
  after(250, [&] { host.pauseFlag = 0; });
  const uint32_t start = tickCount();
  EXPECT_EQ(host.WaitForInput(0, 0, 0), WaitInputTimeout);
  EXPECT_GE(tickCount() - start, 250u);
}

TEST_P(InputWait, IsLeftByAbortWhilePaused) {
  host.pauseFlag = 1;
  after(20, [&] { host.abortEvent.set(); });
  EXPECT_THROW(host.WaitForInput(InputForever, 0, 0), ExitScenarioException);
}

// --- Sleep and pause ---

TEST_P(InputWait, SleepLastsItsTimeUnlessAborted) {
  const uint32_t start = tickCount();
  host.SleepUnlessAborted(30);
  EXPECT_GE(tickCount() - start, 30u);
  after(20, [&] { host.abortEvent.set(); });
  EXPECT_THROW(host.SleepUnlessAborted(60'000), ExitScenarioException);
  EXPECT_THROW(host.SleepUnlessAborted(0), ExitScenarioException);
}

TEST_P(InputWait, PauseReturnsAfterTheAbortWithoutRaising) {
  host.pauseFlag = 1;
  host.abortEvent.set();
  EXPECT_NO_THROW(host.WaitForPause(1000));
}

// --- Windows ---

TEST_P(WindowRequest, IsServedWithTheRecordOfTheCaller) {
  CreateWindowRequest request;
  request.typeCode = TypeView;
  request.name.create(QVString::DefaultGrain, "cg.view");
  WindowObject* window = host.PostCreateRequest(request);
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->name.equals("cg.view"));
  EXPECT_EQ(request.result, window);
  ASSERT_EQ(host.created.size(), 1u);
  EXPECT_TRUE(host.created[0].hostIsSet);
  EXPECT_TRUE(host.created[0].secondPointsToTypeCode);
  EXPECT_TRUE(requestEventIsSet());
}

TEST_P(WindowRequest, ToDestroyIsDoneWhenItReturns) {
  host.addWindow("a", TypeView);
  // The name given is the window's own, which goes with it.
  host.PostDestroyRequest(host.FindWindowObject("a")->name.text());
  EXPECT_EQ(host.destroyed, std::vector<std::string>{"a"});
  EXPECT_EQ(host.windowCount(), 0u);
  EXPECT_TRUE(requestEventIsSet());
}

TEST_P(WindowRequest, WaitsWhileTheTopWindowIsMinimised) {
  host.top.isMinimised = true;
  after(200, [&] {
    EXPECT_TRUE(host.created.empty());
    host.top.isMinimised = false;
  });
  CreateWindowRequest request;
  const uint32_t start = tickCount();
  EXPECT_NE(host.PostCreateRequest(request), nullptr);
  EXPECT_GE(tickCount() - start, 200u);
}

TEST_P(WindowRequest, WhileMinimisedRaisesOnAbortAndLeavesTheWayOutFree) {
  host.addWindow("a", TypeView);
  host.top.isMinimised = true;
  after(120, [&] { host.abortEvent.set(); });
  CreateWindowRequest request;
  EXPECT_THROW(host.PostCreateRequest(request), ExitScenarioException);
  EXPECT_TRUE(host.created.empty());
  host.PostDestroyRequest("a");
  EXPECT_EQ(host.windowCount(), 0u);
}

TEST_P(WindowRequest, ToDestroyFinishesAfterTheAbortEvenWhilePaused) {
  host.addWindow("a", TypeView);
  host.pauseFlag = 1;
  host.abortEvent.set();
  EXPECT_NO_THROW(host.PostDestroyRequest("a"));
  EXPECT_EQ(host.windowCount(), 0u);
}

TEST_P(WindowRequest, AfterTheUiThreadEndedDoesNothingAndHangsNever) {
  host.addWindow("a", TypeView);
  host.endUi();
  for (int round = 0; round < 3; ++round) {
    CreateWindowRequest request;
    EXPECT_EQ(host.PostCreateRequest(request), nullptr);
    host.PostDestroyRequest("a");
  }
  EXPECT_EQ(host.windowCount(), 1u);
  EXPECT_TRUE(requestEventIsSet());
}

TEST_P(WindowRequest, ThatTheEndingUiThreadDropsStillReturns) {
  host.dropRequests();
  after(30, [&] { host.queue.close(); });
  CreateWindowRequest request;
  EXPECT_EQ(host.PostCreateRequest(request), nullptr);
  host.PostDestroyRequest("a");
  EXPECT_TRUE(requestEventIsSet());
}

TEST_P(WindowRequest, TopWindowWalksTheParentsAndKeepsWhatItFound) {
  EXPECT_EQ(host.TopWindow(0), &host.top);
  FakeNative above;
  host.top.parent = &above;
  EXPECT_EQ(host.TopWindow(0), &host.top);
  EXPECT_EQ(host.TopWindow(1), &above);
  host.mainWindow = nullptr;
  EXPECT_EQ(host.TopWindow(1), nullptr);
}

TEST_P(WindowRequest, SceneNoticeGoesOutOnlyWhereSomebodyTakesIt) {
  host.NotifyScene();
  FakeNative notify;
  host.notifyWindow = &notify;
  host.NotifyScene();
  EXPECT_TRUE(notify.sent.empty());
  QVScenario manager;
  host.manager = &manager;
  host.NotifyScene();
  ASSERT_EQ(notify.sent.size(), 1u);
  EXPECT_EQ(notify.sent[0].id, 1871u);
  EXPECT_EQ(notify.sent[0].first, 0u);
  EXPECT_EQ(notify.sent[0].second, 0u);
}

}  // namespace
}  // namespace qv::testing
