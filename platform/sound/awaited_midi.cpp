#include "platform/sound/awaited_midi.h"

#include <utility>

namespace qv {

void AwaitedMidi::arrive(std::unique_ptr<MidiOutput> device) {
  device_ = std::move(device);
  arrived_.set();
}

bool AwaitedMidi::open() {
  wanted_();
  return arrived_.wait() == 0 && device_->open();
}

}  // namespace qv
