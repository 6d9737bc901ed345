#pragma once

/// TextFont: a print area's font as scenes ask for it. What the machine's text then draws with is
/// its style. Belongs to its area.

#include <cstdint>
#include <string>

#include "platform/text/text_style.h"

namespace qv {

class TextFont {
 public:
  static constexpr int32_t FixedPitch = 1, VariablePitch = 2, ShiftJisCharset = 128;
  static constexpr int32_t KeepStyle = -1, StyleItalic = 1, StyleUnderline = 2, StyleStrikeOut = 4;
  /// A name has a place of that many bytes with its end; longer ones are ignored.
  static constexpr size_t FaceBytes = 32;
  /// Above this a face without a bold form is made bold: it is closer to bold than to normal.
  static constexpr int32_t HeaviestNormal = 550;

  TextFont();

  /// Height, weight, pitch and charset below zero stay; so does a face that is null or too long,
  /// and with KeepStyle the style. The height is that of a character, in pixels.
  void set(int32_t height, int32_t weight, int32_t style, int32_t pitch, int32_t charset,
           const char* face);
  /// An unknown face is drawn in one of the pitch.
  TextStyle style() const;

  int32_t height() const { return height_; }
  int32_t weight() const { return weight_; }
  int32_t pitch() const { return pitch_; }
  int32_t charset() const { return charset_; }
  const std::string& face() const { return face_; }  ///< Shift-JIS

 private:
  int32_t height_ = 16, weight_ = 400;
  bool italic_ = false, underline_ = false, strikeOut_ = false;
  int32_t pitch_ = FixedPitch, charset_ = ShiftJisCharset;
  std::string face_;
};

}  // namespace qv
