#pragma once

/// A MIDI port of the machine, behind which stands another program or a device with a cable.

#include <memory>
#include <string>
#include <vector>

#include "platform/sound/midi_output.h"

namespace qv {

/// Names of the ports that songs can be sent to, in the order of their numbers from 0. Empty where
/// the machine has no sequencer.
std::vector<std::string> midiPortNames();

/// The port of that number, or the first one whose name has `nameOrNumber` in it. Null where there
/// is none, and `whyNot` says so in one sentence (UTF-8). The port is taken by `open`, not before.
std::unique_ptr<MidiOutput> makeMidiPort(const std::string& nameOrNumber, std::string& whyNot);

}  // namespace qv
