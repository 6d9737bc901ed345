// scenec: compiles a story's scene texts to C++ scene functions and their table.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "scenes/generator/generator.h"
#include "scenes/generator/text.h"

namespace {

namespace fs = std::filesystem;
using namespace qv::scenec;

constexpr int Good = 0, BadStory = 1, BadUsage = 2;

const char* const Help =
    "Usage: scenec [options] STORY_FOLDER\n"
    "Compiles the scene texts of a story (story.txt and every *.scene below the folder) to C++.\n"
    "\n"
    "  --out DIR       where the sources go (default: the current folder)\n"
    "  --units N       number of sources that share the scenes (default: one for 20 scenes)\n"
    "  --check         only read the texts and tell what is wrong\n"
    "  --depfile FILE  write what the sources depend on, as build tools read it\n"
    "  --help          this text\n"
    "  --version       the version\n"
    "\n"
    "Exit status: 0 when all is well, 1 when the texts have errors, 2 for bad usage or files.\n";

struct Options {
  fs::path folder, out = ".";
  fs::path depfile;
  bool check = false;
  int units = 0;
};

int badUsage(const std::string& what) {
  std::fprintf(stderr, "scenec: %s; see scenec --help.\n", what.c_str());
  return BadUsage;
}

/// The exit status when the program is done with its arguments alone.
std::optional<int> parseArguments(const std::vector<std::string>& arguments, Options& options) {
  for (size_t index = 0; index < arguments.size(); ++index) {
    const std::string& word = arguments[index];
    const auto value = [&](std::string& target) {
      if (index + 1 == arguments.size()) return false;
      target = arguments[++index];
      return true;
    };
    std::string text;
    if (word == "--help") {
      std::fputs(Help, stdout);
      return Good;
    }
    if (word == "--version") {
      std::printf("scenec %s\n", QV_VERSION);
      return Good;
    }
    if (word == "--check") {
      options.check = true;
    } else if (word == "--out" || word == "--depfile" || word == "--units") {
      if (!value(text)) return badUsage(word + " needs a value");
      if (word == "--out") options.out = text;
      if (word == "--depfile") options.depfile = text;
      if (word == "--units") {
        const std::optional<long> count = number(text);
        if (!count || *count < 1 || *count > 999) return badUsage("--units takes 1 to 999");
        options.units = static_cast<int>(*count);
      }
    } else if (word.size() > 1 && word[0] == '-') {
      return badUsage("unknown option " + word);
    } else if (options.folder.empty()) {
      options.folder = word;
    } else {
      return badUsage("one story folder is enough");
    }
  }
  if (options.folder.empty()) return badUsage("the story folder is missing");
  if (!fs::is_directory(options.folder))
    return badUsage("there is no folder " + options.folder.string());
  return std::nullopt;
}

/// A path as make and ninja read it.
std::string escaped(const std::string& path) {
  std::string result;
  for (const char byte : path) {
    if (byte == ' ' || byte == '#') result += '\\';
    if (byte == '$') result += '$';
    result += byte;
  }
  return result;
}

bool writeDepfile(const Options& options, const std::vector<TextFile>& texts) {
  std::ofstream file(options.depfile, std::ios::trunc);
  file << escaped((options.out / "scene_table.cpp").string()) << ":";
  for (const TextFile& text : texts)
    file << " \\\n  " << escaped((options.folder / fs::path(text.name)).string());
  file << "\n";
  file.close();
  return !file.fail();
}

int compile(const Options& options) {
  Problems problems;
  const std::vector<TextFile> texts = loadTexts(options.folder, problems);
  if (!problems.empty()) {
    for (const std::string& line : problems.lines())
      std::fprintf(stderr, "%s\n", line.c_str());
    return BadUsage;
  }
  const std::string root = (options.folder / "").string();
  Story story = readStory(texts, problems);
  if (!problems.empty()) {
    for (const std::string& line : problems.lines(root))
      std::fprintf(stderr, "%s\n", line.c_str());
    return BadStory;
  }
  if (options.check) return Good;
  std::vector<std::string> files;
  for (const TextFile& text : texts)
    files.push_back(text.name);
  const int units = options.units > 0 ? options.units : unitsFor(story.scenes.size());
  std::string whyNot;
  if (!storeSources(options.out, writeStory(story, files, root, units), whyNot)) {
    std::fprintf(stderr, "scenec: %s.\n", whyNot.c_str());
    return BadUsage;
  }
  if (!options.depfile.empty() && !writeDepfile(options, texts)) {
    std::fprintf(stderr, "scenec: cannot write %s.\n", options.depfile.c_str());
    return BadUsage;
  }
  return Good;
}

}  // namespace

int main(int count, char** values) {
  Options options;
  const std::optional<int> done =
      parseArguments(std::vector<std::string>(values + 1, values + count), options);
  return done ? *done : compile(options);
}
