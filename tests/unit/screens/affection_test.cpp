// How the heroines stand: the arithmetic and the commands of scenes, without a screen.

#include "screens/affection.h"

#include <climits>

#include <gtest/gtest.h>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"
#include "scenario/story_tables.h"
#include "screens/commands.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

constexpr const char *First = "first", *Second = "second";

class Affection : public ::testing::Test {
 protected:
  Affection() {
    manager.Open("Test", RegisterCount, StringRegisterCount, SystemRegisterCount);
    setTheScenario(&manager);
    tables.parameterNames = {First, Second, "3", "4", "5", "6", "7", "8"};
    setStoryTables(&tables);
  }
  ~Affection() override {
    setStoryTables(nullptr);
    setTheScenario(nullptr);
  }
  static void stand(int32_t first, int32_t second) {
    Reg(100) = first;
    Reg(101) = second;
  }
  TestPlatform platform{false, makeSimulatedKernel()};
  QVScenario manager;
  StoryTables tables;
};

TEST_F(Affection, StaysAtTheEndsOfItsRange) {
  struct Row {
    int32_t value, amount, result;
  };
  for (const Row& row :
       {Row{999, 5, 1000}, Row{-999, -5, -1000}, Row{0, 999, 999}, Row{0, 1000, 1000},
        Row{0, -999, -999}, Row{0, -1000, -1000}, Row{1000, -1, 999}, Row{-1000, 1, -999},
        Row{1000, INT_MAX, 1000}, Row{-1000, INT_MIN, -1000}, Row{5, 0, 5}}) {
    EXPECT_EQ(movedStanding(row.value, row.amount), row.result) << row.value << " " << row.amount;
    Reg(107) = row.value;
    ChangeParameter("8", row.amount);
    EXPECT_EQ(Reg(107), row.result);
  }
}

TEST_F(Affection, EachNameHasItsRegisterAndOthersNone) {
  for (int32_t at = 0; at < 8; ++at) {
    ChangeParameter(tables.parameterNames[static_cast<size_t>(at)], at + 1);
    EXPECT_EQ(Reg(100 + at), at + 1);
  }
  ChangeParameter("nobody", 50);
  ChangeParameter("", 50);
  ChangeParameter(nullptr, 50);
  for (int32_t at = 0; at < 8; ++at)
    EXPECT_EQ(Reg(100 + at), at + 1);
  EXPECT_EQ(Reg(99), 0);
  EXPECT_EQ(Reg(108), 0);
}

TEST_F(Affection, TheHigherNameLeadsAndATieIsTheFirsts) {
  stand(3, 5);
  EXPECT_STREQ(CompareAffection(First, Second), Second);
  EXPECT_STREQ(CompareAffection(Second, First), Second);
  stand(5, 3);
  EXPECT_STREQ(CompareAffection(First, Second), First);
  stand(-4, -4);
  EXPECT_STREQ(CompareAffection(First, Second), First);
  EXPECT_STREQ(CompareAffection(Second, First), Second);
  stand(-5, -4);
  EXPECT_STREQ(CompareAffection(First, Second), Second);
}

TEST_F(Affection, OneNameIsComparedWithNothing) {
  stand(1, -1);
  EXPECT_STREQ(CompareAffection(First, nullptr), First);
  EXPECT_STREQ(CompareAffection(nullptr, First), First);
  EXPECT_EQ(CompareAffection(Second, nullptr), nullptr);
  EXPECT_EQ(CompareAffection(nullptr, Second), nullptr);
  stand(0, 0);
  EXPECT_STREQ(CompareAffection(First, nullptr), First);
  EXPECT_EQ(CompareAffection(nullptr, nullptr), nullptr);
}

TEST_F(Affection, IsAboveALimitBySign) {
  stand(5, -5);
  EXPECT_EQ(AffectionAbove(First, 4), 1);
  EXPECT_EQ(AffectionAbove(First, 5), 0);
  EXPECT_EQ(AffectionAbove(Second, -6), 1);
  EXPECT_EQ(AffectionAbove(Second, -5), 0);
  EXPECT_EQ(AffectionAbove("nobody", -1), 1);
  EXPECT_EQ(AffectionAbove("nobody", 0), 0);
  EXPECT_EQ(AffectionAbove(nullptr, -1), 1);
}

TEST_F(Affection, TheGemHasElevenBandsOfWhichTheLastIsShort) {
  const int32_t from[] = {0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 190};
  for (int32_t band = 0; band < 11; ++band) {
    const int32_t next = band == 10 ? 2001 : from[band + 1];
    for (int32_t difference = from[band]; difference < next; ++difference) {
      ASSERT_EQ(gemCellX(Leader::First, difference), 320 + 32 * band) << difference;
      ASSERT_EQ(gemCellX(Leader::Second, difference), 320 - 32 * band) << difference;
    }
  }
  // As far apart as registers of a foreign save can be.
  constexpr int64_t Farthest = int64_t{INT_MAX} - INT_MIN;
  EXPECT_EQ(gemCellX(Leader::First, Farthest), 320 + 32 * 10);
  EXPECT_EQ(gemCellX(Leader::Second, Farthest), 320 - 32 * 10);
}

TEST_F(Affection, WithoutAStoryNobodyStandsAnywhere) {
  setStoryTables(nullptr);
  ChangeParameter(First, 5);
  EXPECT_EQ(Reg(100), 0);
  EXPECT_EQ(AffectionAbove(First, -1), 1);
}

}  // namespace
}  // namespace qv::testing
