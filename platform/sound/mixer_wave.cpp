#include "platform/sound/mixer_wave.h"

#include <algorithm>

namespace qv {

namespace {

constexpr int FractionBits = 32;
constexpr float FractionScale = 1.0F / 4294967296.0F;
/// A sound that is cut falls to silence over this many frames at the most: no click.
constexpr float TailFrames = 128;

template <int bits>
float sampleAt(const uint8_t* bytes, uint64_t index) {
  if constexpr (bits == 8) {
    return static_cast<float>(bytes[index] - 128) * (1.0F / 128);
  } else {
    const uint8_t* word = bytes + index * 2;
    return static_cast<float>(static_cast<int16_t>(word[0] | word[1] << 8)) * (1.0F / 32768);
  }
}

struct StereoSample {
  float left, right;
};

template <int bits, int channels>
StereoSample frameAt(const uint8_t* bytes, uint64_t frame) {
  const float left = sampleAt<bits>(bytes, frame * channels);
  if constexpr (channels == 1) return {left, left};
  return {left, sampleAt<bits>(bytes, frame * channels + 1)};
}

/// Adds `count` frames from `position` on, whose neighbour behind `last` is `behind`.
template <int bits, int channels>
StereoSample addFrames(float* stereo, uint32_t count, const uint8_t* bytes, uint64_t position,
                       uint64_t step, uint64_t last, StereoSample behind, float gain) {
  StereoSample sum{};
  for (uint32_t i = 0; i < count; ++i, position += step) {
    const uint64_t frame = position >> FractionBits;
    const StereoSample here = frameAt<bits, channels>(bytes, frame);
    const StereoSample next = frame < last ? frameAt<bits, channels>(bytes, frame + 1) : behind;
    const float part = static_cast<float>(static_cast<uint32_t>(position)) * FractionScale;
    sum = {gain * (here.left + (next.left - here.left) * part),
           gain * (here.right + (next.right - here.right) * part)};
    stereo[2 * i] += sum.left;
    stereo[2 * i + 1] += sum.right;
  }
  return sum;
}

using AddFrames = StereoSample (*)(float*, uint32_t, const uint8_t*, uint64_t, uint64_t, uint64_t,
                                   StereoSample, float);
using FrameAt = StereoSample (*)(const uint8_t*, uint64_t);

struct FormatCode {
  AddFrames add;
  FrameAt frameAt;
};
template <int bits, int channels>
constexpr FormatCode CodeOf{addFrames<bits, channels>, frameAt<bits, channels>};

const FormatCode& codeOf(uint16_t bits, uint16_t channels) {
  if (bits == 8) return channels == 1 ? CodeOf<8, 1> : CodeOf<8, 2>;
  return channels == 1 ? CodeOf<16, 1> : CodeOf<16, 2>;
}

}  // namespace

MixerWave::~MixerWave() {
  MixerWave::close();
}

bool MixerWave::open(const WaveFormat& format, Event& done) {
  if (open_ || !isPlayable(format)) return false;
  open_ = true;
  format_ = format;
  done_ = &done;
  done.set();
  return true;
}

bool MixerWave::write(std::span<const uint8_t> bytes, uint32_t times) {
  if (!open_) return false;
  reset();
  const uint64_t frames = bytes.size() / format_.blockBytes;
  if (frames == 0 || times == 0) {
    done_->set();
    return true;
  }
  playback_ = {.bytes = bytes.data(),
               .frames = frames,
               .timesLeft = times,
               .position = 0,
               .step = (uint64_t{format_.samplesPerSecond} << FractionBits) / outputRate_,
               .channels = format_.channels,
               .bitsPerSample = format_.bitsPerSample,
               .done = done_};
  shown_.store(true);
  return true;
}

/// Both words are stored and read in one order that both threads agree on: either the output's
/// thread sees that nothing is shown any more, or this one sees that it renders.
void MixerWave::reset() {
  shown_.store(false);
  while (rendering_.load())
    sleepMillis(1);
}

void MixerWave::close() {
  reset();
  open_ = false;
}

void MixerWave::render(float* stereo, uint32_t frames, float gain) {
  rendering_.store(true);
  if (shown_.load())
    renderPlayback(playback_, stereo, frames, gain);
  else
    fadeTail(stereo, frames);
  rendering_.store(false);
}

void MixerWave::renderPlayback(Playback& playback, float* stereo, uint32_t frames, float gain) {
  const FormatCode& code = codeOf(playback.bitsPerSample, playback.channels);
  const uint64_t end = playback.frames << FractionBits;
  for (uint32_t at = 0; at < frames;) {
    const bool again = playback.timesLeft > 1;  // for ever counts as very often
    const uint64_t left = (end - playback.position + playback.step - 1) / playback.step;
    const auto count = static_cast<uint32_t>(std::min<uint64_t>(left, frames - at));
    const uint64_t last = playback.frames - 1;
    const StereoSample sum =
        code.add(stereo + size_t{2} * at, count, playback.bytes, playback.position, playback.step,
                 last, code.frameAt(playback.bytes, again ? 0 : last), gain);
    lastLeft_ = sum.left;
    lastRight_ = sum.right;
    at += count;
    playback.position += count * playback.step;
    if (playback.position < end) continue;
    if (!again) {
      shown_.store(false);
      fadeTail(stereo + size_t{2} * at, frames - at);
      playback.done->set();
      return;
    }
    playback.position -= end;
    if (playback.timesLeft != PlayForever) --playback.timesLeft;
  }
}

/// What is cut off, or ends away from silence, falls to it in a straight line.
void MixerWave::fadeTail(float* stereo, uint32_t frames) {
  if (lastLeft_ == 0 && lastRight_ == 0) return;
  const auto count = std::min(frames, static_cast<uint32_t>(TailFrames));
  for (uint32_t i = 0; i < count; ++i) {
    const float part = 1 - static_cast<float>(i + 1) / TailFrames;
    stereo[2 * i] += lastLeft_ * part;
    stereo[2 * i + 1] += lastRight_ * part;
  }
  lastLeft_ = lastRight_ = 0;
}

}  // namespace qv
