#pragma once

/// The player of the data disc's audio tracks: what a disc drive of the machine does with them. A
/// bare folder is a disc without audio tracks. One party at a time; the machine's player may be
/// opened by several users one after the other.

#include <cstdint>

namespace qv {

/// A place or a length on the disc; 75 frames make a second.
struct DiscTime {
  uint8_t minutes = 0, seconds = 0, frames = 0;
  bool operator==(const DiscTime&) const = default;
  bool empty() const { return minutes == 0 && seconds == 0 && frames == 0; }
};

/// What went wrong, in words, for who asks.
enum class DiscError : uint32_t { None = 0, NoDisc, NoSuchTrack, DeviceTaken, Unreadable };
const char* describe(DiscError error);

class DiscPlayer {
 public:
  virtual ~DiscPlayer() = default;
  virtual DiscError open() = 0;
  virtual void close() = 0;                         ///< stops
  virtual int32_t trackCount() = 0;                 ///< 0 for a disc without audio; open or not
  virtual DiscTime trackLength(int32_t track) = 0;  ///< tracks from 1; empty for a bad track
  /// From a place in the track to another in the same track.
  virtual DiscError play(int32_t track, DiscTime from, DiscTime to) = 0;
  virtual bool playing() = 0;
  virtual void stop() = 0;
};

}  // namespace qv
