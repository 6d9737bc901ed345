#pragma once

/// The named print area: where scenes write. Scenario thread; the area itself may be called from
/// any thread.

#include "message/print_area.h"
#include "scenario/object_kinds.h"
#include "scenario/relations.h"
#include "scenario/type_codes.h"

namespace qv {

class NamedPrintArea : public LogicalObject {
 public:
  int typeCode() const override { return TypePrintArea; }
  void* native() override { return &area_; }
  QVPrintArea& area() { return area_; }
  /// No arguments; voices sound through the manager's wave player.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;
  void forget(const void* member) override { area_.forget(member); }

 private:
  QVPrintArea area_;
};

// The functions of their rows in the table of relations.
void connectViewToPrintArea(QVScenario& manager, RelatedObject& view, RelatedObject& area,
                            const Relation::Numbers& numbers);
void disconnectViewFromPrintArea(QVScenario& manager, RelatedObject& view, RelatedObject& area);
void connectPrintAreaToSurface(QVScenario& manager, RelatedObject& area, RelatedObject& surface,
                               const Relation::Numbers& numbers);
void connectPrintAreaToPrintArea(QVScenario& manager, RelatedObject& area, RelatedObject& link,
                                 const Relation::Numbers& numbers);
void connectPrintAreaToHitret(QVScenario& manager, RelatedObject& area, RelatedObject& hitret,
                              const Relation::Numbers& numbers);

}  // namespace qv
