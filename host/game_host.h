#pragma once

/// The host's side of ScenarioHost: the window list, the module's table, the UI thread's queue and
/// the gate through which the UI thread may look at a scene that waits for input.

#include <atomic>
#include <cstdint>

#include "host/compositor.h"
#include "host/windows.h"
#include "platform/kernel/kernel.h"
#include "platform/kernel/message_queue.h"
#include "scenario/scenario_host.h"
#include "scenario/scene_function.h"

namespace qv {

/// Messages of the host's own, beside those of the protocol. Posted to the UI thread.
/// (MessageToWindow stands with the window objects.)
inline constexpr uint32_t MessageInputWaitBegan = 40000, MessageScenarioEnded = 40001;

/// The real window as the engine sees it. It is its own top window.
class MainWindow : public NativeWindow {
 public:
  explicit MainWindow(MessageQueue& queue) : queue_(queue) {}
  WindowHandle parentWindow() const override { return nullptr; }
  bool minimised() const override { return minimised_; }
  uintptr_t send(uint32_t message, uintptr_t first, uintptr_t second) override;
  void setMinimised(bool minimised) { minimised_ = minimised; }

 private:
  MessageQueue& queue_;
  std::atomic<bool> minimised_ = false;
};

class GameHost : public ScenarioHost {
 public:
  explicit GameHost(const GameModule& module);

  WindowObject* FindWindowObject(const char* name) override { return windows.find(name); }
  WindowObject* FindWindowByCode(int32_t code) override { return windows.findByCode(code); }
  SceneFunction FindScene(const char* name) override { return findScene(module_, name); }
  void PointerPlace(int32_t& x, int32_t& y) override { pointer.place(x, y); }
  bool PostToUi(uint32_t message, uintptr_t first, uintptr_t second) override;
  void InputWaitBegan() override;
  void InputWaitEnded() override;

  /// A look at the scenario thread: while it lives, a scene that stands in a wait stays there.
  class Gate {
   public:
    explicit Gate(GameHost& host);
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    bool sceneWaits() const;
    uint32_t waitOrdinal() const;  ///< the number of the latest wait, from 1; 0 before the first
    /// Gives the wait its input; false when no scene waits.
    bool deliver(int32_t code);

   private:
    GameHost& host_;
  };

  MessageQueue queue;
  MainWindow window;
  PointerState pointer;
  Compositor compositor;
  WindowList windows;

 private:
  const GameModule& module_;
  Lock gateLock_;            ///< guards the two below
  bool sceneWaits_ = false;  ///< from the beginning of a wait until it is answered or over
  uint32_t waitOrdinal_ = 0;
};

}  // namespace qv
