#include "graphics/animation/animation_area.h"

#include <gtest/gtest.h>

#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

/// Without a thread: rounds and ticks are called.
class Area : public ::testing::Test {
 protected:
  Area() {
    writeLetters(platform);
    cells.load(3, "abc.bmp", false, 0);
    view.surface.fill(26);
    area.setView(&view);
    area.setRect({1, 1, 5, 3});
  }
  void show(const char* text, bool stopAtEnd = false) {
    sequence.setText(text, stopAtEnd);
    area.relateContainer("r", &cells, &sequence, 1, 0, 0, true);
  }
  std::string screen() { return textOf(view.surface); }
  bool drawNow(bool frozen = false) {
    drawn = {};
    return area.drawNow(drawn, frozen);
  }

  TestPlatform platform;
  QVAnimationSurface cells;
  AnimationSequence sequence, second;
  FakeView view{6, 4};
  QVAnimationArea area;
  Rectangle drawn;
};

TEST_F(Area, DrawsTheCellsOfItsSequenceAtItsPlace) {
  show("AC");
  EXPECT_TRUE(drawNow());
  EXPECT_EQ(screen(), "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ");
  EXPECT_EQ(drawn, (Rectangle{1, 1, 3, 3}));
  EXPECT_TRUE(drawNow());
  EXPECT_EQ(screen(), "ZZZZZZ/ZCCZZZ/ZCCZZZ/ZZZZZZ");
}

TEST_F(Area, AddsThePlacesOfRelationAndSequence) {
  sequence.setText("B(1,-1)", false);
  area.relateContainer("r", &cells, &sequence, 1, 1, 1, true);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZZZBBZ/ZZZBBZ/ZZZZZZ");
}

TEST_F(Area, DrawsOnlyWhatLiesInIt) {
  show("A(-1,-1)B(3,1)C(9,9)");
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZAZZZZ/ZZZZZZ/ZZZZZZ");
  EXPECT_EQ(drawn, (Rectangle{1, 1, 2, 2}));
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZAZZZZ/ZZZZBZ/ZZZZZZ");
  drawNow();
  EXPECT_TRUE(drawn.empty());
}

TEST_F(Area, TakesTheOverhangFromTheSource) {
  platform.writeFile(platform.game() / "one.bmp", bitmapOf({"ABC", "DEF", "GHI"}));
  QVAnimationSurface one;
  one.load(1, "one.bmp", false, 0);
  sequence.setText("A(-1,-2)", false);
  area.relateContainer("r", &one, &sequence, 1, 0, 0, true);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZHIZZZ/ZZZZZZ/ZZZZZZ");
}

TEST_F(Area, DrawsNothingForALetterBehindTheLastCell) {
  show("AD");
  drawNow();
  const std::string before = screen();
  EXPECT_TRUE(drawNow());
  EXPECT_EQ(screen(), before);
  EXPECT_TRUE(drawn.empty());
}

TEST_F(Area, LeavesTheScreenAloneInATickWithoutACell) {
  show("A.");
  area.tick();
  const int updates = view.updates;
  EXPECT_TRUE(area.tick());
  EXPECT_EQ(view.updates, updates);
}

TEST_F(Area, ShowsWhatItDrewOnItsView) {
  show("B");
  EXPECT_TRUE(area.tick());
  EXPECT_EQ(view.updates, 1);
  EXPECT_EQ(view.updated, (Rectangle{1, 1, 3, 3}));
  EXPECT_EQ(view.mapRepaints, 1);
}

TEST_F(Area, DrawsOntoASurfaceThatNoViewShows) {
  QVVSurface surface;
  surface.create(3, 3);
  show("B");
  area.setTarget(&surface);
  EXPECT_TRUE(area.tick());
  EXPECT_EQ(textOf(surface), ".../.BB/.BB");
  EXPECT_EQ(view.updates, 0);
}

TEST_F(Area, HasNothingToTickWithoutTargetOrRelations) {
  EXPECT_FALSE(area.tick());
  show("A");
  area.setView(nullptr);
  EXPECT_FALSE(area.tick());
  EXPECT_EQ(sequence.next(), 0);
}

TEST_F(Area, StepsButDoesNotDrawWhatIsInvisible) {
  sequence.setText("ABC", false);
  area.relateContainer("r", &cells, &sequence, 1, 0, 0, false);
  EXPECT_TRUE(drawNow());
  EXPECT_TRUE(drawn.empty());
  EXPECT_EQ(sequence.next(), 1);
}

