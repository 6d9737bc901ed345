#include "scenario/relations.h"

#include <utility>

#include "scenario/animation_objects.h"
#include "scenario/area_objects.h"
#include "scenario/click_map_objects.h"
#include "scenario/control_objects.h"
#include "scenario/object_kinds.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

namespace {

using enum RelationRule;

// The first row that fits counts.
constexpr Relation Relations[] = {
    {TypeView, TypeCursor, Direct, connectViewToCursor},
    {TypeView, TypePrintArea, Direct, connectViewToPrintArea, disconnectViewFromPrintArea},
    {TypeView, TypeClickMap, Direct, connectViewToMap, disconnectViewFromMap},
    {TypeView, TypeAnimationArea, Direct, connectViewToArea, disconnectViewFromArea},
    {AnyFrame, AnyKind, AsClient},
    {TypeSurface, TypePrintArea, Swapped},
    {TypeCursor, AnyWindow, Swapped},
    {TypePrintArea, ViewOrFrame, Swapped},
    {TypePrintArea, TypeSurface, Direct, connectPrintAreaToSurface},
    {TypePrintArea, TypePrintArea, Direct, connectPrintAreaToPrintArea},
    {TypePrintArea, TypeHitret, Direct, connectPrintAreaToHitret},
    {TypeHitret, AnyWindow, Swapped},
    {TypeClickMap, ViewOrFrame, Swapped},
    {TypeClickMap, TypeClickMap, Direct, connectMapToMap, disconnectMapFromMap},
    {TypeAnimationArea, ViewOrFrame, Swapped},
    {TypeAnimationArea, TypeAnimationSurface, Direct, connectAreaToSurface},
    {TypeAnimationArea, TypeAnimationSequence, Direct, connectAreaToSequence},
    {TypeAnimationArea, TypeAnimationArea, Direct, connectAreaToArea},
};

std::span<const Relation> currentTable = Relations;

bool fits(int kind, const RelatedObject& object) {
  switch (kind) {
    case AnyKind:
      return true;
    case AnyWindow:
      return object.window != nullptr;
    case ViewOrFrame:
      return object.window && (object.typeCode == TypeView || isFrame(object.typeCode));
    case AnyFrame:
      return object.window && isFrame(object.typeCode);
    default:
      return object.typeCode == kind;
  }
}

std::optional<RelatedObject> resolve(QVScenario& manager, const char* name) {
  if (LogicalObject* logical = manager.FindObject(name))
    return RelatedObject{logical, nullptr, logical->typeCode()};
  if (WindowObject* window = manager.FindWindow(name))
    return RelatedObject{nullptr, window, window->typeCode()};
  return std::nullopt;
}

const Relation* rowFor(const RelatedObject& a, const RelatedObject& b) {
  for (const Relation& row : currentTable)
    if (fits(row.kindA, a) && fits(row.kindB, b)) return &row;
  return nullptr;
}

}  // namespace

std::optional<FoundRelation> findRelation(QVScenario& manager, const char* nameA,
                                          const char* nameB) {
  std::optional<RelatedObject> a = resolve(manager, nameA), b = resolve(manager, nameB);
  // One swap and a client for each end at most: a frame's client is a view.
  constexpr int LongestWay = 4;
  for (int steps = 0; steps < LongestWay && a && b; ++steps) {
    const Relation* row = rowFor(*a, *b);
    if (!row) return std::nullopt;
    switch (row->rule) {
      case Direct:
        return FoundRelation{row, *a, *b};
      case Swapped:
        std::swap(a, b);
        break;
      case AsClient:
        a = resolve(manager, (a->window->name + QVString("Client")).text());
        break;
    }
  }
  return std::nullopt;
}

std::span<const Relation> relationTable() {
  return Relations;
}

RelationsScope::RelationsScope(std::span<const Relation> relations) : previous_(currentTable) {
  currentTable = relations;
}

RelationsScope::~RelationsScope() {
  currentTable = previous_;
}

}  // namespace qv
