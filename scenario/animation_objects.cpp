#include "scenario/animation_objects.h"

#include "scenario/scenario.h"
#include "scenario/window_object.h"

namespace qv {

void NamedAnimationSurface::create(QVScenario&, const ObjectArguments& arguments) {
  const char* file = arguments.a1.text();
  const int32_t cells = arguments.a2.number();
  if (!file || cells == 0) return;
  const ColourKey key = arguments.a3.number();
  if (key == KeyNone)
    surface_.load(cells, file, false, KeyTopLeft);
  else
    surface_.load(cells, file, true, key);
}

void NamedAnimationSequence::create(QVScenario&, const ObjectArguments& arguments) {
  sequence_.setText(arguments.a1.text(), static_cast<bool>(arguments.a2));
}

void NamedAnimationArea::create(QVScenario&, const ObjectArguments& arguments) {
  if (const auto* rectangle = arguments.a1.pointer<Rectangle>()) area_.setRect(*rectangle);
}

void NamedFrameFilm::create(QVScenario&, const ObjectArguments& arguments) {
  film_.setFiles(arguments.a1.text());
  if (const int32_t most = arguments.a2.number(); most > 0) film_.limitFrames(most);
}

// --- Relations ---

namespace {

QVAnimationArea* areaOf(const RelatedObject& object) {
  return object.logical ? static_cast<QVAnimationArea*>(object.logical->native()) : nullptr;
}

View* viewOf(const RelatedObject& object) {
  return object.window ? object.window->view() : nullptr;
}

}  // namespace

void connectViewToArea(QVScenario&, RelatedObject& view, RelatedObject& area,
                       const Relation::Numbers&) {
  if (QVAnimationArea* drawing = areaOf(area)) drawing->setView(viewOf(view));
}

void disconnectViewFromArea(QVScenario&, RelatedObject&, RelatedObject& area) {
  if (QVAnimationArea* drawing = areaOf(area)) drawing->setView(nullptr);
}

void connectAreaToSurface(QVScenario&, RelatedObject& area, RelatedObject& surface,
                          const Relation::Numbers&) {
  if (QVAnimationArea* drawing = areaOf(area))
    drawing->relate(static_cast<QVAnimationSurface*>(surface.logical->native()));
}

void connectAreaToSequence(QVScenario&, RelatedObject& area, RelatedObject& sequence,
                           const Relation::Numbers&) {
  if (QVAnimationArea* drawing = areaOf(area))
    drawing->relateSequence(static_cast<AnimationSequence*>(sequence.logical->sequence()));
}

void connectAreaToArea(QVScenario&, RelatedObject& area, RelatedObject& child,
                       const Relation::Numbers&) {
  QVAnimationArea* drawing = areaOf(area);
  QVAnimationArea* drawn = areaOf(child);
  if (drawing && drawn) drawing->addChild(*drawn);
}

}  // namespace qv
