#pragma once

/// The named objects of input beside click maps: hitrets, cursors, animated controls. Scenario
/// thread.

#include "input/animated_control.h"
#include "input/cursor.h"
#include "input/hitret.h"
#include "scenario/object_kinds.h"
#include "scenario/relations.h"
#include "scenario/type_codes.h"

namespace qv {

class ScenarioHost;
class WindowObject;

class NamedHitret : public LogicalObject {
 public:
  int typeCode() const override { return TypeHitret; }
  void* native() override { return &hitret_; }
  /// It waits with the manager's host. a1 the name of the view that it shows its prompt on, or
  /// nothing.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  QVHitret hitret_;
};

class NamedCursor : public LogicalObject {
 public:
  int typeCode() const override { return TypeCursor; }
  void* native() override { return &cursor_; }
  /// a1 a name or a number.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  QVCursor cursor_;
};

class NamedAnimatedControl : public LogicalObject, private ControlWindow {
 public:
  int typeCode() const override { return TypeAnimatedControl; }
  void* native() override { return &control_; }
  /// a1 the name of the window in whose client it lies and whose size its map has, or zero for the
  /// whole screen. Without such a window it is empty and knows no keys.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  bool clientToScreen(int32_t& x, int32_t& y) const override;

  WindowObject* window_ = nullptr;  ///< null: the screen
  AnimatedControl control_;
};

/// A cursor by a name or by a number: what has bits above the lowest sixteen is a name.
void loadCursor(QVCursor& cursor, ObjectArgument nameOrNumber);

/// Gives a window a cursor, and has the pointer look like it where it stands over the window.
void giveCursor(ScenarioHost& host, WindowObject& window, const QVCursor& cursor);

// The function of its row in the table of relations.
void connectViewToCursor(QVScenario& manager, RelatedObject& view, RelatedObject& cursor,
                         const Relation::Numbers& numbers);

}  // namespace qv
