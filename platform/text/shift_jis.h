#pragma once

/// Shift-JIS bytes: the lead and trail rules that every walk over text uses, and the conversion
/// to and from Unicode by a table of our own (CP932, generated once), so that no locale matters.
/// Pure functions; any thread.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// 0x81..0x9F and 0xE0..0xFC.
constexpr bool isLeadByte(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}
/// 0x40..0x7E and 0x80..0xFC.
constexpr bool isTrailByte(unsigned char byte) {
  return (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFC);
}
/// Bytes of the character at `at`: 2 where a lead byte is followed by a trail byte, else 1;
/// 0 at the end.
constexpr size_t characterBytes(std::string_view text, size_t at) {
  if (at >= text.size()) return 0;
  const bool two = isLeadByte(static_cast<unsigned char>(text[at])) && at + 1 < text.size() &&
                   isTrailByte(static_cast<unsigned char>(text[at + 1]));
  return two ? 2 : 1;
}

/// Unicode of one character (one byte, or lead * 256 + trail); 0 where the table has none.
/// F040..F9FC are the external characters U+E000..U+E757.
char32_t unicodeOfShiftJis(uint16_t code);
/// The reverse; 0 for what Shift-JIS cannot say (and for U+0000). Of several codes of one character
/// it gives the one that the classic platform chose. Neighbouring code points of the same sign
/// (wave dash, minus, double bar, long dash, cent, pound, yen, not, broken bar, overline) are
/// taken as its full-width form; bytes 5C and 7E are backslash and tilde.
uint16_t shiftJisOfUnicode(char32_t character);

/// UTF-8 of a text; bytes that are no character become U+FFFD.
std::string utf8OfShiftJis(std::string_view text);

struct ShiftJisResult {
  bool ok = false;
  std::string text;  ///< the bytes when ok
  size_t badAt = 0;  ///< byte offset of the first character that cannot be said
  char32_t bad = 0;  ///< that character, or U+FFFD for malformed UTF-8
};
/// Shift-JIS of a UTF-8 text. A zero byte cannot be said: texts of the engine end at it.
ShiftJisResult shiftJisOfUtf8(std::string_view utf8);

/// A text of our own sources in Shift-JIS; asserts that it can be said. It converts at each call:
/// bind it once, `static const std::string caption = sjis("...");`.
std::string sjis(std::string_view utf8);

}  // namespace qv
