// What a hand-over of the baton, a sent message, an event and a lock cost, in both forms.

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "bench/ratio.h"
#include "platform/kernel/kernel.h"
#include "platform/kernel/message_queue.h"

namespace {

using namespace qv;

constexpr int Threads = 10, Rounds = 4000;

/// A ring: each thread waits for its own event and then sets its neighbour's, so that every round
/// is ten hand-overs that nothing can save.
void runRing() {
  const KernelScope scope(makeSimulatedKernel());
  std::array<std::optional<Event>, Threads> turns;
  for (auto& turn : turns)
    turn.emplace("turn", Event::Reset::Automatic);
  std::array<Thread, Threads> ring;
  for (size_t place = 0; place < Threads; ++place)
    ring[place].start("ring", [&turns, place] {
      for (int round = 0; round < Rounds; ++round) {
        turns[place]->wait();
        turns[(place + 1) % Threads]->set();
      }
    });
  turns[0]->set();
  for (Thread& thread : ring)
    thread.join();
}

/// Messages sent and answered between two threads.
void sendMessages(int count) {
  MessageQueue queue("queue");
  Thread receiver;
  receiver.start("receiver", [&] {
    MessageQueue::Received received;
    while (queue.receive(received, WaitForever))
      received.reply(1);
  });
  for (int sent = 0; sent < count; ++sent) {
    uintptr_t answer = 0;
    if (!queue.send({1, 0, 0}, &answer) || answer != 1) std::abort();
  }
  queue.close();
  receiver.join();
}

/// An event set and taken, and a lock, that nobody else wants.
void setAndTake(int count) {
  Event event("event", Event::Reset::Automatic);
  for (int done = 0; done < count; ++done) {
    event.set();
    if (event.wait() != 0) std::abort();
  }
}
void lockAndUnlock(int count) {
  Lock lock("lock", LockRank::Object);
  for (int done = 0; done < count; ++done) {
    const std::lock_guard guard(lock);
    bench::keep(lock);
  }
}

template <typename Work>
double perSecond(int count, const Work& work) {
  double best = 1e9;
  for (int run = 0; run < 5; ++run)
    best = std::min(best, bench::secondsOf([&] { work(count); }));
  return count / best;
}

}  // namespace

int main() {
  bench::Table table;
  table.atLeast("simulated kernel: hand-overs a second among ten threads",
                perSecond(Threads * Rounds, [](int) { runRing(); }), 80'000);
  for (const bool simulated : {false, true}) {
    const KernelScope scope(simulated ? makeSimulatedKernel() : makeRealKernel());
    const std::string form = simulated ? "simulated" : "real";
    const double messages = perSecond(20'000, sendMessages);
    if (simulated)
      table.note((form + " kernel: messages sent and answered a second").c_str(), messages);
    else
      table.atLeast((form + " kernel: messages sent and answered a second").c_str(), messages,
                    20'000);
    table.note((form + " kernel: events set and taken a second").c_str(),
               perSecond(200'000, setAndTake));
    table.note((form + " kernel: locks a second").c_str(), perSecond(200'000, lockAndUnlock));
  }
  return table.status();
}
