#pragma once

/// One line of a scene text: a command with its arguments, or the head of a message.

#include <string>
#include <string_view>

#include "scenes/generator/story.h"
#include "scenes/generator/vocabulary.h"

namespace qv::scenec {

/// Makes the act a call of the command at its place: the C++ statement, the words it is made of,
/// the texts that it holds as bytes. Wrong arguments are told and give an empty statement.
void readStatement(const CommandForm& form, std::string_view arguments, const Story& story,
                   Problems& problems, Act& act);

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
