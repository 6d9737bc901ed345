/// Events, locks and threads of the simulated form: what they do to their own state. When the baton
/// moves is the kernel's matter.

#include <algorithm>

#include "platform/assert.h"
#include "platform/kernel/simulated_kernel.h"

namespace qv {

SimulatedEvent::SimulatedEvent(SimulatedKernel& kernel, const char* name, bool manualReset,
                               bool set)
    : EventBody(name), kernel_(kernel), manualReset_(manualReset), set_(set) {}

SimulatedEvent::~SimulatedEvent() {
  QV_ASSERT(waiters.empty());
}

void SimulatedEvent::set() {
  kernel_.mayMove();
  setHere();
  kernel_.mayMove();
}

void SimulatedEvent::setHere() {
  if (manualReset_ || waiters.empty()) set_ = true;
  while (!waiters.empty()) {
    // Which of several waiters of an automatic event goes on is nobody's promise.
    const size_t chosen =
        manualReset_ ? 0 : kernel_.random().below(static_cast<uint32_t>(waiters.size()));
    SimulatedThread& thread = *waiters[chosen];
    const auto& events = thread.wait.events;
    const auto place = std::find(events.begin(), events.end(), this);
    kernel_.endWait(thread, static_cast<int>(place - events.begin()));
    if (!manualReset_) return;
  }
}

void SimulatedEvent::reset() {
  kernel_.mayMove();
  set_ = false;
  kernel_.mayMove();
}

bool SimulatedEvent::isSet() {
  SimulatedThread& thread = kernel_.mayMove();
  if (!set_) kernel_.countSpin(thread, 1);
  return set_;
}

bool SimulatedEvent::take() {
  if (!set_) return false;
  if (!manualReset_) set_ = false;
  return true;
}

SimulatedLock::SimulatedLock(SimulatedKernel& kernel, const char* name, LockRank rank,
                             uint64_t order)
    : LockBody(name, rank, order), kernel_(kernel) {}

SimulatedLock::~SimulatedLock() {
  QV_ASSERT(owner_ == nullptr);
  QV_ASSERT(waiters_.empty());
}

void SimulatedLock::lock() {
  SimulatedThread& thread = kernel_.mayMove();
  if (owner_ == &thread) {
    ++depth_;
    return;
  }
  if (kernel_.assertsLockOrder()) assertLockOrder(thread.held, *this);
  // Another thread may take the lock between its release and the wake, as with real ones.
  while (owner_ != nullptr) {
    waiters_.push_back(&thread);
    kernel_.waitForLock(thread, *this);
  }
  owner_ = &thread;
  depth_ = 1;
  thread.held.push_back(this);
}

void SimulatedLock::unlock() {
  SimulatedThread& thread = kernel_.mayMove();
  QV_ASSERT(owner_ == &thread);
  if (--depth_ == 0) {
    owner_ = nullptr;
    thread.held.erase(std::find(thread.held.begin(), thread.held.end(), this));
    if (!waiters_.empty()) {
      const uint32_t chosen = kernel_.random().below(static_cast<uint32_t>(waiters_.size()));
      SimulatedThread& next = *waiters_[chosen];
      waiters_.erase(waiters_.begin() + chosen);
      kernel_.endWait(next, 0);
    }
  }
  kernel_.mayMove();
}

SimulatedThread::SimulatedThread(SimulatedKernel& kernelOfThread, const std::string& name,
                                 uint32_t id)
    : ThreadBody(name, id),
      kernel(kernelOfThread),
      end(kernelOfThread, "the end of a thread", true, false) {
  sem_init(&baton, 0, 0);
}

SimulatedThread::~SimulatedThread() {
  sem_destroy(&baton);
}

bool SimulatedThread::running() {
  // Nobody holds a baton before and after the kernel; what stands for its main thread may be asked.
  if (!ended) kernel.mayMove();
  return !ended;
}

bool SimulatedThread::join(uint32_t limitMillis) {
  EventBody* const event = &end;
  // Not a wait that can stall by itself: what keeps the other thread from ending is reported.
  if (kernel.wait({&event, 1}, limitMillis, WaitKind::Service, WaitCut::Never, this) != 0)
    return false;
  if (machineThread.joinable()) {
    machineThread.join();
    kernel.forgetThread(*this);
  }
  return true;
}

void SimulatedThread::terminate() {
  kernel.mayMove();
  terminated = true;
  if (waiting && wait.cut == WaitCut::ByTermination) kernel.endWait(*this, WaitTerminated);
  kernel.mayMove();
}

}  // namespace qv
