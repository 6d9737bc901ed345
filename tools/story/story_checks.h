#pragma once

/// Whether a story is whole: what the scene compiler cannot see because it looks at texts alone.
/// Each check adds its problems with their places, in sentences for the writer.

#include <string>
#include <vector>

#include "message/text_device.h"
#include "scenes/generator/generator.h"
#include "tools/story/game_files.h"

namespace qv::story {

/// Scenes that no way leads to from the first scene or the title. Of a hand-written scene its row
/// says where it leads (@handwritten NAME → SCENE); a writer's own C++ leads to what it names.
void checkReach(const scenec::Story& story, scenec::Problems& problems);

/// Registers of the story that conditions ask and nothing sets. `code` is hand-written C++.
void checkFlags(const scenec::Story& story, const std::vector<scenec::TextFile>& code,
                scenec::Problems& problems);

/// Waits for the end of a song that the scene has begun and not ended: songs of scenes go round.
void checkSongs(const scenec::Story& story, scenec::Problems& problems);

/// Pictures, mouths, voices, songs, effects and files that scenes name and the game does not have;
/// figures without a row; what the engine itself loads at its start, unless the story is bare.
void checkFiles(const scenec::Story& story, const GameFiles& files, scenec::Problems& problems);

/// Names, messages and choices that are larger than their areas, laid out as the game does with the
/// device's widths.
void checkLayout(const scenec::Story& story, TextDevice& widths, scenec::Problems& problems);

}  // namespace qv::story
