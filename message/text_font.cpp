#include "message/text_font.h"

#include <string_view>

#include "platform/text/face_names.h"
#include "platform/text/shift_jis.h"

namespace qv {

namespace {

// A height of nothing asks the classic platform for its own, which was this.
constexpr int32_t DefaultHeight = 16;

void keepOrTake(int32_t& value, int32_t asked) {
  if (asked >= 0) value = asked;
}

}  // namespace

TextFont::TextFont() : face_(sjis("ＭＳ ゴシック")) {}

void TextFont::set(int32_t height, int32_t weight, int32_t style, int32_t pitch, int32_t charset,
                   const char* face) {
  keepOrTake(height_, height);
  keepOrTake(weight_, weight);
  keepOrTake(pitch_, pitch);
  keepOrTake(charset_, charset);
  if (style != KeepStyle) {
    italic_ = (style & StyleItalic) != 0;
    underline_ = (style & StyleUnderline) != 0;
    strikeOut_ = (style & StyleStrikeOut) != 0;
  }
  if (face && std::string_view(face).size() < FaceBytes) face_ = face;
}

TextStyle TextFont::style() const {
  const FontFace ofPitch =
      pitch_ == VariablePitch ? FontFace::ProportionalGothic : FontFace::Gothic;
  TextStyle style;
  style.face = faceOfName(face_).value_or(ofPitch);
  style.heightPixels = height_ > 0 ? height_ : DefaultHeight;
  style.bold = weight_ > HeaviestNormal;
  style.italic = italic_;
  style.underline = underline_;
  style.strikeOut = strikeOut_;
  return style;
}

}  // namespace qv
