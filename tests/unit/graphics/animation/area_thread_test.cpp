#include <atomic>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/animation/animation_area.h"
#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

/// In simulated time, where a tick is what it says.
class RunningArea : public ::testing::Test {
 protected:
  RunningArea() {
    writeLetters(platform);
    cells.load(3, "abc.bmp", false, 0);
    view.surface.fill(26);
    area.setView(&view);
    area.setRect({1, 1, 3, 3});
  }
  void relate(const char* text, bool stopAtEnd = false) {
    sequence.setText(text, stopAtEnd);
    area.relateContainer("r", &cells, &sequence, 1, 0, 0, true);
  }
  char shownCell() { return textOf(view.surface)[8]; }

  TestPlatform platform{false, makeSimulatedKernel()};
  QVAnimationSurface cells;
  AnimationSequence sequence;
  FakeView view{6, 4};
  QVAnimationArea area;
};

class Receiver : public AdvanceReceiver {
 public:
  void advance(int32_t code) override {
    codes.push_back(code);
    if (onAdvance) onAdvance();
  }
  std::vector<int32_t> codes;
  std::function<void()> onAdvance;
};

TEST_F(RunningArea, ShowsACellForTwentyMilliseconds) {
  std::vector<std::pair<uint32_t, char>> seen;
  relate("AB..C", true);
  const uint32_t start = tickCount();
  view.onUpdate = [&] { seen.emplace_back(tickCount() - start, shownCell()); };
  area.start(false);
  while (area.running())
    sleepMillis(1);
  area.stop(false);
  EXPECT_EQ(seen,
            (std::vector<std::pair<uint32_t, char>>{{0, 'A'}, {20, 'B'}, {80, 'C'}, {100, 'C'}}));
}

TEST_F(RunningArea, HoldsAMouthForSixTicks) {
  std::vector<uint32_t> ticks;
  relate("A5[.]C5[.]B5[.]");
  view.onUpdate = [&] { ticks.push_back(tickCount()); };
  area.start(false);
  sleepMillis(500);
  area.stop(false);
  ASSERT_GE(ticks.size(), 4u);
  for (size_t tick = 1; tick < ticks.size(); ++tick)
    EXPECT_EQ(ticks[tick] - ticks[tick - 1], 120u);
}

TEST_F(RunningArea, CountsTheTimeOfDrawingIntoItsTick) {
  std::vector<uint32_t> ticks;
  relate("ABC");
  view.onUpdate = [&] {
    ticks.push_back(tickCount());
    sleepMillis(ticks.size() % 2 ? 5 : 50);
  };
  area.start(false);
  sleepMillis(300);
  area.stop(false);
  ASSERT_GE(ticks.size(), 4u);
  EXPECT_EQ(ticks[1] - ticks[0], 20u);
  EXPECT_EQ(ticks[2] - ticks[1], 50u);
}

TEST_F(RunningArea, DoesNotStartWithoutTargetOrRelations) {
  area.start(false);
  EXPECT_FALSE(area.running());
  relate("A");
  area.setView(nullptr);
  area.start(false);
  EXPECT_FALSE(area.running());
  EXPECT_EQ(sequence.next(), 0);
}

TEST_F(RunningArea, IsStartedOnce) {
  static std::atomic<int> runs;
  runs = 0;
  relate("A");
  const auto routine = [](void* argument) {
    ++runs;
    while (static_cast<QVAnimationArea*>(argument)->pace(tickCount())) {
    }
  };
  area.start(false, routine);
  area.start(false, routine);
  sleepMillis(100);
  area.stop(false);
  EXPECT_EQ(runs, 1);
  area.start(false, routine);
  area.stop(false);
  EXPECT_EQ(runs, 2);
}

TEST_F(RunningArea, GivesItsRoutineTheArgument) {
  std::atomic<int> word = 0;
  relate("A");
  area.start(
      false, [](void* argument) { *static_cast<std::atomic<int>*>(argument) = 7; }, &word);
  area.stop(false);
  EXPECT_EQ(word, 7);
}

TEST_F(RunningArea, StopsInTheMiddleOfATick) {
  relate("A");
  area.start(false);
  sleepMillis(5);
  const uint32_t before = tickCount();
  area.stop(false);
  EXPECT_EQ(tickCount(), before);
  EXPECT_FALSE(area.running());
}

TEST_F(RunningArea, GoesBackToTheBackupOfItsStart) {
  relate("B(1,1).");
  view.surface.fill(4);
  area.start(true);
  sleepMillis(30);
  EXPECT_EQ(textOf(view.surface), "DDDDDD/DDDDDD/DDBDDD/DDDDDD");
  area.stop(true);
  EXPECT_EQ(textOf(view.surface), "DDDDDD/DDDDDD/DDADDD/DDDDDD");
}

