#pragma once

/// QVThread: the engine's thin wrapper of a worker thread. The object may be started again after
/// its thread has ended. One thread at a time drives it.

#include <cstdint>

#include "platform/kernel/kernel.h"

namespace qv {

class QVThread {
 public:
  using Function = void (*)(void* argument);
  static constexpr uint32_t MayTerminate = 4;  ///< the flag that `start` records

  QVThread() = default;
  virtual ~QVThread() = default;

  /// Does nothing if the thread runs.
  void start(const char* name, Function function, void* argument, uint32_t flags = 0);
  void adoptCurrent() { thread_.adoptCurrent(); }
  bool running() const { return thread_.running(); }
  void join(uint32_t limitMillis = WaitForever);  ///< returns at once if no thread runs
  /// Asks the thread to end at its next wait and waits until it has: what the thread used may be
  /// released then. A thread that terminates itself goes on to its own end.
  void terminate();
  uint32_t threadId() const { return thread_.id(); }
  bool terminationFlag() const { return terminationFlag_; }

 private:
  Thread thread_;
  bool terminationFlag_ = false;
};

}  // namespace qv
