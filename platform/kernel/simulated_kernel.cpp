#include "platform/kernel/simulated_kernel.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

#include "platform/assert.h"

namespace qv {

namespace {

/// The calling thread's body; null on threads that are not the kernel's.
thread_local SimulatedThread* callingThread = nullptr;

constexpr unsigned ClockReadWeight = 100;
constexpr uint64_t Never = std::numeric_limits<uint64_t>::max();

void post(SimulatedThread& thread) {
  sem_post(&thread.baton);
}

void awaitBaton(SimulatedThread& thread) {
  while (sem_wait(&thread.baton) != 0)
    QV_ASSERT(errno == EINTR);
}

/// The thread that must go on before `thread` can; null when something else may wake it.
const SimulatedThread* blockerOf(const SimulatedThread& thread) {
  if (!thread.waiting) return nullptr;
  if (thread.wait.lock) return thread.wait.lock->owner();
  if (thread.wait.joins && !thread.wait.limited) return thread.wait.joins;
  return nullptr;
}

}  // namespace

SimulatedKernel::SimulatedKernel(const SimulatedKernelOptions& options)
    : options_(options), random_(options.seed), seeds_(~options.seed) {
  // Some faults need a baton that hardly ever rests, others one that stays for long: a seed also
  // decides on that.
  moveShift_ = 1 + random_.below(4);
}

SimulatedThread& SimulatedKernel::self() {
  QV_ASSERT(callingThread != nullptr);
  QV_ASSERT(callingThread == running_);
  return *callingThread;
}

SimulatedThread& SimulatedKernel::mayMove() {
  SimulatedThread& thread = self();
  if (runnable_.size() > 1 && random_.below(1U << moveShift_) == 0) pass(thread, chooseNext());
  return thread;
}

void SimulatedKernel::pass(SimulatedThread& from, SimulatedThread& to) {
  if (&from == &to) return;
  running_ = &to;
  post(to);
  awaitBaton(from);
}

SimulatedThread& SimulatedKernel::chooseNext() {
  if (runnable_.empty()) advanceClock();
  if (runnable_.size() == 1) return *runnable_.front();
  return *runnable_[random_.below(static_cast<uint32_t>(runnable_.size()))];
}

void SimulatedKernel::block(SimulatedThread& thread) {
  thread.waiting = true;
  runnable_.erase(std::find(runnable_.begin(), runnable_.end(), &thread));
  pass(thread, chooseNext());
}

void SimulatedKernel::endWait(SimulatedThread& thread, int result) {
  for (EventBody* event : thread.wait.events)
    std::erase(static_cast<SimulatedEvent*>(event)->waiters, &thread);
  thread.wait = {};
  thread.waiting = false;
  thread.result = result;
  runnable_.push_back(&thread);
}

void SimulatedKernel::advanceClock() {
  uint64_t nearest = Never;
  uint64_t stallAt = Never;
  const SimulatedThread* stalled = nullptr;
  for (const auto& thread : threads_) {
    if (!thread->waiting) continue;
    const SimulatedWait& wait = thread->wait;
    if (wait.limited) {
      nearest = std::min(nearest, wait.deadline);
    } else if (wait.kind == WaitKind::Work && wait.since + options_.stallLimitMillis < stallAt) {
      stallAt = wait.since + options_.stallLimitMillis;
      stalled = thread.get();
    }
  }
  if (nearest == Never) fault("every thread waits and no wait has a limit");
  if (stallAt < nearest) {
    now_ = stallAt;
    fault("the wait of thread \"" + stalled->name() + "\" without limit has stood for " +
          std::to_string(options_.stallLimitMillis) + " ms");
  }
  now_ = nearest;
  for (const auto& thread : threads_) {
    if (thread->waiting && thread->wait.limited && thread->wait.deadline <= now_)
      endWait(*thread, WaitTimeout);
  }
}

int SimulatedKernel::waitAny(std::span<EventBody* const> events, uint32_t limitMillis,
                             WaitKind kind, WaitCut cut) {
  return wait(events, limitMillis, kind, cut, nullptr);
}

int SimulatedKernel::wait(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind,
                          WaitCut cut, SimulatedThread* joins) {
  SimulatedThread& thread = mayMove();
  if (cut == WaitCut::ByTermination && thread.terminated) {
    countSpin(thread, 1);
    return WaitTerminated;
  }
  for (size_t i = 0; i < events.size(); ++i) {
    SimulatedEvent& event = *static_cast<SimulatedEvent*>(events[i]);
    if (!event.take()) continue;
    // A manual event that stands set lets a loop through for ever, so it is no sign of progress.
    if (!event.manualReset()) thread.spin = 0;
    return static_cast<int>(i);
  }
  if (limitMillis == 0) {
    countSpin(thread, 1);
    return WaitTimeout;
  }
  thread.wait = {.events = events,
                 .joins = joins,
                 .kind = kind,
                 .cut = cut,
                 .limited = limitMillis != WaitForever,
                 .deadline = now_ + limitMillis,
                 .since = now_};
  for (EventBody* event : events)
    static_cast<SimulatedEvent*>(event)->waiters.push_back(&thread);
  if (joins) refuseCircle(thread, joins);
  block(thread);
  thread.spin = 0;
  return thread.result;
}

void SimulatedKernel::waitForLock(SimulatedThread& thread, SimulatedLock& lock) {
  thread.wait = {.lock = &lock, .cut = WaitCut::Never, .since = now_};
  refuseCircle(thread, lock.owner());
  block(thread);
}

void SimulatedKernel::refuseCircle(const SimulatedThread& thread, const SimulatedThread* blocker) {
  std::string chain = '"' + thread.name() + '"';
  for (; blocker != nullptr; blocker = blockerOf(*blocker)) {
    chain += " waits for \"" + blocker->name() + '"';
    if (blocker != &thread) {
      chain += ", which";
      continue;
    }
    // The report shows the wait that would close the circle.
    callingThread->waiting = true;
    fault("a circle of locks: " + chain);
  }
}

void SimulatedKernel::countSpin(SimulatedThread& thread, unsigned weight) {
  thread.spin += weight;
  if (thread.spin < uint64_t{options_.spinLimit} * ClockReadWeight) return;
  fault("thread \"" + thread.name() + "\" reads the clock over and over without waiting");
}

uint32_t SimulatedKernel::tickCount() {
  countSpin(mayMove(), ClockReadWeight);
  return tick();
}

int64_t SimulatedKernel::wallClockMillis() {
  countSpin(mayMove(), ClockReadWeight);
  return options_.startUtcMillis + static_cast<int64_t>(now_);
}

CalendarTime SimulatedKernel::localTime(int64_t utcMillis) {
  using std::chrono::days;
  const std::chrono::sys_time<std::chrono::milliseconds> time{std::chrono::milliseconds(utcMillis)};
  const auto day = std::chrono::floor<days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss<std::chrono::milliseconds> clock(time - day);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = static_cast<int>(clock.hours().count()),
          .minute = static_cast<int>(clock.minutes().count()),
          .second = static_cast<int>(clock.seconds().count()),
          .millisecond = static_cast<int>(clock.subseconds().count()),
          .weekday = static_cast<int>(std::chrono::weekday(day).c_encoding())};
}

