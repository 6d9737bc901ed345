#pragma once

/// The rows of story.txt that become tables of the module (scenario/story_tables.h): speakers,
/// figures, pictures with mouths, the hero's first names.

#include <string>
#include <string_view>

#include "scenes/generator/story.h"

namespace qv::scenec {

/// "NAME [TAG] [class N] [shows TEXT] [prints TEXT]".
void readSpeaker(std::string_view rest, Place place, Story& story, Problems& problems);
/// "FAMILY GIVEN".
void readHero(std::string_view rest, Place place, Story& story, Problems& problems);
/// "PICTURE of SPEAKER at X Y [file FILE] [mouth FILE X Y [key N]]".
void readSpriteRow(std::string_view rest, Place place, Story& story, Problems& problems);
/// "PICTURE [file FILE]", and for each mouth "mouth SPEAKER SLOT FILE X Y [key N]" or
/// "stands SPEAKER SLOT".
void readPictureRow(std::string_view rest, Place place, Story& story, Problems& problems);

/// A tag as it is shown: without the part that says who it truly is.
std::string withoutTrueName(const std::string& tag);

/// The tables as C++, under the name StoryData.
std::string tablesCode(const Story& story);

}  // namespace qv::scenec
