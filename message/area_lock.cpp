#include "message/area_lock.h"

#include <mutex>

namespace qv {

AreaLock::AreaLock()
    : guard_("print area's owner", LockRank::Leaf),
      free_("print area is free", Event::Reset::Automatic) {}

void AreaLock::lock() {
  const uint32_t caller = Thread::currentId();
  guard_.lock();
  while (depth_ != 0 && owner_ != caller) {
    ++waiting_;
    guard_.unlock();
    // As long as the player takes; and, as with any lock, no request to end cuts it short.
    EventBody* const bodies[] = {free_.body()};
    Kernel::current().waitAny(bodies, WaitForever, WaitKind::Input, WaitCut::Never);
    guard_.lock();
    --waiting_;
  }
  owner_ = caller;
  ++depth_;
  guard_.unlock();
}

void AreaLock::unlock() {
  const std::lock_guard guard(guard_);
  if (--depth_ > 0) return;
  owner_ = 0;
  if (waiting_ > 0) free_.set();
}

}  // namespace qv
