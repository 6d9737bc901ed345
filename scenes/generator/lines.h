#pragma once

/// The lines of a text, told apart: commands, text, blank lines. Comments vanish here.

#include <string>
#include <string_view>
#include <vector>

namespace qv::scenec {

struct Line {
  enum class Kind { Blank, Command, Text };
  Kind kind = Kind::Blank;
  int number = 0;       ///< from 1
  std::string raw;      ///< as it stands, without the line end
  std::string command;  ///< without its sign: "bg"
  std::string rest;     ///< what follows the command, or the text
};

/// "@" (or its full-width form) opens a command, "#" a comment. A byte order mark is passed over.
std::vector<Line> splitLines(std::string_view bytes);

}  // namespace qv::scenec
