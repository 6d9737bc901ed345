#include "host/script_player.h"

#include <gtest/gtest.h>

#include "tests/support/test_platform.h"

namespace qv {
namespace {

/// A stage that the test sets: what stands, and what the script did to it.
class FakeStage : public ScriptStage {
 public:
  bool sceneWaits() override { return waits; }
  uint32_t waitOrdinal() override { return ordinal; }
  bool gameEnded() override { return ended; }
  bool offer(const DisplayEvent& event) override {
    log.push_back("offer " + nameOf(event));
    if (event.kind == DisplayEvent::Kind::PointerMove) {
      if (takesMoves) waits = false;
      return takesMoves;
    }
    const bool taken = waits;
    waits = false;
    return taken;
  }
  bool offerClick(const DisplayEvent& press) override {
    clicked = {press.x, press.y};
    return offer(press);
  }
  void pointerPlace(int& x, int& y) override {
    x = 55;
    y = 66;
  }
  void handle(const DisplayEvent& event) override { log.push_back("handle " + nameOf(event)); }
  void movePointer(int x, int y) override {
    log.push_back("pointer " + std::to_string(x) + " " + std::to_string(y));
  }
  bool boxIsUp() override { return box; }
  bool boxHoldsScene() override { return box; }
  std::string boxText() override { return "the box"; }
  bool answerBox(BoxAnswer answer) override {
    if (answer != boxTakes) return false;
    box = false;
    return true;
  }
  bool shoot(const std::string& file) override {
    log.push_back("shoot " + file);
    return true;
  }
  bool canShow() override { return window; }
  void close() override { log.push_back("close"); }
  std::optional<std::string> whatIsInstead(const ScriptLine&) override { return instead; }

  bool waits = false, ended = false, box = false, window = false, takesMoves = false;
  uint32_t ordinal = 1;
  BoxAnswer boxTakes = BoxAnswer::Ok;
  std::pair<int, int> clicked;
  std::optional<std::string> instead = "";
  std::vector<std::string> log;

 private:
  static std::string nameOf(const DisplayEvent& event) {
    switch (event.kind) {
      case DisplayEvent::Kind::PointerMove:
        return "move";
      case DisplayEvent::Kind::ButtonDown:
        return event.button == PointerButton::Left ? "press" : "right";
      case DisplayEvent::Kind::ButtonUp:
        return "release";
      case DisplayEvent::Kind::KeyDown:
        return "key " + std::to_string(event.key);
      case DisplayEvent::Kind::Minimised:
        return "minimise";
      default:
        return "other";
    }
  }
};

class ScriptPlayerTest : public ::testing::Test {
 protected:
  ScriptPlayerTest() : platform(false, makeSimulatedKernel()) {}
  ScriptPlayer player(const std::string& text) {
    ParsedScript script = parsePlayScript(text);
    EXPECT_EQ(script.complaint, "");
    return {std::move(script.lines), "test.play", stage};
  }
  testing::TestPlatform platform;
  FakeStage stage;
};

using Log = std::vector<std::string>;

TEST_F(ScriptPlayerTest, AnInputWaitsForTheScene) {
  ScriptPlayer script = player("key Return\nkey Space");
  stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log{});
  stage.waits = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"offer key 13"}));
  EXPECT_FALSE(script.finished());
  stage.waits = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"offer key 13", "offer key 32"}));
  EXPECT_TRUE(script.finished());
}

TEST_F(ScriptPlayerTest, AClickIsAMoveAndAPressInOneWaitWhereNobodyTakesTheMove) {
  ScriptPlayer script = player("click 3 4");
  stage.waits = true;
  stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer move", "offer press"}));
}

TEST_F(ScriptPlayerTest, APressWaitsUntilTheGameHasTakenTheMoveAndWaitsAgain) {
  ScriptPlayer script = player("click 3 4");
  stage.waits = stage.takesMoves = stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer move"}));
  script.step();
  EXPECT_EQ(stage.log.size(), 2u);
  stage.waits = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer move", "offer press"}));
  EXPECT_TRUE(script.finished());
}

