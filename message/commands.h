#pragma once

/// Lines of the story, waits for the player, selections, the message window: commands of scenes.
/// Texts are Shift-JIS. Without a manager they do nothing and waits give 0. Scenario thread.

#include <cstdint>

namespace qv {

class AreaHandle;

/// A line's speaker by tag, and its voice below the voice folder, or null.
void SpeakLine(const char* speaker, const char* voice);
/// Adds to the line; several calls build a longer message. Shown by the next WaitClick.
void PrintMessage(const char* text);

inline constexpr int32_t WaitWithoutLimit = 9999;
/// Shows the line and waits for the player. limitTenths: tenths of a second, or 9999 for none.
/// Modes: 0 the normal line; 1 shows and returns 0 at once; 2 leaves the window alone; 3 leaves a
/// running voice alone. Gives 10 for a click or the end of the time, 13 Return, 32 Space; 1 for a
/// line that skip passed, 0 where skip was stopped or mode 1 shows, -11 when skip begins; -13
/// behind a load, -10 when the player wants the title, 255 the end. Raises ExitScenarioException on
/// abort.
int32_t WaitClick(int32_t limitTenths, int32_t mode);

void Select2Setup();
void Select3Setup();
/// Prints a choice's text into a print area.
void AreaText(AreaHandle& area, const char* text, int32_t flag);
/// 1 to `count` for the choice; -13 behind a load, 255 for the end; -5 and anything else leaves for
/// the title. Raises ExitScenarioException on abort.
int32_t SelectMain(int32_t count);

void HideMessageWindow();
/// The pendant, shown where its rules ask for it.
void HideSystemWindow();
void ShowSystemWindow();
/// Behind a load: the frame's corner as it is outside of message skip, and its three buttons drawn
/// afresh, up and enabled; nothing in drama mode.
void RestoreButtonStrip();

/// The player chooses a place from the ring of a group; up to seven names narrow the ring of a
/// group with variants. Gives the place's number from 0, or -1.
int32_t LocationRing(const char* group, const char* first = nullptr, const char* second = nullptr,
                     const char* third = nullptr, const char* fourth = nullptr,
                     const char* fifth = nullptr, const char* sixth = nullptr,
                     const char* seventh = nullptr);

}  // namespace qv
