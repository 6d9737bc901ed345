#pragma once

/// A story as its tools take it in: the folder of a game's sources (with story/ in it) or a story's
/// folder alone, read whole.

#include <filesystem>
#include <string>
#include <vector>

#include "scenes/generator/generator.h"

namespace qv::story {

struct StorySource {
  std::filesystem::path folder;  ///< of the story: it has a story.txt
  std::filesystem::path game;    ///< of the game's sources
  scenec::Story story;
  scenec::Problems problems;  ///< what scenec would say
  /// The lines of story.txt that name people and pictures, for a story of the same ones.
  std::vector<std::string> rows;
  /// Hand-written C++ beside the texts (*.cpp), for what it says about registers.
  std::vector<scenec::TextFile> code;
};

/// False, with the problems told, when the folder holds no story or a text cannot be read.
bool readStorySource(const std::filesystem::path& folder, StorySource& source);

}  // namespace qv::story
