#pragma once

/// The one place where threads, time and waiting come from. Two forms stand behind it: the real
/// one (the machine's threads and clock) and the simulated one (one baton, a seeded generator, a
/// clock that jumps). Everything that blocks goes through the classes of this header, so that a
/// whole game can run in simulated time. One kernel is current in a process; all objects below
/// belong to the kernel that was current when they were made and must be gone before it is.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>

namespace qv {

inline constexpr uint32_t WaitForever = 0xFFFFFFFF;  ///< A limit in milliseconds: none.
inline constexpr int WaitTimeout = -1;               ///< The limit passed.
inline constexpr int WaitTerminated = -2;            ///< The waiting thread was asked to end.

/// Why a thread waits. The simulated form reports a wait of kind Work without limit that has
/// stood for ten simulated minutes; players and idle service threads may take as long as they like.
enum class WaitKind { Work, Input, Service };

/// What cuts a wait short. Almost every wait ends with a termination request; the few whose waker
/// still uses memory of the waiting thread (a join, the answer to a message in work) go on.
enum class WaitCut { ByTermination, Never };

/// Locks are taken in rising rank; debug builds assert it. Locks of one rank are taken by rising
/// `Lock::order()`. A lock that a thread holds already may be taken again at any time.
enum class LockRank : int {
  SceneGate = 5,    ///< the host's hold on a scene that waits, while it looks at the game
  Manager = 10,     ///< the manager's object list
  Wave = 22,        ///< the wave channel, whose mouth is an animation
  Animation = 25,   ///< start and stop of one animation or song, which waits for its thread
  ClickMaps = 28,   ///< the click maps of one view, while they paint
  Object = 30,      ///< any other engine object
  WindowList = 40,  ///< the host's list of window objects
  Compositor = 45,  ///< the windows' painted pixels and the frame
  Surface = 50,     ///< pixels of one surface
  Leaf = 90,        ///< short private locks under which nothing else is taken
};

struct CalendarTime {
  int year = 0, month = 0, day = 0;  ///< month and day from 1
  int hour = 0, minute = 0, second = 0, millisecond = 0;
  int weekday = 0;  ///< 0 is Sunday
};

class EventBody;
class LockBody;
class ThreadBody;

/// The form. Programs choose one in main() and hold it in a KernelScope.
class Kernel {
 public:
  virtual ~Kernel() = default;

  /// The kernel of the process; asserts that there is one. Any thread.
  static Kernel& current();
  /// The same, or null. Any thread.
  static Kernel* currentOrNull();

  virtual bool simulated() const = 0;
  /// Milliseconds since an unspecified start, wrapping at 2 to the power 32. Any thread.
  virtual uint32_t tickCount() = 0;
  /// UTC in milliseconds since 1970. In the simulated form: a fixed start plus the ticks.
  virtual int64_t wallClockMillis() = 0;
  /// Local time of a UTC time in milliseconds; UTC itself in the simulated form.
  virtual CalendarTime localTime(int64_t utcMillis) = 0;
  /// A seed for a generator of the game: the time in seconds, or drawn from the simulation's seed.
  virtual uint32_t randomSeed() = 0;

  virtual std::unique_ptr<EventBody> makeEvent(const char* name, bool manualReset, bool set) = 0;
  virtual std::unique_ptr<LockBody> makeLock(const char* name, LockRank rank) = 0;
  virtual std::shared_ptr<ThreadBody> startThread(const std::string& name,
                                                  std::function<void()> body) = 0;
  /// The body that stands for the calling thread. Every kernel thread has one, and so has the
  /// thread that holds the kernel in its scope; null on any other.
  virtual std::shared_ptr<ThreadBody> currentThread() = 0;
  /// Waits for the first of the events in list order that is set; resets it if it is automatic.
  /// Gives its index, WaitTimeout or WaitTerminated. With an empty list it sleeps. Setting an event
  /// ends the waits of its waiting threads there and then (all of a manual event, one of an
  /// automatic one): a reset that follows at once loses nobody.
  virtual int waitAny(std::span<EventBody* const> events, uint32_t limitMillis, WaitKind kind,
                      WaitCut cut = WaitCut::ByTermination) = 0;
  /// A line a thread, with its name, its wait and the locks it holds: for faults and debugging.
  virtual std::string describeThreads() = 0;
  /// Reports `why` with every thread's line and ends the process. Any thread.
  [[noreturn]] virtual void fault(const std::string& why) = 0;

