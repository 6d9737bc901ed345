#pragma once

/// The UI thread's loop: it serves the scenario thread's requests, turns devices into input,
/// drives the play script, and paints. It runs on the program's main thread from before the
/// scenario thread starts until that thread has ended. It never takes the manager's lock.

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/box_desk.h"
#include "host/game_host.h"
#include "host/input_desk.h"
#include "host/recorder.h"
#include "host/script_player.h"
#include "platform/display/display.h"

namespace qv {

class UiLoop : private ScriptStage {
 public:
  /// After closing, a run has this long to end by itself before the process leaves as it is.
  static constexpr uint32_t AbortLimitMillis = 900;
  /// The display gets no more than sixty frames a second.
  static constexpr uint32_t PresentMillis = 16;

  struct Settings {
    bool canShow = false;  ///< a person sees the window and can go on after a script
    std::filesystem::path shots;
    std::string applicationName;         ///< UTF-8, for the title
    std::function<void()> pictureShown;  ///< called once, after the first frame; or empty
  };

  /// The display outlives the host.
  UiLoop(GameHost& host, Display& display, BoxDesk& boxes, Recorder& recorder, Settings settings);

  void play(std::vector<ScriptLine> lines, const std::string& fileName);
  /// Returns when the scenario thread has ended, or when it did not within the limit after
  /// closing.
  void run();

  /// The scenario thread's number, so that a box can be told to hold the story. Any thread.
  void setScenarioThread(uint32_t id) { scenarioThreadId_ = id; }
  bool scenarioEnded() const { return scenarioEnded_; }
  /// Why the script failed the run; empty when it did not.
  const std::string& failure() const;

 private:
  void serveQueue();
  void serve(MessageQueue::Received& received);
  void serveOwnInput(const Message& message);
  void serveDevices();
  void device(const DisplayEvent& event);
  void showSceneName();
  void stepScript();
  void paint();
  void refreshCursor();
  void beginAbort();
  bool overdue() const;
  uint32_t waitMillis() const;
  bool awaitPictures();
  void refreshFrame(bool whole);
  void composeNow();

  // What the play script asks.
  bool sceneWaits() override;
  uint32_t waitOrdinal() override;
  bool gameEnded() override { return scenarioEnded_; }
  bool offer(const DisplayEvent& event) override { return input_.offer(event); }
  bool offerClick(const DisplayEvent& press) override { return input_.offerClick(press); }
  void handle(const DisplayEvent& event) override { device(event); }
  void movePointer(int x, int y) override { display_.movePointer(x, y); }
  void pointerPlace(int& x, int& y) override { host_.pointer.place(x, y); }
  bool boxIsUp() override { return boxes_.up(); }
  bool boxHoldsScene() override { return boxes_.holds(scenarioThreadId_); }
  std::string boxText() override { return boxes_.describe(); }
  bool answerBox(BoxAnswer answer) override;
  bool shoot(const std::string& file) override;
  bool canShow() override { return settings_.canShow; }
  void close() override { beginAbort(); }
  std::optional<std::string> whatIsInstead(const ScriptLine& line) override;

  GameHost& host_;
  Display& display_;
  BoxDesk& boxes_;
  Recorder& recorder_;
  Settings settings_;
  InputDesk input_;
  std::optional<ScriptPlayer> script_;
  Frame frame_;                ///< what is shown: the composed windows with the boxes over them
  bool dirty_ = false;         ///< the whole frame is to be presented
  bool presentWaits_ = false;  ///< for the display's rate, or for pictures in new windows
  uint32_t presentTick_ = 0;
  PointerLook look_;      ///< what the display was given last
  bool lookDue_ = false;  ///< another cursor, or another picture, may lie under the pointer
  int32_t lookX_ = 0, lookY_ = 0;
  uint32_t newWindowTick_ = 0;  ///< when new windows were first seen
  bool newWindows_ = false;
  bool scenarioEnded_ = false;
  bool failureSeen_ = false;
  bool aborting_ = false;
  uint32_t abortTick_ = 0;
  std::atomic<uint32_t> scenarioThreadId_ = 0;
};

}  // namespace qv
