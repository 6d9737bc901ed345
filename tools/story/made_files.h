#pragma once

/// What a made story shows and plays: names that the sample has, and the pictures made where it has
/// none of a family.

#include <string>
#include <vector>

#include "tools/story/game_files.h"
#include "tools/story/story_source.h"

namespace qv::story {

struct MadeFile;

struct MadeStock {
  std::vector<std::string> backgrounds, events, titles, figures, closeFigures, outdoorFigures;
  std::vector<std::string> songs, effects, drawings;
  std::vector<std::string> voices;  ///< as scenes name them: "V00\\0000_001"
  bool previewSong = false;         ///< the song that a chapter's preview plays is there
  std::string rows;                 ///< of story.txt, for the figures that were made
};

MadeStock stockOf(const StorySource& sample, const GameFiles& files, std::vector<MadeFile>& made);

}  // namespace qv::story
