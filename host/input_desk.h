#pragma once

/// Where input goes: to the box on top, else to the frame that is dragged, else to the scene's
/// wait: its click map where the pointer is over it, or its key event, never to both. Tells the
/// host the pointer's place, holds a press that came between two waits, and shows the help window.
/// UI thread.

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
  /// The window of the game that F1 shows; not every game has one.
  static constexpr const char* HelpWindow = "HelpWindow";

  InputDesk(GameHost& host, BoxDesk& boxes, Recorder& recorder)
      : host_(host), boxes_(boxes), recorder_(recorder), drag_(host.compositor) {}

  /// An event of a device: delivered now, held for the next wait, or dropped.
  void handle(const DisplayEvent& event) { handleFrom(Source::Device, event); }
  /// One that the game itself has made. It makes it again in a replay, so nobody records it.
  void handleOwn(const DisplayEvent& event) { handleFrom(Source::Game, event); }
  /// Gives the event to a box, a frame or the wait that stands; false when none takes it.
  bool offer(const DisplayEvent& event) { return offerFrom(Source::Device, event) == Fate::Taken; }
  /// The same for a press that is let go at once.
  bool offerClick(const DisplayEvent& press);
  /// A wait has begun: a move that nobody has seen and a press that was held are its.
  void waitBegan();

 private:
  enum class Source { Device, Game };
  enum class Fate { Taken, Refused, NoWait };

  void handleFrom(Source source, const DisplayEvent& event);
  Fate offerFrom(Source source, const DisplayEvent& event);
  bool offerToBox(const DisplayEvent& event);
  Fate offerToWait(Source source, const DisplayEvent& event);
  Fate give(GameHost::Gate& gate, const DisplayEvent& event);
  bool helpTakes(const GameHost::Gate& gate, const DisplayEvent& event);
  void trackPointer(const DisplayEvent& event);
  void finishDrag(Source source);
  void hold(Source source, const DisplayEvent& event);
  Fate taken(const DisplayEvent& event);
  void keepForRecord(Source source, const DisplayEvent& event, Fate fate, uint32_t ordinal);

  struct HeldPress {
    DisplayEvent event;
    uint32_t tick;
    Source source;
  };
  struct RestingMove {
    DisplayEvent event;
    uint32_t ordinal;
  };
  GameHost& host_;
  BoxDesk& boxes_;
  Recorder& recorder_;
  FrameDrag drag_;
  std::optional<HeldPress> held_;           ///< the newest alone
  std::optional<Source> unseenMove_;        ///< one came while no scene waited
  std::optional<RestingMove> restingMove_;  ///< changed nothing, so far: no line tells of it
};

/// The code that a scene's wait gets for an event, or nothing for events that are no input of it: a
/// key that scripts have no name for (Shift, Ctrl, Alt, those of editing), and any key beside Alt.
std::optional<int32_t> codeOfEvent(const DisplayEvent& event);

}  // namespace qv
