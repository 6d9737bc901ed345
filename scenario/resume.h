#pragma once

/// ResumeScene: the scene that a load has found in its file. The running scene returns it when
/// ResumePendingRegister is set. Scenario thread.

#include "scenario/scene_function.h"

namespace qv {

extern SceneFunction ResumeScene;

}  // namespace qv
