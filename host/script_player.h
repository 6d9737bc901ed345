#pragma once

/// Plays a play script against the running game, as a player would: inputs are given to the
/// scene's waits, expectations are looked at while a scene waits. Driven by the UI loop on the UI
/// thread; a step never blocks.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/play_script.h"
#include "platform/display/display.h"

namespace qv {

/// What the player needs of the program around it.
class ScriptStage {
 public:
  virtual ~ScriptStage() = default;
  virtual bool sceneWaits() = 0;
  virtual uint32_t waitOrdinal() = 0;  ///< of the wait that stands, or of the latest
  virtual bool gameEnded() = 0;
  /// Gives an input to the scene's wait; false when none stands (any more).
  virtual bool offer(const DisplayEvent& event) = 0;
  /// The same for a press that is let go at once.
  virtual bool offerClick(const DisplayEvent& press) = 0;
  /// Delivers an event as a device would.
  virtual void handle(const DisplayEvent& event) = 0;
  virtual void movePointer(int x, int y) = 0;
  virtual void pointerPlace(int& x, int& y) = 0;  ///< where the game sees it
  virtual bool boxIsUp() = 0;
  virtual bool boxHoldsScene() = 0;              ///< the scenario thread itself asks it
  virtual std::string boxText() = 0;             ///< UTF-8, in a sentence
  virtual bool answerBox(BoxAnswer answer) = 0;  ///< false: that box has no such button
  virtual bool shoot(const std::string& file) = 0;
  virtual bool canShow() = 0;  ///< a person can go on when the script ends
  virtual void close() = 0;
  /// Empty when the line's expectation holds, else what was there; nothing when the scene's wait
  /// is over, so that the line must be looked at again.
  virtual std::optional<std::string> whatIsInstead(const ScriptLine& line) = 0;
};

class ScriptPlayer {
 public:
  /// A line that is not met in this time fails the run.
  static constexpr uint32_t LineLimitMillis = 600'000;

  ScriptPlayer(std::vector<ScriptLine> lines, std::string fileName, ScriptStage& stage);

  /// Goes on as far as the game lets it.
  void step();
  /// The longest time until the next step is due; WaitForever when only the game can go on.
  uint32_t nextStepMillis() const;
  /// "FILE:LINE: ..." once the run has failed; empty otherwise.
  const std::string& failure() const { return failure_; }
  /// True when the failure is a line that was never met.
  bool stalled() const { return stalled_; }
  bool finished() const { return at_ >= lines_.size(); }

  /// The first line whose words need what this program does not have; null when there is none.
  static const ScriptLine* unsupportedLine(const std::vector<ScriptLine>& lines);

 private:
  enum class Outcome { Done, NotYet, Failed };
  Outcome act(const ScriptLine& line);
  DisplayEvent eventOf(const ScriptLine& line);
  Outcome awaitScene(const ScriptLine& line);
  Outcome giveInput(const ScriptLine& line);
  Outcome answer(const ScriptLine& line);
  Outcome expect(const ScriptLine& line);
  Outcome read(const ScriptLine& line);
  Outcome sleep(const ScriptLine& line);
  void deliverNow(const ScriptLine& line);
  Outcome fail(const ScriptLine& line, const std::string& what);
  void endOfScript();

  std::vector<ScriptLine> lines_;
  std::string fileName_;
  ScriptStage& stage_;
  size_t at_ = 0;
  bool lineBegun_ = false;
  bool moved_ = false;  ///< the move of the present click has been taken
  uint32_t lineTick_ = 0;
  bool ended_ = false;
  bool stalled_ = false;
  std::string failure_;
};

}  // namespace qv
