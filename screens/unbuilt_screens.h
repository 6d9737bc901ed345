#pragma once

/// The screens that the waits call and that do not exist yet: each says so in a box. They are taken
/// out here, one by one, as they come.

#include "message/system_screens.h"

namespace qv {

SystemScreens& unbuiltScreens();

}  // namespace qv
