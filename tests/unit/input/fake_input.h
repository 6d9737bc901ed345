#pragma once

// Who runs the game, as hitrets and controls see it: a wait that a test answers, and a pointer that
// is only written down.

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "foundation/diagnostic.h"
#include "input/input_host.h"

namespace qv::testing {

class FakeInputHost : public InputHost {
 public:
  static constexpr int32_t Timeout = 258;

  Event& exitEvent() override { return exit_; }
  Event& armKeys() override {
    key_ = 0;
    keys_.reset();
    armed = true;
    return keys_;
  }
  int32_t disarmKeys() override {
    armed = false;
    keys_.reset();
    return key_.exchange(0);
  }
  Event* beginMapWait(ClickTarget& map, bool keys) override {
    Event* const armedKeys = InputHost::beginMapWait(map, keys);
    if (onMapWait) onMapWait();
    return armedKeys;
  }
  int32_t hostWait(int32_t time, int32_t, int32_t inMilliseconds) override {
    times.push_back(time);
    Event& keys = armKeys();
    if (onArmed) onArmed();
    const uint32_t limit =
        time < 0 ? WaitForever : static_cast<uint32_t>(time) * (inMilliseconds ? 1u : 100u);
    const int woke = waitAny({&exit_, &keys}, limit, WaitKind::Input);
    const int32_t key = disarmKeys();
    if (woke == 0) throw ExitScenarioException();
    return woke == 1 ? key : Timeout;
  }
  void setPointer(int32_t x, int32_t y) override {
    places.push_back({x, y});
    if (onPointer) onPointer(x, y);
  }
  void movePointerBy(int32_t dx, int32_t dy) override { nudges.push_back({dx, dy}); }
  void pressPointer() override {
    ++presses;
    if (onPress) onPress();
  }

  /// A key or button as the window side gives it: only where somebody has armed the event.
  bool give(int32_t key) {
    if (!armed) return false;
    key_ = key;
    keys_.set();
    return true;
  }
  void exitGame() { exit_.set(); }

  std::vector<int32_t> times;
  std::vector<std::pair<int32_t, int32_t>> places, nudges;
  int presses = 0;
  std::atomic<bool> armed = false;
  std::function<void()> onArmed, onPress, onMapWait;
  std::function<void(int32_t, int32_t)> onPointer;

 private:
  Event exit_{"exit", Event::Reset::Manual};
  Event keys_{"keys", Event::Reset::Manual};
  std::atomic<int32_t> key_ = 0;
};

}  // namespace qv::testing
