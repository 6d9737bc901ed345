#pragma once

/// Holds two surfaces at once, taken by the order of their locks, so that two threads that draw
/// between the same two surfaces in both directions never wait for each other in a circle. The two
/// may be one. Whoever holds a pair calls nothing but what works on the pixels.

#include "platform/kernel/kernel.h"

namespace qv {

class SurfacePair {
 public:
  template <class A, class B>
  SurfacePair(const A& a, const B& b) : SurfacePair(a.lock_, b.lock_) {}
  SurfacePair(Lock& a, Lock& b)
      : first_(a.order() <= b.order() ? a : b), second_(&first_ == &a ? b : a) {
    first_.lock();
    second_.lock();
  }
  ~SurfacePair() {
    second_.unlock();
    first_.unlock();
  }
  SurfacePair(const SurfacePair&) = delete;
  SurfacePair& operator=(const SurfacePair&) = delete;

 private:
  Lock& first_;
  Lock& second_;
};

}  // namespace qv
