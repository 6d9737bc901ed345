#pragma once

/// The line on its way to the screen: SpeakLine and PrintMessage are in message/commands.h; here is
/// what the waits do with it. Scenario thread.

namespace qv {

/// Prints the text that waits into its area; the screen shows it when the wait brings it there.
void printPending();
/// The mouth that moves in silence is put back.
void stopSilentMouth();
/// The end of a line: its silent mouth, or else its voice.
void stopLineVoice();

}  // namespace qv
