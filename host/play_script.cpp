#include "host/play_script.h"

#include <array>
#include <charconv>

#include "platform/display/display.h"
#include "platform/display/key_codes.h"

namespace qv {

namespace {

using Verb = ScriptLine::Verb;
using Expectation = ScriptLine::Expectation;

constexpr size_t MostLines = 1'000'000, MostLineBytes = 4096;

struct NamedKey {
  const char* name;
  int key;
};
constexpr std::array NamedKeys{
    NamedKey{"Return", KeyReturn}, NamedKey{"Esc", KeyEscape},    NamedKey{"Space", KeySpace},
    NamedKey{"Up", KeyUp},         NamedKey{"Down", KeyDown},     NamedKey{"Left", KeyLeft},
    NamedKey{"Right", KeyRight},   NamedKey{"PageUp", KeyPageUp}, NamedKey{"PageDown", KeyPageDown},
    NamedKey{"Home", KeyHome},     NamedKey{"End", KeyEnd},       NamedKey{"Tab", KeyTab},
};

struct NamedAnswer {
  const char* name;
  BoxAnswer answer;
};
constexpr std::array NamedAnswers{
    NamedAnswer{"yes", BoxAnswer::Yes},       NamedAnswer{"no", BoxAnswer::No},
    NamedAnswer{"ok", BoxAnswer::Ok},         NamedAnswer{"retry", BoxAnswer::Retry},
    NamedAnswer{"cancel", BoxAnswer::Cancel},
};

/// The words of one line, read from left to right. The first failure is kept as a complaint.
class Words {
 public:
  explicit Words(std::string_view text) : rest_(text) { skipBlanks(); }

  bool done() const { return rest_.empty(); }
  const std::string& complaint() const { return complaint_; }
  bool fail(const std::string& what) {
    if (complaint_.empty()) complaint_ = what;
    return false;
  }

  std::string_view word() {
    const size_t end = std::min(rest_.find_first_of(" \t"), rest_.size());
    const std::string_view result = rest_.substr(0, end);
    rest_.remove_prefix(end);
    skipBlanks();
    return result;
  }

  bool name(std::string& target, const char* what) {
    target = word();
    return !target.empty() || fail(std::string("here belongs ") + what);
  }

  template <typename Number>
  bool number(Number& target, const char* what, int base = 10) {
    const std::string_view digits = word();
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), target, base);
    return (error == std::errc() && end == digits.data() + digits.size() && !digits.empty()) ||
           fail(std::string("here belongs ") + what + ", not \"" + std::string(digits) + "\"");
  }

  /// "text", with \" \\ and \n inside.
  bool readQuoted(std::string& target) {
    if (rest_.empty() || rest_.front() != '"') return fail("here belongs a text in double quotes");
    target.clear();
    for (size_t i = 1; i < rest_.size(); ++i) {
      char c = rest_[i];
      if (c == '"') {
        rest_.remove_prefix(i + 1);
        skipBlanks();
        return true;
      }
      if (c == '\\' && i + 1 < rest_.size()) {
        c = rest_[++i];
        if (c == 'n') c = '\n';
      }
      target += c;
    }
    return fail("the text has no closing double quote");
  }

 private:
  void skipBlanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t'))
      rest_.remove_prefix(1);
  }
  std::string_view rest_;
  std::string complaint_;
};

bool onScreen(Words& words, ScriptLine& line) {
  line.hasPosition = true;
  if (!words.number(line.x, "a column") || !words.number(line.y, "a row")) return false;
  return (line.x >= 0 && line.x < ScreenWidth && line.y >= 0 && line.y < ScreenHeight) ||
         words.fail("the place lies outside the 640 by 480 screen");
}

bool parsePosition(Words& words, ScriptLine& line) {
  return onScreen(words, line);
}

bool parseDrag(Words& words, ScriptLine& line) {
  ScriptLine target;
  if (!onScreen(words, line) || !onScreen(words, target)) return false;
  line.toX = target.x;
  line.toY = target.y;
  return true;
}

bool parseRight(Words& words, ScriptLine& line) {
  return words.done() || onScreen(words, line);
}

bool parseWheel(Words& words, ScriptLine& line) {
  const std::string_view way = words.word();
  line.y = way == "UP" ? 1 : way == "DOWN" ? -1 : 0;
  return line.y != 0 || words.fail("a wheel turns UP or DOWN");
}

