#pragma once

/// The words in which both forms of the kernel describe their threads.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/kernel/bodies.h"

namespace qv {

struct ThreadNote {
  enum class Doing { Runs, WaitsForEvents, WaitsForLock, Joins };
  uint32_t id = 0;
  std::string name;
  Doing doing = Doing::Runs;
  std::vector<std::string> events;  ///< empty in a wait for events: a sleep
  std::string lock, holder;         ///< the lock waited for and who holds it; or the thread joined
  WaitKind kind = WaitKind::Work;
  bool limited = false;
  uint32_t deadlineTick = 0;
  bool terminated = false;
  std::vector<std::string> held;
};

std::vector<std::string> lockNames(const std::vector<LockBody*>& locks);
/// One line with its line end.
std::string describeThread(const ThreadNote& note);
/// The whole report of a fault: why, when, and the threads' lines.
std::string faultReport(const std::string& why, uint32_t tick, const std::string& threads);

}  // namespace qv
