#pragma once

/// What click maps, hitrets and controls need of who runs the game: its waits, its keys, its
/// pointer. The scenario's host implements it. Scenario thread.

#include <cstdint>

#include "platform/kernel/kernel.h"

namespace qv {

class ClickTarget;

class InputHost {
 public:
  virtual ~InputHost() = default;

  virtual Event& exitEvent() = 0;  ///< set when the game is to end
  /// Arms the key event for a wait of the caller's own: waits until it is free, clears what was
  /// there, gives the event. The caller waits for the exit event first.
  virtual Event& armKeys() = 0;
  /// Ends such a wait; gives the key that came, or 0. Mouse buttons are the keys 1 and 2.
  virtual int32_t disarmKeys() = 0;

  /// Opens the wait of a click map, which from now on gets what the pointer does over its view;
  /// with `keys` arms the key event too and gives it, else null. The caller waits for the exit
  /// event as well.
  virtual Event* beginMapWait(ClickTarget& /*map*/, bool keys) {
    return keys ? &armKeys() : nullptr;
  }
  /// Closes it: nothing reaches the map any more. Gives the key that came, or 0.
  virtual int32_t endMapWait(bool keys) { return keys ? disarmKeys() : 0; }

  /// The host's own wait: tenths of a second, or ms; -1 for ever. 258 on a time-out, else the key.
  /// Raises ExitScenarioException.
  virtual int32_t hostWait(int32_t time, int32_t keys, int32_t inMilliseconds) = 0;

  // The pointer, moved by program as if by a device. Coordinates are the game screen's.
  virtual void setPointer(int32_t x, int32_t y) = 0;
  virtual void movePointerBy(int32_t dx, int32_t dy) = 0;
  virtual void pressKey(int32_t /*key*/) {}  ///< any thread
  virtual void pressPointer() = 0;  ///< the left button down and up where the pointer stands
};

}  // namespace qv
