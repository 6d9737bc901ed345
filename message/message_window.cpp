#include "message/message_window.h"

#include "graphics/scene/picture_drawing.h"
#include "graphics/scene/picture_registers.h"
#include "message/frame_buttons.h"
#include "message/frame_colours.h"
#include "message/pendant.h"
#include "message/skip_poll.h"
#include "message/standing_names.h"
#include "message/text_areas.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t CornerX = 586, CornerWidth = 104, CornerHeight = 74;
constexpr ColourKey TextKey = 1;
constexpr const char* FrameFile = "dat\\mframe.mcg";
constexpr int32_t SwitchedOn = 1;

/// The surfaces behind the window; any of them may be missing in a story without a frame.
struct FrameSurfaces {
  QVVSurface* picture = surfaceNamed(PictureSurface);
  QVVSurface* face = surfaceNamed("mess.surf");
  QVVSurface* empty = surfaceNamed("messTemp.surf");
  QVVSurface* art = surfaceNamed("mfrm.surf");
  QVVSurface* skipArt = surfaceNamed("dfrm.surf");
  bool complete() const { return picture && face && empty && art && skipArt; }
};

void copyStrip(const QVVSurface& from, QVVSurface& to, int32_t top, int32_t height, ColourKey key) {
  from.blit(to, 0, 0, 0, top, StripWidth, height, key);
}

void drawCorner(const QVVSurface& art, int32_t sourceX, QVVSurface& target) {
  art.blit(target, CornerX, 0, sourceX, 0, CornerWidth, CornerHeight, KeyTopLeft);
}

scobjPalette coloursOf(const QVVSurface& surface) {
  scobjPalette colours;
  colours.takeFromSurface(surface);
  return colours;
}

/// The picture's colours with the fixed ones, before any tint.
scobjPalette plainColours(const View& picture) {
  scobjPalette colours = coloursOf(*const_cast<View&>(picture).surface8());
  setFixedColours(colours);
  return colours;
}

/// The finished frame without text, on its own surface, which holds the strip already.
void paintEmptyFrame(const FrameSurfaces& surfaces, const scobjPalette& tinted, bool skipCorner) {
  setAllColours(*surfaces.empty, tinted);
  surfaces.art->blit(*surfaces.empty, 0, 0, 0, 0, StripWidth, NormalHeight, KeyTopLeft);
  DrawFileKeyed(*surfaces.empty, FrameFile, 0, 0, true, KeyTopLeft);
  if (skipCorner) drawCorner(*surfaces.skipArt, 0, *surfaces.empty);
  scobjPalette finished = coloursOf(*surfaces.empty);
  finished.set(0, 0, 0, 0);
  finished.set(1, 0, 0, 0);
  setAllColours(*surfaces.empty, finished);
}

/// The face of the present presentation, with the areas on it; no text yet.
void showFace(const FrameSurfaces& surfaces, const scobjPalette& plain) {
  const LineAreas areas;
  if (inDrama()) {
    copyStrip(*surfaces.picture, *surfaces.face, DramaTop, DramaHeight, TextKey);
    setAllColours(*surfaces.face, plain);
  } else {
    copyStrip(*surfaces.empty, *surfaces.face, 0, NormalHeight, TextKey);
    surfaces.face->copyPaletteFrom(*surfaces.empty);
  }
  areas.place(inDrama());
  areas.saveBackground();
}

/// Brings a strip of a surface to a view as it is, colours and all.
void showStrip(const char* viewName, const QVVSurface& from, int32_t top, int32_t height) {
  View* view = viewNamed(viewName);
  if (!view) return;
  view->surface8()->copyPaletteFrom(from);
  copyStrip(from, *view->surface8(), top, height, KeyNone);
  view->flush(nullptr, 0);
}

void showFaceOn(const char* viewName, const QVVSurface& face) {
  showStrip(viewName, face, 0, NormalHeight);
}

void prepareStrip(const char* viewName, const QVVSurface& picture, int32_t top, int32_t height,
                  const scobjPalette& colours) {
  View* view = viewNamed(viewName);
  if (!view) return;
  copyStrip(picture, *view->surface8(), top, height, TextKey);
  setAllColours(*view->surface8(), colours);
}

void reprint() {
  const LineAreas areas;
  areas.clear();
  // Clearing leaves the pens where the next text begins; a line begins where SpeakLine puts them.
  areas.home();
  printStandingLine();
}

void leaveDrama(const FrameSurfaces& surfaces) {
  copyStrip(*surfaces.empty, *surfaces.face, 0, NormalHeight, KeyNone);
  drawCorner(*surfaces.art, CornerX, *surfaces.face);
  if (FrameButtons* buttons = frameButtons()) buttons->enableQuick();
  surfaces.face->copyPaletteFrom(*surfaces.empty);
}

void enterDrama(const FrameSurfaces& surfaces) {
  copyStrip(*surfaces.picture, *surfaces.face, DramaTop, DramaHeight, TextKey);
  surfaces.face->copyPaletteFrom(*surfaces.picture);
}