TEST_F(ScriptPlayerTest, NowDoesNotWait) {
  ScriptPlayer script = player("now minimise\nnow key Return\nnow click 1 2");
  stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"handle minimise", "handle key 13", "handle move", "handle press",
                            "handle release"}));
}

TEST_F(ScriptPlayerTest, ARightClickWithoutAPlaceIsWhereThePointerStands) {
  ScriptPlayer script = player("right\nnow right");
  stage.waits = stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"offer right", "handle right", "handle release"}));
  EXPECT_EQ(stage.clicked, std::pair(55, 66));
}

TEST_F(ScriptPlayerTest, APressAndAReleaseAreGivenByThemselves) {
  ScriptPlayer script = player("press 3 4\nrelease 5 6\nnow press 7 8\nnow release 9 9");
  stage.waits = stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer press"}));
  stage.waits = true;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer press", "pointer 5 6", "offer release",
                            "handle press", "handle release"}));
}

TEST_F(ScriptPlayerTest, AClickThatNamesItsWaitIsThePressAlone) {
  ScriptPlayer script = player("@1 move 3 4\n@2 click 3 4");
  stage.waits = stage.takesMoves = stage.window = true;
  script.step();
  stage.waits = true;
  stage.ordinal = 2;
  script.step();
  EXPECT_EQ(stage.log, Log({"pointer 3 4", "offer move", "pointer 3 4", "offer press"}));
  EXPECT_TRUE(script.finished());
}

TEST_F(ScriptPlayerTest, ADragIsAPressAMoveAndARelease) {
  ScriptPlayer script = player("now drag 1 2 3 4\ndrag 5 6 7 8");
  stage.window = true;
  script.step();
  const Log drag{"handle move", "handle press", "handle move", "handle release"};
  EXPECT_EQ(stage.log, drag);
  stage.log.clear();
  stage.waits = true;
  script.step();
  EXPECT_EQ(stage.log.front(), "pointer 5 6");
  EXPECT_EQ(Log(stage.log.begin() + 1, stage.log.end() - 1), drag);
  EXPECT_EQ(stage.log.back(), "pointer 7 8");
  EXPECT_TRUE(stage.waits) << "a drag answers no wait";
}

TEST_F(ScriptPlayerTest, AnInputForAPastWaitFailsTheRun) {
  ScriptPlayer script = player("@3 key Return\n@2 key Return");
  stage.waits = true;
  stage.ordinal = 2;
  script.step();
  EXPECT_EQ(stage.log, Log{});
  stage.ordinal = 3;
  script.step();
  EXPECT_EQ(stage.log, Log({"offer key 13"}));
  stage.waits = true;
  script.step();
  EXPECT_EQ(script.failure(), "test.play:2: @2 key Return: wait 2 is over, now stands wait 3");
}

TEST_F(ScriptPlayerTest, AnExpectationThatDoesNotHoldFailsWithWhatWasThere) {
  ScriptPlayer script = player("\nexpect reg 7 3");
  stage.waits = true;
  stage.instead = "register 7 is 2";
  script.step();
  EXPECT_EQ(script.failure(), "test.play:2: expect reg 7 3: register 7 is 2");
}

TEST_F(ScriptPlayerTest, AnExpectationWhoseWaitIsOverIsLookedAtAgain) {
  ScriptPlayer script = player("expect reg 7 3");
  stage.waits = true;
  stage.window = true;
  stage.instead = std::nullopt;
  script.step();
  EXPECT_FALSE(script.finished());
  stage.instead = "";
  script.step();
  EXPECT_TRUE(script.finished());
}

TEST_F(ScriptPlayerTest, AnUnansweredBoxFailsTheRun) {
  ScriptPlayer script = player("key Return");
  stage.box = true;
  script.step();
  EXPECT_EQ(script.failure(), "test.play:1: key Return: a box stands unanswered: the box");
}

