// WaitClick: what stands behind every line. It prints the line, brings the window up to date and
// then carries out all that the player can reach from a line.

#include <algorithm>
#include <array>

#include "input/click_map.h"
#include "message/commands.h"
#include "message/frame_buttons.h"
#include "message/lines.h"
#include "message/message_strip.h"
#include "message/message_window.h"
#include "message/pendant.h"
#include "message/resume_flag.h"
#include "message/skip_poll.h"
#include "message/standing_names.h"
#include "message/system_screens.h"
#include "message/text_areas.h"
#include "message/wait_codes.h"
#include "platform/display/key_codes.h"
#include "platform/kernel/kernel.h"
#include "platform/text/shift_jis.h"
#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

enum Mode : int32_t { ModeShowOnly = 1, ModeLoopOnly = 2, ModeKeepVoice = 3 };

// Results of a line alone.
constexpr int32_t SkipStopped = 0, Skipped = 1, Advanced = 10, SkipBegun = -11;
constexpr std::array Endings{Advanced,  KeyReturn,  KeySpace, WaitToTitle,
                             SkipBegun, WaitLoaded, WaitToEnd};

constexpr uint32_t PollMillis = 50, MapTickMillis = 20, StepMillis = 100, ByteMillis = 50;
constexpr int32_t VoiceRestTenths = 10;  ///< what follows a voice in drama mode
constexpr int32_t NothingDone = -3;
// No map has this name; the requests do nothing and stay as they are.
constexpr const char* NoMap = "clmsel";

void refreshWholeScreen(int32_t nudge) {
  theScenario->RequestHover(WholeScreenMap, nudge);
}
void flash(SystemButton FrameButtons::*button) {
  if (FrameButtons* buttons = frameButtons()) flashHit(buttons->*button);
}

/// One line that stands.
class LineWait {
 public:
  LineWait(int32_t timeTenths, int32_t mode) : time_(timeTenths), mode_(mode) {}
  int32_t run();

 private:
  void setUp();
  void stand();
  void skip();
  void end();
  void pass();

  bool stepIsDue(uint32_t millis);
  void countTime();
  void countTenths();
  void countReading();
  void countDrama();

  void dispatch();
  void advance();
  void toggleWindow();
  void quickSave();
  void quickLoad();
  void toggleSkip();
  void beginSkip();
  void configure();
  void toggleDrama();
  void showHistory();

  int32_t time_;
  const int32_t mode_;
  int32_t result_ = 0;
  int32_t reading_ = 0;  ///< bytes of the text that are left to read
  uint32_t mark_ = 0;
};

int32_t LineWait::run() {
  Reg(WaitKindRegister) = WaitKindClick;
  setUp();
  if (mode_ != ModeShowOnly) {
    if (SysReg(SkipMode) != 0) {
      skip();
    } else {
      stand();
      end();
    }
  }
  Reg(WaitKindRegister) = 0;
  return result_;
}

void LineWait::setUp() {
  if (mode_ != ModeLoopOnly) {
    printPending();
    Reg(RestoreRedrawRegister) = 0;
    showFaceOfLine();
    if (Reg(MessageHiddenRegister) == 1) ShowMessageWindow();
  }
  reading_ = static_cast<int32_t>(theScenario->StrReg(MessageLast).length());
  lightPendant(false);
}

void LineWait::stand() {
  RestoreFrameCorner();
  connectBlink();
  MessageWindowHiddenFlag = 0;
  startBlink();
  mark_ = tickCount();
  theScenario->RequestHover(NoMap, WithoutNudge);
  theScenario->SetClickTick(WholeScreenMap, MapTickMillis);
  while (!isOneOf(Endings, result_) && theScenario->host())
    pass();
}

void LineWait::pass() {
  result_ = pollWholeScreen(PollMillis);
  followPendant(result_, NoMap);
  if (result_ >= FirstKeyResult && result_ <= FirstHoverResult) result_ -= FirstKeyResult;
  if (Reg(SavedStateRegister) != 0 && DataLoadedFlag != 0) {
    refreshWholeScreen(WithNudge);
    DataLoadedFlag = 0;
  }
  countTime();
  dispatch();
}

