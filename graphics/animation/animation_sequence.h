#pragma once

/// AnimationSequence: the text that says which cell of an animation to show at each tick, and the
/// state of its playing. A plain state machine: whoever ticks it calls `step`. Any thread; several
/// areas may share one sequence.
///
///     A        a letter shows that cell, "a" and "A" the first one
///     A(x,y)   shows it at the offset x, y and ends all motion
///     A{x,y}   shows it, and from then on each cell stands x, y further
///     .        no new cell in this tick
///     3[A.]    three rounds of "A."; loops nest
///
/// At the end of the text the sequence goes on from the beginning, with the offset 0, 0 and the
/// motion it has, or it ends. docs/animation.md tells authors more.

#include <cstdint>
#include <vector>

#include "foundation/string.h"
#include "platform/kernel/kernel.h"

namespace qv {

class AnimationSequence {
 public:
  /// Results that are no cell.
  static constexpr int32_t NoChange = -1, Ended = -2;
  /// Texts are input: deeper loops end the sequence, larger numbers count as the largest.
  static constexpr size_t DeepestNesting = 256;
  static constexpr int32_t LargestNumber = 1'000'000;
  /// The running offset stops here.
  static constexpr int32_t FarthestOffset = 1 << 24;

  /// A result, and the offset of the cell that is now shown.
  struct Frame {
    int32_t cell = NoChange;
    int32_t x = 0, y = 0;
    bool operator==(const Frame&) const = default;
  };

  AnimationSequence();
  virtual ~AnimationSequence() = default;
  AnimationSequence(const AnimationSequence&) = delete;
  AnimationSequence& operator=(const AnimationSequence&) = delete;

  /// Null counts as empty. A text that shows nothing and pauses nowhere has ended at once.
  void setText(const char* text, bool stopAtEnd);
  /// From the beginning, without loops, offset and motion; nothing for an empty text.
  void rewind();
  /// The next result: a cell, NoChange or Ended. With `force` the cell shown before, where there
  /// is no new one. A sequence that has ended stays so.
  Frame step(bool force);
  /// What the next step will find: the parser is one result ahead.
  int32_t next() const;
  /// The cell now shown, -1 before the first, with its offset.
  Frame shown() const;

 private:
  struct Loop {
    size_t start = 0;  ///< where the body begins
    int32_t count = 0;
    uint64_t round = 0;  ///< the parse in which the present round began
  };

  void restart();
  int32_t parse();
  void openLoop(uint8_t digit);
  void closeLoop();
  void readPlace(uint8_t opening);
  void readNumber(int32_t& number, uint8_t closing);
  uint8_t charAt(size_t at) const;
  bool more() const;

  mutable Lock lock_;  ///< guards all below
  QVString text_;
  bool stopAtEnd_ = false;
  Loop loop_;
  size_t cursor_ = 0;
  std::vector<Loop> outerLoops_;
  uint64_t parses_ = 0;
  int32_t current_ = NoChange, next_ = NoChange;
  int32_t x_ = 0, y_ = 0, dx_ = 0, dy_ = 0;
  int32_t shownX_ = 0, shownY_ = 0;
};

}  // namespace qv
