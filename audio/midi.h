#pragma once

/// QVMidi: plays a Standard MIDI File with a sequencer of its own. The file is held in memory, a
/// timer of 16 ms drives all tracks, and the work of one tick (`step`) is a plain function of the
/// time that has gone. The caller's threads play and stop; the timer's thread steps. Without a
/// device nothing is ever played.

#include <atomic>
#include <cstdint>

#include "audio/midi_file.h"
#include "audio/midi_sequencer.h"
#include "foundation/string.h"
#include "platform/kernel/kernel.h"
#include "platform/kernel/periodic_timer.h"

namespace qv {

class MidiOutput;
class QVFile;

class QVMidi {
 public:
  using State = MidiSequencer::State;
  using enum MidiSequencer::State;
  enum Mode : int32_t { AtOnce = 0, FadeIn = 4, FadeOut = 5 };
  static constexpr uint32_t PeriodMillis = 16;
  static constexpr uint32_t WaitPollMillis = 50;

  /// Asks the services for the device, once and for all.
  QVMidi();
  virtual ~QVMidi();  ///< stops
  QVMidi(const QVMidi&) = delete;
  QVMidi& operator=(const QVMidi&) = delete;

  /// Mode FadeIn fades in over `fadeMillis`; any other plays at once. `loop` nonzero begins the
  /// song anew when all its tracks have ended; with 0 it stays in state Playing, in silence. A
  /// device that is taken, and a file of another kind, are silence. Throws what the file raises and
  /// NotEnoughMemoryException.
  void play(const char* path, int32_t mode, uint32_t fadeMillis, uint32_t loop);
  /// Mode FadeOut begins a fade over `millis`, which ends in a stop; any other stops at once. From
  /// the timer's own step too.
  void stop(int32_t mode, uint32_t millis);
  /// Reads and indexes the file; what plays is stopped first. A file of another kind leaves the
  /// record's name as it was. Throws as `play` does, and then there is no file.
  void loadMidi(const char* path);
  /// Until the song is stopped: one that has played out without a loop is not. Returns at once
  /// without a device. Raises ExitScenarioException when `abort` is set.
  void waitEnd(Event& abort);
  /// What the timer calls. Nothing while stopped or paused.
  void step(uint32_t elapsedMillis);

  /// The record in a save: whether it plays, whether it loops, its file. A song that fades out
  /// counts as not playing; a closed file is passed over.
  void save(QVFile& file) const;
  /// Stops, reads the record, and with `restart` plays on what played. A record that is cut short
  /// leaves loop and file name as they were.
  void load(QVFile& file, bool restart);
  /// Puts the record in a state as if it had come there by itself, without a timer or a device: so
  /// that what saves say can be tried without songs.
  void set(State state, uint32_t loop, const char* path);

  // Any thread.

  bool available() const { return available_; }
  State state() const { return sequencer_.state(); }
  /// Plain playing alone: not during a fade.
  bool isPlaying() const { return state() == Playing; }
  QVString fileName() const;
  uint32_t loop() const;

 private:
  bool insideStep() const;
  void closeOutput();

  /// Held while a song is started or stopped, and while its timer's thread ends. Never taken from
  /// within a step, whose end its holder may wait for.
  Lock control_;
  mutable Lock lock_;  ///< guards everything below but the timer
  bool available_ = false;
  MidiOutput* output_ = nullptr;
  bool opened_ = false;
  MidiFile file_;
  MidiSequencer sequencer_;
  QVString fileName_;
  std::atomic<uint32_t> stepThread_ = 0;  ///< the thread that is inside a step, or 0
  PeriodicTimer timer_;
};

}  // namespace qv
