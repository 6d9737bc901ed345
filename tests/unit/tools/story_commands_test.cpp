// qvtool's commands for whole stories, as an author runs them.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using namespace qv::testing;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

class StoryCommand : public ::testing::Test {
 protected:
  std::string at(const std::string& name) const { return (folder_.path() / name).string(); }
  void write(const std::string& name, const std::string& text) const {
    fs::create_directories(fs::path(at(name)).parent_path());
    writeWhole(at(name), text);
  }
  ProcessResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {QV_BIN_DIR "/qvtool", "story"});
    return runProcess(arguments);
  }
  TemporaryFolder folder_;
};

TEST_F(StoryCommand, CheckTellsFileAndLineAndFails) {
  write("game/story/story.txt", "@bare\n");
  write("game/story/a.scene", "@scene sc_menu\n@bg KBA001\n@go END\n@scene sc000000\n@go END\n");
  write("built/cg/other.mcg", "");
  const ProcessResult result = run({"check", at("game"), "--game", at("built")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors,
            at("game/story/a.scene") +
                ":2: this shows the picture KBA001, and the game has no file cg/KBA001.mcg.\n" +
                at("game/story/a.scene") +
                ":4: nothing leads to the scene \"sc000000\"; lead to it from another scene, or "
                "remove it.\n");
}

TEST_F(StoryCommand, CheckOfAWholeStoryIsSilentOnItsErrors) {
  write("game/story/story.txt", "@bare\n");
  write("game/story/a.scene", "@scene sc_menu\n@bg BLACK\n雨。\n@go sc_menu\n");
  write("built/cg/other.mcg", "");
  const ProcessResult result = run({"check", at("game"), "--game", at("built")});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.output, "1 scenes, 1 messages, nothing missing\n");
}

TEST_F(StoryCommand, AFolderWithoutAStoryIsToldInASentence) {
  const ProcessResult result = run({"check", folder_.path().string()});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.errors, HasSubstr("this folder holds no story"));
  EXPECT_EQ(run({"check", "--game", at("nowhere")}).status, 1);
}

TEST_F(StoryCommand, GraphDrawsWhatATraceReached) {
  write("story.txt", "@bare\n");
  write("a.scene", "@scene sc_menu\n@go sc000000\n@scene sc000000\n@go sc_menu\n");
  write("trace", "0 scene sc_menu\n");
  const ProcessResult result =
      run({"graph", folder_.path().string(), "--trace", at("trace"), "-o", at("tree.svg")});
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::string svg = readWhole(at("tree.svg"));
  EXPECT_THAT(svg, HasSubstr(">sc000000<"));
  EXPECT_THAT(svg, HasSubstr(">reached<"));
  write("other", "0 scene sc999999\n");
  EXPECT_EQ(
      run({"graph", folder_.path().string(), "--trace", at("other"), "-o", at("x.svg")}).status, 1);
}

TEST_F(StoryCommand, AMadeStoryIsWholeAndAPureFunctionOfItsSeed) {
  const std::string sample = QV_SOURCE_DIR "/game";
  for (const char* name : {"one", "two"})
    ASSERT_EQ(run({"make", sample, "--scenes", "120", "--seed", "5", "-o", at(name)}).status, 0);
  ASSERT_EQ(run({"make", sample, "--scenes", "120", "--seed", "6", "-o", at("other")}).status, 0);
  size_t texts = 0;
  for (const auto& entry : fs::recursive_directory_iterator(at("one"))) {
    if (!entry.is_regular_file()) continue;
    const fs::path same = fs::path(at("two")) / entry.path().lexically_relative(at("one"));
    EXPECT_EQ(readWhole(entry.path().string()), readWhole(same.string())) << same;
    ++texts;
  }
  EXPECT_GE(texts, 8u);
  EXPECT_NE(readWhole(at("one/story/endings.scene")).size(), 0u);
  EXPECT_NE(readWhole(at("one/story/02/sc02000x.scene")),
            readWhole(at("other/story/02/sc02000x.scene")));
  // Its pictures are the sample's own; those that it made stand in for them here.
  const ProcessResult checked = run({"check", at("one"), "--game", at("one/files")});
  EXPECT_EQ(checked.status, 1);
  EXPECT_THAT(checked.errors,
              HasSubstr("for every story, and the game has no file dat/mframe.mcg."));
  EXPECT_THAT(checked.errors, HasSubstr("this shows the picture KBA"));
  EXPECT_THAT(checked.errors, ::testing::Not(HasSubstr("nothing leads to")));
  EXPECT_THAT(checked.errors, ::testing::Not(HasSubstr("is asked here")));
  EXPECT_THAT(checked.errors, ::testing::Not(HasSubstr("longer than")));
  EXPECT_THAT(checked.errors, ::testing::Not(HasSubstr("cg/KZC016.mcg")));
}

}  // namespace
}  // namespace qv
