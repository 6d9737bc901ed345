#include "platform/sound/sound_mixer.h"

#include <algorithm>

namespace qv {

namespace {

float gainOf(const std::atomic<int32_t>& whole, const std::atomic<int32_t>& part) {
  const auto percent = [](const std::atomic<int32_t>& volume) {
    return static_cast<float>(std::clamp(volume.load(std::memory_order_relaxed), 0, 100)) / 100;
  };
  return percent(whole) * percent(part);
}

}  // namespace

SoundMixer::SoundMixer(uint32_t framesPerSecond, const HostVolumes& volumes)
    : framesPerSecond_(framesPerSecond), volumes_(volumes), wave_(framesPerSecond) {}

void SoundMixer::render(float* stereo, uint32_t frames) {
  const size_t floats = size_t{2} * frames;
  std::fill_n(stereo, floats, 0.0F);
  // A silenced source is rendered all the same: its time goes on.
  wave_.render(stereo, frames, gainOf(volumes_.whole, volumes_.wave));
  if (song_) song_->render(stereo, frames, gainOf(volumes_.whole, volumes_.music));
  if (disc_) disc_->render(stereo, frames, gainOf(volumes_.whole, volumes_.disc));
  for (size_t i = 0; i < floats; ++i)
    stereo[i] = std::clamp(stereo[i], -1.0F, 1.0F);
}

}  // namespace qv
