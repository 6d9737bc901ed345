// The sample in a real window, played from outside by another program's keys and clicks.

#include <cstdlib>
#include <memory>
#include <regex>
#include <thread>

#include <gtest/gtest.h>

#include "platform/display/png_file.h"
#include "tests/support/process.h"
#include "tests/support/virtual_screen.h"

namespace qv::testing {
namespace {

using namespace std::chrono_literals;

class WindowRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* program : {"Xvfb", "xdotool", "openbox", "import"})
      if (!installed(program)) GTEST_SKIP() << program << " is not installed";
    screen_ = std::make_unique<VirtualScreen>();
    ASSERT_FALSE(screen_->name().empty()) << "Xvfb did not start";
    screen_->use();
    manager_ = std::make_unique<WindowManager>();
    ASSERT_TRUE(manager_->started()) << "openbox did not start";
    game_ = std::make_unique<BackgroundProgram>(std::vector<std::string>{
        QV_BIN_DIR "/qvrun", "--user", (folder_.path() / "player").string(), "--trace",
        (folder_.path() / "trace").string(), "--record", recordPath(), QV_OUTPUT_DIR "/vorlane"});
  }
  void TearDown() override {
    game_.reset();
    manager_.reset();
    screen_.reset();
  }

  static bool outside(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
  }
  /// Waits until the window bears the title.
  static bool titled(const std::string& title, int limitTries = 200) {
    for (int tries = 0; tries < limitTries; ++tries, std::this_thread::sleep_for(50ms))
      if (outside("xdotool search --name '^" + title + "$'")) return true;
    return false;
  }
  static void toWindow(const std::string& action) {
    const std::string search = "xdotool search --name '^Vorlane' windowactivate --sync ";
    // A window that has just come may not be the manager's yet.
    bool active = false;
    for (int tries = 0; tries < 100 && !active; ++tries, std::this_thread::sleep_for(50ms))
      active = outside(search);
    // The window may be gone before the key that closes it is up again: only what the game has
    // seen tells.
    outside(search + action);
  }
  /// Waits until the last line of the trace is this one, behind its tick.
  bool traced(const std::string& ending) const {
    for (int tries = 0; tries < 200; ++tries, std::this_thread::sleep_for(50ms))
      if (readWhole(folder_.path() / "trace").ends_with(ending + "\n")) return true;
    return false;
  }
  std::string recordPath() const { return (folder_.path() / "record.play").string(); }
  Picture screenshot(const std::string& name) const {
    const auto path = folder_.path() / (name + ".png");
    EXPECT_TRUE(outside("import -window root png24:" + path.string()));
    if (const char* keep = std::getenv("QV_KEEP_SHOTS"))
      std::filesystem::copy_file(path, std::filesystem::path(keep) / path.filename(),
                                 std::filesystem::copy_options::overwrite_existing);
    return readPng(path).value_or(Picture{});
  }

  TemporaryFolder folder_;
  std::unique_ptr<VirtualScreen> screen_;
  std::unique_ptr<WindowManager> manager_;
  std::unique_ptr<BackgroundProgram> game_;
};

TEST_F(WindowRunTest, KeysAndClicksStepTheScenesAndClosingEndsWithStatusZero) {
  ASSERT_TRUE(titled("Vorlane - sc_menu"));
  screenshot("title");
  // A click while the title still fades in is answered by nobody.
  bool answered = false;
  for (int clicks = 0; clicks < 8 && !answered; ++clicks) {
    toWindow("mousemove --window %1 320 240 click 1");
    answered = titled("Vorlane - sc000000", 20);
  }
  ASSERT_TRUE(answered);
  EXPECT_TRUE(traced("肩がすっかり重くなった。"));
  std::this_thread::sleep_for(200ms);  // the line is told just before it is waited for
  toWindow("key Return");
  EXPECT_TRUE(traced("line 【　？？　】「傘、持っていないの？」"));
  std::this_thread::sleep_for(200ms);
  toWindow("key space");
  EXPECT_TRUE(traced("傘の下から、見なれない顔がのぞく。"));
  screenshot("line");
  toWindow("key alt+F4");
  EXPECT_EQ(game_->awaitEnd(5000), 0);
  // The record holds what the waits took; a click's place depends on nothing but the click.
  EXPECT_TRUE(std::regex_match(readWhole(recordPath()),
                               std::regex("@1 click 320 240\n(@\\d+ move \\d+ \\d+\n)*"
                                          "@\\d+ key Return\n@\\d+ key Space\nquit\n")))
      << readWhole(recordPath());
}

TEST_F(WindowRunTest, AltReturnFillsTheScreenAndComesBack) {
  ASSERT_TRUE(titled("Vorlane - sc_menu"));
  const auto corner = [this](const char* name) {
    return screenshot(name).pixels[2 * RootWidth + 2];
  };
  EXPECT_EQ(corner("before"), RootColour);
  toWindow("key alt+Return");
  bool filled = false;
  for (int tries = 0; tries < 100 && !filled; ++tries, std::this_thread::sleep_for(50ms))
    filled = corner("full") != RootColour;
  EXPECT_TRUE(filled);
  toWindow("key alt+Return");
  for (int tries = 0; tries < 100 && filled; ++tries, std::this_thread::sleep_for(50ms))
    filled = corner("after") != RootColour;
  EXPECT_FALSE(filled);
  toWindow("key alt+F4");
  EXPECT_EQ(game_->awaitEnd(5000), 0);
  // At the title any key begins the story.
  const std::string trace = readWhole(folder_.path() / "trace");
  EXPECT_NE(trace.find(" scene sc_menu\n"), std::string::npos) << trace;
  EXPECT_EQ(trace.find(" scene sc_menu31\n"), std::string::npos) << "the game has seen a key";
}

TEST_F(WindowRunTest, ClosingWhileMinimisedEndsWithStatusZero) {
  ASSERT_TRUE(titled("Vorlane - sc_menu"));
  EXPECT_TRUE(outside("xdotool search --name '^Vorlane' windowminimize --sync"));
  for (int tries = 0; tries < 100 && readWhole(recordPath()).empty(); ++tries)
    std::this_thread::sleep_for(50ms);
  EXPECT_EQ(readWhole(recordPath()), "now minimise\n");
  EXPECT_TRUE(outside("xdotool search --name '^Vorlane' windowclose"));
  EXPECT_NE(game_->awaitEnd(5000), -1);
}

}  // namespace
}  // namespace qv::testing
