#include "scenes/generator/statement.h"

#include <algorithm>
#include <optional>

#include "scenario/register_numbers.h"
#include "scenes/generator/condition.h"
#include "scenes/generator/known_names.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

const char* const NarrationTag = "コメント";

namespace {

constexpr std::string_view WideColon = "：";
constexpr std::string_view QuoteMarks[] = {"「", "『", "（", "("};

// Registers that the form of a scene keeps itself.
constexpr int OwnRegisters[] = {ResumePendingRegister, StepRegister, SavedStateRegister};

struct AreaName {
  const char* name;
  const char* member;
};
constexpr AreaName Areas[] = {
    {"name.Area", "name"},
    {"message.Area", "message"},
    {"select01.Title.Aria", "select01Title"},
    {"select01.Mess.Aria", "select01Mess"},
    {"select02.Title.Aria", "select02Title"},
    {"select02.Mess.Aria", "select02Mess"},
    {"select03.Title.Aria", "select03Title"},
    {"select03.Mess.Aria", "select03Mess"},
};

/// The C++ word that "word=C++ ..." gives for `word`, or nothing.
std::optional<std::string> fixedWord(std::string_view list, const std::string& word) {
  for (const std::string& pair : words(list)) {
    const size_t equals = pair.find('=');
    if (pair.substr(0, equals) == word) return pair.substr(equals + 1);
  }
  return std::nullopt;
}

class ArgumentReader {
 public:
  ArgumentReader(const CommandForm& form, const Story& story, Place place, Problems& problems,
                 std::string& comment)
      : form_(form), story_(story), place_(place), problems_(problems), comment_(comment) {}

  /// The argument's C++; empty, with a problem told, when the word does not fit.
  std::string codeOf(const Argument& argument, const std::string& word) {
    if (const std::optional<std::string> fixed = fixedWord(argument.words, narrow(word)))
      return *fixed;
    switch (argument.kind) {
      case ArgumentKind::Name:
      case ArgumentKind::Rest:
        return textOf(word);
      case ArgumentKind::Background:
      case ArgumentKind::Event:
      case ArgumentKind::Title:
      case ArgumentKind::Figure:
      case ArgumentKind::Song:
      case ArgumentKind::Effect:
        return knownName(argument.kind, word);
      case ArgumentKind::Number:
      case ArgumentKind::Time:
        return numberOf(argument, word);
      case ArgumentKind::Register:
        return registerOf(word);
      case ArgumentKind::Heroine:
        return knowsHeroine(word, story_, place_, problems_) ? textOf(word) : std::string();
      case ArgumentKind::Area:
        return areaOf(word);
    }
    return {};
  }

 private:
  std::string fail(std::string what) {
    problems_.add(place_, std::move(what));
    return {};
  }

  std::string textOf(const std::string& word) {
    const std::string wrong = unsayable(word);
    if (!wrong.empty()) return fail(wrong);
    if (!isAscii(word)) comment_ += (comment_.empty() ? "" : ", ") + word;
    return literal(word);
  }

  std::string knownName(ArgumentKind kind, const std::string& word) {
    const std::string text = textOf(word);
    if (text.empty()) return {};
    const std::string wrong = unknownName(kind, word, story_, problems_);
    return wrong.empty() ? text : fail(wrong);
  }

  std::string numberOf(const Argument& argument, const std::string& word) {
    const bool time = argument.kind == ArgumentKind::Time;
    const std::optional<long> value = time ? tenths(word) : number(word);
    if (value && *value >= argument.low && *value <= argument.high) return std::to_string(*value);
    std::string wanted;
    if (argument.low <= argument.high)
      wanted = std::string(time ? "tenths of a second" : "a number") + " from " +
               std::to_string(argument.low) + " to " + std::to_string(argument.high);
    std::string others;
    for (const std::string& pair : words(argument.words))
      others += (others.empty() ? "\"" : " or \"") + pair.substr(0, pair.find('=')) + "\"";
    if (!others.empty()) wanted += (wanted.empty() ? "" : ", or ") + others;
    return fail("\"" + word + "\" does not fit for " + argument.name + " of " + usageOf(form_) +
                "; write " + wanted + ".");
  }

  std::string registerOf(const std::string& word) {
    const std::optional<int> which = registerNumber(word, story_, place_, problems_);
    if (!which) return {};
    if (std::find(std::begin(OwnRegisters), std::end(OwnRegisters), *which) !=
        std::end(OwnRegisters))
      return fail("register " + std::to_string(*which) +
                  " belongs to the form of scenes; use another one.");
    return std::to_string(*which);
  }

