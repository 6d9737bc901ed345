#pragma once

/// A MIDI output that is got ready later, beside or after the first picture. Whoever opens it says
/// that it is wanted, and waits for the device itself.

#include <functional>
#include <memory>
#include <utility>

#include "platform/kernel/kernel.h"
#include "platform/sound/midi_output.h"

namespace qv {

class AwaitedMidi : public MidiOutput {
 public:
  /// `wanted` is called on the opener's thread, each time.
  explicit AwaitedMidi(std::function<void()> wanted)
      : wanted_(std::move(wanted)), arrived_("MIDI device", Event::Reset::Manual) {}
  /// Once, on any thread.
  void arrive(std::unique_ptr<MidiOutput> device);

  bool available() const override { return true; }
  /// False also where the wait ends without a device.
  bool open() override;
  // The others come from who has opened it, so the device is there.
  void shortMessage(uint32_t message) override { device_->shortMessage(message); }
  void longMessage(std::span<const uint8_t> message) override { device_->longMessage(message); }
  void reset() override { device_->reset(); }
  void close() override { device_->close(); }

 private:
  const std::function<void()> wanted_;
  std::unique_ptr<MidiOutput> device_;  ///< looked at once `arrived_` is set
  Event arrived_;
};

}  // namespace qv
