#pragma once

/// QVEvent: the engine's thin wrapper of a kernel event. Any thread.

#include "platform/kernel/kernel.h"

namespace qv {

class QVEvent {
 public:
  explicit QVEvent(const char* name, bool set = false, Event::Reset reset = Event::Reset::Manual)
      : event_(name, reset, set) {}
  void set() { event_.set(); }
  void reset() { event_.reset(); }
  int wait(uint32_t limitMillis = WaitForever, WaitKind kind = WaitKind::Work) {
    return event_.wait(limitMillis, kind);
  }
  Event& handle() { return event_; }

 private:
  Event event_;
};

}  // namespace qv
