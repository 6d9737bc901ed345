#pragma once

/// Drawing of picture files into named surfaces, with the colours that they own. Scenario thread.

#include <cstdint>

#include "graphics/colour_key.h"
#include "graphics/palette.h"
#include "graphics/surface.h"
#include "graphics/view.h"

namespace qv {

/// Null for a name that is none.
QVVSurface* surfaceNamed(const char* name);
View* viewNamed(const char* name);  ///< with 8 bits a pixel

/// The whole picture at x, y; with `merge` the target takes the colours that the picture owns.
/// Raises what the file raises.
void DrawFileKeyed(QVVSurface& target, const char* file, int32_t x, int32_t y, bool merge,
                   ColourKey key);
void mergeColours(QVVSurface& target, const char* file);
void setAllColours(QVVSurface& target, const scobjPalette& colours);

/// The system's own colours, of which pictures take black, white, red and blue.
enum SystemColour : int32_t { SystemBlack = 10, SystemRed = 14, SystemBlue = 22, SystemWhite = 23 };
/// Raises what the file raises.
scobjPalette systemColours();

}  // namespace qv
