#pragma once

/// The picture commands of scenes. Picture names and paths are Shift-JIS. A null does nothing, but
/// of a figure it takes away, as an empty name does. Scenario thread.

#include <cstdint>

namespace qv {

/// The order of drawing that scenes give every EffectCommand: the first slot's figure lies lowest.
inline constexpr int32_t EffectConstant = 12345;

/// A picture's name, or "BLACK", "WHITE", "BLUE". Shown by the next effect.
void BgCommand(const char* picture);
void EventCommand(const char* picture);
void TitleCommand(const char* picture);
/// A figure's picture into a slot, 1 to 5; the letters name its family. No name takes away the
/// slot's figure, with slot 0 all five.
void SpriteCommand(const char* picture, int32_t slot);
void SpriteCommandKZC(const char* picture, int32_t slot);
void SpriteCommandKYC(const char* picture, int32_t slot);
void SpriteCommandKXS(const char* picture, int32_t slot);
void ClearSprite(int32_t slot);  ///< 0: all slots
/// Brings the picture to the screen by the effect of that number. The five decimal digits of
/// `order` name the slots as they are drawn, the last one on top; 0 and digits beyond 5 draw
/// nothing.
void EffectCommand(int32_t effect, int32_t frames, int32_t order);
/// In four steps where effects are switched off; not at all right after a save or a load.
void FadeToBlack(int32_t steps);
void FadeToWhite(int32_t steps);
void FadeScreenFast(int32_t steps);
void DrawFile(const char* file, int32_t frames, int32_t unused, int32_t effect);

/// Shakes by dx, dy pixels; the last argument has no effect.
void QuakeEffect(int32_t dx, int32_t dy, int32_t rounds, int32_t unused);
void FlashRed(int32_t count);
void SpecialEffect(int32_t code);
void FlashbackTint();
void FlashbackEnd();
void ChapterCards(int32_t chapter, int32_t form);
void ChapterCatch(int32_t chapter, int32_t form);
void ChapterPreview(int32_t chapter, int32_t form);
void PictureRunFirst();

}  // namespace qv
