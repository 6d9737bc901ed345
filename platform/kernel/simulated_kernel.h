#pragma once

/// The simulated form: the machine's threads hand one baton around, so that at any time all but one
/// sleep on semaphores of their own. The holder alone touches the state of the kernel, which
/// therefore needs no lock. Every kernel call is a place where the baton may move; a seeded
/// generator decides whether and to whom. When every thread waits, the clock jumps to the nearest
/// deadline. No address, no hash order and no real time takes part in any decision.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <semaphore.h>

#include "platform/kernel/bodies.h"
#include "platform/kernel/kernel.h"
#include "platform/kernel/processor_pin.h"
#include "platform/kernel/simulation_random.h"
#include "platform/kernel/thread_report.h"

namespace qv {

class SimulatedKernel;
class SimulatedLock;
class SimulatedThread;

class SimulatedEvent : public EventBody {
 public:
  SimulatedEvent(SimulatedKernel& kernel, const char* name, bool manualReset, bool set);
  ~SimulatedEvent() override;

  void set() override;
  void reset() override;
  bool isSet() override;

  void setHere();  ///< without a chance to move the baton
  bool take();
  bool manualReset() const { return manualReset_; }
  std::vector<SimulatedThread*> waiters;  ///< the longest first

 private:
  SimulatedKernel& kernel_;
  const bool manualReset_;
  bool set_;
};

class SimulatedLock : public LockBody {
 public:
  SimulatedLock(SimulatedKernel& kernel, const char* name, LockRank rank, uint64_t order);
  ~SimulatedLock() override;

  void lock() override;
  void unlock() override;
  SimulatedThread* owner() const { return owner_; }

 private:
  SimulatedKernel& kernel_;
  SimulatedThread* owner_ = nullptr;
  int depth_ = 0;
  std::vector<SimulatedThread*> waiters_;
};

/// What a thread waits for.
struct SimulatedWait {
  std::span<EventBody* const> events = {};
  SimulatedLock* lock = nullptr;
  SimulatedThread* joins = nullptr;
  WaitKind kind = WaitKind::Work;
  WaitCut cut = WaitCut::ByTermination;
  bool limited = false;
  uint64_t deadline = 0;  ///< milliseconds since the start of the run
  uint64_t since = 0;
};

class SimulatedThread : public ThreadBody {
 public:
  SimulatedThread(SimulatedKernel& kernel, const std::string& name, uint32_t id);
  ~SimulatedThread() override;

  bool running() override;
  bool join(uint32_t limitMillis) override;
  void terminate() override;
  bool terminationRequested() override { return terminated; }

  SimulatedKernel& kernel;
  sem_t baton;
  std::thread machineThread;
  bool ended = false;
  bool terminated = false;
  bool waiting = false;
  SimulatedWait wait;
  int result = 0;
  std::vector<LockBody*> held;
  uint64_t spin = 0;  ///< hundredth parts of clock reads since the last wait
  SimulatedEvent end;
};

class SimulatedKernel : public Kernel {
 public:
  explicit SimulatedKernel(const SimulatedKernelOptions& options);

  bool simulated() const override { return true; }
  uint32_t tickCount() override;
  int64_t wallClockMillis() override;
  CalendarTime localTime(int64_t utcMillis) override;
  uint32_t randomSeed() override;
  std::unique_ptr<EventBody> makeEvent(const char* name, bool manualReset, bool set) override;
  std::unique_ptr<LockBody> makeLock(const char* name, LockRank rank) override;
  std::shared_ptr<ThreadBody> startThread(const std::string& name,
                                          std::function<void()> body) override;
  std::shared_ptr<ThreadBody> currentThread() override;
  int waitAny(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind,
              WaitCut cut) override;
  std::string describeThreads() override;
  [[noreturn]] void fault(const std::string& why) override;

  // For the bodies of this form.
  SimulatedThread& self();     ///< the caller, which holds the baton
  SimulatedThread& mayMove();  ///< the same, after a chance to move the baton
  void countSpin(SimulatedThread& thread, unsigned weight);
  int wait(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind, WaitCut cut,
           SimulatedThread* joins);
  void waitForLock(SimulatedThread& thread, SimulatedLock& lock);
  void endWait(SimulatedThread& thread, int result);
  void forgetThread(SimulatedThread& thread);
  SimulationRandom& random() { return random_; }
  bool assertsLockOrder() const { return options_.assertLockOrder; }

 protected:
  void enter() override;
  void leave() override;

 private:
  uint32_t tick() const { return options_.startTick + static_cast<uint32_t>(now_); }
  void block(SimulatedThread& thread);
  SimulatedThread& chooseNext();
  void pass(SimulatedThread& from, SimulatedThread& to);
  void advanceClock();
  void refuseCircle(const SimulatedThread& thread, const SimulatedThread* blocker);
  void finishThread(SimulatedThread& thread);
  ThreadNote noteOf(const SimulatedThread& thread) const;

  const SimulatedKernelOptions options_;
  SimulationRandom random_;
  SimulationRandom seeds_;  ///< apart, so that the game's seeds do not hang on the interleaving
  unsigned moveShift_;      ///< the baton moves at one call in 2 to the power of this
  uint64_t now_ = 0;        ///< milliseconds since the start of the run
  uint64_t nextLockOrder_ = 1;
  uint32_t lastThreadId_ = 0;
  std::vector<std::shared_ptr<SimulatedThread>> threads_;  ///< by id, until they are joined
  std::vector<SimulatedThread*> runnable_;                 ///< the running one too
  SimulatedThread* running_ = nullptr;
  ProcessorPin pin_;
};

}  // namespace qv
