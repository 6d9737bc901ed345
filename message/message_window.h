#pragma once

/// The message window in its two presentations: a tinted frame over the picture, or in drama mode
/// the plain picture. Its face is made from the picture behind it, so that it seems translucent on
/// a display of 256 colours. Missing objects are passed over. Scenario thread.

#include <cstdint>

#include "message/commands.h"

namespace qv {

// HideMessageWindow and RestoreButtonStrip are commands of scenes.
void ShowMessageWindow();
/// The other presentation. Drama is meant to be heard: it switches all voices and effects on.
void ToggleDramaMode();
/// Makes the frame anew from what the screen shows; the line that stands is printed again.
void RebuildMessageWindow();

/// The presentation that stands.
bool inDrama();

/// What an effect does when a new picture stands on "cg.surf": the frame from it, without text.
void buildMessageFrame();
/// The strip of the picture in place of the window, before the whole picture changes.
void coverMessageWindow();

/// The corner's picture while messages are skipped, and as it is otherwise; both with their quick
/// buttons. There is no corner in drama mode.
void showSkipCorner();
void RestoreFrameCorner();

/// Shows or hides the view of the present presentation; the other one is hidden.
void showPresentView(bool visible);
/// Prints name and text of the line that stands into their areas.
void printStandingLine();

}  // namespace qv
