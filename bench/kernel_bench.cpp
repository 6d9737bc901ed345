// How often a second the simulated kernel's baton changes hands between ten threads.

#include <array>
#include <memory>
#include <optional>

#include "bench/ratio.h"
#include "platform/kernel/kernel.h"

namespace {

constexpr int Threads = 10, Rounds = 4000;

/// A ring: each thread waits for its own event and then sets its neighbour's, so that every round
/// is ten hand-overs that nothing can save.
void runRing() {
  qv::KernelScope kernel(qv::makeSimulatedKernel());
  std::array<std::optional<qv::Event>, Threads> turns;
  for (auto& turn : turns)
    turn.emplace("turn", qv::Event::Reset::Automatic);
  std::array<qv::Thread, Threads> ring;
  for (size_t place = 0; place < Threads; ++place)
    ring[place].start("ring", [&turns, place] {
      for (int round = 0; round < Rounds; ++round) {
        turns[place]->wait();
        turns[(place + 1) % Threads]->set();
      }
    });
  turns[0]->set();
  for (qv::Thread& thread : ring)
    thread.join();
}

}  // namespace

int main() {
  qv::bench::Table table;
  runRing();
  double best = 1e9;
  for (int run = 0; run < 5; ++run)
    best = std::min(best, qv::bench::secondsOf(runRing));
  table.atLeast("simulated kernel: hand-overs a second among ten threads", Threads * Rounds / best,
                80'000);
  return table.status();
}