  std::string areaOf(const std::string& word) {
    std::vector<std::string> known;
    for (const AreaName& area : Areas) {
      if (word == area.name) return area.member;
      known.emplace_back(area.name);
    }
    return fail("scenes know no print area \"" + word + "\"." +
                problems_.suggestion(word, known, " Use name.Area or message.Area."));
  }

  const CommandForm& form_;
  const Story& story_;
  Place place_;
  Problems& problems_;
  std::string& comment_;
};

std::string filled(const char* code, const std::vector<std::string>& values) {
  std::string result;
  for (const char* at = code; *at; ++at) {
    if (*at == '$' && at[1] >= '1' && at[1] <= '9') {
      ++at;
      result += values[static_cast<size_t>(*at - '1')];
    } else {
      result += *at;
    }
  }
  return result;
}

struct Colon {
  size_t at = std::string::npos;
  size_t length = 1;
};

Colon findColon(std::string_view line) {
  const size_t narrowAt = line.find(':');
  const size_t wideAt = line.find(WideColon);
  if (wideAt < narrowAt) return {wideAt, WideColon.size()};
  return {narrowAt, 1};
}

/// The tag of a speaker by name, or empty.
std::string tagOf(const std::string& name, const Story& story) {
  const auto found = story.speakers.find(name);
  return found == story.speakers.end() ? std::string() : found->second;
}

/// The words before the colon: a name of one or more words, and a voice when the last is ASCII.
bool splitHead(std::string_view head, const Story& story, Heading& heading, std::string& name) {
  name = std::string(trim(head));
  heading.tag = tagOf(name, story);
  if (!heading.tag.empty()) return true;
  const std::vector<std::string> list = words(head);
  if (list.size() < 2 || !isAscii(list.back())) return false;
  heading.voice = list.back();
  name = std::string(trim(name.substr(0, name.size() - heading.voice.size())));
  heading.tag = tagOf(name, story);
  return !heading.tag.empty();
}

bool opensQuote(std::string_view text) {
  return std::any_of(std::begin(QuoteMarks), std::end(QuoteMarks),
                     [&](std::string_view mark) { return startsWith(text, mark); });
}

}  // namespace

void readStatement(const CommandForm& form, std::string_view rest, const Story& story,
                   Problems& problems, Act& act) {
  act.kind = Act::Kind::Call;
  act.command = form.name;
  const Place place = act.place;
  ArgumentReader reader(form, story, place, problems, act.comment);
  std::vector<std::string> values;
  bool good = true;
  for (const Argument& argument : form.arguments) {
    std::string word;
    if (argument.kind == ArgumentKind::Rest) {
      word = std::string(trim(rest));
      rest = {};
    } else {
      word = firstWord(rest, rest);
    }
    if (word.empty()) {
      if (!argument.fallback) {
        problems.add(
            place, std::string(argument.name) + " is missing; the form is " + usageOf(form) + ".");
        return;
      }
      values.emplace_back(argument.fallback);
      continue;
    }
    act.arguments.push_back(word);
    values.push_back(reader.codeOf(argument, word));
    good = good && !values.back().empty();
  }
  if (!rest.empty()) {
    problems.add(place, "\"" + std::string(rest) + "\" is too much here; the form is " +
                            usageOf(form) + ".");
    return;
  }
  if (good) act.code = filled(form.code, values);
}

bool isHeading(std::string_view line, const Story& story) {
  const Colon colon = findColon(line);
  if (colon.at == std::string::npos) return false;
  if (trim(line.substr(0, colon.at)).empty()) return true;
  Heading heading;
  std::string name;
  return splitHead(line.substr(0, colon.at), story, heading, name) ||
         opensQuote(trim(line.substr(colon.at + colon.length)));
}

Heading headingOf(std::string_view line, const Story& story, Place place, Problems& problems) {
  Heading heading;
  heading.tag = NarrationTag;
  heading.text = std::string(trimAscii(line));
  if (!isHeading(line, story)) return heading;
  const Colon colon = findColon(line);
  const std::string_view head = trim(line.substr(0, colon.at));
  heading.text = std::string(trimAscii(line.substr(colon.at + colon.length)));
  if (head.empty()) return heading;
  heading.text = std::string(trim(heading.text));
  std::string name;
  if (splitHead(head, story, heading, name)) {
    const std::string wrong = unsayable(heading.voice);
    if (!wrong.empty()) problems.add(place, wrong);
    return heading;
  }
  std::vector<std::string> known;
  for (const auto& [speaker, unused] : story.speakers)
    known.push_back(speaker);
  problems.add(place,
               "nobody called \"" + name + "\" speaks in this story." +
                   problems.suggestion(name, known,
                                       " Add @speaker " + name +
                                           " to story.txt, or begin the line with a colon if it is "
                                           "narration."));
  heading.tag = NarrationTag;
  return heading;
}

}  // namespace qv::scenec
