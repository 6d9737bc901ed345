#include "message/no_line_start.h"

#include <cstdint>

#include "platform/text/shift_jis.h"

namespace qv {

namespace {

// Signs of the game's own font that stand behind a word.
constexpr uint16_t OwnSigns[] = {0xF040, 0xF041, 0xF042, 0xF043, 0xF044, 0xF045, 0xF048, 0xF049,
                                 0xF057, 0xF050, 0xF051, 0xF05F, 0xF05C, 0xF05D, 0xF05E, 0xF064,
                                 0xF065, 0xF074, 0xF075, 0xF076, 0xF077, 0xF09C, 0xF09D, 0xF09E,
                                 0xF09F, 0xF0A0, 0xF0A1, 0xF0A2, 0xF0A3, 0xF0A4, 0xF0A5, 0xF0A6,
                                 0xF0A7, 0xF0A8, 0xF0BE, 0xF087, 0xF084, 0xF066};
constexpr uint16_t LastOwnSign = 0xF056;

void appendCode(std::string& text, uint16_t code) {
  text += static_cast<char>(code >> 8);
  text += static_cast<char>(code & 0xFF);
}

std::string madeLong() {
  std::string text = sjis("。」・）]｝‥！？、ー　ぁぃぅぇぉっゃゅょァィゥェォャュョッ");
  for (const uint16_t code : OwnSigns)
    appendCode(text, code);
  text += sjis("－");
  appendCode(text, LastOwnSign);
  return text;
}

}  // namespace

const std::string& shortNoLineStart() {
  static const std::string text = sjis("。」・）]｝‥！？、　ょっゃゅぇェャュョッ");
  return text;
}

const std::string& longNoLineStart() {
  static const std::string text = madeLong();
  return text;
}

}  // namespace qv
