#pragma once

/// SoundMixer: what sounds, added into one stream. It owns the wave channel; the song's source and
/// the disc's are lent to it before the output begins to ask for samples.

#include <cstdint>

#include "platform/sound/mixer.h"
#include "platform/sound/mixer_wave.h"

namespace qv {

class SoundMixer {
 public:
  /// `volumes` outlives the mixer and may change at any time.
  SoundMixer(uint32_t framesPerSecond, const HostVolumes& volumes);

  WaveOutput& wave() { return wave_; }
  /// Null: none. Not while an output renders.
  void setSong(SampleSource* song) { song_ = song; }
  void setDisc(SampleSource* disc) { disc_ = disc; }
  uint32_t framesPerSecond() const { return framesPerSecond_; }

  /// Fills `stereo` with `frames` frames of two floats from -1 to 1. The output's thread.
  void render(float* stereo, uint32_t frames);

 private:
  const uint32_t framesPerSecond_;
  const HostVolumes& volumes_;
  MixerWave wave_;
  SampleSource* song_ = nullptr;
  SampleSource* disc_ = nullptr;
};

}  // namespace qv
