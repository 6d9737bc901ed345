#pragma once

/// Makes a story of the size of a real one from a seed: a tree of scenes over seven chapters with
/// endings, in which every command stands as often as in a story of 931 scenes. What it shows and
/// plays is what a sample has; the pictures that the sample lacks it makes itself. For tests of
/// size and speed: its sentences are plain, and nobody is meant to read them.

#include <cstdint>
#include <string>
#include <vector>

#include "tools/story/game_files.h"
#include "tools/story/story_source.h"

namespace qv::story {

/// The size that the numbers of the commands belong to, and the smallest that still has them all.
inline constexpr int FullSize = 931, SmallestSize = 60;

struct MadeFile {
  std::string name;  ///< relative: "story/…" are texts, "files/…" belong into the game folder
  std::string bytes;
};

/// `scenes`: without the title, the endings and the way to them. The same seed, size and sample
/// make the same files, on every machine.
std::vector<MadeFile> makeStory(const StorySource& sample, const GameFiles& files, int scenes,
                                uint64_t seed);

}  // namespace qv::story
