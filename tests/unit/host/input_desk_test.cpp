#include "host/input_desk.h"

#include <cstdio>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "host/box_desk.h"
#include "host/play_script.h"
#include "host/recorder.h"
#include "platform/display/key_codes.h"
#include "platform/text/text_renderer.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

DisplayEvent press(int x = 1, int y = 2) {
  DisplayEvent event;
  event.kind = DisplayEvent::Kind::ButtonDown;
  event.x = x;
  event.y = y;
  return event;
}

DisplayEvent keyPress(int key, bool repeat = false) {
  DisplayEvent event;
  event.kind = DisplayEvent::Kind::KeyDown;
  event.key = key;
  event.repeat = repeat;
  return event;
}

const GameModule EmptyModule{ModuleAbi, "Test",  nullptr, nullptr, nullptr,
                             nullptr,   nullptr, nullptr, 0};

/// A scenario thread that waits for input when told, in simulated time.
class InputDeskTest : public ::testing::Test {
 protected:
  InputDeskTest()
      : platform(false, makeSimulatedKernel()),
        host(EmptyModule),
        boxes(text),
        desk(host, boxes, recorder),
        begin("begin wait", Event::Reset::Automatic) {
    EXPECT_TRUE(recorder.open(platform.player() / "record.play"));
    scene.start("scenario", [this] {
      while (begin.wait(WaitForever, WaitKind::Service) == 0) {
        try {
          result = host.WaitForInput(limit, 0, 1);
        } catch (const ExitScenarioException&) {
          return;
        }
      }
    });
  }
  ~InputDeskTest() override {
    host.abortEvent.set();
    scene.terminate();
    scene.join();
  }
  /// The scene waits, and the UI thread has not heard of it.
  void beginUnheardWait(int32_t millis) {
    result = Nothing;
    limit = millis;
    begin.set();
    while (!GameHost::Gate(host).sceneWaits())
      sleepMillis(1);
  }
  void beginWait(int32_t millis) {
    beginUnheardWait(millis);
    desk.waitBegan();
  }
  int32_t waited() {
    while (result == Nothing)
      sleepMillis(1);
    return result;
  }

  static constexpr int32_t Nothing = -99;
  testing::TestPlatform platform;
  TextRenderer text;
  GameHost host;
  BoxDesk boxes;
  Recorder recorder;
  InputDesk desk;
  Event begin;
  std::atomic<int32_t> result = Nothing, limit = 0;
  Thread scene;
};

TEST_F(InputDeskTest, AWaitGetsTheCodeOfItsInput) {
  const std::pair<DisplayEvent, int32_t> inputs[] = {
      {press(), 0},         {keyPress(13), 2061}, {keyPress(27), 2075}, {keyPress(32), 2080},
      {keyPress(38), 2086}, {keyPress(40), 2088}, {keyPress(98), 2146}, {keyPress(104), 2152}};
  for (const auto& [event, code] : inputs) {
    beginWait(InputForever);
    EXPECT_TRUE(desk.offer(event));
    EXPECT_EQ(waited(), code);
  }
  beginWait(InputForever);
  DisplayEvent right = press();
  right.button = PointerButton::Right;
  EXPECT_TRUE(desk.offer(right));
  EXPECT_EQ(waited(), -1);
}

TEST_F(InputDeskTest, ASecondInputForOneWaitIsNotTaken) {
  beginWait(InputForever);
  EXPECT_TRUE(desk.offer(keyPress(13)));
  EXPECT_FALSE(desk.offer(keyPress(32)));
  EXPECT_EQ(waited(), 2061);
}

TEST_F(InputDeskTest, APressBetweenTwoWaitsIsKeptForATenthOfASecond) {
  desk.handle(press());
  sleepMillis(90);
  beginWait(1000);
  EXPECT_EQ(waited(), 0);
}

TEST_F(InputDeskTest, APressThatIsTooOldIsForgotten) {
  desk.handle(press());
  sleepMillis(InputDesk::HeldPressMillis + 1);
  beginWait(1000);
  EXPECT_EQ(waited(), WaitInputTimeout);
}

TEST_F(InputDeskTest, OnlyTheNewestPressIsKept) {
  desk.handle(keyPress(13));
  desk.handle(keyPress(32));
  beginWait(1000);
  EXPECT_EQ(waited(), 2080);
  beginWait(200);
  EXPECT_EQ(waited(), WaitInputTimeout) << "the older press must not come back";
}

