#include "platform/text/shift_jis.h"

#include <array>
#include <cassert>
#include <utility>

namespace qv {

namespace {

constexpr size_t RowCharacters = 188;
constexpr char16_t Gap = u'.';
constexpr char32_t Malformed = 0xFFFD;

constexpr char32_t FirstExternal = 0xE000, LastExternal = 0xE757;
constexpr uint8_t FirstExternalLead = 0xF0, LastExternalLead = 0xF9;

constexpr char32_t FirstHalfKatakana = 0xFF61;
constexpr uint8_t FirstHalfKatakanaByte = 0xA1, LastHalfKatakanaByte = 0xDF;

struct Row {
  uint8_t lead;
  const char16_t* characters;  ///< RowCharacters of them
};
constexpr Row Rows[] = {
#include "platform/text/cp932_table.inc"
};

/// What one types, and other systems' converters give, for characters that this code page has
/// under a neighbouring code point: taken on the way in, never given on the way out.
struct Compatible {
  char16_t character;
  uint16_t code;
};
constexpr Compatible CompatibleForms[] = {
    {0x00A2, 0x8191}, {0x00A3, 0x8192}, {0x00A5, 0x818F}, {0x00A6, 0xFA55},
    {0x00AC, 0x81CA}, {0x00AF, 0x8150}, {0x2014, 0x815C}, {0x2016, 0x8161},
    {0x203E, 0x8150}, {0x2212, 0x817C}, {0x301C, 0x8160},
};

constexpr size_t trailIndex(uint8_t trail) {
  return trail - (trail > 0x7F ? 0x41u : 0x40u);
}
constexpr uint8_t trailOfIndex(size_t index) {
  return static_cast<uint8_t>(index + (index < 0x3F ? 0x40 : 0x41));
}

/// Order in which a character's several codes are tried: the standard's rows first, then row 13,
/// then the extension at FA, and the same extension's double at ED last, as the classic platform
/// chose.
constexpr int preference(uint8_t lead) {
  if (lead == 0x87) return 1;
  if (lead >= 0xFA) return 2;
  if (lead == 0xED || lead == 0xEE) return 3;
  return 0;
}

/// Both directions; made once from the rows. The reverse has a page for each 256 code points that
/// have characters; page 0 is empty.
class Tables {
 public:
  Tables() {
    for (const Row& row : Rows)
      forward_[row.lead] = row.characters;
    for (int turn = 0; turn <= 3; ++turn)
      for (const Row& row : Rows)
        if (preference(row.lead) == turn) enterRow(row);
    for (const Compatible& form : CompatibleForms)
      enter(form.character, form.code);
  }

  char32_t unicode(uint8_t lead, uint8_t trail) const {
    const char16_t* row = forward_[lead];
    if (!row) return 0;
    const char16_t character = row[trailIndex(trail)];
    return character == Gap ? 0 : character;
  }
  uint16_t code(char16_t character) const {
    return pages_[pageOf_[character >> 8]][character & 0xFF];
  }

 private:
  static constexpr size_t MostPages = 112;

  void enterRow(const Row& row) {
    for (size_t index = 0; index < RowCharacters; ++index)
      if (row.characters[index] != Gap)
        enter(row.characters[index], static_cast<uint16_t>(row.lead << 8 | trailOfIndex(index)));
  }
  void enter(char16_t character, uint16_t code) {
    uint8_t& page = pageOf_[character >> 8];
    if (page == 0) {
      assert(pageCount_ < MostPages);
      page = static_cast<uint8_t>(pageCount_++);
    }
    uint16_t& place = pages_[page][character & 0xFF];
    if (place == 0) place = code;
  }

