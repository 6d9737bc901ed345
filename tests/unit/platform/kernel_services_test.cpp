// Message queues and periodic timers, on both forms of the kernel.

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/kernel/kernel.h"
#include "platform/kernel/message_queue.h"
#include "platform/kernel/periodic_timer.h"

namespace qv {
namespace {

enum class Form { Real, Simulated };

std::string formName(const testing::TestParamInfo<Form>& info) {
  return info.param == Form::Real ? "Real" : "Simulated";
}

/// Goes on once as many threads wait for the answer to a message that they sent.
void awaitSenders(int count) {
  for (;;) {
    const std::string report = Kernel::current().describeThreads();
    int found = 0;
    const std::string text = "waits for event \"answer to a sent message\"";
    for (size_t at = report.find(text); at != std::string::npos; at = report.find(text, at + 1))
      ++found;
    if (found >= count) return;
    sleepMillis(1);
  }
}

class KernelForms : public testing::TestWithParam<Form> {
 protected:
  static std::unique_ptr<Kernel> make() {
    // Close to the wrap, so that every test crosses it or stands near it.
    constexpr uint32_t Start = 0xFFFFFFF0;
    if (GetParam() == Form::Real)
      return makeRealKernel({.fixedStartTick = true, .startTick = Start});
    return makeSimulatedKernel({.seed = 11, .startTick = Start});
  }
  bool simulated() const { return GetParam() == Form::Simulated; }
  KernelScope scope_{make()};
};

using MessageQueueTest = KernelForms;
using PeriodicTimerTest = KernelForms;
INSTANTIATE_TEST_SUITE_P(Forms, MessageQueueTest, testing::Values(Form::Real, Form::Simulated),
                         formName);
INSTANTIATE_TEST_SUITE_P(Forms, PeriodicTimerTest, testing::Values(Form::Real, Form::Simulated),
                         formName);

TEST_P(MessageQueueTest, MessagesComeInTheOrderOfTheirPosting) {
  MessageQueue queue("queue");
  MessageQueue::Received received;
  EXPECT_FALSE(queue.receive(received, 0));
  EXPECT_FALSE(queue.arrived().isSet());
  EXPECT_TRUE(queue.post({1, 10, 100}));
  EXPECT_TRUE(queue.post({2, 20, 200}));
  EXPECT_TRUE(queue.arrived().isSet());
  ASSERT_TRUE(queue.receive(received, 0));
  EXPECT_EQ(received.message.id, 1u);
  EXPECT_EQ(received.message.first, 10u);
  EXPECT_EQ(received.message.second, 100u);
  EXPECT_TRUE(queue.arrived().isSet());
  ASSERT_TRUE(queue.receive(received, 0));
  EXPECT_EQ(received.message.id, 2u);
  EXPECT_FALSE(queue.arrived().isSet());
  EXPECT_FALSE(queue.receive(received, 0));
}

TEST_P(MessageQueueTest, AReceiveWaitsItsLimitAndWakesForAMessage) {
  MessageQueue queue("queue");
  MessageQueue::Received received;
  const uint32_t start = tickCount();
  EXPECT_FALSE(queue.receive(received, 30));
  EXPECT_GE(tickCount() - start, 30u);
  Thread poster;
  poster.start("poster", [&] {
    sleepMillis(10);
    queue.post({5});
  });
  ASSERT_TRUE(queue.receive(received, WaitForever));
  EXPECT_EQ(received.message.id, 5u);
}

TEST_P(MessageQueueTest, ASenderGetsTheReceiversAnswer) {
  MessageQueue queue("queue");
  Thread receiver;
  receiver.start("receiver", [&] {
    for (;;) {
      MessageQueue::Received received;
      if (!queue.receive(received, WaitForever)) return;
      if (received.message.id == 0) return;
      received.reply(received.message.first * 2);
      received.reply(99);  // the first answer counts
    }
  });
  for (uintptr_t i = 0; i < 100; ++i) {
    uintptr_t result = 0;
    ASSERT_TRUE(queue.send({1, i}, &result));
    ASSERT_EQ(result, i * 2);
  }
  queue.post({0});
  EXPECT_TRUE(receiver.join());
}

TEST_P(MessageQueueTest, ASentMessageWithoutAnAnswerIsAnsweredWithZero) {
  MessageQueue queue("queue");
  Thread receiver;
  receiver.start("receiver", [&] {
    MessageQueue::Received received;
    queue.receive(received, WaitForever);
  });
  uintptr_t result = 7;
  EXPECT_TRUE(queue.send({1}, &result));
  EXPECT_EQ(result, 0u);
}

TEST_P(MessageQueueTest, TheNextReceiveAnswersTheLastMessageToo) {
  MessageQueue queue("queue");
  std::atomic<int> answered = 0;
  std::array<Thread, 2> senders;
  for (Thread& sender : senders) {
    sender.start("sender", [&] {
      uintptr_t result = 7;
      if (queue.send({1}, &result) && result == 0) ++answered;
    });
  }
  MessageQueue::Received received;
  EXPECT_TRUE(queue.receive(received, WaitForever));
  EXPECT_TRUE(queue.receive(received, WaitForever));
  EXPECT_FALSE(queue.receive(received, 0));
  for (Thread& sender : senders)
    EXPECT_TRUE(sender.join());
  EXPECT_EQ(answered.load(), 2);
}

TEST_P(MessageQueueTest, TheCloseWakesEverySenderAndRefusesWhatComesLater) {
  auto queue = std::make_unique<MessageQueue>("queue");
  std::atomic<int> refused = 0;
  std::array<Thread, 3> senders;
  for (Thread& sender : senders) {
    sender.start("sender", [&] {
      uintptr_t result = 7;
      if (!queue->send({1}, &result) && result == 7) ++refused;
    });
  }
  awaitSenders(3);
  MessageQueue::Received received;
  ASSERT_TRUE(queue->receive(received, WaitForever));
  queue->close();
  for (Thread& sender : senders)
    EXPECT_TRUE(sender.join()) << "also the one in work";
  EXPECT_EQ(refused.load(), 3);
  received.reply(1);
  EXPECT_TRUE(queue->closed());
  EXPECT_FALSE(queue->post({2}));
  EXPECT_FALSE(queue->send({2}));
  EXPECT_FALSE(queue->receive(received, WaitForever));
}

TEST_P(MessageQueueTest, TheEndOfAQueueClosesIt) {
  auto queue = std::make_unique<MessageQueue>("queue");
  bool sent = true;
  Thread sender;
  sender.start("sender", [&] { sent = queue->send({1}); });
  awaitSenders(1);
  queue.reset();
  EXPECT_TRUE(sender.join());
  EXPECT_FALSE(sent);
}

TEST_P(MessageQueueTest, ACloseWakesTheReceiver) {
  MessageQueue queue("queue");
  bool received = true;
  Thread receiver;
  receiver.start("receiver", [&] {
    MessageQueue::Received message;
    received = queue.receive(message, WaitForever);
  });
  sleepMillis(10);
  queue.close();
  EXPECT_TRUE(receiver.join());
  EXPECT_FALSE(received);
}

TEST_P(MessageQueueTest, ASenderThatIsAskedToEndWithdrawsItsMessage) {
  MessageQueue queue("queue");
  bool sent = true;
  Thread sender;
  sender.start("sender", [&] { sent = queue.send({1}); });
  awaitSenders(1);
  sender.terminate();
  EXPECT_TRUE(sender.join());
  EXPECT_FALSE(sent);
  MessageQueue::Received received;
  EXPECT_FALSE(queue.receive(received, 10));
}

TEST_P(MessageQueueTest, AMessageInWorkIsAnsweredEvenToASenderThatIsAskedToEnd) {
  MessageQueue queue("queue");
  uintptr_t result = 0;
  bool sent = false;
  Thread sender;
  sender.start("sender", [&] { sent = queue.send({1}, &result); });
  MessageQueue::Received received;
  ASSERT_TRUE(queue.receive(received, WaitForever));
  sender.terminate();
  EXPECT_FALSE(sender.join(20)) << "the message may point into its stack";
  received.reply(42);
  EXPECT_TRUE(sender.join());
  EXPECT_TRUE(sent);
  EXPECT_EQ(result, 42u);
}

TEST_P(MessageQueueTest, AReceiverThatIsAskedToEndTakesWhatIsThereAndWaitsNoMore) {
  MessageQueue queue("queue");
  queue.post({1});
  std::vector<bool> results;
  Thread receiver;
  receiver.start("receiver", [&] {
    sleepMillis(60'000);
    MessageQueue::Received received;
    results.push_back(queue.receive(received, WaitForever));
    results.push_back(queue.receive(received, WaitForever));
  });
  receiver.terminate();
  EXPECT_TRUE(receiver.join());
  EXPECT_EQ(results, (std::vector<bool>{true, false}));
}

TEST_P(MessageQueueTest, TheHookRunsAfterEachPostAndSendWithoutALock) {
  MessageQueue queue("queue");
  int calls = 0;
  uint32_t thread = 0;
  queue.setWakeHook([&] {
    ++calls;
    thread = Thread::currentId();
    if (calls == 1) queue.post({2});  // would stand still or fail the ranks under a lock
  });
  EXPECT_TRUE(queue.post({1}));
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(thread, Thread::currentId());
  queue.close();
  EXPECT_FALSE(queue.post({3}));
  EXPECT_EQ(calls, 2);
}

TEST_P(PeriodicTimerTest, CallsOncePerPeriodStartingAfterTheFirst) {
  PeriodicTimer timer;
  std::atomic<int> calls = 0;
  Event ten("ten", Event::Reset::Manual);
  EXPECT_FALSE(timer.running());
  const uint32_t start = tickCount();
  timer.start("timer", 16, [&] {
    if (++calls == 10) ten.set();
  });
  EXPECT_TRUE(timer.running());
  EXPECT_EQ(ten.wait(60'000), 0);
  timer.stop();
  EXPECT_FALSE(timer.running());
  EXPECT_GE(tickCount() - start, 160u);
  if (simulated()) {
    EXPECT_EQ(tickCount() - start, 160u);
  }
  const int counted = calls.load();
  sleepMillis(50);
  EXPECT_EQ(calls.load(), counted) << "none after the stop";
}

TEST_P(PeriodicTimerTest, TicksThatArriveDuringACallbackAreDropped) {
  PeriodicTimer timer;
  std::atomic<int> calls = 0;
  const uint32_t start = tickCount();
  uint32_t elapsed = 0;
  Event counted("counted", Event::Reset::Manual);
  timer.start("timer", 5, [&] {
    if (++calls == 1) sleepMillis(60);
    if (calls == 20) {
      elapsed = tickCount() - start;
      counted.set();
    }
  });
  EXPECT_EQ(counted.wait(60'000), 0);
  timer.stop();
  EXPECT_GE(elapsed, 160u);
  if (simulated()) {
    EXPECT_EQ(elapsed, 160u) << "the first at 5, dropped up to 65, nineteen more from 70 on";
  }
}

/// The ticks that can be taken one after the other at that time, none of which takes any.
int takenAt(DueTicks& ticks, uint32_t now) {
  int taken = 0;
  for (; ticks.take(now); ++taken)
    ticks.done(now);
  return taken;
}

TEST(DueTicksTest, ComeOnceAPeriodAlsoAcrossTheWrap) {
  constexpr uint32_t Start = 0xFFFFFFE8, Period = 16;
  DueTicks ticks(Start, Period);
  EXPECT_FALSE(ticks.take(Start));
  for (uint32_t tick = 1; tick <= 5; ++tick) {
    const uint32_t due = Start + tick * Period;
    EXPECT_EQ(ticks.restMillis(due - Period), Period);
    EXPECT_FALSE(ticks.take(due - 1));
    EXPECT_EQ(ticks.restMillis(due - 1), 1u);
    EXPECT_EQ(ticks.restMillis(due), 0u);
    EXPECT_EQ(takenAt(ticks, due), 1);
  }
}

TEST(DueTicksTest, ThatAreLateFollowAtOnceAndInTime) {
  DueTicks ticks(1000, 16);
  EXPECT_EQ(takenAt(ticks, 1000 + 10 * 16 + 3), 10);
  EXPECT_EQ(ticks.restMillis(1000 + 10 * 16 + 3), 13u) << "the next keeps the beat";
  EXPECT_EQ(takenAt(ticks, 1000 + 11 * 16), 1);
  // Late ones wait while one of them is at work, which drops what arrives meanwhile.
  ASSERT_TRUE(ticks.take(1000 + 14 * 16));
  EXPECT_EQ(ticks.restMillis(1000 + 14 * 16), 0u);
  ticks.done(1000 + 15 * 16);
  EXPECT_EQ(takenAt(ticks, 1000 + 15 * 16), 2);
}

TEST(DueTicksTest, OfAThreadThatStoodStillAreThoseOfTheLastQuarterOfASecond) {
  constexpr uint32_t Minute = 60'000;
  DueTicks ticks(1000, 16);
  EXPECT_EQ(takenAt(ticks, 1000 + Minute), 250 / 16);
  EXPECT_EQ(takenAt(ticks, 1000 + Minute + 16), 1);
  // Not even where some waited already.
  ASSERT_TRUE(ticks.take(1000 + 2 * Minute));
  ticks.done(1000 + 2 * Minute);
  EXPECT_EQ(takenAt(ticks, 1000 + 3 * Minute), 250 / 16);
  // A period that is longer than that is never skipped.
  DueTicks slow(1000, 500);
  EXPECT_EQ(takenAt(slow, 1000 + Minute), 1);
  EXPECT_EQ(takenAt(slow, 1000 + Minute + 500), 1);
}

TEST_P(PeriodicTimerTest, MayBeStoppedByItsOwnCallbackAndStartedAgain) {
  PeriodicTimer timer;
  std::atomic<int> calls = 0;
  for (int run = 1; run <= 2; ++run) {
    Event stopped("stopped", Event::Reset::Manual);
    timer.start("timer", 1, [&] {
      if (++calls != run * 3) return;
      timer.stop();
      EXPECT_FALSE(timer.running());
      stopped.set();
    });
    EXPECT_EQ(stopped.wait(60'000), 0);
    timer.stop();
    EXPECT_EQ(calls.load(), run * 3);
  }
}

TEST_P(PeriodicTimerTest, StartingAnewEndsTheEarlierRun) {
  PeriodicTimer timer;
  std::atomic<int> first = 0;
  Event second("second", Event::Reset::Automatic);
  timer.start("first", 1, [&] { ++first; });
  sleepMillis(10);
  timer.start("second", 1, [&] { second.set(); });
  const int counted = first.load();
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(second.wait(60'000), 0);
  EXPECT_EQ(first.load(), counted);
}

}  // namespace
}  // namespace qv
