/// The machine's threads and clock. One mutex guards the state of all events and waits: setting an
/// event ends the waits that it satisfies there and then, takes the woken threads off every list
/// they stood in, and notifies their own condition variables. So a wait is decided exactly once,
/// and nothing can be lost between a test and a sleep. Locks do not touch that mutex.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <stdlib.h>
#include <time.h>

#include "platform/assert.h"
#include "platform/kernel/bodies.h"
#include "platform/kernel/thread_report.h"

namespace qv {

namespace {

using Clock = std::chrono::steady_clock;
constexpr int WaitUndecided = -3;

class RealKernel;
class RealEvent;
class RealThread;

/// The calling thread's body; null on threads that are not the kernel's.
thread_local RealThread* callingThread = nullptr;

class RealThread : public ThreadBody {
 public:
  RealThread(RealKernel& kernel, const std::string& name, uint32_t id);

  bool running() override;
  bool join(uint32_t limitMillis) override;
  void terminate() override;
  bool terminationRequested() override { return terminated.load(); }

  void noteLockWait(LockBody* lock) {
    const std::lock_guard guard(noteMutex);
    waitedLock = lock;
  }
  void noteHeld(LockBody* lock) {
    const std::lock_guard guard(noteMutex);
    waitedLock = nullptr;
    held.push_back(lock);
  }
  void noteReleased(LockBody* lock) {
    const std::lock_guard guard(noteMutex);
    held.erase(std::find(held.begin(), held.end(), lock));
  }

  RealKernel& kernel;
  std::thread machineThread;
  std::mutex joinMutex;                  ///< guards machineThread's join
  std::atomic<bool> terminated = false;  ///< written under the kernel's mutex
  std::atomic<bool> ended = false;       ///< written under the kernel's mutex
  std::unique_ptr<RealEvent> end;

  // The present wait; guarded by the kernel's mutex.
  std::condition_variable wake;
  bool waiting = false;
  std::span<EventBody* const> events;
  RealThread* joins = nullptr;
  WaitKind kind = WaitKind::Work;
  WaitCut cut = WaitCut::ByTermination;
  bool limited = false;
  Clock::time_point deadline;
  int result = WaitUndecided;

  // For reports. The thread itself alone writes them, so that it may read `held` freely.
  std::mutex noteMutex;
  LockBody* waitedLock = nullptr;
  std::vector<LockBody*> held;
};

class RealEvent : public EventBody {
 public:
  RealEvent(RealKernel& kernel, const char* name, bool manualReset, bool set)
      : EventBody(name), kernel_(kernel), manualReset_(manualReset), set_(set) {}
  ~RealEvent() override { QV_ASSERT(waiters.empty()); }

  void set() override;
  void reset() override;
  bool isSet() override;

  // Under the kernel's mutex.
  void setHeld();
  bool takeHeld() {
    if (!set_) return false;
    if (!manualReset_) set_ = false;
    return true;
  }
  std::vector<RealThread*> waiters;  ///< the longest first

 private:
  RealKernel& kernel_;
  const bool manualReset_;
  bool set_;
};

class RealLock : public LockBody {
 public:
  using LockBody::LockBody;
  ~RealLock() override { QV_ASSERT(owner_.load() == nullptr); }

  void lock() override;
  void unlock() override;
  /// For reports, under the kernel's mutex: an owner that is seen here does not go away.
  const RealThread* owner() const { return owner_.load(); }

 private:
  std::mutex mutex_;
  std::atomic<RealThread*> owner_ = nullptr;
  int depth_ = 0;  ///< the owner's
};

class RealKernel : public Kernel {
 public:
  explicit RealKernel(const RealKernelOptions& options)
      : tickOffset_(options.fixedStartTick ? options.startTick - machineMillis() : 0) {}

  bool simulated() const override { return false; }
  uint32_t tickCount() override { return machineMillis() + tickOffset_; }
  int64_t wallClockMillis() override {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  }
  CalendarTime localTime(int64_t utcMillis) override;
  uint32_t randomSeed() override { return static_cast<uint32_t>(wallClockMillis() / 1000); }

