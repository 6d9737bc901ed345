#include "platform/kernel/kernel.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

#include <pthread.h>

#include "platform/assert.h"
#include "platform/kernel/bodies.h"

namespace qv {

namespace {

std::atomic<Kernel*> currentKernel = nullptr;

/// As many events as one wait may name.
constexpr size_t MaximumWaits = 64;

}  // namespace

Kernel& Kernel::current() {
  Kernel* kernel = currentOrNull();
  QV_ASSERT(kernel != nullptr);
  return *kernel;
}

Kernel* Kernel::currentOrNull() {
  return currentKernel.load(std::memory_order_acquire);
}

KernelScope::KernelScope(std::unique_ptr<Kernel> kernel) {
  QV_ASSERT(kernel != nullptr);
  QV_ASSERT(Kernel::currentOrNull() == nullptr);
  kernel->enter();
  currentKernel.store(kernel.release(), std::memory_order_release);
}

KernelScope::~KernelScope() {
  const std::unique_ptr<Kernel> kernel(currentKernel.load());
  kernel->leave();
  currentKernel.store(nullptr, std::memory_order_release);
}

void reportKernelFault(const std::string& why) {
  Kernel::current().fault(why);
  std::abort();  // never reached; the compiler forgets what a virtual function promises
}

void assertLockOrder([[maybe_unused]] const std::vector<LockBody*>& held,
                     [[maybe_unused]] const LockBody& wanted) {
#ifdef QV_DEBUG
  for (const LockBody* lock : held) {
    if (lock->rank() < wanted.rank()) continue;
    if (lock->rank() == wanted.rank() && lock->order() < wanted.order()) continue;
    std::fprintf(stderr,
                 "lock order broken in thread \"%s\": \"%s\" (rank %d) taken after \"%s\" "
                 "(rank %d)\n",
                 Thread::currentName().c_str(), wanted.name().c_str(),
                 static_cast<int>(wanted.rank()), lock->name().c_str(),
                 static_cast<int>(lock->rank()));
    std::abort();
  }
#endif
}

void runThreadBody(const std::string& name, std::function<void()> body) {
  try {
    body();
    body = nullptr;  // what it captured dies before the thread counts as ended
  } catch (const std::exception& error) {
    std::fprintf(stderr, "an exception left the thread \"%s\": %s\n", name.c_str(), error.what());
    std::abort();
  } catch (...) {
    std::fprintf(stderr, "an exception left the thread \"%s\"\n", name.c_str());
    std::abort();
  }
}

void nameMachineThread(const std::string& name) {
  constexpr size_t MachineNameLength = 15;
  pthread_setname_np(pthread_self(), name.substr(0, MachineNameLength).c_str());
}

Event::Event(const char* name, Reset reset, bool set)
    : body_(Kernel::current().makeEvent(name, reset == Reset::Manual, set)) {}
Event::~Event() = default;
void Event::set() {
  body_->set();
}
void Event::reset() {
  body_->reset();
}
bool Event::isSet() const {
  return body_->isSet();
}

int Event::wait(uint32_t limitMillis, WaitKind kind) {
  EventBody* const body = body_.get();
  return Kernel::current().waitAny({&body, 1}, limitMillis, kind);
}

int waitAny(std::initializer_list<Event*> events, uint32_t limitMillis, WaitKind kind) {
  return waitAny(std::span<Event* const>(events.begin(), events.size()), limitMillis, kind);
}

int waitAny(std::span<Event* const> events, uint32_t limitMillis, WaitKind kind) {
  QV_ASSERT(events.size() <= MaximumWaits);
  std::array<EventBody*, MaximumWaits> bodies;
  for (size_t i = 0; i < events.size(); ++i)
    bodies[i] = events[i]->body();
  return Kernel::current().waitAny({bodies.data(), events.size()}, limitMillis, kind);
}

Lock::Lock(const char* name, LockRank rank) : body_(Kernel::current().makeLock(name, rank)) {}
Lock::~Lock() = default;
void Lock::lock() {
  body_->lock();
}
void Lock::unlock() {
  body_->unlock();
}
uint64_t Lock::order() const {
  return body_->order();
}

Thread::~Thread() {
  if (!body_ || adopted_) return;
  QV_ASSERT(body_->id() != currentId());
  body_->terminate();
  body_->join(WaitForever);
}

void Thread::start(const std::string& name, std::function<void()> body) {
  if (running()) return;
  if (body_ && !adopted_) body_->join(WaitForever);
  adopted_ = false;
  body_ = Kernel::current().startThread(name, std::move(body));
}

void Thread::adoptCurrent() {
  QV_ASSERT(!running());
  if (body_ && !adopted_) body_->join(WaitForever);
  body_ = Kernel::current().currentThread();
  QV_ASSERT(body_ != nullptr);
  adopted_ = true;
}

bool Thread::running() const {
  return body_ && body_->running();
}

bool Thread::join(uint32_t limitMillis) {
  if (!body_) return true;
  if (adopted_) return !running();
  QV_ASSERT(body_->id() != currentId());
  return body_->join(limitMillis);
}

void Thread::terminate() {
  if (body_) body_->terminate();
}

uint32_t Thread::id() const {
  return body_ ? body_->id() : 0;
}

bool Thread::terminationRequested() {
  const std::shared_ptr<ThreadBody> body = Kernel::current().currentThread();
  return body && body->terminationRequested();
}

uint32_t Thread::currentId() {
  const std::shared_ptr<ThreadBody> body = Kernel::current().currentThread();
  return body ? body->id() : 0;
}

std::string Thread::currentName() {
  const std::shared_ptr<ThreadBody> body = Kernel::current().currentThread();
  return body ? body->name() : std::string();
}

uint32_t tickCount() {
  return Kernel::current().tickCount();
}

bool sleepMillis(uint32_t millis) {
  return Kernel::current().waitAny({}, millis, WaitKind::Work) == WaitTerminated;
}

}  // namespace qv
