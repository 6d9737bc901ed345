#include "audio/midi_sequencer.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

#include "foundation/diagnostic.h"

namespace qv {

namespace {

constexpr uint32_t Channels = 16;
constexpr uint32_t ControlChange = 0xB0;
constexpr uint32_t VolumeController = 7, AllSoundOff = 120, ResetAllControllers = 121;
constexpr int32_t MostVolume = 127;
constexpr uint8_t Exclusive = 0xF0, ExclusiveEnd = 0xF7, ActiveSensing = 0xFE, Meta = 0xFF;
constexpr uint8_t EndOfTrack = 0x2F, SetTempo = 0x51;
constexpr uint64_t MillisPerMinute = 60'000;
constexpr uint32_t MicrosPerMinute = 60'000'000;
// A fade sends its volume on every fifth step alone, to all channels at once.
constexpr uint32_t StepsPerFadeVolume = 5;

// A word of the queue: files declare at most 65535 tracks.
constexpr int TrackBits = 16;
constexpr uint64_t TrackMask = (uint64_t{1} << TrackBits) - 1;
constexpr uint64_t MostQueuedTick = (uint64_t{1} << (64 - TrackBits)) - 1;
// From so many on it is quicker to sort the queue than to put each track into its place.
constexpr size_t ManyTracks = 32;

uint64_t queueWord(uint64_t tick, uint32_t track) {
  // Beyond the greatest tick a track waits in the queue's last place, and is looked at too early.
  return std::min(tick, MostQueuedTick) << TrackBits | track;
}

/// Ticks that have gone in a time; stands at its greatest value instead of wrapping.
uint64_t ticksOf(uint64_t beatsPerMinute, uint64_t millis, uint64_t division) {
  const uint64_t perMillis = beatsPerMinute * division;  // 32 by 16 bits
  uint64_t ticks = 0;
  if (__builtin_mul_overflow(perMillis, millis, &ticks))
    return std::numeric_limits<uint64_t>::max() / MillisPerMinute;
  return ticks / MillisPerMinute;
}

}  // namespace

void MidiSequencer::load(const MidiFile& file) {
  tracks_.clear();
  queue_.clear();
  division_ = file.division();
  try {
    tracks_.reserve(file.tracks().size());
    queue_.reserve(file.tracks().size());
    dueTracks_.reserve(file.tracks().size());
  } catch (const std::bad_alloc&) {
    throw NotEnoughMemoryException("QVMidi - loadMidi");
  }
  for (const uint32_t start : file.tracks())
    tracks_.emplace_back(file.image(), start);
}

void MidiSequencer::start(MidiOutput& output, bool fadeIn, uint32_t fadeMillis, uint32_t loop) {
  output_ = &output;
  loop_ = loop;
  rewind();
  setTempo(FirstTempo, TempoPart::TempoAlone);
  baseVolume_ = FirstVolume;
  if (fadeIn) {
    fadeSteps_ = 0;
    fadeGoneMillis_ = 0;
    fadeMillis_ = fadeMillis;
  }
  setState(fadeIn ? FadingIn : Playing);
}

void MidiSequencer::fadeOut(uint32_t fadeMillis) {
  fadeSteps_ = 0;
  fadeGoneMillis_ = 0;
  fadeMillis_ = fadeMillis;
  setState(FadingOut);
}

void MidiSequencer::stop() {
  sendToAllChannels(AllSoundOff, 0);
  sendToAllChannels(ResetAllControllers, 0);
  output_->reset();
  fadeOffset_ = 0;
  fadeMillis_ = fadeSteps_ = 0;
  fadeGoneMillis_ = 0;
  setState(Stopped);
}

void MidiSequencer::step(uint32_t elapsedMillis) {
  if (state() == Stopped || state() == Paused) return;
  clockMillis_ += elapsedMillis;
  tempoMillis1_ += elapsedMillis;
  ticksNow_ = ticksOf(tempo_ + tempoOffset_, tempoMillis1_ - tempoMillis0_, division_);
  const uint64_t target = ticksNow_ + ticksBase_;
  fadeStep(elapsedMillis);
  if (state() == Stopped) return;
  // The step in which the last track ends still counts as running: a song begins anew in the next.
  if (queue_.empty()) {
    if (!loop_) return;
    rewind();
    setState(Playing);
    return;
  }
  advance(target);
}

void MidiSequencer::rewind() {
  ticksBase_ = ticksNow_ = 0;
  clockMillis_ = tempoMillis0_ = tempoMillis1_ = 0;
  // A fade does not outlive a rewind. The tempo does, until the file sets it again.
  fadeOffset_ = 0;
  for (MidiTrack& track : tracks_)
    track.rewind();
  queueTracks();
}

void MidiSequencer::setTempo(uint32_t value, TempoPart part) {
  if (part == TempoPart::Offset)
    tempoOffset_ = value;
  else
    tempo_ = value;
  if (part == TempoPart::TempoAlone) tempoOffset_ = 0;
  ticksBase_ += ticksNow_;
  ticksNow_ = 0;
  tempoMillis0_ = tempoMillis1_ = clockMillis_;
}

// --- Tracks ---

void MidiSequencer::queueTracks() {
  queue_.clear();
  for (size_t track = 0; track < tracks_.size(); ++track)
    if (!tracks_[track].finished())
      queue_.push_back(queueWord(tracks_[track].due(), static_cast<uint32_t>(track)));
  std::sort(queue_.begin(), queue_.end(), std::greater<>());
}

void MidiSequencer::queueTrack(uint32_t index) {
  const uint64_t word = queueWord(tracks_[index].due(), index);
  queue_.push_back(word);
  uint64_t* place = &queue_.back();
  for (; place != queue_.data() && place[-1] < word; --place)
    *place = place[-1];
  *place = word;
}

void MidiSequencer::advance(uint64_t target) {
  const uint64_t last = queueWord(target, TrackMask);
  if (queue_.back() > last) return;
  dueTracks_.clear();
  for (; !queue_.empty() && queue_.back() <= last; queue_.pop_back())
    dueTracks_.push_back(static_cast<uint32_t>(queue_.back() & TrackMask));
  // Within a step the order is track by track, not tick by tick.
  if (dueTracks_.size() > 1) std::sort(dueTracks_.begin(), dueTracks_.end());

  size_t bytesLeft = MostStepBytes;
  for (const uint32_t index : dueTracks_)
    if (!playTrack(tracks_[index], target, bytesLeft)) return;
  if (dueTracks_.size() >= ManyTracks) {
    queueTracks();
    return;
  }
  for (const uint32_t index : dueTracks_)
    if (!tracks_[index].finished()) queueTrack(index);
}

/// False when the output has stopped the song from within a message.
bool MidiSequencer::playTrack(MidiTrack& track, uint64_t target, size_t& bytesLeft) {
  while (track.due() <= target && bytesLeft > 0) {
    const uint8_t* from = track.cursor();
    uint32_t message = 0;
    if (track.takeChannelMessage(message))
      send(message);
    else
      dispatch(track);
    if (state() == Stopped) return false;
    if (!track.finished()) track.readDelta();
    bytesLeft -= std::min(bytesLeft, static_cast<size_t>(track.cursor() - from));
    if (track.finished()) break;
  }
  return true;
}

void MidiSequencer::dispatch(MidiTrack& track) {
  const uint8_t status = track.readStatus();
  switch (status) {
    case Exclusive:
      dispatchExclusive(track);
      break;
    case ActiveSensing:
      break;
    case Meta:
      dispatchMeta(track);
      break;
    default:
      dispatchChannel(track, status);
      break;
  }
}

void MidiSequencer::dispatchMeta(MidiTrack& track) {
  uint8_t type = 0;
  if (!track.readByte(type)) return;
  if (type == EndOfTrack) {
    track.finish();
    return;
  }
  uint64_t length = 0;
  std::span<const uint8_t> bytes;
  if (!track.readQuantity(length)) return;
  if (type != SetTempo) {
    track.readBytes(length, bytes);
    return;
  }
  // The three bytes of a tempo are taken whatever its length says.
  if (!track.readBytes(3, bytes)) return;
  const uint32_t micros = uint32_t{bytes[0]} << 16 | uint32_t{bytes[1]} << 8 | bytes[2];
  // Whole beats per minute, on purpose. Quarter notes without length are no tempo.
  if (micros != 0) setTempo(MicrosPerMinute / micros, TempoPart::Tempo);
}

void MidiSequencer::dispatchExclusive(MidiTrack& track) {
  uint64_t length = 0;
  std::span<const uint8_t> bytes;
  // The length is not believed: the message ends where its last byte stands.
  if (!track.readQuantity(length) || !track.readThrough(ExclusiveEnd, bytes)) return;
  if (bytes.size() >= message_.size()) return;
  message_[0] = Exclusive;
  std::copy(bytes.begin(), bytes.end(), message_.begin() + 1);
  output_->longMessage({message_.data(), bytes.size() + 1});
}

/// Near the end of the bytes, and what is no channel message at all.
void MidiSequencer::dispatchChannel(MidiTrack& track, uint8_t status) {
  uint8_t first = 0, second = 0;
  if (!track.readByte(first)) return;
  switch (status & 0xF0) {
    case 0x80:
    case 0x90:
    case 0xA0:
    case ControlChange:
    case 0xE0:
      if (!track.readByte(second)) return;
      break;
    case 0xC0:
    case 0xD0:
      break;
    default:
      // System messages, and data bytes before the first status: one byte is gone, nothing is sent.
      return;
  }
  send(status | uint32_t{first} << 8 | uint32_t{second} << 16);
}

void MidiSequencer::send(uint32_t channelMessage) {
  constexpr uint32_t KindAndNumber = 0xFFF0, ValueAt = 16;
  if ((channelMessage & KindAndNumber) == (ControlChange | VolumeController << 8)) {
    // One base for all channels: a fade ends with the last value seen in any.
    baseVolume_ = std::min(static_cast<int32_t>(channelMessage >> ValueAt), MostVolume);
    channelMessage &= (uint32_t{1} << ValueAt) - 1;
    channelMessage |= static_cast<uint32_t>(volume()) << ValueAt;
  }
  output_->shortMessage(channelMessage);
}

// --- Fades ---

void MidiSequencer::fadeStep(uint32_t elapsedMillis) {
  const State now = state();
  if (now != FadingIn && now != FadingOut) return;
  ++fadeSteps_;
  fadeGoneMillis_ += elapsedMillis;
  const int64_t span = std::max<uint32_t>(fadeMillis_, 1);
  // On a fixed scale of 127, not on the volume: a fade from 100 is over early, and begins late.
  const int64_t gone = MostVolume * static_cast<int64_t>(fadeGoneMillis_) / span;
  const int64_t offset = now == FadingOut ? -gone : gone - MostVolume;
  fadeOffset_ = static_cast<int32_t>(std::clamp<int64_t>(offset, -MostVolume, 0));
  if (fadeSteps_ % StepsPerFadeVolume != 0) return;
  const int32_t sent = volume();
  sendVolume(sent);
  if (state() == Stopped) return;
  if (now == FadingOut && sent == 0) stop();
  if (now == FadingIn && sent == baseVolume_) setState(Playing);
}

int32_t MidiSequencer::volume() const {
  return std::clamp(baseVolume_ + fadeOffset_, 0, MostVolume);
}

void MidiSequencer::sendVolume(int32_t value) {
  sendToAllChannels(VolumeController, static_cast<uint32_t>(value));
}

void MidiSequencer::sendToAllChannels(uint32_t controller, uint32_t value) {
  for (uint32_t channel = 0; channel < Channels; ++channel)
    output_->shortMessage((ControlChange | channel) | controller << 8 | value << 16);
}

}  // namespace qv
