#pragma once

/// The names by which scenes call pictures, with the gallery flag of each: one table a command. The
/// rows of figures that are the same in every story stand here whole; of the others the story gives
/// place and mouth (scenario/story_tables.h). The scene compiler looks names up here too: the
/// tables need nothing of the running engine; what does is in picture_rows.cpp.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "scenario/story_tables.h"

namespace qv {

/// A picture that no gallery keeps.
inline constexpr int32_t WithoutFlag = -1;

struct NamedFlag {
  const char* name;
  int32_t flag;
};

/// Exact names, in the order in which they are tried.
std::span<const NamedFlag> backgroundNames();
std::span<const NamedFlag> eventNames();
std::span<const NamedFlag> titleNames();
std::span<const NamedFlag> spriteNames();
/// The row of that name, or null.
const NamedFlag* findName(std::span<const NamedFlag> names, std::string_view name);

/// Figures that stand alike in every story: whole rows, which no story can change.
std::span<const SpriteRow> commonSprites();

/// A row in the running story: the engine's own where it has a whole one, else the story's; null
/// for neither. Scenario thread.
const PictureRow* findPictureRow(std::string_view name);
const SpriteRow* findSpriteRow(std::string_view name);

/// The picture of a figure, without folder and ending: what its row says, else its sister's or its
/// own.
std::string spriteFile(const SpriteRow& row);

/// Group shots: the picture alone, with speakers who stand in it.
bool isGroupShot(std::string_view name);
std::span<const char* const> groupShots();

/// The families of variants: which names they take, what they show, the key of their mouths.
struct SpriteFamily {
  const char* prefix;  ///< takes the place of the first three letters
  int32_t mouthKey;    ///< MouthWithoutKey: the plain form's
};
inline constexpr SpriteFamily FamilyKZC{"KZC", 135}, FamilyKYC{"KYC", 87},
    FamilyKXS{"KXS", MouthWithoutKey};

}  // namespace qv
