#pragma once

/// What a line does with voice and mouth: the decision apart from the players.

#include <array>
#include <cstdint>

namespace qv {

/// The value of MouthRunningRegister while no mouth runs by itself.
inline constexpr int32_t NoMouthRuns = 254;
inline constexpr int MouthSlotCount = 6, NoMouthSlot = -1;

/// A slot's pair of registers: who stands there, and whether the picture has a mouth.
struct MouthSlot {
  int32_t speakerClass = 0, hasMouth = 0;
};
using MouthSlots = std::array<MouthSlot, MouthSlotCount>;

struct LineSettings {
  bool hasVoice = false;     ///< the line gives one
  bool hasSwitch = false;    ///< the class has a voice switch at all
  bool switchedOn = false;   ///< and it is on
  bool voiceEnabled = true;  ///< of all voices
  bool skip = false;
};

struct LineVoice {
  bool plays = false;
  int mouthSlot = NoMouthSlot;  ///< moves with the voice, or in silence
  bool speakerOnScreen = false;
};

LineVoice voiceOfLine(int32_t speakerClass, const LineSettings& settings, const MouthSlots& slots);

}  // namespace qv
