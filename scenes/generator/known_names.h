#pragma once

/// Names of pictures, figures, songs and effects, looked up in the engine's tables and in the rows
/// of story.txt. What a register or C++ gives at the time of playing is nobody's to look up.

#include <string>

#include "scenes/generator/story.h"
#include "scenes/generator/vocabulary.h"

namespace qv::scenec {

/// What is wrong with the word as a name of that kind, as a sentence with what to do; empty when it
/// is known, and for kinds that are no names of these. `problems` lends its guesses.
std::string unknownName(ArgumentKind kind, const std::string& word, const Story& story,
                        Problems& problems);

/// True when a row's mouths and file count for the picture: the engine looks at the rows of the
/// events, titles and group shots that it knows.
bool isPictureWithRow(const std::string& name);

}  // namespace qv::scenec
