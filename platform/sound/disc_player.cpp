#include "platform/sound/disc_player.h"

#include <algorithm>
#include <array>

#include "platform/sound/cue_sheet.h"
#include "platform/sound/disc_tracks.h"

namespace qv {

const char* describe(DiscError error) {
  constexpr std::array Words{"", "There is no disc with audio tracks.",
                             "The disc has no such audio track.",
                             "The disc is played by somebody else.", "The track cannot be read."};
  return Words[static_cast<size_t>(error)];
}

uint32_t discFramesOf(const DiscTime& time) {
  return (time.minutes * 60U + time.seconds) * DiscFramesPerSecond + time.frames;
}

DiscTime discTimeOf(uint64_t discFrames) {
  constexpr uint64_t Most = 256 * 60 * DiscFramesPerSecond - 1;
  const auto frames = static_cast<uint32_t>(std::min(discFrames, Most));
  const uint32_t seconds = frames / DiscFramesPerSecond;
  return {static_cast<uint8_t>(seconds / 60), static_cast<uint8_t>(seconds % 60),
          static_cast<uint8_t>(frames % DiscFramesPerSecond)};
}

}  // namespace qv
