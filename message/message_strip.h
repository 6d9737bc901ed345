#pragma once

/// The strip of the message window as a wait drives it: the face on the screen, the blinking
/// prompt, the pendant's light. Missing objects are passed over. Scenario thread.

#include <cstdint>

namespace qv {

/// Name and text at one moment; in drama mode a spoken line shows the plain picture instead.
void showFaceOfLine();

/// Ties the prompt to the strip and starts it, unless a spoken line of drama mode stands.
void connectBlink();
void startBlink();
void stopBlink();          ///< what lies under it comes back
void repaintUnderBlink();  ///< from the face; nothing in drama mode
void disconnectBlink();

/// The pendant's picture, lit or not, and the register that says which.
void lightPendant(bool lit);
/// Lights it while the pointer is on it; a code that is no hover changes nothing.
void followPendant(int32_t code, const char* mapToRefresh);

}  // namespace qv
