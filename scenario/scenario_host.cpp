#include "scenario/scenario_host.h"

#include <algorithm>

#include "foundation/diagnostic.h"
#include "scenario/messages.h"

namespace qv {

namespace {

constexpr uint32_t CreatePauseMillis = 50, DestroyPauseMillis = 100, InputPauseMillis = 100;
constexpr uint32_t MinimisedPollMillis = 50;
constexpr uint32_t TenthMillis = 100;
constexpr uint32_t LongestMillis = WaitForever - 1;

}  // namespace

uint32_t scaledMillis(int32_t time, uint32_t unitMillis) {
  if (time < 0) return WaitForever;
  return static_cast<uint32_t>(
      std::min(uint64_t{static_cast<uint32_t>(time)} * unitMillis, uint64_t{LongestMillis}));
}

CreateWindowRequest& CreateWindowRequest::ofMessage(uintptr_t first) {
  // The result stands behind the host's pointer. NOLINTNEXTLINE(bugprone-sizeof-expression)
  return *reinterpret_cast<CreateWindowRequest*>(first - sizeof(ScenarioHost*));
}

ScenarioHost::ScenarioHost()
    : windowRequestEvent("window request", true),
      inputEvent("input", true),
      abortEvent("abort"),
      listLock("window list", LockRank::WindowList) {}

WindowHandle ScenarioHost::TopWindow(int32_t force) {
  if (topWindow && !force) return topWindow;
  topWindow = mainWindow;
  while (topWindow && topWindow->parentWindow())
    topWindow = topWindow->parentWindow();
  return topWindow;
}

void ScenarioHost::WaitForPause(uint32_t millis) {
  while (pauseFlag.load() && abortEvent.wait(millis) == WaitTimeout) {
  }
}

void ScenarioHost::SleepUnlessAborted(uint32_t millis) {
  if (abortEvent.wait(millis) != WaitTimeout) throw ExitScenarioException();
}

// --- Input ---

int32_t ScenarioHost::WaitForInput(int32_t time, int32_t, int32_t unitIsMillis) {
  const uint32_t limit = scaledMillis(time, unitIsMillis ? 1 : TenthMillis);
  BeginInput();
  // The order is the rule: an abort wins over input that came with it.
  enum { Abort = 0, Input = 1 };
  int result = waitAny({&abortEvent.handle(), &inputEvent.handle()}, limit, WaitKind::Input);
  const bool taken = endInputWait();
  if (result == Abort) throw ExitScenarioException();
  // Input that was taken in the moment of the time-out counts: who gave it was told so.
  if (result == Input || (result == WaitTimeout && taken)) return inputValue.load();
  return result == WaitTimeout ? WaitInputTimeout : WaitInputFailed;
}

QVEvent& ScenarioHost::BeginInput() {
  openInputWait();
  InputWaitBegan();
  return inputEvent;
}

void ScenarioHost::openInputWait() {
  WaitForPause(InputPauseMillis);
  // Nobody else may be waiting. After the abort no turn is waited for: the caller's own wait sees
  // the abort.
  waitAny({&inputEvent.handle(), &abortEvent.handle()}, WaitForever, WaitKind::Input);
  inputEvent.reset();
  inputPending.store(0);
  waitingFlag.store(1);
}

int32_t ScenarioHost::EndInput() {
  endInputWait();
  return inputValue.load();
}

int32_t keyOfInput(int32_t value) {
  constexpr int32_t FirstKey = 2048;
  if (value >= FirstKey) return value - FirstKey;
  return value < 0 ? KeyRightButton : KeyLeftButton;
}

int32_t ScenarioHost::disarmKeys() {
  const bool taken = endInputWait();
  return taken ? keyOfInput(inputValue.load()) : 0;
}

Event* ScenarioHost::beginMapWait(ClickTarget& map, bool keys) {
  if (keys) openInputWait();
  MapWaitBegan(map, keys);
  return keys ? &inputEvent.handle() : nullptr;
}

int32_t ScenarioHost::endMapWait(bool keys) {
  MapWaitEnded();
  if (!keys) return 0;
  const bool taken = closeInputWait();
  inputEvent.set();
  return taken ? keyOfInput(inputValue.load()) : 0;
}

int32_t ScenarioHost::hostWait(int32_t time, int32_t keys, int32_t inMilliseconds) {
  const int32_t value = WaitForInput(time, keys, inMilliseconds);
  return value == WaitInputTimeout ? value : keyOfInput(value);
}

/// Takes the waiting flag back. Where input has taken it already (true), its event is waited for:
/// it is set or about to be, and must not reach into the next wait.
bool ScenarioHost::closeInputWait() {
  if (waitingFlag.exchange(0) != 0) return false;
  inputEvent.wait();
  return true;
}

bool ScenarioHost::endInputWait() {
  const bool taken = closeInputWait();
  inputEvent.set();
  InputWaitEnded();
  return taken;
}

bool ScenarioHost::deliverInput(int32_t code) {
  if (waitingFlag.exchange(0) == 0) return false;
  inputValue.store(code);
  inputEvent.set();
  return true;
}

void ScenarioHost::NotifyScene() {
  if (notifyWindow && manager) notifyWindow->send(MessageSceneName, 0, 0);
}

// --- Requests ---

void ScenarioHost::takeRequestEvent() {
  windowRequestEvent.wait();
  windowRequestEvent.reset();
}

/// Posts and waits until the request is done; not even a termination request cuts this wait short,
/// since the UI thread reads what stands on this stack. Where it has ended nothing will be done,
/// and the event is given back for the next request.
void ScenarioHost::postRequest(uint32_t message, uintptr_t first, uintptr_t second) {
  if (!PostToUi(message, first, second)) {
    windowRequestEvent.set();
    return;
  }
  EventBody* done[] = {windowRequestEvent.handle().body()};
  Kernel::current().waitAny(done, WaitForever, WaitKind::Work, WaitCut::Never);
}

WindowObject* ScenarioHost::PostCreateRequest(CreateWindowRequest& request) {
  WaitForPause(CreatePauseMillis);
  takeRequestEvent();
  request.host = this;
  request.result = nullptr;
  const NativeWindow* top = TopWindow(1);
  while (top && top->minimised()) {
    if (abortEvent.wait(MinimisedPollMillis) == WaitTimeout) continue;
    // The way out destroys windows by this same event.
    windowRequestEvent.set();
    throw ExitScenarioException();
  }
  postRequest(MessageCreateWindow, reinterpret_cast<uintptr_t>(&request.result),
              reinterpret_cast<uintptr_t>(&request.typeCode));
  return request.result;
}

void ScenarioHost::PostDestroyRequest(const char* name) {
  if (!name) return;
  // A copy: the name often belongs to the window that goes.
  const QVString copy(name);
  WaitForPause(DestroyPauseMillis);
  takeRequestEvent();
  postRequest(MessageDestroyWindow, reinterpret_cast<uintptr_t>(copy.text()), 0);
}

}  // namespace qv
