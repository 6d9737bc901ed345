#pragma once

/// The lock of a print area. It is held while a page waits for the player, and so across calls into
/// every floor: it is who owns the area rather than a lock with a rank, and those who want it sleep
/// on an event. Recursive; use with std::lock_guard. Any kernel thread.

#include <cstdint>

#include "platform/kernel/kernel.h"

namespace qv {

class AreaLock {
 public:
  AreaLock();
  AreaLock(const AreaLock&) = delete;
  AreaLock& operator=(const AreaLock&) = delete;
  void lock();
  void unlock();

 private:
  Lock guard_;  ///< guards all below, for moments
  uint32_t owner_ = 0;
  int depth_ = 0, waiting_ = 0;
  Event free_;  ///< lets one of the waiting threads look again
};

}  // namespace qv
