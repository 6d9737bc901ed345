#pragma once

/// Which named objects can be connected, as one table read by ConnectObjects and
/// DisconnectObjects: a pair of kinds either has a relation of its own, is looked up the other way
/// round, or stands for a frame's client view. A new relation is its functions in one row.
/// Scenario thread.

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "foundation/string.h"

namespace qv {

class LogicalObject;
class QVScenario;
class WindowObject;

/// One end of a relation: a logical object or a window, never both.
struct RelatedObject {
  LogicalObject* logical = nullptr;
  WindowObject* window = nullptr;
  int typeCode = 0;
};

/// A kind in the table: a type code, or one of these.
inline constexpr int AnyKind = 0, AnyWindow = -1, ViewOrFrame = -2, AnyFrame = -3;

enum class RelationRule {
  Direct,    ///< the functions of the row, where they exist
  Swapped,   ///< as B with A
  AsClient,  ///< as the view of A's name + "Client" with B
};

struct Relation {
  using Numbers = std::array<int32_t, 3>;
  int kindA, kindB;
  RelationRule rule = RelationRule::Direct;
  void (*connect)(QVScenario&, RelatedObject& a, RelatedObject& b, const Numbers&) = nullptr;
  void (*disconnect)(QVScenario&, RelatedObject& a, RelatedObject& b) = nullptr;
};

/// The relation of two named objects after swaps and clients, with the ends in its order.
struct FoundRelation {
  const Relation* relation = nullptr;
  RelatedObject a, b;
};

/// Nothing when a name is missing or the kinds have no relation.
std::optional<FoundRelation> findRelation(QVScenario& manager, const char* nameA,
                                          const char* nameB);

/// The rows in the order in which they are tried.
std::span<const Relation> relationTable();

/// Another table while it lives, for tests of the dispatch.
class RelationsScope {
 public:
  explicit RelationsScope(std::span<const Relation> relations);
  ~RelationsScope();
  RelationsScope(const RelationsScope&) = delete;
  RelationsScope& operator=(const RelationsScope&) = delete;

 private:
  std::span<const Relation> previous_;
};

}  // namespace qv
