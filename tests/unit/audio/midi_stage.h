#pragma once

/// A song player on a device that notes what it is sent, in simulated time.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audio/midi.h"
#include "platform/sound/null_midi_output.h"
#include "tests/support/song_bytes.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

inline std::string hexOf(const std::vector<uint8_t>& bytes) {
  std::string hex;
  for (const uint8_t byte : bytes) {
    hex += "0123456789abcdef"[byte >> 4];
    hex += "0123456789abcdef"[byte & 15];
  }
  return hex;
}

/// A message with the number of the timer's callback that sent it.
using Heard = std::vector<std::pair<uint32_t, std::string>>;

class MidiStage {
 public:
  explicit MidiStage(std::unique_ptr<Kernel> kernel = makeSimulatedKernel())
      : platform(false, std::move(kernel)), output(1'000'000), services_(with(&output)) {
    midi.emplace();
  }

  void write(const std::string& name, std::string_view bytes) {
    platform.writeFile(platform.game() / name, bytes);
  }
  /// Plays a song of these bytes; `callbacks` counts from here.
  void play(std::string_view bytes, uint32_t loop = 0, int32_t mode = QVMidi::AtOnce,
            uint32_t millis = 0) {
    write("song.mid", bytes);
    midi->play("song.mid", mode, millis, loop);
    start_ = tickCount();
    middle_ = false;
  }
  /// To the middle between the timer's callbacks, that many of them further on.
  void callbacks(uint32_t count) {
    sleepMillis(count * QVMidi::PeriodMillis + (middle_ ? 0 : QVMidi::PeriodMillis / 2));
    middle_ = true;
  }
  /// The short and long messages since the last look.
  Heard heard() {
    Heard messages;
    for (const NullMidiOutput::Sent& one : output.takeSent())
      if (one.kind == NullMidiOutput::Kind::Short || one.kind == NullMidiOutput::Kind::Long)
        messages.emplace_back((one.tick - start_) / QVMidi::PeriodMillis, hexOf(one.bytes));
    return messages;
  }
  /// What a song sends in so many callbacks, without the messages of its stop.
  Heard heardOf(std::string_view bytes, uint32_t count, uint32_t loop = 0) {
    output.takeSent();
    play(bytes, loop);
    callbacks(count);
    Heard messages = heard();
    midi->stop(QVMidi::AtOnce, 0);
    return messages;
  }

  TestPlatform platform;
  NullMidiOutput output;

 private:
  static Services with(MidiOutput* output) {
    Services all = services();
    all.midi = output;
    return all;
  }
  ServicesScope services_;
  uint32_t start_ = 0;
  bool middle_ = false;

 public:
  std::optional<QVMidi> midi;
};

}  // namespace qv::testing
