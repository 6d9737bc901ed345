#pragma once

/// CdAudio: plays one audio track of the data disc on a thread that owns the player from open to
/// close and can repeat the track. Each user makes its own. Errors are kept and go no further.

#include <cstdint>

namespace qv {

class CdAudio {
 public:
  CdAudio();
  virtual ~CdAudio();  ///< stops
  CdAudio(const CdAudio&) = delete;
  CdAudio& operator=(const CdAudio&) = delete;

  /// Looks at the disc: stops, counts its tracks. Must come before `play`.
  bool load();
  bool play(int32_t track, uint32_t loop);  ///< true when it has started
  void stop();
  bool isPlaying() const;
};

}  // namespace qv
