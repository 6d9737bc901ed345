// The text form of the settings: a TOML table for each key, a TOML value for each value. Texts,
// numbers and bytes are shown as such; what none of these can say exactly is bytes with its type.

#include <algorithm>
#include <cstdio>

#include "platform/settings/settings_store.h"
#include "platform/text/shift_jis.h"

// Nothing that we write nests deeper than a list in a table in a table.
#define TOML_HEADER_ONLY 1
#define TOML_EXCEPTIONS 0
#define TOML_ENABLE_FORMATTERS 0
#define TOML_MAX_NESTED_VALUES 16
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#endif
#include <toml++/toml.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

namespace qv {

namespace {

constexpr uint32_t TypeText = 1, TypeBinary = 3, TypeNumber = 4;
// Each point outside quotes opens a table within a table, which the library takes apart again by
// recursion. Quotes are not told apart here; our own texts escape their points where there are
// many.
constexpr size_t MaxPointsInLine = 512, MaxPlainPoints = 64;
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
  const auto points = std::count(utf8.begin(), utf8.end(), '.');
  const bool escapePoints = static_cast<size_t>(points) > MaxPlainPoints;
  const bool plain = std::none_of(utf8.begin(), utf8.end(), [](char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F || byte == '\'';
  });
  // Backslashes are the usual thing in keys and paths: then nothing is escaped.
  if (plain && !escapePoints && utf8.find('\\') != std::string::npos) return "'" + utf8 + "'";
  std::string text = "\"";
  for (const char byte : utf8) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x20 || code == 0x7F || (byte == '.' && escapePoints)) {
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

/// The reader's half; each step gives false after setting the complaint.
class Reader {
 public:
  explicit Reader(std::string& complaint) : complaint_(complaint) {}

  bool readKeys(const toml::table& root, SettingsStore::Table& keys) {
    for (const auto& [key, node] : root) {
      const toml::table* values = node.as_table();
      if (!values || values->is_inline()) return fail(key.source(), "a value outside of any key");
      std::string name;
      if (!readName(key, name) || !readValues(*values, keys[name])) return false;
    }
    return true;
  }

 private:
  bool fail(const toml::source_region& where, const char* what) {
    complaint_ = "line " + std::to_string(where.begin.line) + ": " + what;
    return false;
  }

  bool readName(const toml::key& key, std::string& name) {
    const std::string_view text = key.str();
    if (!text.starts_with(HexPrefix)) {
      ShiftJisResult converted = shiftJisOfUtf8(text);
      name = std::move(converted.text);
      return converted.ok || fail(key.source(), "a name that Shift-JIS cannot say");
    }
    const std::string_view digits = text.substr(HexPrefix.size());
    const auto digit = [](char byte) {
      const std::string_view all = "0123456789ABCDEF";
      return all.find(byte >= 'a' && byte <= 'f' ? static_cast<char>(byte - 32) : byte);
    };
    for (size_t at = 0; at < digits.size(); at += 2) {
      const size_t high = digit(digits[at]);
      const size_t low = at + 1 < digits.size() ? digit(digits[at + 1]) : std::string::npos;
      if (high > 15 || low > 15) return fail(key.source(), "a name in hexadecimal that is none");
      name += static_cast<char>(high * 16 + low);
    }
    return true;
  }

  bool readValues(const toml::table& table, std::map<std::string, SettingValue>& values) {
    for (const auto& [key, node] : table) {
      std::string name;
      if (!readName(key, name) || !readValue(node, values[name])) return false;
    }
    return true;
  }

  bool readValue(const toml::node& node, SettingValue& value) {
    value = SettingValue{};
    if (const auto* text = node.as_string()) {
      const ShiftJisResult converted = shiftJisOfUtf8(text->get());
      if (!converted.ok) return fail(node.source(), "a text that Shift-JIS cannot say");
      value.type = TypeText;
      value.data.assign(converted.text.begin(), converted.text.end());
      value.data.push_back(0);
      return true;
    }
    if (node.is_integer()) {
      uint32_t number = 0;
      if (!readNumber(node, 0xFFFFFFFF, number)) return false;
      value.type = TypeNumber;
      for (int shift = 0; shift < 32; shift += 8) {
        value.data.push_back(static_cast<uint8_t>(number >> shift));
      }
      return true;
    }
    if (const toml::array* bytes = node.as_array()) {
      value.type = TypeBinary;
      return readBytes(*bytes, value.data);
    }
    if (const toml::table* typed = node.as_table()) {
      const toml::node* type = typed->get("type");
      const toml::node* bytes = typed->get("bytes");
      if (type && bytes && bytes->is_array() && typed->size() == 2) {
        return readNumber(*type, 0xFFFFFFFF, value.type) &&
               readBytes(*bytes->as_array(), value.data);
      }
    }
    return fail(node.source(), "a value that is neither text, number nor bytes");
  }

  bool readNumber(const toml::node& node, int64_t limit, uint32_t& number) {
    const auto* given = node.as_integer();
    if (!given || given->get() < 0 || given->get() > limit) {
      return fail(node.source(), "a number out of its range");
    }
    number = static_cast<uint32_t>(given->get());
    return true;
  }

  bool readBytes(const toml::array& array, std::vector<uint8_t>& bytes) {
    bytes.reserve(array.size());
    for (const toml::node& node : array) {
      uint32_t byte = 0;
      if (!readNumber(node, 0xFF, byte)) return false;
      bytes.push_back(static_cast<uint8_t>(byte));
    }
    return true;
  }

  std::string& complaint_;
};

bool isBounded(std::string_view text, std::string& complaint) {
  if (text.size() > SettingsStore::MaxFileBytes) {
    complaint = "line 1: larger than a mebibyte";
    return false;
  }
  size_t points = 0, line = 1;
  for (const char byte : text) {
    if (byte == '\n') {
      points = 0;
      ++line;
    } else if (byte == '.' && ++points > MaxPointsInLine) {
      complaint = "line " + std::to_string(line) + ": too many points";
      return false;
    }
  }
  return true;
}

}  // namespace

std::optional<SettingsStore::Table> SettingsStore::parse(std::string_view text,
                                                         std::string& complaint) {
  if (!isBounded(text, complaint)) return std::nullopt;
  const toml::parse_result parsed = toml::parse(text);
  if (!parsed) {
    complaint = "line " + std::to_string(parsed.error().source().begin.line) + ": " +
                std::string(parsed.error().description());
    return std::nullopt;
  }
  Table keys;
  if (!Reader(complaint).readKeys(parsed.table(), keys)) return std::nullopt;
  return keys;
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
