#pragma once

/// ScenarioHost: what the host program gives to sc_start, and all that the engine knows of it. Two
/// threads meet here. The scenario thread runs scenes and blocks; the UI thread owns the windows,
/// serves requests (scenario/messages.h) and turns input into codes.
///
/// The waits that say so below raise ExitScenarioException when the abort event is set; the others
/// never raise, because they also run while a stack unwinds, and never hang after the abort.
/// A host that stops closes its queue first (posts then fail) and sets the window request event
/// after that: in this order no request is left waiting.

#include <atomic>
#include <cstdint>

#include "foundation/event.h"
#include "foundation/string.h"
#include "foundation/thread.h"
#include "graphics/animation/advance_receiver.h"
#include "input/input_host.h"
#include "scenario/window_object.h"

namespace qv {

class QVScenario;
struct SceneFunction;

inline constexpr int32_t WaitInputTimeout = 258, WaitInputFailed = -1;
inline constexpr int32_t InputForever = -1;

/// The pointer's buttons among the keys.
inline constexpr int32_t KeyLeftButton = 1, KeyRightButton = 2;
/// The key that an input value stands for: a press is 0, a right press -1, a key 2048 and above.
int32_t keyOfInput(int32_t value);

/// A time in units of `unitMillis` as a limit of a wait: negative is for ever, and what does not
/// fit is the longest limit there is.
uint32_t scaledMillis(int32_t time, uint32_t unitMillis);

/// A create request, built on the caller's stack; the UI thread fills in the result.
struct CreateWindowRequest {
  class ScenarioHost* host = nullptr;
  WindowObject* result = nullptr;
  int32_t typeCode = 0;
  Rectangle rectangle;  ///< in the parent's client coordinates
  QVString parentName;  ///< empty: the main window
  QVString name;
  int32_t visible = 1;
  QVString caption;  ///< empty when a character is given
  uint8_t captionCharacter = 0;
  int32_t extraWord = 0;
  int32_t frameFlag = 0;  ///< 1 for codes 6 and 8

  /// The record of a create message: its first word is the address of `result`, the second that of
  /// `typeCode`.
  static CreateWindowRequest& ofMessage(uintptr_t first);
};

class ScenarioHost : public InputHost, public AdvanceReceiver {
 public:
  ScenarioHost();
  ~ScenarioHost() override = default;
  ScenarioHost(const ScenarioHost&) = delete;
  ScenarioHost& operator=(const ScenarioHost&) = delete;

  WindowHandle topWindow = nullptr;      ///< cached by TopWindow
  WindowHandle mainWindow = nullptr;     ///< owner of boxes; the parent when a request names none
  QVEvent windowRequestEvent;            ///< set while the UI thread is ready for a request
  QVEvent inputEvent;                    ///< set while nobody waits for input, or input has arrived
  QVEvent abortEvent;                    ///< set to end the game
  std::atomic<int32_t> waitingFlag = 0;  ///< 1 while a scene waits for input
  std::atomic<int32_t> inputPending = 0;
  std::atomic<int32_t> inputValue = 0;  ///< the UI thread writes it before it sets the input event
  WindowObject* cursorView = nullptr;
  QVThread uiThread;
  Lock listLock;                        ///< guards the window list
  std::atomic<int32_t> pauseFlag = 0;   ///< while nonzero the scenario thread leaves the UI alone
  QVScenario* manager = nullptr;        ///< set by QVScenario::Open
  WindowHandle notifyWindow = nullptr;  ///< takes the scene name notice; may be null

  // The window list and the module, owned by the host.
  virtual WindowObject* FindWindowObject(const char* name) = 0;
  virtual WindowObject* FindWindowByCode(int32_t code) = 0;
  /// Looks a scene up by exact name in the module's table; zero if there is none.
  virtual SceneFunction FindScene(const char* name) = 0;
  /// Where the pointer stands on the screen. Any thread.
  virtual void PointerPlace(int32_t& x, int32_t& y) { x = y = 0; }
  /// Posts a thread message to the UI thread; false when it has ended.
  virtual bool PostToUi(uint32_t message, uintptr_t first, uintptr_t second) = 0;

  /// Walks the parent chain of the main window unless the cached value exists and `force` is 0.
  WindowHandle TopWindow(int32_t force);
  /// Sleeps `millis` at a time while the pause flag is set. Returns at once after the abort; never
  /// raises.
  void WaitForPause(uint32_t millis);
  /// The input wait: time in units of 100 ms, or ms when `unitIsMillis`; -1 is for ever. Gives the
  /// input value, 258 on time-out. Raises on abort, which wins over input that arrived with it.
  int32_t WaitForInput(int32_t time, int32_t flagA, int32_t unitIsMillis);
  /// Opens a wait by another party; gives the input event. Never raises: the party waits for the
  /// abort event too, before the input event, and raises after EndInput.
  QVEvent& BeginInput();
  int32_t EndInput();  ///< closes it; gives the input value

  // The same waits as click maps and controls know them: keys as the window system numbers them,
  // the pointer's buttons as 1 and 2.
  Event& exitEvent() override { return abortEvent.handle(); }
  Event& armKeys() override { return BeginInput().handle(); }
  int32_t disarmKeys() override;
  Event* beginMapWait(ClickTarget& map, bool keys) override;
  int32_t endMapWait(bool keys) override;
  int32_t hostWait(int32_t time, int32_t keys, int32_t inMilliseconds) override;
  // A host without a screen has no pointer.
  void setPointer(int32_t /*x*/, int32_t /*y*/) override {}
  void movePointerBy(int32_t /*dx*/, int32_t /*dy*/) override {}
  void pressPointer() override {}
  void pressKey(int32_t /*key*/) override {}
  /// An animation that moves its view's parent on: as a key that was pressed.
  void advance(int32_t code) override { pressKey(code); }

  void NotifyScene();  ///< sends the scene name notice, where somebody takes it

  /// Blocks until the UI thread has made the window; stands still while the game is minimised, and
  /// raises on an abort in that time. Null when the UI thread has ended.
  WindowObject* PostCreateRequest(CreateWindowRequest& request);
  /// Blocks until the UI thread has destroyed the window. Never raises.
  void PostDestroyRequest(const char* name);
  /// Waits `millis` on the abort event; raises if it fires.
  void SleepUnlessAborted(uint32_t millis);

  /// Input from the UI thread: taken (true) if and only if a scene waits; of two inputs for one
  /// wait the first is taken. Any thread.
  bool deliverInput(int32_t code);

  /// Called by the protocol where the scenario thread begins and ends an input wait, so that a
  /// host can tell a play script. Scenario thread.
  virtual void InputWaitBegan() {}
  virtual void InputWaitEnded() {}
  /// The same for the wait of a click map; `keys` tells whether the input event is armed with it.
  virtual void MapWaitBegan(ClickTarget& /*map*/, bool /*keys*/) {}
  virtual void MapWaitEnded() {}

 private:
  void takeRequestEvent();
  void postRequest(uint32_t message, uintptr_t first, uintptr_t second);
  void openInputWait();
  bool closeInputWait();
  bool endInputWait();  ///< closes it for everybody, the next one may begin; true when input came
};

}  // namespace qv
