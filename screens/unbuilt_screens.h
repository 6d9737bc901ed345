#pragma once

/// The screens that the waits call and that do not exist yet: each says so in a box. They are taken
/// out here, one by one, as they come.

#include <cstdint>

#include "message/system_screens.h"

namespace qv {

SystemScreens& unbuiltScreens();

/// The letters by which the screen of saves is called.
inline constexpr int32_t SaveScreenSaves = 'S', SaveScreenLoads = 'L';
/// -3 after saving or loading, -1 where nothing is loaded. Raises on abort.
int32_t SaveScreen(int32_t code);

}  // namespace qv