// --- Time ---

bool LineWait::stepIsDue(uint32_t millis) {
  const uint32_t now = tickCount();
  if (now - mark_ < millis) return false;
  mark_ = now;
  return true;
}

void LineWait::countTenths() {
  if (time_ > 0 && stepIsDue(StepMillis)) --time_;
  if (time_ <= 0) result_ = Advanced;
}

void LineWait::countReading() {
  if (reading_ > 0 && stepIsDue(ByteMillis)) --reading_;
  if (reading_ <= 0) result_ = Advanced;
}

void LineWait::countTime() {
  if (inDrama()) {
    countDrama();
  } else if (time_ != WaitWithoutLimit && MessageWindowHiddenFlag == 0) {
    countTenths();
  }
}

/// The story runs by itself: a second behind a voice, fifty milliseconds for each byte without one.
void LineWait::countDrama() {
  const bool spoken = Reg(SpeakerOnScreenRegister) == 1;
  const bool hidden = MessageWindowHiddenFlag != 0;
  const bool voice = Reg(VoiceRunningRegister) != 0;
  if (spoken && voice && theScenario->IsSoundPlaying(ChannelWave) == 0) {
    if (time_ == WaitWithoutLimit)
      time_ = VoiceRestTenths;
    else if (time_ < 1)
      result_ = Advanced;
    else if (stepIsDue(StepMillis))
      --time_;
    return;
  }
  if (hidden) return;
  if (time_ != WaitWithoutLimit)
    countTenths();
  else if (!spoken || !voice)
    countReading();
}

// --- What the player does ---

void LineWait::dispatch() {
  struct Answer {
    int32_t region, key;
    void (LineWait::*act)();
  };
  static constexpr Answer Answers[] = {
      {ClickCancel, KeyEscape, &LineWait::toggleWindow},
      {QuickSaveRegion, KeyF1 + 1, &LineWait::quickSave},
      {QuickLoadRegion, KeyF1 + 2, &LineWait::quickLoad},
      {SkipRegion, KeyF1 + 3, &LineWait::toggleSkip},
      {PendantRegion, KeyF1 + 4, &LineWait::configure},
      {KeyF1 + 5, KeyF1 + 5, &LineWait::toggleDrama},
      {KeyF1 + 6, KeyF1 + 6, &LineWait::showHistory},
      {AdvanceRegion, KeyReturn, &LineWait::advance},
      {KeySpace, KeySpace, &LineWait::advance},
  };
  const auto* found = std::ranges::find_if(Answers, [this](const Answer& answer) {
    return result_ == answer.region || result_ == answer.key;
  });
  if (found != std::end(Answers)) (this->*found->act)();
}

void LineWait::advance() {
  if (MessageWindowHiddenFlag != 0) {
    // The click only brought the window back; the same line stands.
    showPresentView(true);
    MessageWindowHiddenFlag = 0;
    ShowPendant();
    result_ = 0;
  } else {
    LineAreas().clear();
    Reg(SavedStateRegister) = 0;
    Reg(RestoreRedrawRegister) = 0;
    stopSilentMouth();
  }
  theScenario->RequestHover(NoMap, WithoutNudge);
}

void LineWait::toggleWindow() {
  if (MessageWindowHiddenFlag != 0) {
    showPresentView(true);
    MessageWindowHiddenFlag = 0;
    // Before it comes: the pointer may have left it while it was hidden.
    lightPendant(false);
    ShowPendant();
    refreshWholeScreen(WithNudge);
  } else {
    HidePendant();
    showPresentView(false);
    MessageWindowHiddenFlag = 1;
  }
}

void LineWait::quickSave() {
  flash(&FrameButtons::quickSave);
  if (systemScreens()) systemScreens()->quickSave();
  refreshWholeScreen(WithNudge);
}

