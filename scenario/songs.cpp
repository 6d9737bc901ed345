#include "scenario/scenario.h"

namespace qv {

namespace {
constexpr uint32_t StopMillis = 2000;
}

void QVScenario::PlayMidi(const char* path, int32_t loop) {
  song_.play(path, 0, 0, static_cast<uint32_t>(loop));
}
int32_t QVScenario::MidiDeviceCaps(MidiCaps*) {
  return 0;
}
void QVScenario::stopSong() {
  song_.stop(0, StopMillis);
}
bool QVScenario::songPlaying() const {
  return song_.state() == SongRecord::Playing;
}
void QVScenario::fadeInSong(const char* path, uint32_t millis) {
  song_.play(path, SongRecord::FadingIn, millis, 1);
}
void QVScenario::fadeOutSong(uint32_t millis) {
  song_.stop(SongRecord::FadingOut, millis);
}
void QVScenario::waitSong() {}

}  // namespace qv
