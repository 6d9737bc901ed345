#pragma once

/// Writes a checked story as C++: units of scenes, and the table by which a host knows the module.

#include <string>
#include <vector>

#include "scenes/generator/story.h"

namespace qv::scenec {

struct SourceFile {
  std::string name;
  std::string text;
};

/// `units` files "scenes_000.cpp" and on, and "scene_table.cpp". A scene's unit depends on its name
/// and the number of units alone, so that a change of one scene compiles one unit afresh; the
/// scenes of a text with C++ of its own stay in one unit, and with them that C++. `files` are the
/// names of the texts, `root` is put before them for the compiler's messages.
std::vector<SourceFile> writeStory(const Story& story, const std::vector<std::string>& files,
                                   const std::string& root, int units);
/// Some twenty scenes each.
int unitsFor(size_t scenes);

}  // namespace qv::scenec