void LineWait::quickLoad() {
  flash(&FrameButtons::quickLoad);
  if (systemScreens() && systemScreens()->quickLoad()) result_ = WaitLoaded;
  refreshWholeScreen(WithNudge);
}

void LineWait::toggleSkip() {
  flash(&FrameButtons::skip);
  if (SysReg(SkipMode) != 0) {
    RestoreFrameCorner();
    SysReg(SkipMode) = 0;
    Reg(PendingCodeRegister) = 0;
  } else if (MessageWindowHiddenFlag == 0 && !inDrama()) {
    beginSkip();
  } else if (systemScreens()) {
    const std::string hidden = sjis("メッセージウインドウを表示させた\n状態にして下さい");
    systemScreens()->notice(inDrama() ? noSkipInDrama().c_str() : hidden.c_str());
  }
  refreshWholeScreen(WithNudge);
}

void LineWait::beginSkip() {
  showSkipCorner();
  SysReg(SkipMode) = 1;
  result_ = SkipBegun;
  LineAreas().clear();
  Reg(SavedStateRegister) = 0;
  theScenario->SetClickTick(WholeScreenMap, MapTickMillis);
}

void LineWait::configure() {
  stopBlink();
  disconnectBlink();
  result_ = systemScreens() ? systemScreens()->configuration() : NothingDone;
  if (result_ == NothingDone && MessageWindowHiddenFlag == 0) ShowMessageWindow();
  repaintUnderBlink();
  connectBlink();
  startBlink();
  if (SysReg(SkipMode) != 0) {
    result_ = KeyReturn;
    // The line is over; the next one is not printed over it.
    LineAreas().clear();
  } else {
    RestoreFrameCorner();
  }
  Reg(HoverRegister) = 0;
  refreshWholeScreen(WithNudge);
}

void LineWait::toggleDrama() {
  const bool leaves = inDrama();
  if (leaves) {
    stopBlink();
    disconnectBlink();
  }
  ToggleDramaMode();
  if (leaves) {
    connectBlink();
    startBlink();
  }
  refreshWholeScreen(WithoutNudge);
}

void LineWait::showHistory() {
  const bool shown = MessageWindowHiddenFlag == 0;
  if (shown) showPresentView(false);
  if (systemScreens()) systemScreens()->history();
  if (shown) showPresentView(true);
  refreshWholeScreen(WithNudge);
}

// --- The end ---

void LineWait::end() {
  if (mode_ != ModeKeepVoice) stopLineVoice();
  stopBlink();
  repaintUnderBlink();
  disconnectBlink();
}

bool stopsSkipping(int32_t code) {
  constexpr int32_t LastFunctionKey = KeyF1 + 6;
  if (code == ClickCancel || code == AdvanceRegion) return true;
  if (code >= QuickSaveRegion && code <= QuickLoadRegion) return true;
  const int32_t key = code - FirstKeyResult;
  return key == LeftButtonKey || key == KeyReturn || key == KeyEscape || key == KeySpace ||
         (key >= KeyF1 && key <= LastFunctionKey);
}

void LineWait::skip() {
  int32_t code = Reg(PendingCodeRegister);
  if (code != 0)
    Reg(PendingCodeRegister) = 0;
  else
    code = pollWholeScreen(SkipPollMillis);
  if (stopsSkipping(code)) {
    flash(&FrameButtons::skip);
    RestoreFrameCorner();
    SysReg(SkipMode) = 0;
    Reg(PendingCodeRegister) = 0;
    result_ = SkipStopped;
  } else {
    result_ = Skipped;
  }
  if (mode_ != ModeKeepVoice) stopLineVoice();
  LineAreas().clear();
  Reg(SavedStateRegister) = 0;
}

}  // namespace

int32_t WaitClick(int32_t limitTenths, int32_t mode) {
  return theScenario ? LineWait(limitTenths, mode).run() : 0;
}

}  // namespace qv
