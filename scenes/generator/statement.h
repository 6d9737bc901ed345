#pragma once

/// One line of a scene text: a command with its arguments, or the head of a message.

#include <string>
#include <string_view>

#include "scenes/generator/story.h"
#include "scenes/generator/vocabulary.h"

namespace qv::scenec {

/// The C++ statement of a command. Wrong arguments are told and give an empty statement.
/// `comment` takes the texts that the statement holds as bytes.
std::string statementOf(const CommandForm& form, std::string_view arguments, const Story& story,
                        Place place, Problems& problems, std::string& comment);

/// Who speaks: "NAME [VOICE]: TEXT". Narration has no heading; a colon in front forces it.
struct Heading {
  std::string tag;    ///< the tag that the engine looks up
  std::string voice;  ///< empty: none
  std::string text;
};
/// True when the line begins a message of its own.
bool isHeading(std::string_view line, const Story& story);
/// Tells a problem when somebody speaks whom the story does not know.
Heading headingOf(std::string_view line, const Story& story, Place place, Problems& problems);

/// The tag of narration.
extern const char* const NarrationTag;

}  // namespace qv::scenec
