#pragma once

/// The sequencer's work without its timer: `step` takes the milliseconds that have gone and sends
/// what is due to a MIDI output. It takes no memory, no lock and no time. One thread at a time; the
/// state may be looked at by any.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "audio/midi_file.h"
#include "audio/midi_track.h"
#include "platform/sound/midi_output.h"

namespace qv {

class MidiSequencer {
 public:
  enum State : uint32_t { Stopped = 1, Playing = 2, Paused = 3, FadingIn = 4, FadingOut = 5 };
  /// What a value is to the tempo. Whichever, the clock is folded: what was played so far counts
  /// under the old tempo.
  enum class TempoPart { Tempo, Offset, TempoAlone };

  static constexpr uint32_t FirstTempo = 120;  ///< beats per minute
  static constexpr int32_t FirstVolume = 100;  ///< 0 to 127
  static constexpr size_t LongestMessage = 2048;
  /// A step ends once its events have taken so many bytes of the image; the rest is the next
  /// step's. No song comes near; tracks that lie over each other in a broken file would.
  static constexpr size_t MostStepBytes = 256 * 1024;

  /// Takes the file's tracks, in state Stopped. The file stays the caller's and outlives its use.
  /// Throws NotEnoughMemoryException with the title "QVMidi - loadMidi".
  void load(const MidiFile& file);
  /// From the beginning, to an output that is open: in state Playing, or FadingIn over the time.
  void start(MidiOutput& output, bool fadeIn, uint32_t fadeMillis, uint32_t loop);
  /// Begins a fade to silence; the step that reaches it ends in state Stopped.
  void fadeOut(uint32_t fadeMillis);
  /// Sends what silences everything, and is in state Stopped. The output stays open.
  void stop();
  void step(uint32_t elapsedMillis);

  State state() const { return state_.load(std::memory_order_acquire); }
  void setState(State state) { state_.store(state, std::memory_order_release); }
  void setTempo(uint32_t value, TempoPart part);
  uint32_t loop() const { return loop_; }
  void setLoop(uint32_t loop) { loop_ = loop; }

 private:
  void rewind();
  void queueTracks();
  void queueTrack(uint32_t index);
  void advance(uint64_t target);
  bool playTrack(MidiTrack& track, uint64_t target, size_t& bytesLeft);
  void dispatch(MidiTrack& track);
  void dispatchMeta(MidiTrack& track);
  void dispatchExclusive(MidiTrack& track);
  void dispatchChannel(MidiTrack& track, uint8_t status);
  void send(uint32_t channelMessage);
  void fadeStep(uint32_t elapsedMillis);
  int32_t volume() const;
  void sendVolume(int32_t value);
  void sendToAllChannels(uint32_t controller, uint32_t value);

  std::atomic<State> state_ = Stopped;
  MidiOutput* output_ = nullptr;
  std::vector<MidiTrack> tracks_;
  /// A word for each track that is not finished: the tick of its next event and, below that, its
  /// number. The latest stands first, so that a step looks only at those at the end that have
  /// something to say, and those that have nothing are never moved.
  std::vector<uint64_t> queue_;
  std::vector<uint32_t> dueTracks_;
  std::array<uint8_t, LongestMessage> message_{};

  uint32_t division_ = 0, loop_ = 0;
  uint32_t tempo_ = FirstTempo, tempoOffset_ = 0;
  uint64_t ticksBase_ = 0, ticksNow_ = 0;
  uint32_t clockMillis_ = 0, tempoMillis0_ = 0, tempoMillis1_ = 0;

  int32_t baseVolume_ = FirstVolume;  ///< the last controller 7 of any channel
  int32_t fadeOffset_ = 0;            ///< -127 to 0, added to it
  uint32_t fadeMillis_ = 0, fadeSteps_ = 0;
  uint64_t fadeGoneMillis_ = 0;
};

}  // namespace qv
