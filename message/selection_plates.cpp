#include "message/selection_plates.h"

#include "graphics/scene/picture_drawing.h"
#include "message/standing_names.h"
#include "message/text_areas.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char* FrameSurface = "mfrm.surf";
constexpr int32_t FirstRaised = 10, LastRaised = 246, RaiseAmount = 100;
// The system's colours at both ends of the table, which text and art keep.
constexpr int32_t LowSystemCount = 10, FirstHighSystem = 246, HighSystemCount = 10;

constexpr PlateForm ThreePlates[] = {
    {"select01.view", "sel01.surf", SelectionMap, "select01.Title.Aria", 40, 55, 565, 122},
    {"select02.view", "sel02.surf", "clmsel02", "select02.Title.Aria", 40, 177, 565, 111},
    {"select03.view", "sel03.surf", "clmsel03", "select03.Title.Aria", 40, 288, 565, 111},
};
constexpr PlateForm TwoPlates[] = {
    {"select21.view", "sel01.surf", SelectionMap, "select01.Title.Aria", 40, 111, 565, 122},
    {"select22.view", "sel03.surf", "clmsel02", "select02.Title.Aria", 40, 233, 565, 111},
};

struct PlateTint {
  int32_t red, green, blue;
  bool raisesRed, raisesGreen, raisesBlue;
};
constexpr PlateTint BrightTints[MostChoices] = {{220, 100, 100, true, false, false},
                                                {100, 220, 100, false, true, false},
                                                {100, 100, 220, false, false, true}};
constexpr PlateTint DimTint{150, 150, 150, true, true, true};

/// Here only the plain black picture counts as dark.
bool pictureIsBlack() {
  return theScenario->StrReg(BackgroundName).view() == "BLACK" ||
         theScenario->StrReg(EventPictureName).view() == "BLACK";
}

scobjPalette tinted(const scobjPalette& picture, const PlateTint& tint, bool black,
                    const scobjPalette& frame) {
  scobjPalette colours = picture;
  if (black)
    colours.raise(FirstRaised, LastRaised, RaiseAmount, tint.raisesRed, tint.raisesGreen,
                  tint.raisesBlue);
  else
    colours.tint(tint.red, tint.green, tint.blue, 0, 0);
  colours.copyRange(0, frame, 0, LowSystemCount);
  colours.copyRange(FirstHighSystem, frame, FirstHighSystem, HighSystemCount);
  return colours;
}

void setColours(const char* viewName, const scobjPalette& colours, bool flush) {
  View* view = viewNamed(viewName);
  if (!view) return;
  setAllColours(*view->surface8(), colours);
  if (flush) view->flush(nullptr, 0);
}

}  // namespace

std::span<const PlateForm> platesFor(int32_t count) {
  if (count == TwoChoices) return TwoPlates;
  return ThreePlates;
}

PlateColours::PlateColours() {
  scobjPalette picture, frame;
  if (View* view = viewNamed(PictureView)) picture.takeFromSurface(*view->surface8());
  if (const QVVSurface* art = surfaceNamed(FrameSurface)) frame.takeFromSurface(*art);
  const bool black = pictureIsBlack();
  for (size_t plate = 0; plate < bright_.size(); ++plate)
    bright_[plate] = tinted(picture, BrightTints[plate], black, frame);
  dim_ = tinted(picture, DimTint, black, frame);
}

const scobjPalette& PlateColours::bright(int32_t choice) const {
  return bright_[static_cast<size_t>(choice - 1)];
}

void preparePlates(std::span<const PlateForm> plates) {
  const PlateColours colours;
  const QVVSurface* picture = surfaceNamed(PictureSurface);
  int32_t choice = 0;
  for (const PlateForm& plate : plates) {
    ++choice;
    View* view = viewNamed(plate.view);
    const QVVSurface* art = surfaceNamed(plate.art);
    if (!view || !art || !picture) continue;
    QVVSurface& shown = *view->surface8();
    picture->blit(shown, 0, 0, plate.x, plate.y, plate.width, plate.height, KeyNone);
    art->blit(shown, 0, 0, 0, 0, plate.width, plate.height, KeyTopLeft);
    setColours(plate.view, colours.bright(choice), true);
    theScenario->ConnectObjects(plate.map, plate.view);
    theScenario->ConnectObjects(plate.view, plate.area);
    if (QVPrintArea* area = areaNamed(plate.area)) {
      area->saveBackground();
      area->clear(true, true);
    }
  }
}

void showPlates(std::span<const PlateForm> plates, bool visible) {
  for (const PlateForm& plate : plates)
    theScenario->ShowWindow(plate.view, visible ? 1 : 0);
}

void markPlate(std::span<const PlateForm> plates, const PlateColours& colours, int32_t choice) {
  int32_t plateChoice = 0;
  for (const PlateForm& plate : plates) {
    ++plateChoice;
    setColours(plate.view, plateChoice == choice ? colours.bright(plateChoice) : colours.dim(),
               true);
  }
}

}  // namespace qv
