#include "platform/sound/null_wave_output.h"

#include <algorithm>
#include <mutex>

namespace qv {

namespace {

constexpr uint32_t LongestWaitMillis = 0x7FFFFFFF;

/// Rounded up: a sound has not ended before its last sample.
uint64_t millisOf(uint64_t frames, uint32_t framesPerSecond) {
  return (frames * 1000 + framesPerSecond - 1) / framesPerSecond;
}

}  // namespace

NullWaveOutput::NullWaveOutput(Keep keep)
    : keep_(keep),
      stop_("null wave device stop", Event::Reset::Manual),
      lock_("null wave device", LockRank::Leaf) {}

NullWaveOutput::~NullWaveOutput() {
  NullWaveOutput::close();
}

bool NullWaveOutput::open(const WaveFormat& format, Event& done) {
  if (done_ || taken_ || !isPlayable(format)) return false;
  format_ = format;
  done_ = &done;
  done.set();
  return true;
}

bool NullWaveOutput::write(std::span<const uint8_t> bytes, uint32_t times) {
  if (!done_ || refusesWrites_) return false;
  reset();
  if (keep_ == Keep::Everything) {
    const std::lock_guard guard(lock_);
    sent_.push_back({.format = format_,
                     .bytes = {bytes.begin(), bytes.end()},
                     .times = times,
                     .startTick = tickCount()});
  }
  playing_ = true;
  const uint64_t frames = bytes.size() / format_.blockBytes;
  if (frames == 0) {
    noteEnd(false);
    (*done_).set();
    return true;
  }
  if (times == PlayForever) return true;
  stop_.reset();
  const uint64_t millis = millisOf(frames * times, format_.samplesPerSecond);
  thread_.start("null wave device", [this, millis] { playOut(millis); });
  return true;
}

void NullWaveOutput::playOut(uint64_t millis) {
  const uint64_t whole = millis;
  for (uint64_t gone = 0; gone < whole;) {
    const auto part = static_cast<uint32_t>(std::min<uint64_t>(whole - gone, LongestWaitMillis));
    if (stop_.wait(part, WaitKind::Service) != WaitTimeout) return;
    gone += part;
  }
  noteEnd(false);
  (*done_).set();
}

void NullWaveOutput::noteEnd(bool cut) {
  const std::lock_guard guard(lock_);
  if (sent_.empty() || sent_.back().ended) return;
  sent_.back().ended = true;
  sent_.back().cut = cut;
  sent_.back().endTick = tickCount();
}

void NullWaveOutput::reset() {
  if (!playing_) return;
  stop_.set();
  thread_.join();
  noteEnd(true);
  playing_ = false;
}

void NullWaveOutput::close() {
  reset();
  done_ = nullptr;
}

std::vector<NullWaveOutput::Sent> NullWaveOutput::sent() const {
  const std::lock_guard guard(lock_);
  return sent_;
}

}  // namespace qv
