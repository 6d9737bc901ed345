#pragma once

/// The audio tracks of a data disc, wherever they lie. A reader belongs to one thread; the list
/// itself does not change.

#include <cstdint>
#include <memory>

#include "platform/sound/disc_player.h"

namespace qv {

/// One track as frames of two floats.
class TrackReader {
 public:
  virtual ~TrackReader() = default;
  virtual uint32_t framesPerSecond() const = 0;
  /// Goes to a place in the track.
  virtual void seek(uint64_t frame) = 0;
  /// Frames read, less than `frames` at the end of the track and of what can be read.
  virtual uint32_t read(float* stereo, uint32_t frames) = 0;
};

class DiscTracks {
 public:
  virtual ~DiscTracks() = default;
  virtual int32_t count() const = 0;                 ///< the highest number; 0 for none
  virtual DiscTime length(int32_t track) const = 0;  ///< empty for what is no audio track
  virtual std::unique_ptr<TrackReader> open(int32_t track) = 0;  ///< null: cannot be read
};

uint32_t discFramesOf(const DiscTime& time);
/// At most 255 minutes, which is all that a DiscTime can say.
DiscTime discTimeOf(uint64_t discFrames);

}  // namespace qv
