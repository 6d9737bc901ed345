#pragma once

/// The small boxes of the game's own look: a question, a notice, a passing word. They can be
/// dragged, and open again where the player left them. Texts are Shift-JIS with line feeds; a text
/// is centred line by line. Scenario thread; all raise on abort.

#include <cstdint>

namespace qv {

/// 1 yes, 0 no.
int32_t ConfirmDialog(const char* text);
void NoticeDialog(const char* text);
/// Stands for five seconds or until a click.
void PopupNotice(const char* text);

}  // namespace qv