TEST_F(Area, DrawsEverythingAgainWhenSomethingChanges) {
  show("A...");
  second.setText(".B", false);
  area.relateContainer("over", &cells, &second, 2, 1, 0, true);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ");
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZABBZZ/ZABBZZ/ZZZZZZ");
  EXPECT_EQ(drawn, (Rectangle{1, 1, 4, 3}));
}

TEST_F(Area, KeepsTheLastCellAndSaysThatItEnded) {
  show("AB", true);
  EXPECT_TRUE(drawNow());
  EXPECT_TRUE(drawNow());
  view.surface.fill(26);
  EXPECT_FALSE(drawNow());
  EXPECT_EQ(screen(), "ZZZZZZ/ZBBZZZ/ZBBZZZ/ZZZZZZ");
}

TEST_F(Area, EndsWithASequenceThatIsNotSeen) {
  show("..");
  second.setText("A", true);
  area.relateContainer("hidden", &cells, &second, 2, 0, 0, false);
  EXPECT_TRUE(drawNow());
  EXPECT_FALSE(drawNow());
}

TEST_F(Area, PutsItsBackupBackBeforeItDraws) {
  view.surface.fill(4);
  show("A{1,0}B.");
  area.backup();
  view.surface.fill(26);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZDAADZ/ZDAADZ/ZZZZZZ");
  EXPECT_EQ(drawn, (Rectangle{1, 1, 5, 3}));
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZDDBBZ/ZDDBBZ/ZZZZZZ");
  drawNow();
  EXPECT_TRUE(drawn.empty());
}

TEST_F(Area, KeepsOfItsBackupWhatLiesOnTheTarget) {
  view.surface.fill(4);
  area.setRect({-999996, 2, 2000000000, 2000000000});
  show("A(1000000,0)");
  area.backup();
  view.surface.fill(26);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZZZZZZ/DDDDAA/DDDDAA");
}

TEST_F(Area, ShowsItsFirstCellsAtTheEndEvenWhenItNeverRan) {
  show("B..");
  drawNow();
  area.stop(true);
  EXPECT_EQ(screen(), "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ");
  EXPECT_EQ(view.updates, 1);
  EXPECT_EQ(view.mapRepaints, 1);
  view.surface.fill(26);
  area.stop(true);
  EXPECT_EQ(screen(), "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ");
  EXPECT_EQ(sequence.next(), -1);
}

TEST_F(Area, IsNotDrawnAgainByAStopWithoutRestore) {
  show("B");
  drawNow();
  area.stop(false);
  EXPECT_EQ(screen(), "ZZZZZZ/ZBBZZZ/ZBBZZZ/ZZZZZZ");
  EXPECT_EQ(view.updates, 0);
}

TEST_F(Area, RestoresItsBackupUnderTheFirstCells) {
  view.surface.fill(4);
  show("B(2,0).");
  area.backup();
  drawNow();
  area.stop(true);
  EXPECT_EQ(screen(), "DDDDDD/DDDAAD/DDDAAD/DDDDDD");
}

TEST_F(Area, DropsTheBackupOfAnotherTarget) {
  view.surface.fill(4);
  area.backup();
  QVVSurface other;
  other.create(6, 4);
  area.setTarget(&other);
  show("A");
  drawNow();
  EXPECT_EQ(textOf(other), "....../.AA.../.AA.../......");
}

TEST_F(Area, NeedsCellsAndSequenceForARelation) {
  area.relateContainer("r", nullptr, &sequence, 1, 0, 0, true);
  area.relateContainer("r", &cells, nullptr, 1, 0, 0, true);
  EXPECT_TRUE(area.relations().empty());
}

TEST_F(Area, HasOneDefaultRelation) {
  sequence.setText("B", false);
  area.relate(&cells);
  EXPECT_TRUE(drawNow());
  EXPECT_TRUE(drawn.empty());
  area.relateSequence(&sequence);
  area.relate(&cells);
  ASSERT_EQ(area.relations().size(), 1u);
  const AnimationRelation relation = area.relations()[0];
  EXPECT_STREQ(relation.name.text(), "def$$QVAnimation");
  EXPECT_EQ(relation.number, 1);
  EXPECT_TRUE(relation.visible);
  drawNow();
  EXPECT_EQ(screen(), "ZZZZZZ/ZBBZZZ/ZBBZZZ/ZZZZZZ");
}

