#include "tools/story/game_files.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>

namespace qv::story {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view DiscPrefix = "%:\\";

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
  });
  return text;
}

void eachFile(const fs::path& folder, const std::function<void(const fs::path& relative)>& see) {
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, error), end;
  for (; !error && entry != end; entry.increment(error))
    if (entry->is_regular_file(error)) see(entry->path().lexically_relative(folder));
}

/// The first word of every line that is no comment.
void eachRow(const fs::path& list, const std::function<void(const std::string& first)>& see) {
  std::ifstream file(list);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string first;
    if (words >> first && first[0] != '#') see(first);
  }
}

}  // namespace

void GameFiles::add(const std::string& name) {
  names_.insert(lowered(name));
}

bool GameFiles::has(const std::string& name) const {
  return names_.count(lowered(name)) != 0;
}

GameFiles GameFiles::ofBuilt(const fs::path& folder) {
  GameFiles files;
  eachFile(folder, [&](const fs::path& file) { files.add(file.generic_string()); });
  return files;
}

// The rules by which cmake/art.cmake and cmake/sound.cmake name what they build.
GameFiles GameFiles::ofSources(const fs::path& folder) {
  GameFiles files;
  eachRow(folder / "cg/pictures.txt", [&](const std::string& name) {
    const std::string ending = name.find('.') == std::string::npos ? ".mcg" : "";
    files.add((name.find('/') == std::string::npos ? "cg/" : "") + name + ending);
  });
  eachFile(folder / "midi", [&](const fs::path& file) {
    if (file.extension() != ".song") return;
    for (const char variant : {'a', 'b', 'c', 'd', 'e'})
      files.add("midi/" + file.stem().string() + variant + ".mid");
  });
  eachRow(folder / "wave/effects.txt",
          [&](const std::string& digits) { files.add("wave/vlse" + digits + ".wav"); });
  eachFile(folder / "voices", [&](const fs::path& file) {
    if (file.extension() == ".flac")
      files.add("disc/VOICE/" + fs::path(file).replace_extension(".wav").generic_string());
  });
  if (fs::exists(folder / "font/signs.txt")) files.add("dat/Quvex.tte");
  return files;
}

std::string nameInGame(const std::string& path) {
  std::string name = path;
  if (name.compare(0, DiscPrefix.size(), DiscPrefix) == 0)
    name = "disc/" + name.substr(DiscPrefix.size());
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

}  // namespace qv::story
