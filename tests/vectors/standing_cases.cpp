#include "platform/text/shift_jis.h"
#include "scenario/story_tables.h"
#include "screens/affection.h"
#include "screens/commands.h"
#include "tests/vectors/case.h"
#include "tests/vectors/manager.h"

namespace qv::vectors {
namespace {

constexpr const char *First = "A", *Second = "B";

/// Two names whose standing is kept.
class Names {
 public:
  Names() {
    tables_.parameterNames = {First, Second};
    setStoryTables(&tables_);
  }
  ~Names() { setStoryTables(nullptr); }
  Names(const Names&) = delete;
  Names& operator=(const Names&) = delete;

 private:
  StoryTables tables_;
};

void pendant(Case& given) {
  for (const Json& row : given["rows"]) {
    const int32_t difference = row[0];
    expectEqual("first ahead by " + row[0].dump(), gemCellX(Leader::First, difference), row[1]);
    expectEqual("second ahead by " + row[0].dump(), gemCellX(Leader::Second, difference), row[2]);
  }
}

void changeParameter(Case& given) {
  const Registers registers(given);
  const Names names;
  for (const Json& row : given["rows"]) {
    Reg(AffectionFirstRegister + 1) = row[0];
    ChangeParameter(Second, row[1]);
    expectEqual(row[0].dump() + " by " + row[1].dump(), Reg(AffectionFirstRegister + 1), row[2]);
    expectEqual("the other", Reg(AffectionFirstRegister), 0);
  }
}

void compareAffection(Case& given) {
  const Registers registers(given);
  const Names names;
  for (const Json& row : given["rows"]) {
    Reg(AffectionFirstRegister) = row[0];
    Reg(AffectionFirstRegister + 1) = row[1];
    const char* leader = CompareAffection(First, Second);
    expectEqual(row[0].dump() + " against " + row[1].dump(), leader ? Json(leader) : Json(),
                row[2]);
  }
}

void affectionAbove(Case& given) {
  const Registers registers(given);
  const Names names;
  for (const Json& row : given["rows"]) {
    if (!row[0].is_null()) Reg(AffectionFirstRegister) = row[0];
    expectEqual(row[0].dump() + " above " + row[1].dump(),
                AffectionAbove(row[0].is_null() ? "nobody" : First, row[1]), row[2]);
  }
}

constexpr Kind Kinds[] = {
    {"affection_above", affectionAbove},
    {"change_parameter", changeParameter},
    {"compare_affection", compareAffection},
    {"pendant", pendant},
};

}  // namespace

std::span<const Kind> standingKinds() {
  return Kinds;
}

}  // namespace qv::vectors
