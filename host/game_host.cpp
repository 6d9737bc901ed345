#include "host/game_host.h"

namespace qv {

uintptr_t MainWindow::send(uint32_t message, uintptr_t first, uintptr_t second) {
  uintptr_t result = 0;
  queue_.send({message, first, second}, &result);
  return result;
}

GameHost::GameHost(const GameModule& module)
    : queue("UI queue"),
      window(queue),
      windows(listLock, &window, compositor, pointer),
      module_(module),
      gateLock_("input gate", LockRank::SceneGate) {
  mainWindow = &window;
  notifyWindow = &window;
}

bool GameHost::PostToUi(uint32_t message, uintptr_t first, uintptr_t second) {
  return queue.post({message, first, second});
}

void GameHost::InputWaitBegan() {
  gateLock_.lock();
  sceneWaits_ = true;
  ++waitOrdinal_;
  gateLock_.unlock();
  // A held press or a play script may have something for this wait.
  queue.post({MessageInputWaitBegan, 0, 0});
}

void GameHost::InputWaitEnded() {
  gateLock_.lock();
  sceneWaits_ = false;
  gateLock_.unlock();
}

GameHost::Gate::Gate(GameHost& host) : host_(host) {
  host_.gateLock_.lock();
}
GameHost::Gate::~Gate() {
  host_.gateLock_.unlock();
}
bool GameHost::Gate::sceneWaits() const {
  return host_.sceneWaits_;
}
uint32_t GameHost::Gate::waitOrdinal() const {
  return host_.waitOrdinal_;
}

bool GameHost::Gate::deliver(int32_t code) {
  if (!host_.sceneWaits_ || !host_.deliverInput(code)) return false;
  host_.sceneWaits_ = false;
  return true;
}

}  // namespace qv
