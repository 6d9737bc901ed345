#pragma once

/// Reads story.txt and scene texts into a Story. Every line is checked as it is read: what a
/// statement needs, numbers within their range, characters that Shift-JIS can say, the form of
/// steps. What needs the whole story (targets, doubled names) is the checker's.

#include <string_view>

#include "scenes/generator/story.h"

namespace qv::scenec {

/// `file` is the index of the text's name in problems.files.
void parseStoryFile(std::string_view bytes, int file, Story& story, Problems& problems);
void parseSceneFile(std::string_view bytes, int file, Story& story, Problems& problems);

}  // namespace qv::scenec
