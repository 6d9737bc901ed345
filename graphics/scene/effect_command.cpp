// EffectCommand: composes the picture that the registers describe and brings it to the screen.

#include <array>
#include <string>

#include "graphics/animation/animation_area.h"
#include "graphics/animation/animation_sequence.h"
#include "graphics/scene/commands.h"
#include "graphics/scene/picture_drawing.h"
#include "graphics/scene/picture_registers.h"
#include "message/message_window.h"
#include "message/skip_poll.h"
#include "platform/kernel/kernel.h"
#include "scenario/handles.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t EffectCut = 1, EffectFromBlack = 9;
constexpr int32_t FlashWhite = 200, FlashBlack = 201, FlashGrey = 202;
constexpr uint32_t FlashMillis = 100;
constexpr int32_t RestTenths = 5;
constexpr int32_t MouthCells = 3, ColourCount = 256, FullTint = 255;
constexpr int32_t PlainIndex = 136, LastIndex = 255;
constexpr int32_t OrderDigits = 5;

/// Effects that stand still for half a second first.
constexpr std::array RestedEffects{38, 40, 41, 42, 43};

struct PlainPicture {
  const char* name;
  SystemColour colour;
};
constexpr PlainPicture PlainPictures[] = {
    {"WHITE", SystemWhite}, {"BLACK", SystemBlack}, {"RED", SystemRed}, {"BLUE", SystemBlue}};

QVString& text(int32_t number) {
  return theScenario->StrReg(number);
}

void loadPicture(QVVSurface& picture, const QVString& name) {
  picture.loadFromFile(picturePath(name.text()).text());
}

/// One colour all over, with black and white at the table's ends.
void fillPlain(QVVSurface& picture, SystemColour colour) {
  const scobjPalette system = systemColours();
  scobjPalette colours;
  colours.create(ColourCount);
  colours.copyRange(PlainIndex, system, colour, 1);
  colours.copyRange(0, system, SystemBlack, 1);
  colours.copyRange(LastIndex, system, SystemWhite, 1);
  setAllColours(picture, colours);
  picture.fill(PlainIndex);
}

void drawBackground(QVVSurface& picture) {
  const QVString& name = text(BackgroundName);
  for (const PlainPicture& plain : PlainPictures) {
    if (name.view() != plain.name) continue;
    fillPlain(picture, plain.colour);
    return;
  }
  if (name.length() != 0) loadPicture(picture, name);
}

/// The slots in the order of drawing: the digits of `order`, the last of them on top.
std::array<int32_t, OrderDigits> slotsOf(int32_t order) {
  return {order / 10000, order / 1000 % 10, order / 100 % 10, order / 10 % 10, order % 10};
}

void drawFigures(QVVSurface& picture, int32_t order) {
  for (const int32_t slot : slotsOf(order)) {
    if (slot >= FirstFigureSlot && slot <= LastFigureSlot) {
      const PictureSlot place = pictureSlot(slot);
      if (text(place.picture).length() != 0)
        DrawFileKeyed(picture, picturePath(text(place.picture).text()).text(),
                      theScenario->Reg(place.x), theScenario->Reg(place.y), true, KeyTopLeft);
    }
    SkipPoll();
  }
}

std::string mouthName(const char* stem, int32_t slot) {
  return std::string(stem) + "0" + std::to_string(slot) + "_MOUTH";
}

void removeMouth(int32_t slot) {
  const std::string area = mouthName("CG_AREA", slot), surface = mouthName("CG_SURF", slot);
  if (theScenario->FindObject(area.c_str(), TypeAnimationArea))
    theScenario->HideArea(area.c_str(), 0);
  theScenario->DestroyObjects({surface.c_str(), area.c_str()});
}