  std::array<const char16_t*, 256> forward_{};
  std::array<uint8_t, 256> pageOf_{};
  std::array<std::array<uint16_t, 256>, MostPages> pages_{};
  size_t pageCount_ = 1;
};

const Tables& tables() {
  static const Tables made;
  return made;
}

void appendUtf8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

struct Decoded {
  char32_t character = Malformed;
  size_t bytes = 1;
  bool ok = false;
};

/// One character of UTF-8 in its shortest form; surrogates are malformed.
Decoded decodeUtf8(std::string_view text, size_t at) {
  const auto lead = static_cast<uint8_t>(text[at]);
  if (lead < 0x80) return {lead, 1, true};
  const size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < bytes) return {};
  char32_t character = lead & (0x7Fu >> bytes);
  for (size_t next = 1; next < bytes; ++next) {
    const auto byte = static_cast<uint8_t>(text[at + next]);
    if ((byte & 0xC0) != 0x80) return {};
    character = character << 6 | (byte & 0x3Fu);
  }
  constexpr char32_t Least[] = {0, 0, 0x80, 0x800, 0x10000};
  if (character < Least[bytes] || character > 0x10FFFF) return {};
  if (character >= 0xD800 && character <= 0xDFFF) return {};
  return {character, bytes, true};
}

}  // namespace

char32_t unicodeOfShiftJis(uint16_t code) {
  if (code < 0x80) return code;
  if (code >= FirstHalfKatakanaByte && code <= LastHalfKatakanaByte)
    return FirstHalfKatakana + (code - FirstHalfKatakanaByte);
  const auto lead = static_cast<uint8_t>(code >> 8), trail = static_cast<uint8_t>(code & 0xFF);
  if (!isLeadByte(lead) || !isTrailByte(trail)) return 0;
  if (lead >= FirstExternalLead && lead <= LastExternalLead)
    return FirstExternal + (lead - FirstExternalLead) * RowCharacters + trailIndex(trail);
  return tables().unicode(lead, trail);
}

uint16_t shiftJisOfUnicode(char32_t character) {
  if (character < 0x80) return static_cast<uint16_t>(character);
  if (character > 0xFFFF) return 0;
  if (character >= FirstExternal && character <= LastExternal) {
    const size_t place = character - FirstExternal;
    return static_cast<uint16_t>((FirstExternalLead + place / RowCharacters) << 8 |
                                 trailOfIndex(place % RowCharacters));
  }
  constexpr char32_t LastHalfKatakana =
      FirstHalfKatakana + (LastHalfKatakanaByte - FirstHalfKatakanaByte);
  if (character >= FirstHalfKatakana && character <= LastHalfKatakana)
    return static_cast<uint16_t>(FirstHalfKatakanaByte + (character - FirstHalfKatakana));
  return tables().code(static_cast<char16_t>(character));
}

std::string utf8OfShiftJis(std::string_view text) {
  std::string result;
  result.reserve(text.size() * 3 / 2);
  for (size_t at = 0; at < text.size();) {
    const size_t bytes = characterBytes(text, at);
    const auto first = static_cast<uint8_t>(text[at]);
    const auto code = bytes == 2
                          ? static_cast<uint16_t>(first << 8 | static_cast<uint8_t>(text[at + 1]))
                          : static_cast<uint16_t>(first);
    const char32_t character = unicodeOfShiftJis(code);
    appendUtf8(result, character == 0 && code != 0 ? Malformed : character);
    at += bytes;
  }
  return result;
}

ShiftJisResult shiftJisOfUtf8(std::string_view utf8) {
  ShiftJisResult result;
  result.text.reserve(utf8.size());
  for (size_t at = 0; at < utf8.size();) {
    const Decoded decoded = decodeUtf8(utf8, at);
    const uint16_t code = decoded.ok ? shiftJisOfUnicode(decoded.character) : 0;
    if (code == 0) {
      result.text.clear();
      result.badAt = at;
      result.bad = decoded.character;
      return result;
    }
    if (code > 0xFF) result.text += static_cast<char>(code >> 8);
    result.text += static_cast<char>(code & 0xFF);
    at += decoded.bytes;
  }
  result.ok = true;
  return result;
}

std::string sjis(std::string_view utf8) {
  ShiftJisResult result = shiftJisOfUtf8(utf8);
  assert(result.ok && "a text of the system's own must be sayable in Shift-JIS");
  return std::move(result.text);
}

}  // namespace qv
