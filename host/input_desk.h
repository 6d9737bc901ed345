#pragma once

/// Where input goes: to the box on top, else to the scene's wait. Holds the pointer's place and a
/// press that came between two waits. UI thread.

#include <cstdint>
#include <optional>

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
      : host_(host), boxes_(boxes), recorder_(recorder) {}

  /// An event of a device: delivered now, held for the next wait, or dropped.
  void handle(const DisplayEvent& event);
  /// Gives the event to a box or to the wait that stands; false when neither takes it.
  bool offer(const DisplayEvent& event);
  /// A wait has begun: a press that was held is its.
  void waitBegan();

 private:
  bool offerToWait(const DisplayEvent& event);

  struct HeldPress {
    DisplayEvent event;
    uint32_t tick;
  };
  GameHost& host_;
  BoxDesk& boxes_;
  Recorder& recorder_;
  std::optional<HeldPress> held_;  ///< the newest alone
};

/// The code that a scene's wait gets for an event, or nothing for events that are no input of it.
std::optional<int32_t> codeOfEvent(const DisplayEvent& event);

}  // namespace qv
