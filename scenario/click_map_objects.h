#pragma once

/// The named click map, and its rows in the table of relations. Scenario thread.

#include "input/click_map.h"
#include "scenario/object_kinds.h"
#include "scenario/relations.h"
#include "scenario/type_codes.h"

namespace qv {

class NamedClickMap : public LogicalObject {
 public:
  int typeCode() const override { return TypeClickMap; }
  void* native() override { return &map_; }
  /// a1 the name of a view, whose size the map takes and which is filled with region a3; or else a
  /// file. Without a1: a6 by a7 filled with region a2. a5 whether moves are reported. Throws what
  /// the file raises.
  void create(QVScenario& manager, const ObjectArguments& arguments) override;

 private:
  QVClickMap map_;
};

/// The map of that name, or null.
QVClickMap* findClickMap(QVScenario& manager, const char* name);

/// A time of ClickWait: tenths of a second as a limit; 0 and below are for ever.
uint32_t clickWaitMillis(int32_t tenths);

// The functions of their rows in the table of relations.
void connectViewToMap(QVScenario& manager, RelatedObject& view, RelatedObject& map,
                      const Relation::Numbers& numbers);
void disconnectViewFromMap(QVScenario& manager, RelatedObject& view, RelatedObject& map);
void connectMapToMap(QVScenario& manager, RelatedObject& above, RelatedObject& below,
                     const Relation::Numbers& numbers);
void disconnectMapFromMap(QVScenario& manager, RelatedObject& above, RelatedObject& below);

}  // namespace qv
