#pragma once

/// timekeeper: the clock of a stretch of film. A film asks it at each picture whether and when to
/// go on; in demo form the player's input cuts it short. Scenario thread.

#include <cstdint>

#include "foundation/string.h"

namespace qv {

class timekeeper {
 public:
  /// The name is the film's; no object of the manager bears it.
  explicit timekeeper(const char* name = nullptr, int32_t keep = 1) : name_(name), keep_(keep) {}

  /// Starts the stretch now.
  void Restart(int32_t demo);
  /// Waits until `timeMillis` from the start and gives 1, or 0 at once when `limitMillis` has
  /// passed. Raises ExitScenarioException on abort, and in demo form AbortDemoException on input.
  int32_t Cue(uint32_t timeMillis, uint32_t limitMillis);
  /// Waits until `timeMillis` from the start. Raises ExitScenarioException on abort.
  void CueWait(uint32_t timeMillis);

  const QVString& name() const { return name_; }

 private:
  uint32_t elapsed();
  static void waitFor(uint32_t elapsedMillis, uint32_t timeMillis);

  QVString name_;
  int32_t keep_;
  uint32_t startTick_ = 0;
  uint32_t lastTick_ = 0;  ///< of the last look at the clock
  int32_t demo_ = 0;
};

}  // namespace qv
