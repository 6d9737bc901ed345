#include "platform/sound/null_midi_output.h"

#include <mutex>
#include <utility>

namespace qv {

namespace {

size_t bytesOfStatus(uint32_t status) {
  if (status >= 0xF0) return 1;
  const uint32_t kind = status & 0xF0;
  return kind == 0xC0 || kind == 0xD0 ? 2 : 3;
}

}  // namespace

NullMidiOutput::NullMidiOutput(size_t most) : most_(most), lock_("silent MIDI", LockRank::Leaf) {}

bool NullMidiOutput::open() {
  const std::lock_guard guard(lock_);
  if (open_ || taken_) return false;
  open_ = true;
  note(Kind::Open);
  return true;
}

void NullMidiOutput::shortMessage(uint32_t message) {
  if (most_ == 0) return;
  const uint8_t bytes[3] = {static_cast<uint8_t>(message), static_cast<uint8_t>(message >> 8),
                            static_cast<uint8_t>(message >> 16)};
  const std::lock_guard guard(lock_);
  note(Kind::Short, {bytes, bytesOfStatus(bytes[0])});
}

void NullMidiOutput::longMessage(std::span<const uint8_t> message) {
  const std::lock_guard guard(lock_);
  note(Kind::Long, message);
}

void NullMidiOutput::reset() {
  const std::lock_guard guard(lock_);
  note(Kind::Reset);
}

void NullMidiOutput::close() {
  const std::lock_guard guard(lock_);
  if (!std::exchange(open_, false)) return;
  note(Kind::Close);
}

void NullMidiOutput::setTaken(bool taken) {
  const std::lock_guard guard(lock_);
  taken_ = taken;
}

bool NullMidiOutput::isOpen() const {
  const std::lock_guard guard(lock_);
  return open_;
}

std::vector<NullMidiOutput::Sent> NullMidiOutput::sent() const {
  const std::lock_guard guard(lock_);
  return sent_;
}

std::vector<NullMidiOutput::Sent> NullMidiOutput::takeSent() {
  const std::lock_guard guard(lock_);
  return std::exchange(sent_, {});
}

void NullMidiOutput::note(Kind kind, std::span<const uint8_t> bytes) {
  if (sent_.size() >= most_) return;
  sent_.push_back({tickCount(), kind, {bytes.begin(), bytes.end()}});
}

}  // namespace qv
