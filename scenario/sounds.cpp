#include "foundation/diagnostic.h"
#include "graphics/animation/animation_area.h"
#include "scenario/scenario.h"

// What is heard through the manager: the wave channel, and the song's channel by the same names.

namespace qv {

namespace {

constexpr uint32_t TenthMillis = 100;

}  // namespace

void QVScenario::PlayWave(const char* path, uint32_t loops, int32_t stopFirst,
                          const char* areaName) {
  LogicalObject* area = FindObject(areaName, TypeAnimationArea);
  // The end of what sounds may be far: the abort is waited for too.
  if (!stopFirst && host_ && wave_.isPlaying() &&
      waitAny({&host_->abortEvent.handle(), &wave_.done()}) == 0)
    return;
  wave_.play(path, loops, stopFirst != 0,
             area ? static_cast<QVAnimationArea*>(area->native()) : nullptr);
}

void QVScenario::StopSound(int32_t channel) {
  if (channel == ChannelWave) wave_.stop();
  if (channel == ChannelMidi) stopSong();
}

void QVScenario::WaitSound(int32_t tenths) {
  if (!host_) return;
  if (tenths == ChannelMidi) {
    waitSong();
  } else if (tenths == ChannelWave) {
    if (waitAny({&host_->abortEvent.handle(), &wave_.done()}) == 0) throw ExitScenarioException();
    wave_.wait();
  } else if (tenths > 0) {
    host_->SleepUnlessAborted(scaledMillis(tenths, TenthMillis));
  }
}

bool QVScenario::IsSoundPlaying(int32_t channel) {
  if (channel == ChannelWave) return wave_.isPlaying();
  return channel == ChannelMidi && songPlaying();
}

void QVScenario::FadeInSound(int32_t channel, const char* path, uint32_t millis) {
  if (channel == ChannelMidi) fadeInSong(path, millis);
}

void QVScenario::FadeOutSound(int32_t channel, uint32_t millis) {
  if (channel == ChannelMidi) fadeOutSong(millis);
}

}  // namespace qv
