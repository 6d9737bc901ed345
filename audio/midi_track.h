#pragma once

/// One track's place in a song's bytes. Every read is checked against the end of the image: what
/// would go beyond it says so, and the track is then over. A track's end is its End of Track event,
/// never its chunk's length.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace qv {

class MidiTrack {
 public:
  /// Quantities of variable length have at most four bytes in sound files; some writers pad them.
  static constexpr size_t MostQuantityBytes = 8;

  MidiTrack(std::span<const uint8_t> image, size_t start)
      : start_(image.data() + start), end_(image.data() + image.size()) {
    rewind();
  }

  /// To the first event, whose delta time is read.
  void rewind() {
    cursor_ = start_;
    due_ = 0;
    runningStatus_ = 0;
    finished_ = false;
    readDelta();
  }

  bool finished() const { return finished_; }
  void finish() { finished_ = true; }
  /// The tick of the event at the cursor, which stands behind its delta time.
  uint64_t due() const { return due_; }
  const uint8_t* cursor() const { return cursor_; }

  /// The delta time of the next event is added to the tick. Ticks have 64 bits: they do not wrap.
  void readDelta() {
    uint64_t delta = 0;
    if (cursor_ != end_ && *cursor_ < FirstStatus)
      delta = *cursor_++;
    else if (!readQuantity(delta))
      return;
    due_ += delta;
    // An event has at least its status, or a data byte in its place.
    if (cursor_ == end_) finish();
  }

  /// The status byte of an event, or the last one before it where a data byte stands in its place,
  /// whatever kind that was.
  uint8_t readStatus() {
    if (*cursor_ >= FirstStatus) runningStatus_ = *cursor_++;
    return runningStatus_;
  }

  /// The whole of a channel message at once: status, then data bytes as a MidiOutput takes them.
  /// False, and nothing is read, for any other event, and where the bytes end soon.
  bool takeChannelMessage(uint32_t& message) {
    if (end_ - cursor_ < 3) return false;
    const uint8_t* at = cursor_;
    const uint8_t status = *at >= FirstStatus ? *at++ : runningStatus_;
    if (status < FirstStatus || status >= FirstSystemStatus) return false;
    const bool single = (status & 0xE0) == 0xC0;  // C0 and D0 have one data byte
    message = status | uint32_t{at[0]} << 8 | (single ? 0 : uint32_t{at[1]} << 16);
    cursor_ = at + (single ? 1 : 2);
    runningStatus_ = status;
    return true;
  }

  // These give false where the bytes end first, and finish the track.

  bool readByte(uint8_t& byte) {
    if (cursor_ == end_) return over();
    byte = *cursor_++;
    return true;
  }
  bool readQuantity(uint64_t& value) {
    const size_t most = std::min<size_t>(MostQuantityBytes, static_cast<size_t>(end_ - cursor_));
    value = 0;
    for (size_t at = 0; at < most; ++at) {
      const uint8_t byte = *cursor_++;
      value = value << 7 | (byte & 0x7F);
      if (byte < FirstStatus) return true;
    }
    return over();
  }
  bool readBytes(uint64_t count, std::span<const uint8_t>& bytes) {
    if (count > static_cast<uint64_t>(end_ - cursor_)) return over();
    bytes = {cursor_, static_cast<size_t>(count)};
    cursor_ += count;
    return true;
  }
  /// The bytes up to the first of that value, it included.
  bool readThrough(uint8_t last, std::span<const uint8_t>& bytes) {
    const auto left = static_cast<size_t>(end_ - cursor_);
    const void* found = left ? std::memchr(cursor_, last, left) : nullptr;
    if (!found) return over();
    return readBytes(static_cast<uint64_t>(static_cast<const uint8_t*>(found) - cursor_) + 1,
                     bytes);
  }

 private:
  static constexpr uint8_t FirstStatus = 0x80, FirstSystemStatus = 0xF0;

  /// What is left of the bytes counts as read.
  bool over() {
    cursor_ = end_;
    finished_ = true;
    return false;
  }

  const uint8_t* start_;
  const uint8_t* end_;
  const uint8_t* cursor_ = nullptr;
  uint64_t due_ = 0;
  uint8_t runningStatus_ = 0;
  bool finished_ = false;
};

}  // namespace qv
