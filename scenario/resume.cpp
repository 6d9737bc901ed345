#include "scenario/resume.h"

namespace qv {

SceneFunction ResumeScene;

}  // namespace qv
