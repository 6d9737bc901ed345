#include "graphics/animation/frame_film.h"

#include <gtest/gtest.h>

#include "tests/unit/graphics/animation/animation_ground.h"

namespace qv::testing {
namespace {

class Film : public ::testing::Test {
 protected:
  void picture(const std::string& name, char letter) {
    platform.writeFile(platform.game() / "film" / name, bitmapOf({std::string(2, letter)}));
  }
  void pictures(int count) {
    for (int frame = 0; frame < count; ++frame)
      picture("f000" + std::to_string(frame) + ".bmp", static_cast<char>('A' + frame));
  }
  void keepWhatIsShown() {
    view.onUpdate = [&] {
      shown += textOf(view.surface)[0];
      sleepMillis(10);
    };
  }

  TestPlatform platform{false, makeSimulatedKernel()};
  FakeView view{3, 1};
  FrameFilm film;
  std::string shown;
};

TEST_F(Film, CountsItsPicturesUpToTheFirstHole) {
  pictures(3);
  picture("f0004.bmp", 'E');
  film.setFiles("film\\f");
  EXPECT_EQ(film.frameCount(), 3);
  film.setFiles("film\\g");
  EXPECT_EQ(film.frameCount(), 0);
  picture("g0001.bmp", 'A');
  film.setFiles("film\\g");
  EXPECT_EQ(film.frameCount(), 0);
  film.setFiles(nullptr);
  EXPECT_EQ(film.frameCount(), 0);
}

TEST_F(Film, CountsPicturesOfAnotherKind) {
  picture("h0000.dat", 'A');
  film.setFiles("film\\h", ".dat");
  EXPECT_EQ(film.frameCount(), 1);
}

TEST_F(Film, ShowsItsPicturesInTheirOrder) {
  pictures(4);
  keepWhatIsShown();
  film.setFiles("film\\f");
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "ABCD");
  EXPECT_FALSE(film.running());
  EXPECT_EQ(textOf(view.surface), "DD.");
  EXPECT_EQ(view.updated, (Rectangle{0, 0, 3, 1}));
  EXPECT_EQ(view.mapRepaints, 4);
}

TEST_F(Film, BeginsAtItsFirstFrameAndKeepsItsLimit) {
  pictures(5);
  keepWhatIsShown();
  film.setFiles("film\\f");
  film.setFirstFrame(1);
  film.limitFrames(3);
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "BC");
  film.limitFrames(99);
  EXPECT_EQ(film.frameCount(), 3);
  film.setFirstFrame(99);
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "BC");
}

TEST_F(Film, StopsBehindThePictureThatIsShown) {
  pictures(9);
  keepWhatIsShown();
  film.setFiles("film\\f");
  film.start(&view);
  EXPECT_TRUE(film.running());
  sleepMillis(25);
  film.stop();
  EXPECT_FALSE(film.running());
  EXPECT_TRUE(film.ended().handle().isSet());
  EXPECT_EQ(shown, "ABC");
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "ABCABCDEFGHI");
}

TEST_F(Film, IsStartedOnceAtATime) {
  pictures(3);
  keepWhatIsShown();
  film.setFiles("film\\f");
  film.start(&view);
  film.start(&view);
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "ABC");
}

TEST_F(Film, CallsItsRoutineBehindEachPicture) {
  pictures(2);
  film.setFiles("film\\f");
  film.setRoutine([](FrameFilm&, intptr_t word) { *reinterpret_cast<std::string*>(word) += '!'; });
  film.start(&view, reinterpret_cast<intptr_t>(&shown), true);
  EXPECT_EQ(shown, "!!");
}

TEST_F(Film, MayBeStoppedByItsRoutineAndIsNotStartedByIt) {
  pictures(5);
  keepWhatIsShown();
  film.setFiles("film\\f");
  film.setRoutine([](FrameFilm& running, intptr_t word) {
    running.start(reinterpret_cast<View*>(word), word, true);
    if (static_cast<FakeView*>(reinterpret_cast<View*>(word))->updates == 2) running.stop();
  });
  View* const shownOn = &view;
  film.start(shownOn, reinterpret_cast<intptr_t>(shownOn));
  sleepMillis(500);
  EXPECT_FALSE(film.running());
  EXPECT_TRUE(film.ended().handle().isSet());
  EXPECT_EQ(shown, "AB");
  film.stop();
}

TEST_F(Film, EndsWhereAPictureHasGoneSinceTheCount) {
  pictures(4);
  keepWhatIsShown();
  film.setFiles("film\\f");
  std::filesystem::remove(platform.game() / "film" / "f0002.bmp");
  film.start(&view, 0, true);
  EXPECT_EQ(shown, "AB");
}

TEST_F(Film, DoesNothingWithoutAView) {
  pictures(2);
  film.setFiles("film\\f");
  film.start(nullptr, 0, true);
  EXPECT_FALSE(film.running());
}

TEST_F(Film, EndsWithItsObject) {
  pictures(9);
  keepWhatIsShown();
  {
    FrameFilm passing;
    passing.setFiles("film\\f");
    passing.start(&view);
    sleepMillis(15);
  }
  const size_t frames = shown.size();
  sleepMillis(100);
  EXPECT_EQ(shown.size(), frames);
  EXPECT_LT(frames, 9u);
}

}  // namespace
}  // namespace qv::testing
