/// The manager's operations on the song. Scenario thread; at a run's end also whoever releases it.

#include <cstdio>

#include "platform/services.h"
#include "platform/sound/midi_output.h"
#include "scenario/scenario.h"

namespace qv {

namespace {
// A stop at once takes no time, whatever it is given.
constexpr uint32_t StopMillis = 2000;
constexpr uint32_t Looping = 1;
constexpr uint16_t AllChannels = 0xFFFF;
}  // namespace

void QVScenario::PlayMidi(const char* path, int32_t loop) {
  midi_.play(path, QVMidi::AtOnce, 0, static_cast<uint32_t>(loop));
}

int32_t QVScenario::MidiDeviceCaps(MidiCaps* caps) {
  if (!midi_.available()) return 0;
  if (caps) {
    std::snprintf(caps->name, sizeof caps->name, "%s", services().midi->name());
    caps->channelMask = AllChannels;
  }
  return 1;
}

void QVScenario::stopSong() {
  midi_.stop(QVMidi::AtOnce, StopMillis);
}

bool QVScenario::songPlaying() const {
  return midi_.isPlaying();
}

void QVScenario::fadeInSong(const char* path, uint32_t millis) {
  midi_.play(path, QVMidi::FadeIn, millis, Looping);
}

void QVScenario::fadeOutSong(uint32_t millis) {
  midi_.stop(QVMidi::FadeOut, millis);
}

void QVScenario::waitSong() {
  if (host_) midi_.waitEnd(host_->abortEvent.handle());
}

}  // namespace qv
