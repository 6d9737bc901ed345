#pragma once

/// The form of a scene. A scene is one exported function, a step machine over StepRegister:
///
///     QV_SCENE(sc000000) {
///       SetSceneName("sc000000");
///       StandingHandles standing;
///       SceneEnter();
///       SetChapter("000000");
///       for (;; nextStep()) {
///         switch (Reg(StepRegister)) {
///           case 1:
///             SpeakLine(speaker, voice);
///             PrintMessage(text);
///             if (const Leaving leaving = afterClick(WaitClick(9999, 0))) return leaving.next;
///             break;
///           case 2:
///             return sc000001;
///           default:
///             passOver(2);
///         }
///       }
///     }
///
/// Written by hand or by scenec, it is the same. Nothing in a scene's locals may be needed after a
/// wait: a load enters the scene in the middle and runs one step from its start. This header is
/// included by every unit of scenes, so it stays light.

#include <cstddef>
#include <cstdint>

#include "audio/scene/commands.h"
#include "graphics/scene/commands.h"
#include "message/commands.h"
#include "scenario/commands.h"
#include "scenario/handles.h"
#include "scenario/register_numbers.h"
#include "scenario/scene_function.h"
#include "scenario/start/scene_enter.h"
#include "screens/commands.h"

/// The head of a scene's function: exported under its exact name.
#define QV_SCENE(name) extern "C" qv::SceneFunction name()

namespace qv {

/// The nine standing objects, bound in this order and released in the reverse of it. The objects
/// themselves stay.
struct StandingHandles {
  StandingHandles();
  ~StandingHandles();

  AreaHandle name, message;
  ViewHandle picture;
  AreaHandle select01Title, select01Mess;
  AreaHandle select02Title, select02Mess;
  AreaHandle select03Title, select03Mess;
};

/// Whether the scene is left, and for which scene (nothing ends the run).
struct Leaving {
  bool now = false;
  SceneFunction next{};
  explicit operator bool() const { return now; }
};

/// The test behind every WaitClick, in this order: the title, the end, a load.
Leaving afterClick(int32_t result);

/// The tests behind SelectMain, in another order on purpose: a load wins over everything, and the
/// way to the title asks nothing.
SceneFunction afterSelection(int32_t result, SceneFunction first, SceneFunction second,
                             SceneFunction third = {});
/// The same behind LocationRing, whose places count from 0.
SceneFunction afterPlace(int32_t result, const SceneFunction* places, size_t count);
template <size_t Count>
SceneFunction afterPlaces(int32_t result, const SceneFunction (&places)[Count]) {
  return afterPlace(result, places, Count);
}

/// The ways out: they offer to save, and give the scene to return.
SceneFunction leaveForTitle();
SceneFunction leaveGame();

/// A save point, a step of its own: the file holds the next step, the running game goes on.
void savePoint();
/// The same round the question that a scene asks at a chapter's end.
void offerSave();

/// The film with its clock; in demo form the player's input ends it.
void playOpeningFilm(timekeeper& clock);
/// Waits for a time of the film; in demo form the player's input goes on at once.
void cueFilm(timekeeper& clock, uint32_t timeMillis, uint32_t limitMillis);

/// The step counter wraps as a machine word does; a damaged save may hold any number.
inline void nextStep() {
  int32_t& step = Reg(StepRegister);
  step = static_cast<int32_t>(static_cast<uint32_t>(step) + 1);
}
/// For a step that the scene does not have: it is passed over. Behind the last one all numbers up
/// to the wrap would be passed over one by one; this goes there in one stride.
inline void passOver(int32_t lastStep) {
  int32_t& step = Reg(StepRegister);
  if (step < 1 || step > lastStep) step = 0;
}

/// True when both are there and equal.
bool sameText(const char* left, const char* right);

}  // namespace qv
