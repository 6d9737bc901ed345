#pragma once

/// What should be on the screen, in registers: scenes only state it, EffectCommand composes it, and
/// a save holds it. Slot 0 is the background or event, slots 1 to 5 are the figures. Picture names
/// are Shift-JIS without folder and ending, mouth files are whole paths. Scenario thread.

#include <cstdint>

#include "scenario/story_tables.h"

namespace qv {

inline constexpr int32_t FirstFigureSlot = 1, LastFigureSlot = 5;

/// The registers of a slot. Slot 2 keeps its mouth's key where slot 1 does, on purpose.
struct PictureSlot {
  int32_t speaker, hasMouth, x, y, mouthX, mouthY, mouthKey;  ///< numeric
  int32_t picture, mouthFile;                                 ///< string
};
/// `slot` is 0 to 5. Slot 0 has no place of its own: its x and y are the speaker's register.
PictureSlot pictureSlot(int32_t slot);

/// Where a figure in that slot stands, as an offset from the left; 0 for no slot.
int32_t standingPlace(int32_t slot);

void ClearAllPictures();
/// 0 to 5; others do nothing.
void ClearSlot(int32_t slot);
void SetSlotSpeaker(int32_t speaker, int32_t slot);
/// Gives the slot that took it: where the speaker stands already, else the one asked for.
int32_t PlaceSprite(int32_t speaker, int32_t slot, const char* file, int32_t x, int32_t y);
/// A figure with its mouth, aligned to the screen's lower edge. Raises what the file raises.
void PlaceSpriteBottom(const SpriteRow& row, int32_t slot);
/// `file` without folder and ending.
void PlaceMouth(int32_t speaker, int32_t slot, const char* file, int32_t x, int32_t y, int32_t key);

/// "CG\NAME.mcg".
[[nodiscard]] class QVString picturePath(const char* name);

/// Notes that picture `number` of the gallery has been seen, in the system file too.
void SetSeenPicture(int32_t number);

/// The picture behind the message frame is too dark to be tinted as it is.
bool pictureIsDark();

}  // namespace qv
