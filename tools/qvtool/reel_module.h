#pragma once

/// The game that `qvtool reel` plays: one scene, linked into the tool, that brings a picture onto
/// the screen by numbered effects.

#include <cstdint>
#include <vector>

#include "graphics/colour_key.h"
#include "graphics/dib.h"

namespace qv::tool {

/// What the scene shows. Set before the run, read by it.
struct ReelWishes {
  QVDib picture, from, mask1, mask2;  ///< empty where there is none
  std::vector<int32_t> effects;       ///< one after the other
  ColourKey key = KeyNone;
  int32_t x = 0, y = 0;      ///< of the picture on the screen
  int32_t steps = 16;        ///< of the palette fade and the shape wipes
  int32_t delayMillis = 15;  ///< of each step of a shape wipe
  int32_t degrees = 5;       ///< of each frame of a rotation
  int32_t turns = 0;         ///< of a rotation
  int32_t stillTenths = 10;  ///< before and behind each effect
  int32_t rounds = 0;        ///< 0: until the window is closed
  bool trueColour = false;   ///< a view of 32 bits
};

ReelWishes& reelWishes();

}  // namespace qv::tool
