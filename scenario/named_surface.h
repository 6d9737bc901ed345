#pragma once

/// The named surface: pictures that scenes prepare beside the screen. Scenario thread; the surface
/// itself may be drawn from by any thread.

#include "graphics/surface.h"
#include "scenario/object_kinds.h"
#include "scenario/type_codes.h"

namespace qv {

class NamedSurface : public LogicalObject {
 public:
  int typeCode() const override { return TypeSurface; }
  void* native() override { return &surface_; }
  QVVSurface& surface() { return surface_; }
  /// With a2: a1 the width, a2 the height. Without: a1 a picture's file name, or nothing. Throws
  /// what the file raises.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  QVVSurface surface_;
};

}  // namespace qv
