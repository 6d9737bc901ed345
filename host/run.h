#pragma once

/// One run of a game, from the options to the exit status: chooses the kernel and the devices,
/// loads the module, starts the scenario thread and holds the UI loop on the calling thread.

#include "host/options.h"

namespace qv {

/// The exit status. Says on the standard error, in a sentence, what went wrong.
int runGame(const Options& options);

}  // namespace qv
