#include <algorithm>

#include "foundation/string.h"
#include "foundation/string_body.h"
#include "platform/text/shift_jis.h"

// The cursor: walking the text character by character.

namespace qv {

namespace {

uint8_t byteAt(std::string_view text, size_t at) {
  return static_cast<uint8_t>(text[at]);
}

/// Start of the character that holds the byte at `at`, which may be its second byte. A byte that
/// is no lead byte ends a character; the lead bytes in a row behind it pair up.
size_t characterStart(std::string_view text, size_t at) {
  size_t run = 0;
  while (run < at && isLeadByte(byteAt(text, at - 1 - run)))
    ++run;
  const bool second = run % 2 == 1 && at < text.size() && isTrailByte(byteAt(text, at));
  return second ? at - 1 : at;
}

}  // namespace

int32_t QVString::cursorIndex() const {
  return static_cast<int32_t>(cursor_ - rep_->text);
}

void QVString::setCursorIndex(int32_t index) {
  cursor_ = rep_->text + std::clamp(index, 0, rep_->length);
}

int QVString::next() {
  cursor_ += characterBytes(view(), static_cast<size_t>(cursorIndex()));
  return cursorIndex() < length() ? 1 : 0;
}

int QVString::prev() {
  const auto at = static_cast<size_t>(cursorIndex());
  if (at == 0) return 0;
  cursor_ = text() + characterStart(view(), at - 1);
  return 1;
}

uint16_t QVString::charAt() const {
  const auto at = static_cast<size_t>(cursorIndex());
  if (at >= view().size()) return 0;
  const size_t start = characterStart(view(), at);
  const uint8_t first = byteAt(view(), start);
  if (characterBytes(view(), start) == 1) return first;
  return static_cast<uint16_t>(first << 8 | byteAt(view(), start + 1));
}

uint16_t QVString::seek(int32_t offset, Origin origin) {
  switch (origin) {
    case Start:
      if (offset < 0) return 0;
      cursor_ = text();
      break;
    case Current:
      break;
    case End:
      if (offset > 0) return 0;
      cursor_ = text() + length();
      break;
    default:
      return 0;
  }
  // An offset beyond an end of the text stops there.
  for (int32_t step = 0; step < offset && next(); ++step) {
  }
  for (int32_t step = 0; step > offset && prev(); --step) {
  }
  return charAt();
}

}  // namespace qv
