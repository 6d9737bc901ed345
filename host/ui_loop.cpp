#include "host/ui_loop.h"

#include <algorithm>
#include <utility>

#include "host/expectations.h"
#include "platform/display/key_codes.h"
#include "platform/display/png_file.h"
#include "platform/text/shift_jis.h"
#include "scenario/messages.h"
#include "scenario/scenario.h"

namespace qv {

UiLoop::UiLoop(GameHost& host, Display& display, BoxDesk& boxes, Recorder& recorder,
               Settings settings)
    : host_(host),
      display_(display),
      boxes_(boxes),
      recorder_(recorder),
      settings_(std::move(settings)),
      input_(host, boxes, recorder),
      frame_(static_cast<size_t>(ScreenWidth) * ScreenHeight, Compositor::GroundColour),
      presentTick_(tickCount() - PresentMillis) {
  // Windows go after the loop, and tell the display so: it outlives them all.
  const auto wake = [&display] { display.wake(); };
  host_.compositor.setWakeHook(wake);
  host_.queue.setWakeHook(wake);
  boxes_.setWakeHook(wake);
}

void UiLoop::play(std::vector<ScriptLine> lines, const std::string& fileName) {
  ScriptStage& stage = *this;
  script_.emplace(std::move(lines), fileName, stage);
}

const std::string& UiLoop::failure() const {
  static const std::string none;
  return script_ ? script_->failure() : none;
}

void UiLoop::run() {
  host_.uiThread.adoptCurrent();
  boxes_.setUiThread(Thread::currentId());
  while (!scenarioEnded_ && !overdue()) {
    serveQueue();
    stepScript();
    paint();
    refreshCursor();
    if (scenarioEnded_) break;
    serveDevices();
  }
  // What the script still wanted of a game that is over is a failure of the run.
  if (scenarioEnded_) stepScript();
  // Nobody may wait for this thread any more.
  host_.queue.close();
  host_.windowRequestEvent.set();
}

void UiLoop::serveQueue() {
  while (true) {
    MessageQueue::Received received;
    if (!host_.queue.receive(received, 0)) return;
    serve(received);
  }
}

void UiLoop::serve(MessageQueue::Received& received) {
  const Message& message = received.message;
  switch (message.id) {
    case MessageCreateWindow: {
      // The record lies on the stack of the scenario thread, which waits for the event.
      CreateWindowRequest& request = CreateWindowRequest::ofMessage(message.first);
      request.result = host_.windows.create(request);
      host_.windowRequestEvent.set();
      break;
    }
    case MessageDestroyWindow:
      host_.windows.destroy(reinterpret_cast<const char*>(message.first));
      host_.windowRequestEvent.set();
      break;
    case MessageToWindow: {
      const auto& parcel = *reinterpret_cast<const WindowParcel*>(message.first);
      received.reply(parcel.target->receive(parcel.message, parcel.first, parcel.second));
      break;
    }
    case MessageRefreshCursor:
      lookDue_ = true;
      break;
    case MessageSceneName:
      showSceneName();
      break;
    case MessageInputWaitBegan:
      input_.waitBegan();
      break;
    case MessageScenarioEnded:
      scenarioEnded_ = true;
      break;
    default:
      serveOwnInput(message);
      break;
  }
}

/// Input that the game makes goes the way of the devices'.
void UiLoop::serveOwnInput(const Message& message) {
  DisplayEvent event;
  int32_t x = 0, y = 0;
  host_.pointer.place(x, y);
  const auto first = static_cast<int32_t>(message.first),
             second = static_cast<int32_t>(message.second);
  switch (message.id) {
    case MessagePointerTo:
      x = std::clamp(first, 0, ScreenWidth - 1);
      y = std::clamp(second, 0, ScreenHeight - 1);
      display_.movePointer(x, y);
      event.kind = DisplayEvent::Kind::PointerMove;
      break;
    case MessagePointerBy:
      // The system's pointer stays: the moves that ask for a hover end where they began.
      x = nearestCoordinate(int64_t{x} + first);
      y = nearestCoordinate(int64_t{y} + second);
      event.kind = DisplayEvent::Kind::PointerMove;
      break;
    case MessagePointerPress:
      event.kind = DisplayEvent::Kind::ButtonDown;
      break;
    case MessageKeyPress:
      event.kind = DisplayEvent::Kind::KeyDown;
      event.key = first;
      break;
    default:
      return;
  }
  event.x = x;
  event.y = y;
  input_.handleOwn(event);
  if (message.id != MessagePointerPress) return;
  event.kind = DisplayEvent::Kind::ButtonUp;
  input_.handleOwn(event);
}

void UiLoop::showSceneName() {
  // The scenario thread stands in the sending of this message: its name is safe to read.
  const std::string scene =
      host_.manager ? utf8OfShiftJis(host_.manager->sceneName().view()) : std::string();
  display_.setTitle(scene.empty() ? settings_.applicationName
                                  : settings_.applicationName + " - " + scene);
}

void UiLoop::serveDevices() {
  DisplayEvent event;
  uint32_t limit = waitMillis();
  while (display_.waitEvent(event, limit)) {
    device(event);
    limit = 0;
  }
}

void UiLoop::device(const DisplayEvent& event) {
  switch (event.kind) {
    case DisplayEvent::Kind::Close:
      recorder_.closed();
      return beginAbort();
    case DisplayEvent::Kind::Minimised:
      recorder_.minimised();
      return host_.window.setMinimised(true);
    case DisplayEvent::Kind::Restored:
      recorder_.restored();
      dirty_ = true;
      return host_.window.setMinimised(false);
    case DisplayEvent::Kind::KeyDown:
      if (event.key != KeyReturn || !event.alt) break;
      // Held down it repeats, and the screen must not flicker between the two.
      if (!event.repeat) display_.setFullScreen(!display_.fullScreen());
      return;
    default:
      break;
  }
  input_.handle(event);
}

/// The pointer looks like what lies under it, which may move as well as the pointer.
void UiLoop::refreshCursor() {
  int32_t x = 0, y = 0;
  host_.pointer.place(x, y);
  const bool moved = x != lookX_ || y != lookY_;
  if (!std::exchange(lookDue_, false) && !moved) return;
  lookX_ = x;
  lookY_ = y;
  // Over a box it is the system's.
  const PointerLook look = boxes_.up() ? PointerLook{} : host_.windows.lookAt(x, y);
  if (look == look_) return;
  look_ = look;
  display_.setCursor(look_);
}

void UiLoop::stepScript() {
  if (!script_ || failureSeen_) return;
  script_->step();
  if (script_->failure().empty()) return;
  failureSeen_ = true;
  // Who waits for what is only to be seen while they still wait.
  if (script_->stalled()) reportKernelFault(script_->failure());
  beginAbort();
}

void UiLoop::beginAbort() {
  if (aborting_) return;
  aborting_ = true;
  abortTick_ = tickCount();
  host_.abortEvent.set();
  boxes_.abort();
}

bool UiLoop::overdue() const {
  return aborting_ && tickCount() - abortTick_ >= AbortLimitMillis;
}

uint32_t UiLoop::waitMillis() const {
  uint32_t limit = script_ ? script_->nextStepMillis() : WaitForever;
  if (aborting_)
    limit =
        std::min(limit, AbortLimitMillis - std::min(AbortLimitMillis, tickCount() - abortTick_));
  if (presentWaits_) {
    const uint32_t since = newWindows_ ? newWindowTick_ : presentTick_;
    limit = std::min(limit, PresentMillis - std::min(PresentMillis, tickCount() - since));
  }
  return limit;
}

/// Takes what has changed into the frame and draws the boxes over it; with a change of a box it is
/// taken whole.
void UiLoop::refreshFrame(bool whole) {
  host_.compositor.take(frame_, whole);
  boxes_.draw(frame_);
}

/// New windows alone are worth no frame until a frame's time has passed.
bool UiLoop::awaitPictures() {
  if (host_.compositor.news() != Compositor::News::NewWindows) return false;
  if (!std::exchange(newWindows_, true)) newWindowTick_ = tickCount();
  presentWaits_ = tickCount() - newWindowTick_ < PresentMillis;
  return presentWaits_;
}

void UiLoop::paint() {
  if (boxes_.takeChanged()) dirty_ = true;
  // A box is task modal: while another thread's is up, the story stands where it next needs us.
  host_.pauseFlag = !aborting_ && boxes_.holdsOther(scenarioThreadId_) ? 1 : 0;
  host_.compositor.beginLook();
  host_.compositor.paintPending();
  presentWaits_ = false;
  if (!dirty_ && (host_.compositor.news() == Compositor::News::Nothing || awaitPictures())) return;
  newWindows_ = false;
  if (tickCount() - presentTick_ < PresentMillis) {
    presentWaits_ = true;
    host_.compositor.comesBack();
    return;
  }
  presentTick_ = tickCount();
  lookDue_ = true;
  refreshFrame(std::exchange(dirty_, false));
  display_.present(frame_);
  if (const auto tell = std::exchange(settings_.pictureShown, nullptr)) tell();
}

bool UiLoop::sceneWaits() {
  GameHost::Gate gate(host_);
  // Whatever the script does with this wait, it wants to hear of the next.
  gate.tellNext();
  return gate.sceneWaits();
}
uint32_t UiLoop::waitOrdinal() {
  return GameHost::Gate(host_).waitOrdinal();
}

bool UiLoop::answerBox(BoxAnswer answer) {
  if (!boxes_.answer(answer)) return false;
  recorder_.answered(answer);
  return true;
}

/// The frame as it is now, whether or not the display has got it.
void UiLoop::composeNow() {
  host_.compositor.paintPending();
  // The display still gets what is taken here.
  if (host_.compositor.news() != Compositor::News::Nothing) dirty_ = true;
  refreshFrame(true);
}

bool UiLoop::shoot(const std::string& file) {
  composeNow();
  std::error_code error;
  const std::filesystem::path target = settings_.shots / file;
  std::filesystem::create_directories(target.parent_path(), error);
  return writePng(frame_, target);
}

std::optional<std::string> UiLoop::whatIsInstead(const ScriptLine& line) {
  GameHost::Gate gate(host_);
  // The wait may have passed its limit since the script looked.
  if (!gate.sceneWaits()) return std::nullopt;
  if (line.expectation == ScriptLine::Expectation::Pixel) composeNow();
  return compareExpectation(line, host_, frame_);
}

}  // namespace qv
