// Every form that the scene language has, compiled into a module and run by the host.

#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

const std::string Generator = QV_BIN_DIR "/scenec";

TEST(LanguageStory, BranchesListsPlacesChoicesAndFilmsRunAsTheyAreWritten) {
  const TemporaryFolder folder;
  const std::string host = QV_BIN_DIR "/qvrun";
  const std::string trace = (folder.path() / "trace").string();
  const ProcessResult result =
      runProcess({QV_ONE_EXECUTABLE ? host + "-language" : host, "--simulate", "1", "--play",
                  QV_SOURCE_DIR "/tests/story/language/language.play", "--user",
                  (folder.path() / "player").string(), "--trace", trace,
                  QV_OUTPUT_DIR "/test-stories/language"});
  EXPECT_EQ(result.status, 0) << result.errors;
  const std::string seen = readWhole(trace);
  EXPECT_NE(seen.find(" line 【　ベルーネ　】「三つ」\\n「から」\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find(" choice 3\n"), std::string::npos) << seen;
}

class GeneratorProgram : public ::testing::Test {
 protected:
  GeneratorProgram() {
    write("story/story.txt", "@speaker ベルーネ\n");
    write("story/01/a.scene", "@scene sc_menu\n雨。\n@go END\n");
  }
  void write(const char* name, const std::string& text) {
    std::filesystem::create_directories((folder.path() / name).parent_path());
    writeWhole(folder.path() / name, text);
  }
  ProcessResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), Generator);
    return runProcess(arguments);
  }
  std::string path(const char* name) const { return (folder.path() / name).string(); }
  TemporaryFolder folder;
};

TEST_F(GeneratorProgram, WritesItsSourcesOnceAndLeavesThemAloneWhileNothingChanges) {
  const std::vector<std::string> command{"--out", path("out"), "--units", "2", path("story")};
  ASSERT_EQ(run(command).status, 0);
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const char* name : {"out/scenes_000.cpp", "out/scenes_001.cpp", "out/scene_table.cpp"})
    std::filesystem::last_write_time(path(name), old);
  ASSERT_EQ(run(command).status, 0);
  for (const char* name : {"out/scenes_000.cpp", "out/scenes_001.cpp", "out/scene_table.cpp"})
    EXPECT_EQ(std::filesystem::last_write_time(path(name)), old) << name;
  write("story/b.scene", "@scene sc000000\n風。\n@go END\n");
  ASSERT_EQ(run(command).status, 0);
  EXPECT_NE(std::filesystem::last_write_time(path("out/scene_table.cpp")), old);

  ASSERT_EQ(run({"--out", path("out"), "--units", "1", path("story")}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(path("out/scenes_001.cpp")))
      << "a unit that the story no longer has would be linked";
}

TEST_F(GeneratorProgram, NamesWhatItsSourcesDependOn) {
  ASSERT_EQ(run({"--out", path("out"), "--depfile", path("deps"), path("story")}).status, 0);
  EXPECT_EQ(readWhole(path("deps")), path("out/scene_table.cpp") + ": \\\n  " +
                                         path("story/story.txt") + " \\\n  " +
                                         path("story/01/a.scene") + "\n");
}

TEST_F(GeneratorProgram, TellsProblemsWithThePathThatAnEditorOpens) {
  write("story/01/a.scene", "@scene sc_menu\n@bgg X\n@go END\n");
  for (const bool check : {false, true}) {
    std::vector<std::string> command{"--out", path("out"), path("story")};
    if (check) command.insert(command.begin(), "--check");
    const ProcessResult result = run(command);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              path("story/01/a.scene:2: there is no command \"@bgg\". Did you mean \"bg\"?\n"));
    EXPECT_FALSE(std::filesystem::exists(path("out")));
  }
}

TEST_F(GeneratorProgram, AnswersBadUsageWithOneSentenceAndStatusTwo) {
  const auto expectBad = [&](std::vector<std::string> arguments, const std::string& said) {
    const ProcessResult result = run(std::move(arguments));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, said + "\n");
    EXPECT_EQ(result.output, "");
  };
  expectBad({}, "scenec: the story folder is missing; see scenec --help.");
  expectBad({"--loud", "x"}, "scenec: unknown option --loud; see scenec --help.");
  expectBad({"--out"}, "scenec: --out needs a value; see scenec --help.");
  expectBad({"--units", "0", path("story")}, "scenec: --units takes 1 to 999; see scenec --help.");
  expectBad({path("none")}, "scenec: there is no folder " + path("none") + "; see scenec --help.");
  expectBad({path("story"), path("story")},
            "scenec: one story folder is enough; see scenec --help.");
  expectBad({path("story/01")},
            path("story/01") + ": this folder holds no story; a story's folder has a story.txt.");
  write("file", "");
  expectBad({"--out", path("file"), path("story")},
            "scenec: cannot write " + path("file/scenes_000.cpp") + ".");
}

TEST_F(GeneratorProgram, HelpAndVersionGoToTheStandardOutput) {
  EXPECT_EQ(run({"--help"}).output.rfind("Usage: scenec [options] STORY_FOLDER\n", 0), 0u);
  EXPECT_EQ(run({"--version"}).output.rfind("scenec ", 0), 0u);
  EXPECT_EQ(run({"--version"}).status, 0);
}

}  // namespace
}  // namespace qv::testing