bool parseKey(Words& words, ScriptLine& line) {
  const std::string name(words.word());
  const auto key = keyOfName(name);
  if (!key) return words.fail("there is no key named \"" + name + "\"");
  line.key = *key;
  return true;
}

bool parseType(Words& words, ScriptLine& line) {
  return words.readQuoted(line.text);
}

bool parseRead(Words& words, ScriptLine& line) {
  if (!words.name(line.text, "the name of a scene, or \"choice\"")) return false;
  if (line.text == "choice") line.text.clear();
  return true;
}

bool parseSleep(Words& words, ScriptLine& line) {
  return words.number(line.millis, "a number of milliseconds");
}

bool parseAnswer(Words& words, ScriptLine& line) {
  const std::string name(words.word());
  for (const NamedAnswer& known : NamedAnswers)
    if (name == known.name) {
      line.answer = known.answer;
      return true;
    }
  return words.fail("a box is answered by yes, no, ok, retry or cancel");
}

bool parseShot(Words& words, ScriptLine& line) {
  return words.name(line.text, "the name of a picture file");
}

bool parseNothing(Words&, ScriptLine&) {
  return true;
}

bool expectName(Words& words, ScriptLine& line) {
  return words.name(line.text, "a name");
}
bool expectValue(Words& words, ScriptLine& line) {
  return words.number(line.value, "a number");
}
bool expectRegister(Words& words, ScriptLine& line) {
  return words.number(line.registerNumber, "a register's number") && expectValue(words, line);
}
bool expectString(Words& words, ScriptLine& line) {
  return words.number(line.registerNumber, "a register's number") && words.readQuoted(line.text);
}
bool expectPixel(Words& words, ScriptLine& line) {
  return onScreen(words, line) && words.number(line.value, "a colour as RRGGBB", 16);
}
bool expectSound(Words& words, ScriptLine& line) {
  const std::string_view kind = words.word();
  if (kind != "wave" && kind != "song") return words.fail("a sound is a wave or a song");
  line.expectation = kind == "wave" ? Expectation::Wave : Expectation::Song;
  return words.name(line.text, "a sound's name, or none");
}

struct ExpectationForm {
  const char* name;
  Expectation expectation;
  bool (*parse)(Words&, ScriptLine&);
};
constexpr std::array ExpectationForms{
    ExpectationForm{"scene", Expectation::Scene, expectName},
    ExpectationForm{"step", Expectation::Step, expectValue},
    ExpectationForm{"reg", Expectation::Reg, expectRegister},
    ExpectationForm{"sysreg", Expectation::SysReg, expectRegister},
    ExpectationForm{"strreg", Expectation::StrReg, expectString},
    ExpectationForm{"shown", Expectation::Shown, expectName},
    ExpectationForm{"hidden", Expectation::Hidden, expectName},
    ExpectationForm{"pixel", Expectation::Pixel, expectPixel},
    ExpectationForm{"sound", Expectation::Wave, expectSound},
};

bool parseExpect(Words& words, ScriptLine& line) {
  const std::string name(words.word());
  for (const ExpectationForm& form : ExpectationForms)
    if (name == form.name) {
      line.expectation = form.expectation;
      return form.parse(words, line);
    }
  return words.fail("nothing can be expected of \"" + name + "\"");
}

struct VerbForm {
  const char* name;
  Verb verb;
  enum class Now { Never, May, Must } now;
  bool (*parse)(Words&, ScriptLine&);
};
constexpr std::array VerbForms{
    VerbForm{"ready", Verb::Ready, VerbForm::Now::Never, parseNothing},
    VerbForm{"move", Verb::Move, VerbForm::Now::May, parsePosition},
    VerbForm{"click", Verb::Click, VerbForm::Now::May, parsePosition},
    VerbForm{"press", Verb::Press, VerbForm::Now::May, parsePosition},
    VerbForm{"release", Verb::Release, VerbForm::Now::May, parsePosition},
    VerbForm{"right", Verb::Right, VerbForm::Now::May, parseRight},
    VerbForm{"drag", Verb::Drag, VerbForm::Now::May, parseDrag},
    VerbForm{"wheel", Verb::Wheel, VerbForm::Now::May, parseWheel},
    VerbForm{"key", Verb::Key, VerbForm::Now::May, parseKey},
    VerbForm{"type", Verb::Type, VerbForm::Now::May, parseType},
    VerbForm{"read", Verb::Read, VerbForm::Now::Never, parseRead},
    VerbForm{"minimise", Verb::Minimise, VerbForm::Now::Must, parseNothing},
    VerbForm{"restore", Verb::Restore, VerbForm::Now::Must, parseNothing},
    VerbForm{"close", Verb::Close, VerbForm::Now::Must, parseNothing},
    VerbForm{"sleep", Verb::Sleep, VerbForm::Now::Never, parseSleep},
    VerbForm{"answer", Verb::Answer, VerbForm::Now::Never, parseAnswer},
    VerbForm{"shot", Verb::Shot, VerbForm::Now::Never, parseShot},
    VerbForm{"expect", Verb::Expect, VerbForm::Now::Never, parseExpect},
    VerbForm{"quit", Verb::Quit, VerbForm::Now::Never, parseNothing},
};

