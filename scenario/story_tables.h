#pragma once

/// The data of a story that the engine's commands read beside its scenes: who speaks, which
/// pictures have mouths, where figures stand. scenec writes the tables from story.txt into the
/// module. Texts are Shift-JIS and live as long as the module. They do not change.

#include <array>
#include <cstdint>
#include <span>

namespace qv {

/// Class of a speaker without a voice of its own, and of one that no row knows.
inline constexpr int32_t SpeakerWithoutClass = 0, UnknownSpeaker = 254;

/// One way in which scenes name a speaker.
struct SpeakerRow {
  const char* tag;
  const char* shown;    ///< what history and registers keep
  const char* printed;  ///< what the frame prints; null: as shown
  int32_t speakerClass;
  bool ends;  ///< the hero by the name of the first start: printed, and the line has no voice
};

/// Key of a mouth strip without one.
inline constexpr int32_t MouthWithoutKey = -2;

/// A mouth of a picture: who speaks with it, the slot that keeps it, its strip of three cells.
struct MouthRow {
  int32_t speaker, slot;
  const char* file;  ///< without folder and ending; null: the speaker stands there without a mouth
  int32_t x, y, key;
};

/// An event or title picture by its name.
struct PictureRow {
  static constexpr int MostMouths = 5;
  const char* name;
  const char* file;  ///< the picture that is shown for it; null: the name's own
  int32_t mouthCount;
  MouthRow mouths[MostMouths];
};

/// A figure by its name.
struct SpriteRow {
  const char* name;
  int32_t speaker;
  int32_t x;          ///< of its left edge from the slot's place
  int32_t y;          ///< of its foot below the screen's; the top edge for a figure without mouth
  const char* file;   ///< null: the name's own
  const char* mouth;  ///< null: it has none
  int32_t mouthX, mouthY, key;
};

struct StoryTables {
  std::span<const SpeakerRow> speakers{};
  std::span<const SpriteRow> sprites{};
  std::span<const PictureRow> pictures{};
  /// Whose affection is kept, in the order of the registers; null behind the last.
  std::array<const char*, 8> parameterNames{};
  // The hero's names where the player has given none.
  const char* familyName = "";
  const char* givenName = "";
};

/// The running story's; empty before sc_start. Scenario thread.
const StoryTables& storyTables();
/// Null takes them away.
void setStoryTables(const StoryTables* tables);

}  // namespace qv
