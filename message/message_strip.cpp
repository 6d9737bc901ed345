#include "message/message_strip.h"

#include "graphics/scene/picture_drawing.h"
#include "input/click_map.h"
#include "message/message_window.h"
#include "message/pendant.h"
#include "message/standing_names.h"
#include "message/wait_codes.h"
#include "scenario/commands.h"
#include "scenario/picture_names.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr const char *FaceSurface = "mess.surf", *BlinkArea = "Blink.Area";
constexpr int32_t BelowText = 20;
constexpr int32_t BlinkWidth = 16, BlinkHeight = 24;
constexpr int32_t TakeBackup = 1, Restore = 1;

bool somebodySpeaks() {
  return Reg(SpeakerOnScreenRegister) == 1;
}

}  // namespace

void showFaceOfLine() {
  QVVSurface* face = surfaceNamed(FaceSurface);
  View* view = viewNamed(inDrama() ? DramaView : NormalView);
  if (!face || !view) return;
  QVVSurface& shown = *view->surface8();
  if (!inDrama()) {
    shown.copyPaletteFrom(*face);
    face->blit(shown, 0, 0, 0, 0, face->width(), face->height(), KeyNone);
  } else if (somebodySpeaks()) {
    if (const QVVSurface* picture = surfaceNamed(PictureSurface))
      picture->blit(shown, 0, 0, 0, DramaTop, StripWidth, DramaHeight, KeyNone);
  } else {
    face->blit(shown, 0, 0, 0, 0, face->width(), face->height() - BelowText, KeyNone);
  }
  view->flush(nullptr, 0);
}

void connectBlink() {
  theScenario->ConnectObjects(BlinkArea, NormalView);
}

void startBlink() {
  if (!(inDrama() && somebodySpeaks())) theScenario->ShowArea(BlinkArea, TakeBackup);
}

void stopBlink() {
  theScenario->HideArea(BlinkArea, Restore);
}

void disconnectBlink() {
  theScenario->DisconnectObjects(BlinkArea, NormalView);
}

void repaintUnderBlink() {
  QVVSurface* face = surfaceNamed(FaceSurface);
  View* view = viewNamed(NormalView);
  if (inDrama() || !face || !view) return;
  const int32_t x = face->width() / 2 - BlinkWidth / 2, y = face->height() - BlinkHeight;
  face->blit(*view->surface8(), x, y, x, y, BlinkWidth, BlinkHeight, KeyNone);
  view->flushArea(x, y, BlinkWidth, BlinkHeight, 0);
}

void lightPendant(bool lit) {
  Reg(HoverRegister) = lit ? 1 : 0;
  theScenario->DrawTo(PendantWindow, lit ? "sysCut1.surf" : "sysCut.surf", 0, 0, 0, 0, 0, 0);
}

void followPendant(int32_t code, const char* mapToRefresh) {
  const bool lit = Reg(HoverRegister) == 1;
  if (code == FirstHoverResult + PendantRegion) {
    if (!lit) lightPendant(true);
  } else if (code >= FirstHoverResult && lit) {
    lightPendant(false);
    theScenario->RequestHover(mapToRefresh, WithoutNudge);
  }
}

}  // namespace qv
