#pragma once

/// QVMidi: plays a Standard MIDI File with a sequencer of its own. The file is held in memory, a
/// timer of 16 ms drives all tracks, and the work of one tick (`step`) is a plain function of the
/// time that has gone. The caller's threads play and stop; the timer's thread steps.

#include <cstdint>

#include "foundation/string.h"

namespace qv {

class QVFile;

class QVMidi {
 public:
  enum State : uint32_t { Stopped = 1, Playing = 2, Paused = 3, FadingIn = 4, FadingOut = 5 };
  enum Mode : int32_t { AtOnce = 0, FadeIn = 4, FadeOut = 5 };
  static constexpr uint32_t PeriodMillis = 16;

  QVMidi();
  virtual ~QVMidi();
  QVMidi(const QVMidi&) = delete;
  QVMidi& operator=(const QVMidi&) = delete;

  /// Mode FadeIn fades in over `fadeMillis`; any other plays at once. Throws what the file raises
  /// and NotEnoughMemoryException.
  void play(const char* path, int32_t mode, uint32_t fadeMillis, uint32_t loop);
  /// Mode FadeOut begins a fade; any other stops at once. From the timer's own step too.
  void stop(int32_t mode, uint32_t millis);
  void loadMidi(const char* path);
  void waitEnd();  ///< raises on abort
  /// The record in a save: whether it plays, whether it loops, its file.
  void save(QVFile& file) const;
  void load(QVFile& file, bool restart);
  bool isPlaying() const { return state() == Playing; }
  bool available() const;
  State state() const;
};

}  // namespace qv
