#include "tools/story/story_source.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "scenes/generator/lines.h"

namespace qv::story {

namespace fs = std::filesystem;

namespace {

std::vector<scenec::TextFile> codeOf(const fs::path& folder) {
  std::vector<scenec::TextFile> code;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, error), end;
  for (; !error && entry != end; entry.increment(error)) {
    if (entry->path().extension() != ".cpp") continue;
    std::ifstream file(entry->path(), std::ios::binary);
    code.push_back({entry->path().lexically_relative(folder).generic_string(),
                    std::string(std::istreambuf_iterator<char>(file), {})});
  }
  std::sort(code.begin(), code.end(),
            [](const auto& left, const auto& right) { return left.name < right.name; });
  return code;
}

std::vector<std::string> rowsOf(const std::string& storyText) {
  static constexpr std::array Kept{"game", "hero", "speaker", "heroine", "figure", "picture"};
  std::vector<std::string> rows;
  for (const scenec::Line& line : scenec::splitLines(storyText))
    if (std::find(Kept.begin(), Kept.end(), line.command) != Kept.end()) rows.push_back(line.raw);
  return rows;
}

}  // namespace

bool readStorySource(const fs::path& folder, StorySource& source) {
  source.game = folder;
  source.folder = fs::exists(folder / "story" / scenec::StoryFileName) ? folder / "story" : folder;
  const std::vector<scenec::TextFile> texts = scenec::loadTexts(source.folder, source.problems);
  if (texts.empty()) return false;
  source.story = scenec::readStory(texts, source.problems);
  source.rows = rowsOf(texts.front().bytes);
  source.code = codeOf(source.folder);
  return true;
}

}  // namespace qv::story