void makeMouth(QVVSurface& picture, int32_t slot) {
  const PictureSlot place = pictureSlot(slot);
  const QVString& file = text(place.mouthFile);
  if (file.length() == 0) return;
  const std::string area = mouthName("CG_AREA", slot), surface = mouthName("CG_SURF", slot),
                    sequence = mouthName("CG_SEQU", slot);
  theScenario->CreateObject(surface.c_str(), TypeAnimationSurface,
                            {file.text(), MouthCells, theScenario->Reg(place.mouthKey)});
  auto* cells = static_cast<QVAnimationSurface*>(
      theScenario->FindNative(surface.c_str(), TypeAnimationSurface));
  if (!cells) return;
  const int32_t x = theScenario->Reg(place.mouthX), y = theScenario->Reg(place.mouthY);
  cells->drawCell(picture, x, y, 0);
  if (auto* motion = static_cast<AnimationSequence*>(
          theScenario->FindNative(sequence.c_str(), TypeAnimationSequence)))
    motion->rewind();
  const QVAnimationSurface::Size size = cells->cellSize(0);
  const Rectangle where = Rectangle::at(x, y, size.width, size.height);
  theScenario->CreateObject(area.c_str(), TypeAnimationArea, {&where});
  theScenario->RelateAnimation(area.c_str(), surface.c_str(), sequence.c_str(), slot, 0, 0, 1);
  theScenario->ConnectObjects(area.c_str(), PictureView);
  theScenario->Reg(place.hasMouth) = 1;
  mergeColours(picture, file.text());
}

void setMouths(QVVSurface& picture) {
  for (int32_t slot = FirstFigureSlot; slot <= LastFigureSlot; ++slot)
    removeMouth(slot);
  for (int32_t slot = FirstFigureSlot; slot <= LastFigureSlot; ++slot)
    makeMouth(picture, slot);
}

void bring(int32_t effect, int32_t steps = 0) {
  theScenario->DrawTo(PictureView, PictureSurface, steps, 0, 0, 0, 0, 0, effect, KeyNone);
}

/// The whole view in one colour, which takes the place of its first entry.
void showPlain(View& view, const scobjPalette& source, int32_t entry) {
  view.hold();
  scobjPalette colours;
  colours.takeFromSurface(*view.surface8());
  colours.copyRange(0, source, entry, 1);
  setAllColours(*view.surface8(), colours);
  view.surface8()->fill(0);
  view.release(true);
}

void fadeFromBlack(View& view, int32_t steps) {
  scobjPalette present;
  present.takeFromSurface(*view.surface8());
  showPlain(view, present, SystemBlack);
  bring(EffectFromBlack, steps);
}

/// A flash of white or of the system's first colour, then the picture or its greys.
void flash(View& view, QVVSurface& picture, int32_t type) {
  const uint32_t start = tickCount();
  showPlain(view, systemColours(), type == FlashBlack ? 0 : static_cast<int32_t>(SystemWhite));
  view.flush(nullptr, 0);
  const uint32_t gone = tickCount() - start;
  if (gone < FlashMillis && theScenario->host())
    theScenario->host()->SleepUnlessAborted(FlashMillis - gone);
  // The grey picture stays: its greys become the surface's own colours.
  if (type == FlashGrey) {
    picture.tintMonochrome(FullTint, FullTint, FullTint, 0, 0);
    picture.setColours(picture.shownColours(), 0, 0, ColourCount);
  }
  view.surface8()->copyPaletteFrom(picture);
  bring(EffectCut);
}

void show(View& view, QVVSurface& picture, int32_t type, int32_t steps) {
  if (theScenario->SysReg(EffectsEnabled) != 1) {
    bring(EffectCut);
    return;
  }
  switch (type) {
    case EffectFromBlack:
      fadeFromBlack(view, steps);
      return;
    case FlashWhite:
    case FlashBlack:
    case FlashGrey:
      flash(view, picture, type);
      return;
    default:
      for (const int32_t rested : RestedEffects)
        if (type == rested) theScenario->WaitSound(RestTenths);
      bring(type);
  }
}

}  // namespace

void EffectCommand(int32_t type, int32_t steps, int32_t order) {
  if (!theScenario) return;
  QVVSurface* picture = surfaceNamed(PictureSurface);
  View* view = viewNamed(PictureView);
  if (!picture || !view) return;
  coverMessageWindow();
  HideMessageWindow();
  if (text(EventPictureName).length() != 0) {
    loadPicture(*picture, text(EventPictureName));
  } else {
    drawBackground(*picture);
    drawFigures(*picture, order);
  }
  setMouths(*picture);
  SkipPoll();
  show(*view, *picture, type, steps);
  theScenario->CopyPalette(PictureView, PictureSurface);
  SkipPoll();
  buildMessageFrame();
  SkipPoll();
}

}  // namespace qv
