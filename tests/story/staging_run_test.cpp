// What picture commands bring to the screen, on the real loop in simulated time.

#include "tests/story/staging_ground.h"
#include "tests/support/sanitized.h"

namespace qv::testing {
namespace {

constexpr int Seeds = Sanitized ? 10 : 100;

class StagedPictures : public Staging {
 protected:
  /// Shots of the screen while a command runs, at these milliseconds, and when it is done.
  Picture shotsOf(const std::string& before, const std::string& command,
                  const std::vector<int>& millis, const Rectangle& part) {
    std::string script = "ready\nkey Return\n";
    std::vector<std::string> names;
    int passed = 0;
    for (const int at : millis) {
      names.push_back("at" + std::to_string(at));
      script += "sleep " + std::to_string(at - passed) + "\nshot " + names.back() + ".png\n";
      passed = at;
    }
    names.push_back("done");
    script += "ready\nshot done.png\nquit\n";
    expectRun(before + "key\n" + command + "\n", script);
    return parts(names, part);
  }
};

const std::string Four = "sprite KUS011 2\nsprite KUS023 4\nsprite KUS041 3\nsprite KUC039 5\n";
/// A part in which a background can be told, and something of the figures.
const Rectangle Sample = Rectangle::at(160, 80, 320, 60);

// --- Composition ---

TEST_F(StagedPictures, FiguresStandOverEachOtherInTheOrderOfTheDigits) {
  expectRun("bg KBA001\n" + Four + "effect 1 16 12345\nkey\neffect 1 16 54321\nkey\n",
            "ready\nshot up.png\nkey Return\nready\nshot down.png\nquit\n");
  EXPECT_TRUE(matchesGolden(shot("up"), golden("figures-up")));
  EXPECT_TRUE(matchesGolden(shot("down"), golden("figures-down")));
}

TEST_F(StagedPictures, DigitsOfNoSlotDrawNothing) {
  // A picture without a mouth: mouths are drawn whatever the order.
  const std::string before = "bg KBA001\nsprite KUC011_p 3\n";
  expectRun(before + "effect 1 16 12345\nkey\neffect 1 16 3\nkey\neffect 1 16 33333\nkey\n" +
                "effect 1 16 67890\nkey\nclear 0\neffect 1 16 12345\nkey\n",
            "ready\nshot all.png\nkey Return\nready\nshot last.png\nkey Return\nready\n"
            "shot often.png\nkey Return\nready\nshot none.png\nkey Return\nready\n"
            "shot clear.png\nquit\n");
  EXPECT_EQ(shot("all").pixels, shot("last").pixels);
  EXPECT_EQ(shot("all").pixels, shot("often").pixels);
  EXPECT_EQ(shot("none").pixels, shot("clear").pixels);
  EXPECT_NE(shot("all").pixels, shot("none").pixels);
}

TEST_F(StagedPictures, AnEventHasMouthsAndNoFigures) {
  expectRun(
      "bg KBA001\nsprite KUS023 3\nevent KEV003B\nsprite KUS041 5\neffect 1 16 12345\n",
      "ready\nexpect strreg 10 \"\"\nexpect strreg 11 \"KEV003B\"\nexpect strreg 14 \"\"\n"
      "expect strreg 16 \"KDS041\"\nexpect reg 21 1\nexpect reg 31 1\nshot event.png\nquit\n");
  EXPECT_TRUE(matchesGolden(shot("event"), golden("event")));
}

TEST_F(StagedPictures, ColoursByNameFillTheScreenAndCarryFigures) {
  const std::pair<const char*, const char*> colours[] = {
      {"WHITE", "FFFFFF"}, {"BLACK", "000000"}, {"RED", "E01020"}, {"BLUE", "1020E0"}};
  for (const auto& [name, colour] : colours)
    expectRun(std::string("bg ") + name +
                  "\neffect 1 16 12345\nkey\nsprite KUS023 3\neffect 1 16 12345\n",
              std::string("ready\nexpect pixel 0 0 ") + colour + "\nexpect pixel 639 479 " +
                  colour + "\nkey Return\nready\nshot " + name + ".png\nquit\n");
  EXPECT_TRUE(matchesGolden(shot("RED"), golden("figure-on-red")));
}

TEST_F(StagedPictures, ColoursByNameAreOneIndexBetweenBlackAndWhite) {
  const std::pair<const char*, int> colours[] = {
      {"WHITE", 0xFFFFFF}, {"BLACK", 0}, {"RED", 0xE01020}, {"BLUE", 0x1020E0}};
  for (const auto& [name, colour] : colours) {
    SCOPED_TRACE(name);
    // A picture before it, whose colours must not stay.
    expectRun(std::string("bg KBA001\neffect 1 16 12345\nbg ") + name +
                  "\neffect 1 16 12345\npixel 0 0 610\npixel 639 479 611\nentry 136 612\n"
                  "entry 0 613\nentry 255 614\nentry 20 615\nkey\n",
              "ready\nexpect reg 610 136\nexpect reg 611 136\nexpect reg 612 " +
                  std::to_string(colour) + "\nexpect reg 613 0\nexpect reg 614 " +
                  std::to_string(0xFFFFFF) + "\nexpect reg 615 0\nquit\n");
  }
}

TEST_F(StagedPictures, AnEffectBeforeTheFirstPictureLeavesTheScreen) {
  for (const char* effect : {"1", "9"})
    expectRun(std::string("effect ") + effect + " 16 12345\nreg 602 5\nkey\n" +
                  "sprite KUC011_p 3\neffect 1 16 12345\nkey\n",
              "ready\nexpect reg 602 5\nexpect strreg 10 \"\"\nshot nothing.png\nkey Return\n"
              "ready\nshot figure.png\nquit\n");
  const Picture nothing = shot("nothing");
  EXPECT_EQ(std::ranges::count(nothing.pixels, nothing.pixels.front()),
            int64_t{ScreenWidth} * ScreenHeight);
  EXPECT_NE(shot("figure").pixels, nothing.pixels);
}

TEST_F(StagedPictures, AScreenStaysAsItIsWithoutPictureCommands) {
  expectRun("bg KBA001\neffect 1 16 12345\nkey\nreg 700 1\nsysreg 900 1\nkey\n",
            "ready\nshot before.png\nkey Return\nready\nshot after.png\nquit\n");
  EXPECT_EQ(shot("before").pixels, shot("after").pixels);
}

TEST_F(StagedPictures, CommandsShowNothingBeforeAnEffect) {
  expectRun("bg KBA001\neffect 1 16 12345\nkey\nbg KBA002\n" + Four + "key\n",
            "ready\nshot before.png\nkey Return\nready\nexpect strreg 10 \"KBA002\"\n"
            "shot after.png\nquit\n");
  EXPECT_EQ(shot("before").pixels, shot("after").pixels);
}

// --- Mouths ---

TEST_F(StagedPictures, AMouthMovesUntilTheNextEffectTakesItAway) {
  // Behind the effect there is no area any more that could be started.
  std::string script = "ready\n", gone;
  for (int at = 0; at < 4; ++at)
    gone += "sleep 70\nshot gone" + std::to_string(at) + ".png\n";
  for (int at = 0; at < 12; ++at)
    script += "sleep 70\nshot mouth" + std::to_string(at) + ".png\n";
  expectRun(
      "bg KBA001\nsprite KUS023 3\neffect 1 16 12345\nmouth CG_AREA03_MOUTH\nkey\n"
      "clear 3\neffect 1 16 12345\nmouth CG_AREA03_MOUTH\nkey\n",
      script + "expect reg 41 1\nkey Return\nready\nexpect reg 41 0\n" + gone + "quit\n");
  // 288 - 303 + 320 from the left, 96 below the figure's top edge.
  constexpr size_t Inside = size_t{480 - 360 + 21 + 96 + 10} * ScreenWidth + 305 + 20;
  std::vector<uint32_t> seen;
  for (int at = 0; at < 12; ++at)
    seen.push_back(shot("mouth" + std::to_string(at)).pixels[Inside]);
  for (int cell = 0; cell < 3; ++cell)
    EXPECT_NE(std::count(seen.begin(), seen.end(), flatColour(flat::Mouth + cell)), 0) << cell;
  for (int at = 0; at < 4; ++at)
    EXPECT_EQ(shot("gone" + std::to_string(at)).pixels[Inside],
              flatColour(flat::Ground + (325 / 80 + 247 / 80) % 8));
}

// --- Effects ---

TEST_F(StagedPictures, EffectNineBringsThePictureOutOfTheColoursThatStand) {
  const std::string before = "bg KBA001\neffect 1 16 12345\n";
  // Behind a fade the colours are all black.
  EXPECT_TRUE(matchesGolden(
      shotsOf(before + "black 16\nbg KBA002\n", "effect 9 16 12345", {10, 200, 400}, Sample),
      golden("effect-9")));
  EXPECT_EQ(millisOf(before + "black 16\nbg KBA002\n", "effect 9 16 12345\n"), 18 * 40);
  EXPECT_EQ(millisOf(before, "effect 9 32 12345\n"), 34 * 40);
}

TEST_F(StagedPictures, FlashesStandForATenthOfASecond) {
  const std::string before = "bg KBA001\neffect 1 16 12345\nbg KBA002\n";
  for (const char* type : {"200", "201", "202"}) {
    const std::string command = std::string("effect ") + type + " 16 12345";
    EXPECT_TRUE(matchesGolden(shotsOf(before, command, {50, 95}, Sample),
                              golden(std::string("effect-") + type)));
    const int64_t millis = millisOf(before, command + "\n");
    EXPECT_GE(millis, 100) << type;
    EXPECT_LT(millis, 200) << type;
  }
}

TEST_F(StagedPictures, TilesRestHalfASecondFirst) {
  const std::string before = "bg KBA001\neffect 1 16 12345\nbg KBA002\n";
  for (const int type : {38, 40, 41, 42, 43}) {
    const int64_t millis = millisOf(before, "effect " + std::to_string(type) + " 16 12345\n");
    EXPECT_GE(millis, 500) << type;
  }
  expectRun(before + "key\neffect 38 16 12345\nkey\n",
            "ready\nshot before.png\nkey Return\nsleep 480\nshot resting.png\nready\n"
            "shot after.png\nquit\n");
  EXPECT_EQ(shot("before").pixels, shot("resting").pixels);
  EXPECT_NE(shot("before").pixels, shot("after").pixels);
}

TEST_F(StagedPictures, EveryEffectEndsInTheSamePicture) {
  expectRun("sysreg 31 0\nbg KBA002\n" + Four + "effect 1 16 12345\n",
            "ready\nshot cut.png\nquit\n");
  const Picture cut = shot("cut");
  for (const int type : {1, 2, 9, 11, 15, 18, 19, 20, 22, 31, 35, 38, 40, 200, 201}) {
    expectRun("bg KBA001\neffect 1 16 12345\nbg KBA002\n" + Four + "effect " +
                  std::to_string(type) + " 16 12345\n",
              "ready\nshot end.png\nquit\n");
    EXPECT_EQ(shot("end").pixels, cut.pixels) << type;
  }
}

TEST_F(StagedPictures, WithEffectsOffEveryTypeCutsAtOnce) {
  for (const int type : {1, 2, 9, 15, 19, 38, 40, 43, 60, 200, 201, 202})
    EXPECT_LE(millisOf("sysreg 31 0\nbg KBA001\neffect 1 16 12345\nbg KBA002\n",
                       "effect " + std::to_string(type) + " 16 12345\n"),
              2)
        << type;
}

// --- Fades ---

TEST_F(StagedPictures, FadesGoToBlackAndWhite) {
  const std::string before = "bg KBA001\n" + Four + "effect 1 16 12345\n";
  EXPECT_TRUE(matchesGolden(shotsOf(before, "black 16", {200}, Sample), golden("fade-black")));
  EXPECT_TRUE(matchesGolden(shotsOf(before, "white 16", {200}, Sample), golden("fade-white")));
}

TEST_F(StagedPictures, FadesTakeTheirStepsOrFourOrNone) {
  constexpr int64_t StepMillis = 40;
  const std::string before = "bg KBA001\neffect 1 16 12345\n";
  EXPECT_EQ(millisOf(before, "black 16\n"), 18 * StepMillis);
  EXPECT_EQ(millisOf(before, "white 32\n"), 34 * StepMillis);
  EXPECT_EQ(millisOf("sysreg 31 0\n" + before, "black 16\n"), 6 * StepMillis);
  // A game that was just saved or loaded is not faded.
  EXPECT_EQ(millisOf(before + "reg 254 1\n", "black 16\n"), 0);
  EXPECT_EQ(millisOf(before + "reg 254 1\n", "white 16\n"), 0);
}

// --- Skip ---

TEST_F(StagedPictures, EveryStageOfAnEffectTakesInputWhileMessagesAreSkipped) {
  constexpr int64_t PollMillis = 70;
  const std::string before = "sysreg 31 0\nsysreg 36 1\nbg KBA001\n";
  // Behind each of the five figures, behind the mouths, the picture, the frame's colours, its face.
  EXPECT_EQ(millisOf(before, "effect 1 16 12345\n"), 9 * PollMillis);
  EXPECT_EQ(millisOf("sysreg 31 0\nsysreg 36 1\nevent KEV001\n", "effect 1 16 12345\n"),
            4 * PollMillis);
  // What is to stop the skip is kept for the next wait, and nobody asks again.
  EXPECT_LT(millisOf(before, "effect 1 16 12345\n",
                     "sleep 150\nnow key Esc\nsleep 2000\nready\n"
                     "expect reg 72 2075\nquit\n"),
            9 * PollMillis);
  EXPECT_EQ(millisOf(before + "reg 72 2075\n", "effect 1 16 12345\n"), 0);
}

TEST_F(StagedPictures, PictureCommandsTakeInputWhileMessagesAreSkipped) {
  constexpr int64_t PollMillis = 70;
  for (const char* command : {"bg KBA001", "event KEV001", "title KTI001", "sprite KUS011 2",
                              "sprite nobody 2", "clear 0", "clear 3", "clear 9"}) {
    const int64_t millis = millisOf("sysreg 36 1\nclear 0\n", std::string(command) + "\n");
    EXPECT_GE(millis, PollMillis - 1) << command;
    EXPECT_LE(millis, PollMillis) << command;
  }
}

// --- What went wrong ---

TEST_F(StagedPictures, APictureWithoutAFileEndsTheRunByItsBox) {
  const ProcessResult result =
      run("bg KBA099\nreg 602 7\neffect 1 16 12345\n", "answer cancel\nanswer ok\nsleep 1000\n");
  EXPECT_NE(result.status, 139) << result.errors;
  EXPECT_FALSE(traced("box ").empty());
  EXPECT_TRUE(traced("scene END").empty());
}

TEST_F(StagedPictures, UnknownNamesLeaveTheRegistersAsTheCommandSetThem) {
  expectRun(
      "bg KBA001\nsprite KUS011 2\nsprite nobody 2\nsprite KUS011x 4\nkey\n"
      "bg KBA099\nkey\nevent nothing\nkey\ntitle nothing\n",
      "ready\nexpect strreg 13 \"KDS011\"\nexpect strreg 15 \"\"\nkey Return\nready\n"
      "expect strreg 10 \"KBA099\"\nexpect strreg 13 \"\"\nkey Return\nready\n"
      "expect strreg 11 \"nothing\"\nkey Return\nready\nexpect strreg 11 \"nothing\"\nquit\n");
}

TEST_F(StagedPictures, AnAbortAtAnyMomentOfAnEffectEndsTheRun) {
  const std::string stage = "key\nbg KBA001\n" + Four +
                            "effect 9 16 12345\nbg KBA002\neffect 38 16 12345\n"
                            "effect 200 16 12345\nsysreg 36 1\nbg KBA001\neffect 15 16 12345\n"
                            "black 16\nkey\n";
  for (int millis = 0; millis < 4000; millis += 90) {
    const ProcessResult result = run(
        stage, "ready\nkey Return\nsleep " + std::to_string(millis) + "\nnow close\n", millis + 1);
    ASSERT_EQ(result.status, 0) << millis << " ms: " << result.errors;
    ASSERT_TRUE(traced("scene END").empty() || millis > 2500) << millis;
  }
}

TEST_F(StagedPictures, AHundredSeedsShowTheSame) {
  const std::string stage = "bg KBA001\n" + Four +
                            "mouth CG_AREA03_MOUTH\neffect 15 16 12345\nmouth CG_AREA03_MOUTH\n"
                            "effect 9 4 54321\nsprite KUC017 1\neffect 200 16 12345\n";
  std::vector<uint32_t> first;
  for (int seed = 1; seed <= Seeds; ++seed) {
    expectRun(stage, "ready\nshot end.png\nquit\n", seed);
    if (HasFailure()) return;
    if (first.empty()) first = shot("end").pixels;
    ASSERT_EQ(shot("end").pixels, first) << "seed " << seed;
  }
}

}  // namespace
}  // namespace qv::testing
