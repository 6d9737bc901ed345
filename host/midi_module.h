#pragma once

/// Where the program has its MIDI devices from: a module beside it, or itself in a static build.

#include <string>

#include "platform/devices/midi_devices.h"

namespace qv {

/// Takes some milliseconds at first. Null with a sentence (UTF-8) when the module is not there or
/// cannot be loaded. The module stays until the process ends. Any thread.
const MidiDevices* midiDevices(std::string& whyNot);

}  // namespace qv