/// The registers of the presentation: drama is heard, and nothing in it is passed over.
void setPresentation(bool drama) {
  SysReg(DramaMode) = drama ? 1 : 0;
  if (!drama) return;
  for (int32_t number = SpeakerVoiceFirst; number <= OtherVoiceEnabled; ++number)
    SysReg(number) = SwitchedOn;
  for (const int32_t number : {EffectsEnabled, SoundEffectsEnabled, VoiceEnabled})
    SysReg(number) = SwitchedOn;
  SysReg(SkipMode) = 0;
  Reg(PendingCodeRegister) = 0;
}

/// The face of the new presentation with the line that stands.
void showOtherFace(const FrameSurfaces& surfaces) {
  if (inDrama())
    enterDrama(surfaces);
  else
    leaveDrama(surfaces);
  const LineAreas areas;
  areas.place(inDrama());
  areas.saveBackground();
  reprint();
  showFaceOn(inDrama() ? DramaView : NormalView, *surfaces.face);
}

}  // namespace

bool inDrama() {
  return SysReg(DramaMode) != 0;
}

void HideMessageWindow() {
  if (!theScenario) return;
  Reg(MessageHiddenRegister) = 1;
  theScenario->ShowWindow(DramaView, 0);
  theScenario->ShowWindow(NormalView, 0);
}

void showPresentView(bool visible) {
  const char* present = inDrama() ? DramaView : NormalView;
  theScenario->ShowWindow(inDrama() ? NormalView : DramaView, 0);
  theScenario->ShowWindow(present, visible ? 1 : 0);
}

void ShowMessageWindow() {
  if (!theScenario) return;
  Reg(MessageHiddenRegister) = 0;
  showPresentView(true);
}

void printStandingLine() {
  LineAreas().print(theScenario->StrReg(SpeakerName).text(),
                    theScenario->StrReg(MessageLast).text());
}

void ToggleDramaMode() {
  if (!theScenario) return;
  setPresentation(!inDrama());
  const FrameSurfaces surfaces;
  if (surfaces.complete()) showOtherFace(surfaces);
  if (Reg(MessageHiddenRegister) == 0) {
    MessageWindowHiddenFlag = 0;
    ShowMessageWindow();
  }
  ShowPendant();
}

void RebuildMessageWindow() {
  if (!theScenario) return;
  const FrameSurfaces surfaces;
  View* picture = viewNamed(PictureView);
  if (!surfaces.complete() || !picture) return;
  picture->surface8()->blit(*surfaces.picture, 0, 0, 0, 0, surfaces.picture->width(),
                            surfaces.picture->height(), KeyNone);
  surfaces.picture->copyPaletteFrom(*picture->surface8());
  if (View* view = viewNamed(NormalView)) {
    copyStrip(*surfaces.picture, *view->surface8(), NormalTop, NormalHeight, KeyNone);
    view->flush(nullptr, 0);
  }
  copyStrip(*surfaces.picture, *surfaces.empty, NormalTop, NormalHeight, KeyNone);
  const scobjPalette plain = plainColours(*picture);
  scobjPalette tinted = plain;
  if (View* view = viewNamed(NormalView)) setAllColours(*view->surface8(), plain);
  tintFrame(tinted, SysReg(WindowColour), pictureIsDark());
  paintEmptyFrame(surfaces, tinted, false);
  showFace(surfaces, plain);
  reprint();
  showFaceOn(DramaView, *surfaces.face);
  showFaceOn(NormalView, *surfaces.face);
}

void buildMessageFrame() {
  const FrameSurfaces surfaces;
  View* picture = viewNamed(PictureView);
  if (!surfaces.complete() || !picture) return;
  const scobjPalette plain = plainColours(*picture);
  prepareStrip(NormalView, *surfaces.picture, NormalTop, NormalHeight, plain);
  prepareStrip(DramaView, *surfaces.picture, DramaTop, DramaHeight, plain);
  copyStrip(*surfaces.picture, *surfaces.empty, NormalTop, NormalHeight, TextKey);
  scobjPalette tinted = plain;
  tintFrame(tinted, SysReg(WindowColour), pictureIsDark());
  SkipPoll();
  paintEmptyFrame(surfaces, tinted, SysReg(SkipMode) != 0);
  showFace(surfaces, plain);
}

void coverMessageWindow() {
  const FrameSurfaces surfaces;
  if (!surfaces.picture) return;
  if (inDrama())
    showStrip(DramaView, *surfaces.picture, DramaTop, DramaHeight);
  else
    showStrip(NormalView, *surfaces.picture, NormalTop, NormalHeight);
}

void RestoreFrameCorner() {
  if (!theScenario || inDrama()) return;
  const FrameSurfaces surfaces;
  if (surfaces.art && surfaces.face) drawCorner(*surfaces.art, CornerX, *surfaces.face);
  if (FrameButtons* buttons = frameButtons()) buttons->enableQuick();
}

void RestoreButtonStrip() {
  if (!theScenario || inDrama()) return;
  RestoreFrameCorner();
  if (FrameButtons* buttons = frameButtons()) buttons->redrawNormal();
}

void showSkipCorner() {
  const FrameSurfaces surfaces;
  if (surfaces.skipArt && surfaces.face) drawCorner(*surfaces.skipArt, 0, *surfaces.face);
  if (FrameButtons* buttons = frameButtons()) buttons->disableQuick();
}

}  // namespace qv
