#include "scenario/object_kinds.h"

#include <algorithm>

#include "scenario/animation_objects.h"
#include "scenario/area_objects.h"
#include "scenario/click_map_objects.h"
#include "scenario/control_objects.h"
#include "scenario/named_surface.h"
#include "scenario/scenario_host.h"

namespace qv {

namespace {

constexpr ObjectKind Kinds[] = {
    {TypeSurface, "QVScenario - create:surface", "サーフェース", NativeForm::Member,
     allocateObject<NamedSurface>},
    {TypeCursor, "QVScenario - create:cursor", "カーソル", NativeForm::Member,
     allocateObject<NamedCursor>},
    {TypeAnimatedControl, "QVScenario - create:animatedControl", "アニメーションコントロール",
     NativeForm::Member, allocateObject<NamedAnimatedControl>},
    {TypePrintArea, "QVScenario - create:printArea", "プリントエリア", NativeForm::Member,
     allocateObject<NamedPrintArea>},
    {TypeHitret, "QVScenario - create:hitret", "", NativeForm::Member, allocateObject<NamedHitret>},
    {TypeClickMap, "QVScenario - create:clickmap", "", NativeForm::Member,
     allocateObject<NamedClickMap>},
    {TypeAnimationSurface, "QVScenario - create:animationSurface", "", NativeForm::Member,
     allocateObject<NamedAnimationSurface>},
    {TypeAnimationSequence, "QVScenario - create:animationSequence", "", NativeForm::Sequence,
     allocateObject<NamedAnimationSequence>},
    {TypeAnimationArea, "QVScenario - create:animationArea", "", NativeForm::Member,
     allocateObject<NamedAnimationArea>},
    {TypeFrameFilm, "QVScenario - create:drawAnimation", "", NativeForm::None,
     allocateObject<NamedFrameFilm>},
};

/// How a window's arguments go into the request.
struct WindowKind {
  int typeCode;
  bool parentOnly;     ///< visible, with an empty rectangle
  bool alwaysVisible;  ///< a5 does not hide it
  int32_t frameFlag;
};

constexpr WindowKind WindowKinds[] = {
    {TypeView, false, false, 0},
    {TypeFrame, false, false, 1},
    {TypeFrameless, false, false, 1},
    {TypePlainWindow, true, true, 0},
    {TypeSecondView, false, false, 0},
    {TypeReleasedWindow, false, false, 0},
    {TypeAnimationControl, false, true, 0},
};

// Below this a caption argument is a character, not the address of a text.
constexpr uintptr_t FirstCaptionAddress = 256;

std::span<const ObjectKind> scopedKinds;

}  // namespace

const ObjectKind* findObjectKind(int typeCode) {
  for (const std::span<const ObjectKind> kinds :
       {scopedKinds, std::span<const ObjectKind>(Kinds)}) {
    const auto found = std::ranges::find(kinds, typeCode, &ObjectKind::typeCode);
    if (found != kinds.end()) return &*found;
  }
  return nullptr;
}

bool fillWindowRequest(CreateWindowRequest& request, int typeCode,
                       const ObjectArguments& arguments) {
  const auto* kind = std::ranges::find(WindowKinds, typeCode, &WindowKind::typeCode);
  if (kind == std::end(WindowKinds)) return false;
  request.typeCode = typeCode;
  request.frameFlag = kind->frameFlag;
  request.parentName.create(QVString::DefaultGrain, arguments.a1.text());
  request.visible = kind->alwaysVisible || !arguments.a5;
  if (kind->parentOnly) return true;

  if (const auto* rectangle = arguments.a2.pointer<Rectangle>()) request.rectangle = *rectangle;
  if (static_cast<uintptr_t>(arguments.a3.word()) < FirstCaptionAddress)
    request.captionCharacter = static_cast<uint8_t>(arguments.a3.word());
  else
    request.caption.create(QVString::DefaultGrain, arguments.a3.text());
  request.extraWord = arguments.a4.number();
  return true;
}

ObjectKindsScope::ObjectKindsScope(std::span<const ObjectKind> kinds) : previous_(scopedKinds) {
  scopedKinds = kinds;
}

ObjectKindsScope::~ObjectKindsScope() {
  scopedKinds = previous_;
}

}  // namespace qv
