#include "host/input_desk.h"

#include "host/box_desk.h"
#include "host/input_codes.h"
#include "host/recorder.h"

namespace qv {

std::optional<int32_t> codeOfEvent(const DisplayEvent& event) {
  switch (event.kind) {
    case DisplayEvent::Kind::ButtonDown:
      if (event.button == PointerButton::Left) return CodePress;
      if (event.button == PointerButton::Right) return CodeRight;
      return std::nullopt;
    case DisplayEvent::Kind::Wheel:
      return codeOfWheel(event.y);
    case DisplayEvent::Kind::KeyDown:
      return codeOfKey(event.key);
    default:
      return std::nullopt;
  }
}

void InputDesk::handle(const DisplayEvent& event) {
  if (offer(event) || !codeOfEvent(event) || event.repeat) return;
  held_ = HeldPress{event, tickCount()};
}

bool InputDesk::offer(const DisplayEvent& event) {
  trackPointer(event);
  std::optional<BoxAnswer> answered;
  const bool forBox = boxes_.handle(event, &answered);
  if (answered) recorder_.answered(*answered);
  if (forBox) drag_.end();
  return forBox || offerToFrame(event) || offerToWait(event);
}

bool InputDesk::offerToFrame(const DisplayEvent& event) {
  const bool dragged = drag_.dragging();
  if (!drag_.take(event)) return false;
  if (!dragged && drag_.dragging()) {
    GameHost::Gate gate(host_);
    dragBegin_ = {event.x, event.y, gate.sceneWaits() ? gate.waitOrdinal() : 0};
  }
  if (dragged && !drag_.dragging() && event.kind == DisplayEvent::Kind::ButtonUp)
    recorder_.dragged(dragBegin_.x, dragBegin_.y, event.x, event.y, dragBegin_.waitOrdinal);
  return true;
}

void InputDesk::trackPointer(const DisplayEvent& event) {
  using Kind = DisplayEvent::Kind;
  const bool button = event.kind == Kind::ButtonDown || event.kind == Kind::ButtonUp;
  if (button || event.kind == Kind::PointerMove) host_.pointer.moveTo(event.x, event.y);
  if (button && event.button == PointerButton::Right)
    host_.pointer.rightButton(event.kind == Kind::ButtonDown);
}

bool InputDesk::offerToWait(const DisplayEvent& event) {
  const std::optional<int32_t> code = codeOfEvent(event);
  if (!code) return false;
  uint32_t ordinal = 0;
  {
    GameHost::Gate gate(host_);
    ordinal = gate.waitOrdinal();
    if (!gate.deliver(*code)) return false;
  }
  recorder_.taken(event, ordinal);
  return true;
}

void InputDesk::waitBegan() {
  if (!held_) return;
  const HeldPress press = *held_;
  if (tickCount() - press.tick <= HeldPressMillis && !offerToWait(press.event)) return;
  held_.reset();
}

}  // namespace qv
