#include "host/midi_module.h"

namespace qv {

const MidiDevices* midiDevices(std::string&) {
  return &qvMidiDevices;
}

}  // namespace qv
