#include "scenes/generator/condition.h"

#include <algorithm>
#include <array>
#include <utility>

#include "scenario/register_numbers.h"
#include "scenes/generator/text.h"

namespace qv::scenec {

namespace {

constexpr int DeepestNesting = 32;

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> Operators{{
    {"<=", "<="},
    {">=", ">="},
    {"!=", "!="},
    {"==", "=="},
    {"=", "=="},
    {"<", "<"},
    {">", ">"},
    {"\xE2\x89\xA0", "!="},
    {"\xE2\x89\xA6", "<="},
    {"\xE2\x89\xA7", ">="},
}};

/// Words, with brackets and comparisons standing alone.
std::vector<std::string> tokensOf(std::string_view text) {
  std::vector<std::string> tokens;
  for (const std::string& raw : words(text)) {
    const std::string word = narrow(raw);
    std::string part;
    const auto flush = [&] {
      if (!part.empty()) tokens.push_back(std::exchange(part, {}));
    };
    for (size_t at = 0; at < word.size();) {
      if (word[at] == '(' || word[at] == ')') {
        flush();
        tokens.emplace_back(1, word[at++]);
        continue;
      }
      const auto found = std::find_if(Operators.begin(), Operators.end(), [&](const auto& known) {
        return startsWith(std::string_view(word).substr(at), known.first);
      });
      if (found != Operators.end()) {
        flush();
        tokens.emplace_back(found->second);
        at += found->first.size();
        continue;
      }
      part += word[at++];
    }
    flush();
  }
  return tokens;
}

class Reader {
 public:
  Reader(std::vector<std::string> tokens, const Story& story, Place place, Problems& problems)
      : tokens_(std::move(tokens)), story_(story), place_(place), problems_(problems) {}

  std::optional<Condition> whole() {
    if (tokens_.empty()) {
      fail("the condition is missing; write it behind the command, as in @if 609.");
      return std::nullopt;
    }
    std::string code = either(0);
    if (!failed_ && at_ < tokens_.size())
      fail("\"" + tokens_[at_] +
           "\" is not understood here; join conditions with \"and\" or \"or\".");
    if (failed_) return std::nullopt;
    return Condition{std::move(code), std::move(registers_)};
  }

 private:
  void fail(std::string what) {
    if (!failed_) problems_.add(place_, std::move(what));
    failed_ = true;
  }
  std::string take() { return at_ < tokens_.size() ? tokens_[at_++] : std::string(); }
  bool takeIf(std::string_view word) {
    if (at_ >= tokens_.size() || tokens_[at_] != word) return false;
    ++at_;
    return true;
  }

  std::string either(int depth) {
    std::string code = both(depth);
    bool joined = false;
    while (!failed_ && takeIf("or")) {
      code += " || " + both(depth);
      joined = true;
    }
    return joined ? "(" + code + ")" : code;
  }

  std::string both(int depth) {
    std::string code = inverted(depth);
    bool joined = false;
    while (!failed_ && takeIf("and")) {
      code += " && " + inverted(depth);
      joined = true;
    }
    return joined ? "(" + code + ")" : code;
  }

  std::string inverted(int depth) {
    bool negative = false;
    while (takeIf("not"))
      negative = !negative;
    std::string code;
    if (takeIf("(")) {
      if (depth == DeepestNesting) {
        fail("the brackets are nested too deep; use several @if.");
        return {};
      }
      code = either(depth + 1);
      if (!takeIf(")")) fail("a closing bracket is missing in the condition.");
    } else {
      code = term();
    }
    return negative ? "!(" + code + ")" : code;
  }

  /// `code` compared with the number that follows, or tested for truth.
  std::string compared(const std::string& code) {
    for (const auto& [unused, sign] : Operators) {
      if (!takeIf(sign)) continue;
      const std::string word = take();
      const std::optional<long> value = number(word);
      if (!value) {
        fail("a number is missing behind \"" + std::string(sign) + "\".");
        return {};
      }
      return code + " " + std::string(sign) + " " + std::to_string(*value);
    }
    return code + " != 0";
  }

