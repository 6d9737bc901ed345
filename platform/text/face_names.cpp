#include "platform/text/face_names.h"

#include <map>
#include <string>
#include <utility>

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

// As they are after folding: no spaces, half-width Latin letters in lower case.
constexpr std::pair<const char*, FontFace> Names[] = {
    {"msゴシック", FontFace::Gothic},
    {"msｺﾞｼｯｸ", FontFace::Gothic},
    {"msgothic", FontFace::Gothic},
    {"mspゴシック", FontFace::ProportionalGothic},
    {"mspｺﾞｼｯｸ", FontFace::ProportionalGothic},
    {"mspgothic", FontFace::ProportionalGothic},
    {"ms明朝", FontFace::Mincho},
    {"msmincho", FontFace::Mincho},
    {"msp明朝", FontFace::ProportionalMincho},
    {"mspmincho", FontFace::ProportionalMincho},
};

constexpr uint16_t FullWidthSpace = 0x8140, FullWidthA = 0x8260, FullWidthLittleA = 0x8281;
constexpr uint16_t Letters = 26;

/// The name without spaces, its Latin letters half as wide and small.
std::string folded(std::string_view name) {
  std::string result;
  for (size_t at = 0, bytes; (bytes = characterBytes(name, at)) != 0; at += bytes) {
    if (bytes == 1) {
      const char letter = name[at];
      if (letter == ' ') continue;
      const bool large = letter >= 'A' && letter <= 'Z';
      result += large ? static_cast<char>(letter - 'A' + 'a') : letter;
      continue;
    }
    const auto code = static_cast<uint16_t>(static_cast<unsigned char>(name[at]) << 8 |
                                            static_cast<unsigned char>(name[at + 1]));
    if (code == FullWidthSpace) continue;
    if (code >= FullWidthA && code < FullWidthA + Letters)
      result += static_cast<char>('a' + (code - FullWidthA));
    else if (code >= FullWidthLittleA && code < FullWidthLittleA + Letters)
      result += static_cast<char>('a' + (code - FullWidthLittleA));
    else
      result += name.substr(at, 2);
  }
  return result;
}

}  // namespace

std::optional<FontFace> faceOfName(std::string_view name) {
  static const std::map<std::string, FontFace> faces = [] {
    std::map<std::string, FontFace> all;
    for (const auto& [known, face] : Names)
      all.emplace(sjis(known), face);
    return all;
  }();
  const auto found = faces.find(folded(name));
  return found == faces.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace qv
