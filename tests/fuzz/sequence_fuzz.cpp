/// Any bytes as the text of an animation: every step returns, offsets stay in their bounds, an
/// ended sequence stays ended, and playing is the same after a rewind of a fresh text. The first
/// byte is the stop at the end and which steps are forced; the text follows.

#include <string>
#include <vector>

#include "graphics/animation/animation_sequence.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr int Steps = 500;

std::vector<AnimationSequence::Frame> played(AnimationSequence& sequence, uint8_t force) {
  constexpr int32_t Farthest = AnimationSequence::FarthestOffset;
  std::vector<AnimationSequence::Frame> frames;
  for (int step = 0; step < Steps; ++step) {
    const int32_t next = sequence.next();
    const bool forced = (force >> (step % 8)) & 1;
    const int32_t before = sequence.shown().cell;
    const auto frame = sequence.step(forced);
    const bool isCell = next != AnimationSequence::NoChange && next != AnimationSequence::Ended;
    require(frame.cell == (isCell ? next : forced ? before : next), "the result is not the next");
    require(next != AnimationSequence::Ended || sequence.next() == next, "it came back to life");
    require(
        frame.x >= -Farthest && frame.x <= Farthest && frame.y >= -Farthest && frame.y <= Farthest,
        "the offset is out of bounds");
    // "|32" of a byte, less 'a'.
    require(frame.cell >= -65 && frame.cell <= 255 - 'a', "the cell is no letter of the text");
    frames.push_back(frame);
  }
  return frames;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static KernelScope kernel(makeRealKernel());
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  const bool stopAtEnd = data[0] & 1;

  AnimationSequence sequence;
  sequence.setText(text.c_str(), stopAtEnd);
  const auto frames = played(sequence, data[0]);
  if (text.c_str()[0] == '\0') return 0;
  sequence.setText(text.c_str(), stopAtEnd);
  sequence.rewind();
  const auto again = played(sequence, data[0]);
  // What a forced step shows before the first cell is left from before.
  bool shown = false;
  for (size_t step = 0; step < frames.size(); ++step) {
    shown = shown || (frames[step].cell >= 0 && again[step].cell == frames[step].cell);
    if (shown) require(frames[step] == again[step], "the second playing is another");
  }
  return 0;
}
