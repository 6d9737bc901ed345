#pragma once

/// Devices that only keep time, for runs without a window or without sound.

#include "host/sound_devices.h"
#include "platform/sound/disc_player.h"
#include "platform/sound/null_midi_output.h"
#include "platform/sound/null_wave_output.h"

namespace qv {

class SilentSound : public SoundDevices {
 public:
  /// `disc`: what stands for the disc, or null.
  explicit SilentSound(std::unique_ptr<DiscPlayer> disc = nullptr);
  ~SilentSound() override;
  WaveOutput* wave() override { return &wave_; }
  MidiOutput* midi() override { return &midi_; }
  DiscPlayer* disc() override { return disc_.get(); }

 private:
  NullWaveOutput wave_;
  NullMidiOutput midi_;
  std::unique_ptr<DiscPlayer> disc_;
};

}  // namespace qv