TEST_F(Area, TakesTheSizeOfItsCellWhereItHasNone) {
  area.setPosition(3, 1);
  area.relate(&cells);
  EXPECT_EQ(area.rectangle(), (Rectangle{3, 1, 5, 3}));
  area.setRect({0, 0, 9, 9});
  area.relate(&cells);
  EXPECT_EQ(area.rectangle(), (Rectangle{0, 0, 9, 9}));
}

TEST_F(Area, GrowsFromAPointWithItsRelations) {
  area.setPosition(2, 1);
  area.relateContainer("a", &cells, &sequence, 1, 0, 0, true);
  EXPECT_EQ(area.rectangle(), (Rectangle{2, 1, 4, 3}));
  area.relateContainer("b", &cells, &sequence, 1, 3, 5, true);
  EXPECT_EQ(area.rectangle(), (Rectangle{2, 1, 7, 8}));
  area.setRect({0, 0, 1, 1});
  area.relateContainer("c", &cells, &sequence, 1, 3, 5, true);
  EXPECT_EQ(area.rectangle(), (Rectangle{0, 0, 1, 1}));
}

TEST_F(Area, HasNoExtentFromCellsWithoutPictures) {
  QVAnimationSurface empty;
  area.setPosition(2, 1);
  area.relateContainer("a", &empty, &sequence, 1, 0, 0, true);
  EXPECT_TRUE(area.rectangle().empty());
  sequence.setText("A", false);
  drawNow();
  EXPECT_TRUE(drawn.empty());
}

TEST_F(Area, StandsPlacesThatNoScreenHas) {
  for (const int32_t far : {INT32_MIN, INT32_MAX}) {
    area.setPosition(far, far);
    area.relateContainer("a", &cells, &sequence, 1, far, far, true);
    area.setRect({far, far, -far - 1, -far - 1});
    sequence.setText("A(1000000,1000000)", false);
    area.backup();
    drawNow();
    area.stop(true);
  }
  EXPECT_EQ(area.relations().size(), 2u);
}

TEST_F(Area, ForgetsCellsAndSequencesThatGo) {
  show("A");
  area.relateContainer("second", &cells, &second, 1, 0, 0, true);
  area.forget(&second);
  EXPECT_EQ(area.relations().size(), 1u);
  area.forget(&cells);
  EXPECT_TRUE(area.relations().empty());
}

class ParentArea : public Area {
 protected:
  ParentArea() {
    show("A.");
    second.setText("B", true);
    child.setTarget(&view.surface);
    child.setRect({3, 0, 5, 2});
    child.relateContainer("c", &cells, &second, 1, 0, 0, true);
  }
  QVAnimationArea child;
};

TEST_F(ParentArea, DrawsItsChildrenInEachRound) {
  EXPECT_TRUE(area.addChild(child));
  EXPECT_TRUE(drawNow());
  EXPECT_EQ(screen(), "ZZZBBZ/ZAABBZ/ZAAZZZ/ZZZZZZ");
  EXPECT_EQ(drawn, (Rectangle{1, 0, 5, 3}));
}

TEST_F(ParentArea, EndsWithAChild) {
  area.addChild(child);
  EXPECT_TRUE(drawNow());
  EXPECT_FALSE(drawNow());
}

TEST_F(ParentArea, FreezesItsChildrenToo) {
  area.addChild(child);
  drawNow();
  area.stop(true);
  EXPECT_EQ(screen(), "ZZZAAZ/ZAAAAZ/ZAAZZZ/ZZZZZZ");
}

TEST_F(ParentArea, IsNoChildOfItsOwn) {
  EXPECT_FALSE(area.addChild(area));
  EXPECT_TRUE(area.addChild(child));
  EXPECT_FALSE(area.addChild(child));
  EXPECT_FALSE(child.addChild(area));
  QVAnimationArea grandchild;
  EXPECT_TRUE(child.addChild(grandchild));
  EXPECT_FALSE(grandchild.addChild(area));
  drawNow();
}

TEST_F(ParentArea, LosesAChildThatGoes) {
  {
    QVAnimationArea passing;
    passing.setTarget(&view.surface);
    passing.setRect({3, 0, 5, 2});
    passing.relateContainer("c", &cells, &second, 1, 0, 0, true);
    area.addChild(passing);
  }
  EXPECT_TRUE(drawNow());
  EXPECT_EQ(screen(), "ZZZZZZ/ZAAZZZ/ZAAZZZ/ZZZZZZ");
}

}  // namespace
}  // namespace qv::testing
