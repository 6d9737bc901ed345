#include "scenes/generator/generator.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

#include "scenes/generator/checker.h"
#include "scenes/generator/parser.h"
#include "scenes/generator/statement.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

namespace fs = std::filesystem;

namespace {

bool readFile(const fs::path& path, std::string& bytes) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  bytes.assign(std::istreambuf_iterator<char>(file), {});
  return !file.bad();
}

/// Speakers that every story has: the hero, thoughts and noises.
void addStandingSpeakers(Story& story) {
  story.speakers.emplace(NarrationTag, NarrationTag);
  for (const char* name : {"心の声", "擬音", "＊＊＊"})
    story.speakers.emplace(name, std::string("【　") + name + "　】");
  story.speakers.emplace("主人公", "【　＊＊＊　《主人公》】");
}

}  // namespace

Story readStory(const std::vector<TextFile>& texts, Problems& problems) {
  Story story;
  addStandingSpeakers(story);
  for (const TextFile& text : texts)
    problems.files.push_back(text.name);
  for (size_t index = 0; index < texts.size(); ++index)
    if (texts[index].name == StoryFileName)
      parseStoryFile(texts[index].bytes, static_cast<int>(index), story, problems);
  for (size_t index = 0; index < texts.size(); ++index)
    if (texts[index].name != StoryFileName)
      parseSceneFile(texts[index].bytes, static_cast<int>(index), story, problems);
  checkStory(story, problems);
  return story;
}

std::vector<TextFile> loadTexts(const fs::path& folder, Problems& problems) {
  std::set<std::string> names;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, error), end;
  for (; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().lexically_relative(folder).generic_string();
    if (name == StoryFileName || entry->path().extension() == SceneExtension) names.insert(name);
  }
  if (error || names.count(StoryFileName) == 0) {
    problems.files.push_back(folder.string());
    problems.add({}, "this folder holds no story; a story's folder has a story.txt.");
    return {};
  }
  std::vector<TextFile> texts;
  // story.txt comes first, so that what concerns the whole story is told at its name.
  names.erase(StoryFileName);
  std::vector<std::string> ordered{StoryFileName};
  ordered.insert(ordered.end(), names.begin(), names.end());
  for (const std::string& name : ordered) {
    TextFile text{name, {}};
    if (!readFile(folder / fs::path(name), text.bytes)) {
      problems.files.push_back(name);
      problems.add({static_cast<int>(problems.files.size()) - 1, 0}, "this file cannot be read.");
      return {};
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

bool storeSources(const fs::path& folder, const std::vector<SourceFile>& sources,
                  std::string& whyNot) {
  std::error_code error;
  fs::create_directories(folder, error);
  std::set<std::string> written;
  for (const SourceFile& source : sources) {
    const fs::path path = folder / source.name;
    written.insert(source.name);
    std::string old;
    if (readFile(path, old) && old == source.text) continue;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << source.text;
    file.close();
    if (!file) {
      whyNot = "cannot write " + path.string();
      return false;
    }
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (startsWith(name, "scenes_") && entry.path().extension() == ".cpp" &&
        written.count(name) == 0)
      fs::remove(entry.path(), error);
  }
  return true;
}

}  // namespace qv::scenec
