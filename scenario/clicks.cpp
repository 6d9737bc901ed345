// The manager's operations of click maps.

#include <string>

#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "scenario/click_map_objects.h"
#include "scenario/scenario.h"

namespace qv {

void QVScenario::CreateClickMap(const char* name, int32_t width, int32_t height, int32_t fill,
                                int32_t hoverEnabled) {
  CreateClickMap(name, {.a2 = fill, .a5 = hoverEnabled, .a6 = width, .a7 = height});
}

void QVScenario::CreateClickMapOver(const char* name, const char* view, int32_t region,
                                    int32_t hoverEnabled) {
  if (FindView(view)) CreateClickMap(name, {.a1 = view, .a3 = region, .a5 = hoverEnabled});
}

void QVScenario::LoadClickMap(const char* name, const char* file, int32_t hoverEnabled) {
  if (file) CreateClickMap(name, {.a1 = file, .a5 = hoverEnabled});
}

void QVScenario::AddClickRect(const char* name, int32_t x, int32_t y, int32_t width, int32_t height,
                              int32_t region) {
  if (QVClickMap* map = findClickMap(*this, name)) map->addRect(x, y, width, height, region);
}

void QVScenario::StampClickMap(const char* name, const char* other, int32_t x, int32_t y,
                               ColourKey key) {
  QVClickMap* const map = findClickMap(*this, name);
  const QVClickMap* const source = findClickMap(*this, other);
  if (map && source) map->Stamp(*source, x, y, key);
}

void QVScenario::SetClickTick(const char* name, uint32_t millis) {
  if (QVClickMap* map = findClickMap(*this, name)) map->setTick(millis);
}

void QVScenario::RequestHover(const char* name, int32_t nudge) {
  if (QVClickMap* map = findClickMap(*this, name)) map->requestHover(nudge);
}

/// The map of that name if it can be waited on; otherwise the player is told why not.
QVClickMap* QVScenario::mapToWaitOn(const char* name) {
  QVClickMap* const map = findClickMap(*this, name);
  if (map && map->view()) return map;
  const std::string text =
      sjis("指定された") + name +
      (map ? sjis("は、どこにも関連付けられていません。\nビューポートに関連付けて下さい。－１を返し"
                  "て処理を継続します。")
           : sjis("は、クリックマップではありません。\nRESULT_CANCELを返して処理を継続します。"));
  services().dialogs->messageBox(text, applicationName_.view(), BoxNotice);
  return nullptr;
}

int32_t QVScenario::ClickWait(const char* name, int32_t tenths, int32_t keys) {
  if (!host_ || !name) return ClickCancel;
  QVClickMap* const map = mapToWaitOn(name);
  if (!map) return ClickCancel;
  const int32_t result = map->ClickWait(clickWaitMillis(tenths), keys);
  return result == NoRegion && map->lastMessage() == LeftButtonDown ? 0 : result;
}

int32_t QVScenario::ClickTickWait(const char* name, uint32_t millis, int32_t keys) {
  if (!host_ || !name) return ClickCancel;
  QVClickMap* const map = mapToWaitOn(name);
  return map ? map->ClickTickWait(millis, keys) : ClickCancel;
}

}  // namespace qv
