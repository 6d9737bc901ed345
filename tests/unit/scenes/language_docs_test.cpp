// The examples of docs/scene-language.md are stories: each goes through the generator, and all of
// their C++ through the compiler.

#include <fstream>

#include <gtest/gtest.h>

#include "scenes/generator/checker.h"
#include "scenes/generator/generator.h"
#include "scenes/generator/vocabulary.h"
#include "tests/support/process.h"
#include "tests/support/test_platform.h"

namespace qv::scenec {
namespace {

/// The blocks of one kind in a page of Markdown.
std::vector<std::string> blocksOf(const std::string& page, const std::string& kind) {
  std::vector<std::string> blocks;
  const std::string opening = "```" + kind + "\n";
  for (size_t at = 0; (at = page.find(opening, at)) != std::string::npos;) {
    at += opening.size();
    const size_t end = page.find("```", at);
    blocks.push_back(page.substr(at, end - at));
    at = end;
  }
  return blocks;
}

/// One example with what it leads to but does not show.
Story storyOf(const std::string& storyFile, std::string scenes, Problems& problems) {
  Problems unfinished;
  const Story first = readStory({{"story.txt", storyFile}, {"example.scene", scenes}}, unfinished);
  for (const std::string& name : missingScenes(first))
    scenes += "\n@scene " + name + "\n  @go END\n";
  return readStory({{"story.txt", storyFile}, {"example.scene", scenes}}, problems);
}

TEST(SceneLanguagePage, EveryExampleCompiles) {
  const std::string page = testing::readWhole(QV_SOURCE_DIR "/docs/scene-language.md");
  const std::vector<std::string> stories = blocksOf(page, "story");
  const std::vector<std::string> examples = blocksOf(page, "scene");
  ASSERT_EQ(stories.size(), 1u);
  ASSERT_GE(examples.size(), 7u);
  const testing::TemporaryFolder folder;
  std::vector<std::string> command{"c++",     "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra",
                                   "-Werror", "-I",         QV_SOURCE_DIR};
  for (size_t example = 0; example < examples.size(); ++example) {
    Problems problems;
    const Story story = storyOf(stories[0], examples[example], problems);
    EXPECT_EQ(problems.lines(), std::vector<std::string>{}) << examples[example];
    for (const SourceFile& source : writeStory(story, {"story.txt", "example.scene"}, "", 1)) {
      const auto file = folder.path() / (std::to_string(example) + "_" + source.name);
      std::ofstream(file) << source.text;
      command.push_back(file.string());
    }
  }
  const testing::ProcessResult result = testing::runProcess(command, {}, 300);
  EXPECT_EQ(result.status, 0) << result.errors;
}

TEST(SceneLanguagePage, ShowsEveryCommand) {
  const std::string page = testing::readWhole(QV_SOURCE_DIR "/docs/scene-language.md");
  for (const std::string& name : allCommandNames())
    EXPECT_NE(page.find("@" + name), std::string::npos) << name;
}

}  // namespace
}  // namespace qv::scenec
