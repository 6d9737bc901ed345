#include "host/box_desk.h"

#include <gtest/gtest.h>

#include "platform/display/key_codes.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

/// Asks a box on a thread of its own; both kernels do the same, so simulated time will do.
class BoxDeskTest : public ::testing::Test {
 protected:
  BoxDeskTest() : platform(false, makeSimulatedKernel()), desk(text) {
    desk.setUiThread(Thread::currentId());
  }
  void ask(Thread& thread, BoxAnswer& answer, uint32_t flags) {
    thread.start("asker", [&, flags] { answer = desk.messageBox("text", "caption", flags); });
    while (!desk.holds(thread.id()))
      sleepMillis(1);
  }
  DisplayEvent key(int code) {
    DisplayEvent event;
    event.kind = DisplayEvent::Kind::KeyDown;
    event.key = code;
    return event;
  }
  testing::TestPlatform platform;
  TextRenderer text;
  BoxDesk desk;
};

TEST_F(BoxDeskTest, TheAskingThreadStandsUntilTheBoxIsAnswered) {
  Thread thread;
  BoxAnswer answer = BoxAnswer::No;
  ask(thread, answer, BoxRetryCancel);
  sleepMillis(5000);
  EXPECT_TRUE(thread.running());
  EXPECT_EQ(desk.describe(), "caption: text");
  EXPECT_TRUE(desk.answer(BoxAnswer::Retry));
  EXPECT_TRUE(thread.join());
  EXPECT_EQ(answer, BoxAnswer::Retry);
  EXPECT_FALSE(desk.up());
}

TEST_F(BoxDeskTest, AnAnswerWithoutAButtonLeavesTheBoxUp) {
  Thread thread;
  BoxAnswer answer = BoxAnswer::No;
  ask(thread, answer, BoxNotice);
  EXPECT_FALSE(desk.answer(BoxAnswer::Retry));
  EXPECT_TRUE(desk.up());
  EXPECT_TRUE(desk.answer(BoxAnswer::Ok));
  thread.join();
}

TEST_F(BoxDeskTest, AKeyAnswersTheBoxAndIsTaken) {
  Thread thread;
  BoxAnswer answer = BoxAnswer::No;
  EXPECT_FALSE(desk.handle(key(KeyReturn))) << "no box is up yet";
  ask(thread, answer, BoxNotice);
  std::optional<BoxAnswer> told;
  EXPECT_TRUE(desk.handle(key(KeyA), &told)) << "a box takes all input, also what it ignores";
  EXPECT_FALSE(told);
  EXPECT_TRUE(desk.handle(key(KeyReturn), &told));
  EXPECT_EQ(told, BoxAnswer::Ok);
  thread.join();
  EXPECT_EQ(answer, BoxAnswer::Ok);
}

TEST_F(BoxDeskTest, TheNewestBoxIsServedFirst) {
  Thread first, second;
  BoxAnswer firstAnswer = BoxAnswer::No, secondAnswer = BoxAnswer::No;
  ask(first, firstAnswer, BoxRetryCancel);
  ask(second, secondAnswer, BoxNotice);
  EXPECT_TRUE(desk.answer(BoxAnswer::Ok));
  second.join();
  EXPECT_TRUE(first.running());
  EXPECT_TRUE(desk.answer(BoxAnswer::Retry));
  first.join();
  EXPECT_EQ(firstAnswer, BoxAnswer::Retry);
  EXPECT_EQ(secondAnswer, BoxAnswer::Ok);
}

TEST_F(BoxDeskTest, TheAbortAnswersWhatIsUpAndWhatComes) {
  Thread thread;
  BoxAnswer answer = BoxAnswer::No;
  ask(thread, answer, BoxRetryCancel);
  desk.abort();
  thread.join();
  EXPECT_EQ(answer, BoxAnswer::Cancel);
  Thread late;
  late.start("late", [&] { answer = desk.messageBox("text", "caption", BoxNotice); });
  EXPECT_TRUE(late.join(1000));
  EXPECT_EQ(answer, BoxAnswer::Ok) << "there is no cancel";
}

TEST_F(BoxDeskTest, ABoxOfTheUiThreadDoesNotStopIt) {
  EXPECT_EQ(desk.messageBox("text", "caption", BoxRetryCancel), BoxAnswer::Cancel);
  EXPECT_FALSE(desk.up());
}

TEST_F(BoxDeskTest, AFileDialogGivesThePathThatWasTaken) {
  platform.writeFile(platform.game() / "one.bmp", "x");
  Thread thread;
  FileDialogRequest request;
  request.pattern = "*.bmp";
  request.folder = "C:\\";
  bool chosen = false;
  thread.start("asker", [&] { chosen = desk.fileDialog(request); });
  while (!desk.up())
    sleepMillis(1);
  EXPECT_FALSE(desk.answer(BoxAnswer::Yes));
  EXPECT_TRUE(desk.answer(BoxAnswer::Ok));
  thread.join();
  EXPECT_TRUE(chosen);
  EXPECT_EQ(request.path, "C:\\one.bmp");
}

TEST_F(BoxDeskTest, ACancelledFileDialogLeavesThePathAlone) {
  Thread thread;
  FileDialogRequest request;
  request.folder = "C:\\";
  request.path = "before";
  bool chosen = true;
  thread.start("asker", [&] { chosen = desk.fileDialog(request); });
  while (!desk.up())
    sleepMillis(1);
  EXPECT_TRUE(desk.answer(BoxAnswer::Cancel));
  thread.join();
  EXPECT_FALSE(chosen);
  EXPECT_EQ(request.path, "before");
}

TEST_F(BoxDeskTest, ThePictureChangesWhenABoxComesAndWhenItGoes) {
  const Frame ground(static_cast<size_t>(ScreenWidth) * ScreenHeight, 0x102030);
  Frame frame = ground;
  desk.takeChanged();
  desk.draw(frame);
  EXPECT_EQ(frame, ground);
  Thread thread;
  BoxAnswer answer = BoxAnswer::No;
  ask(thread, answer, BoxNotice);
  EXPECT_TRUE(desk.takeChanged());
  EXPECT_FALSE(desk.takeChanged());
  desk.draw(frame);
  EXPECT_NE(frame, ground);
  desk.answer(BoxAnswer::Ok);
  EXPECT_TRUE(desk.takeChanged());
  thread.join();
}

}  // namespace
}  // namespace qv
