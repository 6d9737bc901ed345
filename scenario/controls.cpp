// The manager's operations of cursors.

#include "scenario/control_objects.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

void QVScenario::CreateCursor(const char* name, ObjectArgument fileOrNumber) {
  CreateObject(name, TypeCursor, {fileOrNumber});
}

void QVScenario::SetCursor(const char* window, ObjectArgument nameOrNumber) {
  WindowObject* target = FindView(window);
  if (!target) target = FindWindow(window);
  if (!target) return;
  QVCursor cursor;
  loadCursor(cursor, nameOrNumber);
  giveCursor(*host_, *target, cursor);
}

}  // namespace qv