TEST_F(RunningArea, TellsItsClickMapThatItEnded) {
  Receiver map, parent;
  relate("AB", true);
  area.setAutoAdvance({.wanted = true, .clickMap = &map, .inputCode = 77, .viewParent = &parent});
  area.start(false);
  sleepMillis(200);
  area.stop(false);
  EXPECT_EQ(map.codes, std::vector{77});
  EXPECT_TRUE(parent.codes.empty());
}

TEST_F(RunningArea, PressesSpaceOnTheViewsParentWithoutAClickMap) {
  Receiver parent;
  relate("AB", true);
  area.setAutoAdvance({.wanted = true, .viewParent = &parent});
  area.start(false);
  sleepMillis(200);
  area.stop(false);
  EXPECT_EQ(parent.codes, std::vector{32});
}

TEST_F(RunningArea, TellsNobodyWhenItIsStoppedOrWhenNobodyWants) {
  Receiver map;
  relate("A..........", true);
  area.setAutoAdvance({.wanted = true, .clickMap = &map});
  area.start(false);
  sleepMillis(50);
  area.stop(false);
  area.setAutoAdvance({.wanted = false, .clickMap = &map});
  area.start(false);
  sleepMillis(500);
  EXPECT_FALSE(area.running());
  EXPECT_TRUE(map.codes.empty());
}

TEST_F(RunningArea, CanBeStartedByWhoHearsOfItsEnd) {
  Receiver map;
  QVEvent heard("heard");
  relate("A", true);
  area.setAutoAdvance({.wanted = true, .clickMap = &map});
  map.onAdvance = [&] { heard.set(); };
  area.start(false);
  heard.wait();
  heard.reset();
  sequence.rewind();
  area.start(false);
  EXPECT_EQ(heard.wait(1000), 0);
  area.stop(false);
  EXPECT_EQ(map.codes.size(), 2u);
}

TEST_F(RunningArea, CanBeToldToStopByItsOwnThread) {
  relate("A");
  view.onUpdate = [&] { area.stop(false); };
  area.start(false);
  sleepMillis(100);
  EXPECT_FALSE(area.running());
  EXPECT_EQ(view.updates, 1);
  view.onUpdate = nullptr;
  area.start(false);
  EXPECT_TRUE(area.running());
}

TEST_F(RunningArea, EndsWithItsObject) {
  {
    QVAnimationArea passing;
    passing.setView(&view);
    sequence.setText("A", false);
    passing.relateContainer("r", &cells, &sequence, 1, 0, 0, true);
    passing.start(true);
    sleepMillis(50);
  }
  const int updates = view.updates;
  sleepMillis(100);
  EXPECT_EQ(view.updates, updates);
}

// --- Over many seeds ---

/// One run in simulated time; the seed decides who is the next to run, and when things happen.
class SeededRun {
 public:
  explicit SeededRun(uint64_t seed)
      : state_(seed), platform(false, makeSimulatedKernel({.seed = seed})) {
    writeLetters(platform);
    cells->load(3, "abc.bmp", false, 0);
    view.surface.fill(26);
  }
  /// A number below `limit`.
  uint32_t draw(uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<uint32_t>(state_ >> 33) % limit;
  }

 private:
  uint64_t state_;

 public:
  TestPlatform platform;
  std::unique_ptr<QVAnimationSurface> cells = std::make_unique<QVAnimationSurface>();
  FakeView view{6, 4};
};

void overSeeds(void (*body)(SeededRun& run)) {
  constexpr uint64_t Seeds = 40;
  for (uint64_t seed = 1; seed <= Seeds && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    SeededRun run(seed);
    body(run);
  }
}

TEST(AreaSeeds, StartAndStopAtAnyMoment) {
  overSeeds([](SeededRun& run) {
    AnimationSequence sequence;
    sequence.setText("B2[.]C{1,0}C", false);
    QVAnimationArea area;
    area.setView(&run.view);
    area.setRect({1, 1, 5, 3});
    area.relateContainer("r", run.cells.get(), &sequence, 1, 0, 0, true);
    for (int round = 0; round < 10; ++round) {
      area.start(true);
      EXPECT_TRUE(area.running());
      sleepMillis(run.draw(60));
      area.stop(false);
      EXPECT_FALSE(area.running());
      const int updates = run.view.updateCount();
      sleepMillis(run.draw(60));
      EXPECT_EQ(run.view.updateCount(), updates);
      run.view.surface.fill(26);
    }
  });
}

