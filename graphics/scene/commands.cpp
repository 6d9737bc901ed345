#include "graphics/scene/commands.h"

#include <cstring>
#include <string>

#include "graphics/scene/picture_registers.h"
#include "graphics/scene/picture_tables.h"
#include "message/message_window.h"
#include "message/skip_poll.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t ReducedFadeSteps = 4, GreyBlack = 0, GreyWhite = 255, DoNotKeep = 0;
constexpr int32_t EffectPaletteFade = 9;

// The second girl of this pair lies in the first one's picture, which stands in the first slot.
constexpr const char* PairPicture = "KUS110";
constexpr int32_t PairSlot = 1, PairSpeaker = 13;
constexpr MouthRow PairSecondMouth{14, 2, "Kus110_b", 196, 193, 85};

void setName(int32_t number, const char* name) {
  theScenario->StrReg(number).create(QVString::DefaultGrain, name);
}

void noteSeen(const NamedFlag* row) {
  if (row && row->flag != WithoutFlag) SetSeenPicture(row->flag);
}

void placeMouths(const PictureRow& row) {
  for (int32_t index = 0; index < row.mouthCount; ++index) {
    const MouthRow& mouth = row.mouths[index];
    if (mouth.file)
      PlaceMouth(mouth.speaker, mouth.slot, mouth.file, mouth.x, mouth.y, mouth.key);
    else
      SetSlotSpeaker(mouth.speaker, mouth.slot);
  }
}

void showStill(const char* picture, std::span<const NamedFlag> names) {
  if (!theScenario || !picture) return;
  ClearAllPictures();
  setName(EventPictureName, picture);
  const NamedFlag* known = findName(names, picture);
  noteSeen(known);
  if (known) {
    if (const PictureRow* row = findPictureRow(picture)) {
      if (row->file) setName(EventPictureName, row->file);
      placeMouths(*row);
    }
  }
  SkipPoll();
}

/// The picture fills the first slot by itself, from the screen's left edge unless its row says
/// otherwise; who is in it has no figure of his own.
void placeGroup(const char* picture) {
  ClearSlot(FirstFigureSlot);
  const PictureSlot place = pictureSlot(FirstFigureSlot);
  setName(place.picture, picture);
  if (const SpriteRow* row = findSpriteRow(picture)) {
    theScenario->Reg(place.x) = row->x;
    theScenario->Reg(place.y) = row->y;
  }
  if (const PictureRow* row = findPictureRow(picture)) placeMouths(*row);
}

void placeOne(const SpriteRow& row, int32_t slot) {
  if (row.mouth) {
    PlaceSpriteBottom(row, slot);
    return;
  }
  slot = PlaceSprite(row.speaker, slot, spriteFile(row).c_str(), row.x, row.y);
  SetSlotSpeaker(row.speaker, slot);
}

/// Who the two are does not depend on the story's row.
void placePair(SpriteRow row) {
  row.speaker = PairSpeaker;
  placeOne(row, PairSlot);
  PlaceMouth(PairSecondMouth.speaker, PairSecondMouth.slot, PairSecondMouth.file, PairSecondMouth.x,
             PairSecondMouth.y, PairSecondMouth.key);
}

void placeFigure(const SpriteRow& row, int32_t slot) {
  if (std::strcmp(row.name, PairPicture) == 0)
    placePair(row);
  else
    placeOne(row, slot);
}

void clearFigures(int32_t slot) {
  if (slot >= FirstFigureSlot) {
    ClearSlot(slot);
    return;
  }
  if (slot != 0) return;
  for (int32_t each = FirstFigureSlot; each <= LastFigureSlot; ++each)
    ClearSlot(each);
}

