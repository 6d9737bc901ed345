#pragma once

/// ScrollStage: scrolling backdrops on a view, made of layers that are drawn one over the other in
/// each tick. It runs on a thread of its own, or on the caller's with the caller's way of sleeping.

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "foundation/event.h"
#include "foundation/thread.h"
#include "graphics/animation/scroll_layer.h"
#include "graphics/view.h"

namespace qv {

class ScrollStage {
 public:
  static constexpr int32_t LayerCount = 32;
  /// Called once a tick, between drawing and showing, without a lock; false stops the stage.
  using Routine = std::function<bool(ScrollStage& stage)>;

  /// `view` may be null: then `target` is drawn into and shown nowhere.
  ScrollStage(View* view, QVVSurface* target);
  /// Draws into the view's surface.
  explicit ScrollStage(View* view);
  ~ScrollStage();  ///< stops and waits
  ScrollStage(const ScrollStage&) = delete;
  ScrollStage& operator=(const ScrollStage&) = delete;

  // Layers may be put and changed at any time, by one thread or by the routine.

  /// Makes or replaces the layer of that index; null for an index out of range.
  ScrollLayer* put(int32_t index, const ScrollLayer::Setting& setting);
  ScrollLayer* layer(int32_t index) const;  ///< null where there is none
  void remove(int32_t index);
  /// Only while the stage stands still.
  void setRoutine(Routine routine) { routine_ = std::move(routine); }
  /// Fades the colours `first` to `last` of the target to those of the table in that many ticks.
  void startFade(int32_t ticks, int32_t first, int32_t last, const ColourTable& table);
  bool fading() const;

  /// One step without a wait. False when the routine stops the stage.
  bool tick();
  /// Ticks on a thread of its own until `stop`; nothing while it runs.
  void start(uint32_t tickMillis);
  /// Ticks on the caller's thread until the routine or another thread's `stop` ends it; without a
  /// routine also when nothing moves or fades any more. `sleep` may raise: then so does this.
  void run(uint32_t tickMillis, const std::function<void(uint32_t millis)>& sleep);
  /// Waits until its own thread has ended; the routine does not wait for itself, and the stage ends
  /// behind it. The layers stay.
  void stop();
  bool running() const { return running_; }

 private:
  struct Slot {
    std::unique_ptr<ScrollLayer> layer;
    uint64_t inserted = 0;  ///< rises from slot to slot
  };
  struct Fade {
    ColourTable table{};
    int32_t step = 0, steps = 0;  ///< over: step beyond steps
    bool active = false;
  };

  Rectangle drawLayers();
  bool fadeOneStep();
  bool atRest() const;
  bool isOwnThread() const;
  static void runThread(void* stage);

  View* view_;
  QVVSurface* target_;
  Routine routine_;
  mutable Lock lock_;  ///< guards slots and fade; made before the layers' locks, taken before them
  std::array<Slot, LayerCount> slots_;
  uint64_t insertions_ = 0;
  Fade fade_;
  QVThread thread_;
  QVEvent stop_;
  std::atomic<bool> running_ = false;
  std::atomic<uint32_t> threadId_ = 0;  ///< of the last thread
  uint32_t tickMillis_ = 0;
};

}  // namespace qv
