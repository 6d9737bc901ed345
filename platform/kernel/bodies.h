#pragma once

/// What stands behind Event, Lock and Thread: one set of classes in each form of the kernel. Only
/// the kernel's own files include this.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/kernel/kernel.h"

namespace qv {

class EventBody {
 public:
  explicit EventBody(const char* name) : name_(name) {}
  virtual ~EventBody() = default;
  EventBody(const EventBody&) = delete;
  EventBody& operator=(const EventBody&) = delete;

  virtual void set() = 0;
  virtual void reset() = 0;
  virtual bool isSet() = 0;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

class LockBody {
 public:
  LockBody(const char* name, LockRank rank, uint64_t order)
      : name_(name), rank_(rank), order_(order) {}
  virtual ~LockBody() = default;
  LockBody(const LockBody&) = delete;
  LockBody& operator=(const LockBody&) = delete;

  virtual void lock() = 0;
  virtual void unlock() = 0;
  const std::string& name() const { return name_; }
  LockRank rank() const { return rank_; }
  uint64_t order() const { return order_; }

 private:
  std::string name_;
  LockRank rank_;
  uint64_t order_;
};

class ThreadBody : public std::enable_shared_from_this<ThreadBody> {
 public:
  ThreadBody(std::string name, uint32_t id) : name_(std::move(name)), id_(id) {}
  virtual ~ThreadBody() = default;
  ThreadBody(const ThreadBody&) = delete;
  ThreadBody& operator=(const ThreadBody&) = delete;

  virtual bool running() = 0;
  /// After true, nothing of the machine's thread is left either.
  virtual bool join(uint32_t limitMillis) = 0;
  virtual void terminate() = 0;
  virtual bool terminationRequested() = 0;
  const std::string& name() const { return name_; }
  uint32_t id() const { return id_; }

 private:
  std::string name_;
  uint32_t id_;
};

/// Aborts with both names when `wanted` may not be taken after what is `held`. Debug builds only;
/// nothing otherwise.
void assertLockOrder(const std::vector<LockBody*>& held, const LockBody& wanted);

/// Runs a thread's body; an exception that leaves it ends the process with the thread's name.
void runThreadBody(const std::string& name, std::function<void()> body);

/// Gives the machine's thread its name, as debuggers and sanitizers show it.
void nameMachineThread(const std::string& name);

}  // namespace qv
