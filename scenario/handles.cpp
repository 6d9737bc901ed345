#include "scenario/handles.h"

#include "foundation/diagnostic.h"
#include "scenario/scenario.h"

namespace qv {

namespace {

/// The object of that name and kind, made by the arguments where the name is free.
LogicalObject* bindOrCreate(const char* name, int32_t code, const ObjectArguments& arguments) {
  if (!theScenario) return nullptr;
  if (LogicalObject* object = theScenario->FindObject(name, code)) return object;
  theScenario->CreateObject(name, code, arguments);
  return theScenario->FindObject(name, code);
}

/// Gives the name, so that a handle's members bind after the window is made.
const char* createWindow(const char* name, int32_t code, const char* parent,
                         const Rectangle& rectangle, const char* caption, int32_t flags) {
  if (theScenario)
    theScenario->CreateObject(
        name, code,
        {parent, &rectangle, caption, (flags & WindowExtraWord) ? 1 : 0, flags & WindowHidden});
  return name;
}

QVString clientName(const char* name) {
  QVString client(name);
  if (name) client.append("Client");
  return client;
}

}  // namespace

NamedHandle::~NamedHandle() {
  if (keep_ != 0 || !theScenario) return;
  try {
    theScenario->DestroyObject(name_.text());
  } catch (const Diagnostic&) {
    // No memory for the request: the object stays until the end of the run.
  }
}

AreaHandle::AreaHandle(const char* name, int32_t keep)
    : NamedHandle(name, keep), object_(bindOrCreate(name, TypePrintArea, {})) {}

SurfaceHandle::SurfaceHandle(const char* name)
    : NamedHandle(name, KeepObject),
      object_(theScenario ? theScenario->FindObject(name, TypeSurface) : nullptr) {}

SurfaceHandle::SurfaceHandle(const char* name, const char* fileName, int32_t keep)
    : NamedHandle(name, keep), object_(bindOrCreate(name, TypeSurface, {fileName})) {}

SurfaceHandle::SurfaceHandle(const char* name, int32_t width, int32_t height, int32_t keep)
    : NamedHandle(name, keep), object_(bindOrCreate(name, TypeSurface, {width, height})) {}

ViewHandle::ViewHandle(const char* name)
    : NamedHandle(name, KeepObject), view_(theScenario ? theScenario->FindView(name) : nullptr) {}

ViewHandle::ViewHandle(const char* name, const char* parent, const Rectangle& rectangle,
                       const char* caption, int32_t flags, int32_t keep)
    : NamedHandle(createWindow(name, TypeView, parent, rectangle, caption, flags), keep),
      view_(theScenario ? theScenario->FindView(name) : nullptr) {}

FrameHandle::FrameHandle(const char* name)
    : NamedHandle(name, KeepObject),
      window_(theScenario ? theScenario->FindWindow(name) : nullptr),
      client_(clientName(name).text()) {}

FrameHandle::FrameHandle(const char* name, const char* parent, const Rectangle& rectangle,
                         const char* caption, int32_t flags, int32_t keep)
    : NamedHandle(createWindow(name, (flags & WindowFramed) ? TypeFrame : TypeFrameless, parent,
                               rectangle, caption, flags),
                  keep),
      window_(theScenario ? theScenario->FindWindow(name) : nullptr),
      client_(clientName(name).text()) {}

}  // namespace qv
