#pragma once

/// Messages on their way from the sequencer's thread to the output's: one writer, one reader, no
/// lock and no memory. A reset overtakes what stands before it, and comes through a full queue.

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace qv {

class MidiMessageQueue {
 public:
  static constexpr size_t Words = 16 * 1024;  ///< one a short message
  static constexpr size_t LongestMessage = 4096;

  // The writer's.

  void put(uint32_t shortMessage) {
    if (!hasRoom(1)) return;
    const uint64_t at = head_.load(std::memory_order_relaxed);
    word(at) = shortMessage & ShortMask;
    head_.store(at + 1, std::memory_order_release);
  }
  void put(std::span<const uint8_t> longMessage) {
    const size_t words = wordsOf(longMessage.size());
    if (longMessage.size() > LongestMessage || !hasRoom(1 + words)) return;
    const uint64_t at = head_.load(std::memory_order_relaxed);
    word(at) = LongFlag | static_cast<uint32_t>(longMessage.size());
    for (size_t done = 0; done < words; ++done) {
      uint32_t four = 0;
      const auto part = longMessage.subspan(done * sizeof four);
      std::memcpy(&four, part.data(), part.size() < sizeof four ? part.size() : sizeof four);
      word(at + 1 + done) = four;
    }
    head_.store(at + 1 + words, std::memory_order_release);
  }
  /// What was put before is void.
  void putReset() {
    ++resets_;
    reset_.store(head_.load(std::memory_order_relaxed) << CountBits | (resets_ & CountMask),
                 std::memory_order_release);
  }

  // The reader's.

  /// Calls `onReset()` once where resets came since the last time, then `onShort(uint32_t)` and
  /// `onLong(std::span<const uint8_t>)` in the order of the messages.
  template <class OnReset, class OnShort, class OnLong>
  void take(OnReset onReset, OnShort onShort, OnLong onLong) {
    uint64_t at = tail_.load(std::memory_order_relaxed);
    // The end first: of a message that is seen, the reset before it is seen too.
    const uint64_t end = head_.load(std::memory_order_acquire);
    const uint64_t reset = reset_.load(std::memory_order_acquire);
    if (reset != resetDone_) {
      resetDone_ = reset;
      at = std::max(at, reset >> CountBits);
      onReset();
    }
    while (at < end) {
      const uint32_t first = word(at++);
      if ((first & LongFlag) == 0) {
        onShort(first);
        continue;
      }
      const size_t bytes = first & ShortMask;
      for (size_t done = 0; done < wordsOf(bytes); ++done)
        longWords_[done] = word(at++);
      onLong({reinterpret_cast<const uint8_t*>(longWords_.data()), bytes});
    }
    tail_.store(at, std::memory_order_release);
  }
  /// True once after messages were lost, because the queue was full.
  bool takeLost() { return lost_.exchange(false, std::memory_order_relaxed); }

 private:
  // A reset is its place and, so that the next one at the same place is another, its number.
  static constexpr int CountBits = 16;
  static constexpr uint64_t CountMask = 0xFFFF;
  static constexpr uint32_t ShortMask = 0x00FFFFFF, LongFlag = 0x80000000;

  static constexpr size_t wordsOf(size_t bytes) {
    return (bytes + sizeof(uint32_t) - 1) / sizeof(uint32_t);
  }
  uint32_t& word(uint64_t at) { return words_[at % Words]; }
  bool hasRoom(size_t words) {
    const uint64_t used =
        head_.load(std::memory_order_relaxed) - tail_.load(std::memory_order_acquire);
    if (used + words <= Words) return true;
    lost_.store(true, std::memory_order_relaxed);
    return false;
  }

  std::array<uint32_t, Words> words_{};
  // Words that were ever put and taken: they never wrap.
  std::atomic<uint64_t> head_ = 0, tail_ = 0, reset_ = 0;
  std::atomic<bool> lost_ = false;
  uint64_t resets_ = 0;     ///< the writer's
  uint64_t resetDone_ = 0;  ///< the reader's
  std::array<uint32_t, LongestMessage / sizeof(uint32_t)> longWords_{};
};

}  // namespace qv
