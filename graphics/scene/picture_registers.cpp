#include "graphics/scene/picture_registers.h"

#include <array>
#include <string>

#include "foundation/string.h"
#include "graphics/scene/picture_tables.h"
#include "graphics/surface.h"
#include "platform/display/display.h"
#include "scenario/handles.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t SharedMouthKeyRegister = 26;
constexpr const char* TemporarySurface = "ChrTempSurf";
constexpr std::array<int32_t, LastFigureSlot + 1> StandingPlaces{0, 100, 210, 320, 430, 560};

bool isFigureSlot(int32_t slot) {
  return slot >= FirstFigureSlot && slot <= LastFigureSlot;
}

void setText(int32_t number, const char* text) {
  theScenario->StrReg(number).create(QVString::DefaultGrain, text ? text : "");
}

bool holds(int32_t number, const char* text) {
  return theScenario->StrReg(number).view() == text;
}

/// The slot in which that speaker stands, else the one that was asked for.
int32_t slotOfSpeaker(int32_t speaker, int32_t slot) {
  for (int32_t place = FirstFigureSlot; place <= LastFigureSlot; ++place)
    if (theScenario->Reg(pictureSlot(place).speaker) == speaker) return place;
  return slot;
}

}  // namespace

PictureSlot pictureSlot(int32_t slot) {
  if (!isFigureSlot(slot))
    return {.speaker = Slot0SpeakerRegister,
            .hasMouth = Slot0MouthRunningRegister,
            .x = Slot0SpeakerRegister,
            .y = Slot0SpeakerRegister,
            .mouthX = Slot0MouthXRegister,
            .mouthY = Slot0MouthYRegister,
            .mouthKey = Slot0MouthKeyRegister,
            .picture = EventPictureName,
            .mouthFile = FirstMouthFile};
  const int32_t base = PictureSlotBaseRegister + (slot - FirstFigureSlot) * PictureSlotStride;
  return {.speaker = base,
          .hasMouth = base + 1,
          .x = base + 2,
          .y = base + 3,
          .mouthX = base + 4,
          .mouthY = base + 5,
          .mouthKey = slot <= 2 ? SharedMouthKeyRegister : base + 6,
          .picture = EventPictureName + slot,
          .mouthFile = FirstMouthFile + slot};
}

int32_t standingPlace(int32_t slot) {
  return isFigureSlot(slot) ? StandingPlaces[static_cast<size_t>(slot)] : 0;
}

void ClearAllPictures() {
  if (!theScenario) return;
  setText(BackgroundName, "");
  for (int32_t slot = 0; slot <= LastFigureSlot; ++slot)
    ClearSlot(slot);
}

void ClearSlot(int32_t slot) {
  if (!theScenario) return;
  if (slot == 0) {
    setText(EventPictureName, "");
    theScenario->Reg(Slot0SpeakerRegister) = 0;
    theScenario->Reg(Slot0ClearedRegister) = 0;
    return;
  }
  if (!isFigureSlot(slot)) return;
  const PictureSlot place = pictureSlot(slot);
  setText(place.picture, "");
  setText(place.mouthFile, "");
  for (const int32_t number :
       {place.speaker, place.x, place.y, place.hasMouth, place.mouthX, place.mouthY})
    theScenario->Reg(number) = 0;
  theScenario->Reg(place.mouthKey) = MouthWithoutKey;
}

void SetSlotSpeaker(int32_t speaker, int32_t slot) {
  if (!theScenario || (slot != 0 && !isFigureSlot(slot))) return;
  const PictureSlot place = pictureSlot(slot);
  theScenario->Reg(place.hasMouth) = 0;
  theScenario->Reg(place.speaker) = speaker;
}

int32_t PlaceSprite(int32_t speaker, int32_t slot, const char* file, int32_t x, int32_t y) {
  if (!theScenario) return slot;
  slot = slotOfSpeaker(speaker, slot);
  if (!isFigureSlot(slot)) return slot;
  const PictureSlot place = pictureSlot(slot);
  if (theScenario->StrReg(place.picture).length() != 0) ClearSlot(slot);
  theScenario->Reg(place.x) = x + standingPlace(slot);
  theScenario->Reg(place.y) = y;
  setText(place.picture, file);
  return slot;
}

void PlaceSpriteBottom(const SpriteRow& row, int32_t slot) {
  if (!theScenario) return;
  const std::string file = spriteFile(row);
  int32_t height = 0;
  {
    const SurfaceHandle picture(TemporarySurface, picturePath(file.c_str()).text(),
                                DestroyWithHandle);
    height = picture.height();
  }
  const int32_t top = ScreenHeight - height + row.y;
  slot = PlaceSprite(row.speaker, slot, file.c_str(), row.x, top);
  PlaceMouth(row.speaker, slot, row.mouth, row.mouthX + standingPlace(slot) + row.x,
             row.mouthY + top, row.key);
}

void PlaceMouth(int32_t speaker, int32_t slot, const char* file, int32_t x, int32_t y,
                int32_t key) {
  if (!theScenario || (slot != 0 && !isFigureSlot(slot))) return;
  const PictureSlot place = pictureSlot(slot);
  theScenario->Reg(place.speaker) = speaker;
  setText(place.mouthFile, picturePath(file).text());
  theScenario->Reg(place.mouthX) = x;
  theScenario->Reg(place.mouthY) = y;
  theScenario->Reg(place.mouthKey) = key;
}

QVString picturePath(const char* name) {
  QVString path("CG\\");
  path.append(name);
  path.append(".mcg");
  return path;
}

void SetSeenPicture(int32_t number) {
  if (theScenario) theScenario->SetSysReg(PictureSeenBase + number, 1, 1);
}

bool pictureIsDark() {
  return theScenario && (holds(BackgroundName, "BLACK") || holds(EventPictureName, "BLACK") ||
                         holds(BackgroundName, "KBA020S1") || holds(BackgroundName, "KBA020S2"));
}

}  // namespace qv