  std::unique_ptr<EventBody> makeEvent(const char* name, bool manualReset, bool set) override {
    return std::make_unique<RealEvent>(*this, name, manualReset, set);
  }
  std::unique_ptr<LockBody> makeLock(const char* name, LockRank rank) override {
    return std::make_unique<RealLock>(name, rank, nextLockOrder_.fetch_add(1));
  }
  std::shared_ptr<ThreadBody> startThread(const std::string& name,
                                          std::function<void()> body) override;
  std::shared_ptr<ThreadBody> currentThread() override {
    return callingThread ? callingThread->shared_from_this() : nullptr;
  }
  int waitAny(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind,
              WaitCut cut) override {
    return wait(events, limitMillis, kind, cut, nullptr);
  }
  int wait(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind, WaitCut cut,
           RealThread* joins);
  std::string describeThreads() override;
  [[noreturn]] void fault(const std::string& why) override {
    const std::string report = faultReport(why, tickCount(), describeThreads());
    std::fputs(report.c_str(), stderr);
    std::fflush(stderr);
    std::_Exit(1);
  }

  /// Ends a wait, under the mutex.
  static void decide(RealThread& thread, int result);
  void finishThread(RealThread& thread);
  void forgetThread(RealThread& thread);

  std::mutex mutex;  ///< guards every event's state, every wait and the list of threads

 protected:
  void enter() override;
  void leave() override;

 private:
  static uint32_t machineMillis() {
    return static_cast<uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch())
            .count());
  }
  std::shared_ptr<RealThread> addThread(const std::string& name);
  uint32_t tickOf(Clock::time_point time) const {
    return static_cast<uint32_t>(
               std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch())
                   .count()) +
           tickOffset_;
  }
  ThreadNote noteOf(RealThread& thread);

  const uint32_t tickOffset_;
  std::atomic<uint64_t> nextLockOrder_ = 1;
  uint32_t lastThreadId_ = 0;
  std::vector<std::shared_ptr<RealThread>> threads_;  ///< until they are joined
};

RealThread::RealThread(RealKernel& kernelOfThread, const std::string& name, uint32_t id)
    : ThreadBody(name, id),
      kernel(kernelOfThread),
      end(std::make_unique<RealEvent>(kernelOfThread, "the end of a thread", true, false)) {}

bool RealThread::running() {
  return !ended.load();
}

bool RealThread::join(uint32_t limitMillis) {
  EventBody* const event = end.get();
  if (kernel.wait({&event, 1}, limitMillis, WaitKind::Service, WaitCut::Never, this) != 0)
    return false;
  const std::lock_guard guard(joinMutex);
  if (machineThread.joinable()) {
    machineThread.join();
    kernel.forgetThread(*this);
  }
  return true;
}

void RealThread::terminate() {
  const std::lock_guard guard(kernel.mutex);
  terminated.store(true);
  if (waiting && cut == WaitCut::ByTermination) RealKernel::decide(*this, WaitTerminated);
}

void RealEvent::set() {
  const std::lock_guard guard(kernel_.mutex);
  setHeld();
}

void RealEvent::setHeld() {
  if (!manualReset_ && waiters.empty()) set_ = true;
  if (manualReset_) set_ = true;
  while (!waiters.empty()) {
    RealThread& thread = *waiters.front();
    const auto place = std::find(thread.events.begin(), thread.events.end(), this);
    RealKernel::decide(thread, static_cast<int>(place - thread.events.begin()));
    if (!manualReset_) return;
  }
}

void RealEvent::reset() {
  const std::lock_guard guard(kernel_.mutex);
  set_ = false;
}

bool RealEvent::isSet() {
  const std::lock_guard guard(kernel_.mutex);
  return set_;
}

void RealLock::lock() {
  RealThread* self = callingThread;
  QV_ASSERT(self != nullptr);
  if (owner_.load(std::memory_order_relaxed) == self) {
    ++depth_;
    return;
  }
  assertLockOrder(self->held, *this);
  if (!mutex_.try_lock()) {
    self->noteLockWait(this);
    mutex_.lock();
  }
  owner_.store(self, std::memory_order_relaxed);
  depth_ = 1;
  self->noteHeld(this);
}

void RealLock::unlock() {
  RealThread* self = callingThread;
  QV_ASSERT(self != nullptr);
  QV_ASSERT(owner_.load(std::memory_order_relaxed) == self);
  if (--depth_ > 0) return;
  self->noteReleased(this);
  owner_.store(nullptr, std::memory_order_relaxed);
  mutex_.unlock();
}

void RealKernel::decide(RealThread& thread, int result) {
  for (EventBody* event : thread.events)
    std::erase(static_cast<RealEvent*>(event)->waiters, &thread);
  thread.events = {};
  thread.waiting = false;
  thread.result = result;
  thread.wake.notify_one();
}