TEST_F(ScriptPlayerTest, ABoxIsPicturedAndThenAnswered) {
  ScriptPlayer script = player("sleep 0\nshot box.png\nanswer ok");
  stage.window = true;
  script.step();
  EXPECT_FALSE(script.finished()) << "the answer waits for its box";
  stage.box = true;
  script.step();
  EXPECT_TRUE(script.finished());
  EXPECT_FALSE(stage.box);
}

TEST_F(ScriptPlayerTest, AnAnswerThatTheBoxDoesNotOfferFailsTheRun) {
  ScriptPlayer script = player("answer yes");
  stage.box = true;
  script.step();
  EXPECT_EQ(script.failure(), "test.play:1: answer yes: the box has no such button: the box");
}

TEST_F(ScriptPlayerTest, ABoxThatOutlivesTheScriptFailsTheRun) {
  ScriptPlayer script = player("sleep 0");
  stage.box = true;
  script.step();
  EXPECT_EQ(script.failure(), "test.play: the script ends while a box stands unanswered: the box");
}

TEST_F(ScriptPlayerTest, QuitClosesEvenOverABox) {
  ScriptPlayer script = player("quit");
  stage.box = true;
  script.step();
  EXPECT_EQ(script.failure(), "");
  EXPECT_EQ(stage.log, Log({"close"}));
}

TEST_F(ScriptPlayerTest, WithoutAWindowTheEndOfTheScriptCloses) {
  ScriptPlayer script = player("ready");
  stage.waits = true;
  script.step();
  script.step();
  EXPECT_EQ(stage.log, Log({"close"})) << "once, and only at the end";
}

TEST_F(ScriptPlayerTest, WithAWindowTheEndOfTheScriptLeavesThePlayerInTheGame) {
  ScriptPlayer script = player("ready");
  stage.waits = stage.window = true;
  script.step();
  EXPECT_EQ(stage.log, Log{});
}

TEST_F(ScriptPlayerTest, WhatIsLeftWhenTheGameHasEndedFailsTheRun) {
  ScriptPlayer script = player("key Return");
  stage.ended = true;
  script.step();
  EXPECT_EQ(script.failure(), "test.play:1: key Return: the game has ended before this line");
  ScriptPlayer quitting = player("quit");
  quitting.step();
  EXPECT_EQ(quitting.failure(), "");
}

TEST_F(ScriptPlayerTest, ASleepLetsTheGameEndByItself) {
  ScriptPlayer script = player("sleep 5000");
  script.step();
  EXPECT_FALSE(script.finished());
  stage.ended = true;
  script.step();
  EXPECT_TRUE(script.finished());
  EXPECT_EQ(script.failure(), "");
}

TEST_F(ScriptPlayerTest, SleepsByTheKernelsClock) {
  ScriptPlayer script = player("sleep 250\nshot a.png");
  stage.window = true;
  script.step();
  EXPECT_EQ(script.nextStepMillis(), 250u);
  sleepMillis(249);
  script.step();
  EXPECT_EQ(stage.log, Log{});
  sleepMillis(1);
  script.step();
  EXPECT_EQ(stage.log, Log({"shoot a.png"}));
}

TEST_F(ScriptPlayerTest, ALineThatIsNeverMetFailsAfterTenMinutes) {
  ScriptPlayer script = player("ready");
  script.step();
  sleepMillis(ScriptPlayer::LineLimitMillis - 1);
  script.step();
  EXPECT_EQ(script.failure(), "");
  sleepMillis(1);
  script.step();
  EXPECT_TRUE(script.stalled());
  EXPECT_EQ(script.failure(),
            "test.play:1: ready: the game did not come to this line in ten minutes");
}

TEST_F(ScriptPlayerTest, NamesTheFirstLineThatThisProgramCannotDo) {
  const ParsedScript script = parsePlayScript("ready\ntype \"x\"\ntype \"y\"");
  const ScriptLine* line = ScriptPlayer::unsupportedLine(script.lines);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->number, 2);
  EXPECT_EQ(ScriptPlayer::unsupportedLine(parsePlayScript("ready").lines), nullptr);
}

}  // namespace
}  // namespace qv
