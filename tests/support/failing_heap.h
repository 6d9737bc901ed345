#pragma once

/// Lets QVHeap run out of memory at a chosen moment, for as long as the object lives; only one
/// thread may allocate meanwhile.

#include <climits>
#include <cstddef>

#include "foundation/heap.h"

namespace qv::testing {

class FailingHeap {
 public:
  /// Grants `granted` blocks, refuses the next `refused`, and grants all later ones.
  explicit FailingHeap(int granted = 0, int refused = INT_MAX) {
    state() = {granted, refused, 0};
    QVHeap::setPermit([](size_t) {
      State& now = state();
      if (now.granted > 0) return --now.granted, true;
      if (now.refusals == now.toRefuse) return true;
      ++now.refusals;
      return false;
    });
  }
  ~FailingHeap() { QVHeap::setPermit(nullptr); }
  FailingHeap(const FailingHeap&) = delete;
  FailingHeap& operator=(const FailingHeap&) = delete;

  int refused() const { return state().refusals; }

 private:
  struct State {
    int granted, toRefuse, refusals;
  };
  static State& state() {
    static State one;
    return one;
  }
};

}  // namespace qv::testing
