// The screen of click maps in a real window, pointed at from outside by another program.

#include <cstdlib>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "platform/display/png_file.h"
#include "tests/support/process.h"
#include "tests/support/virtual_screen.h"

namespace qv::testing {
namespace {

using namespace std::chrono_literals;

constexpr int Left = (RootWidth - 640) / 2, Top = (RootHeight - 480) / 2;
constexpr uint32_t Plain = 0xC0C0C0, Lit = 0xFFFF00, Pressed = 0xFF0000, Pendant = 0xFF00FF,
                   Ground = 0x000080;

class MapsWindowRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (QV_ONE_EXECUTABLE) GTEST_SKIP() << "one program is enough";
    for (const char* program : {"Xvfb", "xdotool", "import"})
      if (!installed(program)) GTEST_SKIP() << program << " is not installed";
    screen_ = std::make_unique<VirtualScreen>();
    ASSERT_FALSE(screen_->name().empty()) << "Xvfb did not start";
    screen_->use();
    game_ = std::make_unique<BackgroundProgram>(std::vector<std::string>{
        QV_BIN_DIR "/qvrun", "--user", (folder_.path() / "player").string(), "--record",
        recordPath(), QV_OUTPUT_DIR "/test-stories/maps"});
    ASSERT_TRUE(shows(120, 120, Plain)) << "the window did not come";
    // Keys go to the window that has the focus.
    EXPECT_TRUE(outside("xdotool search --sync --name '^Maps' windowfocus --sync"));
  }
  void TearDown() override {
    game_.reset();
    screen_.reset();
  }
  static bool outside(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
  }
  static void hand(const std::string& action) { EXPECT_TRUE(outside("xdotool " + action)); }
  static void point(int x, int y) {
    hand("mousemove " + std::to_string(Left + x) + " " + std::to_string(Top + y));
  }
  /// Waits until a pixel of the game's screen has the colour.
  bool shows(int x, int y, uint32_t colour) {
    const auto path = folder_.path() / "root.png";
    for (int tries = 0; tries < 200; ++tries, std::this_thread::sleep_for(50ms)) {
      if (!outside("import -window root png24:" + path.string())) continue;
      const Picture picture = readPng(path).value_or(Picture{});
      const auto at = static_cast<size_t>((Top + y) * picture.width + Left + x);
      if (at < picture.pixels.size() && picture.pixels[at] == colour) {
        if (const char* keep = std::getenv("QV_KEEP_SHOTS"))
          std::filesystem::copy_file(
              path, std::filesystem::path(keep) / ("maps" + std::to_string(shots_++) + ".png"),
              std::filesystem::copy_options::overwrite_existing);
        return true;
      }
    }
    return false;
  }
  std::string recordPath() const { return (folder_.path() / "record.play").string(); }

  TemporaryFolder folder_;
  std::unique_ptr<VirtualScreen> screen_;
  std::unique_ptr<BackgroundProgram> game_;
  int shots_ = 0;
};

TEST_F(MapsWindowRunTest, ButtonsLightUnderThePointerAndArePressedAndThePendantIsDragged) {
  point(120, 120);
  EXPECT_TRUE(shows(120, 120, Lit));
  point(270, 130);
  EXPECT_TRUE(shows(270, 130, Lit));
  EXPECT_TRUE(shows(120, 120, Plain));
  hand("click 1");
  EXPECT_TRUE(shows(270, 130, Pressed));
  // The pendant is dragged by what it shows.
  point(580, 60);
  hand("mousedown 1");
  point(560, 100);
  point(480, 260);
  hand("mouseup 1");
  EXPECT_TRUE(shows(470, 230, Pendant));
  EXPECT_TRUE(shows(580, 60, Ground));
  // Help comes and goes, and Esc behind it is the game's again.
  hand("key F1");
  EXPECT_TRUE(shows(100, 100, 0xFFFFFF));
  hand("key Escape");
  EXPECT_TRUE(shows(100, 80, Ground));
  hand("key Escape");
  EXPECT_EQ(game_->awaitEnd(5000), 0);
  const std::string record = readWhole(recordPath());
  EXPECT_NE(record.find(" click 270 130\n"), std::string::npos) << record;
  EXPECT_NE(record.find(" press 580 60\nnow move 480 260\nnow release 480 260\n"),
            std::string::npos)
      << record;
}

}  // namespace
}  // namespace qv::testing
