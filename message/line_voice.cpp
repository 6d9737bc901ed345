#include "message/line_voice.h"

#include <algorithm>

#include "scenario/story_tables.h"

namespace qv {

LineVoice voiceOfLine(int32_t speakerClass, const LineSettings& settings, const MouthSlots& slots) {
  LineVoice line;
  line.speakerOnScreen = speakerClass != SpeakerWithoutClass && speakerClass != UnknownSpeaker;
  // A class without a switch counts as a line without a voice: nothing moves either.
  if (settings.skip || !settings.hasVoice || !settings.hasSwitch) return line;
  const auto* found = std::ranges::find_if(slots, [&](const MouthSlot& slot) {
    return slot.speakerClass == speakerClass && slot.hasMouth == 1;
  });
  if (found != slots.end()) line.mouthSlot = static_cast<int>(found - slots.begin());
  line.plays = settings.switchedOn && settings.voiceEnabled;
  line.speakerOnScreen = line.speakerOnScreen || line.plays;
  return line;
}

}  // namespace qv