uint32_t SimulatedKernel::randomSeed() {
  mayMove();
  return static_cast<uint32_t>(seeds_.next() >> 32);
}

std::unique_ptr<EventBody> SimulatedKernel::makeEvent(const char* name, bool manualReset,
                                                      bool set) {
  return std::make_unique<SimulatedEvent>(*this, name, manualReset, set);
}

std::unique_ptr<LockBody> SimulatedKernel::makeLock(const char* name, LockRank rank) {
  self();
  return std::make_unique<SimulatedLock>(*this, name, rank, nextLockOrder_++);
}

std::shared_ptr<ThreadBody> SimulatedKernel::startThread(const std::string& name,
                                                         std::function<void()> body) {
  mayMove();
  auto thread = std::make_shared<SimulatedThread>(*this, name, ++lastThreadId_);
  threads_.push_back(thread);
  thread->machineThread =
      std::thread([this, started = thread.get(), run = std::move(body)]() mutable {
        nameMachineThread(started->name());
        awaitBaton(*started);
        callingThread = started;
        runThreadBody(started->name(), std::move(run));
        finishThread(*started);
      });
  runnable_.push_back(thread.get());
  mayMove();
  return thread;
}

void SimulatedKernel::finishThread(SimulatedThread& thread) {
  self();
  QV_ASSERT(thread.held.empty());
  thread.ended = true;
  thread.end.setHere();
  runnable_.erase(std::find(runnable_.begin(), runnable_.end(), &thread));
  SimulatedThread& next = chooseNext();
  callingThread = nullptr;
  running_ = &next;
  post(next);
}

