#include "scenario/click_map_objects.h"

#include "foundation/file.h"
#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

void NamedClickMap::create(QVScenario& manager, const ObjectArguments& arguments) {
  const int32_t hover = arguments.a5.number();
  const char* source = arguments.a1.text();
  if (!source) {
    map_.create(arguments.a6.number(), arguments.a7.number(),
                static_cast<uint8_t>(arguments.a2.number()), hover, manager.host());
    return;
  }
  const WindowObject* over = manager.FindView(source);
  Rectangle client;
  if (over && over->clientRect(client)) {
    map_.create(client.width(), client.height(), static_cast<uint8_t>(arguments.a3.number()), hover,
                manager.host());
    return;
  }
  QVFile file;
  file.openName(source, OpenExisting, GenericRead, ShareRead, AttributeNormal);
  map_.loadFromFile(file, hover, manager.host());
  file.close();
}

QVClickMap* findClickMap(QVScenario& manager, const char* name) {
  return static_cast<QVClickMap*>(manager.FindNative(name, TypeClickMap));
}

uint32_t clickWaitMillis(int32_t tenths) {
  constexpr uint32_t TenthMillis = 100;
  return tenths == 0 ? WaitForever : scaledMillis(tenths, TenthMillis);
}

// --- Relations ---

namespace {

QVClickMap* mapOf(const RelatedObject& object) {
  return object.logical ? static_cast<QVClickMap*>(object.logical->native()) : nullptr;
}

View* viewOf(const RelatedObject& object) {
  return object.window ? object.window->view() : nullptr;
}

}  // namespace

void connectViewToMap(QVScenario&, RelatedObject& view, RelatedObject& map,
                      const Relation::Numbers&) {
  QVClickMap* const reported = mapOf(map);
  View* const reporting = viewOf(view);
  if (reported && reporting)
    reported->attach(*reporting, reported->originX(), reported->originY(), 0);
}

void disconnectViewFromMap(QVScenario&, RelatedObject& view, RelatedObject& map) {
  QVClickMap* const reported = mapOf(map);
  if (reported && reported->view() == viewOf(view)) reported->detach();
}

void connectMapToMap(QVScenario&, RelatedObject& above, RelatedObject& below,
                     const Relation::Numbers&) {
  if (QVClickMap* map = mapOf(below)) map->setParent(mapOf(above));
}

void disconnectMapFromMap(QVScenario&, RelatedObject& above, RelatedObject& below) {
  QVClickMap* const map = mapOf(below);
  if (map && map->parent() == mapOf(above)) map->setParent(nullptr);
}

}  // namespace qv
