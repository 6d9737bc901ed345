#pragma once

/// A MIDI device without a sound, for runs without a window and for tests: it notes what it was
/// sent, with the kernel's tick. What it has noted may be looked at from any thread.

#include <cstddef>
#include <vector>

#include "platform/kernel/kernel.h"
#include "platform/sound/midi_output.h"

namespace qv {

class NullMidiOutput : public MidiOutput {
 public:
  enum class Kind { Open, Short, Long, Reset, Close };
  struct Sent {
    uint32_t tick = 0;
    Kind kind = Kind::Short;
    std::vector<uint8_t> bytes;  ///< a short message's own: one to three
    bool operator==(const Sent&) const = default;
  };

  /// Notes the first `most` calls; 0 for a device that only takes them.
  explicit NullMidiOutput(size_t most = 0);

  bool available() const override { return available_; }
  const char* name() const override { return "silent MIDI"; }
  bool open() override;
  void shortMessage(uint32_t message) override;
  void longMessage(std::span<const uint8_t> message) override;
  void reset() override;
  void close() override;

  void setAvailable(bool available) { available_ = available; }  ///< before anybody asks
  void setTaken(bool taken);                                     ///< by another program
  bool isOpen() const;
  std::vector<Sent> sent() const;
  /// What was noted since the last look, which is then forgotten.
  std::vector<Sent> takeSent();

 private:
  void note(Kind kind, std::span<const uint8_t> bytes = {});

  const size_t most_;
  bool available_ = true;
  mutable Lock lock_;  ///< guards everything below
  bool open_ = false, taken_ = false;
  std::vector<Sent> sent_;
};

}  // namespace qv
