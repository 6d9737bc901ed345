#include "host/sound_names.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(SoundNames, AreThePathTheFileOrItsStem) {
  for (const char* name : {"wave\\vlse005.wav", "wave/vlse005.wav", "WAVE\\VLSE005.WAV",
                           "vlse005.wav", "vlse005", "Vlse005"})
    EXPECT_TRUE(waveIsNamed("wave\\vlse005.wav", name)) << name;
  for (const char* name : {"vlse00", "lse005", "wave", "wave\\", "", "vlse006", "none"})
    EXPECT_FALSE(waveIsNamed("wave\\vlse005.wav", name)) << name;
  EXPECT_TRUE(waveIsNamed("%:\\VOICE\\V00\\0000_003.wav", "0000_003"));
}

TEST(SoundNames, AreWhatScenesCallAnEffect) {
  EXPECT_TRUE(waveIsNamed("wave\\vlse005.wav", "SE01"));
  EXPECT_TRUE(waveIsNamed("wave\\vlse005.wav", "SE25"));
  EXPECT_TRUE(waveIsNamed("wave\\vlse014.wav", "チャイム"));
  EXPECT_FALSE(waveIsNamed("wave\\vlse005.wav", "SE02"));
  EXPECT_FALSE(waveIsNamed("wave\\vlse005.wav", "SE62"));
}

TEST(SoundNames, AreWhatScenesCallASongInAnyArrangement) {
  EXPECT_TRUE(songIsNamed("midi\\K03a.mid", "K03"));
  EXPECT_TRUE(songIsNamed("midi\\K03e.mid", "K03"));
  EXPECT_TRUE(songIsNamed("midi\\K03e.mid", "K03e"));
  EXPECT_FALSE(songIsNamed("midi\\K03e.mid", "K03a"));
  EXPECT_FALSE(songIsNamed("midi\\K13a.mid", "K03"));
  EXPECT_FALSE(songIsNamed("midi\\K03f.mid", "K03"));
}

}  // namespace
}  // namespace qv
