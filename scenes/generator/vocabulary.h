#pragma once

/// The commands of the scene language as data: what each takes, in the order of writing, and the
/// C++ statement it becomes. Commands with a form of their own (messages, branches, selections)
/// are the parser's.

#include <string>
#include <string_view>
#include <vector>

namespace qv::scenec {

enum class ArgumentKind {
  Name,        ///< a word without spaces, given as text
  Rest,        ///< the rest of the line, given as text
  Background,  ///< a picture by its name, of the engine's lists or of story.txt
  Event,
  Title,
  Figure,    ///< one with a row
  Song,      ///< one of the engine's
  Effect,    ///< the same
  Number,    ///< `low` to `high`; none when `low` is above `high`
  Time,      ///< tenths of a second, or seconds with an "s"; `low` to `high` tenths
  Register,  ///< a register's name or number, of those that stories may write
  Heroine,   ///< a name that affection knows
  Area,      ///< one of the scene's print areas, by its name
};

struct Argument {
  const char* name = "";  ///< as the usage says it
  ArgumentKind kind = ArgumentKind::Name;
  long low = 0, high = 0;
  const char* words = "";          ///< "word=C++ word=C++": taken instead of the kind's values
  const char* fallback = nullptr;  ///< C++ when it is left out; null: it may not be left out
};

struct CommandForm {
  const char* name;
  const char* code;  ///< $1 to $4 are the arguments
  std::vector<Argument> arguments{};
  bool inChain = false;   ///< may stand in a chain scene
  bool usesFilm = false;  ///< needs the film's clock
};

const std::vector<CommandForm>& commandForms();
const CommandForm* findCommand(std::string_view name);
/// "@sprite PICTURE SLOT", with optional arguments in brackets.
std::string usageOf(const CommandForm& form);
/// Every word that may follow the "@", those with forms of their own too.
std::vector<std::string> allCommandNames();

}  // namespace qv::scenec
