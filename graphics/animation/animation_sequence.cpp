#include "graphics/animation/animation_sequence.h"

#include <algorithm>
#include <mutex>

namespace qv {

namespace {

constexpr bool isDigit(uint8_t character) {
  return character >= '0' && character <= '9';
}

constexpr bool startsNumber(uint8_t character) {
  return isDigit(character) || character == '+' || character == '-';
}

int32_t moved(int32_t offset, int32_t motion) {
  return std::clamp(offset + motion, -AnimationSequence::FarthestOffset,
                    AnimationSequence::FarthestOffset);
}

/// One more digit behind a number.
int32_t withDigit(int32_t number, uint8_t digit) {
  return std::min(number * 10 + (digit - '0'), AnimationSequence::LargestNumber);
}
static_assert(AnimationSequence::LargestNumber < INT32_MAX / 10 - 10);

}  // namespace

AnimationSequence::AnimationSequence() : lock_("sequence", LockRank::Leaf) {}

void AnimationSequence::setText(const char* text, bool stopAtEnd) {
  const std::lock_guard guard(lock_);
  text_.create(QVString::DefaultGrain, text);
  stopAtEnd_ = stopAtEnd;
  restart();
}

void AnimationSequence::rewind() {
  const std::lock_guard guard(lock_);
  if (text_.length() > 0) restart();
}

AnimationSequence::Frame AnimationSequence::step(bool force) {
  const std::lock_guard guard(lock_);
  int32_t result = next_;
  if (next_ != NoChange && next_ != Ended) {
    x_ = moved(x_, dx_);
    y_ = moved(y_, dy_);
    current_ = next_;
    shownX_ = x_;
    shownY_ = y_;
  } else if (force) {
    result = current_;
  }
  if (next_ != Ended) next_ = parse();
  return {result, shownX_, shownY_};
}

int32_t AnimationSequence::next() const {
  const std::lock_guard guard(lock_);
  return next_;
}

AnimationSequence::Frame AnimationSequence::shown() const {
  const std::lock_guard guard(lock_);
  return {current_, shownX_, shownY_};
}

// --- The parser ---

void AnimationSequence::restart() {
  loop_ = {};
  cursor_ = 0;
  outerLoops_.clear();
  x_ = y_ = dx_ = dy_ = 0;
  next_ = parse();
}

int32_t AnimationSequence::parse() {
  ++parses_;
  // Twice at the end within one parse: the text has nothing to show from here on.
  for (int ends = 0; ends < 2;) {
    if (!more()) {
      ++ends;
      cursor_ = loop_.start;
      x_ = y_ = 0;
      if (stopAtEnd_) return Ended;
      continue;
    }
    const uint8_t character = charAt(cursor_++);
    if (isDigit(character)) {
      if (outerLoops_.size() == DeepestNesting) return Ended;
      openLoop(character);
    } else if (character == ']') {
      closeLoop();
    } else if (character == '.') {
      return NoChange;
    } else {
      constexpr uint8_t LowerCase = 32;
      if (more() && (charAt(cursor_) == '(' || charAt(cursor_) == '{'))
        readPlace(charAt(cursor_++));
      return (character | LowerCase) - 'a';
    }
  }
  return Ended;
}

void AnimationSequence::openLoop(uint8_t digit) {
  int32_t count = withDigit(0, digit);
  while (more() && isDigit(charAt(cursor_)))
    count = withDigit(count, charAt(cursor_++));
  // Whatever stands behind the number opens the body.
  if (more()) ++cursor_;
  outerLoops_.push_back(loop_);
  loop_ = {cursor_, count, parses_};
}

void AnimationSequence::closeLoop() {
  if (outerLoops_.empty()) return;
  // Counted down before it is looked at, so that a count of 0 runs its body once, as 1 does. A
  // round that has shown nothing is the last: the others would be like it.
  --loop_.count;
  if (loop_.count > 0 && loop_.round != parses_) {
    cursor_ = loop_.start;
    loop_.round = parses_;
    return;
  }
  loop_ = outerLoops_.back();
  outerLoops_.pop_back();
}

void AnimationSequence::readPlace(uint8_t opening) {
  const bool isOffset = opening == '(';
  const uint8_t closing = isOffset ? ')' : '}';
  if (isOffset) dx_ = dy_ = 0;
  readNumber(isOffset ? x_ : dx_, closing);
  if (more() && charAt(cursor_) == ',') ++cursor_;
  readNumber(isOffset ? y_ : dy_, closing);
  while (more() && charAt(cursor_) != closing)
    ++cursor_;
  if (more()) ++cursor_;
}

/// Leaves the cursor on the comma, the closing character or the end of the text. Where no number
/// stands the old one stays.
void AnimationSequence::readNumber(int32_t& number, uint8_t closing) {
  const auto atEnd = [&] {
    return !more() || charAt(cursor_) == ',' || charAt(cursor_) == closing;
  };
  while (!atEnd() && !startsNumber(charAt(cursor_)))
    ++cursor_;
  if (!atEnd()) {
    const bool negative = charAt(cursor_) == '-';
    if (!isDigit(charAt(cursor_))) ++cursor_;
    number = 0;
    for (; more() && isDigit(charAt(cursor_)); ++cursor_)
      number = withDigit(number, charAt(cursor_));
    if (negative) number = -number;
  }
  while (!atEnd())
    ++cursor_;
}

uint8_t AnimationSequence::charAt(size_t at) const {
  return static_cast<uint8_t>(text_.text()[at]);
}

bool AnimationSequence::more() const {
  return cursor_ < static_cast<size_t>(text_.length());
}

}  // namespace qv