TEST(AreaSeeds, StopFromSeveralThreadsAtOnce) {
  overSeeds([](SeededRun& run) {
    AnimationSequence sequence;
    sequence.setText("BC.", run.draw(2) != 0);
    QVAnimationArea area;
    area.setView(&run.view);
    area.relateContainer("r", run.cells.get(), &sequence, 1, 0, 0, true);
    // A voice's thread starts and stops the mouth while the scene does.
    Thread voice;
    const uint32_t first = run.draw(50), then = run.draw(50);
    voice.start("voice", [&] {
      sleepMillis(first);
      area.start(false);
      sleepMillis(then);
      area.stop(true);
    });
    for (int round = 0; round < 4; ++round) {
      area.start(true);
      sleepMillis(run.draw(40));
      area.stop(run.draw(2) != 0);
    }
    voice.join();
    area.stop(true);
    EXPECT_FALSE(area.running());
    EXPECT_EQ(textOf(run.view.surface).substr(0, 2), "AA");
  });
}

TEST(AreaSeeds, LoseWhatTheyDrawWhileTheyRun) {
  overSeeds([](SeededRun& run) {
    FakeView other(6, 4);
    QVAnimationArea parent;
    auto child = std::make_unique<QVAnimationArea>();
    auto sequence = std::make_unique<AnimationSequence>();
    sequence->setText("ABC", false);
    parent.setView(&run.view);
    parent.relateContainer("r", run.cells.get(), sequence.get(), 1, 0, 0, true);
    child->setView(&run.view);
    child->setPosition(3, 0);
    child->relateContainer("r", run.cells.get(), sequence.get(), 1, 0, 0, true);
    parent.addChild(*child);
    parent.start(true);
    sleepMillis(run.draw(60));
    child.reset();
    sleepMillis(run.draw(60));
    parent.setView(&other);
    const int updates = run.view.updateCount();
    sleepMillis(run.draw(60));
    EXPECT_EQ(run.view.updateCount(), updates);
    if (run.draw(2) != 0) {
      parent.forget(run.cells.get());
      run.cells.reset();
    } else {
      parent.forget(sequence.get());
      sequence.reset();
    }
    sleepMillis(60);
    EXPECT_FALSE(parent.running());
  });
}

TEST(AreaSeeds, ShareAView) {
  overSeeds([](SeededRun& run) {
    AnimationSequence left, right;
    left.setText("AB", false);
    right.setText("C.B.", false);
    QVAnimationArea areas[2];
    AnimationSequence* sequences[] = {&left, &right};
    for (int index = 0; index < 2; ++index) {
      areas[index].setView(&run.view);
      areas[index].setPosition(index * 3, 1);
      areas[index].relateContainer("r", run.cells.get(), sequences[index], 1, 0, 0, true);
      areas[index].start(true);
    }
    sleepMillis(100 + run.draw(100));
    areas[run.draw(2)].stop(true);
    sleepMillis(run.draw(40));
    for (QVAnimationArea& area : areas)
      area.stop(true);
    EXPECT_EQ(textOf(run.view.surface), "ZZZZZZ/AAZAAZ/AAZAAZ/ZZZZZZ");
  });
}

/// On the machine's own clock, for the thread sanitizer.
TEST(AreaThreads, DrawWhileASceneDrawsAndFlushes) {
  TestPlatform platform;
  writeLetters(platform);
  QVAnimationSurface cells;
  cells.load(3, "abc.bmp", true, KeyTopLeft);
  QVAnimationSurface opaque;
  opaque.load(3, "abc.bmp", false, 0);
  FakeView view(64, 48);
  QVVSurface picture;
  picture.create(64, 48);
  AnimationSequence mouth, prompt;
  mouth.setText("ABC", false);
  prompt.setText("C{1,0}BA", false);
  QVAnimationArea areas[2];
  AnimationSequence* sequences[] = {&mouth, &prompt};
  for (int index = 0; index < 2; ++index) {
    areas[index].setView(&view);
    areas[index].setRect(Rectangle::at(index * 8, 4, 8, 8));
    areas[index].relateContainer("r", index ? &cells : &opaque, sequences[index], 1, 0, 0, true);
    areas[index].start(true);
  }
  const uint32_t start = tickCount();
  for (int round = 0; tickCount() - start < 300; ++round) {
    picture.fill(static_cast<uint8_t>(round));
    picture.blit(view.surface, 0, 0, 0, 0, 64, 48, KeyNone);
    view.surface.fadePalette(picture.storedColours(), round % 16, 16);
    view.flush(nullptr, 0);
    if (round % 10 == 0) {
      areas[1].stop(true);
      prompt.rewind();
      areas[1].start(true);
    }
    sleepMillis(3);
  }
  for (QVAnimationArea& area : areas)
    area.stop(true);
  EXPECT_GT(view.updateCount(), 20);
}

}  // namespace
}  // namespace qv::testing
