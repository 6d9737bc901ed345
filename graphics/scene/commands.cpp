#include "graphics/scene/commands.h"

// Pictures come to the screen when surfaces and views exist; until then a story plays unseen.

namespace qv {

void BgCommand(const char*) {}
void EventCommand(const char*) {}
void TitleCommand(const char*) {}
void SpriteCommand(const char*, int32_t) {}
void SpriteCommandKZC(const char*, int32_t) {}
void SpriteCommandKYC(const char*, int32_t) {}
void SpriteCommandKXS(const char*, int32_t) {}
void ClearSprite(int32_t) {}
void EffectCommand(int32_t, int32_t, int32_t) {}
void FadeToBlack(int32_t) {}
void FadeScreenFast(int32_t) {}
void DrawFile(const char*, int32_t, int32_t, int32_t) {}
void QuakeEffect(int32_t, int32_t, int32_t, int32_t) {}
void FlashRed(int32_t) {}
void SpecialEffect(int32_t) {}
void FlashbackTint() {}
void FlashbackEnd() {}
void ChapterCards(int32_t, int32_t) {}
void ChapterCatch(int32_t, int32_t) {}
void ChapterPreview(int32_t, int32_t) {}
void PictureRunFirst() {}

}  // namespace qv
