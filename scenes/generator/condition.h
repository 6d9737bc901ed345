#pragma once

/// Conditions of @if and @when, from the writer's words to a C++ expression:
///
///     CONDITION  = AND { or AND }
///     AND        = NOT { and NOT }
///     NOT        = [not] ( "(" CONDITION ")" | TERM )
///     TERM       = REGISTER [OP NUMBER] | setting NUMBER [OP NUMBER] | skip | voices | music
///                | random | affection NAME above NUMBER | favourite NAME [NAME] is NAME

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/generator/story.h"

namespace qv::scenec {

struct Condition {
  std::string code;
  std::vector<int> registers;  ///< that it reads
};

/// Nothing, with a problem told, when the words are no condition.
std::optional<Condition> parseCondition(std::string_view words, const Story& story, Place place,
                                        Problems& problems);

/// The register's number by name or digits, or nothing with a problem told.
std::optional<int> registerNumber(const std::string& word, const Story& story, Place place,
                                  Problems& problems);
/// True, or a problem is told, when affection knows the name.
bool knowsHeroine(const std::string& name, const Story& story, Place place, Problems& problems);

}  // namespace qv::scenec