TEST_F(InputDeskTest, AKeptPressIsForgottenWhenANewerOneIsTaken) {
  desk.handle(keyPress(13));
  beginUnheardWait(InputForever);
  desk.handle(keyPress(32));
  EXPECT_EQ(waited(), 2080);
  beginWait(200);
  EXPECT_EQ(waited(), WaitInputTimeout) << "the older press came behind the newer one";
}

TEST_F(InputDeskTest, ARepeatedKeyIsNotKept) {
  desk.handle(keyPress(13, true));
  beginWait(200);
  EXPECT_EQ(waited(), WaitInputTimeout);
}

TEST_F(InputDeskTest, MovesAndReleasesAreNoInputOfAWait) {
  DisplayEvent event;
  for (const auto kind : {DisplayEvent::Kind::PointerMove, DisplayEvent::Kind::ButtonUp,
                          DisplayEvent::Kind::KeyUp, DisplayEvent::Kind::FocusLost}) {
    event.kind = kind;
    EXPECT_EQ(codeOfEvent(event), std::nullopt);
  }
}

TEST_F(InputDeskTest, KeysWithoutANameAndKeysBesideAltAnswerNoWait) {
  beginWait(300);
  for (const int key : {KeyAlt, KeyShift, KeyControl, KeyBack, KeyInsert, KeyDelete, 0, 255})
    EXPECT_FALSE(desk.offer(keyPress(key))) << key;
  for (const int key : {KeyReturn, KeyTab, KeySpace, KeyF1 + 3}) {
    DisplayEvent event = keyPress(key);
    event.alt = true;
    EXPECT_FALSE(desk.offer(event)) << key;
  }
  EXPECT_EQ(waited(), WaitInputTimeout);
  // Nor are they kept for the next one.
  desk.handle(keyPress(KeyAlt));
  beginWait(300);
  EXPECT_EQ(waited(), WaitInputTimeout);
  EXPECT_EQ(platform.readFile(platform.player() / "record.play"), "");
}

TEST_F(InputDeskTest, WhateverKeyAnswersAWaitHasItsLineInTheRecord) {
  std::string lines;
  uint32_t waits = 0;
  for (int key = 0; key <= 255; ++key) {
    const std::string name = nameOfKey(key);
    EXPECT_EQ(codeOfEvent(keyPress(key)).has_value(), !name.empty()) << key;
    if (name.empty()) continue;
    beginWait(InputForever);
    EXPECT_TRUE(desk.offer(keyPress(key))) << name;
    EXPECT_EQ(waited(), 2048 + key);
    lines += "@" + std::to_string(++waits) + " key " + name + "\n";
  }
  EXPECT_EQ(platform.readFile(platform.player() / "record.play"), lines);
}

TEST_F(InputDeskTest, WhatAWaitTookIsRecordedWithTheWaitsNumber) {
  beginWait(100);
  EXPECT_EQ(waited(), WaitInputTimeout);
  beginWait(InputForever);
  desk.offer(press(30, 40));
  waited();
  beginWait(InputForever);
  desk.offer(keyPress(13));
  waited();
  EXPECT_EQ(platform.readFile(platform.player() / "record.play"),
            "@2 click 30 40\n@3 key Return\n");
}

TEST_F(InputDeskTest, AButtonThatIsHeldWhileTheFocusGoesCountsAsLetGo) {
  DisplayEvent right = press();
  right.button = PointerButton::Right;
  desk.handle(right);
  EXPECT_TRUE(host.pointer.rightDown());
  DisplayEvent gone;
  gone.kind = DisplayEvent::Kind::FocusLost;
  desk.handle(gone);
  EXPECT_FALSE(host.pointer.rightDown()) << "its release goes to another window";
}

TEST_F(InputDeskTest, ABoxTakesTheInputBeforeTheWait) {
  beginWait(InputForever);
  Thread asker;
  asker.start("asker", [this] { boxes.messageBox("text", "caption", BoxNotice); });
  while (!boxes.up())
    sleepMillis(1);
  EXPECT_TRUE(desk.offer(keyPress(13)));
  asker.join();
  EXPECT_EQ(result, Nothing) << "the scene still waits";
  EXPECT_TRUE(desk.offer(keyPress(13)));
  EXPECT_EQ(waited(), 2061);
  EXPECT_EQ(platform.readFile(platform.player() / "record.play"), "answer ok\n@1 key Return\n");
}

}  // namespace
}  // namespace qv