 protected:
  friend class KernelScope;
  virtual void enter() = 0;  ///< the calling thread becomes the main thread
  virtual void leave() = 0;  ///< asserts that no other thread is left
};

struct RealKernelOptions {
  bool fixedStartTick = false;  ///< start the tick count at `startTick` instead of the uptime
  uint32_t startTick = 0;
};

struct SimulatedKernelOptions {
  uint64_t seed = 1;
  uint32_t startTick = 0;                    ///< may stand close to the wrap
  int64_t startUtcMillis = 946'728'000'000;  ///< 2000-01-01 12:00:00 UTC
  uint32_t stallLimitMillis = 600'000;       ///< a Work wait without limit may stand this long
  /// Clock reads of one thread in a row without a wait. A look at an event that is not set counts
  /// as the hundredth part of one.
  unsigned spinLimit = 100'000;
  bool assertLockOrder = true;  ///< in debug builds; off to see the circle that an order prevents
  /// Called with a report of several lines on a deadlock, a circle of locks, a stalled wait or a
  /// spinning thread; must not return. By default the report goes to the standard error and the
  /// process leaves with status 1 at once.
  std::function<void(const std::string& report)> onFault = nullptr;
};

std::unique_ptr<Kernel> makeRealKernel(const RealKernelOptions& options = {});
std::unique_ptr<Kernel> makeSimulatedKernel(const SimulatedKernelOptions& options = {});

/// Reports a fault of the run in the current kernel's way (with every thread's wait), and ends the
/// process. What found it says why: a script line that nothing meets, an impossible wait.
[[noreturn]] void reportKernelFault(const std::string& why);

/// Makes a kernel current for the scope's life. The calling thread becomes its main thread, with
/// the name "main" and the id 1. At the end of the scope every other thread has been joined by its
/// owner; that is asserted.
///
/// While a simulated kernel is current, the calling thread and the threads of the kernel stand on
/// one processor, which makes a hand-over of the baton cheap.
class KernelScope {
 public:
  explicit KernelScope(std::unique_ptr<Kernel> kernel);
  ~KernelScope();
  KernelScope(const KernelScope&) = delete;
  KernelScope& operator=(const KernelScope&) = delete;
};

/// A manual event stays set until reset; an automatic one lets one wait through. Any kernel thread;
/// `set` in the real form also any other thread.
class Event {
 public:
  enum class Reset { Manual, Automatic };
  Event(const char* name, Reset reset, bool set = false);
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void set();
  void reset();
  bool isSet() const;  ///< a look without taking an automatic event
  /// 0, WaitTimeout or WaitTerminated.
  int wait(uint32_t limitMillis = WaitForever, WaitKind kind = WaitKind::Work);
  EventBody* body() const { return body_.get(); }

 private:
  std::unique_ptr<EventBody> body_;
};

/// The first of several, by place in the list among those that are set.
int waitAny(std::initializer_list<Event*> events, uint32_t limitMillis = WaitForever,
            WaitKind kind = WaitKind::Work);
int waitAny(std::span<Event* const> events, uint32_t limitMillis = WaitForever,
            WaitKind kind = WaitKind::Work);

/// A recursive lock; use with std::lock_guard and std::scoped_lock's kin.
class Lock {
 public:
  Lock(const char* name, LockRank rank);
  ~Lock();
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  void lock();
  void unlock();
  /// Rises with each lock that is made. Who takes several locks of one rank takes them by it;
  /// addresses would differ from run to run of one simulation.
  uint64_t order() const;

 private:
  std::unique_ptr<LockBody> body_;
};

/// A thread of the kernel. The object may be reused after its thread has ended. Its owner starts,
/// joins and destroys it; `running`, `terminate` and `id` may come from any thread once `start` has
/// returned.
class Thread {
 public:
  Thread() = default;
  ~Thread();  ///< asks a running thread to end, then joins it
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// Does nothing while an earlier thread of this object runs. An exception that leaves `body` is
  /// our own mistake: the process aborts with the thread's name.
  void start(const std::string& name, std::function<void()> body);
  /// Lets this object stand for the calling thread. It is then never joined: `join` does not wait
  /// but tells whether that thread has ended, and the destructor asks for nothing.
  void adoptCurrent();
  bool running() const;
  /// True when the thread has ended (or never was) within the limit. A termination request to the
  /// calling thread does not cut it short, since the other thread may use what dies after the join.
  bool join(uint32_t limitMillis = WaitForever);
  /// A request: from now on every wait and sleep of that thread returns at once. Taking a lock and
  /// joining are no waits in this sense.
  void terminate();
  uint32_t id() const;  ///< 0 when there is none; small numbers in order of their start

  static bool terminationRequested();  ///< of the calling thread
  static uint32_t currentId();
  static std::string currentName();

 private:
  std::shared_ptr<ThreadBody> body_;
  bool adopted_ = false;
};

uint32_t tickCount();
/// True when the sleep was cut short by a termination request.
bool sleepMillis(uint32_t millis);

}  // namespace qv
