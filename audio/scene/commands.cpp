#include "audio/scene/commands.h"

#include "scenario/scenario.h"

// Songs and sounds are heard when the players exist; until then only time passes.

namespace qv {

static_assert(WaitForSong == ChannelMidi && WaitForWave == ChannelWave);

void PlayBgm(const char*, const char*) {}
void PlaySe(const char*, int32_t) {}
void WaitSe(int32_t) {}
void StopSe() {}
void PlayWave(const char*, int32_t, int32_t, const char*) {}

void WaitSound(int32_t tenths) {
  if (theScenario) theScenario->WaitSound(tenths);
}

void RestoreBgm() {}
void RestoreSe() {}

}  // namespace qv
