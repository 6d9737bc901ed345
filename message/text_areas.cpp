#include "message/text_areas.h"

#include "scenario/scenario.h"

namespace qv {

namespace {

struct Placing {
  int32_t left, top, width, height;
};
constexpr Placing NormalName{8, 24, 495, 24}, NormalMessage{16, 48, 495, 72},
    DramaName{58, 24, 495, 24}, DramaMessage{66, 48, 495, 72};
constexpr int32_t PenOffset = 2, LineIndent = 2, LeftSide = 0;

template <class Work>
void each(const LineAreas& areas, Work work) {
  for (QVPrintArea* area : {areas.name, areas.message})
    if (area) work(*area);
}

QVPrintArea* placedArea(const char* name) {
  QVPrintArea* area = areaNamed(name);
  return area && !area->rectangle().empty() ? area : nullptr;
}

void place(QVPrintArea* area, const Placing& where) {
  if (area) area->setRect(where.left, where.top, where.width, where.height);
}

}  // namespace

QVPrintArea* areaNamed(const char* name) {
  return theScenario ? static_cast<QVPrintArea*>(theScenario->FindNative(name, TypePrintArea))
                     : nullptr;
}

LineAreas::LineAreas() : name(placedArea(NameArea)), message(placedArea(MessageArea)) {}

void LineAreas::place(bool drama) const {
  qv::place(name, drama ? DramaName : NormalName);
  qv::place(message, drama ? DramaMessage : NormalMessage);
}

void LineAreas::saveBackground() const {
  each(*this, [](QVPrintArea& area) { area.saveBackground(); });
}

void LineAreas::clear() const {
  each(*this, [](QVPrintArea& area) { area.clear(true, true); });
}

void LineAreas::print(const char* speaker, const char* text) const {
  if (name) name->printText(speaker);
  if (message) message->printText(text);
}

void LineAreas::home() const {
  each(*this, [](QVPrintArea& area) {
    const Rectangle place = area.rectangle();
    area.setPosition(place.left + PenOffset, place.top + PenOffset);
    area.setIndent(LineIndent, LeftSide);
  });
}

}  // namespace qv
