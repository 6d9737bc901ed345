#pragma once

/// What every scene calls at its head. It restores the picture and the sound of a loaded game, so
/// it stands above the floors that show and play them. Scenario thread.

namespace qv {

/// Entered normally: the scene starts at step 1. Entered by a load: the loaded step stays and the
/// rest of the restore is done.
void SceneEnter();
/// `text` is the scene's name without "sc" and without its sub-scene, as "050102n"; the first two
/// digits become ChapterRegister. A text without two digits counts as 0.
void SetChapter(const char* text);

}  // namespace qv
