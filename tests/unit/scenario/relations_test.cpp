#include "scenario/relations.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/unit/scenario/fake_host.h"

namespace qv::testing {
namespace {

template <int Code>
class Party : public LogicalObject {
 public:
  int typeCode() const override { return Code; }
};
template <int Code>
constexpr ObjectKind partyKind() {
  return {Code, "", "", NativeForm::None, &allocateObject<Party<Code>>};
}
constexpr ObjectKind PartyKinds[] = {
    partyKind<TypeSurface>(),          partyKind<TypeCursor>(),
    partyKind<TypeAnimatedControl>(),  partyKind<TypePrintArea>(),
    partyKind<TypeHitret>(),           partyKind<TypeClickMap>(),
    partyKind<TypeAnimationSurface>(), partyKind<TypeAnimationSequence>(),
    partyKind<TypeAnimationArea>(),    partyKind<TypeFrameFilm>(),
};

struct Call {
  std::string a, b;
  Relation::Numbers numbers;
  bool operator==(const Call&) const = default;
};
std::vector<Call> connected, disconnected;

std::string nameOf(RelatedObject& object) {
  return object.logical ? object.logical->name().text() : object.window->name.text();
}

/// The table of the engine with functions that write down what they are called with.
std::vector<Relation> recordingTable() {
  const std::span<const Relation> real = relationTable();
  std::vector<Relation> rows(real.begin(), real.end());
  for (Relation& row : rows) {
    row.connect = [](QVScenario&, RelatedObject& a, RelatedObject& b, const Relation::Numbers& n) {
      connected.push_back({nameOf(a), nameOf(b), n});
    };
    row.disconnect = [](QVScenario&, RelatedObject& a, RelatedObject& b) {
      disconnected.push_back({nameOf(a), nameOf(b), {}});
    };
  }
  return rows;
}

class Relations : public ::testing::Test {
 protected:
  Relations() {
    connected.clear();
    disconnected.clear();
    manager.Start(&host, "Test", 1, 1, 1);
    for (int code = TypeSurface; code <= TypeFrameFilm; ++code)
      for (const char* copy : {"", "b"})
        manager.CreateObject((std::to_string(code) + copy).c_str(), code);
    for (const int code :
         {TypePlainWindow, TypeSecondView, TypeReleasedWindow, TypeAnimationControl})
      host.addWindow(std::to_string(code).c_str(), code);
    host.addWindow("5", TypeView);
    host.addWindow("6", TypeFrame);
    host.addWindow("6Client", TypeView);
    host.addWindow("8", TypeFrameless);
    host.addWindow("8Client", TypeView);
    host.addWindow("bare", TypeFrame);
  }

  TestPlatform platform;
  FakeHost host;
  ObjectKindsScope kinds{PartyKinds};
  std::vector<Relation> rows = recordingTable();
  RelationsScope relations{rows};
  QVScenario manager;
};

TEST_F(Relations, ReachEveryPairInItsOwnOrder) {
  struct Row {
    const char *a, *b;      // as connected
    const char *asA, *asB;  // as the relation sees them; null: no relation
  };
  constexpr Row Rows[] = {
      {"5", "42", "5", "42"},
      {"5", "44", "5", "44"},
      {"5", "46", "5", "46"},
      {"5", "49", "5", "49"},
      {"6", "42", "6Client", "42"},
      {"6", "44", "6Client", "44"},
      {"6", "46", "6Client", "46"},
      {"6", "49", "6Client", "49"},
      {"8", "46", "8Client", "46"},
      {"41", "44", "44", "41"},
      {"42", "5", "5", "42"},
      {"42", "6", "6Client", "42"},
      {"44", "5", "5", "44"},
      {"44", "6", "6Client", "44"},
      {"44", "8", "8Client", "44"},
      {"44", "41", "44", "41"},
      {"44", "44b", "44", "44b"},
      {"44b", "44", "44b", "44"},
      {"44", "45", "44", "45"},
      {"46", "5", "5", "46"},
      {"46", "6", "6Client", "46"},
      {"46", "8", "8Client", "46"},
      {"46", "46b", "46", "46b"},
      {"49", "5", "5", "49"},
      {"49", "6", "6Client", "49"},
      {"49", "47", "49", "47"},
      {"49", "48", "49", "48"},
      {"49", "49b", "49", "49b"},
      // No relation: a window that takes nothing, and pairs outside the table.
      {"42", "12", nullptr, nullptr},
      {"45", "5", nullptr, nullptr},
      {"45", "6", nullptr, nullptr},
      {"45", "44", nullptr, nullptr},
      {"5", "5", nullptr, nullptr},
      {"5", "41", nullptr, nullptr},
      {"6", "5", nullptr, nullptr},
      {"6", "6", nullptr, nullptr},
      {"13", "44", nullptr, nullptr},
      {"44", "13", nullptr, nullptr},
      {"44", "14", nullptr, nullptr},
      {"47", "49", nullptr, nullptr},
      {"48", "49", nullptr, nullptr},
      {"50", "5", nullptr, nullptr},
      {"43", "5", nullptr, nullptr},
      // Missing names on either side, and a frame without a client.
      {"5", "none", nullptr, nullptr},
      {"none", "44", nullptr, nullptr},
      {"none", "none", nullptr, nullptr},
      {"bare", "44", nullptr, nullptr},
      {"44", "bare", nullptr, nullptr},
  };
  for (const Row& row : Rows) {
    connected.clear();
    disconnected.clear();
    manager.ConnectObjects(row.a, row.b, 1, -2, 3);
    manager.DisconnectObjects(row.a, row.b);
    std::vector<Call> expected, expectedBack;
    if (row.asA) {
      expected.push_back({row.asA, row.asB, {1, -2, 3}});
      expectedBack.push_back({row.asA, row.asB, {}});
    }
    EXPECT_EQ(connected, expected) << row.a << " with " << row.b;
    EXPECT_EQ(disconnected, expectedBack) << row.a << " with " << row.b;
  }
}

TEST_F(Relations, ThatHaveNoWayBackStay) {
  for (Relation& row : rows)
    row.disconnect = nullptr;
  manager.ConnectObjects("5", "44");
  manager.DisconnectObjects("5", "44");
  EXPECT_TRUE(findRelation(manager, "5", "44").has_value());
  EXPECT_EQ(connected, (std::vector<Call>{{"5", "44", {}}}));
}

TEST_F(Relations, HaveAFunctionEachUnlessTheyStandForOthers) {
  for (const Relation& row : relationTable())
    EXPECT_EQ(row.connect != nullptr, row.rule == RelationRule::Direct)
        << row.kindA << " with " << row.kindB;
}

TEST_F(Relations, PreferTheObjectListOverTheHostsList) {
  host.addWindow("44", TypeView);
  manager.ConnectObjects("44", "41");
  ASSERT_EQ(connected.size(), 1u);
  EXPECT_EQ(connected[0].a, "44");
  EXPECT_EQ(connected[0].b, "41");
}

}  // namespace
}  // namespace qv::testing
