#include "host/game_host.h"

#include <utility>

#include "graphics/click_target.h"

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

// --- Waits ---

void GameHost::waitBegan(ClickTarget* map, bool keys) {
  bool tell = false;
  gateLock_.lock();
  sceneWaits_ = true;
  waitingMap_ = map;
  waitTakesKeys_ = keys;
  ++waitOrdinal_;
  std::swap(tell, tellNextWait_);
  gateLock_.unlock();
  // A held press or a play script may have something for this wait. A loop that polls a map wakes
  // nobody else.
  if (tell) queue.post({MessageInputWaitBegan, 0, 0});
}

void GameHost::InputWaitBegan() {
  waitBegan(nullptr, true);
}

void GameHost::InputWaitEnded() {
  gateLock_.lock();
  sceneWaits_ = false;
  waitingMap_ = nullptr;
  gateLock_.unlock();
}

void GameHost::MapWaitBegan(ClickTarget& map, bool keys) {
  waitBegan(&map, keys);
}

void GameHost::MapWaitEnded() {
  InputWaitEnded();
}

// --- Input of the game's own ---

void GameHost::setPointer(int32_t x, int32_t y) {
  queue.post({MessagePointerTo, static_cast<uintptr_t>(x), static_cast<uintptr_t>(y)});
}

void GameHost::movePointerBy(int32_t dx, int32_t dy) {
  queue.post({MessagePointerBy, static_cast<uintptr_t>(dx), static_cast<uintptr_t>(dy)});
}

void GameHost::pressPointer() {
  queue.post({MessagePointerPress, 0, 0});
}

void GameHost::pressKey(int32_t key) {
  queue.post({MessageKeyPress, static_cast<uintptr_t>(key), 0});
}

// --- The gate ---

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
ClickTarget* GameHost::Gate::map() const {
  return host_.sceneWaits_ ? host_.waitingMap_ : nullptr;
}
bool GameHost::Gate::takesKeys() const {
  return host_.sceneWaits_ && host_.waitTakesKeys_;
}
void GameHost::Gate::tellNext() {
  host_.tellNextWait_ = true;
}

bool GameHost::Gate::deliver(int32_t code) {
  if (!takesKeys() || !host_.deliverInput(code)) return false;
  host_.sceneWaits_ = false;
  return true;
}

bool GameHost::Gate::report(uint32_t message, int32_t region) {
  ClickTarget* const waiting = map();
  if (!waiting || !waiting->report(message, region)) return false;
  host_.sceneWaits_ = false;
  return true;
}

}  // namespace qv
