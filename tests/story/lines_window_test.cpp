// What the message window looks like: pictures in both presentations and all colours, and how the
// one becomes the other.

#include "tests/story/lines_ground.h"
#include "tests/support/golden.h"

namespace qv::testing {
namespace {

constexpr int StripTop = 352, StripHigh = 127, Wide = 640, Colours = 8;

class LinesWindow : public LinesStory {
 protected:
  static std::filesystem::path golden(const std::string& name) {
    return std::filesystem::path(QV_SOURCE_DIR) / "tests/golden/lines" / (name + ".png");
  }
  /// Runs the script and compares the picture of that name that it takes.
  void looksLike(const std::string& name, const std::string& scene, const std::string& script) {
    const ProcessResult result = run(scene, script);
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(matchesGolden(shot(name), golden(name)));
  }
  std::vector<uint32_t> strip(const std::string& name) const {
    return part(shot(name), 0, StripTop, Wide, StripHigh);
  }
  /// Of the strip what the prompt never touches: left of it and right of it.
  std::vector<uint32_t> stillStrip(const std::string& name) const {
    std::vector<uint32_t> pixels = part(shot(name), 0, StripTop, 310, StripHigh);
    const std::vector<uint32_t> right = part(shot(name), 330, StripTop, 310, StripHigh);
    pixels.insert(pixels.end(), right.begin(), right.end());
    return pixels;
  }
  /// The frame where no text stands.
  std::vector<uint32_t> emptyPart(const std::string& name) const {
    return part(shot(name), 400, StripTop, 240, StripHigh);
  }
};

// --- Pictures ---

TEST_F(LinesWindow, LooksAsItShouldWithAFigureThatSpeaks) {
  looksLike("speaking", "sc_voice", "ready\nsleep 530\nshot speaking.png\nquit\n");
}

TEST_F(LinesWindow, LooksAsItShouldWithALineBehindAnother) {
  looksLike("second_line", "sc_drama",
            "ready\nkey Return\nready\nkey Return\nready\nkey Return\nready\nsleep 300\n"
            "shot second_line.png\nquit\n");
}

TEST_F(LinesWindow, LooksAsItShouldHidden) {
  looksLike("hidden", "sc_voice", "ready\nright\nready\nsleep 3500\nshot hidden.png\nquit\n");
}

TEST_F(LinesWindow, LooksAsItShouldWhileLinesAreSkipped) {
  looksLike("skip", "sc_skip", "ready\nsleep 100\nkey F4\nsleep 700\nshot skip.png\nquit\n");
}

TEST_F(LinesWindow, LooksAsItShouldInDrama) {
  looksLike("drama_narration", "sc_presentations",
            "ready\nkey Return\nready\nkey F6\nready\nkey F6\nready\nkey F6\nready\nsleep 500\n"
            "shot drama_narration.png\nquit\n");
  looksLike("drama_spoken", "sc_presentations",
            "ready\nkey F6\nready\nkey Return\nready\nkey Return\nready\nsleep 500\n"
            "shot drama_spoken.png\nquit\n");
}

TEST_F(LinesWindow, LooksAsItShouldInEveryColourOverLightDarkAndBlackPictures) {
  std::string script;
  for (const std::string picture : {"light", "dark", "black"})
    for (int colour = 0; colour < Colours; ++colour)
      script += "ready\nsleep 300\nshot " + picture + std::to_string(colour) + ".png\nkey Return\n";
  const ProcessResult result = run("sc_colours", script);
  ASSERT_EQ(result.status, 0) << result.errors;
  for (const std::string picture : {"light", "dark", "black"}) {
    // The eight strips under each other, with a little of the picture above.
    constexpr int Top = 340, High = 140;
    Picture sheet{Wide, High * Colours, {}};
    for (int colour = 0; colour < Colours; ++colour) {
      const auto pixels = part(shot(picture + std::to_string(colour)), 0, Top, Wide, High);
      sheet.pixels.insert(sheet.pixels.end(), pixels.begin(), pixels.end());
    }
    EXPECT_TRUE(matchesGolden(sheet, golden("colours_" + picture)));
    EXPECT_TRUE(stillStrip(picture + "6") == stillStrip(picture + "0")) << "6 is 0";
    EXPECT_FALSE(strip(picture + "1") == strip(picture + "0"));
  }
  // A tint alone would leave black black.
  const uint32_t red = part(shot("black1"), 500, 440, 1, 1)[0];
  EXPECT_GE(red >> 16, (red >> 8 & 255) + 90) << std::hex << red;
}

TEST_F(LinesWindow, SelectionsLookAsTheyShouldWithAPlateLit) {
  looksLike("two_first", "sc_two",
            "ready\nmove 200 150\nready\nsleep 200\nshot two_first.png\nquit\n");
  looksLike("two_second", "sc_two", "ready\nkey Up\nready\nsleep 200\nshot two_second.png\nquit\n");
  looksLike("two_none", "sc_two", "ready\nsleep 200\nshot two_none.png\nquit\n");
  looksLike("three_first", "sc_three",
            "ready\nkey Down\nready\nsleep 200\nshot three_first.png\nquit\n");
  looksLike("three_second", "sc_three",
            "ready\nmove 200 230\nready\nsleep 200\nshot three_second.png\nquit\n");
  looksLike("three_third", "sc_three",
            "ready\nmove 200 340\nready\nsleep 200\nshot three_third.png\nquit\n");
}

TEST_F(LinesWindow, PlatesOverBlackAreRaisedInsteadOfTinted) {
  looksLike("black_first", "sc_black",
            "ready\nmove 200 100\nready\nsleep 200\nshot black_first.png\nquit\n");
}

TEST_F(LinesWindow, SkipThatWasAskedForInASelectionHasItsCorner) {
  ASSERT_EQ(run("sc_skip", "ready\nsleep 100\nkey F4\nsleep 700\nshot skip.png\nquit\n").status, 0);
  const ProcessResult result =
      run("sc_choice_skip",
          "ready\nkey F4\nready\nclick 200 100\nsleep 700\nexpect sysreg 36 1\n"
          "shot behind.png\nkey Return\nready\nsleep 200\nshot stopped.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  const auto corner = [this](const char* name) { return part(shot(name), 586, 352, 54, 74); };
  EXPECT_TRUE(corner("behind") == corner("skip"));
  EXPECT_FALSE(corner("stopped") == corner("skip"));
}

TEST_F(LinesWindow, ALineBeginsAtItsPlaceWhereverTheLastScreenLeftThePens) {
  const ProcessResult result =
      run("sc_pens",
          "ready\nsleep 100\nshot first.png\nkey Return\nready\nsleep 100\nshot moved.png\n"
          "quit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(stillStrip("first") == stillStrip("moved"));
}

// --- Rebuilding ---

TEST_F(LinesWindow, ARebuildPrintsTheLineAgainAtTheSamePlace) {
  std::string script = "ready\nsleep 100\nshot before.png\n";
  for (int colour = 0; colour < Colours; ++colour)
    script += "key Return\nready\nsleep 100\nshot again" + std::to_string(colour) + ".png\n";
  const ProcessResult result = run("sc_again", script + "quit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  // The colours from 6 on round to 5, in which the line stood first.
  EXPECT_TRUE(stillStrip("again7") == stillStrip("before"));
  EXPECT_FALSE(stillStrip("again6") == stillStrip("before"));
  EXPECT_TRUE(stillStrip("again0") == stillStrip("again2")) << "6 and 0";
  EXPECT_FALSE(stillStrip("again1") == stillStrip("again2"));
}

TEST_F(LinesWindow, ARebuildOfALineOfMoreThanAPageShowsItsLastPage) {
  const ProcessResult result = run(
      "sc_pages",
      "ready\nsleep 100\nshot before.png\nkey Return\nready\nsleep 100\nshot after.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(stillStrip("before") == stillStrip("after"));
  EXPECT_TRUE(matchesGolden(shot("after"), golden("last_page")));
}

TEST_F(LinesWindow, ARebuildMakesTheFrameThatAnEffectMakes) {
  std::string script = "ready\nsleep 100\n";
  for (int colour = 0; colour < Colours; ++colour)
    script += "key Return\nready\nsleep 100\nshot again" + std::to_string(colour) + ".png\n";
  ASSERT_EQ(run("sc_again", script + "quit\n").status, 0);
  script.clear();
  for (int colour = 0; colour < Colours; ++colour)
    script += "ready\nsleep 100\nshot effect" + std::to_string(colour) + ".png\nkey Return\n";
  ASSERT_EQ(run("sc_colours", script + "quit\n").status, 0);
  for (int colour = 0; colour < Colours; ++colour)
    EXPECT_TRUE(
        part(shot("effect" + std::to_string(colour)), 500, StripTop, 140, StripHigh) ==
        part(shot("again" + std::to_string((colour + 2) % Colours)), 500, StripTop, 140, StripHigh))
        << colour;
}

TEST_F(LinesWindow, ARebuildInDramaServesTheFrameThatComesBack) {
  ProcessResult result =
      run("sc_rebuilt",
          "ready\nkey F6\nready\nkey Return\nready\nexpect shown mess.Drama\n"
          "key F6\nready\nexpect shown mess.view\nsleep 100\nshot back.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  result = run("sc_colours",
               "ready\nkey Return\nready\nkey Return\nready\nsleep 100\nshot blue.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(emptyPart("back") == emptyPart("blue"));
  EXPECT_TRUE(stillStrip("back") == stillStrip("blue")) << "with its text";
}

TEST_F(LinesWindow, ALineThatTheConfigurationEndsIsNotPrintedOver) {
  const std::string three = "ready\nkey Return\nready\nkey Return\nready\nkey Return\nready\n",
                    look = "ready\nexpect strreg 33 \"読み込む。\"\nsleep 100\nshot ";
  ASSERT_EQ(run("sc_screens", three + "key Return\n" + look + "read.png\nquit\n").status, 0);
  ASSERT_EQ(run("sc_screens", three + "key F5\n" + look + "configured.png\nquit\n").status, 0);
  EXPECT_TRUE(part(shot("read"), 0, StripTop, 300, StripHigh) ==
              part(shot("configured"), 0, StripTop, 300, StripHigh));
}

// --- The other presentation ---

TEST_F(LinesWindow, DramaSwitchesAllVoicesAndEffectsOnAndLeavesThemOn) {
  std::string on, off;
  for (const int number : {31, 43, 49, 51, 52, 53, 54, 55, 56, 57, 58, 59}) {
    on += "expect sysreg " + std::to_string(number) + " 1\n";
    off += "expect sysreg " + std::to_string(number) + " 0\n";
  }
  play("sc_presentations", "ready\n" + off + "key F6\nready\nexpect sysreg 47 1\n" + on +
                               "key F6\nready\nexpect sysreg 47 0\n" + on + "quit\n");
}

TEST_F(LinesWindow, ASpokenLineOfDramaShowsThePlainPictureInPlaceOfItsText) {
  const ProcessResult result = run(
      "sc_presentations",
      "ready\nkey F6\nready\nkey Return\nready\nsleep 50\nshot narration.png\nkey Return\nready\n"
      "sleep 50\nexpect strreg 33 \"「また話す」\"\nshot spoken.png\nright\nready\nsleep 50\n"
      "shot plain.png\nquit\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(strip("spoken") == strip("plain"));
  EXPECT_FALSE(strip("narration") == strip("plain")) << "narration is read";
}

TEST_F(LinesWindow, TheOtherPresentationComesUpWhereThePlayerHadHiddenTheFirst) {
  play("sc_presentations",
       "ready\nright\nready\nexpect hidden mess.view\nkey F6\nready\nexpect shown mess.Drama\n"
       "expect hidden mess.view\nexpect shown system.cut.win\nkey F6\nready\nexpect shown "
       "mess.view\n"
       "expect hidden mess.Drama\nkey Return\nready\nexpect reg 699 1\nquit\n");
}

TEST_F(LinesWindow, AWindowThatASceneHasHiddenComesWithTheNextLine) {
  play("sc_presentations",
       "ready\nkey Return\nready\nkey Return\nready\nkey Return\nready\n"
       "expect strreg 33 \"出てくる。\"\nexpect shown mess.view\nexpect reg 8 0\nquit\n");
}

TEST_F(LinesWindow, ShownByProgramWhileThePlayerHidesItTakesOneMoreAdvance) {
  play("sc_shown",
       "ready\nright\nready\nexpect hidden mess.view\nkey F7\nready\nexpect shown mess.view\n"
       "key Return\nready\nexpect reg 699 0\nexpect shown mess.view\nkey Return\nready\n"
       "expect reg 699 1\nquit\n");
}

}  // namespace
}  // namespace qv::testing
