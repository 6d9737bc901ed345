#include "scenario/control_objects.h"

#include "platform/display/display.h"
#include "scenario/messages.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

void NamedHitret::create(QVScenario& manager, const ObjectArguments& arguments) {
  hitret_.setOwner(manager.host());
  if (WindowObject* window = manager.FindView(arguments.a1.text())) hitret_.setView(window->view());
}

void NamedCursor::create(QVScenario&, const ObjectArguments& arguments) {
  loadCursor(cursor_, arguments.a1);
}

void NamedAnimatedControl::create(QVScenario& manager, const ObjectArguments& arguments) {
  Rectangle client{0, 0, ScreenWidth, ScreenHeight};
  if (arguments.a1) {
    window_ = manager.FindView(arguments.a1.text());
    if (!window_ || !window_->clientRect(client)) return;
  }
  control_.create(client.width(), client.height(), manager.host());
  control_.setWindow(this);
}

bool NamedAnimatedControl::clientToScreen(int32_t& x, int32_t& y) const {
  if (!window_) return true;
  Rectangle place;
  if (!window_->windowRect(place)) return false;
  x = nearestCoordinate(int64_t{x} + place.left);
  y = nearestCoordinate(int64_t{y} + place.top);
  return true;
}

void loadCursor(QVCursor& cursor, ObjectArgument nameOrNumber) {
  constexpr auto FirstAddress = uintptr_t{1} << 16;
  if (static_cast<uintptr_t>(nameOrNumber.word()) >= FirstAddress)
    cursor.loadByName(nameOrNumber.text());
  else
    cursor.loadByNumber(nameOrNumber.number());
}

void giveCursor(ScenarioHost& host, WindowObject& window, const QVCursor& cursor) {
  window.setCursor(cursor.look());
  host.cursorView = &window;
  host.PostToUi(MessageRefreshCursor, 0, 0);
}

void connectViewToCursor(QVScenario& manager, RelatedObject& view, RelatedObject& cursor,
                         const Relation::Numbers&) {
  if (!manager.host() || !view.window || !cursor.logical) return;
  giveCursor(*manager.host(), *view.window, *static_cast<QVCursor*>(cursor.logical->native()));
}

}  // namespace qv
