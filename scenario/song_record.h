#pragma once

/// The song's record in a save: whether it played, whether it looped, and its file. Until the
/// sequencer exists the record is also the player: silent, but with its states, so that a save
/// written now says the same as one written with music. Scenario thread only.

#include <cstdint>

#include "foundation/string.h"

namespace qv {

class QVFile;

class SongRecord {
 public:
  enum State : int32_t { Stopped = 1, Playing = 2, FadingIn = 4, FadingOut = 5 };

  void play(const char* path, int32_t mode, uint32_t fadeMillis, uint32_t loop);
  void stop(int32_t mode, uint32_t millis);
  /// Puts the record in a state directly, as if it had come there by itself.
  void set(State state, uint32_t loop, const char* path);

  /// Writes the record; a closed file is passed over. A song that fades out counts as not playing.
  void save(QVFile& file) const;
  /// Stops, reads the record, and with `restart` plays on what played. A record that is cut short
  /// leaves loop and path as they were.
  void load(QVFile& file, bool restart);

  State state() const { return state_; }
  uint32_t loop() const { return loop_; }
  const QVString& path() const { return path_; }

 private:
  State state_ = Stopped;
  uint32_t loop_ = 0;
  QVString path_;
};

}  // namespace qv
