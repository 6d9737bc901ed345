// What a hand-over, a sent message and an event cost.

#include <memory>
#include <mutex>
#include <vector>

#include <benchmark/benchmark.h>

#include "platform/kernel/kernel.h"
#include "platform/kernel/message_queue.h"

namespace qv {
namespace {

/// Ten threads hand one token round; each hand-over is one of the baton. Wanted: 80,000 a second.
void simulatedHandOvers(benchmark::State& state) {
  constexpr size_t Count = 10;
  constexpr int Rounds = 1000;
  for (auto _ : state) {
    const KernelScope scope(makeSimulatedKernel());
    std::vector<std::unique_ptr<Event>> turn;
    for (size_t i = 0; i < Count; ++i)
      turn.push_back(std::make_unique<Event>("turn", Event::Reset::Automatic));
    std::vector<Thread> threads(Count);
    for (size_t i = 0; i < Count; ++i) {
      threads[i].start("ring", [&, i] {
        for (int round = 0; round < Rounds; ++round) {
          turn[i]->wait();
          turn[(i + 1) % Count]->set();
        }
      });
    }
    turn[0]->set();
    for (Thread& thread : threads)
      thread.join();
  }
  state.counters["handovers"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * Count * Rounds, benchmark::Counter::kIsRate);
}
BENCHMARK(simulatedHandOvers)->UseRealTime()->Unit(benchmark::kMillisecond);

/// One message sent and answered between two threads. Wanted of the real form: 20,000 a second.
void sendAndReply(benchmark::State& state, std::unique_ptr<Kernel> kernel) {
  const KernelScope scope(std::move(kernel));
  MessageQueue queue("queue");
  Thread receiver;
  receiver.start("receiver", [&] {
    MessageQueue::Received received;
    while (queue.receive(received, WaitForever))
      received.reply(1);
  });
  for (auto _ : state) {
    uintptr_t result = 0;
    queue.send({1}, &result);
    if (result != 1) state.SkipWithError("a message was not answered");
  }
  queue.close();
  receiver.join();
  state.counters["messages"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
void realSendAndReply(benchmark::State& state) {
  sendAndReply(state, makeRealKernel());
}
void simulatedSendAndReply(benchmark::State& state) {
  sendAndReply(state, makeSimulatedKernel());
}
BENCHMARK(realSendAndReply)->UseRealTime();
BENCHMARK(simulatedSendAndReply)->UseRealTime();

/// Setting and taking an event for which nobody waits.
void setAndWait(benchmark::State& state, std::unique_ptr<Kernel> kernel) {
  const KernelScope scope(std::move(kernel));
  Event event("event", Event::Reset::Automatic);
  for (auto _ : state) {
    event.set();
    benchmark::DoNotOptimize(event.wait());
  }
}
void realSetAndWait(benchmark::State& state) {
  setAndWait(state, makeRealKernel());
}
void simulatedSetAndWait(benchmark::State& state) {
  setAndWait(state, makeSimulatedKernel());
}
BENCHMARK(realSetAndWait);
BENCHMARK(simulatedSetAndWait);

/// A lock that nobody else wants.
void lockAndUnlock(benchmark::State& state, std::unique_ptr<Kernel> kernel) {
  const KernelScope scope(std::move(kernel));
  Lock lock("lock", LockRank::Object);
  for (auto _ : state) {
    const std::lock_guard guard(lock);
    benchmark::ClobberMemory();
  }
}
void realLock(benchmark::State& state) {
  lockAndUnlock(state, makeRealKernel());
}
void simulatedLock(benchmark::State& state) {
  lockAndUnlock(state, makeSimulatedKernel());
}
BENCHMARK(realLock);
BENCHMARK(simulatedLock);

}  // namespace
}  // namespace qv

BENCHMARK_MAIN();
