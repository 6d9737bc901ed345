#pragma once

/// The music and sound commands of scenes. Names are Shift-JIS. Scenario thread.

#include <cstdint>

namespace qv {

/// A song's name, "FADEOUT", or null to stop; mode null or "FADEIN". The song that should sound
/// already is not started again.
void PlayBgm(const char* name, const char* mode);
/// A sound's name as "SE02", or null to stop; loops 1 once, 0 for ever. It takes the one wave
/// channel, so that a voice ends. Nothing while messages are skipped.
void PlaySe(const char* name, int32_t loops);
/// Tenths of a second or until a click; 0 waits for the click alone. Returns at once while messages
/// are skipped and while effects are switched off. Raises ExitScenarioException on abort.
void WaitSe(int32_t tenths);
void StopSe();
/// A wave file by its path; loops as PlaySe. With `stopFirst` what sounds is cut, otherwise its end
/// is waited for. `area` names the mouth that moves with it, or null.
void PlayWave(const char* file, int32_t loops, int32_t stopFirst, const char* area);
/// A voice of the system, once, where the player wants to hear voices.
void PlaySystemVoice(const char* file);

/// What WaitSound takes in place of a time.
inline constexpr int32_t WaitForSong = -11, WaitForWave = -10;
/// Tenths of a second, or the player whose end is waited for. Raises ExitScenarioException on
/// abort.
void WaitSound(int32_t tenths);

/// The end of the voice, and a second more. Raises ExitScenarioException on abort.
void WaitVoiceThenPause();
/// The same where a system's voice is heard; otherwise tenths of a second.
void WaitVoiceOrPause(int32_t tenths);

/// Music and looping sound of a restored game.
void RestoreBgm();
void RestoreSe();

}  // namespace qv