int RealKernel::wait(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind,
                     WaitCut cut, RealThread* joins) {
  RealThread* self = callingThread;
  QV_ASSERT(self != nullptr);
  std::unique_lock guard(mutex);
  if (cut == WaitCut::ByTermination && self->terminated.load()) return WaitTerminated;
  for (size_t i = 0; i < events.size(); ++i) {
    if (static_cast<RealEvent*>(events[i])->takeHeld()) return static_cast<int>(i);
  }
  if (limitMillis == 0) return WaitTimeout;

  for (EventBody* event : events)
    static_cast<RealEvent*>(event)->waiters.push_back(self);
  self->events = events;
  self->joins = joins;
  self->kind = kind;
  self->cut = cut;
  self->limited = limitMillis != WaitForever;
  self->result = WaitUndecided;
  self->waiting = true;
  const auto decided = [self] { return !self->waiting; };
  if (self->limited) {
    self->deadline = Clock::now() + std::chrono::milliseconds(limitMillis);
    if (!self->wake.wait_until(guard, self->deadline, decided)) decide(*self, WaitTimeout);
  } else {
    self->wake.wait(guard, decided);
  }
  return self->result;
}

std::shared_ptr<RealThread> RealKernel::addThread(const std::string& name) {
  const std::lock_guard guard(mutex);
  return threads_.emplace_back(std::make_shared<RealThread>(*this, name, ++lastThreadId_));
}

std::shared_ptr<ThreadBody> RealKernel::startThread(const std::string& name,
                                                    std::function<void()> body) {
  std::shared_ptr<RealThread> thread = addThread(name);
  thread->machineThread = std::thread([this, self = thread.get(), run = std::move(body)]() mutable {
    callingThread = self;
    nameMachineThread(self->name());
    runThreadBody(self->name(), std::move(run));
    finishThread(*self);
  });
  return thread;
}

void RealKernel::finishThread(RealThread& thread) {
  QV_ASSERT(thread.held.empty());
  callingThread = nullptr;
  const std::lock_guard guard(mutex);
  thread.ended.store(true);
  thread.end->setHeld();
}

void RealKernel::forgetThread(RealThread& thread) {
  const std::lock_guard guard(mutex);
  std::erase_if(threads_, [&](const auto& other) { return other.get() == &thread; });
}

void RealKernel::enter() {
  QV_ASSERT(callingThread == nullptr);
  callingThread = addThread("main").get();
}

void RealKernel::leave() {
  QV_ASSERT(callingThread != nullptr);
  const std::lock_guard guard(mutex);
  QV_ASSERT(callingThread == threads_.front().get());
  QV_ASSERT(callingThread->held.empty());
  const bool everyThreadIsJoined = threads_.size() == 1;
  QV_ASSERT(everyThreadIsJoined);
  callingThread->ended.store(true);
  callingThread = nullptr;
}

ThreadNote RealKernel::noteOf(RealThread& thread) {
  ThreadNote note;
  note.id = thread.id();
  note.name = thread.name();
  note.terminated = thread.terminated.load();
  if (thread.waiting) {
    note.doing = thread.joins ? ThreadNote::Doing::Joins : ThreadNote::Doing::WaitsForEvents;
    if (thread.joins) note.holder = thread.joins->name();
    for (const EventBody* event : thread.events)
      note.events.push_back(event->name());
    note.kind = thread.kind;
    note.limited = thread.limited;
    if (thread.limited) note.deadlineTick = tickOf(thread.deadline);
  }
  const std::lock_guard guard(thread.noteMutex);
  if (thread.waitedLock) {
    note.doing = ThreadNote::Doing::WaitsForLock;
    note.lock = thread.waitedLock->name();
    const RealThread* owner = static_cast<RealLock*>(thread.waitedLock)->owner();
    if (owner) note.holder = owner->name();
  }
  note.held = lockNames(thread.held);
  return note;
}

std::string RealKernel::describeThreads() {
  const std::lock_guard guard(mutex);
  std::string text;
  for (const auto& thread : threads_) {
    if (!thread->ended.load()) text += describeThread(noteOf(*thread));
  }
  return text;
}

CalendarTime RealKernel::localTime(int64_t utcMillis) {
  int64_t millis = utcMillis % 1000;
  if (millis < 0) millis += 1000;
  const time_t seconds = (utcMillis - millis) / 1000;
  struct tm local = {};
  localtime_r(&seconds, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec,
          .millisecond = static_cast<int>(millis),
          .weekday = local.tm_wday};
}

}  // namespace

std::unique_ptr<Kernel> makeRealKernel(const RealKernelOptions& options) {
  return std::make_unique<RealKernel>(options);
}

}  // namespace qv
