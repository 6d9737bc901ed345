// The text form of the settings, a part of TOML: a table for each key, a line for each value.
// Texts, numbers and bytes are shown as such; what none of these can say exactly is bytes with its
// type. The reader is our own: a file that a person can break must never do worse than be refused,
// and the little that is needed here has no nesting.

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/settings/settings_store.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

constexpr uint32_t TypeText = 1, TypeBinary = 3, TypeNumber = 4;
constexpr size_t BytesInLine = 16;
constexpr std::string_view HexPrefix = "hex:";
constexpr std::string_view Head =
    "# What the game remembers beside its saves. Texts stand in quotes, bytes in a list.\n";

std::string hexByte(uint8_t byte) {
  char text[8];
  snprintf(text, sizeof text, "%02X", byte);
  return text;
}

/// The UTF-8 of a text, when it gives the same bytes back.
std::optional<std::string> exactUtf8(std::string_view shiftJis) {
  std::string utf8 = utf8OfShiftJis(shiftJis);
  const ShiftJisResult back = shiftJisOfUtf8(utf8);
  if (!back.ok || back.text != shiftJis) return std::nullopt;
  return utf8;
}

std::string quotedText(const std::string& utf8) {
  const bool plain = std::none_of(utf8.begin(), utf8.end(), [](char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F || byte == '\'';
  });
  // Backslashes are the usual thing in keys and paths: then nothing is escaped.
  if (plain && utf8.find('\\') != std::string::npos) return "'" + utf8 + "'";
  std::string text = "\"";
  for (const char byte : utf8) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x20 || code == 0x7F) {
      text += "\\u00" + hexByte(code);
    } else {
      if (byte == '"' || byte == '\\') text += '\\';
      text += byte;
    }
  }
  return text + '"';
}

std::string formatName(std::string_view name) {
  const auto utf8 = exactUtf8(name);
  if (utf8 && !utf8->starts_with(HexPrefix)) return quotedText(*utf8);
  std::string hex(HexPrefix);
  for (const char byte : name)
    hex += hexByte(static_cast<uint8_t>(byte));
  return quotedText(hex);
}

std::string formatBytes(const std::vector<uint8_t>& bytes, bool oneLine) {
  std::string text = "[";
  for (size_t at = 0; at < bytes.size(); ++at) {
    const bool newLine = !oneLine && bytes.size() > BytesInLine && at % BytesInLine == 0;
    text += newLine ? "\n  " : at == 0 ? "" : " ";
    text += "0x" + hexByte(bytes[at]);
    if (at + 1 < bytes.size()) text += ',';
  }
  return text + ']';
}

std::string formatValue(const SettingValue& value) {
  const std::vector<uint8_t>& data = value.data;
  if (value.type == TypeText && !data.empty() && data.back() == 0) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size() - 1);
    if (const auto utf8 = exactUtf8(text)) return quotedText(*utf8);
  }
  if (value.type == TypeNumber && data.size() == 4) {
    return std::to_string(static_cast<uint32_t>(data[0]) | static_cast<uint32_t>(data[1]) << 8 |
                          static_cast<uint32_t>(data[2]) << 16 |
                          static_cast<uint32_t>(data[3]) << 24);
  }
  if (value.type == TypeBinary) return formatBytes(data, false);
  return "{ type = " + std::to_string(value.type) + ", bytes = " + formatBytes(data, true) + " }";
}