void SimulatedKernel::forgetThread(SimulatedThread& thread) {
  std::erase_if(threads_, [&](const auto& other) { return other.get() == &thread; });
}

std::shared_ptr<ThreadBody> SimulatedKernel::currentThread() {
  return callingThread ? callingThread->shared_from_this() : nullptr;
}

void SimulatedKernel::enter() {
  QV_ASSERT(callingThread == nullptr);
  pin_.pin();
  threads_.push_back(std::make_shared<SimulatedThread>(*this, "main", ++lastThreadId_));
  callingThread = threads_.front().get();
  running_ = callingThread;
  runnable_.push_back(callingThread);
}

void SimulatedKernel::leave() {
  SimulatedThread& thread = self();
  QV_ASSERT(&thread == threads_.front().get());
  QV_ASSERT(thread.held.empty());
  const bool everyThreadIsJoined = threads_.size() == 1;
  QV_ASSERT(everyThreadIsJoined);
  thread.ended = true;
  callingThread = nullptr;
  pin_.release();
}

ThreadNote SimulatedKernel::noteOf(const SimulatedThread& thread) const {
  ThreadNote note;
  note.id = thread.id();
  note.name = thread.name();
  note.terminated = thread.terminated;
  note.held = lockNames(thread.held);
  if (!thread.waiting) return note;
  const SimulatedWait& wait = thread.wait;
  note.doing = ThreadNote::Doing::WaitsForEvents;
  if (wait.lock) {
    note.doing = ThreadNote::Doing::WaitsForLock;
    note.lock = wait.lock->name();
    if (wait.lock->owner()) note.holder = wait.lock->owner()->name();
  } else if (wait.joins) {
    note.doing = ThreadNote::Doing::Joins;
    note.holder = wait.joins->name();
  }
  for (const EventBody* event : wait.events)
    note.events.push_back(event->name());
  note.kind = wait.kind;
  note.limited = wait.limited;
  if (wait.limited) note.deadlineTick = options_.startTick + static_cast<uint32_t>(wait.deadline);
  return note;
}

std::string SimulatedKernel::describeThreads() {
  std::string text;
  for (const auto& thread : threads_) {
    if (!thread->ended) text += describeThread(noteOf(*thread));
  }
  return text;
}

void SimulatedKernel::fault(const std::string& why) {
  const std::string report = faultReport(why, tick(), describeThreads());
  if (options_.onFault) options_.onFault(report);
  // A handler that returns has nothing to return to.
  std::fputs(report.c_str(), stderr);
  std::fflush(stderr);
  std::_Exit(1);
}

std::unique_ptr<Kernel> makeSimulatedKernel(const SimulatedKernelOptions& options) {
  return std::make_unique<SimulatedKernel>(options);
}

}  // namespace qv
