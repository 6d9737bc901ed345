#pragma once

/// Words of a scene text's line. Writers switch between half and full width as they type, so the
/// ideographic space parts words and full-width letters, digits and signs of commands count as
/// their ASCII kin.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::scenec {

/// Without spaces (ASCII and, when told so, ideographic ones) at both ends.
std::string_view trimAscii(std::string_view text);
std::string_view trim(std::string_view text);
std::vector<std::string> words(std::string_view text);
/// The first word; `rest` is what follows, trimmed.
std::string firstWord(std::string_view text, std::string_view& rest);
/// Full-width ASCII (U+FF01 to U+FF5E) as ASCII; everything else as it is.
std::string narrow(std::string_view text);
bool startsWith(std::string_view text, std::string_view start);
bool isAscii(std::string_view text);
/// A decimal number with an optional sign, or nothing.
std::optional<long> number(std::string_view text);
/// Tenths of a second: "27", or "2.7s". Nothing when it is neither.
std::optional<long> tenths(std::string_view text);
/// The place of the last arrow, "->" or U+2192, and its length in bytes; npos when there is none.
size_t findArrow(std::string_view text, size_t& length);
/// A text as a C++ literal of its Shift-JIS bytes. What cannot be said becomes "?": the parser has
/// refused it already.
std::string literal(std::string_view utf8);
/// What in the text Shift-JIS cannot say, as a sentence; empty when all is well.
std::string unsayable(std::string_view utf8);

}  // namespace qv::scenec
