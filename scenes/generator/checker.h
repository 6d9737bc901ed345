#pragma once

/// What can only be checked when all texts are read: doubled names, scenes that are led to and do
/// not exist.

#include "scenes/generator/story.h"

namespace qv::scenec {

void checkStory(const Story& story, Problems& problems);
/// Scenes that something leads to and nothing defines, sorted.
std::vector<std::string> missingScenes(const Story& story);

}  // namespace qv::scenec
