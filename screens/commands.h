#pragma once

/// Commands of scenes that open screens or ask about the story's standing. Names are Shift-JIS.
/// Scenario thread.

#include <cstdint>

namespace qv {

class timekeeper;

/// Asks whether to save, unless the state equals the last save or load.
void AskSaveBeforeLeaving();
void AutoSave(const char* word);  ///< "SAVE" or "LOAD"
void SaveOffer();

/// Sets the story's date and shows the month.
void ShowCalendar(int32_t month, int32_t day);
/// The pendant's gem by how the heroines stand, with a glint of half a second. Raises on abort.
void UpdatePendant();
/// Moves a heroine's standing, and shows it.
void ChangeParameter(const char* name, int32_t amount);
/// The name with the higher standing, a tie gives the first; either may be null, and so may the
/// result.
const char* CompareAffection(const char* first, const char* second);
/// 1 when the standing is above the limit.
int32_t AffectionAbove(const char* name, int32_t limit);

/// The film before the story; input in its demo form raises AbortDemoException.
void OpeningFilm(timekeeper& clock);

}  // namespace qv
