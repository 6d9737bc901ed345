#include "graphics/view.h"
#include "scenario/animation_objects.h"
#include "scenario/click_map_objects.h"
#include "scenario/messages.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

QVAnimationArea* findArea(QVScenario& manager, const char* name) {
  return static_cast<QVAnimationArea*>(manager.FindNative(name, TypeAnimationArea));
}

FrameFilm* findFilm(QVScenario& manager, const char* name) {
  auto* named = dynamic_cast<NamedFrameFilm*>(manager.FindObject(name, TypeFrameFilm));
  return named ? &named->film() : nullptr;
}

void sendToControl(QVScenario& manager, const char* name, uint32_t message) {
  const WindowObject* window = manager.FindWindow(name);
  if (window && window->typeCode() == TypeAnimationControl && window->window)
    window->window->send(message, 0, 0);
}

}  // namespace

void QVScenario::RelateAnimation(const char* areaName, const char* surfaceName,
                                 const char* sequenceName, int32_t number, int32_t x, int32_t y,
                                 int32_t visible) {
  QVAnimationArea* area = findArea(*this, areaName);
  auto* surface = static_cast<QVAnimationSurface*>(FindNative(surfaceName, TypeAnimationSurface));
  auto* sequence = static_cast<AnimationSequence*>(FindNative(sequenceName, TypeAnimationSequence));
  if (area) area->relateContainer(surfaceName, surface, sequence, number, x, y, visible != 0);
}

void QVScenario::ShowArea(const char* name, int32_t flag) {
  if (QVAnimationArea* area = findArea(*this, name))
    area->start(flag != 0);
  else
    sendToControl(*this, name, MessageAnimationStart);
}

void QVScenario::HideArea(const char* name, int32_t flag) {
  if (QVAnimationArea* area = findArea(*this, name))
    area->stop(flag != 0);
  else if (FrameFilm* film = findFilm(*this, name))
    film->stop();
  else
    sendToControl(*this, name, MessageAnimationStop);
}

void QVScenario::PlayDrawAnimation(const char* name, const char* viewName, int32_t wait,
                                   int32_t firstFrame, intptr_t word) {
  if (QVAnimationArea* area = findArea(*this, name)) {
    area->start(true);
    return;
  }
  FrameFilm* film = findFilm(*this, name);
  if (!film) return;
  if (firstFrame != 0) film->setFirstFrame(firstFrame);
  WindowObject* window = FindView(viewName);
  film->start(window ? window->view() : nullptr, word);
  if (!wait) return;
  // A long film must not keep a run that is over.
  waitAny({&host_->abortEvent.handle(), &film->ended().handle()});
  if (host_->abortEvent.handle().isSet()) film->stop();
}

void QVScenario::SetAutoAdvance(const char* areaName, int32_t wanted, const char* mapName,
                                int32_t code) {
  QVAnimationArea* const area = findArea(*this, areaName);
  if (!area) return;
  AutoAdvance advance{.wanted = wanted != 0, .inputCode = code, .viewParent = host_};
  if (mapName) advance.clickMap = findClickMap(*this, mapName);
  if (!mapName || advance.clickMap) area->setAutoAdvance(advance);
}

}  // namespace qv
