#include "host/input_desk.h"

#include <utility>

#include "host/box_desk.h"
#include "host/input_codes.h"
#include "host/play_script.h"
#include "host/recorder.h"
#include "input/click_map.h"

namespace qv {

using Kind = DisplayEvent::Kind;

std::optional<int32_t> codeOfEvent(const DisplayEvent& event) {
  switch (event.kind) {
    case Kind::ButtonDown:
      if (event.button == PointerButton::Left) return CodePress;
      if (event.button == PointerButton::Right) return CodeRight;
      return std::nullopt;
    case Kind::Wheel:
      return codeOfWheel(event.y);
    case Kind::KeyDown:
      // What no record can say is nobody's answer; with Alt a key is the window system's.
      if (event.alt || nameOfKey(event.key).empty()) return std::nullopt;
      return codeOfKey(event.key);
    default:
      return std::nullopt;
  }
}

// --- From outside ---

void InputDesk::handleFrom(Source source, const DisplayEvent& event) {
  if (offerFrom(source, event) == Fate::NoWait && codeOfEvent(event) && !event.repeat)
    hold(source, event);
}

void InputDesk::hold(Source source, const DisplayEvent& event) {
  held_ = HeldPress{event, tickCount(), source};
}

InputDesk::Fate InputDesk::offerFrom(Source source, const DisplayEvent& event) {
  trackPointer(event);
  if (offerToBox(event)) return taken(event);
  if (drag_.take(event)) {
    const Fate fate = taken(event);
    finishDrag(source);
    return fate;
  }
  return offerToWait(source, event);
}

/// What somebody has taken is newer than a press that is held, which must not follow behind it.
InputDesk::Fate InputDesk::taken(const DisplayEvent& event) {
  if (codeOfEvent(event)) held_.reset();
  return Fate::Taken;
}

bool InputDesk::offerClick(const DisplayEvent& press) {
  trackPointer(press);
  DisplayEvent release = press;
  release.kind = Kind::ButtonUp;
  trackPointer(release);
  if (offerToBox(press)) return true;
  if (drag_.take(press)) {
    const bool picture = drag_.pressesPicture();
    drag_.end();
    if (!picture) return true;
  }
  return offerToWait(Source::Device, press) == Fate::Taken;
}

bool InputDesk::offerToBox(const DisplayEvent& event) {
  std::optional<BoxAnswer> answered;
  const bool forBox = boxes_.handle(event, &answered);
  if (answered) recorder_.answered(*answered);
  if (forBox) drag_.end();
  return forBox;
}

void InputDesk::trackPointer(const DisplayEvent& event) {
  const bool button = event.kind == Kind::ButtonDown || event.kind == Kind::ButtonUp;
  if (button || event.kind == Kind::PointerMove) host_.pointer.moveTo(event.x, event.y);
  if (button && event.button == PointerButton::Right)
    host_.pointer.rightButton(event.kind == Kind::ButtonDown);
  // The release may never come.
  if (event.kind == Kind::FocusLost) host_.pointer.rightButton(false);
}

/// What a drag that was let go leaves behind: a click that it was not, or a line for the record.
void InputDesk::finishDrag(Source source) {
  if (const auto click = drag_.takeClick())
    if (offerToWait(source, *click) == Fate::NoWait) hold(source, *click);
  if (const auto moved = drag_.takeMoved()) {
    const GameHost::Gate gate(host_);
    recorder_.dragged(moved->press, moved->release,
                      gate.sceneWaits() ? std::optional(gate.waitOrdinal()) : std::nullopt);
  }
}

// --- To the scene ---

namespace {

/// The message of a pointer for a click map; nothing for other events.
std::optional<uint32_t> mapMessageOf(const DisplayEvent& event) {
  if (event.kind == Kind::PointerMove) return PointerMoved;
  if (event.kind != Kind::ButtonDown || event.button == PointerButton::Middle) return std::nullopt;
  return event.button == PointerButton::Left ? LeftButtonDown : RightButtonDown;
}

}  // namespace

InputDesk::Fate InputDesk::offerToWait(Source source, const DisplayEvent& event) {
  if (event.kind != Kind::PointerMove && !codeOfEvent(event)) return Fate::Refused;
  Fate fate = Fate::NoWait;
  uint32_t ordinal = 0;
  {
    GameHost::Gate gate(host_);
    ordinal = gate.waitOrdinal();
    fate = give(gate, event);
    if (fate == Fate::NoWait) gate.tellNext();
  }
  if (fate == Fate::Taken) taken(event);
  if (event.kind == Kind::PointerMove)
    unseenMove_ = fate == Fate::NoWait ? std::optional(source) : std::nullopt;
  keepForRecord(source, event, fate, ordinal);
  return fate;
}

InputDesk::Fate InputDesk::give(GameHost::Gate& gate, const DisplayEvent& event) {
  if (!gate.sceneWaits()) return Fate::NoWait;
  if (helpTakes(gate, event)) return Fate::Taken;
  const std::optional<uint32_t> message = mapMessageOf(event);
  if (gate.map() && message) {
    const auto region = host_.windows.regionFor(*gate.map(), event.x, event.y);
    // Where no map lies that the wait looks at, a move puts the highlight out and a press is a key.
    // A hover request at the screen's edge goes beyond it for a moment, which is no place.
    const bool onScreen = ScreenRectangle.contains(event.x, event.y);
    if (region || (*message == PointerMoved && onScreen))
      return gate.report(*message, region.value_or(NoRegion)) ? Fate::Taken : Fate::Refused;
  }
  const std::optional<int32_t> code = codeOfEvent(event);
  return code && gate.deliver(*code) ? Fate::Taken : Fate::Refused;
}

/// Shows and hides the help window. The key that shows it also reaches a map's wait, where it stops
/// what runs on by itself; a prompt for any key stays.
bool InputDesk::helpTakes(const GameHost::Gate& gate, const DisplayEvent& event) {
  const bool helpKey = event.kind == Kind::KeyDown && event.key == KeyF1;
  const bool endKey = event.kind == Kind::KeyDown && event.key == KeyEscape;
  if (event.repeat || !(helpKey || endKey || event.kind == Kind::ButtonDown)) return false;
  HostWindowObject* const help = host_.windows.find(HelpWindow);
  if (!help) return false;
  const bool shown = help->shown();
  if (!shown && !helpKey) return false;
  help->show(!shown);
  return shown || !gate.map() || !gate.takesKeys();
}

void InputDesk::waitBegan() {
  // The move came before the press, which may stay for the wait behind it.
  if (const auto source = std::exchange(unseenMove_, std::nullopt)) {
    DisplayEvent move;
    move.kind = Kind::PointerMove;
    host_.pointer.place(move.x, move.y);
    offerToWait(*source, move);
  }
  if (!held_) return;
  const HeldPress press = *held_;
  if (tickCount() - press.tick <= HeldPressMillis &&
      offerToWait(press.source, press.event) == Fate::NoWait)
    return;
  held_.reset();
}

/// Moves within a region are no lines of a record, unless something follows that they matter to:
/// the pointer's place when the game itself moves it, or where the next line begins.
void InputDesk::keepForRecord(Source source, const DisplayEvent& event, Fate fate,
                              uint32_t ordinal) {
  if (fate == Fate::NoWait) return;
  const bool move = event.kind == Kind::PointerMove;
  if (source == Source::Device && move && fate == Fate::Refused) {
    const GameHost::Gate gate(host_);
    if (gate.map()) restingMove_ = RestingMove{event, ordinal};
    return;
  }
  const bool recorded = source == Source::Device && fate == Fate::Taken;
  if (!recorded && source == Source::Device) return;
  if (const auto rest = std::exchange(restingMove_, std::nullopt))
    recorder_.taken(rest->event, rest->ordinal);
  if (recorded) recorder_.taken(event, ordinal);
}

}  // namespace qv
