#pragma once

/// The music and sound commands of scenes. Names are Shift-JIS. Scenario thread.

#include <cstdint>

namespace qv {

/// A song's name, "FADEOUT", or null to stop; mode null or "FADEIN".
void PlayBgm(const char* name, const char* mode);
/// A sound's name as "SE02", or null to stop; loops 1 once, 0 for ever.
void PlaySe(const char* name, int32_t loops);
/// Tenths of a second or until a click; 0 waits for the click alone.
void WaitSe(int32_t tenths);
void StopSe();
/// A wave file by its path; `area` names the mouth that moves with it, or null.
void PlayWave(const char* file, int32_t mode, int32_t wait, const char* area);

/// What WaitSound takes in place of a time.
inline constexpr int32_t WaitForSong = -11, WaitForWave = -10;
/// Tenths of a second, or the player whose end is waited for. Raises ExitScenarioException on
/// abort.
void WaitSound(int32_t tenths);

/// Music and looping sound of a restored game.
void RestoreBgm();
void RestoreSe();

}  // namespace qv