  std::string name() {
    const std::string word = take();
    if (!knowsHeroine(word, story_, place_, problems_)) failed_ = true;
    return literal(word);
  }

  std::string affection() {
    const std::string who = name();
    if (failed_) return {};
    if (!takeIf("above") && !takeIf(">")) {
      fail("write the limit as in @if affection NAME above 10.");
      return {};
    }
    const std::optional<long> limit = number(take());
    if (!limit) {
      fail("a number is missing behind \"above\".");
      return {};
    }
    return "AffectionAbove(" + who + ", " + std::to_string(*limit) + ") != 0";
  }

  std::string favourite() {
    const std::string first = name();
    if (failed_) return {};
    std::string second = "nullptr";
    if (!takeIf("is")) {
      second = name();
      if (!failed_ && !takeIf("is"))
        fail("write whom you ask for, as in @if favourite NAME NAME is NAME.");
    }
    if (failed_) return {};
    return "sameText(CompareAffection(" + first + ", " + second + "), " + name() + ")";
  }

  std::string setting() {
    const std::string word = take();
    const std::optional<long> which = number(word);
    if (!which || *which < 0 || *which >= SystemRegisterCount) {
      fail("\"" + word + "\" is no setting; settings are numbers from 0 to " +
           std::to_string(SystemRegisterCount - 1) + ".");
      return {};
    }
    return compared("SysReg(" + std::to_string(*which) + ")");
  }

  std::string term() {
    const std::string word = take();
    if (word.empty() || word == ")" || word == "and" || word == "or") {
      fail("the condition ends too early; a register or another question is missing.");
      return {};
    }
    if (word == "skip") return "SysReg(SkipMode) != 0";
    if (word == "voices") return "SysReg(VoiceEnabled) != 0";
    if (word == "music") return "SysReg(BgmEnabled) != 0";
    if (word == "random") return "Random(1) != 0";
    if (word == "setting") return setting();
    if (word == "affection") return affection();
    if (word == "favourite") return favourite();
    const std::optional<int> which = registerNumber(word, story_, place_, problems_);
    if (!which) {
      failed_ = true;
      return {};
    }
    registers_.push_back(*which);
    return compared("Reg(" + std::to_string(*which) + ")");
  }

  std::vector<std::string> tokens_;
  size_t at_ = 0;
  const Story& story_;
  Place place_;
  Problems& problems_;
  bool failed_ = false;
  std::vector<int> registers_;
};

}  // namespace

std::optional<int> registerNumber(const std::string& word, const Story& story, Place place,
                                  Problems& problems) {
  const auto named = story.registers.find(word);
  if (named != story.registers.end()) return named->second;
  const std::optional<long> value = number(word);
  if (!value) {
    std::vector<std::string> known;
    for (const auto& [name, unused] : story.registers)
      known.push_back(name);
    problems.add(place,
                 "no register is called \"" + word + "\"." +
                     problems.suggestion(word, known,
                                         " Name it in story.txt with @register NAME NUMBER, or "
                                         "write its number."));
    return std::nullopt;
  }
  if (*value < 0 || *value >= RegisterCount) {
    problems.add(place, "there is no register " + std::to_string(*value) +
                            "; registers go from 0 to " + std::to_string(RegisterCount - 1) + ".");
    return std::nullopt;
  }
  return static_cast<int>(*value);
}

bool knowsHeroine(const std::string& name, const Story& story, Place place, Problems& problems) {
  const std::vector<std::string>& known = story.heroines;
  if (std::find(known.begin(), known.end(), name) != known.end()) return true;
  if (name.empty())
    problems.add(place, "a name is missing; write whose affection is meant.");
  else
    problems.add(place,
                 "affection does not know \"" + name + "\"." +
                     problems.suggestion(name, known, " Add @heroine " + name + " to story.txt."));
  return false;
}

std::optional<Condition> parseCondition(std::string_view text, const Story& story, Place place,
                                        Problems& problems) {
  return Reader(tokensOf(text), story, place, problems).whole();
}

}  // namespace qv::scenec
