#pragma once

/// The machine's sound devices: one output that mixes waves, songs and the disc. Part of the
/// program, not of the host's library, for the libraries behind it.

#include "host/sound_devices.h"

namespace qv {

/// Never null: a machine without an output gets devices that only keep time, and the player a
/// sentence.
std::unique_ptr<SoundDevices> makeMachineSound(const SoundRequest& request);

}  // namespace qv
