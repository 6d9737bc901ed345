#include "scenes/generator/text.h"

#include <cstdio>

#include "platform/text/shift_jis.h"

namespace qv::scenec {

namespace {

constexpr std::string_view WideSpace = "\xE3\x80\x80";
constexpr std::string_view WideArrow = "\xE2\x86\x92";

bool isSpace(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r';
}

/// Bytes of the space that stands at `at`; 0 when none does.
size_t spaceAt(std::string_view text, size_t at) {
  if (at >= text.size()) return 0;
  if (isSpace(text[at])) return 1;
  return startsWith(text.substr(at), WideSpace) ? WideSpace.size() : 0;
}

}  // namespace

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool isAscii(std::string_view text) {
  for (const char byte : text)
    if (static_cast<unsigned char>(byte) >= 0x80) return false;
  return true;
}

std::string_view trimAscii(std::string_view text) {
  while (!text.empty() && isSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

std::string_view trim(std::string_view text) {
  while (const size_t bytes = spaceAt(text, 0))
    text.remove_prefix(bytes);
  for (;;) {
    if (!text.empty() && isSpace(text.back())) {
      text.remove_suffix(1);
    } else if (text.size() >= WideSpace.size() &&
               text.substr(text.size() - WideSpace.size()) == WideSpace) {
      text.remove_suffix(WideSpace.size());
    } else {
      return text;
    }
  }
}

std::string firstWord(std::string_view text, std::string_view& rest) {
  text = trim(text);
  size_t end = 0;
  while (end < text.size() && spaceAt(text, end) == 0)
    ++end;
  rest = trim(text.substr(end));
  return std::string(text.substr(0, end));
}

std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> list;
  std::string_view rest = text;
  for (;;) {
    std::string word = firstWord(rest, rest);
    if (word.empty()) return list;
    list.push_back(std::move(word));
  }
}

std::string narrow(std::string_view text) {
  std::string result;
  for (size_t at = 0; at < text.size(); ++at) {
    // U+FF01..U+FF3F are EF BC 81..BF, U+FF40..U+FF5E are EF BD 80..9E.
    if (text[at] == '\xEF' && at + 2 < text.size()) {
      const unsigned char second = static_cast<unsigned char>(text[at + 1]);
      const unsigned char third = static_cast<unsigned char>(text[at + 2]);
      if (second == 0xBC && third >= 0x81 && third <= 0xBF) {
        result += static_cast<char>(third - 0x81 + '!');
        at += 2;
        continue;
      }
      if (second == 0xBD && third >= 0x80 && third <= 0x9E) {
        result += static_cast<char>(third - 0x80 + '`');
        at += 2;
        continue;
      }
    }
    result += text[at];
  }
  return result;
}

std::optional<long> number(std::string_view text) {
  const std::string plain = narrow(text);
  size_t at = 0;
  const bool negative = !plain.empty() && plain[0] == '-';
  if (!plain.empty() && (plain[0] == '-' || plain[0] == '+')) ++at;
  if (at == plain.size() || plain.size() - at > 9) return std::nullopt;
  long value = 0;
  for (; at < plain.size(); ++at) {
    if (plain[at] < '0' || plain[at] > '9') return std::nullopt;
    value = value * 10 + (plain[at] - '0');
  }
  return negative ? -value : value;
}

std::optional<long> tenths(std::string_view text) {
  std::string plain = narrow(text);
  if (plain.empty() || plain.back() != 's') {
    const std::optional<long> value = number(plain);
    return value && *value >= 0 ? value : std::nullopt;
  }
  plain.pop_back();
  const size_t point = plain.find('.');
  const std::optional<long> whole = number(std::string_view(plain).substr(0, point));
  if (!whole || *whole < 0 || *whole > 99'999'999) return std::nullopt;
  if (point == std::string::npos) return *whole * 10;
  const std::string part = plain.substr(point + 1);
  if (part.size() != 1 || part[0] < '0' || part[0] > '9') return std::nullopt;
  return *whole * 10 + (part[0] - '0');
}

size_t findArrow(std::string_view text, size_t& length) {
  const size_t narrowAt = text.rfind("->");
  const size_t wideAt = text.rfind(WideArrow);
  const bool wide =
      wideAt != std::string_view::npos && (narrowAt == std::string_view::npos || wideAt > narrowAt);
  length = wide ? WideArrow.size() : 2;
  return wide ? wideAt : narrowAt;
}

std::string literal(std::string_view utf8) {
  const ShiftJisResult converted = shiftJisOfUtf8(utf8);
  std::string code = "\"";
  for (const char byte : converted.ok ? converted.text : std::string("?")) {
    const unsigned char value = static_cast<unsigned char>(byte);
    if (byte == '"' || byte == '\\') {
      code += '\\';
      code += byte;
    } else if (value >= 0x20 && value < 0x7F) {
      code += byte;
    } else {
      // Octal, because a hexadecimal escape would swallow the letters that follow it.
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\%03o", value);
      code += escape;
    }
  }
  return code + "\"";
}

std::string unsayable(std::string_view utf8) {
  for (const char byte : utf8)
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F)
      return "a control character stands in the text; remove it.";
  const ShiftJisResult converted = shiftJisOfUtf8(utf8);
  if (converted.ok) return {};
  if (converted.bad == 0xFFFD) return "this line is not UTF-8; save the file as UTF-8.";
  char code[16];
  std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(converted.bad));
  std::string_view rest = utf8.substr(converted.badAt);
  size_t bytes = 1;
  while (bytes < rest.size() && (static_cast<unsigned char>(rest[bytes]) & 0xC0) == 0x80)
    ++bytes;
  return "\"" + std::string(rest.substr(0, bytes)) + "\" (" + code +
         ") cannot be said in Shift-JIS; choose another character.";
}

}  // namespace qv::scenec