bool parseVerb(Words& words, ScriptLine& line) {
  std::string name(words.word());
  if (name.starts_with('@')) {
    Words ordinal(std::string_view(name).substr(1));
    if (!ordinal.number(line.waitOrdinal, "the number of a wait") || line.waitOrdinal == 0)
      return words.fail("after @ belongs the number of a wait, from 1");
    name = words.word();
  }
  if (name == "now") {
    line.now = true;
    name = words.word();
  }
  for (const VerbForm& form : VerbForms) {
    if (name != form.name) continue;
    if (line.now && form.now == VerbForm::Now::Never)
      return words.fail("\"" + name + "\" cannot stand behind now");
    if (!line.now && form.now == VerbForm::Now::Must)
      return words.fail("\"" + name + "\" stands behind now only");
    line.verb = form.verb;
    return form.parse(words, line);
  }
  return words.fail("\"" + name + "\" is no word of a play script");
}

/// Nothing for a good line; otherwise what is wrong.
std::string parseLine(std::string_view text, ScriptLine& line) {
  Words words(text);
  if (parseVerb(words, line) && !words.done())
    words.fail("there is more on the line than belongs there");
  return words.complaint();
}

}  // namespace

ParsedScript parsePlayScript(std::string_view utf8) {
  ParsedScript result;
  int number = 0;
  while (!utf8.empty()) {
    const size_t end = std::min(utf8.find('\n'), utf8.size());
    std::string_view text = utf8.substr(0, end);
    utf8.remove_prefix(std::min(end + 1, utf8.size()));
    ++number;
    while (!text.empty() && (text.back() == '\r' || text.back() == ' ' || text.back() == '\t'))
      text.remove_suffix(1);
    const size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos || text[start] == '#') continue;
    ScriptLine line;
    line.number = number;
    std::string complaint = text.size() > MostLineBytes ? "the line is too long"
                            : result.lines.size() >= MostLines
                                ? "the script has too many lines"
                                : parseLine(text.substr(start), line);
    if (!complaint.empty()) {
      result.complaint = "line " + std::to_string(number) + ": " + complaint;
      return result;
    }
    line.source = text.substr(start);
    result.lines.push_back(std::move(line));
  }
  return result;
}

std::optional<int> keyOfName(std::string_view name) {
  for (const NamedKey& known : NamedKeys)
    if (name == known.name) return known.key;
  if (name.size() == 1 && name[0] >= '0' && name[0] <= '9') return Key0 + (name[0] - '0');
  if (name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z') return KeyA + (name[0] - 'A');
  if (name.size() == 4 && name.starts_with("Num") && name[3] >= '0' && name[3] <= '9')
    return KeyNum0 + (name[3] - '0');
  for (int i = 0; i < 12; ++i)
    if (name == "F" + std::to_string(i + 1)) return KeyF1 + i;
  return std::nullopt;
}

std::string nameOfKey(int key) {
  for (const NamedKey& known : NamedKeys)
    if (key == known.key) return known.name;
  if (key >= Key0 && key <= Key0 + 9) return std::string(1, static_cast<char>('0' + key - Key0));
  if (key >= KeyA && key <= KeyA + 25) return std::string(1, static_cast<char>('A' + key - KeyA));
  if (key >= KeyNum0 && key <= KeyNum0 + 9) return "Num" + std::to_string(key - KeyNum0);
  if (key >= KeyF1 && key <= KeyF1 + 11) return "F" + std::to_string(key - KeyF1 + 1);
  return {};
}

std::string quotedText(std::string_view utf8) {
  std::string result = "\"";
  for (const char c : utf8) {
    if (c == '"' || c == '\\') result += '\\';
    if (c == '\n')
      result += "\\n";
    else
      result += c;
  }
  return result + '"';
}

}  // namespace qv
