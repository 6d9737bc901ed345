#pragma once

/// One run of a game, from the options to the exit status: chooses the kernel and the devices,
/// loads the module, starts the scenario thread and holds the UI loop on the calling thread.

#include "host/options.h"
#include "host/sound_devices.h"

namespace qv {

/// The exit status. Says on the standard error, in a sentence, what went wrong.
/// The sound devices are made inside the run, on its kernel.
int runGame(const Options& options, const MakeSoundDevices& makeSoundDevices);

}  // namespace qv
