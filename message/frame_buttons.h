#pragma once

/// The three buttons of the message frame: quick save, quick load, skip. They live from the start
/// of the game to its end. Scenario thread.

#include <memory>

#include "input/system_button.h"

namespace qv {

struct FrameButtons {
  explicit FrameButtons(Event* exit) : quickSave(exit), quickLoad(exit), skip(exit) {}

  SystemButton quickSave, quickLoad, skip;

  /// Places all three on "mess.view". Raises what the files raise.
  void place();
  void enableQuick();
  void disableQuick();
  /// All three up, enabled and drawn afresh.
  void redrawNormal();
};

/// Shows that a button was hit; it springs back by itself.
void flashHit(SystemButton& button);

/// Null before the start and behind the end.
FrameButtons* frameButtons();
void createFrameButtons();
void destroyFrameButtons();

}  // namespace qv
