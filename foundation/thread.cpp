#include "foundation/thread.h"

namespace qv {

void QVThread::start(const char* name, Function function, void* argument, uint32_t flags) {
  if (thread_.running()) return;
  terminationFlag_ = (flags & MayTerminate) != 0;
  thread_.start(name, [function, argument] { function(argument); });
}

void QVThread::join(uint32_t limitMillis) {
  if (thread_.running()) thread_.join(limitMillis);
}

void QVThread::terminate() {
  if (!thread_.running()) return;
  thread_.terminate();
  // A thread that ends itself, or one that this object only stands for, is waited for by nobody.
  if (thread_.id() != Thread::currentId()) thread_.join();
  terminationFlag_ = false;
}

}  // namespace qv
