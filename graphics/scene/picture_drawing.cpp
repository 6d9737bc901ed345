#include "graphics/scene/picture_drawing.h"

#include "graphics/dib.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t FirstColour = 0, LastColour = 255, ColourCount = 256;
constexpr const char* SystemPalette = "dat\\L0pal.dat";

void mergeOwned(QVVSurface& target, const QVDib& picture) {
  ColourTable table = target.storedColours();
  MergePalette(picture, table, FirstColour, LastColour, false);
  target.setColours(table, FirstColour, FirstColour, ColourCount);
}

}  // namespace

QVVSurface* surfaceNamed(const char* name) {
  return theScenario ? static_cast<QVVSurface*>(theScenario->FindNative(name, TypeSurface))
                     : nullptr;
}

View* viewNamed(const char* name) {
  WindowObject* window = theScenario ? theScenario->FindView(name) : nullptr;
  View* view = window ? window->view() : nullptr;
  return view && view->surface8() ? view : nullptr;
}

void DrawFileKeyed(QVVSurface& target, const char* file, int32_t x, int32_t y, bool merge,
                   ColourKey key) {
  QVDib picture;
  picture.loadByName(file);
  if (merge) mergeOwned(target, picture);
  QVVSurface drawn;
  drawn.assignDib(picture);
  drawn.blit(target, x, y, 0, 0, drawn.width(), drawn.height(), key);
}

void mergeColours(QVVSurface& target, const char* file) {
  QVDib picture;
  picture.loadByName(file);
  mergeOwned(target, picture);
}

void setAllColours(QVVSurface& target, const scobjPalette& colours) {
  target.setColours(colours.table(), FirstColour, FirstColour, ColourCount);
}

scobjPalette systemColours() {
  // A picture in spite of its name, of which only the colours matter.
  scobjPalette colours;
  colours.loadFromPicture(SystemPalette);
  return colours;
}

}  // namespace qv