/// A variant shows its own picture and mouth where the plain figure's would stand.
void placeVariant(const char* picture, int32_t slot, const SpriteFamily& family,
                  const char* accepted) {
  const bool takes = std::strncmp(picture, accepted, std::strlen(accepted)) == 0;
  const SpriteRow* plain = takes ? findSpriteRow(picture) : nullptr;
  if (!plain) return;
  SpriteRow row = *plain;
  const size_t prefixLength = std::strlen(family.prefix);
  const std::string file = family.prefix + std::string(plain->name).substr(prefixLength);
  std::string mouth;
  row.file = file.c_str();
  if (plain->mouth) {
    // Mouths are called as their pictures are, in small letters behind the first.
    mouth = plain->mouth;
    for (size_t at = 0; at < prefixLength && at < mouth.size(); ++at)
      mouth[at] = static_cast<char>(at == 0 ? family.prefix[at] : family.prefix[at] | 0x20);
    row.mouth = mouth.c_str();
    if (plain->key != MouthWithoutKey && family.mouthKey != MouthWithoutKey)
      row.key = family.mouthKey;
  }
  placeFigure(row, slot);
  noteSeen(findName(spriteNames(), picture));
}

bool isEmpty(const char* text) {
  return !text || !*text;
}

void fadeAway(int32_t steps, int32_t grey) {
  // A game that was just saved or loaded is redrawn whole; nothing is to fade first.
  if (!theScenario || theScenario->Reg(SavedStateRegister) != 0) return;
  const bool effects = theScenario->SysReg(EffectsEnabled) != 0;
  SkipPoll();
  HideMessageWindow();
  theScenario->FadeView(PictureView, effects ? steps : ReducedFadeSteps, grey, DoNotKeep);
}

}  // namespace

void BgCommand(const char* picture) {
  if (!theScenario || !picture) return;
  ClearAllPictures();
  setName(BackgroundName, picture);
  noteSeen(findName(backgroundNames(), picture));
  SkipPoll();
}

void EventCommand(const char* picture) {
  showStill(picture, eventNames());
}

void TitleCommand(const char* picture) {
  showStill(picture, titleNames());
}

void SpriteCommand(const char* picture, int32_t slot) {
  if (!theScenario) return;
  if (isEmpty(picture)) {
    clearFigures(slot);
  } else if (isGroupShot(picture)) {
    placeGroup(picture);
    noteSeen(findName(spriteNames(), picture));
  } else if (const SpriteRow* row = findSpriteRow(picture)) {
    placeFigure(*row, slot);
    noteSeen(findName(spriteNames(), picture));
  }
  SkipPoll();
}

void SpriteCommandKZC(const char* picture, int32_t slot) {
  if (!theScenario) return;
  if (isEmpty(picture))
    clearFigures(slot);
  else
    placeVariant(picture, slot, FamilyKZC, "KUC");
  SkipPoll();
}

void SpriteCommandKYC(const char* picture, int32_t slot) {
  if (!theScenario) return;
  if (isEmpty(picture))
    clearFigures(slot);
  else
    placeVariant(picture, slot, FamilyKYC, "KUC");
  SkipPoll();
}

void SpriteCommandKXS(const char* picture, int32_t slot) {
  if (!theScenario) return;
  if (isEmpty(picture))
    clearFigures(slot);
  else
    for (const char* accepted : {"KUS012", "KUS082"})
      if (std::strcmp(picture, accepted) == 0) placeVariant(picture, slot, FamilyKXS, accepted);
  SkipPoll();
}

void ClearSprite(int32_t slot) {
  if (!theScenario) return;
  clearFigures(slot);
  SkipPoll();
}

void FadeToBlack(int32_t steps) {
  fadeAway(steps, GreyBlack);
}

void FadeToWhite(int32_t steps) {
  fadeAway(steps, GreyWhite);
}

// The same fade, however the effects are switched.
void FadeScreenFast(int32_t steps) {
  if (!theScenario) return;
  SkipPoll();
  HideMessageWindow();
  theScenario->FadeView(PictureView, steps, GreyBlack, DoNotKeep);
}

void DrawFile(const char* file, int32_t frames, int32_t, int32_t effect) {
  if (!theScenario || !file) return;
  const int32_t steps = effect == EffectPaletteFade ? frames : 0;
  theScenario->DrawTo(PictureView, file, steps, 0, 0, 0, 0, 0, effect);
}

}  // namespace qv
