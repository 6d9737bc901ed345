#pragma once

/// Sentences of a made story, put together from parts. Any thread.

#include <cstdint>
#include <string>

namespace qv::story {

/// Numbers that are the same on every machine (SplitMix64 by Sebastiano Vigna, public domain).
class MadeNumbers {
 public:
  explicit MadeNumbers(uint64_t seed) : state_(seed) {}
  uint64_t next();
  /// 0 to `count` - 1.
  int below(int count);
  int between(int low, int high) { return low + below(high - low + 1); }
  bool oneOf(int count) { return below(count) == 0; }
  template <typename List>
  const auto& pick(const List& list) {
    return list[static_cast<size_t>(below(static_cast<int>(std::size(list))))];
  }

 private:
  uint64_t state_;
};

/// At most 27 characters: one line of the frame.
std::string madeNarration(MadeNumbers& numbers);
std::string madeSpeech(MadeNumbers& numbers);
/// At most 16 characters: one line of a choice.
std::string madeChoice(MadeNumbers& numbers);
std::string madePlace(MadeNumbers& numbers);

}  // namespace qv::story
