#pragma once

/// Where a song's messages go: the built-in synthesiser, a port of the machine, or a device that
/// only notes what it was sent. `shortMessage` and `longMessage` come from the sequencer's step and
/// neither wait nor take memory. Whoever opens the output is its only user until `close`; its calls
/// come from one thread at a time.

#include <cstdint>
#include <span>

namespace qv {

class MidiOutput {
 public:
  virtual ~MidiOutput() = default;
  virtual bool available() const = 0;  ///< whether there is a device at all; does not change
  /// What a player would call it, in ASCII.
  virtual const char* name() const { return "MIDI"; }
  virtual bool open() = 0;  ///< false when the device is taken
  /// Status in the low byte, then the first and the second data byte. Bytes of broken songs come as
  /// they are.
  virtual void shortMessage(uint32_t message) = 0;
  /// A system exclusive message, from its F0 to its F7.
  virtual void longMessage(std::span<const uint8_t> message) = 0;
  virtual void reset() = 0;  ///< all notes off, all controllers back, on all channels
  virtual void close() = 0;
};

}  // namespace qv
