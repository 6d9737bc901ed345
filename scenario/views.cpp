// What the manager does with views and windows by their names.

#include <memory>

#include "graphics/pace.h"
#include "graphics/position.h"
#include "graphics/surface.h"
#include "graphics/transition/effects.h"
#include "graphics/transition/transition_engine.h"
#include "graphics/view.h"
#include "message/print_area.h"
#include "platform/display/display.h"
#include "scenario/click_map_objects.h"
#include "scenario/handles.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

constexpr int32_t EffectPaletteFade = 9, FirstRotation = 60, LastRotation = 63;
constexpr int32_t DegreesAFrame = 5;
// What stands in the place of a source and means a plain colour.
constexpr intptr_t SourceBlack = 0, SourceWhite = -1;
constexpr uint8_t BlackIndex = 0, WhiteIndex = 255;

Event* abortOf(ScenarioHost* host) {
  return host ? &host->abortEvent.handle() : nullptr;
}

QVVSurface* namedSurface(QVScenario& manager, const char* name) {
  return static_cast<QVVSurface*>(manager.FindNative(name, TypeSurface));
}

/// The view of that name, of either depth; a frame's name gives its client.
View* namedView(QVScenario& manager, const char* name) {
  WindowObject* window = manager.FindView(name);
  if (!window) {
    window = manager.FindWindow(name);
    if (!window || window->typeCode() != TypeSecondView) return nullptr;
  }
  View* view = window->view();
  return view && (view->surface8() || view->surface32()) ? view : nullptr;
}

/// An 8-bit picture by name: a surface's, a view's, or a file's, which is then held.
class NamedPicture {
 public:
  NamedPicture(QVScenario& manager, const char* name) {
    if (!name) return;
    surface_ = namedSurface(manager, name);
    if (surface_) return;
    if (View* view = namedView(manager, name)) {
      surface_ = view->surface8();
      return;
    }
    loaded_ = std::make_unique<QVVSurface>();
    loaded_->loadByName(name);
    surface_ = loaded_.get();
  }
  QVVSurface* operator->() const { return surface_; }
  QVVSurface& operator*() const { return *surface_; }
  explicit operator bool() const { return surface_ != nullptr; }

 private:
  QVVSurface* surface_ = nullptr;
  std::unique_ptr<QVVSurface> loaded_;
};

bool isPlainColour(const ObjectArgument& source) {
  return source.word() == SourceBlack || source.word() == SourceWhite;
}

struct DrawCall {
  int32_t x, y, w, h, sx, sy, effect;
  ColourKey key;
  bool flush;
};

/// A draw onto a surface is a plain blit.
void drawOntoSurface(QVVSurface& target, const QVVSurface& source, const DrawCall& call) {
  if (call.key == KeyNone) target.copyPaletteFrom(source);
  const int32_t w = call.w == 0 ? source.width() : call.w;
  const int32_t h = call.h == 0 ? source.height() : call.h;
  source.blit(target, call.x, call.y, call.sx, call.sy, w, h, call.key);
}

/// The picture into the view's surface, and no word to the screen.
void drawUnseen(View& view, const QVVSurface& source, const DrawCall& call) {
  if (QVVSurface* surface = view.surface8()) return drawOntoSurface(*surface, source, call);
  const int32_t w = call.w == 0 ? source.width() : call.w;
  const int32_t h = call.h == 0 ? source.height() : call.h;
  source.blitTo32(*view.surface32(), call.x, call.y, call.sx, call.sy, w, h, call.key);
}

void drawOntoView(QVScenario& manager, View& view, const QVVSurface& source, DrawCall call) {
  const bool fades = call.effect == EffectPaletteFade;
  // The place of x carries the number of steps, which the engine takes in that of the key.
  const int32_t keyOrSteps = fades ? call.x : call.key;
  if (fades) call.x = 0;
  const Rectangle client = view.clientRectangle();
  const int32_t w = call.w == 0 ? source.width() : call.w;
  const int32_t h = call.h == 0 ? source.height() : call.h;
  call.x = drawPositionX(call.x, client.width(), w);
  call.y = drawPositionY(call.y, client.height(), h);
  if (!call.flush) return drawUnseen(view, source, call);
  Pace pace(abortOf(manager.host()));
  TransitionEngine engine(&view, {&source, nullptr, nullptr},
                          {call.x, call.y, call.w, call.h, call.sx, call.sy}, pace,
                          [&manager](uint32_t limit) { return manager.Random(limit); });
  const bool turns = call.effect >= FirstRotation && call.effect <= LastRotation;
  engine.run(call.effect, keyOrSteps, turns ? DegreesAFrame : 0, 0);
}

/// The source's word is the text itself, and x and y are the pen's place. A text has no size before
/// it is laid out, by which a position code could put it: with one the pen stays where it stands.
void printOnto(QVPrintArea& area, const ObjectArgument& source, int32_t x, int32_t y) {
  if (isPlainColour(source)) return;
  if (!isPositionCode(x) && !isPositionCode(y)) area.setPosition(x, y);
  area.printText(source.text());
}

}  // namespace

