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
/// Input that the game itself makes: the pointer put somewhere or moved by something (x and y), its
/// left button down and up, a key.
inline constexpr uint32_t MessagePointerTo = 40003, MessagePointerBy = 40004,
                          MessagePointerPress = 40005, MessageKeyPress = 40006;

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
  void MapWaitBegan(ClickTarget& map, bool keys) override;
  void MapWaitEnded() override;
  void setPointer(int32_t x, int32_t y) override;
  void movePointerBy(int32_t dx, int32_t dy) override;
  void pressPointer() override;
  void pressKey(int32_t key) override;

  /// A look at the scenario thread: while it lives, a scene that stands in a wait stays there.
  class Gate {
   public:
    explicit Gate(GameHost& host);
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    bool sceneWaits() const;
    uint32_t waitOrdinal() const;  ///< the number of the latest wait, from 1; 0 before the first
    /// The click map that waits; null while none does.
    ClickTarget* map() const;
    /// Whether the wait takes keys: a map's may not.
    bool takesKeys() const;
    /// The next wait is told by MessageInputWaitBegan: somebody has something for it.
    void tellNext();
    /// Gives the wait its input; false when no scene waits, or without keys.
    bool deliver(int32_t code);
    /// Tells the map that waits; true when that has answered the wait.
    bool report(uint32_t message, int32_t region);

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
  void waitBegan(ClickTarget* map, bool keys);

  Lock gateLock_;            ///< guards all below
  bool sceneWaits_ = false;  ///< from the beginning of a wait until it is answered or over
  ClickTarget* waitingMap_ = nullptr;
  bool waitTakesKeys_ = false;
  bool tellNextWait_ = false;
  uint32_t waitOrdinal_ = 0;
};

}  // namespace qv
