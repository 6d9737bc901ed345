#pragma once

/// The generator as a whole: a story's texts to C++ sources. Reading and writing of files stands
/// apart, so that tests and the fuzzer work on texts in memory.

#include <filesystem>
#include <string>
#include <vector>

#include "scenes/generator/story.h"
#include "scenes/generator/writer.h"

namespace qv::scenec {

struct TextFile {
  std::string name;  ///< relative to the story's folder, with "/"
  std::string bytes;
};

/// "story.txt" holds for all; every other text holds scenes. The checker has been run.
Story readStory(const std::vector<TextFile>& texts, Problems& problems);

/// story.txt and every "*.scene" below the folder, sorted by name. Nothing with a problem told
/// when the folder has no story.txt or a text cannot be read.
std::vector<TextFile> loadTexts(const std::filesystem::path& folder, Problems& problems);

/// Writes the files whose text differs from what is there, and removes units that the story no
/// longer has. False, with a sentence, when the folder cannot be written.
bool storeSources(const std::filesystem::path& folder, const std::vector<SourceFile>& sources,
                  std::string& whyNot);

inline constexpr const char* StoryFileName = "story.txt";
inline constexpr const char* SceneExtension = ".scene";

}  // namespace qv::scenec
