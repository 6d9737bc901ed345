#include "platform/sound/mixer_disc.h"

#include <algorithm>
#include <span>
#include <vector>

#include "platform/sound/cue_sheet.h"

namespace qv {

namespace {

constexpr uint32_t PartFrames = 2048;

/// Frames of one rate as frames of another, by straight lines, part by part. A part's
/// length does not depend on the rates: a slow source gives many of them.
class RateChange {
 public:
  RateChange(uint32_t from, uint32_t to) : step_((uint64_t{from} << 32) / to) {}

  /// Writes what the source's next frames give, at most `room` frames, and takes those frames from
  /// the source that it is done with. Gives the frames written: none only where the source is
  /// empty.
  size_t convert(std::span<const float>& source, float* target, size_t room) {
    size_t made = 0;
    for (; source.size() >= 2; source = source.subspan(2)) {
      const float left = source[0], right = source[1];
      // Places from the frame before to this one.
      for (; (position_ >> 32) == 0; position_ += step_, ++made) {
        if (made == room) return made;
        const float part = static_cast<float>(static_cast<uint32_t>(position_)) / 4294967296.0F;
        target[2 * made] = left_ + (left - left_) * part;
        target[2 * made + 1] = right_ + (right - right_) * part;
      }
      position_ -= uint64_t{1} << 32;
      left_ = left;
      right_ = right;
    }
    return made;
  }

 private:
  const uint64_t step_;
  uint64_t position_ = uint64_t{1} << 32;  ///< behind the frame before; the first one has none
  float left_ = 0, right_ = 0;
};

}  // namespace

MixerDisc::MixerDisc(std::unique_ptr<DiscTracks> tracks, uint32_t framesPerSecond)
    : TrackPlayer(std::move(tracks)),
      outputRate_(framesPerSecond),
      stop_("disc stop", Event::Reset::Manual) {}

MixerDisc::~MixerDisc() {
  MixerDisc::stop();
}

DiscError MixerDisc::begin(int32_t track, uint32_t fromDiscFrame, uint32_t toDiscFrame) {
  std::shared_ptr<TrackReader> reader = tracks().open(track);
  if (!reader || reader->framesPerSecond() == 0) return DiscError::Unreadable;
  const auto frameOf = [&](uint32_t discFrame) {
    return uint64_t{discFrame} * reader->framesPerSecond() / DiscFramesPerSecond;
  };
  const uint64_t from = frameOf(fromDiscFrame);
  reader->seek(from);
  written_ = taken_ = 0;
  allRead_ = false;
  stop_.reset();
  playing_ = true;
  thread_.start("disc",
                [this, reader, count = frameOf(toDiscFrame) - from] { readAhead(*reader, count); });
  return DiscError::None;
}

void MixerDisc::readAhead(TrackReader& reader, uint64_t framesLeft) {
  std::vector<float> part(size_t{2} * PartFrames), ready(size_t{2} * PartFrames);
  RateChange change(reader.framesPerSecond(), outputRate_);
  while (framesLeft > 0) {
    const uint32_t wanted = static_cast<uint32_t>(std::min<uint64_t>(framesLeft, PartFrames));
    const uint32_t frames = reader.read(part.data(), wanted);
    framesLeft = frames < wanted ? 0 : framesLeft - frames;
    auto source = std::span<const float>(part).first(size_t{2} * frames);
    while (const size_t made = change.convert(source, ready.data(), PartFrames))
      for (size_t at = 0; at < made;) {
        at += put(&ready[2 * at], made - at);
        if (at < made && stop_.wait(PollMillis, WaitKind::Service) != WaitTimeout) return;
      }
    if (stop_.isSet()) return;
  }
  allRead_ = true;
}

/// Frames for which there was room.
size_t MixerDisc::put(const float* stereo, size_t frames) {
  const uint64_t written = written_.load(std::memory_order_relaxed);
  const size_t room = RingFrames - static_cast<size_t>(written - taken_.load());
  const size_t count = std::min(frames, room);
  for (size_t i = 0; i < count; ++i) {
    const size_t place = (written + i) % RingFrames * 2;
    ring_[place] = stereo[2 * i];
    ring_[place + 1] = stereo[2 * i + 1];
  }
  written_.store(written + count);
  return count;
}

void MixerDisc::stop() {
  playing_ = false;
  // The output's thread either sees that, or is seen here until it has gone out of the ring.
  while (rendering_.load())
    sleepMillis(1);
  stop_.set();
  thread_.join();
}

void MixerDisc::render(float* stereo, uint32_t frames, float gain) {
  rendering_.store(true);
  if (playing_.load()) {
    const bool last = allRead_.load();  // before the count: what is read behind it is in it
    const uint64_t taken = taken_.load(std::memory_order_relaxed);
    const auto count = static_cast<uint32_t>(std::min<uint64_t>(frames, written_.load() - taken));
    for (uint32_t i = 0; i < count; ++i) {
      const size_t place = (taken + i) % RingFrames * 2;
      stereo[2 * i] += ring_[place] * gain;
      stereo[2 * i + 1] += ring_[place + 1] * gain;
    }
    taken_.store(taken + count);
    if (last && count < frames) playing_.store(false);
  }
  rendering_.store(false);
}

}  // namespace qv
