#pragma once

/// Where input goes: to the box on top, else to the frame that is dragged, else to the scene's
/// wait. Tells the host the pointer's place, and holds a press that came between two waits. UI
/// thread.

#include <cstdint>
#include <optional>

#include "host/frame_drag.h"
#include "host/game_host.h"
#include "platform/display/display.h"

namespace qv {

class BoxDesk;
class Recorder;

class InputDesk {
 public:
  /// A press that comes between two polls of one waiting loop is kept this long.
  static constexpr uint32_t HeldPressMillis = 100;

  InputDesk(GameHost& host, BoxDesk& boxes, Recorder& recorder)
      : host_(host), boxes_(boxes), recorder_(recorder), drag_(host.compositor) {}

  /// An event of a device: delivered now, held for the next wait, or dropped.
  void handle(const DisplayEvent& event);
  /// Gives the event to a box, a frame or the wait that stands; false when none takes it.
  bool offer(const DisplayEvent& event);
  /// A wait has begun: a press that was held is its.
  void waitBegan();

 private:
  void trackPointer(const DisplayEvent& event);
  bool offerToFrame(const DisplayEvent& event);
  bool offerToWait(const DisplayEvent& event);

  struct HeldPress {
    DisplayEvent event;
    uint32_t tick;
  };
  GameHost& host_;
  BoxDesk& boxes_;
  Recorder& recorder_;
  FrameDrag drag_;
  struct DragBegin {
    int x, y;
    uint32_t waitOrdinal;  ///< of the wait that stood; 0: none
  };
  DragBegin dragBegin_{};
  std::optional<HeldPress> held_;  ///< the newest alone
};

/// The code that a scene's wait gets for an event, or nothing for events that are no input of it.
std::optional<int32_t> codeOfEvent(const DisplayEvent& event);

}  // namespace qv
