#pragma once

/// Holds the calling thread, and the threads that it starts from then on, on one processor.

#include <sched.h>

namespace qv {

class ProcessorPin {
 public:
  /// Where the system refuses, nothing changes: a pin is for speed alone.
  void pin() {
    CPU_ZERO(&before_);
    const int processor = sched_getcpu();
    if (processor < 0 || sched_getaffinity(0, sizeof before_, &before_) != 0) return;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned>(processor), &one);
    pinned_ = sched_setaffinity(0, sizeof one, &one) == 0;
  }
  void release() {
    if (pinned_) sched_setaffinity(0, sizeof before_, &before_);
    pinned_ = false;
  }

 private:
  cpu_set_t before_ = {};
  bool pinned_ = false;
};

}  // namespace qv
