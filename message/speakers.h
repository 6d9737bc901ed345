#pragma once

/// Who a line's tag means: what the frame prints, what the history keeps, whose voice it is. Pure
/// look-ups in the story's table and in the rows that every story has.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

struct Speaker {
  std::string shown;                   ///< what SpeakerName keeps
  std::optional<std::string> printed;  ///< nothing: the frame stays as it is
  int32_t speakerClass = 0;
  bool ends = false;  ///< the line has no voice, and nobody counts as speaking
};

/// `givenName` is the hero's. A tag that no row knows is somebody unknown, without a voice.
Speaker speakerOf(std::string_view tag, std::string_view givenName);

/// The system register that switches the voices of a class, or 0: they are never heard.
int32_t voiceSwitchOf(int32_t speakerClass);

/// Every occurrence of the markers replaced: first the given name's, then the family name's.
std::string withHeroNames(std::string text, std::string_view familyName,
                          std::string_view givenName);

}  // namespace qv
