#include "platform/sound/unheard.h"

#include <algorithm>
#include <array>

#include "platform/kernel/kernel.h"
#include "platform/sound/sound_mixer.h"

namespace qv {

namespace {

/// As long as an output's buffer; nobody hears how finely the time goes, and each step wakes a
/// processor.
constexpr uint32_t StepMillis = 20;
/// A machine that slept goes on where it was.
constexpr uint32_t MostMillis = 1000;
constexpr uint32_t PartFrames = 512;

}  // namespace

void playUnheard(SoundMixer& mixer, Event& stop) {
  std::array<float, size_t{2} * PartFrames> unheard;
  uint32_t last = tickCount(), owed = 0;
  while (stop.wait(StepMillis, WaitKind::Service) == WaitTimeout) {
    const uint32_t now = tickCount();
    owed += std::min(now - last, MostMillis) * mixer.framesPerSecond();
    last = now;
    for (uint32_t frames = owed / 1000; frames > 0;) {
      const uint32_t part = std::min(frames, PartFrames);
      mixer.render(unheard.data(), part);
      frames -= part;
    }
    owed %= 1000;
  }
}

}  // namespace qv