void QVScenario::CreateView(const char* name, const char* parent, int32_t x, int32_t y, int32_t w,
                            int32_t h, int32_t flags, ObjectArgument extra, int32_t code) {
  const Rectangle rectangle = Rectangle::at(x, y, w, h).normalised();
  CreateObject(
      name, code == TypeSecondView ? TypeSecondView : TypeView,
      {parent, &rectangle, extra, (flags & WindowExtraWord) ? 1 : 0, flags & WindowHidden});
}

void QVScenario::DrawTo(const char* target, ObjectArgument source, int32_t x, int32_t y, int32_t w,
                        int32_t h, int32_t sx, int32_t sy, int32_t effect, ColourKey key, int32_t,
                        int32_t flush) {
  if (!target) return;
  if (auto* area = static_cast<QVPrintArea*>(FindNative(target, TypePrintArea)))
    return printOnto(*area, source, x, y);
  const DrawCall call = {x, y, w, h, sx, sy, effect, key, flush != 0};
  QVVSurface* const surface = namedSurface(*this, target);
  View* const view = surface ? nullptr : namedView(*this, target);
  if (!surface && !view) return;
  const bool plain = isPlainColour(source);
  const uint8_t index = source.word() == SourceWhite ? WhiteIndex : BlackIndex;
  if (plain && surface) {
    const Rectangle area =
        Rectangle::at(x, y, w == 0 ? surface->width() : w, h == 0 ? surface->height() : h);
    return surface->fill(index, &area);
  }
  if (plain) {
    QVVSurface colour;
    const Rectangle client = view->clientRectangle();
    colour.create(client.width(), client.height());
    if (view->surface8()) colour.copyPaletteFrom(*view->surface8());
    colour.fill(index);
    return drawOntoView(*this, *view, colour, call);
  }
  const NamedPicture picture(*this, source.text());
  if (!picture) return;
  if (surface) return drawOntoSurface(*surface, *picture, call);
  drawOntoView(*this, *view, *picture, call);
}

void QVScenario::FadeView(const char* name, int32_t steps, int32_t grey, int32_t keep) {
  View* const view = namedView(*this, name);
  if (!view) return;
  Pace pace(abortOf(host_));
  fadeToGrey(*view, steps, grey, keep != 0, pace);
}

void QVScenario::MoveWindow(const char* name, int32_t x, int32_t y, int32_t) {
  if (auto* area = static_cast<QVPrintArea*>(FindNative(name, TypePrintArea))) {
    if (!isPositionCode(x)) area->setPosition(x, y);
    return;
  }
  if (QVClickMap* map = findClickMap(*this, name))
    if (!isPositionCode(x)) return map->setOrigin(x, y);
  WindowObject* const window = FindWindow(name);
  if (!window) return;
  if (!isPositionCode(x)) {
    window->MoveClamped(x, y, 0, 0, 1, 0);
    return;
  }
  Rectangle place, around = {0, 0, ScreenWidth, ScreenHeight};
  if (!isFrame(window->typeCode()) || !window->windowRect(place)) return;
  // The screen's places are told to a window in what it lies in.
  Rectangle inParent;
  window->placeInParent(inParent);
  const int32_t left = place.left - inParent.left, top = place.top - inParent.top;
  if (x == PositionPointer) {
    host_->PointerPlace(x, y);
    window->MoveClamped(x - left, y - top, 0, 0, 1, 1);
    return;
  }
  if (x != PositionCentre && x != PositionScreenCentre) return;
  const bool inScreen = x == PositionScreenCentre;
  if (!inScreen && window->parent) window->parent->clientRect(around);
  const WindowPosition at =
      centredWindow(around.width(), around.height(), place.width(), place.height());
  window->MoveClamped(at.x - (inScreen ? left : 0), at.y - (inScreen ? top : 0), 0, 0, 1, 0);
}

void QVScenario::ShowWindow(const char* name, int32_t visible) {
  if (WindowObject* window = FindWindow(name)) window->show(visible != 0);
}

void QVScenario::HoldView(const char* name) {
  if (View* view = namedView(*this, name)) view->hold();
}

void QVScenario::ReleaseView(const char* name, int32_t redraw) {
  if (View* view = namedView(*this, name)) view->release(redraw != 0);
}

void QVScenario::FillObject(const char* name, int32_t index) {
  const auto colour = static_cast<uint8_t>(index);
  if (QVVSurface* surface = namedSurface(*this, name)) return surface->fill(colour);
  View* const view = namedView(*this, name);
  if (!view) return;
  if (QVVSurface* surface = view->surface8())
    surface->fill(colour);
  else
    view->surface32()->fill(defaultColours()[colour]);
  view->flush(nullptr, 0);
}

void QVScenario::CopyPalette(const char* target, const char* source) {
  QVVSurface* surface = namedSurface(*this, target);
  if (!surface)
    if (View* view = namedView(*this, target)) surface = view->surface8();
  if (!surface) return;
  const NamedPicture picture(*this, source);
  if (picture) surface->copyPaletteFrom(*picture);
}

void QVScenario::SetClipShape(const char* window, const char* surface, ColourKey key) {
  WindowObject* const object = FindWindow(window);
  const QVVSurface* const picture = namedSurface(*this, surface);
  if (!object || !picture) return;
  QVVSurface scratch;
  scratch.create(picture->width(), picture->height());
  picture->blit(scratch, 0, 0, 0, 0, picture->width(), picture->height(), KeyNone);
  object->SetClipShape(scratch, key);
}

}  // namespace qv