void appendUtf8(std::string& text, uint32_t character) {
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | (character >> shift & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | character >> 12);
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | character >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

int digitOf(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return 99;
}

bool isBare(char byte) {
  return digitOf(byte) < 10 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         byte == '_' || byte == '-';
}

/// Reads from front to back without going back; each step gives false after a complaint.
class Reader {
 public:
  Reader(std::string_view text, std::string& complaint) : text_(text), complaint_(complaint) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
  }

  bool readFile(SettingsStore::Table& table) {
    std::map<std::string, SettingValue>* values = nullptr;
    for (skipLines(); at_ < text_.size(); skipLines()) {
      std::string name;
      if (take('[')) {
        skipBlanks();
        if (!readName(name)) return false;
        skipBlanks();
        if (!take(']')) return fail("a key is one name in brackets");
        const auto [place, isNew] = table.try_emplace(name);
        if (!isNew) return fail("a key that was there before");
        values = &place->second;
      } else {
        SettingValue value;
        if (!readName(name)) return false;
        if (!values) return fail("a value outside of any key");
        if (!takeEquals() || !readValue(value)) return false;
        if (!values->try_emplace(name, std::move(value)).second) {
          return fail("a name that was there before");
        }
      }
      if (!endLine()) return fail("more in the line than there should be");
    }
    return true;
  }

 private:
  bool fail(const std::string& what) {
    complaint_ = "line " + std::to_string(line_) + ": " + what;
    return false;
  }

  char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool take(char byte) {
    if (at_ >= text_.size() || text_[at_] != byte) return false;
    ++at_;
    return true;
  }
  void skipBlanks() {
    while (here() == ' ' || here() == '\t')
      ++at_;
  }
  /// Over blanks and a comment to the next line; false when something else stands there.
  bool endLine() {
    skipBlanks();
    if (here() == '#') at_ = std::min(text_.find('\n', at_), text_.size());
    if (here() == '\r' && text_.substr(at_, 2) == "\r\n") ++at_;
    if (at_ >= text_.size()) return true;
    if (!take('\n')) return false;
    ++line_;
    return true;
  }
  void skipLines() {
    while (at_ < text_.size() && endLine()) {
    }
  }
  bool takeEquals() {
    skipBlanks();
    if (!take('=')) return fail("a name without its value");
    skipBlanks();
    return true;
  }

  bool readEscape(std::string& text) {
    static constexpr std::string_view Letters = "btnfr\"\\", Meanings = "\b\t\n\f\r\"\\";
    const char letter = here();
    ++at_;
    const size_t simple = Letters.find(letter);
    if (simple != std::string_view::npos) {
      text += Meanings[simple];
      return true;
    }
    const int digits = letter == 'u' ? 4 : letter == 'U' ? 8 : 0;
    uint32_t character = 0;
    for (int i = 0; i < digits; ++i, ++at_) {
      if (digitOf(here()) > 15) return fail("an escape that is none");
      character = character << 4 | static_cast<uint32_t>(digitOf(here()));
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (digits == 0 || character > 0x10FFFF || surrogate) return fail("an escape that is none");
    appendUtf8(text, character);
    return true;
  }

  bool readQuoted(std::string& text) {
    const char quote = here();
    ++at_;
    while (!take(quote)) {
      const auto byte = static_cast<unsigned char>(here());
      if (at_ >= text_.size() || (byte < 0x20 && byte != '\t') || byte == 0x7F) {
        return fail("a text that does not end in its line");
      }
      ++at_;
      if (byte != '\\' || quote == '\'') {
        text += static_cast<char>(byte);
      } else if (!readEscape(text)) {
        return false;
      }
    }
    return true;
  }

  bool readName(std::string& name) {
    std::string utf8;
    if (here() == '"' || here() == '\'') {
      if (!readQuoted(utf8)) return false;
    } else {
      while (isBare(here()))
        utf8 += text_[at_++];
      if (utf8.empty()) return fail("neither a key in brackets nor a name with its value");
    }
    if (!utf8.starts_with(HexPrefix)) {
      ShiftJisResult converted = shiftJisOfUtf8(utf8);
      name = std::move(converted.text);
      return converted.ok || fail("a name that Shift-JIS cannot say");
    }
    for (size_t at = HexPrefix.size(); at < utf8.size(); at += 2) {
      const int high = digitOf(utf8[at]), low = at + 1 < utf8.size() ? digitOf(utf8[at + 1]) : 99;
      if (high > 15 || low > 15) return fail("a name in hexadecimal that is none");
      name += static_cast<char>(high * 16 + low);
    }
    return true;
  }

  bool readValue(SettingValue& value) {
    if (here() == '"' || here() == '\'') {
      std::string utf8;
      if (!readQuoted(utf8)) return false;
      const ShiftJisResult converted = shiftJisOfUtf8(utf8);
      if (!converted.ok) return fail("a text that Shift-JIS cannot say");
      value.type = TypeText;
      value.data.assign(converted.text.begin(), converted.text.end());
      value.data.push_back(0);
      return true;
    }
    if (here() == '[') {
      value.type = TypeBinary;
      return readBytes(value.data);
    }
    if (take('{')) return readTyped(value);
    uint32_t number = 0;
    if (!readNumber(0xFFFFFFFF, number)) return false;
    value.type = TypeNumber;
    for (int shift = 0; shift < 32; shift += 8) {
      value.data.push_back(static_cast<uint8_t>(number >> shift));
    }
    return true;
  }

  /// { type = 7, bytes = [1, 2] }
  bool readTyped(SettingValue& value) {
    static constexpr const char* Form = "a value of a kind of its own is { type = 7, bytes = [1] }";
    std::string name;
    skipBlanks();
    if (!readName(name)) return false;
    if (name != "type") return fail(Form);
    if (!takeEquals() || !readNumber(0xFFFFFFFF, value.type)) return false;
    skipBlanks();
    if (!take(',')) return fail(Form);
    skipBlanks();
    name.clear();
    if (!readName(name)) return false;
    if (name != "bytes") return fail(Form);
    if (!takeEquals() || !readBytes(value.data)) return false;
    skipBlanks();
    return take('}') || fail(Form);
  }

  bool readNumber(uint32_t limit, uint32_t& number) {
    const bool negative = take('-');
    const uint64_t base = text_.substr(at_, 2) == "0x" ? 16 : 10;
    if (base == 16) at_ += 2;
    uint64_t value = 0;
    size_t digits = 0;
    for (; isBare(here()); ++at_, ++digits) {
      const auto digit = static_cast<uint64_t>(digitOf(here()));
      if (digit >= base) return fail("a value that is neither text, number nor bytes");
      value = std::min<uint64_t>(value * base + digit, 0x100000000);
    }
    if (digits == 0 || here() == '.') {
      return fail("a value that is neither text, number nor bytes");
    }
    if (value > limit || (negative && value > 0)) return fail("a number out of its range");
    number = static_cast<uint32_t>(value);
    return true;
  }

  bool readBytes(std::vector<uint8_t>& bytes) {
    if (!take('[')) return fail("a list of bytes is missing");
    for (skipLines(); !take(']'); skipLines()) {
      uint32_t byte = 0;
      if (!readNumber(0xFF, byte)) return false;
      bytes.push_back(static_cast<uint8_t>(byte));
      skipLines();
      if (!take(',') && here() != ']') return fail("a list of bytes that does not end");
    }
    return true;
  }

  std::string_view text_;
  std::string& complaint_;
  size_t at_ = 0, line_ = 1;
};

}  // namespace

std::optional<SettingsStore::Table> SettingsStore::parse(std::string_view text,
                                                         std::string& complaint) {
  if (text.size() > MaxFileBytes) {
    complaint = "line 1: larger than a mebibyte";
    return std::nullopt;
  }
  Table table;
  if (!Reader(text, complaint).readFile(table)) return std::nullopt;
  return table;
}

std::string SettingsStore::format(const Table& table) {
  std::string text(Head);
  for (const auto& [key, values] : table) {
    text += "\n[" + formatName(key) + "]\n";
    for (const auto& [name, value] : values) {
      text += formatName(name) + " = " + formatValue(value) + "\n";
    }
  }
  return text;
}

}  // namespace qv
